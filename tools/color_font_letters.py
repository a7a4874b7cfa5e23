"""The letters of the colour fonts as skeletons: centre lines that each font dresses in its own stroke.

A letter is a list of strokes, split by ";". A stroke is a list of points "x,y", open unless it ends in "z";
one point alone is a dot. x runs from 0, the left stem, to 1, the right stem; y from 0, the baseline, to 1,
the cap line. "b", "c", "x" and "d" stand for baseline, cap line, x-height and descender, a number with an
"x" behind it for a share of the x-height. A point with an "o" behind it is rounded, as far as its neighbours
leave room, or with a number behind that ("o7") to so many tenths.
"""

LETTERS = {
    " ": "",
    "A": "0,b .5,c 1,b; .2,.33 .8,.33",
    "B": "0,.54 0,b 1,bo7 1,.54o7 0,.54; 0,.54 0,c .93,co7 .93,.54o7",
    "C": "1,.72 1,co 0,co 0,bo 1,bo 1,.28",
    "D": "0,b 0,c 1,co8 1,bo8 0,b",
    "E": "1,c 0,c 0,b 1,b; 0,.53 .84,.53",
    "F": "1,c 0,c 0,b; 0,.5 .84,.5",
    "G": "1,.74 1,co 0,co 0,bo 1,bo 1,.46 .56,.46",
    "H": "0,b 0,c; 1,b 1,c; 0,.53 1,.53",
    "I": ".5,b .5,c; .1,b .9,b; .1,c .9,c",
    "J": ".4,c .94,c .94,bo 0,bo 0,.3",
    "K": "0,b 0,c; 1,c 0,.4; .34,.604 1,b",
    "L": "0,c 0,b 1,b",
    "M": "0,b 0,c .5,.42 1,c 1,b",
    "N": "0,b 0,c 1,b 1,c",
    "O": "0,co 1,co 1,bo 0,bo z",
    "P": "0,b 0,c 1,co7 1,.45o7 0,.45",
    "Q": "0,co 1,co 1,bo 0,bo z; .58,.3 1,-.06",
    "R": "0,b 0,c 1,co7 1,.47o7 0,.47; .48,.47 1,b",
    "S": "1,.76 1,co 0,co 0,.53o 1,.53o 1,bo 0,bo 0,.24",
    "T": "0,c 1,c; .5,c .5,b",
    "U": "0,c 0,bo 1,bo 1,c",
    "V": "0,c .5,b 1,c",
    "W": "0,c .22,b .5,.7 .78,b 1,c",
    "X": "0,b 1,c; 0,c 1,b",
    "Y": "0,c .5,.46 1,c; .5,.46 .5,b",
    "Z": "0,c 1,c 0,b 1,b",
    "a": ".04,.8x .04,xo .96,xo .96,b; .96,.57x 0,.57xo 0,bo .96,b",
    "b": "0,c 0,b 1,bo8 1,xo8 0,x",
    "c": "1,.7x 1,xo 0,xo 0,bo 1,bo 1,.3x",
    "d": "1,c 1,b 0,bo8 0,xo8 1,x",
    "e": "0,.52x 1,.52x 1,xo 0,xo 0,bo .94,b",
    "f": "1,c .4,co .4,b; .02,x .9,x",
    "g": ".08,d 1,do 1,x 0,xo8 0,bo8 1,b",
    "h": "0,c 0,b; 0,x 1,xo8 1,b",
    "i": ".12,x .52,x .52,b; .06,b .98,b; .5,1.04",
    "j": ".2,x .72,x .72,do .04,d; .72,1.04",
    "k": "0,c 0,b; .94,x 0,.36x; .34,.59x 1,b",
    "l": ".12,c .52,c .52,b; .06,b .98,b",
    "m": "0,b 0,x 1,xo6 1,b; .5,x .5,b",
    "n": "0,b 0,x 1,xo8 1,b",
    "o": "0,xo 1,xo 1,bo 0,bo z",
    "p": "0,d 0,x 1,xo8 1,bo8 0,b",
    "q": "1,d 1,x 0,xo8 0,bo8 1,b",
    "r": ".02,x .3,x .3,b; .02,b .68,b; .3,x 1,xo 1,.68x",
    "s": ".96,.8x .96,xo .03,xo .03,.54xo 1,.54xo 1,bo 0,bo 0,.2x",
    "t": ".36,.98 .36,bo .98,b; .02,x .92,x",
    "u": "0,x 0,bo8 1,b 1,x",
    "v": "0,x .5,b 1,x",
    "w": "0,x .24,b .5,.8x .76,b 1,x",
    "x": "0,b 1,x; 0,x 1,b",
    "y": "0,x 0,bo8 1,b; 1,x 1,do .08,d",
    "z": "0,x 1,x 0,b 1,b",
    "0": "0,co 1,co 1,bo 0,bo z; .5,.44 .5,.56",
    "1": ".1,.76 .52,c .52,b; .08,b .96,b",
    "2": "0,.74 0,co 1,co 1,.54o 0,b 1,b",
    "3": "0,.76 0,co .95,co .95,.54o .36,.54; .6,.54 1,.54o 1,bo 0,bo 0,.24",
    "4": ".78,b .78,c 0,.27 1,.27",
    "5": ".94,c .05,c .05,.59 1,.59o 1,bo 0,bo 0,.22",
    "6": ".96,.8 .96,co 0,co 0,bo 1,bo 1,.58o 0,.58",
    "7": "0,c 1,c .36,b",
    "8": ".06,co .94,co .94,.54o .06,.54o z; 0,.54o 1,.54o 1,bo 0,bo z",
    "9": ".04,.2 .04,bo 1,bo 1,co 0,co 0,.42o 1,.42",
    "!": ".5,c .5,.36; .5,b",
    "\"": ".26,c .26,.74; .74,c .74,.74",
    "#": ".24,b .36,c; .64,b .76,c; 0,.67 1,.67; 0,.33 1,.33",
    "$": ".96,.76 .96,co .04,co .04,.53o .96,.53o .96,bo .04,bo .04,.24; .5,1.14 .5,-.14",
    "%": ".06,b .94,c; 0,co .34,co .34,.66o 0,.66o z; .66,.34o 1,.34o 1,bo .66,bo z",
    "&": "1,b .16,.7o .16,co .7,co .7,.66o 0,.4o 0,bo .8,bo 1,.44",
    "'": ".5,c .5,.74",
    "(": ".72,1.1 .34,.86o .34,.14o .72,-.1",
    ")": ".28,1.1 .66,.86o .66,.14o .28,-.1",
    "*": ".5,.98 .5,.46; .2,.86 .8,.58; .2,.58 .8,.86",
    "+": ".5,.82 .5,.2; .08,.51 .92,.51",
    ",": ".54,.02 .36,-.2",
    "-": ".14,.51 .86,.51",
    ".": ".5,b",
    "/": ".06,-.1 .94,1.1",
    ":": ".5,b; .5,.92x",
    ";": ".54,.02 .36,-.2; .5,.92x",
    "<": ".9,.88 .1,.51 .9,.14",
    "=": ".08,.67 .92,.67; .08,.35 .92,.35",
    ">": ".1,.88 .9,.51 .1,.14",
    "?": ".02,.78 .02,co .98,co .98,.6o .5,.47o .5,.34; .5,b",
    "@": ".96,b 0,bo 0,co 1,co 1,.3 .7,.3; .7,.3 .7,.68 .34,.68o .34,.3o .7,.3",
    "[": ".74,1.1 .34,1.1 .34,-.1 .74,-.1",
    "\\": ".06,1.1 .94,-.1",
    "]": ".26,1.1 .66,1.1 .66,-.1 .26,-.1",
    "^": ".14,.62 .5,c .86,.62",
    "_": "0,-.14 1,-.14",
    "`": ".34,1.04 .62,.82",
    "{": ".8,1.1 .48,1.1o .48,.5o .2,.5; .2,.5 .48,.5o .48,-.1o .8,-.1",
    "|": ".5,1.12 .5,-.12",
    "}": ".2,1.1 .52,1.1o .52,.5o .8,.5; .8,.5 .52,.5o .52,-.1o .2,-.1",
    "~": "0,.4 .26,.64o .74,.38o 1,.62",
}

assert sorted(LETTERS) == [chr(c) for c in range(32, 127)]


def level(text, font):
    """A "y" of the table in pixels above the baseline's centre line."""
    named = {"b": 0.0, "c": font.cap, "x": font.x_height, "d": font.descender}
    if text in named:
        return named[text]
    if text.endswith("x"):
        return float(text[:-1]) * font.x_height
    return float(text) * font.cap


def strokes(letter, font):
    """[(points, closed)] of a letter, in pixels from the cell's lower left; a point is (x, y, roundness 0..1)."""
    result = []
    for stroke in LETTERS[letter].split(";"):
        tokens = stroke.split()
        closed = bool(tokens) and tokens[-1] == "z"
        points = []
        for token in tokens[:-1] if closed else tokens:
            at, rounded, share = token.partition("o")
            x, y = at.split(",")
            points.append((font.left + float(x) * (font.right - font.left), font.baseline + level(y, font),
                           float(share or 10) / 10 if rounded else 0.0))
        if points:
            result.append((points, closed))
    return result


def flattened(points, closed, font, steps=8):
    """The stroke as [(x, y, smooth)]: rounded points become superelliptic arcs, whose points are smooth."""
    count = len(points)
    result = []
    for i, (x, y, roundness) in enumerate(points):
        if not roundness or (not closed and i in (0, count - 1)):
            result.append((x, y, False))
            continue
        arms = []
        for other in (points[i - 1], points[(i + 1) % count]):
            index = (i - 1) % count if not arms else (i + 1) % count
            inner = closed or 0 < index < count - 1
            dx, dy = other[0] - x, other[1] - y
            length = (dx * dx + dy * dy) ** 0.5
            # A straight rest is left at ends and corners, which shows where they point.
            room = length / 2 if inner and other[2] else length * 0.92
            arms.append((dx / length, dy / length, min(room * roundness, font.max_radius)))
        # An arc much longer than high looks dented.
        ratio = 1.25
        cut = [min(arms[0][2], arms[1][2] * ratio), min(arms[1][2], arms[0][2] * ratio)]
        (ax, ay, _), (bx, by, _) = arms
        for step in range(steps + 1):
            t = step / steps
            u = 1 - t
            # Cubic whose handles reach font.squareness of the way to the corner.
            near = 1 - font.squareness
            w0, w1, w2, w3 = u * u * u, 3 * u * u * t, 3 * u * t * t, t * t * t
            along_a = cut[0] * (w0 + w1 * near)
            along_b = cut[1] * (w3 + w2 * near)
            result.append((x + ax * along_a + bx * along_b, y + ay * along_a + by * along_b, True))
    return result
