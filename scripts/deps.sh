# Installs what the build, the program and the tests need, from Debian's
# packages; quiet and quick when everything is already there.
tv_packages=(
    g++ cmake make pkg-config
    firebird3.0-server firebird3.0-utils firebird-dev
    qt6-base-dev qt6-charts-dev libqt6svg6 qt6-image-formats-plugins
    qt6-webengine-dev libjs-leaflet ccache
    libkainjow-mustache-dev libxlsxwriter-dev libcli11-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    libcurl4-openssl-dev libical-dev
    xvfb xauth imagemagick poppler-utils xlsx2csv
    fonts-dejavu-core adwaita-icon-theme
)

tv_install_deps() {
    local missing=()
    local p
    for p in "${tv_packages[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed" || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Instalando: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    export DEBIAN_FRONTEND=noninteractive
    $sudo apt-get update -qq
    $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
}

tv_build() {
    cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
    cmake --build build -j"$(nproc)"
}
