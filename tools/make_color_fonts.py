#!/usr/bin/env python3
"""Draws the colour fonts that the shows use: an atlas NAME.png with its description NAME.json.

The letters are centre lines (color_font_letters.py); here they become neon tubes or solid strokes, out of the
distance of each pixel to those lines. Fonts are monospaced. The same code always yields the same bytes.

Usage: make_color_fonts.py [shows directory]
"""

import json
import math
import sys
from pathlib import Path

from color_font_letters import LETTERS, flattened, strokes
from make_show_images import write_png

COLUMNS = 16
CHARS = "".join(sorted(LETTERS))
SHOWS = ("gallery", "showcase")


class Neon:
    """Glass tubes: wide letters of even weight with round bends, a white-hot core and a glow around it."""
    name = "demo_neon_32"
    cell = (32, 32)
    left, right = 6.5, 26.5         # pixels, of the stems' centre lines
    baseline = 10.5                 # pixels above the cell's lower edge
    cap, x_height, descender = 16.0, 12.0, -5.5
    baseline_row = 23               # pixels below the cell's upper edge
    max_radius, squareness = 6.0, 0.56
    space = 18.0

    tube = 1.45                     # half the tube's width
    reach = 5.2                     # where the glow has gone out, in pixels from the centre line

    def texel(self, d, x, y):
        """RGBA of a pixel d away from the nearest centre line, y from the cell's lower edge."""
        height = min(max((y - self.baseline) / self.cap, 0.0), 1.0)
        hue = [a + (b - a) * height for a, b in zip((255, 38, 92), (255, 128, 44))] # rose below, amber above
        core = math.exp(-(d / 1.05) ** 2)
        colour = [h + (w - h) * core for h, w in zip(hue, (255, 246, 232))]
        tube = min(max(self.tube + 0.5 - d, 0.0), 1.0)
        fade = max(1 - d / self.reach, 0.0)
        glow = 0.8 * fade ** 1.7
        return colour + [255 * max(tube, glow)]

    def distance(self, letter):
        segments, dots = [], []
        for points, closed in strokes(letter, self):
            if len(points) == 1:
                dots.append(points[0][:2])
            line = flattened(points, closed, self)
            for a, b in zip(line, line[1:] + line[:1] if closed else line[1:]):
                if a[:2] != b[:2]:
                    segments.append((a[0], a[1], b[0] - a[0], b[1] - a[1]))

        def at(x, y):
            nearest = min((math.hypot(x - dx, y - dy) - 0.9 for dx, dy in dots), default=99.0)
            for x0, y0, dx, dy in segments:
                t = min(max(((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy), 0.0), 1.0)
                nearest = min(nearest, math.hypot(x - x0 - t * dx, y - y0 - t * dy))
            return max(nearest, 0.0)
        return at


class Slab:
    """Solid letters for captions: square-cut ends, bars a little thinner than stems, white for any tint."""
    name = "demo_slab_64"
    cell = (40, 64)
    left, right = 8.0, 32.0
    baseline = 19.5                 # with these heights all bars fill whole rows of pixels
    cap, x_height, descender = 36.0, 26.0, -13.0
    baseline_row = 48
    max_radius, squareness = 99.0, 0.6
    space = 26.0

    half = 4.0                      # half a stem's width
    thinning = 8 / 7                # stems are so much thicker than bars
    overshoot = 0.7                 # pixels: round letters look smaller than flat ones
    lighter = {**dict.fromkeys("MWmw", 0.86), **dict.fromkeys("#%&@$*", 0.78), **dict.fromkeys("\"'^`~{}()[]/\\|", 0.86)}

    def texel(self, d, x, y):
        return [250, 248, 244, 255 * min(max(0.5 - d, 0.0), 1.0)]

    def distance(self, letter):
        h = self.half * self.lighter.get(letter, 1.0)
        k = self.thinning
        parts = []
        for points, closed in strokes(letter, self):
            if len(points) == 1:
                # A dot sits on the line that bars sit on, and is a little larger than a stem.
                r = self.half * 1.25
                x, y, _ = points[0]
                y = y * k + (r - h if y < self.baseline + 1 else 0)
                parts.append(([(x, y, 1, 0, r, r)], [], [], (x - r, y - r, x + r, y + r)))
                continue
            points = [(x, self.overshot(points, i, closed), o) for i, (x, _, o) in enumerate(points)]
            parts.append(self.outline([(x, y * k, s) for x, y, s in flattened(points, closed, self)], closed, h))

        def at(x, y):
            y *= k
            nearest = 99.0
            for boxes, joints, mitres, (x0, y0, x1, y1) in parts:
                beyond = max(x0 - x, x - x1, y0 - y, y - y1)
                if beyond >= nearest:
                    continue
                d = 99.0
                for cx, cy, ux, uy, half_length, half_width in boxes:
                    px, py = x - cx, y - cy
                    a = abs(px * ux + py * uy) - half_length
                    b = abs(py * ux - px * uy) - half_width
                    d = min(d, math.hypot(a, b) if a > 0 and b > 0 else max(a, b))
                for jx, jy in joints:
                    d = min(d, math.hypot(x - jx, y - jy) - h)
                for sides in mitres:
                    d = min(d, max(nx * x + ny * y - c for nx, ny, c in sides))
                nearest = min(nearest, max(d, beyond))
            return nearest
        return at

    def overshot(self, points, i, closed):
        """y of a point; a bar between two rounded points lies a little outside its line."""
        x, y, o = points[i]
        count = len(points)
        lines = {self.baseline: -1, self.baseline + self.cap: 1, self.baseline + self.x_height: 1}
        if o < 1 or y not in lines:
            return y
        near = [points[j % count] for j in (i - 1, i + 1) if closed or 0 <= j < count]
        return y + lines[y] * self.overshoot * any(other[1] == y and other[2] == 1 for other in near)

    def mitre(self, before, corner, after, h):
        """What fills the outside of a corner, as the half-planes nx * x + ny * y <= c around it."""
        x, y, _ = corner
        directions = []
        for other in (before, after):
            dx, dy = x - other[0], y - other[1]
            length = math.hypot(dx, dy)
            directions.append((dx / length, dy / length))
        (ax, ay), (bx, by) = directions
        side = 1 if ax * by - ay * bx > 0 else -1    # of the outside
        sides = [(-ax, -ay, 1.0), (-bx, -by, 1.0), (-side * ay, side * ax, h), (side * by, -side * bx, h)]
        mx, my = ax + bx, ay + by
        length = math.hypot(mx, my)
        if length > 1e-6:
            sides.append((mx / length, my / length, 1.45 * h))    # blunt where it would be a spike
        return [(nx, ny, nx * x + ny * y + c) for nx, ny, c in sides]

    def outline(self, line, closed, h):
        """(boxes, joints, mitres, clip) of a flattened stroke: square ends that run on as far as a stroke is half wide,
        mitred corners, and all of it cut where its own extent ends, so that slanted ends are level."""
        count = len(line)
        boxes, mitres, joints = [], [], [(x, y) for x, y, smooth in line if smooth]

        def run_on(i, other):
            """How far a stroke runs on past its end i."""
            if closed or i not in (0, count - 1):
                return 0.0
            return h if line[i][0] == line[other][0] or line[i][1] == line[other][1] else 1.6 * h

        for i in range(0 if closed else 1, count if closed else count - 1):
            if not line[i][2]:
                mitres.append(self.mitre(line[i - 1], line[i], line[(i + 1) % count], h))
        for i in range(count if closed else count - 1):
            (x0, y0, _), (x1, y1, _) = line[i], line[(i + 1) % count]
            length = math.hypot(x1 - x0, y1 - y0)
            if length < 1e-6:
                continue
            ux, uy = (x1 - x0) / length, (y1 - y0) / length
            start, end = run_on(i, (i + 1) % count), run_on((i + 1) % count, i)
            x0, y0 = x0 - ux * start, y0 - uy * start
            x1, y1 = x1 + ux * end, y1 + uy * end
            boxes.append(((x0 + x1) / 2, (y0 + y1) / 2, ux, uy, math.hypot(x1 - x0, y1 - y0) / 2, h))
        xs, ys = [p[0] for p in line], [p[1] for p in line]
        return boxes, joints, mitres, (min(xs) - h, min(ys) - h, max(xs) + h, max(ys) + h)


def draw_atlas(font):
    """Rows of RGBA bytes, top row first."""
    width, height = font.cell
    lines = -(-len(CHARS) // COLUMNS)
    rows = [bytearray(COLUMNS * width * 4) for _ in range(lines * height)]
    for i, letter in enumerate(CHARS):
        left, top = i % COLUMNS * width, i // COLUMNS * height
        distance = font.distance(letter)
        for row in range(height):
            texels = bytearray()
            y = height - row - 0.5
            for column in range(width):
                texel = font.texel(distance(column + 0.5, y), column + 0.5, y)
                texels += bytes(int(value + 0.5) for value in texel)
            rows[top + row][left * 4:(left + width) * 4] = texels
    # Cells without a letter are transparent, in the colour that their neighbours fade out in.
    for at in range(len(CHARS), lines * COLUMNS):
        left, top = at % COLUMNS * width, at // COLUMNS * height
        for row in range(height):
            blank = bytes(int(v + 0.5) for v in font.texel(99.0, 0.0, height - row - 0.5))
            rows[top + row][left * 4:(left + width) * 4] = blank * width
    return rows


def describe(font):
    return {
        "texture": font.name + ".png",
        "cellWidth": font.cell[0],
        "cellHeight": font.cell[1],
        "columns": COLUMNS,
        "rows": -(-len(CHARS) // COLUMNS),
        "baseline": font.baseline_row,
        "spaceWidth": font.space,
        "chars": CHARS,
    }


def main():
    shows = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent.parent / "shows"
    for font in (Neon(), Slab()):
        rows = draw_atlas(font)
        for show in SHOWS:
            folder = shows / show / "assets/fonts/color"
            write_png(folder / (font.name + ".png"), len(rows[0]) // 4, len(rows), rows, 4)
            (folder / (font.name + ".json")).write_text(json.dumps(describe(font), indent=2) + "\n")


if __name__ == "__main__":
    main()
