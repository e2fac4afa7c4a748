#!/usr/bin/env bash
# Installs what building (and with "test", testing) needs on Debian 12 and later or Ubuntu 24.04 and later.
# Installs only what is missing, says what it does, and prints nothing when there is nothing to do.
#
#   tools/setup.sh build|test
set -euo pipefail

# What it takes to build and run.
build_packages=(
    g++ cmake ninja-build ccache
    pkgconf qt6-base-dev qt6-declarative-dev qt6-svg-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
    qt6-webengine-dev libqt6webenginecore6-bin
    qcoro-qt6-dev libqrcodegencpp-dev libxcb1-dev libsodium-dev
    qml6-module-qtquick qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
    nodejs npm
)

# What the tests run, check with, or meet: compilers' tools, stock tools, servers, a container engine, a service
# manager, shells.
test_packages=(
    clang-16 clang-tidy-16 clang-format-16 libclang-rt-16-dev libgtest-dev libgmock-dev
    lsof procps iproute2 util-linux git man-db
    python3 nodejs php-cli postgresql redis-server nginx-light
    docker.io iptables busybox-static
    systemd dbus
    bash-completion zsh fish
    dunst xvfb openbox xdotool xdg-utils trayer picom x11-xkb-utils libxcb-xtest0-dev
    desktop-file-utils appstream libglib2.0-bin
    at-spi2-core python3-pyatspi
    xdg-desktop-portal libkf5globalaccel-bin
)

die() {
    echo "setup: $*" >&2
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "'$*' needs root, and there is no sudo. Run it as root once, then try again."
    fi
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# A command that is there by other means needs no package.
has_command_of() {
    case $1 in
    nodejs) command -v node ;;
    cmake) command -v cmake ;;
    g++) command -v g++ ;;
    git) command -v git ;;
    npm) command -v npm ;;
    ninja-build) command -v ninja ;;
    python3) command -v python3 ;;
    *) false ;;
    esac >/dev/null
}

# Debian starts a server as soon as it is installed. The tests start their own, on ports of their own, so nothing
# new may begin to listen on this machine (invoke-rc.d(8), policy-rc.d).
without_starting_services() {
    local policy=/usr/sbin/policy-rc.d
    if [ -e "$policy" ]; then
        "$@"
        return
    fi
    printf '#!/bin/sh\nexit 101\n' | as_root tee "$policy" >/dev/null
    as_root chmod 755 "$policy"
    local status=0
    "$@" || status=$?
    as_root rm -f "$policy"
    return "$status"
}

apt() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=120 -qq "$@"
}

install_missing() {
    local missing=()
    local package
    for package in "$@"; do
        is_installed "$package" || has_command_of "$package" || missing+=("$package")
    done
    [ "${#missing[@]}" -gt 0 ] || return 0
    echo "setup: installing ${missing[*]}"
    local log
    log=$(mktemp)
    if ! apt update >"$log" 2>&1 ||
        ! without_starting_services apt install -y --no-install-recommends "${missing[@]}" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        die "could not install ${missing[*]}"
    fi
    rm -f "$log"
}

main() {
    cd "$(dirname "${BASH_SOURCE[0]}")/.."
    command -v apt-get >/dev/null && command -v dpkg-query >/dev/null ||
        die "this needs Debian or Ubuntu; elsewhere install the counterparts of: ${build_packages[*]}"
    case ${1:-} in
    build) install_missing "${build_packages[@]}" ;;
    test) install_missing "${build_packages[@]}" "${test_packages[@]}" ;;
    *) die "usage: tools/setup.sh build|test" ;;
    esac
    tools/icons.sh
}

main "$@"
