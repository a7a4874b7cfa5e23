"""Shows stand alone, so some shaders and fonts lie in several of them: copies, which must not drift apart."""

import pathlib
import unittest

SHOWS = pathlib.Path(__file__).parents[2] / "shows"
ROOT = "DemoSceneResources/assets/shaders"


class Copies(unittest.TestCase):
    def test_showcase_has_the_gallerys_shaders(self):
        compared = 0
        for folder in ("transition", "composition", "glitch", "bitmaptext", "kinetictext", "Text"):
            for copy in (SHOWS / "showcase" / ROOT / folder).iterdir():
                with self.subTest(copy.name):
                    original = SHOWS / "gallery" / ROOT / folder / copy.name
                    self.assertEqual(copy.read_bytes(), original.read_bytes())
                    compared += 1
        self.assertGreaterEqual(compared, 5)

    def test_both_shows_have_the_same_fonts(self):
        fonts = {show: {path.relative_to(SHOWS / show): path.read_bytes()
                        for path in (SHOWS / show / "assets/fonts").rglob("*") if path.is_file()}
                 for show in ("gallery", "showcase")}
        self.assertEqual(fonts["gallery"], fonts["showcase"])
        self.assertIn(pathlib.Path("assets/fonts/bitmapfont.json"), fonts["gallery"])

    def test_showcase_has_the_gallerys_logos(self):
        logos = {show: {path.name: path.read_bytes() for path in (SHOWS / show / "assets/logos").iterdir()}
                 for show in ("gallery", "showcase")}
        self.assertLessEqual(logos["gallery"].items(), logos["showcase"].items())
        self.assertIn("demo_shape_text.svg", logos["gallery"])


if __name__ == "__main__":
    unittest.main()
