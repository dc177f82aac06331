# SPDX-License-Identifier: Apache-2.0
# Sourced by what runs in stages, so that a log tells which one it is in and what each has cost.
# shellcheck shell=bash

# stage NAME COMMAND...: runs the command, and tells its time and the processors' share of it.
stage() {
    local name=$1
    shift
    echo "==> $name"
    local TIMEFORMAT="==> $name took %0R s (CPU %0U s user, %0S s system)"
    time "$@"
}
