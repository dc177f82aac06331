#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs what is missing, builds and runs all tests: ./test.sh [PRESET...], by default "desktop".
# The presets that have tests are "desktop" and "sanitize".
set -euo pipefail
cd "$(dirname "$0")"
. packaging/packages.sh

# shellcheck disable=SC2086 # a list of words
install_missing $build_packages $test_packages

for preset in "${@:-desktop}"; do
    cmake --preset "$preset" -DVESPREL_WERROR=ON
    cmake --build --preset "$preset"
    ctest --preset "$preset"
done
