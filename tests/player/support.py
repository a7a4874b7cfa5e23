"""What the player's process tests share: shows in temp folders, runs with a time limit, pictures, Xvfb."""

import ctypes
import json
import os
import re
import shutil
import struct
import subprocess
import tempfile
import threading
import time
import unittest
import zlib
from pathlib import Path

from system import COMMAND, WINDOWS, environment, text_of

TIME_LIMIT = 60.0  # seconds for one run; only a hang takes so long, even on a busy machine

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

    rows = b"".join(b"\0" + pixels[y * width * 4:(y + 1) * width * 4] for y in range(height)) if pixels else b"\0"
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def read_png(path):
    """Width, height and RGB bytes, top row first, of an 8 bit RGB picture."""
    data = Path(path).read_bytes()
    assert data[:8] == b"\x89PNG\r\n\x1a\n", f"{path} is no PNG"
    at, packed = 8, b""
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + size]
        if kind == b"IHDR":
            width, height, *form = struct.unpack(">IIBBBBB", body)
            assert form[:2] == [8, 2] and form[4] == 0, f"{path}: not 8 bit RGB without interlacing: {form}"
        packed += body if kind == b"IDAT" else b""
        at += size + 12
    raw, stride = zlib.decompress(packed), width * 3
    above, rows = bytearray(stride), []
    for y in range(height):
        method = raw[y * (stride + 1)]
        row = bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for x in range(stride):
            left, up = row[x - 3] if x >= 3 else 0, above[x]
            corner = above[x - 3] if x >= 3 else 0
            near = min((left, up, corner), key=lambda c: abs(left + up - corner - c))
            row[x] = (row[x] + (0, left, up, (left + up) // 2, near)[method]) & 255
        rows.append(bytes(row))
        above = row
    return width, height, b"".join(rows)


def entry(type, start=0, duration=1, **fields):
    return {"id": fields.pop("id", type), "type": type, "start": start, "duration": duration, **fields}


def show(*entries, loop=False, size=(4, 4), **more):
    return {"globals": {"width": size[0], "height": size[1], "loop": loop}, "entries": list(entries), **more}


class Result:
    def __init__(self, code, out, err, seconds):
        self.code, self.out, self.seconds = code, out, seconds
        self.log = text_of(out)
        self.err = text_of(err)


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
        home = Path(name).parent
        for type, source in SHADERS.items():
            needle = f'"{type}"'
            if needle in (text if isinstance(text, str) else text.decode(errors="replace")):
                self.write(home / f"assets/shaders/{type}/{type}.frag", source)
                self.write(home / f"assets/shaders/{type}/{type}.vert", VERTEX)
                if type == "echo":
                    self.write(home / "assets/shaders/echo/echoBufferA.frag", ECHO_BUFFER)
        return path

    def run_player(self, *arguments, code=0, env=None, time_limit=TIME_LIMIT, **more):
        """Runs to the end; the exit code must be `code`, and no run may be longer than the limit."""
        begun = time.monotonic()
        process = subprocess.Popen([*COMMAND, *map(str, arguments)], stdout=more.pop("stdout", subprocess.PIPE),
                                   stderr=subprocess.PIPE, stdin=subprocess.DEVNULL, cwd=self.folder,
                                   env=environment(env), **more)
        try:
            out, err = process.communicate(timeout=time_limit)
        except subprocess.TimeoutExpired:
            process.kill()
            out, err = process.communicate()
            self.fail(f"still running after {time_limit} s: {arguments}\n{out!r}\n{err!r}")
        result = Result(process.returncode, out or b"", err, time.monotonic() - begun)
        if code is not None:
            self.assertEqual(result.code, code, f"{arguments}\n{result.log[-4000:]}\n{result.err[-4000:]}")
        return result

    def play(self, config, *arguments, **more):
        """Plays a show without a display; by default just its first picture."""
        return self.run_player("--headless", *(arguments or ["--length", "0.02"]), self.write_show(config), **more)

    def frames(self, config, *arguments, size=(1, 1), **more):
        """The raw RGBA frames of a show as lists of pixels, and the result; the log is in `err`."""
        result = self.run_player("-o", "-", "--size", "%dx%d" % size, *arguments, self.write_show(config), **more)
        pixels, count = result.out, size[0] * size[1]
        self.assertEqual(len(pixels) % (4 * count), 0, "whole frames")
        frames = [[tuple(pixels[at + 4 * i:at + 4 * i + 4]) for i in range(count)]
                  for at in range(0, len(pixels), 4 * count)]
        return frames, result

    def assert_log(self, log, expected):
        """Compares a whole log: `{folder}` stands for the show's, `...` for the driver's own words."""
        log = re.sub(r"^\[GL\] .+", "[GL] ...", log, flags=re.M)
        log = re.sub(r"^(\[(?:SHADER|LINK) ERROR\] .*:\n)(?:(?!  ?\[|\[).*\n)+", r"\1...\n", log, flags=re.M)
        self.assertEqual(log, expected.replace("{folder}", str(self.folder)))

    def assert_one_line(self, text, *parts):
        self.assertRegex(text, r"\A[^\n]+\n\Z", "exactly one line")
        for part in parts:
            self.assertIn(part, text)


class LivePlayer:
    """A player that runs while the test steers it; its log is read as it comes."""

    def __init__(self, test, *arguments, env=None, log="stdout"):
        self.process = subprocess.Popen([*COMMAND, *map(str, arguments)], stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, cwd=test.folder, env=environment(env))
        self.test, self.lines, self.next = test, [], 0
        self.changed = threading.Condition()
        self.others = []
        pipes = [self.process.stdout, self.process.stderr]
        log_pipe, other_pipe = pipes if log == "stdout" else pipes[::-1]
        self.readers = [threading.Thread(target=self._read, args=(log_pipe, self.lines), daemon=True),
                        threading.Thread(target=self._read, args=(other_pipe, self.others), daemon=True)]
        for reader in self.readers:
            reader.start()
        test.addCleanup(self._close)

    def _read(self, pipe, lines):
        for line in pipe:
            with self.changed:
                lines += text_of(line).splitlines()
                self.changed.notify_all()
        with self.changed:
            self.changed.notify_all()

    def _close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        for reader in self.readers:
            reader.join()
        self.process.stdout.close()
        self.process.stderr.close()

    def wait_for(self, pattern, limit=30.0):
        """The match of the first log line that fits, of those not waited for before."""
        deadline = time.monotonic() + limit
        with self.changed:
            while True:
                while self.next < len(self.lines):
                    self.next += 1
                    if match := re.search(pattern, self.lines[self.next - 1]):
                        return match
                ended = not self.readers[0].is_alive()
                if ended or not self.changed.wait(min(0.5, max(0.0, deadline - time.monotonic()))):
                    if ended or time.monotonic() >= deadline:
                        break
        self.test.fail(f"no line {pattern!r}; the log:\n" + "\n".join(self.lines + self.others))

    def end(self, code=0, limit=30.0):
        """Waits for the process; its last log lines."""
        try:
            ended = self.process.wait(limit)
        except subprocess.TimeoutExpired:
            self.test.fail("the player does not end; the log:\n" + "\n".join(self.lines + self.others))
        for reader in self.readers:
            reader.join()
        self.test.assertEqual(ended, code, "\n".join(self.lines[-5:] + self.others))
        return self.lines[-2:]


class Display:
    """A screen: an Xvfb of the test's own, on a display number that the server chooses. Wine's desktop stays on the
    display that it began on, so there it is the one that the test was given, and other tests draw on it too."""

    def __init__(self, test, size="320x240"):
        self.server = None
        if WINDOWS:
            self.env = {"DISPLAY": os.environ["DISPLAY"]}
        else:
            self._start_server(test, size)
        self.x11 = ctypes.CDLL("libX11.so.6")
        for name, result in (("XOpenDisplay", ctypes.c_void_p), ("XInternAtom", ctypes.c_ulong),
                             ("XDefaultRootWindow", ctypes.c_ulong), ("XGetImage", ctypes.c_void_p),
                             ("XGetPixel", ctypes.c_ulong)):
            getattr(self.x11, name).restype = result
        # Where a request fails the library would end the whole process.
        self.ignore_error = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: 0)
        self.x11.XSetErrorHandler(self.ignore_error)
        self.size = "x".join(self.xdotool("getdisplaygeometry"))

    def _start_server(self, test, size):
        reading, writing = os.pipe()
        # With the last window gone it would reset itself and refuse the next one meanwhile.
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", size + "x24",
                                        "-nolisten", "tcp", "-noreset"], pass_fds=[writing],
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        test.addCleanup(self._close)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        test.assertTrue(number, "Xvfb gave no display")
        self.env = {"DISPLAY": ":" + number, "SDL_VIDEODRIVER": "x11"}

    def _close(self):
        self.server.terminate()
        self.server.wait()

    def xdotool(self, *arguments):
        done = subprocess.run(["xdotool", *map(str, arguments)], env=environment(self.env), check=True, timeout=30,
                              stdout=subprocess.PIPE)
        return done.stdout.decode().split()

    def window(self):
        """Waits for the player's window and gives it the keyboard."""
        title = "^Quillon DemoScene - Native Player$"
        for _ in range(10):
            try:
                window = self.xdotool("search", "--sync", "--onlyvisible", "--name", title)[0]
                self.xdotool("windowfocus", "--sync", window)
                return window
            except subprocess.CalledProcessError:
                time.sleep(0.1)  # a window that goes away meanwhile, any window, ends the search
        raise AssertionError("the player's window cannot be had")

    def _open(self):
        return ctypes.c_void_p(self.x11.XOpenDisplay(self.env["DISPLAY"].encode()))

    def ask_to_close(self, window):
        """What a window manager sends for the close button."""
        x11, display = self.x11, self._open()
        atoms = [x11.XInternAtom(display, name, 0) for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW")]
        # An XClientMessageEvent in native layout: type, serial, send_event, display, window, kind, format, data.
        client_message = 33
        event = struct.pack("iLiPLLi5l", client_message, 0, 1, 0, int(window), atoms[0], 32, atoms[1], 0, 0, 0, 0)
        x11.XSendEvent(display, ctypes.c_ulong(int(window)), 0, ctypes.c_long(0), event.ljust(192, b"\0"))
        x11.XCloseDisplay(display)

    def pixel(self, x, y, window=None):
        """RGB as it is seen, of a window or of the screen; None outside, and where a window is not on the screen."""
        x11, display = self.x11, self._open()
        all_planes, z_pixmap, color = ctypes.c_ulong(0xffffffff), 2, None
        place = ctypes.c_ulong(int(window) if window else x11.XDefaultRootWindow(display))
        image = ctypes.c_void_p(x11.XGetImage(display, place, x, y, 1, 1, all_planes, z_pixmap))
        if image:
            value = x11.XGetPixel(image, 0, 0)
            x11.XDestroyImage(image)
            color = value >> 16 & 255, value >> 8 & 255, value & 255
        x11.XCloseDisplay(display)
        return color
