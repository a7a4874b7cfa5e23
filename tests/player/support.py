"""What the player's process tests share: shows in temp folders, runs of the player, and a screen."""

import array
import ctypes
import json
import os
import re
import shutil
import signal
import struct
import subprocess
import tempfile
import time
import unittest
import wave
import zlib
from pathlib import Path

from system import COMMAND, WINDOWS, environment, text_of

CONTROL_C = 0x3A  # what is left in an exit code of Windows' own
TIME_LIMIT = 120.0  # seconds for whatever is waited for; only a hang takes so long, even on a busy machine

# What a shell starts in the background ignores this one, and so would the players.
signal.signal(signal.SIGINT, signal.default_int_handler)

# One fragment shader a name; shows take those that their entries ask for.
HEADER = """#version 330 core
in vec2 vUV;
out vec4 FragColor;
uniform float iTime, uAlpha;
uniform int iFrame;
"""
SHADERS = {
    # The colour that "params" name.
    "plain": HEADER + "uniform vec4 uColor; void main() { FragColor = vec4(uColor.rgb, uColor.a * uAlpha); }",
    # Milliseconds of local time, low byte in red, high byte in green; the frame counter in blue.
    "clock": HEADER + """void main() {
        int ms = int(floor(iTime * 1000.0 + 0.5));
        FragColor = vec4(float(ms & 255), float(ms >> 8), float(iFrame & 255), 255.0) / 255.0;
    }""",
    "textured": HEADER + "uniform sampler2D iChannel0; void main() { FragColor = texture(iChannel0, vUV); }",
    "echo": HEADER + "uniform sampler2D uBufferA; void main() { FragColor = texture(uBufferA, vUV); }",
    "broken": HEADER + "void main() { FragColor = nonsense; }",
    # Its third frame takes minutes, if it is large: software drivers end a longer loop.
    "endless": HEADER + """void main() {
        float x = vUV.x;
        for (int i = 0; i < (iFrame > 2 ? 60000 : 1); ++i) x = fract(x * 1.7 + 0.3);
        FragColor = vec4(x);
    }""",
    # White in the frame that begins each half second.
    "flash": HEADER + "void main() { FragColor = vec4(vec3(mod(iTime + 0.005, 0.5) < 0.045), 1.0); }",
}
# Each frame of the feedback is a little lighter than the last, more so towards the right.
ECHO_BUFFER = HEADER + """uniform sampler2D uBufferA; void main() {
    FragColor = vec4(texture(uBufferA, vUV).rgb + vec3(8.0, 1.0 + floor(vUV.x * 4.0), 0.0) / 255.0, 1.0);
}"""
VERTEX = """#version 330 core
layout(location = 0) in vec2 aPos;
layout(location = 1) in vec2 aUV;
out vec2 vUV;
void main() { vUV = aUV; gl_Position = vec4(aPos, 0.0, 1.0); }
"""


def png(width, height, pixels=None):
    """A PNG of RGBA bytes, top row first; without pixels a picture that only claims its size."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = [pixels[y * width * 4:(y + 1) * width * 4] for y in range(height)] if pixels else [b""]
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(b"".join(b"\0" + row for row in rows))) + chunk(b"IEND", b""))


def write_wav(path, channels, rate, samples):
    with wave.open(str(path), "wb") as file:
        file.setparams((channels, 2, rate, 0, "NONE", ""))
        file.writeframes(array.array("h", samples))


def entry(type, start=0, duration=1, **fields):
    return {"id": fields.pop("id", type), "type": type, "start": start, "duration": duration, **fields}


def show(*entries, loop=False, size=(4, 4), **more):
    return {"globals": {"width": size[0], "height": size[1], "loop": loop}, "entries": list(entries), **more}


def output_of(*command, **more):
    """What another program prints."""
    options = {"check": True, "timeout": TIME_LIMIT, "stdout": subprocess.PIPE, **more}
    return subprocess.run([*map(str, command)], **options).stdout


def beside_the_log(text):
    """What standard error holds beside the log."""
    return "".join(line for line in text.splitlines(True) if not re.match(r" *\[|===", line))


class Player:
    """A run of the player, whose output can be read while it goes on."""

    def __init__(self, test, *arguments, command=COMMAND, env=None, **more):
        self.test, self.searched = test, 0
        self.files = {name: tempfile.TemporaryFile() for name in ("stdout", "stderr")}
        self.process = subprocess.Popen([*command, *map(str, arguments)], stdin=subprocess.DEVNULL,
                                        env=environment(env), **{"cwd": test.folder, **self.files, **more})
        test.addCleanup(self._close)

    def _close(self):
        self.process.kill()
        self.process.wait()
        for file in self.files.values():
            file.close()

    def read(self, name):
        file = self.files[name].fileno()
        return os.pread(file, os.fstat(file).st_size, 0)  # the file's own position is where the player writes

    @property
    def out(self):
        return self.read("stdout")

    @property
    def log(self):
        return text_of(self.out)

    @property
    def err(self):
        return text_of(self.read("stderr"))

    def fail(self, problem):
        self.test.fail(f"{problem}: {self.process.args}\n{self.log[-4000:]}\n{self.err[-4000:]}")

    def wait_for(self, pattern, where="log"):
        """The first match of a pattern in the log, behind the one that was waited for before."""
        deadline = time.monotonic() + TIME_LIMIT
        while True:
            is_last = self.process.poll() is not None or time.monotonic() > deadline
            if match := re.compile(pattern, re.M).search(getattr(self, where), self.searched):
                self.searched = match.end()
                return match
            if is_last:
                self.fail(f"no {pattern!r}")
            time.sleep(0.02)

    def interrupt_twice(self, where="log"):
        """Does not let a large show of "endless" end its frame. The second time it ends as by the system, but for a
        machine so busy that the frame had not begun."""
        self.wait_for(r"\[PLAY\]", where)
        time.sleep(1)  # less tests less
        self.process.send_signal(signal.SIGINT)
        time.sleep(0.5)
        self.process.send_signal(signal.SIGINT)
        return self.end((1, CONTROL_C if WINDOWS else -signal.SIGINT))

    def end(self, code=0):
        """Waits for the end, with one of the exit codes `code`; the player itself."""
        try:
            ended = self.process.wait(TIME_LIMIT)
        except subprocess.TimeoutExpired:
            self.fail("it does not end")
        # Wine kills a program that takes half a second to leave, as on a busy machine, and its code is lost.
        lost = WINDOWS and ended == -signal.SIGKILL and "[DONE]" in self.log + self.err
        if not lost and ended not in (code if isinstance(code, tuple) else (code,)):
            self.fail(f"it ended with {ended}")
        return self


class PlayerTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="quillon-")).resolve()
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, content):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode(errors="surrogateescape"))
        return path

    def write_show(self, config, name="config.json"):
        """A show with the shaders that its entries use; `config` is a show, or a file's text or bytes."""
        text = config if isinstance(config, (str, bytes)) else json.dumps(config, ensure_ascii=False)
        path = self.write(name, text)
        home = Path(name).parent / "assets/shaders"
        for type, source in SHADERS.items():
            if f'"{type}"' in (text if isinstance(text, str) else text.decode(errors="replace")):
                self.write(home / f"{type}/{type}.frag", source)
                self.write(home / f"{type}/{type}.vert", VERTEX)
                self.write(home / "echo/echoBufferA.frag", ECHO_BUFFER)
        return path

    def run_player(self, *arguments, code=0, **more):
        return Player(self, *arguments, **more).end(code)

    def play(self, config, *arguments, name="config.json", **more):
        """Plays a show without a display; by default just its first picture."""
        arguments = arguments or ("--length", 0.12)  # a frame at least: none is longer than a tenth of a second
        return self.run_player("--headless", *arguments, self.write_show(config, name), **more)

    def frames(self, config, *arguments, size=(1, 1), **more):
        """The raw RGBA frames of a show as lists of pixels, and the run; the log is in `err`."""
        run = self.run_player("-o", "-", "--size", "%dx%d" % size, *arguments, self.write_show(config), **more)
        pixels, count = run.out, size[0] * size[1]
        self.assertEqual(len(pixels) % (4 * count), 0, "whole frames")
        frames = [[tuple(pixels[at + 4 * i:at + 4 * i + 4]) for i in range(count)]
                  for at in range(0, len(pixels), 4 * count)]
        return frames, run

    def assert_log(self, log, expected):
        """Compares a whole log: `{folder}` stands for the show's, `...` for the driver's own words."""
        log = re.sub(r"^\[GL\] .+", "[GL] ...", log, flags=re.M)
        log = re.sub(r"^(\[(?:SHADER|LINK) ERROR\] .*:\n)(?:(?!  ?\[|\[).*\n)+", r"\1...\n", log, flags=re.M)
        self.assertEqual(log, expected.replace("{folder}", str(self.folder)))

    def assert_one_line(self, text, *parts):
        self.assertRegex(text, r"\A[^\n]+\n\Z", "exactly one line")
        for part in parts:
            self.assertIn(part, text)


class Display:
    """A screen: an Xvfb of the test's own, on a display number that the server chooses. Wine's desktop stays on
    the display that it began on, so there it is the one that the test was given, and others draw on it too."""

    def __init__(self, test):
        self.env = {"DISPLAY": os.environ["DISPLAY"]} if WINDOWS else self._start_server(test)
        self.size = "x".join(self.xdotool("getdisplaygeometry"))

    def _start_server(self, test):
        reading, writing = os.pipe()
        # With the last window gone it would reset itself and refuse the next one meanwhile.
        command = f"Xvfb -displayfd {writing} -screen 0 320x240x24 -nolisten tcp -noreset"
        self.server = subprocess.Popen(command.split(), pass_fds=[writing], stderr=subprocess.DEVNULL)
        test.addCleanup(self.server.wait)
        test.addCleanup(self.server.terminate)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            return {"DISPLAY": ":" + pipe.readline().strip(), "SDL_VIDEODRIVER": "x11"}

    def xdotool(self, *arguments):
        return output_of("xdotool", *arguments, env=environment(self.env)).decode().split()

    def window(self):
        """Waits for the player's window and gives it the keyboard."""
        name = "^Quillon DemoScene - Native Player$"
        deadline = time.monotonic() + TIME_LIMIT
        while True:
            try:
                window = self.xdotool("search", "--sync", "--onlyvisible", "--name", name)[0]
                self.xdotool("windowfocus", "--sync", window)
                return window
            except subprocess.CalledProcessError:  # any window that goes away meanwhile ends the search
                if time.monotonic() > deadline:
                    raise
                time.sleep(0.1)

    def ask_to_close(self, window):
        """What a window manager sends for the close button."""
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        display = ctypes.c_void_p(x11.XOpenDisplay(self.env["DISPLAY"].encode()))
        atoms = [x11.XInternAtom(display, name, 0) for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW")]
        # An XClientMessageEvent: type, serial, send_event, display, window, kind, format, data, padding.
        event = struct.pack("iLiPLLi5l96x", 33, 0, 1, 0, int(window), atoms[0], 32, atoms[1], 0, 0, 0, 0)
        x11.XSendEvent(display, ctypes.c_ulong(int(window)), 0, ctypes.c_long(0), event)
        x11.XCloseDisplay(display)

    def pixel(self, x, y, window="root"):
        """RGB as it is seen, of a window or of the screen; something else where neither is."""
        place = ("-window", window, "-crop", f"1x1+{x}+{y}", "-depth", 8)
        quiet = {"env": environment(self.env), "check": False, "stderr": subprocess.DEVNULL}
        return tuple(output_of("import", "-silent", *place, "rgb:-", **quiet))
