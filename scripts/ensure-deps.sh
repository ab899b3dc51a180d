#!/usr/bin/env bash
# Installs the Debian packages the build needs, and only those that are missing, so that a
# second run costs nothing. Sourced by run.sh and test.sh; call ensure_packages with a set name.
set -euo pipefail

BUILD_PACKAGES=(cmake ninja-build g++ pkg-config libzstd-dev zlib1g-dev libcli11-dev
                nlohmann-json3-dev qt6-base-dev libgl-dev fonts-dejavu-core)
# A virtual screen, for looking at the desktop where there is no display.
SCREEN_PACKAGES=(xvfb xauth)
# clang-format is the house style's judge: test.sh fails on a file it would write otherwise.
# dbus-daemon: a private session bus for the keep-awake test. poppler-utils: pdftoppm renders
# a printed page for the print test.
TEST_PACKAGES=(googletest libgtest-dev libgmock-dev libbenchmark-dev clang-format dbus-daemon
               poppler-utils)
FUZZ_PACKAGES=(clang-14 libclang-rt-14-dev)

missing_packages() {
    local package
    for package in "$@"; do
        if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
            printf '%s\n' "$package"
        fi
    done
}

ensure_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ "${#missing[@]}" -eq 0 ] && return 0
    echo "Installing missing packages: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}
