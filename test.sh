#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (the server-mode tests
# against a private Firebird server started and stopped here).
set -euo pipefail
cd "$(dirname "$0")"
source scripts/deps.sh
tv_install_deps
tv_build

server_dir="$PWD/build/fbserver"
if port=$(scripts/fbserver.sh start "$server_dir"); then
    export TEJAVISTA_TEST_SERVER="localhost/$port"
    export TEJAVISTA_TEST_SERVER_DIR="$server_dir/db"
    trap 'scripts/fbserver.sh stop "$server_dir"' EXIT
else
    echo "Sin servidor privado: las pruebas de servidor se saltarán." >&2
fi
ctest --test-dir build --output-on-failure -j2
