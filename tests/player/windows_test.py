"""What the Windows player has alone: its paths and its encoder's pipe; and that it draws what Linux draws."""

import os
import shutil
import signal
import unittest
from pathlib import Path

from support import COMMAND, Player, PlayerTest, entry, output_of, png, show

ROOT = Path(__file__).resolve().parents[2]
LINUX_PLAYER = os.environ.get("QUILLON_LINUX_PLAYER", "")
STAND_IN_FFMPEG = Path(os.environ["QUILLON_STAND_IN_FFMPEG"])


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


class Paths(PlayerTest):
    def test_log_in_the_systems_own_words(self):
        name = "Äpfel 日本"
        self.write_show(show(entry("textured", params={"image": "bilder/Ö.PNG"})), name=f"{name}/show.json")
        self.write(f"{name}/Bilder/ö.png", png(3, 2, bytes(24)))
        log = self.run_player("--headless", "--length", "0.12", f".\\{name}/SHOW.JSON").out.decode()
        base = windows_path(self.folder / name)
        self.assertRegex(log, r"\A\[WIN\] DPI awareness: (Per-monitor v2|System|default \(not elevated\))\r\n")
        for line in (f"[LOAD] .\\{name}/SHOW.JSON", f"[CONFIG] baseDir = {base}",
                     f"  [TEX] {base}\\bilder\\Ö.PNG (3x2)"):
            self.assertIn(line + "\r\n", log)

    def test_devices_are_no_shows(self):
        for name in ("none.json", "NUL", "con", "\\\\.\\pipe\\quillon", "AUX"):
            log = self.run_player(name, code=1).out.decode()
            self.assertTrue(log.endswith(f"\r\n[ERROR] Config not found: {name}\r\n"), log)

    def test_outputs_anywhere(self):
        path = self.write_show(show(entry("plain", params={"color": [0, 0.4, 1, 1]}), size=(3, 2)))
        for output in ("Bild é %d.png", windows_path(self.folder / "b%d.png")):
            self.run_player("-o", output, "--fps", 1, path)
        for name in ("Bild é 0.png", "b0.png"):
            pixels = output_of("convert", self.folder / name, "-depth", 8, "rgb:-")
            self.assertEqual(pixels, bytes((0, 102, 255)) * 6, name)


class Encoder(PlayerTest):
    """The pipe to ffmpeg, which a stand-in takes the place of."""

    def setUp(self):
        super().setUp()
        (self.folder / "bin").mkdir()
        shutil.copy(STAND_IN_FFMPEG, self.folder / "bin/ffmpeg.exe")
        music = {"path": "my music.ogg"}
        self.path = self.write_show(show(entry("clock", 0, 3600), size=(640, 360), audio=music))
        self.write("my music.ogg", b"music")
        self.write("my film.mp4", "old")

    def env(self, **more):
        return {"WINEPATH": windows_path(self.folder / "bin"), **more}

    def assert_nothing_written(self):
        self.assertEqual((self.folder / "my film.mp4").read_text(), "old")
        self.assertEqual(list(self.folder.glob("*.part")), [])

    def test_arguments_and_frames(self):
        odd = ["a b", 'say "hi"', "back\\", 'both\\"', "", "tab\there", "ümlaut"]
        line = " ".join("'" + word + "'" for word in odd)
        for output, frame in (("my film.mp4", 640 * 360 * 3 // 2), ("a.gif", 640 * 360 * 4)):
            more = ("--fps", 10, "--length", 0.5, "--ffmpeg-args", line)
            self.run_player("-o", output, *more, self.path, env=self.env())
            arguments, _, frames = (self.folder / output).read_bytes().partition(b".part\n\n")
            self.assertIn("\n" + "\n".join(odd) + "\n", arguments.decode())
            music = "\nfile:" + windows_path(self.folder / "my music.ogg") + "\n"
            self.assertEqual(music in arguments.decode(), output == "my film.mp4")
            self.assertEqual(len(frames), 5 * frame)
        self.assertEqual(list(self.folder.glob("*.part")), [])

    def test_failures(self):
        # In the current directory, which may be a stranger's show, it is not looked for.
        shutil.copy(STAND_IN_FFMPEG, self.folder / "ffmpeg.exe")
        for words, env in (("the program ffmpeg cannot be started", {"WINEPATH": ""}),
                           ("ffmpeg: said before; some; last words", self.env(STAND_IN_FFMPEG="dies"))):
            run = self.run_player("-o", "my film.mp4", self.path, env=env, code=1)
            errors = "".join(line for line in run.err.splitlines(True) if line.startswith("Cannot"))
            self.assert_one_line(errors, "Cannot write my film.mp4: " + words)
            self.assert_nothing_written()

    def test_interrupted_while_the_encoder_takes_nothing(self):
        arguments, hangs = ("-o", "my film.mp4", self.path), self.env(STAND_IN_FFMPEG="hangs")
        player = Player(self, *arguments, env=hangs)
        player.wait_for(r"\[PLAY\]")
        player.process.send_signal(signal.SIGINT)
        self.assertTrue(player.end(code=1).log.endswith("[EXIT] WM_QUIT\n[DONE]\n"))
        self.assert_nothing_written()
        self.write_show(show(entry("endless", 0, 3600), size=(1000, 1000)))
        Player(self, *arguments, env=hangs).interrupt_twice()
        self.assert_nothing_written()


@unittest.skipUnless(Path(LINUX_PLAYER).is_file(), "there is no Linux player to compare with")
class SamePictures(PlayerTest):
    """What both players draw of a show, on the same software rasterizer."""

    def render(self, config, times, size, command):
        arguments = ("-o", "frames.rgba", "--size", "%dx%d" % size, "--still", ",".join(map(str, times)))
        run = self.run_player(*arguments, config, command=command)
        self.assertNotIn("[WARN] Texture load failed", run.log + run.err)
        frames, frame = (self.folder / "frames.rgba").read_bytes(), size[0] * size[1] * 4
        self.assertEqual(len(frames), len(times) * frame)
        return [frames[at:at + frame] for at in range(0, len(frames), frame)]

    @staticmethod
    def is_same(one, other):
        """Within two steps of 255 but for one pixel in ten thousand."""
        far = {i // 4 for i, (a, b) in enumerate(zip(one, other)) if abs(a - b) > 2} if one != other else ()
        return len(far) * 10000 <= len(one) // 4

    def assert_same(self, config, names, times, size=(320, 180)):
        here, there = (self.render(config, times, size, command) for command in (COMMAND, [LINUX_PLAYER]))
        for name, one, other in zip(names, here, there):
            self.assertTrue(self.is_same(one, other), f"{config}: {name}")
        self.assertFalse(self.is_same(here[0], here[1]))

    def test_shows(self):
        for name, times, size in (("gallery", [0.5 + 4 * k for k in range(23)], (320, 180)),
                                  ("showcase", range(1, 58, 8), (160, 90)), ("legacy", (1, 6, 11), (320, 180))):
            self.assert_same(ROOT / f"shows/{name}/config.json", times, times, size)

    def test_pictures_of_every_format(self):
        pictures = {  # and how they are made
            "rgb.png": "-alpha off", "rgba.png": "", "palette.png": "-alpha off -colors 99 -type Palette",
            "grey.png": "-alpha off -colorspace Gray", "deep.png": "-depth 16", "other.png": "-interlace PNG",
            # Decoders fill coarser colour up in ways of their own.
            "whole.jpg": "-alpha off -sampling-factor 4:4:4", "grey.jpg": "-alpha off -colorspace Gray",
            "progressive.jpg": "-alpha off -sampling-factor 4:4:4 -interlace JPEG",
            "24.bmp": "-alpha off -define bmp:format=bmp3", "8.bmp": "-alpha off -colors 250", "32.bmp": "",
            "opaque.gif": "-alpha off", "clear.gif": "-channel A -threshold 50%",
            "plain.tif": "-alpha off -depth 8", "packed.tif": "-depth 8 -compress LZW",
            "grey.tif": "-alpha off -depth 8 -colorspace Gray -compress Zip",
        }
        source = "-size 97x61 -seed 7 plasma:red-lime gradient:white-black -compose CopyOpacity -composite"
        entries = [entry("plain", 0, len(pictures), params={"color": [0.2, 0.5, 0.9, 1]})]
        for k, (name, how) in enumerate(pictures.items()):
            output_of("convert", *source.split(), *how.split(), self.folder / name)
            entries.append(entry("image", k, 1, id=name, overlay=True, params={"image": name}))
        times = [k + 0.5 for k in range(len(pictures))]
        self.assert_same(self.write_show(show(*entries)), pictures, times, size=(97, 61))


if __name__ == "__main__":
    unittest.main()
