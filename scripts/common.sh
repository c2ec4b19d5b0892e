# Shared by scripts/run and scripts/test: what the machine lacks, and the build. Sourced, never run.
# shellcheck shell=bash

project="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
readonly project

# Every package of the build, the tests and the private desktop, under the names that Debian and Ubuntu share.
readonly packages=(
    g++ cmake ninja-build ccache pkg-config
    qt6-base-dev libqt6svg6
    libx11-dev libxcb1-dev libxkbcommon-dev libxi-dev libxtst-dev libxss-dev libxrandr-dev libxfixes-dev libxft-dev
    nlohmann-json3-dev libutf8proc-dev libpulse-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    xserver-xorg-core xserver-xorg-video-dummy xserver-xorg-dev x11-xkb-utils xkb-data
    openbox xterm x11-utils x11-xserver-utils x11-apps imagemagick fonts-dejavu-core
    i3lock dbus dunst pulseaudio pulseaudio-utils python3-gi gir1.2-gtk-3.0
)

note() { printf '== %s\n' "$*"; }
fail() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

# missing PACKAGE...: those that are not installed, one a line.
missing() {
    local package
    for package in "$@"; do
        [[ "$(dpkg-query -W -f='<${db:Status-Status}>' "$package" 2> /dev/null)" == *'<installed>'* ]] || echo "$package"
    done
}

as_root() {
    if [[ $EUID -eq 0 ]]; then
        "$@"
    elif command -v sudo > /dev/null; then
        sudo "$@"
    else
        fail "packages are missing, and this is neither root nor a user with sudo: $*"
    fi
}

apt_updated=no

# apt_install PACKAGE...: installs without asking; shows apt's words only when it fails.
apt_install() {
    local log status=0
    log="$(mktemp)"
    if [[ $apt_updated == no ]]; then
        as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300 update > "$log" 2>&1 || status=$?
        apt_updated=yes
    fi
    # An update that failed in part may still know all packages; the installation tells.
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 install \
        --no-install-recommends "$@" >> "$log" 2>&1 || { status=$?; cat "$log" >&2; rm -f "$log"; return "$status"; }
    rm -f "$log"
}

# install_missing: whatever the build and the tests need and the machine has not.
install_missing() {
    if ! command -v dpkg-query > /dev/null; then
        note "this is no Debian or Ubuntu: have the equivalents of these installed: ${packages[*]}"
        return
    fi
    local -a absent=()
    mapfile -t absent < <(missing "${packages[@]}")
    [[ ${#absent[@]} -eq 0 ]] && return
    note "installing: ${absent[*]}"
    apt_install "${absent[@]}" || fail "not all packages could be installed"
}

# configure PRESET: quiet unless it fails.
configure() {
    local log="$project/build/$1/configure.log"
    mkdir -p "$project/build/$1"
    (cd "$project" && cmake --preset "$1") > "$log" 2>&1 || { cat "$log" >&2; return 1; }
}

# build PRESET [TARGET...]: configures and builds; quiet unless it fails.
build() {
    local preset="$1" log="$project/build/$1/build.log" target
    local -a targets=()
    shift
    for target in "$@"; do targets+=(--target "$target"); done
    configure "$preset" || return 1
    note "building (preset $preset), log in $log"
    cmake --build "$project/build/$preset" "${targets[@]}" > "$log" 2>&1 || {
        grep -v '^\[[0-9]*/[0-9]*\]' "$log" >&2
        return 1
    }
}
