#!/usr/bin/env bash
# Builds the player if need be and plays a show; without a display it renders the show to a video and a
# contact sheet of stills.
set -euo pipefail

usage() {
    cat <<'TEXT'
Usage: ./play.sh [SHOW] [player options...]

SHOW is a show's JSON file or a folder with a config.json; shows/showcase when left out.

In a graphical session the show opens in its window. Without one (neither DISPLAY nor WAYLAND_DISPLAY is set)
it is rendered to build/show/NAME/: a video with the music, and a contact sheet, stills with their times, whose
path is printed last; of the player's options --fps, --size, --start and --end are useful there. SHOW --help lists them all.

Packages that are missing on a Debian system are installed first, through sudo where needed.
TEXT
}

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source=tools/setup.sh
. "$root/tools/setup.sh"

# The name under which a show's pictures are kept: its folder's, or the file's own unless that is config.json.
showName() {
    local name=${1##*/}
    if [[ $name == config.json ]]; then
        name=$(cd "$(dirname "$1")" && pwd -P)
    fi
    name=${name##*/}
    name=${name%.json}
    printf '%s' "${name:-show}"
}

# optionValue NAME DEFAULT [options...]: the value that the last such option gives.
optionValue() {
    local name=$1 value=$2
    shift 2
    while (($#)); do
        case $1 in
        "$name") value=${2-} ;;
        "$name"=*) value=${1#*=} ;;
        esac
        shift
    done
    printf '%s' "$value"
}

kStillsRate=2 # a second of video

# WIDTHxHEIGHT of the picture that is rendered unless told otherwise: small, in the show's own aspect.
renderSize() {
    local width='' height='' rows=360 most=1280
    read -r width height < <("$player" "$show" --headless --length 0 2>/dev/null |
        sed -n 's/^\[WIN\] Client size: \([0-9]*\)x\([0-9]*\) .*/\1 \2/p') || true
    width=$(((rows * ${width:-16} / ${height:-9} + 1) / 2 * 2))
    printf '%dx%d' "$((width < 2 ? 2 : width > most ? most : width))" "$rows"
}

# Renders the show to a video and prints its path and the contact sheet's; returns the player's exit code.
renderShow() {
    local output video begin code=0
    output=$root/build/show/$(showName "$show")
    video=$output/$(showName "$show").mp4
    rm -rf "$output"
    mkdir -p "$output"

    say "No display: rendering $show to $video" \
        "(a minute of show takes about two minutes without a graphics card)"
    "$player" "$show" -o "$video" --fps 25 --size "$(renderSize)" "$@" >"$output/player.log" || code=$?
    if ((code)); then
        tail -n 20 "$output/player.log" >&2
        say "The player ended with exit code $code; its whole log is $output/player.log"
        return "$code"
    fi

    # Unless told otherwise a show begins with its first entry.
    begin=$(sed -n \
        's/^\[TIMELINE\] Visual range \([0-9.]*\)s .*/\1/p;T;q' "$output/player.log")
    say "Contact sheet"
    ffmpeg -nostdin -v error -i "file:$video" -vf "fps=$kStillsRate" -start_number 0 "file:${output//%/%%}/frame-%05d.png"
    printf '%s\n' "$video"
    "$root/tools/contact_sheet.sh" "$output" "$kStillsRate" "$(optionValue --start "${begin:-0}" "$@")"
}

show=$root/shows/showcase/config.json
case ${1-} in
-h | --help)
    usage
    exit
    ;;
'' | -*) ;;
*)
    show=$1
    shift
    [[ ! -d $show ]] || show=${show%/}/config.json
    ;;
esac
[[ -f $show ]] || die "no show at $show"

# Someone who names an output or asks for no window has decided how to play.
window=yes
[[ -n ${DISPLAY-}${WAYLAND_DISPLAY-} ]] || window=no
for option in "$@"; do
    case $option in
    -o | -o=* | --o | --o=* | --headless | --still | --still=* | -h | --help | --version) window=decided ;;
    esac
done

packages=("${kPlayerPackages[@]}")
[[ $window != no ]] || packages+=("${kContactSheetPackages[@]}")
installMissing "${packages[@]}"

# The tests' packages are not assumed; test.sh turns the tests on in the same folder.
isConfigured release || configure release -DQUILLON_TESTS=OFF -DQUILLON_BENCH=OFF
buildTargets release --target quillon-player
player=$root/build/release/quillon-player

if [[ $window == no ]]; then
    renderShow "$@"
else
    say "Playing $show"
    exec "$player" "$show" "$@"
fi
