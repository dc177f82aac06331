#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Installs what is missing, then builds and tests what it is told to, one after the other: see --help.
set -euo pipefail
cd "$(dirname "$0")"
. packaging/packages.sh
. .ci/stage.sh

usage() {
    cat <<EOT
Usage: ./test.sh [WHAT...]

Installs what is missing, then does one after the other:

  desktop       builds everything and runs all tests (the default)
  sanitize      the same under AddressSanitizer and UBSan
  tsan          the tests of what runs in more than one thread, under ThreadSanitizer
  box           the build for a box, without tests
  i386          all tests on 32 bits, under sanitizers
  armhf, arm64  all tests, in an emulator
  lint          all linters
  fuzz          every fuzzer for a moment
  desk          all tests of run.sh, of which the others run the quick ones
  bench         measures briefly and compares with what was kept
  soak          two minutes of soak/run
  coverage      which lines the tests run
  mutate        how many faults the tests see
EOT
}

# ".ci/run" joins sources: most of their time goes into the headers that they share. Where something
# is built already it stays as it is.
joined=()
bench_preset=bench
case ${1:-} in
--help | -h) usage; exit 0 ;;
--joined)
    # Nobody debugs what is built here.
    joined=(-DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=12
        "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O2 -DNDEBUG")
    bench_preset=desktop # Optimised enough, and built already.
    shift
    ;;
-*) usage >&2; exit 2 ;;
esac

# Where something of it is missing, tests skip themselves. A person without a network may live with
# that; what judges a change, with nobody at a terminal, must not pass by leaving tests out.
install_test_packages() {
    # shellcheck disable=SC2086 # a list of words
    ! install_missing $test_packages || return 0
    [ -t 0 ] && [ ${#joined[@]} -eq 0 ] || return 1
    echo "Not all of this could be installed, see above: some tests will be skipped." >&2
}

# Real windows, keys and processes on a machine that does something else as well: a test that fails
# gets a second go, and the report tells so.
run_tests() { # run_tests PRESET
    local status=0 runner=()
    rm -f "build/$1"/races/*
    # Some kernels draw addresses from more bits than the sanitizers leave free: programs would end as
    # they start. Containers may forbid to go without.
    case $1 in
    sanitize | tsan) ! setarch -R true 2>/dev/null || runner=(setarch -R) ;;
    esac
    "${runner[@]}" ctest --preset "$1" --repeat until-pass:2 || status=$?
    # A race counts also where the second go did not meet it.
    if cat "build/$1"/races/* 2>/dev/null; then
        status=1
    fi
    return $status
}

# shellcheck disable=SC2086 # a list of words
stage install install_missing $build_packages
for target in "${@:-desktop}"; do
    case $target in
    lint | box | bench | soak | fuzz) ;; # Run no tests; what else these need they install below.
    *)
        stage "install for tests" install_test_packages
        break
        ;;
    esac
done

lint_failed=
for target in "${@:-desktop}"; do
    if [ "$target" = lint ]; then
        # What the linters find stops no test from running.
        .ci/lint || lint_failed=yes
        continue
    fi
    case $target in
    desk)
        # shellcheck disable=SC2086 # a list of words
        stage "desk: install" install_missing $desk_packages
        stage "desk: configure" cmake --preset desktop
        stage "desk: build" cmake --build --preset desktop --target vesprel vesprel-receiver \
            vesprel-inspector vesprel-fresh-pages
        stage "desk: test" tests/desk/run build/desktop
        continue
        ;;
    bench)
        # shellcheck disable=SC2086 # a list of words
        stage "bench: install" install_missing $bench_packages
        stage "bench: measure" bench/run --short --check --preset "$bench_preset"
        continue
        ;;
    soak)
        # shellcheck disable=SC2086 # a list of words
        stage "soak: install" install_missing $soak_packages
        stage "soak: configure" cmake --preset desktop -DVESPREL_WERROR=ON
        stage "soak: build" cmake --build --preset desktop --target vesprel
        # The same night each time: what others bring is for those who look for it.
        stage "soak: two minutes" soak/run 2 2026
        continue
        ;;
    coverage)
        # shellcheck disable=SC2086 # a list of words
        stage "coverage: install" install_missing $coverage_packages
        stage "coverage: configure" cmake --preset coverage
        stage "coverage: build" cmake --build --preset coverage
        stage "coverage: test" tests/tools/coverage --missing
        continue
        ;;
    mutate)
        # It has to know which test runs what.
        [ -f build/coverage/lines/whole ] || ./test.sh coverage
        # shellcheck disable=SC2086 # a list of words
        stage "mutate: install" install_missing $mutation_packages
        stage "mutate: try" tests/tools/mutate
        continue
        ;;
    fuzz)
        stage "fuzz: build and run" fuzz/run --seconds 10
        continue
        ;;
    armhf | arm64 | i386)
        packaging/cross/build "$target" test
        continue
        ;;
    esac
    options=(-DVESPREL_WERROR=ON)
    [ -f "build/$target/CMakeCache.txt" ] || options+=("${joined[@]}")
    stage "$target: configure" cmake --preset "$target" "${options[@]}"
    stage "$target: build" cmake --build --preset "$target"
    if [ "$target" != box ]; then
        stage "$target: test" run_tests "$target"
    fi
done

if [ -n "$lint_failed" ]; then
    echo "The linters found something, see above." >&2
    exit 1
fi
