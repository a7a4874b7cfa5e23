#!/usr/bin/env bash
# contact_sheet.sh DIRECTORY FPS [START]: makes DIRECTORY/contact-sheet.png, a grid of at most 24 evenly
# spaced stills out of DIRECTORY/frame-*.png, each with its time, and prints its path. FPS is the number of
# frames a second, START the time of the first frame: seconds or [hh:]mm:ss.
set -euo pipefail
export LC_ALL=C # decimal points in awk

kMaxStills=24
kColumns=6
kFont=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf

die() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

(($# == 2 || $# == 3)) || die "usage: contact_sheet.sh DIRECTORY FPS [START]"
fps=$2
start=${3-0}
kDecimal='([0-9]+\.?[0-9]*|\.[0-9]+)'
[[ $fps =~ ^$kDecimal$ ]] || die "no frames a second: $fps"
[[ $start =~ ^([0-9]+:){0,2}$kDecimal$ ]] || die "no time: $start"
command -v montage >/dev/null || die "montage is missing; it comes with ImageMagick"

# From inside the folder, because ImageMagick reads colons, brackets and percent signs in a path as orders.
cd "$1" 2>/dev/null || die "no folder $1"
shopt -s nullglob
frames=(frame-*.png)
total=${#frames[@]}
((total > 0)) || die "no frame-*.png in $1"
stills=$((total < kMaxStills ? total : kMaxStills))
columns=$((stills < kColumns ? stills : kColumns))

arguments=()
for ((still = 0; still < stills; still++)); do
    frame=$(((2 * still + 1) * total / (2 * stills))) # the middle of each of the equal parts
    label=$(awk -v frame="$frame" -v fps="$fps" -v start="$start" 'BEGIN {
        parts = split(start, part, ":")
        for (i = 1; i <= parts; i++) seconds = seconds * 60 + part[i]
        tenths = int((seconds + frame / fps) * 10 + 0.5)
        printf "%d:%02d.%d", tenths / 600, (tenths % 600) / 10, tenths % 10
    }')
    # The size in brackets shrinks each frame as it is read, so large frames do not add up in memory.
    arguments+=(-label "$label" "${frames[frame]}[320x320]")
done

font=()
[[ ! -e $kFont ]] || font=(-font "$kFont")
montage -background '#14141a' -fill '#d8d8e0' "${font[@]}" -pointsize 18 "${arguments[@]}" \
    -tile "${columns}x" -geometry '+6+6' contact-sheet.png || die "montage could not make the contact sheet"
printf '%s/contact-sheet.png\n' "$(pwd -P)"
