"""The show reference names every key and word that the player reads, and none that it does not."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).parents[2]
SOURCES = ROOT / "src"

# Headings in the reference: the sources that read what it describes.
SECTIONS = {
    "The description": ["config/runtime_config.cpp"],
    "Entries": ["config/timeline_entry.cpp", "config/blend_mode.h"],
    '"image"': ["config/image_params.cpp"],
    '"blend" + "timeline_blend" + "chain" + "dynamicsplit" + "pip", "piptexture"':
        ["config/composite_params.cpp", "config/entry_kinds.cpp"],
    '"bitmaptext"': ["config/bitmap_text_params.cpp"],
    '"kinetictext"': ["config/kinetic_params.cpp"],
    '"lowerthird", "creditroll"': ["config/caption_params.cpp"],
    '"shapetext"': ["config/shape_text_params.cpp"],
    "Bitmap font": ["text/bitmap_font.cpp"],
    "Colour fonts": ["text/color_font.cpp"],
    "Transitions": ["config/transition_look.cpp"],
    "Shaders: every other type + Glitch styles": ["gpu/shader_lookup.cpp", "config/glitch_params.cpp"],
}

# Read by more than the section's own source: every effect's, and those of effects within effects.
SHARED = {"mixMode", "type", "params", "alpha", "timeScale", "effect"}

# Words of the code that no show writes: folders, files, and names of children.
NO_SHOW_WORDS = {"assets", "fonts", "shaders", "composition", "starfields", "buffer", "post", "step"}


def words_in(text):
    return set(re.findall(r'"([a-z][A-Za-z0-9_-]*)"', text))


def sections():
    _, *parts = re.split(r"^#+ (.+)\n", (ROOT / "docs/show-format.md").read_text(), flags=re.M)
    return dict(zip(parts[::2], parts[1::2]))


def keys_of_tables(section):
    """Words in the first cells of tables of keys."""
    tables = re.findall(r"^\| Key .*\n((?:\|.*\n)+)", section, flags=re.M)
    return set().union(*(words_in(row.split("|")[1]) for table in tables for row in table.splitlines()))


def code_of(path):
    """A source without its comments and its calls that write the log."""
    text = re.sub(r"//.*", "", (SOURCES / path).read_text())
    text = re.sub(r"#include.*", "", text)
    return re.sub(r"\b(logLine|printError)\([^;]*;", "", text)


class ShowReference(unittest.TestCase):
    def test_every_section_names_what_its_source_reads(self):
        text = sections()
        for headings, sources in SECTIONS.items():
            with self.subTest(headings):
                section = "".join(text[heading] for heading in headings.split(" + "))
                read = set().union(*(words_in(code_of(source)) for source in sources))
                documented = keys_of_tables(section)
                self.assertEqual(documented - read - SHARED, set(), "documented, but not read")
                spoken = {word for word in read if not re.match(r"[ui][A-Z]", word)}
                named = words_in(section) | set(re.findall(r"`(\w+)", section)) | SHARED | NO_SHOW_WORDS
                self.assertEqual(spoken - named, set(), "read, but not documented")

    def test_no_source_reads_keys_unseen(self):
        """A new source that reads keys must be given its section above."""
        known = {source for sources in SECTIONS.values() for source in sources}
        readers = {str(path.relative_to(SOURCES).as_posix()) for path in SOURCES.rglob("*.cpp")
                   if re.search(r'\bfind\(\w[\w.]*, "|\bkey<&', path.read_text())}
        self.assertEqual(readers - known, set())

    def test_every_type_of_effect_has_its_heading(self):
        types = words_in(code_of("config/effect_kind.h"))
        self.assertEqual(types - set().union(*map(words_in, sections())), set())


if __name__ == "__main__":
    unittest.main()
