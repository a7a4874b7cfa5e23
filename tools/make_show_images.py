#!/usr/bin/env python3
"""Draws every picture the shows use and writes it below shows/.

All shapes are signed distance functions: strokes, arcs and polygons on a unit em,
y upwards, cap height 1. A picture is either the coverage of those distances
(for entries of type "image") or the distances themselves (for shaders, which then
stay sharp at any output size). The same code always yields the same bytes.

Usage: make_show_images.py [shows directory]
"""

import math
import struct
import sys
import zlib
from array import array
from pathlib import Path

from gallery_table import captions

BONE = (242, 235, 222)
EMBER = (255, 78, 38)
STEEL = (112, 166, 198)
INK = (7, 9, 17)

FAR = 1e9


# ---- PNG ---------------------------------------------------------------------------

def write_png(path, width, height, rows, channels):
    """rows: one bytes object a row, top row first, `channels` bytes a pixel (3 or 4)."""

    def chunk(tag, data):
        body = tag + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    raw = bytearray()
    previous = bytes(width * channels)
    for row in rows:
        # "Up" suits flat lettering and smooth distances alike.
        raw.append(2)
        raw += bytes((a - b) & 255 for a, b in zip(row, previous))
        previous = row
    header = struct.pack(">IIBBBBB", width, height, 8, 2 if channels == 3 else 6, 0, 0, 0)
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
                     + chunk(b"IDAT", zlib.compress(bytes(raw), 9)) + chunk(b"IEND", b""))
    print(f"{path}  {width}x{height}  {path.stat().st_size} bytes")


# ---- distance functions --------------------------------------------------------------
# A shape is (bounding box, function of x and y); negative inside, in em.

def stroke(x0, y0, x1, y1, h, extend=0.0):
    """A straight bar of half width h with square-cut ends, lengthened by extend at both."""
    length = math.hypot(x1 - x0, y1 - y0)
    ux, uy = (x1 - x0) / length, (y1 - y0) / length
    cx, cy, half = (x0 + x1) / 2, (y0 + y1) / 2, length / 2 + extend

    def distance(x, y):
        px, py = x - cx, y - cy
        a = abs(px * ux + py * uy) - half
        b = abs(py * ux - px * uy) - h
        if a > 0 and b > 0:
            return math.hypot(a, b)
        return max(a, b)

    reach = h + extend
    box = (min(x0, x1) - reach, min(y0, y1) - reach, max(x0, x1) + reach, max(y0, y1) + reach)
    return box, distance


def arc(cx, cy, r, h, a0, a1):
    """A ring piece from a0 to a1 degrees, counter-clockwise, with square-cut ends.

    It is a hair longer, so that it overlaps the bar that it runs into: shapes that merely touch show a seam.
    """
    middle = math.radians((a0 + a1) / 2)
    half = min(math.radians((a1 - a0) / 2) + 0.02 / r, math.pi)
    ux, uy = math.cos(middle), math.sin(middle)
    ex, ey = math.cos(half), math.sin(half)

    def distance(x, y):
        px, py = x - cx, y - cy
        qx, qy = px * ux + py * uy, abs(py * ux - px * uy)
        if math.atan2(qy, qx) <= half:
            return abs(math.hypot(qx, qy) - r) - h
        across = abs(qx * ex + qy * ey - r) - h
        return math.hypot(max(across, 0.0), qy * ex - qx * ey)

    reach = r + h
    return (cx - reach, cy - reach, cx + reach, cy + reach), distance


def ring(cx, cy, r, h):
    reach = r + h
    return ((cx - reach, cy - reach, cx + reach, cy + reach),
            lambda x, y: abs(math.hypot(x - cx, y - cy) - r) - h)


def disc(cx, cy, r):
    return (cx - r, cy - r, cx + r, cy + r), lambda x, y: math.hypot(x - cx, y - cy) - r


def polygon(points):
    """Any simple polygon, either winding."""
    edges = list(zip(points, points[1:] + points[:1]))

    def distance(x, y):
        nearest, inside = FAR, False
        for (x0, y0), (x1, y1) in edges:
            dx, dy = x1 - x0, y1 - y0
            t = min(1.0, max(0.0, ((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy)))
            nearest = min(nearest, math.hypot(x - x0 - t * dx, y - y0 - t * dy))
            if (y0 > y) != (y1 > y) and x < x0 + (y - y0) * dx / dy:
                inside = not inside
        return -nearest if inside else nearest

    xs, ys = [p[0] for p in points], [p[1] for p in points]
    return (min(xs), min(ys), max(xs), max(ys)), distance


def clipped(shape, x0, y0, x1, y1):
    box, f = shape
    return ((max(box[0], x0), max(box[1], y0), min(box[2], x1), min(box[3], y1)),
            lambda x, y: max(f(x, y), x0 - x, x - x1, y0 - y, y - y1))


def cut(shape, hole):
    f, g = shape[1], hole[1]
    return shape[0], lambda x, y: max(f(x, y), -g(x, y))


def transformed(shape, s, ox, oy, turn=False):
    """Scaled by s, turned by half a circle when asked, then moved by (ox, oy)."""
    (x0, y0, x1, y1), f = shape
    k = -s if turn else s
    xs, ys = sorted((x0 * k + ox, x1 * k + ox)), sorted((y0 * k + oy, y1 * k + oy))
    return (xs[0], ys[0], xs[1], ys[1]), lambda x, y: f((x - ox) / k, (y - oy) / k) * s


# ---- lettering -----------------------------------------------------------------------
# A geometric capital alphabet of one stroke weight: full circles, half-circle bowls and
# straight bars. Diagonals run past the cap lines and are cut there, which gives flat apexes.

def glyph(ch, h):
    """(advance width, shapes) of a character whose strokes have half width h."""
    def diagonals(width, *lines):
        return width, [clipped(stroke(*l, h, 0.3), 0, 0, width, 1) for l in lines]

    def bowl(xc, y0, y1):
        r = (y1 - y0) / 2
        return [stroke(0, y0, xc, y0, h), stroke(0, y1, xc, y1, h), arc(xc, y0 + r, r, h, -90, 90)]

    top, mid, low = 1 - h, 0.5, h
    left = stroke(h, 0, h, 1, h)
    k = h * 1.12
    if ch == " ":
        return 0.38, []
    if ch == "A":
        w = 0.92
        _, shapes = diagonals(w, (k, 0, w / 2, 1 + h), (w - k, 0, w / 2, 1 + h))
        return w, shapes + [stroke(0.2, 0.27, w - 0.2, 0.27, h)]
    if ch == "B":
        r, xc = (1 - 2 * h) / 4, 0.34
        return xc + r + h, [left] + bowl(xc, mid, top) + bowl(xc, low, mid)
    if ch == "C":
        return 0.93, [arc(0.5, 0.5, 0.5 - h, h, 42, 318)]
    if ch == "D":
        return 0.8, [left] + bowl(0.3, low, top)
    if ch == "E":
        return 0.58, [left] + [stroke(0, y, x, y, h) for y, x in ((top, 0.58), (mid, 0.52), (low, 0.58))]
    if ch == "F":
        return 0.55, [left, stroke(0, top, 0.55, top, h), stroke(0, mid, 0.49, mid, h)]
    if ch == "G":
        return 0.98, [arc(0.5, 0.5, 0.5 - h, h, 42, 360), stroke(0.54, mid - h, 1, mid - h, h)]
    if ch == "H":
        return 0.76, [left, stroke(0.76 - h, 0, 0.76 - h, 1, h), stroke(0, mid, 0.76, mid, h)]
    if ch == "I":
        return 2 * h, [left]
    if ch == "J":
        r = 0.24 - h
        return 0.48, [arc(0.24, 0.24, r, h, 180, 360), stroke(0.48 - h, 0.24, 0.48 - h, 1, h)]
    if ch == "K":
        _, shapes = diagonals(0.74, (h, 0.34, 0.74 - k, 1), (0.28, 0.6, 0.74 - k, 0))
        return 0.74, [left, shapes[0], clipped(shapes[1], 0, 0, 0.74, 0.54)]
    if ch == "L":
        return 0.54, [left, stroke(0, low, 0.54, low, h)]
    if ch == "M":
        w = 0.96
        _, shapes = diagonals(w, (k, 1, w / 2, 0.14), (w - k, 1, w / 2, 0.14))
        return w, [clipped(s, 0, 0.14 - h, w, 1) for s in shapes] + [left, stroke(w - h, 0, w - h, 1, h)]
    if ch == "N":
        _, shapes = diagonals(0.8, (k, 1, 0.8 - k, 0))
        return 0.8, [left, stroke(0.8 - h, 0, 0.8 - h, 1, h)] + shapes
    if ch == "O":
        return 1.0, [ring(0.5, 0.5, 0.5 - h, h)]
    if ch == "P":
        r = (0.56 - h) / 2
        return 0.32 + r + h, [left] + bowl(0.32, top - 2 * r, top)
    if ch == "Q":
        return 1.0, [ring(0.5, 0.5, 0.5 - h, h), stroke(0.6, 0.4, 0.96, 0.04, h)]
    if ch == "R":
        r = (0.56 - h) / 2
        _, leg = diagonals(0.68, (0.26, 0.44, 0.68 - k, 0))
        return 0.68, [left] + bowl(0.32, top - 2 * r, top) + [clipped(leg[0], 0, 0, 0.7, top - 2 * r)]
    if ch == "S":
        r = (1 - 2 * h) / 4
        a, b = r + h, 0.3 + h
        w = b + r + h
        return w, [arc(a, mid + r, r, h, 90, 270), arc(b, mid - r, r, h, -90, 90),
                   stroke(a, top, w - 0.05, top, h), stroke(a, mid, b, mid, h), stroke(0.05, low, b, low, h)]
    if ch == "T":
        return 0.7, [stroke(0, top, 0.7, top, h), stroke(0.35, 0, 0.35, 1, h)]
    if ch == "U":
        r = 0.38 - h
        return 0.76, [arc(0.38, 0.38, r, h, 180, 360), stroke(h, 0.38, h, 1, h), stroke(0.76 - h, 0.38, 0.76 - h, 1, h)]
    if ch == "V":
        return diagonals(0.88, (k, 1, 0.44, -h), (0.88 - k, 1, 0.44, -h))
    if ch == "W":
        return diagonals(1.24, (k, 1, 0.34, -h), (0.62, 1 + h, 0.34, -h),
                         (0.62, 1 + h, 0.9, -h), (1.24 - k, 1, 0.9, -h))
    if ch == "X":
        return diagonals(0.82, (k, 1, 0.82 - k, 0), (0.82 - k, 1, k, 0))
    if ch == "Y":
        _, shapes = diagonals(0.84, (k, 1, 0.42, 0.42), (0.84 - k, 1, 0.42, 0.42))
        return 0.84, [clipped(s, 0, 0.42 - h, 0.84, 1) for s in shapes] + [stroke(0.42, 0, 0.42, 0.46, h)]
    if ch == "Z":
        _, shapes = diagonals(0.68, (k, 0, 0.68 - k, 1))
        return 0.68, shapes + [stroke(0, top, 0.68, top, h), stroke(0, low, 0.68, low, h)]
    if ch == "0":
        r = 0.31 - h
        return 0.62, [arc(0.31, 0.69, r, h, 0, 180), arc(0.31, 0.31, r, h, 180, 360),
                      stroke(h, 0.31, h, 0.69, h), stroke(0.62 - h, 0.31, 0.62 - h, 0.69, h)]
    if ch == "1":
        _, flag = diagonals(0.34, (0.34 - h, 1 - h, 0.02, 0.76))
        return 0.34, [stroke(0.34 - h, 0, 0.34 - h, 1, h), clipped(flag[0], 0, 0.6, 0.34, 1)]
    if ch == "2":
        r = 0.3 - h
        _, shapes = diagonals(0.6, (k, h, 0.3 + r * 0.8, 0.7 - r * 0.6))
        return 0.6, [arc(0.3, 0.7, r, h, -37, 180), clipped(shapes[0], 0, 0, 0.6, 0.72 - r * 0.6),
                     stroke(0, low, 0.6, low, h)]
    if ch in "38":
        r = (1 - 2 * h) / 4
        if ch == "8":
            return 2 * (r + h), [ring(r + h, mid + r, r, h), ring(r + h, mid - r, r, h)]
        return 2 * (r + h), [arc(r + h, mid + r, r, h, -90, 160), arc(r + h, mid - r, r, h, -160, 90)]
    if ch == "4":
        _, shapes = diagonals(0.68, (k, 0.28, 0.46, 1))
        return 0.68, [clipped(shapes[0], 0, 0.28 - h, 0.52, 1), stroke(0, 0.28, 0.68, 0.28, h),
                      stroke(0.5, 0, 0.5, 1, h)]
    if ch == "5":
        r = (0.62 - h) / 2
        return 0.26 + r + h, [arc(0.26, h + r, r, h, -110, 90), stroke(0.02, h + 2 * r, 0.26, h + 2 * r, h),
                              stroke(h + 0.02, h + 2 * r - h, h + 0.02, 1, h), stroke(0.02, top, 0.54, top, h)]
    if ch in "69":
        r = 0.32 - h
        _, shapes = diagonals(0.64, (0.32 - r * 0.94, 0.32 + r * 0.34, 0.42, 1))
        shapes = [ring(0.32, 0.32, r, h), clipped(shapes[0], 0, 0.34, 0.64, 1)]
        return 0.64, shapes if ch == "6" else [transformed(s, 1, 0.64, 1, True) for s in shapes]
    if ch == "7":
        _, shapes = diagonals(0.6, (0.16, 0, 0.6 - k, 1))
        return 0.6, shapes + [stroke(0, top, 0.6, top, h)]
    if ch == ".":
        return 2.4 * h, [disc(1.2 * h, 1.2 * h, 1.2 * h)]
    if ch == "_":
        return 0.5, [stroke(0.02, -h, 0.48, -h, h)]
    if ch == "-":
        return 0.4, [stroke(0.03, mid, 0.37, mid, h)]
    if ch == "/":
        return diagonals(0.44, (k, 0, 0.44 - k, 1))
    raise ValueError(f"no glyph for {ch!r}")


def lettering(text, h, spacing):
    """(width, shapes) of one line; the spacing between letters is in em."""
    shapes, x = [], 0.0
    for ch in text:
        width, parts = glyph(ch, h)
        shapes += [transformed(s, 1, x, 0) for s in parts]
        x += width + spacing
    return x - spacing, shapes


# ---- the dagger: the house mark and the I of the word mark ---------------------------

def dagger(blade, guard, thick=1.0):
    """Point down, guard on y = 0, blade length and guard half width in em."""
    b = 0.085 * thick
    fuller = polygon([(-0.014, -0.16), (0.014, -0.16), (0.0, -blade * 0.62)])
    edge = [(-b, -0.02), (b, -0.02), (b * 0.86, -blade * 0.72), (0, -blade), (-b * 0.86, -blade * 0.72)]
    arm = 0.055 * thick
    quillon = [(-guard, -0.075), (-guard - 0.015, 0.0), (-guard * 0.86, 0.012), (-0.1, arm), (0.1, arm),
               (guard * 0.86, 0.012), (guard + 0.015, 0.0), (guard, -0.075), (guard * 0.8, -0.05),
               (0.12, -arm), (-0.12, -arm), (-guard * 0.8, -0.05)]
    grip = [(-0.045, 0.05), (0.045, 0.05), (0.034, 0.44), (-0.034, 0.44)]
    pommel = [(0, 0.42), (0.085, 0.51), (0, 0.60), (-0.085, 0.51)]
    return [cut(polygon(edge), fuller), polygon(quillon), polygon(grip), polygon(pommel)]


def word_mark():
    """(width, letters, dagger) of QUILLON with the dagger standing in for the I."""
    h, spacing = 0.058, 0.27
    letters, blade, x = [], [], 0.0
    for ch in "QUILLON":
        if ch == "I":
            x += 0.13
            blade = [transformed(s, 1, x, 0.97) for s in dagger(1.72, 0.27)]
            x += 0.13 + spacing
            continue
        width, parts = glyph(ch, h)
        letters += [transformed(s, 1, x, 0) for s in parts]
        x += width + spacing
    return x - spacing, letters, blade


# ---- canvas --------------------------------------------------------------------------

class Field:
    """A grid of distances in pixels; shapes are merged into it with min."""

    def __init__(self, width, height):
        self.width, self.height = width, height
        self.d = array("f", [FAR]) * (width * height)

    def add(self, shapes, scale, ox, oy, spread=1.5):
        """Draws em shapes at scale pixels an em with the em origin at pixel (ox, oy), y down."""
        d, inverse = self.d, 1.0 / scale
        for (x0, y0, x1, y1), f in shapes:
            px0 = max(0, int(ox + x0 * scale - spread))
            px1 = min(self.width, int(ox + x1 * scale + spread) + 2)
            py0 = max(0, int(oy - y1 * scale - spread))
            py1 = min(self.height, int(oy - y0 * scale + spread) + 2)
            for py in range(py0, py1):
                y, row = (oy - py - 0.5) * inverse, py * self.width
                for px in range(px0, px1):
                    value = f((px + 0.5 - ox) * inverse, y) * scale
                    if value < d[row + px]:
                        d[row + px] = value
        return self

    def coverage(self):
        """0..255 a pixel, edges one pixel wide."""
        return bytes(int(255 * min(1.0, max(0.0, 0.5 - v)) + 0.5) for v in self.d)

    def distances(self, spread):
        """128 on the outline, 255 at `spread` pixels inside, 0 at as much outside."""
        return bytes(int(127.5 - 127.5 * max(-1.0, min(1.0, v / spread)) + 0.5) for v in self.d)


def flat_rgba(layers):
    """Rows of a picture from (coverage, colour) layers of one size, bottom layer first.

    Where nothing is drawn the colour of the first layer stays, so that filtering at the
    edges does not pull in black.
    """
    first, width, height = layers[0][0], layers[0][2], layers[0][3]
    out = bytearray(bytes((*layers[0][1], 0)) * (width * height))
    for i in range(3, len(out), 4):
        out[i] = first[i // 4]
    for cover, colour, _, _ in layers[1:]:
        for i, c in enumerate(cover):
            if c:
                o = i * 4
                alpha = out[o + 3]
                total = c + alpha * (255 - c) // 255
                for k in range(3):
                    out[o + k] = (colour[k] * c + out[o + k] * (total - c)) // total
                out[o + 3] = total
    stride = width * 4
    return [bytes(out[y * stride:(y + 1) * stride]) for y in range(height)]


def packed_rgb(red, green, blue, width, height):
    out = bytearray(width * height * 3)
    out[0::3], out[1::3], out[2::3] = red, green, blue
    return [bytes(out[y * width * 3:(y + 1) * width * 3]) for y in range(height)]


# ---- pictures ------------------------------------------------------------------------

def mark_shapes():
    """The dagger in a broken ring, about one em high, centred on the origin."""
    shapes = [transformed(s, 0.6, 0, 0.13) for s in dagger(1.01, 0.4, 0.95)]
    shapes += [arc(0, 0, 0.46, 0.008, a + 7, a + 83) for a in (0, 90, 180, 270)]
    shapes += [arc(0, 0, 0.43, 0.003, a + 12, a + 78) for a in (0, 90, 180, 270)]
    return shapes


def draw_mark(path, size, em, colour):
    cover = Field(size, size).add(mark_shapes(), em, size / 2, size / 2).coverage()
    write_png(path, size, size, flat_rgba([(cover, colour, size, size)]), 4)


def draw_tile(folder):
    """Seamless weave of daggers as distances: red daggers, green rings, blue diamonds."""
    size, spread = 384, 26

    def wrapped(shapes):
        field = Field(size, size)
        for ox in (-size, 0, size):
            for oy in (-size, 0, size):
                field.add(shapes, size, ox, size - oy, spread)
        return field.distances(spread)

    daggers = [transformed(s, 0.36, 0.25, 0.58) for s in dagger(1.16, 0.42, 1.5)]
    daggers += [transformed(s, 0.36, 0.75, 0.92, True) for s in dagger(1.16, 0.42, 1.5)]
    rings = [ring(0.25, 0.5, 0.3536, 0.009), ring(0.75, 0.0, 0.3536, 0.009)]
    gems = []
    for x, y in ((0.0, 0.75), (0.5, 0.25), (0.0, 0.25), (0.5, 0.75)):
        gems.append(polygon([(x - 0.05, y), (x, y + 0.05), (x + 0.05, y), (x, y - 0.05)]))
    write_png(folder / "weave_field.png", size, size,
              packed_rgb(wrapped(daggers), wrapped(rings), wrapped(gems), size, size), 3)


# ---- the gallery's pictures ------------------------------------------------------------

CAPTION_ROW = 28        # texels a row
CAPTION_EM = 14.5       # texels a cap height
CAPTION_SPREAD = 7      # texels from the outline to full value


def caption_lettering(name):
    return lettering(name.upper(), 0.066, 0.27)


def caption_width(name):
    """In row heights."""
    return caption_lettering(name)[0] * CAPTION_EM / CAPTION_ROW


def draw_captions(path):
    """Names as distances, one row each, from the top."""
    names = captions()
    w, h = 512, CAPTION_ROW * len(names)
    field = Field(w, h)
    for i, name in enumerate(names):
        field.add(caption_lettering(name)[1], CAPTION_EM, 4, CAPTION_ROW * i + 21, CAPTION_SPREAD)
    grey = field.distances(CAPTION_SPREAD)
    write_png(path, w, h, packed_rgb(grey, grey, grey, w, h), 3)


def painted(rows, width, shapes, scale, ox, oy, colour):
    """Paints em shapes over RGB rows; the colour is a function of the pixel's row, or a tuple."""
    height = len(rows)
    cover = Field(width, height).add(shapes, scale, ox, oy).coverage()
    for y, row in enumerate(rows):
        tone = colour(y) if callable(colour) else colour
        for x in range(width):
            c = cover[y * width + x]
            if c:
                for k in range(3):
                    row[3 * x + k] = (tone[k] * c + row[3 * x + k] * (255 - c)) // 255


def draw_poster(path):
    """A dagger before a low sun, over water: flat inks and few of them, so that it packs well."""
    w, h = 960, 540
    horizon, cx = 372, 560
    def mixed(a, b, t):
        t = min(1.0, max(0.0, t))
        return tuple(int(x + (y - x) * t + 0.5) for x, y in zip(a, b))
    dusk, blood = (16, 24, 40), (88, 16, 26)
    rows = []
    for y in range(h):
        tone = mixed(dusk, blood, (y / horizon) ** 2) if y < horizon else mixed((40, 12, 24), INK, (y - horizon) / 120)
        rows.append(bytearray(bytes(tone) * w))

    sun = disc(0, 0, 1)
    for i in range(6):      # cut by bands that thicken downwards
        y = -0.12 - 0.17 * i
        sun = cut(sun, stroke(-1.2, y, 1.2, y, 0.008 + 0.008 * i))
    glow = lambda y: mixed((255, 184, 98), EMBER, (y - 60) / 250)
    painted(rows, w, [clipped(sun, -1.2, -0.62, 1.2, 1.2)], 206, cx, 244, glow)
    # Hills, then the sun's way over the water, thinning out towards the eye.
    painted(rows, w, [polygon([(-6, 0), (-6, 0.6), (-4.6, 1.1), (-3.4, 0.5), (-2.6, 0.75), (-1.2, 0.0)]),
                      polygon([(6, 0), (6, 1.3), (4.7, 0.7), (4.0, 0.95), (2.4, 0.0)])], 96, cx - 60, horizon, (30, 22, 38))
    for i in range(9):
        y, half = horizon + 10 + 15 * i + i * i * 0.6, 190 - 13 * i
        painted(rows, w, [stroke(-half, 0, half * 0.8, 0, 1.2 + 0.25 * i)], 1.0, cx + (9 if i % 2 else -9), y,
                mixed(EMBER, (150, 34, 34), i / 9))
    for x, size in ((116, 40), (212, 26), (330, 34), (838, 30), (905, 52)):
        upright = [transformed(s, 1, 0, 0.85) for s in dagger(1.3, 0.36, 1.4)]
        painted(rows, w, upright, size, x, horizon + 6 + size // 3, INK)
    # The great one: a dark half and a bright half, as on a ground edge.
    blade = [transformed(s, 1, 0, 0) for s in dagger(1.72, 0.44, 1.25)]
    painted(rows, w, [clipped(s, -1, -3, 0, 3) for s in blade], 158, cx, 154, (40, 54, 74))
    painted(rows, w, [clipped(s, 0, -3, 1, 3) for s in blade], 158, cx, 154, BONE)

    width, letters, mark = word_mark()
    painted(rows, w, letters, 46, 60, 128, BONE)
    painted(rows, w, mark, 46, 60, 128, EMBER)
    painted(rows, w, lettering("FORGED LIVE", 0.06, 0.3)[1], 15, 62, 206, STEEL)
    painted(rows, w, [stroke(62, -226, 280, -226, 0.8)], 1.0, 0, 0, STEEL)
    write_png(path, w, h, [bytes(row) for row in rows], 3)


def main():
    shows = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent / "shows"
    showcase = shows / "showcase" / "assets" / "images"
    gallery = shows / "gallery" / "assets" / "images"
    draw_tile(showcase)
    draw_tile(gallery)
    draw_captions(gallery / "captions_field.png")
    draw_poster(gallery / "poster.png")
    draw_mark(shows / "legacy" / "assets" / "images" / "Logo.png", 384, 232.0, EMBER)


if __name__ == "__main__":
    main()
