#!/usr/bin/env bash
# Makes docs/showcase.jpg, the README's picture, out of stills of the showcase. Needs a built player.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

frames=$(mktemp -d)
trap 'rm -rf "$frames"' EXIT
build/release/quillon-player shows/showcase/config.json -o "$frames/%02d.png" --size 480x270 \
    --still 4,11,17,21.2,28.5,46 >"$frames/log"
# The feedback scene lives on the frames before, so its picture comes from a run.
build/release/quillon-player shows/showcase/config.json -o "$frames/run-%04d.png" --size 480x270 --fps 30 \
    --start 34 --end 36.5 >>"$frames/log"
build/release/quillon-player shows/showcase/config.json -o "$frames/last.png" --size 480x270 --still 53.7 >>"$frames/log"
montage "$frames"/0[0-4].png "$frames/run-0074.png" "$frames/05.png" "$frames/last.png" -background '#0b0d14' \
    -tile 2x -geometry '+3+3' -quality 88 docs/showcase.jpg
