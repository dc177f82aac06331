#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Makes the clips of the demo portal with ffmpeg: demo_clips.sh FOLDER. What is there stays.
set -euo pipefail
folder=$1
mkdir -p "$folder"
# Ends ffmpeg with this script, and leaves no half of a clip.
encoder=
trap '[ -z "$encoder" ] || kill -KILL "$encoder" 2>/dev/null; rm -f "$folder"/*.part.$$' EXIT
trap 'exit 1' TERM INT HUP

# clip FILE SECONDS PICTURE HERTZ:LANGUAGE...: each tone is an audio track.
clip() {
    local file=$folder/$1 seconds=$2 source=$3
    shift 3
    [ ! -e "$file" ] || return 0
    local inputs=(-f lavfi -i "$source") maps=(-map 0:v) number=0 tone
    for tone in "$@"; do
        inputs+=(-f lavfi -i "sine=frequency=${tone%%:*}:sample_rate=24000")
        maps+=(-map $((number + 1)):a "-metadata:s:a:$number" "language=${tone##*:}")
        number=$((number + 1))
    done
    # Under another name until it is whole.
    nice ffmpeg -nostdin -hide_banner -loglevel error -y "${inputs[@]}" "${maps[@]}" -t "$seconds" \
        -c:v mpeg2video -q:v 6 -g 12 -c:a mp2 -b:a 32k -f "${format:-mpegts}" "$file.part.$$" &
    encoder=$!
    wait "$encoder"
    encoder=
    mv "$file.part.$$" "$file"
}

size=size=640x360
small=320x180
clip first.ts 60 "testsrc2=$size:rate=25" 440:eng
clip harbour.ts 60 "smptehdbars=$size:rate=25" 330:eng 550:deu
clip countdown.ts 10 "testsrc=$size:rate=25" 880:eng
format=mp4 clip railway.mp4 90 "gradients=size=$small:rate=25:speed=0.05" 220:eng
clip channel.ts 300 "rgbtestsrc=$size:rate=25" 440:eng 660:fra
format=matroska clip night.mkv 7200 "color=c=midnightblue:size=$small:rate=1" 110:eng
