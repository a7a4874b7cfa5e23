"""How the player's tests run it on the system that it was built for: Linux, or Windows by way of Wine."""

import os
import re

PLAYER = os.path.abspath(os.environ["QUILLON_PLAYER"])
WINDOWS = PLAYER.endswith(".exe")
# Wine's runner, which has the prefix.
RUNNER = [os.environ["QUILLON_WINE"]] if WINDOWS else []
COMMAND = [*RUNNER, PLAYER]


def environment(changes=None):
    """Without a display unless one is named; None takes a variable away. On Windows no picture is drawn without
    a desktop, so the display stays."""
    displays = {} if WINDOWS else {"DISPLAY": None, "WAYLAND_DISPLAY": None}
    merged = {**os.environ, **displays, **(changes or {})}
    return {name: value for name, value in merged.items() if value is not None}


def text_of(output):
    """What a program said, with the line ends and paths of Linux: drive Z is the root of its files."""
    text = output.decode(errors="surrogateescape")
    if not WINDOWS:
        return text
    text = text.replace("\r\n", "\n")
    text = re.sub(r"Z:(\\[^\s\"|<>*?:]*)", lambda path: path.group(1).replace("\\", "/"), text)
    return re.sub(r"\A\[WIN\] DPI awareness: (Per-monitor v2|System)\n", "", text)
