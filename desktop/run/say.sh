# SPDX-License-Identifier: Apache-2.0
# What the scripts of this folder say to the person at the terminal. Sourced.
# shellcheck shell=bash

# How this person started it; what is told to type begins with this.
me=${VESPREL_RUN_AS:-${0##*/}}

say() { echo "${me##*/}: $*" >&2; }

fail() {
    say "$@"
    exit 1
}
