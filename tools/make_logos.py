#!/usr/bin/env python3
"""Draws the shows' vector logos: a word mark with a dagger for its I, and an emblem of the dagger in a wreath.

Letters are outlines of our own, 100 units high with their baseline at 100, y down. All shapes keep clear
of each other, because the player fills every path of a file by one even-odd rule.

Usage: make_logos.py        writes assets/logos/ of the gallery and the showcase
"""

import math
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
GALLERY, SHOWCASE = ROOT / "shows" / "gallery", ROOT / "shows" / "showcase"

STEM = 19               # width of upright strokes
BAR = 17                # of level ones
CUT = 6                 # how much a stem's end slopes
ROUND = 0.5523          # handle of a quarter circle
SQUARE = 0.60           # of a fuller, squarer bowl
MARGIN = 0.03           # of the mask's shorter side, left free by the player at the top left


# ---- outlines: lists of (command, points) ----------------------------------------------

def polygon(*points):
    return [("M", [points[0]])] + [("L", [p]) for p in points[1:]] + [("Z", [])]


def ellipse(cx, cy, rx, ry, handle=ROUND):
    kx, ky = rx * handle, ry * handle
    return [("M", [(cx, cy - ry)]),
            ("C", [(cx + kx, cy - ry), (cx + rx, cy - ky), (cx + rx, cy)]),
            ("C", [(cx + rx, cy + ky), (cx + kx, cy + ry), (cx, cy + ry)]),
            ("C", [(cx - kx, cy + ry), (cx - rx, cy + ky), (cx - rx, cy)]),
            ("C", [(cx - rx, cy - ky), (cx - kx, cy - ry), (cx, cy - ry)]),
            ("Z", [])]


def moved(outline, dx, dy=0.0):
    return [(c, [(x + dx, y + dy) for x, y in points]) for c, points in outline]


def turned(outline, degrees):
    s, c = math.sin(math.radians(degrees)), math.cos(math.radians(degrees))
    return [(k, [(c * x - s * y, s * x + c * y) for x, y in points]) for k, points in outline]


def scaled(outline, f, dx=0.0, dy=0.0):
    return [(k, [(x * f + dx, y * f + dy) for x, y in points]) for k, points in outline]


def mirrored(outline):
    return [(k, [(-x, y) for x, y in points]) for k, points in outline]


# ---- letters ----------------------------------------------------------------------------

def letter_o():
    return 110, [ellipse(55, 50, 55, 52, SQUARE) + ellipse(55, 50, 55 - STEM - 1, 52 - BAR, SQUARE)]


def letter_q():
    """The ring of the O, cut open where a short blade leaves it."""
    cx, cy, gap = 55, 50, 13.5
    outer, inner = (55, 52), (55 - STEM - 1, 52 - BAR)

    def at(radii, degrees):
        a = math.radians(degrees)
        # A superellipse close to the O's fuller curves.
        n = 2 / 2.22
        c, s = math.cos(a), math.sin(a)
        return (cx + radii[0] * math.copysign(abs(c) ** n, c), cy + radii[1] * math.copysign(abs(s) ** n, s))

    def along(radii, begin, end, pieces=12):
        """Cubics through points of the curve, handles along its tangents."""
        step, parts = (end - begin) / pieces, []
        for i in range(pieces):
            a, b = begin + i * step, begin + (i + 1) * step
            p, q = at(radii, a), at(radii, b)
            da = [(v - u) / 0.02 for u, v in zip(at(radii, a - 0.01), at(radii, a + 0.01))]
            db = [(v - u) / 0.02 for u, v in zip(at(radii, b - 0.01), at(radii, b + 0.01))]
            parts.append(("C", [(p[0] + da[0] * step / 3, p[1] + da[1] * step / 3),
                                (q[0] - db[0] * step / 3, q[1] - db[1] * step / 3), q]))
        return parts

    # Angles at which the two curves meet the gap, whose sides run parallel to the tail.
    a0, a1 = 45 + gap * 0.98, 45 + 360 - gap * 0.98
    b0, b1 = 45 + gap * 1.62, 45 + 360 - gap * 1.62
    ring = [("M", [at(outer, a0)])] + along(outer, a0, a1) + [("L", [at(inner, b1)])]
    ring += along(inner, b1, b0) + [("Z", [])]
    tail = polygon((-20, 0), (2, -6.6), (38, -6.6), (50, 0), (38, 6.6), (2, 6.6))
    return 110, [ring, moved(turned(tail, 45), cx + 24, cy + 23)]


def letter_u():
    w, bowl = 92, 54
    r, inner = w / 2, w / 2 - STEM
    kr, ki = r * SQUARE, inner * SQUARE
    top, low = 101.5, 101.5 - BAR
    outline = [("M", [(0, CUT)]), ("L", [(STEM, 0)]), ("L", [(STEM, bowl)]),
               ("C", [(STEM, bowl + (low - bowl) * SQUARE), (r - ki, low), (r, low)]),
               ("C", [(r + ki, low), (w - STEM, bowl + (low - bowl) * SQUARE), (w - STEM, bowl)]),
               ("L", [(w - STEM, CUT)]), ("L", [(w, 0)]), ("L", [(w, bowl)]),
               ("C", [(w, bowl + (top - bowl) * SQUARE), (r + kr, top), (r, top)]),
               ("C", [(r - kr, top), (0, bowl + (top - bowl) * SQUARE), (0, bowl)]), ("Z", [])]
    return w, [outline]


def letter_l():
    return 66, [polygon((0, 0), (STEM, CUT), (STEM, 100 - BAR), (58, 100 - BAR), (66, 100), (0, 100))]


def letter_n():
    w = 96
    return w, [polygon((0, 0), (STEM + 3, CUT), (w - STEM, 69), (w - STEM, 0), (w, CUT), (w, 100), (w - STEM - 3, 100),
                       (STEM, 31), (STEM, 100), (0, 100))]


# ---- the dagger, about x = 0, hanging from the cap line ----------------------------------

def dagger():
    def both(right):
        """A closed outline from its right half, which runs from the axis to the axis."""
        (_, [first]), points, left = right[0], [right[0][1][0]], []
        for command, ps in right[1:]:
            points.append(ps[-1])
            left.append((command, ps, points[-2]))
        back = []
        for command, ps, begin in reversed(left):
            handles = [(-x, y) for x, y in reversed(ps[:-1])]
            back.append((command, handles + [(-begin[0], begin[1])]))
        return [("M", [first])] + right[1:] + back + [("Z", [])]

    pommel = both([("M", [(0, -96)]), ("C", [(1.5, -90), (6, -85.5), (10.5, -84)]),
                   ("C", [(6, -82.5), (1.5, -78), (0, -72)])])
    grip = []
    for i in range(4):
        y, h = -67.5 + i * 9.6, 7.4
        w0, w1 = 3.6 + 0.45 * i, 3.9 + 0.45 * i
        grip.append(polygon((-w0, y), (w0, y + 1.4), (w1, y + h + 1.4), (-w1, y + h)))
    guard = both([("M", [(0, -28.5)]), ("C", [(4, -25.5), (9, -24.5), (14, -24.5)]),
                  ("C", [(26, -24.5), (34, -22), (40, -15.5)]), ("L", [(49, -18.5)]),
                  ("C", [(48, -14), (45.5, -10.5), (41, -7.5)]),
                  ("C", [(35, -13), (27, -15), (18, -14.2)]), ("C", [(12, -13.6), (5, -11.5), (0, -8)])])
    blade = both([("M", [(0, -2.5)]), ("C", [(4, -5.5), (7.5, -8), (11.5, -9.6)]), ("L", [(11, 4)]),
                  ("C", [(10.4, 50), (9.6, 92), (8.8, 118)]), ("C", [(7.4, 132), (3.6, 146), (0, 158)])])
    fuller = both([("M", [(0, 12)]), ("C", [(1.6, 12), (2.6, 13.2), (2.6, 15)]), ("C", [(2.5, 45), (2, 72), (0, 96)])])
    return [pommel, *grip, guard, blade + fuller]


# ---- the logos ----------------------------------------------------------------------------

def word_mark():
    """(letters and the line below them, dagger)"""
    shapes, x = [], 0.0
    left = [(letter_q, 22), (letter_u, 19)]
    right = [(letter_l, 17), (letter_l, 13), (letter_o, 22), (letter_n, 0)]
    for letter, space in left:
        width, outlines = letter()
        shapes += [moved(o, x) for o in outlines]
        x += width + space
    axis = x + 11.5
    blade = [moved(o, axis) for o in dagger()]
    x = axis + 11.5 + 19
    for letter, space in right:
        width, outlines = letter()
        shapes += [moved(o, x) for o in outlines]
        x += width + space
    end = x
    # A line that thins out to both sides, a lozenge at its root.
    for sign, length in ((-1, axis - 2), (1, end - axis - 2)):
        line = [("M", [(36, 125.2)]), ("L", [(length, 126.6)]), ("L", [(length, 127.4)]), ("L", [(36, 128.8)]), ("Z", [])]
        gem = polygon((18, 127), (24, 122.6), (30, 127), (24, 131.4))
        for shape in (line, gem):
            shapes.append(moved(shape if sign > 0 else mirrored(shape), axis))
    return shapes, blade


def emblem():
    shapes = [ellipse(0, 0, 118, 118) + ellipse(0, 0, 112, 112)]
    leaves = 40
    for i in range(leaves):
        angle = 360 * i / leaves
        if min(angle % 180, 180 - angle % 180) < 10:
            continue            # the dagger's place
        tip, foot, w = (104, 76, 4.2) if i % 2 else (100, 86, 2.4)
        waist = foot + (tip - foot) * 0.38
        leaf = [("M", [(0, -tip)]), ("C", [(w * 0.35, -tip + (tip - waist) * 0.5), (w, -waist - 2), (w, -waist)]),
                ("L", [(0, -foot)]), ("L", [(-w, -waist)]),
                ("C", [(-w, -waist - 2), (-w * 0.35, -tip + (tip - waist) * 0.5), (0, -tip)]), ("Z", [])]
        shapes.append(turned(leaf, angle))
    inner = [scaled(o, 0.81, 0, -25) for o in dagger()]
    for side in (-1, 1):        # two crescents hold it
        crescent = [("M", [(21, -70)]), ("C", [(86, -60), (86, 60), (21, 70)]), ("C", [(70, 48), (70, -48), (21, -70)]),
                    ("Z", [])]
        shapes.append(crescent if side > 0 else mirrored(crescent))
    return shapes + inner


# ---- files --------------------------------------------------------------------------------

def number(value):
    text = f"{value:.2f}".rstrip("0").rstrip(".")
    return "0" if text in ("", "-0") else text


def path_data(outline):
    return "".join(command + " ".join(f"{number(x)},{number(y)}" for x, y in points) for command, points in outline)


def extent(shapes):
    points = [p for shape in shapes for _, ps in shape for p in ps]
    xs, ys = [p[0] for p in points], [p[1] for p in points]
    return min(xs), min(ys), max(xs), max(ys)


def svg(shapes, title, frame=None):
    """`frame`: shapes whose place in the picture these keep, where they are but a part of them."""
    x0, y0, x1, y1 = extent(frame or shapes)
    w, h = x1 - x0, y1 - y0
    # A mask has its free margin at the top left and what is over at the far end of the longer side; the view box
    # starts so much earlier that the shape comes to lie in the middle.
    spare = MARGIN * (max(w, h) / min(w, h) - 1) * min(w, h) / (1 - 2 * MARGIN)
    x0, y0 = x0 - (spare if w > h else 0), y0 - (spare if h > w else 0)
    box = " ".join(number(v) for v in (x0, y0, w, h))
    paths = "\n".join(f'  <path d="{path_data(shape)}"/>' for shape in shapes)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="{box}" fill-rule="evenodd">\n'
            f"  <title>{title}</title>\n{paths}\n</svg>\n")


def main():
    letters, blade = word_mark()
    whole = letters + blade
    shared = {"demo_shape_text.svg": svg(whole, "Quillon"), "emblem.svg": svg(emblem(), "Dagger in a wreath")}
    # For a word mark in two colours, one upon the other.
    parts = {"letters.svg": svg(letters, "Quillon without its dagger", whole), "dagger.svg": svg(blade, "Quillon's dagger", whole)}
    for show, logos in ((GALLERY, shared), (SHOWCASE, {**shared, **parts})):
        folder = show / "assets" / "logos"
        folder.mkdir(parents=True, exist_ok=True)
        for name, text in logos.items():
            (folder / name).write_text(text)
            print(f"{folder / name}  {len(text)} bytes")


if __name__ == "__main__":
    main()
