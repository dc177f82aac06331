# SPDX-License-Identifier: Apache-2.0
# Debian packages that building, running and testing need. Sourced by run.sh and test.sh.
# shellcheck shell=bash disable=SC2034 # the lists are used by those

build_packages="cmake g++ ninja-build qtbase5-dev libqt5webkit5-dev
  libxcb1-dev libxcb-xtest0-dev pkg-config"
# What the desktop receiver plays and records with, and what shows the video below the portal.
# bwrap keeps what they and the pages do out of the files of whoever works here.
play_packages="mpv ffmpeg picom bubblewrap"
# What the driver of boxes is built with, and what its boxes run on.
driver_packages="libcpp-httplib-dev xvfb"
screenshot_packages="xvfb xauth imagemagick"
# What the tests run beside the programs; without them some of the tests are skipped.
test_packages="mpv ffmpeg xdotool openbox x11-utils $driver_packages python3-pytest python3-selenium"
# What packaging/cross needs, beside the compiler of an architecture and what its emulator needs.
cross_packages="mmdebstrap dpkg-dev"
emulator_packages="qemu-user $play_packages $screenshot_packages xdotool"
# What .ci/lint runs on C++ and on shell scripts; the scripts' linter comes from npm.
lint_packages="clang-format clang-tidy clazy shellcheck"

# install_missing PACKAGE...: installs what is not there, as root or through sudo.
install_missing() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
            missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq \
        --no-install-recommends "${missing[@]}" >/dev/null
}
