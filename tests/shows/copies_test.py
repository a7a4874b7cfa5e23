"""Shows stand alone, so some shaders, fonts and logos lie in several of them: copies, which must not drift apart."""

import pathlib
import re
import unittest

SHOWS = pathlib.Path(__file__).parents[2] / "shows"
FOLDERS = ["assets/fonts", "assets/logos", *("DemoSceneResources/assets/shaders/" + name for name in (
    "transition", "composition", "glitch", "bitmaptext", "kinetictext", "Text"))]


# By which all shaders draw lots.
CHANCE = """float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}
"""
# The usual ways to draw them out of a float's last bits, which are each driver's own.
FLOAT_CHANCE = re.compile(r"fract\(\s*(?:sin|cos)\b|fract\([^;]*(?:\.103|\.0973|\b52\.98)\d*|43758")


def files_of(folder):
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class Copies(unittest.TestCase):
    def test_one_of_two_shows_has_all_that_the_other_has(self):
        for folder in FOLDERS:
            with self.subTest(folder):
                fewer, more = sorted((files_of(SHOWS / show / folder) for show in ("gallery", "showcase")), key=len)
                self.assertTrue(fewer)
                self.assertLessEqual(fewer.items(), more.items())

    def test_chance_is_one_function_of_integers(self):
        shaders = [path for path in SHOWS.rglob("*") if path.suffix in (".frag", ".vert")]
        drawing = 0
        for path in shaders:
            with self.subTest(path.relative_to(SHOWS)):
                text = path.read_text()
                self.assertEqual(FLOAT_CHANCE.findall(text), [])
                if "hash" in text:
                    drawing += 1
                    self.assertEqual(text.count(CHANCE), 1, "not the function that the others have")
                    self.assertGreater(text.count("hash("), 1, "it draws nothing")
        self.assertGreater(drawing, 30)


if __name__ == "__main__":
    unittest.main()
