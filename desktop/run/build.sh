# SPDX-License-Identifier: Apache-2.0
# Builds what runs, in a checkout. Sourced by run.sh.
# shellcheck shell=bash disable=SC2154 # $here comes from run.sh

# Prints the folder of the build: in the checkout, or in the user's cache if that can't be written.
build_folder() {
    local folder=$here/build/desktop
    if ! mkdir -p "$folder" 2>/dev/null || [ ! -w "$folder" ]; then
        folder=${XDG_CACHE_HOME:-$HOME/.cache}/vesprel/build/$(printf '%s' "$here" | md5sum | cut -c1-8)
        mkdir -p "$folder"
    fi
    echo "$folder"
}

# build FOLDER TARGET...: says little where there is little to do.
build() {
    local folder=$1 log=$1/run.log steps
    shift
    [[ $folder == "$here"/* ]] || say "$here can't be written, so the programs are built in $folder"
    # Packages that came later bring targets that were not there.
    ninja -C "$folder" -n "$@" >"$log" 2>&1 || cmake -S "$here" --preset desktop -B "$folder" >"$log" 2>&1 || {
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
