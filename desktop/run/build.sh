# SPDX-License-Identifier: Apache-2.0
# Builds what runs, in a checkout. Sourced by run.sh.
# shellcheck shell=bash disable=SC2154 # $here comes from run.sh

# Whether this checkout can hold its build: it can be written, and CMake can do with its name.
holds_build() {
    [[ $here != *[\#\"\;\\\<\>]* ]] && mkdir -p "$here/build/desktop" 2>/dev/null &&
        [ -w "$here/build/desktop" ]
}

# Prints the folder of the build: in the checkout, otherwise in the user's cache.
build_folder() {
    if holds_build; then
        echo "$here/build/desktop"
    else
        echo "${XDG_CACHE_HOME:-$HOME/.cache}/vesprel/$(printf '%s' "$here" | md5sum | cut -c1-8)/build"
    fi
}

configure() { # configure FOLDER
    local source=$here
    if [ "$1" != "$here/build/desktop" ]; then
        # By a name that CMake can do with.
        source=${1%/build}/source
        ln -sfn "$here" "$source"
    fi
    (cd "$source" && cmake --preset desktop -B "$1")
}

# build FOLDER TARGET...: says little where there is little to do.
build() {
    local folder=$1 log=$1/run.log steps
    shift
    mkdir -p "$folder" || fail "$folder cannot be made"
    [[ $folder == "$here"/* ]] || say "building in $folder, since $here can't hold the build"
    # Packages that came later bring targets that were not there.
    { ninja -C "$folder" build.ninja && ninja -C "$folder" -n "$@"; } >"$log" 2>&1 ||
        configure "$folder" >"$log" 2>&1 || {
        cat "$log" >&2
        fail "the build can't be configured, see above"
    }
    steps=$(ninja -C "$folder" -n "$@" | grep -c '^\[' || true)
    if [ "$steps" -gt 10 ] && [ -t 1 ]; then
        NINJA_STATUS="Building %f of %t: " ninja -C "$folder" "$@" || fail "the build failed, see above"
        return
    fi
    [ "$steps" -le 10 ] || echo "Building $steps steps, which takes some minutes"
    ninja -C "$folder" --quiet "$@" >"$log" 2>&1 || {
        cat "$log" >&2
        fail "the build failed, see above"
    }
}
