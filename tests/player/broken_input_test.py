"""Shows that are broken or hostile: at worst a line that names the file, and a show that goes on."""

import json
import os
import re
import unittest
from pathlib import Path

from system import WINDOWS
from support import HEADER, PlayerTest, SHADERS, VERTEX, entry, png, show

SECONDS = 10.0  # no broken show may hold the player up for longer
START_UP_FAILURES = r"\[ERROR\] (No scenes or timeline entries found|Failed to load OpenGL 3\.3|Config not)"
PIXEL = png(1, 1, bytes(4))


class BrokenTest(PlayerTest):
    def survive(self, config, *lines, ends=0, arguments=("--length", "0.02")):
        """Plays a show, given as such or as a path. The log must hold `lines` and the exit code be `ends`;
        None takes any, but 1 stands for a start-up failure alone."""
        path = config if isinstance(config, Path) else self.write_show(config)
        result = self.run_player("--headless", *arguments, path, code=None, time_limit=4 * SECONDS)
        said = result.log[-3000:] + result.err[-2000:]
        self.assertLess(result.seconds, SECONDS, said)
        self.assertIn(result.code, (0, 1) if ends is None else (ends,), said)
        self.assertRegex(result.log, r"\n\[DONE\]\n\Z" if result.code == 0 else START_UP_FAILURES)
        for line in lines:
            self.assertIn(line.replace("{folder}", str(self.folder)), result.log)
        self.assertNotRegex(result.log + result.err, r"[\x00-\x08\x0b-\x1f\x7f\x80-\x9f]", "control characters")
        return result


class BrokenConfiguration(BrokenTest):
    def test_truncated(self):
        whole = json.dumps(show(entry("textured", 0, 1, scene="a", params={"image": "p.png", "alpha": 0.5}),
                                fallbackImage="p.png", assets={"x": "y"}), separators=(",", ":"))
        self.write("p.png", PIXEL)
        self.survive(whole, "1 timeline entries")
        for length in range(0, len(whole), 17):
            with self.subTest(whole[:length]):
                self.survive(whole[:length], ends=None)

    def test_odd_documents(self):
        good = json.dumps(show(entry("clock")))
        documents = {
            "byte order mark": (0, "\ufeff" + good),
            "trailing text": (0, good + "}}]"),
            "deep params": (0, '{"entries":[{"type":"clock","params":' + "[" * 300000),
            "deep objects": (0, '{"entries":[' + '{"type":"clock","params":{"a":' * 30000),
            "wrong kinds": (0, '{"globals":[],"assets":7,"audio":"x","fallbackImage":{},"transitions":[1],'
                               '"scenes":[1,"x",{"entries":[[],null]}],"entries":[null,7,"x",[],'
                               '{"type":7,"id":{},"start":"1","duration":true,"layer":[],"params":[1]}]}'),
            "zero byte": (1, "\0" + good),
            "UTF-16": (1, good.encode("utf-16")),
            "bytes": (1, bytes(range(256)))}
        for name, (ends, text) in documents.items():
            with self.subTest(name):
                self.survive(text, ends=ends)

    def test_numbers(self):
        keys = ("--press", "0:Right", "--press", "0:Up", "--press", "0.02:Escape")
        for number in ("1e999", "-1e38", "nan", "1e-320", "2147483648", "-2147483649", "9" * 4000):
            with self.subTest(number[:20]):
                entries = [f'{{"type": "clock", "id": "{key}", "{key}": {number}}}'
                           for key in ("start", "duration", "delay", "layer")]
                params = [f'"{key}": {number}, "color": [1, {number}]' for key in ("alpha", "timeScale", "color")]
                entries += [f'{{"type": "plain", "overlay": true, "params": {{{values}}}}}' for values in params]
                start = f'{{"globals": {{"width": 8, "height": 8}}, "audio": {{"volume": {number}}}, '
                entries = f'"entries": [{", ".join(entries)}]'
                self.survive(f"{start} {entries}}}", "[PLAY] ", arguments=keys)
                self.survive(f'{start} "scenes": [{{{entries}}}]}}')
        for width, height, ends in (("-5", "0", 0), ("2147483647", "2147483647", 1), ("-1e38", "nan", None)):
            with self.subTest(f"{width} x {height}"):
                size = f'{{"width": {width}, "height": {height}}}'
                self.survive(f'{{"globals": {size}, "entries": [{{"type": "clock"}}]}}', ends=ends)

    def test_many_and_long(self):
        for config, line in (
                (show(*(entry("none", k / 100) for k in range(3000))), "3000 timeline entries"),
                (show(entry("clock", params={f"p{k}": k for k in range(100000)})), "  [OK] clock"),
                (show(entry("clock", id="n" * 3000000)), "base=nnn"),
                (show(entry("t" * 1000000)), "[SKIP] ttt"),
                (show(entry("image", params={"image": "@a"}), assets={"a": "../" * 100000 + "x.png"}), "[OK] image")):
            with self.subTest(json.dumps(config)[:120]):
                self.survive(config, line)

    def test_names_cannot_speak_to_the_terminal(self):
        evil = "\x1b[2J\x1b]0;owned\x07\r\x08\x7f\u009b31m\x01%s%n%999999d\t"
        self.write(f"{evil}.png", b"junk")
        self.survive(show(entry("clock", id=evil, scene=evil), entry(evil, scene=evil),
                          entry("image", params={"image": f"{evil}.png"})), "scene=?[2J?]0;owned", "%s%n%999999d")
        self.survive(self.folder / f"{evil}.json", ends=1)
        # Nor can they forge lines of the log.
        forged = self.survive(show(entry("clock", id="a\n[EXIT] forged"), entry("x\n[DONE]")))
        self.assertEqual(re.findall(r"^\[(?:EXIT|DONE)\].*", forged.log, flags=re.M),
                         ["[EXIT] main loop finished", "[DONE]"])


class BrokenShaders(BrokenTest):
    HOME = "assets/shaders/x/"

    def test_sources(self):
        failed, fine = "[SHADER ERROR] x:\n", "  [OK] x\n"
        clock = SHADERS["clock"]
        for name, fragment, vertex, line in (
                ("syntax", "}{", VERTEX, failed),
                ("escapes", "#version 330 core\n#error \x1b[31m\x9b\x07\n", VERTEX, failed),
                ("no main", HEADER, VERTEX, "  [SKIP] x (shader failed)\n"),
                ("empty", "", VERTEX, "[ERROR] Frag not found: {folder}/" + self.HOME + "x.frag\n"),
                ("empty vertex", clock, "",
                 "[WARN] Vert not found: {folder}/" + self.HOME + "x.vert (using default)\n"),
                ("zero byte", HEADER + "void main() {}\0}{", VERTEX, fine),
                ("no numbers", HEADER + "void main() { FragColor = vec4(1 / (iFrame - iFrame)); }", VERTEX, fine)):
            with self.subTest(name):
                self.write(self.HOME + "x.frag", fragment)
                self.write(self.HOME + "x.vert", vertex)
                self.survive(show(entry("clock"), entry("x", overlay=True)), line, "  [OK] clock\n", "base=clock")

    def test_packs(self):
        # The pack's own faults are a unit's matter; here the show goes on.
        self.write("shaders.pak", b"DSPAK01\0" + b"\xff" * 64)
        self.survive(show(entry("clock")), "[SHADERPACK] Loaded 0 shaders from {folder}/shaders.pak\n", "  [OK] clock\n")
        packed = Path(__file__).resolve().parent.parent / "shows/packed/config.json"
        self.assertNotIn("[SKIP]", self.survive(packed, "[SHADERPACK] Loaded ", "  [OK] ").log)


class BrokenFiles(BrokenTest):
    def unreadable(self, path):
        """Puts every kind of thing that is no readable file at a path, one after the other. Only the last
        one looks like a file until it is read."""
        kinds = {"directory": path.mkdir, "pipe": lambda: os.mkfifo(path)}
        for target in ("gone", path, "/dev/zero", "/dev/tty", "/proc/self/mem"):
            kinds[target] = lambda target=target: path.symlink_to(target)
        path.unlink(missing_ok=True)
        for name, make in kinds.items():
            make()
            with self.subTest(path.name, what=name):
                yield name == "/proc/self/mem"
            path.rmdir() if name == "directory" else path.unlink()

    def test_configuration(self):
        path = self.folder / "broken.json"
        for looks_like_file in self.unreadable(path):
            failure = "Cannot read" if looks_like_file else "Config not found:"
            self.survive(path, f"[ERROR] {failure} {path}\n", ends=1)

    def test_what_a_show_consists_of(self):
        self.write("assets/images/Logo.png", PIXEL)
        config = show(entry("clock"), entry("x"), entry("textured", params={"texture": "p.png"}))
        for name, missing, unread in (
                ("assets/shaders/x/x.frag", "    [ERROR] Frag not found: ", "    [ERROR] Frag not found: {folder}/"),
                ("assets/shaders/x/x.vert", "    [WARN] Vert not found: ", "    [WARN] Vert not found: {folder}/"),
                ("p.png", "  [TEX] using fallback for textured channel0\n", "  [WARN] Texture load failed: {folder}/p.png\n"),
                ("shaders.pak", "[WIN] ", "[SHADERPACK] Invalid pack: ")):
            self.write("assets/shaders/x/x.frag", SHADERS["clock"])
            self.write("assets/shaders/x/x.vert", VERTEX)
            for looks_like_file in self.unreadable(self.folder / name):
                self.survive(config, unread if looks_like_file else missing, "  [OK] clock\n", "  [OK] textured\n")

    def test_pictures(self):
        for name, content in {
                "huge": png(60000, 60000), "empty": b"", "half": PIXEL[:len(PIXEL) // 2],
                "svg": b"<svg width='60000' height='60000' xmlns='http://www.w3.org/2000/svg'/>"}.items():
            with self.subTest(name):
                path = self.write("p.png", content)
                result = self.survive(show(entry("image", params={"image": "p.png"}), entry("clock")),
                                      f"  [WARN] Texture load failed: {path}\n", "  [OK] clock\n")
                self.assertIn(str(path), result.err)


class Names(BrokenTest):
    def test_places_of_a_show(self):
        names_of_linux = ("new\nline", "\"quoted\"", "a" * 200 + "/" + "b" * 200, os.fsdecode(b"latin\xe9"))
        for place in ("Größe 日本", "it's $HOME %s", "-o", *(() if WINDOWS else names_of_linux)):
            with self.subTest(place):
                self.write(f"{place}/p.png", PIXEL)
                path = self.write_show(show(entry("textured", params={"image": "P.png"})), f"{place}/config.json")
                result = self.run_player("--headless", "--length", 0.02, path)
                self.assertRegex(result.log, r"  \[TEX\] [^[]*\(1x1\)\n  \[OK\] textured\n")


if __name__ == "__main__":
    unittest.main()
