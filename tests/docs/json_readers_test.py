"""Descriptions are read in one place: JSON goes no further than the configuration and the fonts' own files."""

import pathlib
import unittest

SOURCES = pathlib.Path(__file__).parents[2] / "src"
FONT_LOADERS = {"text/bitmap_font.cpp", "text/color_font.cpp"}


class JsonReaders(unittest.TestCase):
    def test_only_the_configuration_and_the_font_loaders_include_the_reader(self):
        files = [path for path in SOURCES.rglob("*") if path.suffix in (".h", ".cpp")]
        including = {path.relative_to(SOURCES).as_posix() for path in files
                     if '#include "foundation/json.h"' in path.read_text()}
        beyond = {name for name in including if name.split("/")[0] not in ("config", "foundation")}
        self.assertEqual(beyond, FONT_LOADERS)
        # A header would hand it on to whoever includes that.
        self.assertEqual({name for name in including if name.endswith(".h")}, set())


if __name__ == "__main__":
    unittest.main()
