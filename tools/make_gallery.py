#!/usr/bin/env python3
"""Writes the gallery from gallery_table.py: shows/gallery/config.json, docs/gallery.md and its stills.

The stills are rendered by the player and packed by ImageMagick's convert; everything else needs
nothing beyond Python's standard library. Sentences about styles come from their shaders' heads.

Usage: make_gallery.py [--no-stills] [PLAYER]     (default player: build/release/quillon-player)
"""

import argparse
import json
import re
import subprocess
import tempfile
from pathlib import Path

from gallery_table import (BITMAP_TEXTS, COMPOSITES, CREDIT_ROLLS, GLITCHES, KINETIC_TEXTS, LOGOS, LOWER_THIRDS, MOMENTS,
                           POSTER, ROLL_LENGTH, TRANSITIONS, captions, glitched)
from make_show_images import caption_width

ROOT = Path(__file__).resolve().parent.parent
SHOW = ROOT / "shows" / "gallery"
SHADERS = SHOW / "DemoSceneResources" / "assets" / "shaders"
STILLS = ROOT / "docs" / "gallery"

LENGTH = 2.0            # seconds a thing
HOLD = 0.4              # seconds before and after a transition
STILL_SIZE = "480x270"
LINE = 110              # columns of the JSON


# ---- JSON for people -----------------------------------------------------------------

def json_text(value, indent=0, prefix=0):
    """Objects and arrays on one line where they fit, after `prefix` columns of their key."""
    flat = spaced(value)
    if indent + prefix + len(flat) <= LINE or not isinstance(value, (dict, list)) or not value:
        return flat
    pad = " " * (indent + 2)
    if isinstance(value, dict):
        parts = [f"{pad}{json.dumps(k)}: {json_text(v, indent + 2, len(k) + 4)}" for k, v in value.items()]
        return "{\n" + ",\n".join(parts) + "\n" + " " * indent + "}"
    return "[\n" + ",\n".join(pad + json_text(v, indent + 2) for v in value) + "\n" + " " * indent + "]"


def spaced(value):
    if isinstance(value, dict) and value:
        return "{ " + ", ".join(f"{json.dumps(k)}: {spaced(v)}" for k, v in value.items()) + " }"
    if isinstance(value, list):
        return "[" + ", ".join(spaced(v) for v in value) + "]"
    return json.dumps(int(value) if isinstance(value, float) and value.is_integer() else value, ensure_ascii=False)


def entry_text(entry):
    """As in a show written by hand: what and when, then how."""
    head = spaced({key: value for key, value in entry.items() if key != "params"})[:-2]
    return f"    {head},\n      \"params\": {json_text(entry['params'], 6, 10)} }}"


# ---- the show ------------------------------------------------------------------------

class Show:
    """The description as it grows, and what the document says of each thing."""

    def __init__(self):
        self.entries, self.presets, self.pages = [], {}, []
        self.row, self.start = 0, 0.0

    def add_scene(self, scene, effect, group, name, start, duration):
        rows = len(captions())
        place = {"scene": scene, "start": round(start, 3), "duration": round(duration, 3)}
        self.entries.append({"id": scene, "type": effect["type"], **place, "params": effect["params"]})
        self.entries.append({"id": f"{scene}, caption", "type": "caption", **place, "overlay": True, "layer": 10,
                             "params": {"texture": "@captions", "row": self.row, "rows": rows, "group": group,
                                        "label": round(caption_width(name), 2)}})

    def add_page(self, group, name, moment, sentence, shown, length=LENGTH):
        self.pages.append((group, name, self.start + MOMENTS.get(name, moment), sentence, shown))
        self.row += 1
        self.start += length


def transition_moment(params):
    """The middle of what the style makes of the transition, after its delay."""
    delay = params.get("startDelay", 0.0)
    return HOLD + (LENGTH - 2 * HOLD) * (delay + (1 - delay) * 0.5)


def add_transitions(show):
    used = transition_parameters()
    for name, outgoing, incoming, params, sentence in TRANSITIONS:
        scene = f"transition: {name}"
        end = show.start + LENGTH
        show.presets[scene] = {"type": name, "params": params}
        show.add_scene(scene, outgoing, 0, name, show.start, LENGTH - HOLD)
        show.add_scene(f"{scene}, after", incoming, 0, name, show.start + HOLD, LENGTH - HOLD)
        assert show.entries[-1]["start"] + show.entries[-1]["duration"] == end
        uses = used.get("wipe" if name == "vertical" else name, [])
        listed = ", ".join(f"`{u}`" for u in ["startDelay", *uses])
        show.add_page("Transitions", name, transition_moment(params), f"{sentence} Parameters: {listed}.",
                      {scene: show.presets[scene]})


def add_composites(show):
    for name, kind, params, sentence in COMPOSITES:
        effect = {"type": kind, "params": params}
        show.add_scene(f"composite: {name}", effect, 1, name, show.start, LENGTH)
        show.add_page("Composites", name, LENGTH * 0.5, sentence, effect)


def add_glitches(show):
    for style, params in GLITCHES:
        effect = glitched(style, **params, image=POSTER["params"]["image"])
        show.add_scene(f"glitch: {style}", effect, 2, style, show.start, LENGTH)
        show.add_page("Glitch styles", style, LENGTH * 0.5, glitch_sentence(style), effect)


def add_kinetic_texts(show):
    for name, beneath, params, sentence in KINETIC_TEXTS:
        effect = {"type": "kinetictext", "params": params}
        add_words(show, f"text: {name}", beneath, effect, name)
        show.add_page("Kinetic text", name, LENGTH * 0.5, sentence, effect)


def add_bitmap_texts(show):
    for name, beneath, params, sentence in BITMAP_TEXTS:
        effect = {"type": "bitmaptext", "params": params}
        add_words(show, f"bitmap: {name}", beneath, effect, name)
        show.add_page("Bitmap text", name, LENGTH * 0.5, sentence, effect)


def add_lower_thirds(show):
    for name, beneath, params, sentence in LOWER_THIRDS:
        effect = {"type": "lowerthird", "params": params}
        add_words(show, name, beneath, effect, name)
        show.add_page("Lower thirds", name, LENGTH * 0.5, sentence, effect)


def add_credit_rolls(show):
    for name, beneath, params, sentence in CREDIT_ROLLS:
        effect = {"type": "creditroll", "params": params}
        add_words(show, name, beneath, effect, name, ROLL_LENGTH)
        show.add_page("Credit rolls", name, ROLL_LENGTH * 0.5, sentence, effect, ROLL_LENGTH)


def add_words(show, scene, beneath, effect, name, length=LENGTH):
    """A scene with words as an overlay over its picture."""
    show.add_scene(scene, beneath, 3, name, show.start, length)
    place = {"scene": scene, "start": round(show.start, 3), "duration": length}
    show.entries.append({"id": f"{scene}, words", "type": effect["type"], **place, "overlay": True, "layer": 1,
                         "params": effect["params"]})


def add_logos(show):
    for name, beneath, effect, sentence in LOGOS:
        add_words(show, name, beneath, effect, name)
        show.add_page("Logos", name, LENGTH * 0.5, sentence, effect)


# ---- what the shaders say of themselves ------------------------------------------------

def transition_parameters():
    head = (SHADERS / "transition" / "Transition.frag").read_text()
    rows = re.findall(r"^//\s+\d+\s+(\w+)\s+(\S.*)$", head, re.M)
    # Remarks in brackets may hold commas; a parameter is a word.
    return {name: re.findall(r"\w+", re.sub(r"\([^)]*\)", "", uses)) for name, uses in rows}


def glitch_sentence(style):
    files = {path.stem.lower(): path for path in (SHADERS / "glitch").glob("*.frag")}
    path = files.get("glitch" + style) or files.get(style) or files["glitch"]
    lines = path.read_text().splitlines()
    sentence = lines[1].lstrip("/ ")
    listed = []
    for line in lines[2:]:
        found = re.match(r"//\s+u(\w+)\s+(\S.*)", line)
        if not found:
            break
        listed.append(f"`{found[1][0].lower()}{found[1][1:]}` ({found[2]})")
    return f"{sentence} Parameters: {', '.join(listed)}."


# ---- output --------------------------------------------------------------------------

def write_show(show):
    config = {
        "schemaVersion": "native-runtime/v1",
        "globals": {"width": 1280, "height": 720, "fullscreen": False, "loop": True},
        "fallbackImage": "@poster",
        "assets": {"poster": "assets/images/poster.png", "weave": "assets/images/weave_field.png",
                   "captions": "assets/images/captions_field.png", "emblem": "assets/logos/emblem.svg"},
        "transitions": show.presets,
    }
    entries = ",\n".join(entry_text(entry) for entry in show.entries)
    path = SHOW / "config.json"
    path.write_text(json_text(config)[:-2] + ',\n  "entries": [\n' + entries + "\n  ]\n}\n")
    print(f"{path}  {len(show.pages)} things, {show.start:g} s")


def slug(group, name):
    return f"{group.split()[0].lower().rstrip('s')}-{name.replace(' ', '-').replace('_', '-')}"


def write_document(show):
    lines = ["# Gallery", "",
             "Every transition style, composite, glitch style and kind of text, as `shows/gallery` shows them for some seconds",
             "each: `./play.sh shows/gallery`, then Right and Left to leaf through. A transition is a pair of scenes and thus",
             "two stops: its outgoing picture, and the moment at which the transition sets out.", "",
             "This page and the show are written by `tools/make_gallery.py`.", ""]
    introductions = {
        "Transitions": "A preset of the description's \"transitions\", under the name of the outgoing scene; it plays while "
                       "the scenes overlap.",
        "Composites": "An entry, or a child of another composite.",
        "Glitch styles": "An entry over its \"image\", or a chain's \"postProcess\" over the source's picture. Without "
                         "either a style shows a picture of its own.",
        "Kinetic text": "An entry over others, in a colour font. Lengths are in pixels of the output, \"scale\" in pixels "
                        "a texel of the font.",
        "Bitmap text": "An entry over others, in the bitmap font. Lengths are in pixels of the output, \"scale\" in pixels a "
                       "dot.",
        "Lower thirds": "An entry over others. Every style leaves the way it came.",
        "Credit rolls": "An entry over others, here six seconds long.",
        "Logos": "An entry over others. A logo is the paths of an SVG file, `tools/make_logos.py` draws those of the shows.",
    }
    last = None
    for group, name, _, sentence, shown in show.pages:
        if group != last:
            lines += [f"## {group}", "", introductions[group], ""]
            last = group
        body = json_text(shown)
        if group == "Transitions":      # a member, not an object of its own
            scene, preset = next(iter(shown.items()))
            body = f"{json.dumps(scene)}: {json_text(preset, 0, len(scene) + 4)}"
        lines += [f"### {name}", "", f"![{name}](gallery/{slug(group, name)}.jpg)", "", sentence, "",
                  "```json", body, "```", ""]
    path = ROOT / "docs" / "gallery.md"
    path.write_text("\n".join(lines[:-1]) + "\n")
    print(path)


def write_stills(show, player):
    STILLS.mkdir(parents=True, exist_ok=True)
    for old in STILLS.glob("*.jpg"):
        old.unlink()
    with tempfile.TemporaryDirectory() as folder:
        times = ",".join(f"{moment:.3f}" for _, _, moment, _, _ in show.pages)
        # Rendered at the show's own size, because some parameters count pixels, and then made smaller.
        subprocess.run([player, SHOW / "config.json", "-o", f"{folder}/%03d.png", "--still", times, "--size", "1280x720"],
                       check=True, stdout=subprocess.DEVNULL)
        pictures = sorted(Path(folder).glob("*.png"))
        assert len(pictures) == len(show.pages)
        for picture, (group, name, *_) in zip(pictures, show.pages):
            subprocess.run(["convert", picture, "-filter", "Lanczos", "-resize", STILL_SIZE, "-strip", "-quality", "76",
                            "-sampling-factor", "4:2:0", STILLS / f"{slug(group, name)}.jpg"], check=True)
    size = sum(path.stat().st_size for path in STILLS.glob("*.jpg"))
    print(f"{STILLS}  {len(show.pages)} stills, {size // 1024} KiB")


def main():
    arguments = argparse.ArgumentParser(description="Writes the gallery show, its document and its stills.")
    arguments.add_argument("--no-stills", action="store_true", help="leave docs/gallery/ as it is")
    arguments.add_argument("player", nargs="?", default=ROOT / "build" / "release" / "quillon-player")
    options = arguments.parse_args()

    show = Show()
    add_transitions(show)
    add_composites(show)
    add_glitches(show)
    add_kinetic_texts(show)
    add_bitmap_texts(show)
    add_lower_thirds(show)
    add_credit_rolls(show)
    add_logos(show)
    write_show(show)
    write_document(show)
    if not options.no_stills:
        write_stills(show, options.player)


if __name__ == "__main__":
    main()
