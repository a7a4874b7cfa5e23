#!/usr/bin/env bash
# Runs a Windows program: tools/wine.sh PROGRAM [arguments...]. The Wine prefix is build/wine, or WINEPREFIX, and
# is made once.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
export WINEPREFIX=${WINEPREFIX:-$root/build/wine}
export WINEDEBUG=${WINEDEBUG:--all}
# Neither .NET nor a browser is needed, nor entries in the desktop's menus, nor a debugger that waits for somebody when a
# program crashes.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d"
# File names are taken for UTF-8 only in such a locale.
export LC_ALL=C.UTF-8
# A fault of Mesa's software rasterizer, which the Linux player avoids by itself (platform/linux/surface.cpp).
export LP_PERF=${LP_PERF:-no_rast_linear}

# Debian's loader of Wine stands at a fixed address below a page that every Windows program has at 0x7ffe0000. The
# heap behind it begins at a random place, and about once in a thousand starts on that page: the program then ends
# before its first word, with code 1. Some containers forbid the remedy.
wine=(wine)
! setarch --addr-no-randomize true 2>/dev/null || wine=(setarch --addr-no-randomize wine)

if [[ ! -e $WINEPREFIX/made ]]; then
    mkdir -p "$WINEPREFIX"
    exec 9>"$WINEPREFIX/lock"
    flock 9
    if [[ ! -e $WINEPREFIX/made ]]; then
        # What runs on in the background has not seen this test run's display.
        DISPLAY='' "${wine[@]}" wineboot --init >"$WINEPREFIX/made.log" 2>&1 9>&-
        wineserver --wait 9>&-
        touch "$WINEPREFIX/made"
    fi
    exec 9>&-
fi
(($#)) || exit 0
exec "${wine[@]}" "$@"
