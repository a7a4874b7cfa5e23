"""Shows that are broken or hostile: at worst a line that names the file, and a show that goes on."""

import json
import os
import re
import struct
import unittest
from pathlib import Path

from support import HEADER, PlayerTest, SHADERS, VERTEX, entry, png, show

SECONDS = 10.0  # no broken show may hold the player up for longer

START_UP_FAILURES = ("[ERROR] No scenes or timeline entries found.\n", "[ERROR] Failed to load OpenGL 3.3 functions.\n",
                     "[ERROR] Config not found: ")


class BrokenTest(PlayerTest):
    def survive(self, config, *lines, ends=0, arguments=("--length", "0.02")):
        """Plays a show; the exit code must be `ends` (None: any of a start-up failure's), the log hold `lines`."""
        path = config if isinstance(config, Path) else self.write_show(config)
        result = self.run_player("--headless", *arguments, path, code=None, time_limit=4 * SECONDS)
        said = result.log[-3000:] + result.err[-2000:]
        self.assertLess(result.seconds, SECONDS, said)
        self.assertIn(result.code, (0, 1) if ends is None else (ends,), said)
        if result.code == 0:
            self.assertTrue(result.log.endswith("\n[DONE]\n"), said)
        else:
            self.assertTrue(any(failure in result.log for failure in START_UP_FAILURES), said)
        for line in lines:
            self.assertIn(line.replace("{folder}", str(self.folder)), result.log)
        control = re.search(r"[\x00-\x08\x0b-\x1f\x7f\x80-\x9f]", result.log + result.err)
        self.assertIsNone(control, f"control character on the terminal: {said!r}")
        return result


class BrokenConfiguration(BrokenTest):
    def test_truncated(self):
        whole = json.dumps(show(entry("textured", 0, 1, scene="a", params={"image": "p.png", "alpha": 0.5}),
                                entry("plain", 0.5, 1, overlay=True, params={"color": [1, 0, 0.5, 1]}),
                                fallbackImage="p.png", assets={"x": "y"}), separators=(",", ":"))
        self.write("p.png", png(1, 1, bytes(4)))
        self.survive(whole, "2 timeline entries")
        for length in range(0, len(whole), 11):
            with self.subTest(whole[:length]):
                self.survive(whole[:length], ends=None)

    def test_odd_documents(self):
        good = json.dumps(show(entry("clock")))
        for name, text, ends in (
                ("byte order mark", "\ufeff" + good, 0), ("trailing text", good + "}}]", 0), ("zero byte", "\0" + good, 1),
                ("UTF-16", good.encode("utf-16"), 1), ("bytes", bytes(range(256)), 1), ("quote", '"' * 100, 1),
                ("deep arrays", "[" * 300000, 1), ("deep params", '{"entries":[{"type":"clock","params":' + "[" * 300000, 0),
                ("deep objects", '{"entries":[' + '{"type":"clock","params":{"a":' * 30000, 0),
                ("repeated keys", '{"entries":[{"type":"clock"}],"entries":[],"globals":{},"globals":[]}', 0),
                ("wrong kinds", '{"globals":[],"assets":7,"audio":"x","fallbackImage":{},"transitions":[1],"scenes":'
                                '[1,"x",{"entries":[[],null]}],"entries":[null,7,"x",[],{"type":7,"id":{},"start":"1",'
                                '"duration":true,"layer":[],"params":[1]}]}', 0)):
            with self.subTest(name):
                self.survive(text, ends=ends)

    def test_numbers(self):
        numbers = ("1e999", "-1e999", "1e38", "-1e38", "nan", "-nan", "inf", "0x7fffffff", "1e-320", "-0", "2147483648",
                   "-2147483649", "16777217", "9" * 4000)
        for number in numbers:
            with self.subTest(number[:20]):
                entries = [f'{{"type": "clock", "id": "{key}", "{key}": {number}}}'
                           for key in ("start", "duration", "delay", "layer")]
                entries += [f'{{"type": "plain", "overlay": true, "params": {{"{key}": {number}, "color": [1, {number}]}}}}'
                            for key in ("alpha", "timeScale", "color")]
                entries = ", ".join(entries)
                self.survive(f'{{"globals": {{"width": 8, "height": 8}}, "audio": {{"volume": {number}}}, "entries": '
                             f'[{entries}]}}', "[PLAY] ", arguments=("--press", "0:Right", "--press", "0:Up", "--press", "0.02:Escape"))
                self.survive(f'{{"globals": {{"width": 8, "height": 8}}, "scenes": [{{"entries": [{entries}]}}]}}')

    def test_sizes(self):
        for width, height, ends in (("-5", "0", 0), ("2147483647", "2147483647", 1), ("1e999", "1", 1), ("65536", "65536", 1),
                                    ("-1e38", "nan", None), ("1", "100000", 1)):
            with self.subTest(f"{width} x {height}"):
                self.survive(f'{{"globals": {{"width": {width}, "height": {height}}}, "entries": [{{"type": "clock"}}]}}',
                             ends=ends)

    def test_many(self):
        for name, config, line in (
                ("entries", show(*(entry("clock", k / 100, id=str(k), scene=f"s{k}") for k in range(1500))), "1500 timeline"),
                ("missing shaders", show(*(entry("none", k / 100) for k in range(10000))), "10000 timeline"),
                ("overlays", show(*(entry("clock", 0, 9, overlay=True, layer=-k) for k in range(500))), "overlays=500"),
                ("params", show(entry("clock", params={f"p{k}": k for k in range(100000)})), "1 timeline"),
                ("aliases", show(entry("clock"), assets={f"a{k}": "x" for k in range(100000)}), "1 timeline"),
                ("a long name", show(entry("clock", id="n" * 3000000)), "base=nnn"),
                ("a long type", show(entry("t" * 1000000)), "[SKIP] ttt"),
                ("a long path", show(entry("image", params={"image": "../" * 100000 + "x.png"})), "[OK] image"),
                ("an alias to itself", show(entry("image", params={"image": "@a"}), assets={"a": "@a"}), "[OK] image")):
            with self.subTest(name):
                self.survive(config, line)

    def test_names_cannot_speak_to_the_terminal(self):
        evil = "\x1b[2J\x1b]0;owned\x07\r\x08\x7f\u009b31m\x01%s%n%999999d\t"
        safe = "?[2J?]0;owned?????31m?%s%n%999999d"
        self.write(f"{evil}.png", b"junk")
        config = show(entry("clock", id=evil, scene=evil), entry(evil, scene=evil), entry("image", params={"image": f"{evil}.png"}))
        result = self.survive(config, ends=0)
        self.assertIn(f"scene={safe}", re.sub("[ ?]+31m", "?????31m", result.log))
        self.survive(self.folder / f"{evil}.json", ends=1)
        refused = self.run_player(f"--{evil}", code=1)
        self.assertNotRegex(refused.err, r"[\x00-\x08\x0b-\x1f\x7f\x80-\x9f]")
        # Nor can it forge lines of the log.
        forged = self.survive(show(entry("clock", id="a\n[EXIT] forged"), entry("x\n[DONE]")))
        self.assertEqual(re.findall(r"^\[(?:EXIT|DONE)\].*", forged.log, flags=re.M), ["[EXIT] main loop finished", "[DONE]"])


class BrokenShaders(BrokenTest):
    GOOD = entry("clock", id="good")

    def test_sources(self):
        huge = HEADER + "void main() { FragColor = vec4(" + "+".join(["iTime"] * 3000) + "); }"
        for name, fragment, vertex, line in (
                ("no main", HEADER, VERTEX, "  [SKIP] x (shader failed)\n"), ("syntax", "}{", VERTEX, "[SHADER ERROR] x:\n"), ("vertex", SHADERS["clock"], "}{", "[SHADER ERROR] x:\n"),
                ("binary", bytes(range(1, 256)), VERTEX, "[SHADER ERROR] x:\n"),
                ("empty", "", VERTEX, "[ERROR] Frag not found: {folder}/assets/shaders/x/x.frag\n"),
                ("empty vertex", SHADERS["clock"], "", "[WARN] Vert not found: {folder}/assets/shaders/x/x.vert (using default)\n"),
                ("link", "#version 330 core\nin vec4 vUV; out vec4 c; void main() { c = vUV; }", VERTEX, "[LINK ERROR] x:\n"),
                ("other version", "#version 999\nvoid main() {}", VERTEX, "[SHADER ERROR] x:\n"),
                ("#include", '#version 330 core\n#include "/etc/passwd"\nvoid main() {}', VERTEX, "[SHADER ERROR] x:\n"),
                ("escapes", '#version 330 core\n#error \x1b[31m\x9b\x07\n', VERTEX, "[SHADER ERROR] x:\n"),
                ("zero byte", HEADER + "void main() {}\0}{", VERTEX, "  [OK] x\n"),
                ("long line", huge, VERTEX, "  [OK] x\n"),
                ("divisions", HEADER + "void main() { FragColor = vec4(1.0 / (iTime - iTime), sqrt(-1.0), 1 / (iFrame - iFrame), 0); }",
                 VERTEX, "  [OK] x\n")):
            with self.subTest(name):
                self.write("assets/shaders/x/x.frag", fragment)
                self.write("assets/shaders/x/x.vert", vertex)
                self.survive(show(self.GOOD, entry("x", overlay=True)), line, "  [OK] clock\n", "base=good")

    def test_broken_buffer_pass(self):
        for name, source, line in (("syntax", "}{", "[SHADER ERROR] x_Buf:\n"),
                                   ("empty", "", "[WARN] BufferA not found: {folder}/assets/shaders/x/xBufferA.frag\n")):
            with self.subTest(name):
                self.write("assets/shaders/x/x.frag", SHADERS["clock"])
                self.write("assets/shaders/x/xBufferA.frag", source)
                self.survive(show(entry("x")), line, "  [OK] x\n")

    def test_packs(self):
        def pack(count, *numbers, body=b""):
            return b"DSPAK01\0" + struct.pack(f"<{1 + len(numbers)}I", count, *numbers) + body

        big = 0xFFFFFFFF
        invalid, loaded = "[SHADERPACK] Invalid pack: {folder}/shaders.pak\n", "[SHADERPACK] Loaded %d shaders from {folder}/shaders.pak\n"
        for name, content, line in (
                ("empty", b"", invalid), ("magic alone", b"DSPAK01", invalid), ("garbage", os.urandom(5000), invalid),
                ("11 bytes", b"DSPAK01\0\0\0\0", invalid), ("no entries", pack(0), loaded % 0), ("count alone", pack(big), loaded % 0),
                ("sum wraps", pack(1, 16, big - 15, body=bytes(64)), loaded % 0),
                ("both largest", pack(big, big, big, body=bytes(64)), loaded % 0),
                ("position wraps", pack(2, 1, big - 20, body=bytes(64)), loaded % 0),
                ("second wraps", pack(3, 1, 1, body=b"ab" + struct.pack("<II", 2, big - 1) + bytes(9)), loaded % 1),
                ("random entries", pack(1000, 3, 2, body=bytes(5) + os.urandom(200)), "[SHADERPACK] Loaded "),
                ("data missing", pack(1, 5, 5, body=bytes(9)), loaded % 0)):
            with self.subTest(name):
                self.write("shaders.pak", content)
                self.survive(show(self.GOOD), line, "  [OK] clock\n")

    def test_pack_that_works(self):
        packed = Path(__file__).resolve().parent.parent / "shows/packed/config.json"
        result = self.survive(packed, "[SHADERPACK] Loaded ", "  [OK] ")
        self.assertNotIn("[SKIP]", result.log)


class BrokenFiles(BrokenTest):
    def unreadable(self, path):
        """Puts every kind of thing that is no readable file at a path, one after the other."""
        path.parent.mkdir(parents=True, exist_ok=True)
        (self.folder / "loop").unlink(missing_ok=True)
        (self.folder / "loop").symlink_to("loop")
        for name, make in (("directory", path.mkdir), ("dangling link", lambda: path.symlink_to("gone")),
                           ("link to itself", lambda: path.symlink_to(path)), ("link loop", lambda: path.symlink_to(self.folder / "loop")),
                           ("pipe", lambda: os.mkfifo(path)), ("endless device", lambda: path.symlink_to("/dev/zero")),
                           ("terminal", lambda: path.symlink_to("/dev/tty")),
                           ("read error", lambda: path.symlink_to("/proc/self/mem"))):
            make()
            with self.subTest(name, path=path.name):
                yield name
            path.rmdir() if path.is_dir() and not path.is_symlink() else path.unlink()

    def test_configuration(self):
        path = self.folder / "broken.json"
        for name in self.unreadable(path):
            line = "[ERROR] Cannot read {folder}/broken.json" if name == "read error" else "[ERROR] Config not found: {folder}/broken.json"
            self.survive(path, line, ends=1)

    def test_shaders(self):
        for file, tag in (("x.frag", "    [ERROR] Frag not found: "), ("x.vert", "    [WARN] Vert not found: ")):
            for other in ("x.frag", "x.vert"):
                self.write(f"assets/shaders/x/{other}", SHADERS["clock"] if other == "x.frag" else VERTEX)
            (self.folder / "assets/shaders/x" / file).unlink()
            for name in self.unreadable(self.folder / "assets/shaders/x" / file):
                self.survive(show(entry("clock"), entry("x")), tag, "  [OK] clock\n")

    def test_images_and_pack(self):
        picture, fallback = self.folder / "p.png", self.write("assets/images/Logo.png", png(1, 1, bytes(4)))
        config = show(entry("image", params={"image": "p.png"}), entry("textured", params={"texture": "p.png"}))
        for name in self.unreadable(picture):
            line = "  [WARN] Texture load failed: {folder}/p.png\n" if name == "read error" else "  [OK] image\n"
            self.survive(config, line, "  [TEX] using fallback for textured channel0\n", f"  [TEX] {fallback} (1x1)\n")
        picture.write_bytes(png(1, 1, bytes(4)))
        for name in self.unreadable(self.folder / "shaders.pak"):
            self.survive(config, "  [OK] textured\n", *(["[SHADERPACK] Invalid pack: "] if name == "read error" else []))

    def test_pictures(self):
        good = png(40, 30, os.urandom(40 * 30 * 4))
        claims = {"png": png(60000, 60000), "bmp": b"BM" + struct.pack("<IIIIiiHHIIiiII", 54, 0, 54, 40, 60000, 60000, 1, 32, 0, 0, 0, 0, 0, 0),
                  "gif": b"GIF89a" + struct.pack("<HHBBB", 60000, 60000, 0, 0, 0) + b"," + struct.pack("<HHHHB", 0, 0, 60000, 60000, 0) + b"\2\0;",
                  "negative bmp": b"BM" + struct.pack("<IIIIiiHHIIiiII", 54, 0, 54, 40, 1, -2147483648, 1, 32, 0, 0, 0, 0, 0, 0),
                  "largest png": png(2147483647, 2147483647), "flat png": png(0, 5)}
        for name, content in (*claims.items(), ("empty", b""), ("text", b"no picture"), ("half", good[:len(good) // 2]),
                              ("head", good[:33]), ("damaged", good[:60] + b"\xff" * 40 + good[100:]),
                              ("svg", b"<svg width='60000' height='60000' xmlns='http://www.w3.org/2000/svg'/>"),
                              ("tga", bytes([0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0]) + struct.pack("<HHBB", 60000, 60000, 32, 0))):
            with self.subTest(name):
                self.write("p.png", content)
                result = self.survive(show(entry("image", params={"image": "p.png"}), entry("clock")), "  [OK] clock\n",
                                      "  [WARN] Texture load failed: {folder}/p.png\n")
                self.assertIn(str(self.folder / "p.png"), result.err)


class Names(BrokenTest):
    def test_places_of_a_show(self):
        for place in ("a b", "Größe 日本", "new\nline", "it's \"quoted\" $HOME %s", "a" * 200 + "/" + "b" * 200, "-o", "..."):
            with self.subTest(place):
                self.write(f"{place}/p.png", png(1, 1, bytes(4)))
                path = self.write_show(show(entry("textured", params={"image": "p.png"})), f"{place}/config.json")
                result = self.survive(path, "  [OK] textured\n")
                self.assertRegex(result.log, r"  \[TEX\] [^[]*\(1x1\)\n")
        (self.folder / os.fsdecode(b"latin\xe9")).mkdir()
        path = self.write_show(show(entry("clock")), os.fsdecode(b"latin\xe9/config.json"))
        self.assertIn("  [OK] clock\n", self.run_player("--headless", "--length", 0, path).log)

    def test_names_in_other_letters_and_separators(self):
        self.write("textures/logo.png", png(3, 2, bytes(24)))
        self.write("Both/empty", "")
        self.write("both/logo.png", png(5, 4, bytes(80)))
        self.write("assets/SHADERS/Mixed/mIXed.FRAG", SHADERS["clock"])
        absolute = self.write("elsewhere/a.png", png(7, 1, bytes(28)))
        for written, size in (("Textures\\LOGO.PNG", "3x2"), ("textures/logo.png", "3x2"), ("./TEXTURES//Logo.png", "3x2"),
                              ("Both\\Logo.png", "5x4"), ("elsewhere/../textures\\logo.PNG", "3x2"), ("@pic", "3x2"),
                              (str(absolute), "7x1"), ("@abs", "7x1"), (str(absolute).replace("/", "\\"), "7x1")):
            with self.subTest(written):
                config = show(entry("image", params={"image": written}), entry("mixed"),
                              assets={"pic": "textures\\Logo.png", "abs": str(absolute)})
                result = self.survive(config, "  [OK] mixed\n")
                self.assertRegex(result.log, rf"  \[TEX\] .*\({size}\)\n")
        for config in ("CONFIG.JSON", "./Config.json"):
            self.assertIn("  [OK] mixed\n", self.run_player("--headless", "--length", 0, config).log)


if __name__ == "__main__":
    unittest.main()
