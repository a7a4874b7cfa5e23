"""Shows stand alone, so some shaders, fonts and logos lie in several of them: copies, which must not drift apart."""

import pathlib
import unittest

SHOWS = pathlib.Path(__file__).parents[2] / "shows"
FOLDERS = ["assets/fonts", "assets/logos", *("DemoSceneResources/assets/shaders/" + name for name in (
    "transition", "composition", "glitch", "bitmaptext", "kinetictext", "Text"))]


def files_of(folder):
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class Copies(unittest.TestCase):
    def test_one_of_two_shows_has_all_that_the_other_has(self):
        for folder in FOLDERS:
            with self.subTest(folder):
                fewer, more = sorted((files_of(SHOWS / show / folder) for show in ("gallery", "showcase")), key=len)
                self.assertTrue(fewer)
                self.assertLessEqual(fewer.items(), more.items())


if __name__ == "__main__":
    unittest.main()
