#!/usr/bin/env bash
# Builds the player's packages; see usage below.
set -euo pipefail

usage() {
    cat <<'TEXT'
Usage: ./package.sh

Builds the player for Linux and for Windows and makes of it, in build/packages/:

  quillon-player_VERSION_amd64.deb     the player as /usr/bin/quillon-player, its shows below
                                       /usr/share/quillon-player/shows
  quillon-player-VERSION-win64.zip     the player, showcase and gallery, to unpack anywhere

Packages that are missing on a Debian system are installed first, through sudo where needed.
TEXT
}

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source=tools/setup.sh
. "$root/tools/setup.sh"

case ${1-} in
'') ;;
-h | --help)
    usage
    exit
    ;;
*) die "unknown argument '$1'; --help shows the usage" ;;
esac

installMissing "${kPlayerPackages[@]}" "${kWindowsPackages[@]}" "${kPackagingPackages[@]}"

mkdir -p "$root/build/packages"
rm -f "$root"/build/packages/quillon-player[-_]*
for preset in release windows; do
    # The tests' packages are not assumed; test.sh turns the tests on in the same folders.
    isConfigured "$preset" || configure "$preset" -DQUILLON_TESTS=OFF -DQUILLON_BENCH=OFF
    buildTargets "$preset" --target quillon-player
    say "Packing build/$preset"
    (cd "$root/build/$preset" && cpack --config CPackConfig.cmake >"$root/build/packages/$preset.log" 2>&1) || {
        tail -n 20 "$root/build/packages/$preset.log" >&2
        die "packing failed"
    }
done
ls "$root"/build/packages/quillon-player[-_]*
