"""What the gallery shows: one line a thing, and the pictures that the things are tried on.

A thing's name is what a show writes in its description. `make_gallery.py` turns the table into
shows/gallery/config.json and docs/gallery.md, `make_show_images.py` draws the captions from it.
"""

# The pictures beneath, as effects: two dark ones, a bright one, and a poster.
MOLTEN = {"type": "plasma", "params": {"contours": 9.0}}
SHAFT = {"type": "tunnel", "params": {"speed": 3.0}}
PLATE = {"type": "plate", "params": {"texture": "@weave"}}
POSTER = {"type": "image", "params": {"image": "@poster", "fit": "cover"}}


def glitched(style, **params):
    return {"type": "glitch", "params": {"style": style, **params}}


# name, outgoing and incoming picture, parameters, what one sees
TRANSITIONS = [
    ("fade", MOLTEN, PLATE, {"startDelay": 0.1}, "One picture through the other."),
    ("wipe", PLATE, SHAFT, {"softness": 0.3, "rotation": 30}, "An edge from the top; \"rotation\" turns it."),
    ("vertical", MOLTEN, PLATE, {"softness": 0.01}, "Another name of \"wipe\"."),
    ("bands", PLATE, SHAFT, {"bands": 9, "softness": 0.01, "rotation": 0},
     "Bars slide in from both sides in turn."),
    ("curtains", MOLTEN, PLATE, {"bands": 6, "softness": 0.01}, "The picture is gathered up and drawn aside."),
    ("horizontal", PLATE, MOLTEN, {"softness": 0.02, "rotation": -12}, "An edge from the left."),
    ("dissolve", SHAFT, PLATE, {"noiseScale": 0.6, "noiseThreshold": 0.5, "softness": 0.1},
     "Fine grain, speck by speck."),
    ("noise_smoke", PLATE, MOLTEN, {"noiseScale": 2.4, "noiseSpeed": 1.5, "noiseThreshold": 0.5, "softness": 0.1},
     "Smoke billows up, hides the change and clears."),
    ("noise_organic", MOLTEN, PLATE, {"noiseScale": 3.0, "noiseSpeed": 1.5, "noiseThreshold": 0.5, "softness": 0.02},
     "Cells open, swell and flow together."),
    ("noise_glitch", PLATE, SHAFT, {"blockSize": 72, "noiseScale": 4.0, "noiseSpeed": 1.5, "noiseThreshold": 0.5},
     "Blocks drop out in bursts, rows tear, colours part."),
    ("wavy", MOLTEN, PLATE, {"waveAmplitude": 0.14, "softness": 0.1}, "Both pictures swing as on water."),
    ("crosswarp", PLATE, SHAFT, {"rotation": 0}, "Drawn into a line and out of it along a passing front."),
    ("burning", PLATE, SHAFT, {"noiseScale": 2.6, "noiseSpeed": 1.0, "noiseThreshold": 0.5, "softness": 0.15},
     "Paper that catches at its lower edge."),
    ("pixellated", SHAFT, PLATE, {"blockSize": 48, "softness": 0.02},
     "Blocks coarsen, change over and become fine again."),
    ("radialwipe", PLATE, MOLTEN, {"softness": 0.01, "rotation": 0}, "A clock hand from twelve."),
    ("dots", MOLTEN, PLATE, {"dotFrequency": 130, "dotPower": 6, "rotation": 0},
     "A halftone screen whose dots swell from the centre."),
]

# name, type, parameters, what one sees
COMPOSITES = [
    ("blend", "blend",
     {"mixMode": "dots", "dotFrequency": 70, "dotPower": 1, "softness": 0.1,
      "startTime": 0.4, "blendDuration": 1.2,
      "source": SHAFT, "target": MOLTEN},
     "\"source\" turns into \"target\" by a transition of any style."),
    ("timeline_blend", "timeline_blend",
     {"mixMode": "radialwipe", "loop": True, "steps": [
         {"start": 0.0, "duration": 0.8, "effect": MOLTEN},
         {"start": 0.4, "duration": 1.2, "effect": PLATE},
         {"start": 1.2, "duration": 0.8, "effect": SHAFT}]},
     "Steps one after the other, mixed where they overlap."),
    ("chain", "chain", {"source": SHAFT, "postProcess": glitched("crttube", curve=0.8)},
     "\"postProcess\" gets the source's picture on channel 0."),
    ("dynamicsplit vertical", "dynamicsplit",
     {"mode": "vertical", "position": 0.5, "amplitude": 0.2, "speed": 3.14, "feather": 0.01,
      "a": MOLTEN, "b": PLATE},
     "Two pictures side by side; the edge swings."),
    ("dynamicsplit horizontal", "dynamicsplit",
     {"mode": "horizontal", "position": 0.5, "amplitude": 0.2, "speed": 3.14, "feather": 0.2,
      "a": SHAFT, "b": PLATE},
     "One above the other, here with a soft edge."),
    ("dynamicsplit diagonal", "dynamicsplit",
     {"mode": "diagonal", "angle": 30, "amplitude": 0.12, "speed": 3.14, "feather": 0.01, "invert": True,
      "a": MOLTEN, "b": PLATE},
     "At an angle; \"invert\" swaps the sides."),
    ("dynamicsplit wave", "dynamicsplit",
     {"mode": "wave", "waveFrequency": 2.0, "amplitude": 0.25, "speed": 6.28, "feather": 0.02,
      "a": SHAFT, "b": PLATE},
     "The edge waves."),
    ("pip", "pip",
     {"corner": "topRight", "pipScale": 0.36, "pipMargin": 48, "pipDelay": 0.3, "pipFadeIn": 0.4,
      "main": MOLTEN, "pip": PLATE},
     "An effect as an inset."),
    ("piptexture", "piptexture",
     {"corner": "bottomLeft", "pipScale": 0.36, "pipMargin": 48, "pipAlpha": 0.95, "image": "@poster",
      "main": SHAFT},
     "A picture as an inset."),
]

# style, parameters
GLITCHES = [
    ("generic", {"amount": 0.7}),
    ("vhstape", {"tracking": 0.7}),
    ("rain", {"rows": 36}),
    ("pattern", {"tiles": 1, "segments": 6}),
    ("rainingblood", {"density": 9}),
    ("glitchboi", {"lines": 120}),
    ("sinewave", {"amplitude": 0.06}),
    ("rgbsplit", {"shift": 0.03}),
    ("gridvid", {"columns": 4, "drift": 0.5}),
    ("moving", {"slabs": 7, "slide": 0.3}),
    ("signal", {"ghost": 0.7}),
    ("blurmist", {"radius": 0.05, "mist": 0.6}),
    ("sw", {"warp": 0.5}),
    ("hardcode", {"code": 0.35}),
    ("brokentv", {"snow": 0.35}),
    ("liquiddos", {"rows": 40, "flow": 0.4}),
    ("memleak", {"period": 2.0, "level": 0.9}),
    ("crttube", {"curve": 0.6}),
    ("pixel", {"cells": 9, "detail": 0.7}),
    ("chromaticaberration", {"spread": 0.1}),
    ("retrobn", {"wear": 0.8}),
]

# ---- kinetic text ----

# Quiet pictures for words to stand on.
DUSK = {"type": "dusk", "params": {"cold": 0.0}}
FROST = {"type": "dusk", "params": {"cold": 1.0}}

SLAB = "assets/fonts/color/demo_slab_64.json"
LARGE = {"scale": 4.0, "y": 0.28}
SLAB_WORDS = {"fontPath": SLAB, "blendMode": "alpha", "tracking": -12.0, "scale": 2.4, "y": 0.24}

# name, picture beneath, parameters, what one sees
KINETIC_TEXTS = [
    ("reveal character", FROST,
     {"text": "LETTER\nBY LETTER", **LARGE, "revealMode": "character", "writeSpeed": 10.0, "animation": "still"},
     "Typed on, one character after the other. Parameters: `writeSpeed`, `stagger`."),
    ("reveal word", DUSK,
     {"text": "one word\nat a time", **SLAB_WORDS, "revealMode": "word", "writeSpeed": 2.6, "animation": "punch",
      "punchAmount": 0.3, "stagger": 0.09},
     "Words appear whole, as many a second as \"writeSpeed\" says."),
    ("reveal none", SHAFT,
     {"text": "ALL\nAT ONCE", "scale": 4.2, "y": 0.32, "revealMode": "none", "animation": "still"},
     "Everything from the start; \"still\", like any word that names no animation, keeps it still."),
    ("wave", DUSK,
     {"text": "OVER THE\nLONG SWELL", **LARGE, "revealMode": "none", "animation": "wave", "waveAmount": 22.0,
      "waveSpeed": 5.0, "lineSpacing": 1.15},
     "A sine runs through the letters. Parameters: `waveAmount`, `waveSpeed`."),
    ("punch", DUSK,
     {"text": "HITS\nHARD", "fontPath": SLAB, "blendMode": "alpha", "tracking": 4.0, "scale": 2.8, "y": 0.2,
      "lineSpacing": 0.9, "writeSpeed": 8.0, "animation": "punch", "punchAmount": 1.2, "punchDecay": 4.5,
      "stagger": 0.125},
     "Each letter comes large and settles. Parameters: `punchAmount`, `punchDecay`, `stagger`."),
    ("typeon", FROST,
     {"text": "> run show.json\n> _", "fontPath": SLAB, "blendMode": "alpha", "align": "left", "x": 0.08, "y": 0.3,
      "tracking": -10.0, "scale": 1.9, "lineSpacing": 0.85, "revealMode": "none", "writeSpeed": 11.0, "animation": "typeon",
      "stagger": 0.09},
     "Types on even where nothing is to be revealed, each letter with a small punch."),
    ("explode", DUSK,
     {"text": "APART\nAT LAST", **LARGE, "revealMode": "none", "animation": "explode", "explodeAmount": 420.0,
      "explodeSpeed": 1.1, "explodeSpin": 0.6, "explodeFade": 0.8, "stagger": 0.04},
     "Letters fly up and apart, spin, grow and fade. "
     "Parameters: `explodeAmount`, `explodeSpeed`, `explodeSpin`, `explodeFade`, `stagger`."),
    ("scramble", FROST,
     {"text": "DECODING\nTHE SIGNAL", **LARGE, "writeSpeed": 14.0, "animation": "scramble", "scrambleDuration": 0.7,
      "scrambleRate": 18.0},
     "Fresh letters try others before they settle. Parameters: `scrambleDuration`, `scrambleRate`."),
    ("glitch digital", FROST,
     {"text": "PACKET\nLOSS", "scale": 4.2, "y": 0.32, "revealMode": "none", "animation": "still", "glitchEnabled": True,
      "glitchStyle": "digital", "glitchAmount": 2.0, "glitchJitter": 9.0, "glitchFlicker": 0.3},
     "Letters jump aside one by one. "
     "Parameters of every style: `glitchAmount`, `glitchJitter`, `glitchFlicker`, `glitchRate`."),
    ("glitch vhs", DUSK,
     {"text": "TRACKING\nERROR", "scale": 4.0, "y": 0.32, "revealMode": "none", "animation": "still", "glitchEnabled": True,
      "glitchStyle": "vhs", "glitchAmount": 1.6, "glitchJitter": 14.0, "glitchRate": 12.0},
     "Six letters at a time slide sideways together, like a tape that loses its track."),
    ("glitch corrupt", DUSK,
     {"text": "BAD\nSECTOR", "scale": 4.2, "y": 0.32, "revealMode": "none", "animation": "still", "glitchEnabled": True,
      "glitchStyle": "corrupt", "glitchAmount": 2.2, "glitchJitter": 8.0, "glitchFlicker": 0.35, "glitchRate": 14.0},
     "Letters are thrown in every direction, some nearly gone."),
    ("outline glow", FROST,
     {"text": "after dark", "fontPath": SLAB, "blendMode": "alpha", "tracking": -8.0, "scale": 2.8, "y": 0.37,
      "revealMode": "none", "animation": "wave", "waveAmount": 8.0, "outlineGlowEnabled": True,
      "outlineGlowRadius": 6.0, "outlineGlowIntensity": 1.1, "outlineGlowColor": [1.0, 0.31, 0.15]},
     "A soft halo follows the outlines. Parameters: `outlineGlowRadius`, `outlineGlowIntensity`, `outlineGlowColor`."),
]

# ---- bitmap text ----

# name, picture beneath, parameters, what one sees
BITMAP_TEXTS = [
    ("plain", SHAFT,
     {"text": "10 strike the iron\n20 while it is hot\n30 goto 10\n\n> run█",
      "textPosX": 150, "textPosY": 170, "scale": 8, "lineSpacing": 1.35,
      "textColor": [1.0, 0.78, 0.5, 1.0], "bgColor": [0.03, 0.04, 0.08, 0.8]},
     "Letters of five by seven dots. \"bgColor\" lies over the whole picture, here to four fifths."),
    ("signs", FROST,
     {"text": "╔══════════════════════╗\n║ FORGE      ▲ 1240 °C ║\n╠══════════════════════╣\n"
              "║ coal    ■■■■■■■■■■□□ ║\n║ air     ■■■■■■■□□□□□ ║\n║                      ║\n"
              "║ blows   ▁▂▃▅▆▇█▇▆▅▃▂ ║\n╚══════════════════════╝",
      "textPosX": 136, "textPosY": 88, "scale": 7, "lineSpacing": 1.3, "textColor": [0.55, 0.8, 0.95, 1.0]},
     "Boxes, blocks, arrows and other signs, spelled in UTF-8. Boxes and blocks join at any spacing."),
    ("large", DUSK,
     {"text": "LIVE", "textPosX": 88, "textPosY": 150, "scale": 48, "spacing": 1.0, "textColor": [1.0, 0.31, 0.15, 1.0]},
     "\"scale\" is pixels a dot, so that a dot may be as large as a brick."),
]

# ---- lower thirds and credits ----

CREW = [
    {"role": "Direction", "name": "Ines Halvard"},
    {"role": "Code", "name": "Tomas Wren\nYuki Adler"},
    {"role": "Design", "name": "Petra Lund", "subtitle": "logos, lettering and light"},
    {"role": "Music", "name": "Oskar Vale", "subtitle": "recorded in one night"},
    {"role": "The relay"},
    {"role": "Camera", "name": "Ada Quist"},
    {"role": "Sound", "name": "Milo Farr"},
    {"role": "Shaders", "name": "June Marchetti\nBo Lindqvist"},
    {"role": "Thanks", "name": "Everyone who stayed"},
]

# name, picture beneath, parameters, what one sees
LOWER_THIRDS = [
    ("slide-left", SHAFT, {"enterDuration": 0.6},
     "In from the left, the texts a little later, the badge from behind the panel. Here in the default font with the "
     "default texts."),
    ("slide-right", PLATE,
     {"fontPath": SLAB, "enter": "slide-right", "enterDuration": 0.6, "anchor": "top-right", "title": "Ada Quist",
      "subtitle": "Camera two, north stand\nsince the first hour", "label": "Guest"},
     "In from the right, caught on its way; \"anchor\" mirrors the panel and takes it to another corner."),
    ("slide-up", MOLTEN,
     {"fontPath": SLAB, "enter": "slide-up", "enterDuration": 0.6, "anchor": "center", "title": "Glass and Static",
      "subtitle": "The second movement", "label": ""},
     "In from below, caught on its way. In the centre the accent lies at the foot."),
    ("fade in", SHAFT,
     {"fontPath": SLAB, "enter": "fade", "enterDuration": 0.6, "title": "Track 04", "subtitle": "Night Shift, live",
      "label": "Now playing", "accentColor": [0.35, 0.72, 0.92]},
     "Panel, title, subtitle and badge fade in one after the other. The badge wears the accent's colour."),
    ("wipe in", PLATE,
     {"fontPath": SLAB, "enter": "wipe", "enterDuration": 0.6, "title": "Coming up", "subtitle": "Monolith, in three minutes",
      "label": "Next"},
     "Opens from the accent on, caught on its way."),
]

# Seconds that a roll has: two would be a rush.
ROLL_LENGTH = 6.0

CREDIT_ROLLS = [
    ("credits scroll", MOLTEN, {"fontPath": SLAB, "entries": CREW},
     "Rolls by in just the entry's duration: roles end and names begin at the gutter. A role without a name is a heading."),
    ("credits centered", SHAFT, {"fontPath": SLAB, "align": "center", "header": "The Night Shift", "entries": CREW},
     "Role, name and subtitle below one another."),
    ("credits blocks", PLATE, {"fontPath": SLAB, "mode": "blocks", "fadeDuration": 0.5, "entries": CREW},
     "Groups that fade in and out and share the entry's duration, under a header that stays."),
]

# ---- logos ----

EMBLEM = {"type": "image", "params": {"image": "@emblem", "fit": "contain"}}
INK_AND_BONE = {"fillColor": [0.05, 0.06, 0.1], "glowColor": [1.0, 0.88, 0.72, 1.0]}
BONE_AND_EMBER = {"fillColor": [0.98, 0.94, 0.86], "glowColor": [1.0, 0.36, 0.16, 1.0]}

# name, picture beneath, effect, what one sees
LOGOS = [
    ("logo static", SHAFT,
     {"type": "shapetext", "params": {"animation": "static", "blendMode": "alpha", "width": 0.72, "y": 0.48, "scanSpeed": 0.0}},
     "Without an animation; \"blendMode\" lets the logo cover what lies beneath, and without a \"scanSpeed\" its lines stand "
     "still."),
    ("logo pulse", MOLTEN,
     {"type": "shapetext", "params": {"animation": "pulse", "width": 0.64, "y": 0.48, "pulseAmount": 0.08, "pulseSpeed": 6.28,
                                      "blendMode": "alpha", "glow": 1.6, **INK_AND_BONE}},
     "The size swings about the centre, once a second here."),
    ("logo reveal", FROST,
     {"type": "shapetext", "params": {"animation": "reveal", "width": 0.72, "y": 0.48, "revealSpeed": 0.7}},
     "Drawn in from the left behind a hot front; in additive light, as without any \"params\"."),
    ("logo wave", DUSK,
     {"type": "shapetext", "params": {"animation": "wave", "width": 0.66, "y": 0.48, "rotation": 8.0, "waveAmount": 0.14,
                                      "waveSpeed": 6.28, "blendMode": "alpha", **BONE_AND_EMBER}},
     "A wave runs through it, of \"waveAmount\" logo heights; \"rotation\" counts degrees, counter-clockwise."),
    ("svg picture", DUSK, EMBLEM,
     "An SVG file is a picture like any other, white on transparent, 1024 pixels on its longer side."),
]


# Seconds into a thing at which its still is taken, where the middle says less.
MOMENTS = {"radialwipe": 1.2, "timeline_blend": 1.4, "pixellated": 0.9,
           "reveal character": 1.25, "reveal word": 1.15, "punch": 0.95, "typeon": 1.3, "explode": 0.8,
           "scramble": 0.95,
           "slide-right": 0.17, "slide-up": 0.16, "wipe in": 0.27, "credits scroll": 3.0, "credits centered": 2.6,
           "credits blocks": 1.5}


def captions():
    """The names in the order of the rows of the captions' picture."""
    groups = TRANSITIONS + COMPOSITES + GLITCHES + KINETIC_TEXTS + BITMAP_TEXTS + LOWER_THIRDS + CREDIT_ROLLS + LOGOS
    return [thing[0] for thing in groups]
