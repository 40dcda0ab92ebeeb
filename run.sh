#!/usr/bin/env bash
# Installs what is missing, builds, creates the demo data folder (local mode)
# when there is none, and starts the program.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/deps.sh
tv_install_deps
tv_build

# The program's own data folder: what it uses when no morvanI.sys says otherwise.
datos="${XDG_DATA_HOME:-$HOME/.local/share}/tejavista"
if [ ! -f "$datos/DATOS/datisp68.IB" ]; then
    build/cli/tejavista-cli crear-datos "$datos" --demo
fi
echo "Carpeta de datos: $datos"

if [ ! -x build/shell/tejavista ]; then
    echo "El programa de ventanas aún no está construido; la carpeta de datos está lista."
    echo "Consultas de prueba: build/cli/tejavista-cli sql --datos \"$datos\" \"SELECT COUNT(*) FROM INMUEBLES\""
    exit 0
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "No hay pantalla (DISPLAY sin definir): el programa necesita un escritorio."
    echo "Para probarlo sin escritorio: xvfb-run -a build/shell/tejavista"
    exit 1
fi
exec build/shell/tejavista "$@"
