# SPDX-License-Identifier: Apache-2.0
# A folder to start a portal from. Sourced.
# shellcheck shell=bash disable=SC2154 # what is asked for comes from options.sh and layout.sh

make_portal() {
    [ ! -e "$new" ] || [ -d "$new" ] || fail "--new: $new is a file"
    [ -z "$(ls -A -- "$new" 2>/dev/null)" ] || fail "--new: $new is not empty, and nothing of it is touched"
    # The license of ours is not that of what becomes of it.
    mkdir -p -- "$new" && cp -R -- "$template/." "$new" && chmod -R u+w -- "$new" &&
        sed -i '/SPDX-License-Identifier/d' "$(realpath -- "$new")"/*.* ||
        fail "--new: $new cannot be made"
    local index
    index=$(printf '%q' "${new%/}/index.html")
    cat <<EOT
Made $new. Next:

    $me --watch $index

and change a file of it: the box shows it as soon as it is saved. README.md there tells the rest.
EOT
}
