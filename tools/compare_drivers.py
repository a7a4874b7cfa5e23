#!/usr/bin/env python3
"""Draws shows on several software drivers of Mesa and counts the pixels that differ from llvmpipe's.

Each show is drawn at evenly spaced times over its whole length, and of every driver the worst picture is printed.
Two of the drivers are llvmpipe itself with the shaders' coordinates nudged by a few of a float's last bits, up or
down: where an edge lies exactly on pixel centres, rows or columns of the picture change.

The exit code is 1 where a picture has more such pixels than the driver's bound, else 77 where a driver is not there
(zink needs lavapipe, Debian's mesa-vulkan-drivers), else 0.
"""

import argparse
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import zlib
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
SHOWS = [ROOT / "shows" / name / "config.json" for name in ("gallery", "showcase", "legacy")]
REFERENCE = "llvmpipe"
NUDGES = {"nudged-down": -4e-7, "nudged-up": 4e-7}
# Share of a picture's pixels that may differ. Zink's shaders come out of the same code generator; softpipe
# interprets them, filters with other weights and has its own sines.
BOUNDS = {"zink": 0.002, "softpipe": 0.01, "nudged-down": 0.002, "nudged-up": 0.002}
FAR = 8  # steps of 255 in a channel, beyond which a pixel differs
SKIPPED = 77


def length_of(show):
    """Seconds that a show lasts: that of a timeline, or of scenes one after the other."""
    def end(entries):
        return max(entry.get("start", entry.get("delay", 0)) + entry["duration"] for entry in entries)

    config = json.loads(show.read_text())
    return end(config["entries"]) if "entries" in config else sum(end(scene["entries"]) for scene in config["scenes"])


def nudged(show, by, folder):
    """A copy of the show, below `folder`, whose pictures' coordinates are off by that."""
    copy = folder / "show"
    shutil.copytree(show.parent, copy)
    for shader in copy.rglob("*.frag"):
        shader.write_text(shader.read_text().replace("in vec2 vUV;", f"in vec2 vUV;\n#define vUV (vUV + vec2({by}))", 1))
    return copy / show.name


def draw(player, driver, show, times, size):
    """The show's pictures at `times` as RGBA bytes, or None where the driver is not there."""
    with tempfile.TemporaryDirectory() as folder:
        frames = Path(folder) / "frames.rgba"
        if driver in NUDGES:
            show, driver = nudged(show, NUDGES[driver], Path(folder)), REFERENCE
        command = [player, show, "-o", frames, "--size", "%dx%d" % size, "--still", ",".join("%.4f" % t for t in times)]
        env = {**os.environ, "LIBGL_ALWAYS_SOFTWARE": "1", "GALLIUM_DRIVER": driver, "XDG_RUNTIME_DIR": folder}
        run = subprocess.run([*map(str, command)], env=env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, text=True, errors="replace")
        named = re.search(r"^\[GL\] (.*)", run.stdout, re.M)
        if not named or not named[1].startswith(driver):
            print(f"{driver} is not there: {named[1] if named else run.stdout[-300:].strip() or 'no words'}")
            return None
        if run.returncode:
            sys.exit(f"{show}: the player ended with {run.returncode} on {driver}:\n{run.stdout[-2000:]}")
        data, picture = frames.read_bytes(), 4 * size[0] * size[1]
    if len(data) != picture * len(times):
        sys.exit(f"{show}: {len(data)} bytes on {driver} instead of {len(times)} pictures of {picture}")
    return [data[at:at + picture] for at in range(0, len(data), picture)]


def differing(one, other):
    """Numbers of the pixels that differ."""
    if one == other:
        return set()
    return {i >> 2 for i, (a, b) in enumerate(zip(one, other)) if a - b > FAR or b - a > FAR}


def write_png(path, width, rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    head = struct.pack(">IIBBBBB", width, len(rows), 8, 6, 0, 0, 0)
    pixels = zlib.compress(b"".join(b"\0" + row for row in rows))
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", pixels) + chunk(b"IEND", b""))


def write_beside(path, one, other, far, size):
    """The reference's picture, the other, and where they differ, side by side."""
    width, height = size
    mask = b"".join(b"\xff\xff\xff\xff" if i in far else b"\0\0\0\xff" for i in range(width * height))
    rows = [b"".join(p[y * 4 * width:(y + 1) * 4 * width] for p in (one, other, mask)) for y in range(height)]
    write_png(path, 3 * width, rows)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("shows", nargs="*", type=Path, default=SHOWS, help="descriptions; default: the bundled shows")
    parser.add_argument("--player", type=Path, default=ROOT / "build/release/quillon-player")
    parser.add_argument("--drivers", default=",".join(BOUNDS), help="to compare with llvmpipe; default: %(default)s")
    parser.add_argument("--times", type=int, default=30, metavar="N", help="pictures a show")
    parser.add_argument("--size", default="320x180", metavar="WxH")
    parser.add_argument("--pictures", type=Path, metavar="FOLDER",
                        help="where the worst picture of each show and driver is put, and those above the bound, beside llvmpipe's")
    options = parser.parse_args()
    drivers = options.drivers.split(",")
    if unknown := set(drivers) - set(BOUNDS):
        parser.error(f"no bound is known for {', '.join(sorted(unknown))}")
    size = tuple(int(side) for side in options.size.split("x"))
    if options.pictures:
        options.pictures.mkdir(parents=True, exist_ok=True)

    above, missing, row = 0, False, "{:10} {:12} {:>8} {:>10} {:>9} {:>9} {:>6}"
    print(row.format("show", "driver", "pictures", "worst at", "differs", "mean", "took"))
    for show in options.shows:
        name, length = show.resolve().parent.name, length_of(show)
        times = [length * (k + 0.5) / options.times for k in range(options.times)]
        reference = draw(options.player, REFERENCE, show, times, size)
        if reference is None:
            return SKIPPED
        for driver in drivers:
            start = time.monotonic()
            drawn = draw(options.player, driver, show, times, size)
            if drawn is None:
                missing = True
                continue
            far = [differing(one, other) for one, other in zip(reference, drawn)]
            shares = [len(pixels) / (size[0] * size[1]) for pixels in far]
            worst, bound = shares.index(max(shares)), BOUNDS[driver]
            print(row.format(name, driver, len(times), f"{times[worst]:.3f} s", f"{100 * shares[worst]:.3f} %",
                             f"{100 * sum(shares) / len(times):.3f} %", f"{time.monotonic() - start:.0f} s"), flush=True)
            for k, share in enumerate(shares):
                if share > bound:
                    above += 1
                    print(f"  {name} at {times[k]:.3f} s: {100 * share:.3f} % on {driver}, at most {100 * bound:g} % may differ")
                if options.pictures and (share > bound or k == worst):
                    path = options.pictures / f"{name}-{driver}-{times[k]:07.3f}.png"
                    write_beside(path, reference[k], drawn[k], far[k], size)
    return 1 if above else SKIPPED if missing else 0


if __name__ == "__main__":
    sys.exit(main())
