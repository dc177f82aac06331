# SPDX-License-Identifier: Apache-2.0
# The portal: a file with what may follow its name in an address, or an address. Sourced.
# shellcheck shell=bash disable=SC2154 # what is asked for comes from options.sh and layout.sh

# file_url FILE: its address, whatever characters its name has.
file_url() {
    realpath -z -- "$1" |
        perl -0pe 's/\0$//; s/([^A-Za-z0-9\/._~-])/sprintf("%%%02X", ord($1))/ge; s/^/file:\/\//'
}

# url_file URL: the file of a file: address.
url_file() {
    perl -e '$_ = $ARGV[0]; s/^file:\/\/(localhost)?//; s/[?#].*//s; s/%([0-9A-Fa-f]{2})/chr(hex $1)/ge; print' -- "$1"
}

is_address() { [[ $1 == *://* || $1 == about:* || $1 == data:* ]]; }

# The file of the portal, empty if it is on a server.
portal_file() {
    if [ -z "$portal" ]; then
        echo "$demo_portal/index.html"
    elif [ -d "$portal" ]; then
        echo "${portal%/}/index.html"
    elif [ -e "$portal" ]; then
        echo "$portal"
    elif [[ $portal == file://* ]]; then
        url_file "$portal"
    elif ! is_address "$portal"; then
        echo "${portal%%[?#]*}"
    fi
}

portal_folder() {
    local file
    file=$(portal_file)
    [ -z "$file" ] || dirname -- "$(realpath -- "$file")"
}

# Ends with what is wrong with the portal, if that can be told.
check_portal() {
    local file
    file=$(portal_file)
    if [ -n "$file" ]; then
        [ -f "$file" ] || [[ $portal == file://* ]] || [ -d "$portal" ] ||
            fail "there is no file $file; an address needs its scheme, as in http://$portal"
        [ -f "$file" ] || fail "there is no file $file"
        [ -r "$file" ] || fail "the file $file may not be read"
        return 0
    fi
    [[ ${portal,,} =~ ^(https?://[^/?#]|about:|data:) ]] ||
        fail "$portal is no address that the box loads; those are http://HOST/..., https://HOST/... and files"
    local place=${portal#*://} after_colon=':([^]:@]+)$'
    place=${place%%[/?#]*}
    [[ $portal == *://* && $place =~ $after_colon ]] || return 0
    local port=${BASH_REMATCH[1]}
    is_port "$port" || fail "$portal: there is no port $port, they go from 1 to 65535"
}

portal_address() {
    local file
    file=$(portal_file)
    if [ -z "$portal" ]; then
        echo "$(file_url "$file")${screenshot:+?autoplay=1}"
    elif [ -z "$file" ] || [[ $portal == file://* ]]; then
        echo "$portal"
    elif [ -e "$portal" ]; then
        file_url "$file"
    else
        echo "$(file_url "$file")${portal:${#file}}"
    fi
}
