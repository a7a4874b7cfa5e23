"""What only the Windows player has: its paths, its encoder's pipe, and the same pictures as the Linux player's."""

import os
import shutil
import signal
import subprocess
import unittest
from pathlib import Path

from support import LivePlayer, PlayerTest, entry, environment, png, read_png, show
from system import PLAYER, RUNNER

ROOT = Path(__file__).resolve().parents[2]
LINUX_PLAYER = os.environ.get("QUILLON_LINUX_PLAYER", "")
STAND_IN_FFMPEG = Path(os.environ["QUILLON_STAND_IN_FFMPEG"])


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


class Paths(PlayerTest):
    def output(self, *arguments, code=0):
        done = subprocess.run([*RUNNER, PLAYER, *map(str, arguments)], cwd=self.folder, env=environment(),
                              capture_output=True, timeout=60)
        self.assertEqual(done.returncode, code, done.stdout)
        return done.stdout.decode()

    def test_log_in_the_systems_own_words(self):
        name = "Äpfel 日本"
        self.write_show(show(entry("textured", params={"image": "bilder/Ö.PNG"}), entry("plain"), assets={"x": "y"},
                             fallbackImage="F/f.png"), name=f"{name}/show.json")
        self.write(f"{name}/Bilder/ö.png", png(3, 2, bytes(24)))
        log = self.output("--headless", "--length", "0.02", f".\\{name}/SHOW.JSON")
        base = windows_path(self.folder / name)
        self.assertRegex(log.splitlines()[0], r"\A\[WIN\] DPI awareness: (Per-monitor v2|System|default \(not elevated\))\Z")
        for line in (f"[LOAD] .\\{name}/SHOW.JSON", f"[CONFIG] baseDir = {base}", f"  [TEX] {base}\\bilder\\Ö.PNG (3x2)"):
            self.assertIn(line + "\r\n", log)
        self.assertEqual(self.output("none.json", code=1).splitlines()[1:], ["[ERROR] Config not found: none.json"])

    def test_devices_are_no_shows(self):
        for name in ("NUL", "con", "\\\\.\\pipe\\quillon", "AUX"):
            self.assertIn(f"[ERROR] Config not found: {name}\r\n", self.output(name, code=1))

    def test_outputs_anywhere(self):
        path = self.write_show(show(entry("plain", params={"color": [0, 0.4, 1, 1]}), size=(3, 2)))
        for output in ("Bild é %d.png", windows_path(self.folder / "b%d.png"), "*%d.png".replace("*", "star")):
            self.run_player("-o", output, "--fps", 1, path)
        for name in ("Bild é 0.png", "b0.png", "star0.png"):
            self.assertEqual(read_png(self.folder / name), (3, 2, bytes((0, 102, 255)) * 6), name)


class Encoder(PlayerTest):
    """The pipe to ffmpeg, which a stand-in takes the place of."""

    def setUp(self):
        super().setUp()
        (self.folder / "bin").mkdir()
        shutil.copy(STAND_IN_FFMPEG, self.folder / "bin/ffmpeg.exe")
        self.path = self.write_show(show(entry("clock", 0, 0.5), size=(640, 360), audio={"path": "my music.ogg"}))
        self.write("my music.ogg", b"music")

    def env(self, **more):
        return {"WINEPATH": windows_path(self.folder / "bin"), **more}

    def test_arguments_and_frames(self):
        output = "my film.mp4"
        odd = ["a b", 'say "hi"', "back\\", 'both\\"', "", "tab\there", "ümlaut"]
        line = " ".join("'" + word + "'" for word in odd)
        self.write(output, b"older")
        self.run_player("-o", output, "--fps", 10, "--ffmpeg-args", line, self.path, env=self.env())
        arguments, _, frames = (self.folder / output).read_bytes().partition(b"\n\n" if "" not in odd else b".part\n\n")
        arguments = arguments.decode().split("\n")
        self.assertIn("file:" + windows_path(self.folder / "my music.ogg"), arguments)
        at = arguments.index("a b")
        self.assertEqual(arguments[at:at + len(odd)], odd)
        self.assertEqual(len(frames), 5 * 640 * 360 * 3 // 2)
        self.assertEqual(sorted(file.name for file in self.folder.iterdir() if file.is_file()),
                         ["config.json", "my film.mp4", "my music.ogg"])
        self.run_player("-o", "a.gif", "--fps", 10, self.path, env=self.env())
        self.assertEqual(len((self.folder / "a.gif").read_bytes().partition(b".part\n\n")[2]), 5 * 640 * 360 * 4)

    def test_failures(self):
        self.write("old.mp4", "old")
        cases = (("the program ffmpeg cannot be started", {"WINEPATH": ""}), ("ffmpeg: said before; some; last words",
                                                                             self.env(STAND_IN_FFMPEG="dies")))
        # In the current directory, which may be a stranger's show, it is not looked for.
        shutil.copy(STAND_IN_FFMPEG, self.folder)
        (self.folder / STAND_IN_FFMPEG.name).rename(self.folder / "ffmpeg.exe")
        for words, env in cases:
            result = self.run_player("-o", "old.mp4", "--fps", 100, self.path, env=env, code=1)
            errors = "".join(line for line in result.err.splitlines(True) if line.startswith("Cannot"))
            self.assert_one_line(errors, "Cannot write old.mp4: " + words)
            self.assertEqual((self.folder / "old.mp4").read_text(), "old")
            self.assertFalse((self.folder / "old.mp4.part").exists())

    def test_interrupted_while_the_encoder_takes_nothing(self):
        path = self.write_show(show(entry("clock", 0, 3600), size=(640, 360)))
        player = LivePlayer(self, "-o", "a.mp4", path, env=self.env(STAND_IN_FFMPEG="hangs"))
        player.wait_for(r"\[PLAY\]")
        player.process.send_signal(signal.SIGINT)
        self.assertEqual(player.end(code=1), ["[EXIT] WM_QUIT", "[DONE]"])
        self.assertEqual(list(self.folder.glob("a.*")), [])


@unittest.skipUnless(Path(LINUX_PLAYER).is_file(), "there is no Linux player to compare with")
class SamePictures(PlayerTest):
    """What both players draw of a show, on the same software rasterizer."""

    def render(self, config, times, size, linux):
        output = self.folder / "frames.rgba"
        arguments = ["-o", str(output), "--size", "%dx%d" % size, "--still", ",".join(map(str, times)), str(config)]
        done = subprocess.run(([LINUX_PLAYER] if linux else [*RUNNER, PLAYER]) + arguments, env=environment(),
                              capture_output=True, timeout=120)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertNotIn(b"[WARN] Texture load failed", done.stdout + done.stderr)
        frames, frame = output.read_bytes(), size[0] * size[1] * 4
        self.assertEqual(len(frames), len(times) * frame)
        return [frames[at:at + frame] for at in range(0, len(frames), frame)]

    @staticmethod
    def is_same(one, other):
        """Within two steps of 255 but for one pixel in ten thousand."""
        if one == other:
            return True
        far = {i // 4 for i, (a, b) in enumerate(zip(one, other)) if abs(a - b) > 2}
        return len(far) * 10000 <= len(one) // 4

    def assert_same(self, config, times, size=(320, 180), names=None):
        here, there = (self.render(config, times, size, linux) for linux in (False, True))
        for name, one, other in zip(names or times, here, there):
            self.assertTrue(self.is_same(one, other), f"{config.name}: {name}")
        return here

    def test_shows(self):
        times = [0.5 + 4 * k for k in range(23)]
        frames = self.assert_same(ROOT / "shows/gallery/config.json", times)
        self.assertFalse(self.is_same(frames[0], frames[1]))
        self.assert_same(ROOT / "shows/showcase/config.json", [1, 9, 17, 25, 33, 41, 49, 57], size=(160, 90))
        self.assert_same(ROOT / "shows/legacy/config.json", [1, 6, 11])

    def test_pictures_of_every_format(self):
        pictures = {
            "rgb.png": ["-alpha", "off"], "rgba.png": [], "palette.png": ["-alpha", "off", "-colors", "99", "-type", "Palette"],
            "grey.png": ["-alpha", "off", "-colorspace", "Gray"], "deep.png": ["-depth", "16"],
            "interlaced.png": ["-interlace", "PNG"],
            # Decoders fill coarser colour up in ways of their own.
            "whole.jpg": ["-alpha", "off", "-sampling-factor", "4:4:4"],
            "progressive.jpg": ["-alpha", "off", "-sampling-factor", "4:4:4", "-interlace", "JPEG"],
            "grey.jpg": ["-alpha", "off", "-colorspace", "Gray"],
            "24.bmp": ["-alpha", "off", "-define", "bmp:format=bmp3"], "8.bmp": ["-alpha", "off", "-colors", "250"], "32.bmp": [],
            "opaque.gif": ["-alpha", "off"], "clear.gif": ["-channel", "A", "-threshold", "50%"],
            "plain.tif": ["-alpha", "off", "-depth", "8"], "packed.tif": ["-depth", "8", "-compress", "LZW"],
            "grey.tif": ["-alpha", "off", "-depth", "8", "-colorspace", "Gray", "-compress", "Zip"],
        }
        source = self.folder / "source.png"
        subprocess.run(["convert", "-seed", "7", "-size", "97x61", "plasma:red-lime", "(", "-size", "97x61", "gradient:white-black", ")",
                        "-compose", "CopyOpacity", "-composite", source], check=True)
        entries = [entry("plain", 0, len(pictures), params={"color": [0.2, 0.5, 0.9, 1]})]
        for k, (name, arguments) in enumerate(pictures.items()):
            subprocess.run(["convert", source, *arguments, self.folder / name], check=True)
            entries.append(entry("image", k, 1, id=name, overlay=True, params={"image": name}))
        config = self.write_show(show(*entries))
        frames = self.assert_same(config, [k + 0.5 for k in range(len(pictures))], size=(97, 61), names=list(pictures))
        self.assertFalse(self.is_same(frames[0], frames[1]))


if __name__ == "__main__":
    unittest.main()
