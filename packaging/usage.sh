# SPDX-License-Identifier: Apache-2.0
# Sourced by scripts that take no options, with their line of use in $usage: answers --help, before
# anything is installed or built.
# shellcheck shell=bash disable=SC2154 # usage is theirs

wrong_usage() {
    echo "Usage: $usage" >&2
    exit 2
}

case ${1:-} in
--help | -h)
    echo "Usage: $usage"
    exit 0
    ;;
-*) wrong_usage ;;
esac
