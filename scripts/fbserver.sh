#!/usr/bin/env bash
# A private Firebird server for the server-mode tests: its own configuration,
# security database (SYSDBA / qolvandre) and a free loopback port, so the
# machine's own server, port and password are never touched.
#   fbserver.sh start DIR   -> prints "PORT"
#   fbserver.sh stop DIR
set -euo pipefail
cmd=$1
root=$(realpath -m "$2")
sys=/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH 2>/dev/null || echo x86_64-linux-gnu)/firebird/3.0

stop() {
    if [ -f "$root/pid" ]; then
        kill -TERM "$(cat "$root/pid")" 2>/dev/null || true
        for _ in $(seq 50); do kill -0 "$(cat "$root/pid")" 2>/dev/null || break; sleep 0.1; done
        rm -f "$root/pid"
    fi
}

free_port() {
    local p
    for p in $(seq 3051 3150); do
        (exec 3<>/dev/tcp/127.0.0.1/$p) 2>/dev/null || { echo $p; return; }
    done
    return 1
}

if [ "$cmd" = stop ]; then
    stop
    exit 0
fi

[ "$(id -u)" -eq 0 ] || { echo "fbserver: hace falta ser root para arrancar el servidor privado" >&2; exit 1; }
stop
rm -rf "$root"
mkdir -p "$root/intl" "$root/lock" "$root/db"
port=$(free_port)
cat > "$root/firebird.conf" <<CONF
RemoteServicePort = $port
RemoteBindAddress = 127.0.0.1
SecurityDatabase = $root/security3.fdb
ServerMode = Super
CONF
: > "$root/databases.conf"
for f in plugins lib firebird.msg plugins.conf; do ln -s "$sys/$f" "$root/$f"; done
# A symlinked intl folder leaves the server without its character sets.
cp "$sys/intl/libfbintl.so" "$root/intl/"
cp "$(readlink -f "$sys/intl/fbintl.conf")" "$root/intl/fbintl.conf"
cp /var/lib/firebird/3.0/system/security3.fdb "$root/security3.fdb"
echo "ALTER USER SYSDBA PASSWORD 'qolvandre'; COMMIT;" |
    FIREBIRD="$root" FIREBIRD_LOCK="$root/lock" isql-fb -q -user SYSDBA "$root/security3.fdb" >/dev/null
chown -R firebird:firebird "$root"
su -s /bin/sh firebird -c "FIREBIRD='$root' FIREBIRD_LOCK='$root/lock' exec /usr/sbin/firebird" >"$root/server.log" 2>&1 &
echo $! > "$root/pid"
for _ in $(seq 100); do
    (exec 3<>/dev/tcp/127.0.0.1/$port) 2>/dev/null && { echo "$port"; exit 0; }
    sleep 0.1
done
echo "fbserver: el servidor no responde en el puerto $port" >&2
cat "$root/server.log" >&2 || true
exit 1
