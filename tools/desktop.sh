#!/usr/bin/env bash
# Runs a command, and the Windows programs that it starts, on a desktop that nobody sees:
# tools/desktop.sh COMMAND [arguments...]. The desktop is an X server with a window manager.
set -euo pipefail

tools=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
if [[ ${1-} != --inside ]]; then
    exec xvfb-run -a -s '-screen 0 1280x1024x24 -nolisten tcp -noreset' "$tools/desktop.sh" --inside "$@"
fi
shift

export WINEPREFIX=${WINEPREFIX:-${tools%/*}/build/wine}
# Those of an earlier desktop know nothing of this one.
[[ ! -d $WINEPREFIX ]] || wineserver --kill || true
"$tools/wine.sh"
openbox --sm-disable >/dev/null 2>&1 &
manager=$!
for ((tries = 0; tries < 100; tries++)); do
    ! xdotool get_num_desktops >/dev/null 2>&1 || break # only a window manager knows the answer
    sleep 0.1
done
# Wine's services and its desktop begin with the first window and end after the last one. They begin with one that
# stays: others would have to begin them anew, and hand them their output, whose end is then waited for in vain.
"$tools/wine.sh" start /min notepad >/dev/null 2>&1
timeout 120 xdotool search --sync --class notepad >/dev/null
code=0
"$@" || code=$?
wineserver --kill || true
kill "$manager" 2>/dev/null || true
exit "$code"
