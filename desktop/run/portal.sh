# SPDX-License-Identifier: Apache-2.0
# The address of the portal. Sourced.
# shellcheck shell=bash disable=SC2154 # what is asked for comes from options.sh and layout.sh

# file_url FILE: its address, whatever characters its name has.
file_url() {
    realpath -z "$1" | perl -0pe 's/\0$//; s/([^A-Za-z0-9\/._~-])/sprintf("%%%02X", ord($1))/ge; s/^/file:\/\//'
}

portal_address() {
    if [ -z "$portal" ]; then
        echo "$(file_url "$demo_portal/index.html")${screenshot:+?autoplay=1}"
    elif [ -e "$portal" ]; then
        file_url "$portal"
    else
        case $portal in
        *://*) echo "$portal" ;;
        *) fail "there is no file $portal, and an address needs its scheme, as in http://$portal" ;;
        esac
    fi
}
