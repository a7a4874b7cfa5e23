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


if __name__ == "__main__":
    unittest.main()
