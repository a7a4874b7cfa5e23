"""Shows that are broken or hostile: at worst a line that names the file, and a show that goes on."""

import json
import os
import re
import unittest
from pathlib import Path

from support import HEADER, PlayerTest, SHADERS, VERTEX, entry, png, show
from system import WINDOWS

START_UP_FAILURES = r"\[ERROR\] (No scenes or |Failed to load OpenGL 3\.3|Config not|Cannot read)"
PIXEL = png(1, 1, bytes(4))


class BrokenTest(PlayerTest):
    def survive(self, config, *lines, ends=0, arguments=("--length", "0.12")):
        """Plays a show, given as such or as a path. The log must hold `lines` and the exit code be one of
        `ends`, but 1 stands for a start-up failure alone."""
        path = config if isinstance(config, Path) else self.write_show(config)
        run = self.run_player("--headless", *arguments, path, code=ends)
        self.assertRegex(run.log, r"\n\[DONE\]\n\Z" if run.process.returncode == 0 else START_UP_FAILURES)
        for line in lines:
            self.assertIn(line.replace("{folder}", str(self.folder)), run.log)
        self.assertNotRegex(run.log + run.err, r"[\x00-\x08\x0b-\x1f\x7f\x80-\x9f]", "control characters")
        return run


class BrokenConfiguration(BrokenTest):
    def test_truncated(self):
        whole = json.dumps(show(entry("textured", 0, 1, scene="a", params={"image": "p.png", "alpha": 0.5}),
                                fallbackImage="p.png", assets={"x": "y"}), separators=(",", ":"))
        self.write("p.png", PIXEL)
        for length in range(0, len(whole), 17):
            with self.subTest(whole[:length]):
                self.survive(whole[:length], ends=(0, 1))

    def test_odd_documents(self):
        good = json.dumps(show(entry("clock")))
        for name, ends, text in (
                ("byte order mark", 0, "\ufeff" + good),
                ("trailing text", 0, good + "}}]"),
                ("deep params", 0, '{"entries":[{"type":"clock","params":' + "[" * 300000),
                ("deep objects", 0, '{"entries":[' + '{"type":"clock","params":{"a":' * 30000),
                ("wrong kinds", 0, '{"globals":[],"assets":7,"audio":"x","fallbackImage":{},"transitions":[1],'
                                   '"scenes":[1,"x",{"entries":[[],null]}],"entries":[null,7,"x",[],'
                                   '{"type":7,"id":{},"start":"1","duration":true,"layer":[],"params":[1]}]}'),
                ("zero byte", 1, "\0" + good),
                ("UTF-16", 1, good.encode("utf-16")),
                ("bytes", 1, bytes(range(256)))):
            with self.subTest(name):
                self.survive(text, ends=ends)

    def test_numbers(self):
        keys = ("--press", "0:Right", "--press", "0:Up", "--press", "0.02:Escape")
        for number in ("1e999", "-1e38", "nan", "1e-320", "2147483648", "-2147483649", "9" * 4000):
            with self.subTest(number[:20]):
                entries = [entry("clock", **{key: "N"}) for key in ("id", "layer", "delay")]
                entries += [entry("clock", "N"), entry("clock", 0, "N")]
                entries += [entry("plain", overlay=True, params={"color": [1, "N"], key: "N"})
                            for key in ("alpha", "timeScale", "color")]
                native = json.dumps(show(*entries, audio={"volume": "N"})).replace('"N"', number)
                self.survive(native, "[PLAY] ", arguments=keys)
                self.survive(native.replace('"entries": [', '"scenes": [{"entries": [') + "]}")
        for side, ends in ((-5, 0), (2147483647, 1), ("-1e38", (0, 1)), ("nan", (0, 1))):
            with self.subTest(side):
                config = json.dumps(show(entry("clock"), size=("N", "N"))).replace('"N"', str(side))
                self.survive(config, ends=ends)

    def test_many_and_long(self):
        far = "../" * 100000 + "x.png"
        for config, line in (
                (show(*(entry("none", k / 100) for k in range(3000))), "3000 timeline entries"),
                (show(entry("clock", params={f"p{k}": k for k in range(100000)})), "  [OK] clock"),
                (show(entry("clock", id="n" * 3000000)), "base=nnn"),
                (show(entry("t" * 1000000)), "[SKIP] ttt"),
                (show(entry("image", params={"image": "@a"}), assets={"a": far}), "[OK] image")):
            with self.subTest(json.dumps(config)[:120]):
                self.survive(config, line)

    def test_names_cannot_speak_to_the_terminal(self):
        evil = "\x1b[2J\x1b]0;owned\x07\r\x08\x7f\u009b31m\x01%s%n%999999d\t"
        self.write(f"{evil}.png", b"junk")
        picture = entry("image", params={"image": f"{evil}.png"})
        self.survive(show(entry("clock", id=evil, scene=evil), entry(evil, scene=evil), picture),
                     "scene=?[2J?]0;owned", "%s%n%999999d")
        self.survive(self.folder / f"{evil}.json", ends=1)
        # Nor can they forge lines of the log.
        log = self.survive(show(entry("clock", id="a\n[EXIT] forged"), entry("x\n[DONE]"))).log
        self.assertEqual(re.findall(r"^\[(?:EXIT|DONE)\]", log, flags=re.M), ["[EXIT]", "[DONE]"])


class BrokenFiles(BrokenTest):
    def test_shader_sources(self):
        failed, fine, home = "[SHADER ERROR] x:\n", "  [OK] x\n", "assets/shaders/x/"
        config = show(entry("clock"), entry("x", overlay=True))
        for fragment, vertex, line in (
                ("#version 330 core\n#error \x1b[31m\x9b\x07\n}{", VERTEX, failed),
                (HEADER, VERTEX, "  [SKIP] x (shader failed)\n"),
                ("", VERTEX, "[ERROR] Frag not found: {folder}/" + home + "x.frag\n"),
                (SHADERS["clock"], "", "[WARN] Vert not found: {folder}/" + home + "x.vert (using default)\n"),
                (HEADER + "void main() {}\0}{", VERTEX, fine),
                (HEADER + "void main() { FragColor = vec4(1 / (iFrame - iFrame)); }", VERTEX, fine)):
            with self.subTest(fragment[-20:], vertex=vertex[-20:]):
                self.write(home + "x.frag", fragment)
                self.write(home + "x.vert", vertex)
                self.survive(config, line, "  [OK] clock\n", "base=clock")

    def test_packs(self):
        # The pack's own faults are a unit's matter; here the show goes on.
        self.write("shaders.pak", b"DSPAK01\0" + b"\xff" * 64)
        loaded = "[SHADERPACK] Loaded 0 shaders from {folder}/shaders.pak\n"
        self.survive(show(entry("clock")), loaded, "  [OK] clock\n")
        packed = Path(__file__).resolve().parent.parent / "shows/packed/config.json"
        self.assertNotIn("[SKIP]", self.survive(packed, "[SHADERPACK] Loaded ", "  [OK] ").log)

    def test_what_is_no_readable_file(self):
        """Everything of the kind, in the place of each file that a show consists of."""
        self.write("assets/images/Logo.png", PIXEL)
        self.write("assets/shaders/x/x.vert", VERTEX)
        self.write("assets/shaders/y/y.frag", SHADERS["clock"])
        config = show(entry("clock"), entry("x"), entry("y"), entry("textured", params={"texture": "p.png"}))
        names = ("a.json", "assets/shaders/x/x.frag", "assets/shaders/y/y.vert", "p.png", "shaders.pak")
        paths = [self.folder / name for name in names]
        missing = ("[ERROR] Frag not found: (none)\n", "[WARN] Vert not found: (none) (using default)\n",
                   "  [TEX] using fallback for textured channel0\n", "[WIN] ")
        unread = ("[ERROR] Frag not found: {folder}/", "[WARN] Vert not found: {folder}/",
                  "[WARN] Texture load failed: {folder}/p.png\n", "[SHADERPACK] Invalid pack: ")
        kinds_of_linux = ("pipe", "itself", "gone", "/dev/zero", "/dev/tty", "/proc/self/mem")
        for kind in ("directory", *(() if WINDOWS else kinds_of_linux)):
            with self.subTest(kind):
                for path in paths:
                    if kind in ("directory", "pipe"):
                        path.mkdir() if kind == "directory" else os.mkfifo(path)
                    else:
                        path.symlink_to(path if kind == "itself" else kind)
                # The last one looks like a file until it is read.
                looks_well = kind == "/proc/self/mem"
                lines, failure = (unread, "Cannot read") if looks_well else (missing, "Config not found:")
                self.survive(config, "  [OK] clock\n", "  [OK] textured\n", *lines)
                self.survive(paths[0], f"[ERROR] {failure} {paths[0]}\n", ends=1)
                for path in paths:
                    path.rmdir() if kind == "directory" else path.unlink()

    def test_pictures(self):
        svg = b"<svg width='60000' height='60000' xmlns='http://www.w3.org/2000/svg'/>"
        for content in (png(60000, 60000), b"", PIXEL[:len(PIXEL) // 2], svg):
            with self.subTest(content[:30]):
                path = self.write("p.png", content)
                config = show(entry("image", params={"image": "p.png"}), entry("clock"))
                run = self.survive(config, f"  [WARN] Texture load failed: {path}\n", "  [OK] clock\n")
                self.assertIn(str(path), run.err)

    def test_places_of_a_show(self):
        names_of_linux = ("new\nline", "\"quoted\"", "a" * 200 + "/" + "b" * 200, os.fsdecode(b"latin\xe9"))
        for place in ("Größe 日本", "it's $HOME %s", "-o", *(() if WINDOWS else names_of_linux)):
            with self.subTest(place):
                self.write(f"{place}/p.png", PIXEL)
                config = show(entry("textured", params={"image": "P.png"}))
                log = self.play(config, name=f"{place}/config.json").log
                self.assertRegex(log, r"  \[TEX\] [^[]*\(1x1\)\n  \[OK\] textured\n")


if __name__ == "__main__":
    unittest.main()
