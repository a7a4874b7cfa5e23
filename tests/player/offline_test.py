"""Offline rendering: which frames there are, what each shows, where they go, and what stops them."""

import hashlib
import math
import os
import re
import signal
import subprocess
import unittest
from fractions import Fraction

from system import WINDOWS, text_of
from support import COMMAND, LivePlayer, PlayerTest, entry, environment, read_png, show


def times(frames):
    """Milliseconds of local time that the "clock" shader painted."""
    return [pixel[0][0] + 256 * pixel[0][1] for pixel in frames]


class Frames(PlayerTest):
    def test_count_is_duration_times_rate_rounded_up(self):
        for start, duration, fps in (
                ("0", "0.3", "10"), ("0", "1.1", "10"), ("0", "1", "29.97"), ("0", "0.001", "60"),
                ("0", "1.001", "1000"), ("0", "3600", "0.1"), ("12.1", "0.7", "50"), ("9.8", "19.6", "25"),
                ("36000.3", "1.7", "30")):
            with self.subTest(start=start, duration=duration, fps=fps):
                frames, result = self.frames(show(entry("clock", float(start), float(duration))), "--fps", fps)
                self.assertEqual(len(frames), math.ceil(Fraction(duration) * Fraction(fps)), result.err[-300:])

    def test_frame_k_shows_start_plus_k_steps(self):
        frames, _ = self.frames(show(entry("clock", 2.5, 3)), "--fps", 60)
        for k, time in enumerate(times(frames)):
            self.assertAlmostEqual(time, 1000 * k / 60, delta=1)
        self.assertEqual([frame[0][2] for frame in frames], [k + 1 for k in range(180)])
        # One entry a frame: which of them plays tells the time to the step, however the sums are rounded.
        for start in (0, 7.3):
            colors = [entry("plain", round(start + k / 10, 1), 0.1, id=str(k), params={"color": [k / 255, 0, 0, 1]})
                      for k in range(60)]
            frames, _ = self.frames(show(*colors), "--fps", 10)
            self.assertEqual([frame[0][0] for frame in frames], list(range(60)))

    def test_one_pass_whether_it_loops_or_not(self):
        for loop, ending in ((True, "[EXIT] main loop finished\n[DONE]\n"),
                             (False, "[EXIT] native timeline end\n[DONE]\n")):
            frames, result = self.frames(show(entry("clock", 0, 0.5), loop=loop), "--fps", 10)
            self.assertEqual(len(frames), 5)
            self.assertTrue(result.err.endswith(ending), result.err)
            self.assertEqual("[TIMELINE] End reached" in result.err, not loop)
            self.assertEqual(result.err.count("[TIMELINE] Loading"), 1)
        scenes = [{"id": id, "entries": [entry("clock", 0, 0.5)]} for id in "ab"]
        for loop, reason in ((True, "main loop finished"), (False, "legacy timeline end")):
            frames, result = self.frames({"globals": {"loop": loop}, "scenes": scenes}, "--fps", 10)
            self.assertEqual(len(frames), 10)
            self.assertIn(f"[EXIT] {reason}\n", result.err)

    def test_stills_are_the_frames_of_a_seek(self):
        config = show(entry("clock", 0, 5), entry("clock", 5, 5, id="second"))
        frames, _ = self.frames(config, "--still", "0,2.5,0:07,1,99,7")
        for got, wanted in zip(times(frames), (0, 2500, 2000, 1000, 4999, 2000), strict=True):
            self.assertAlmostEqual(got, wanted, delta=1)
        # Feedback and order leave no trace.
        echo = show(entry("echo", 0, 5))
        first, again = (self.frames(echo, "--still", stills, size=(4, 1))[0] for stills in ("1", "3,2,1"))
        self.assertEqual(first[0], again[2])
        scenes = {"scenes": [{"id": id, "entries": [entry("clock", 0, 2)]} for id in "ab"]}
        for got, wanted in zip(times(self.frames(scenes, "--still", "3,0.5")[0]), (1000, 500), strict=True):
            self.assertAlmostEqual(got, wanted, delta=1)

    def test_rows_run_from_the_top_in_both_forms(self):
        corner = self.write("assets/shaders/corner/corner.frag", """#version 330 core
            in vec2 vUV; out vec4 FragColor;
            void main() { FragColor = vec4(step(0.5, vUV), 0.0, 0.25); }""")
        path = self.write_show(show(entry(corner.stem)))
        self.run_player("-o", "c.rgba", "--still", 0, "--size", "2x2", path)
        upright = bytes([0, 255, 0, 255, 255, 0, 0, 0, 0, 255, 0, 0])
        self.run_player("-o", "c.png", "--still", 0, "--size", "2x2", path)
        self.assertEqual(read_png(self.folder / "c.png"), (2, 2, upright))
        raw = (self.folder / "c.rgba").read_bytes()
        self.assertEqual(raw, b"".join(upright[at:at + 3] + b"\xff" for at in range(0, 12, 3)))

    def test_same_bytes_every_time(self):
        config = show(entry("echo", 0, 1, scene="a"), entry("clock", 0.3, 0.5, overlay=True, params={"alpha": 0.5}),
                      entry("echo", 1, 1, id="b", scene="b"), loop=True)
        arguments = ("--fps", 30, "--press", "0.4:Right", "--press", "0.9:Left", "--length", "1.9")
        runs = [self.frames(config, *arguments, size=(8, 3)) for _ in range(2)]
        sums = {hashlib.sha256(repr(frames).encode()).hexdigest() for frames, _ in runs}
        self.assertEqual(len(sums), 1)
        self.assertEqual(runs[0][1].err, runs[1][1].err)
        frames, _ = self.frames(show(entry("echo", 0, 1)), "--fps", 10, size=(4, 1))
        self.assertEqual(frames, [[(8 * k, (1 + x) * k, 0, 255) for x in range(4)] for k in range(1, 11)])


class ScriptedKeys(PlayerTest):
    CONFIG = show(entry("clock", 0, 20, scene="one"), entry("clock", 20, 20, id="2", scene="two"),
                  entry("clock", 40, 20, id="3", scene="three"))

    def test_steering(self):
        for keys, lines in (
                # Left within a second of a scene's start goes to the one before; later it restarts the scene.
                ("0.5:Right 1:Left", ["t=20.000s scene=two", "t=0.000s scene=one"]),
                ("0.5:Right 2:Left", ["t=20.000s scene=two", "t=20.000s scene=two"]),
                ("0:Right", ["t=20.000s scene=two"]),
                ("0.5:Up 1:Up 1.5:Down", ["t=10.500s scene=one", "t=21.000s scene=two", "t=11.500s scene=one"]),
                # Seeks of one frame add up, steps replace each other and come before the seeks.
                ("0.41:Up 0.45:up 0.5:DOWN", ["t=10.500s scene=one"]),
                ("0.5:Up 0.5:Right", ["t=30.000s scene=two"]),
                # The end cannot be reached by seeking.
                ("0.5:Right 1:Right 1.5:Up 2:Up",
                 ["t=20.000s scene=two", "t=40.000s scene=three", "t=50.500s scene=three", "t=59.999s scene=three"])):
            with self.subTest(keys):
                pressed = [word for key in keys.split() for word in ("--press", key)]
                _, result = self.frames(self.CONFIG, "--fps", 10, "--press", "2.3:Escape", *pressed)
                self.assertEqual(re.findall(r"^\[SEEK\] (.*)", result.err, flags=re.M), lines)
                reason = "native timeline end" if "t=59.999s scene=three" in lines else "ESC"
                self.assertTrue(result.err.endswith(f"[EXIT] {reason}\n[DONE]\n"), result.err[-200:])

    def test_the_frame_of_a_key(self):
        frames, result = self.frames(self.CONFIG, "--fps", 10, "--press", "0.3:Right", "--press", "0.6:Escape")
        # Seven ticks of the clock, the last of which only meets Escape.
        self.assertEqual(len(frames), 6)
        self.assertEqual([frame[0][2] for frame in frames], [1, 2, 3, 1, 2, 3])
        self.assertEqual(re.findall(r"\[(?:PLAY|SEEK|EXIT)\] (?:t=)?(\S+)", result.err),
                         ["0.000s", "20.000s", "20.000s", "ESC"])
        for got, wanted in zip(times(frames), (0, 100, 200, 100, 200, 300), strict=True):
            self.assertAlmostEqual(got, wanted, delta=1)

    def test_keys_outlast_a_loop_and_the_real_clock(self):
        looped = show(entry("clock", 0, 0.2), loop=True)
        result = self.play(looped, "--press", "0.5:Escape")
        self.assertIn("[EXIT] ESC\n", result.log)
        self.assertEqual(result.log.count("[TIMELINE] Loading"), 3)
        scenes = {"scenes": [{"id": "a", "entries": [entry("clock", 0, 2)]}]}
        result = self.play(scenes, "--press", "0.1:Right", "--press", "0.2:Up", "--press", "0.3:Escape")
        self.assertTrue(result.log.endswith("  [OK] clock\n[EXIT] ESC\n[DONE]\n"), result.log)


def beside_the_log(text):
    """What standard error holds beside the log."""
    return "".join(line for line in text.splitlines(True) if not re.match(r" *\[|===", line))


class Failures(PlayerTest):
    def test_unwritable_output(self):
        config = show(entry("clock", 0, 2))
        path = self.write_show(config)
        self.write("file", "")
        (self.folder / "taken.rgba").mkdir()
        (self.folder / "disk.rgba").symlink_to("/dev/full")
        (self.folder / "disk-3.png").symlink_to("/dev/full")
        full, missing = "No space left on device", "No such file or directory"
        no_directory, directory = (missing, "Permission denied") if WINDOWS else ("Not a directory", "Is a directory")
        for output, reason in (("disk.rgba", full), ("disk-%d.png", full), ("gone/f-%d.png", missing),
                               ("gone/f.rgba", missing), ("file/f-%d.png", no_directory),
                               ("taken.rgba", directory)):
            for size in ("2x2", "300x200"):
                with self.subTest(output, size=size):
                    result = self.run_player("-o", output, "--fps", 10, "--size", size, path, code=1)
                    named = output.replace("%d", "3" if output.startswith("disk") else "0")
                    self.assert_one_line(beside_the_log(result.err), named, reason)
        self.assertEqual({file.name for file in self.folder.glob("disk-*")}, {f"disk-{k}.png" for k in range(4)})

    def test_closed_pipe(self):
        path = self.write_show(show(entry("clock", 0, 100)))
        for size in ("1x1", "300x200"):
            with self.subTest(size):
                process = subprocess.Popen([*COMMAND, "-o", "-", "--size", size, path], stdout=subprocess.PIPE,
                                           stderr=subprocess.PIPE, env=environment())
                process.stdout.read(4)
                process.stdout.close()
                err = text_of(process.stderr.read())
                process.stderr.close()
                self.assertEqual(process.wait(60), 1)
                self.assert_one_line(beside_the_log(err), "standard output", "Invalid argument" if WINDOWS else "Broken pipe")

    def test_log_stays_out_of_the_pictures(self):
        # A file that is opened while standard error is closed takes the log's place.
        path = self.write_show(show(entry("clock", 0, 1)))
        subprocess.run([*COMMAND, "-o", "r.rgba", "--fps", "10", path], check=True, cwd=self.folder, timeout=60,
                       env=environment(), preexec_fn=lambda: os.close(2))
        self.assertEqual((self.folder / "r.rgba").stat().st_size, 10 * 4 * 4 * 4)

    def test_interrupted(self):
        path = self.write_show(show(entry("clock", 0, 36000)))
        terminate = signal.SIGINT if WINDOWS else signal.SIGTERM  # which Windows does not have
        for number, output in ((signal.SIGINT, "s-%05d.png"), (terminate, "s.rgba")):
            with self.subTest(output):
                raw = output.endswith(".rgba")
                player = LivePlayer(self, "-o", output, path, log="stderr" if raw else "stdout")
                player.wait_for(r"\[PLAY\]")
                player.process.send_signal(number)
                self.assertEqual(player.end(code=1), ["[EXIT] WM_QUIT", "[DONE]"])
                errors = player.lines if raw else player.others
                beside = [line for line in errors if not re.match(r" *\[|===", line)]
                written = (self.folder / output).stat().st_size // 64 if raw else len(list(self.folder.glob("s-*")))
                self.assertEqual(beside, [f"Interrupted: {output} has {written} of {36000 * 60} frames"])

    def test_show_without_an_end(self):
        endless = show(entry("clock", 0, 0))
        result = self.play(endless, "-o", "f-%d.png", code=1)
        self.assert_one_line(result.err, "config.json")
        self.assertEqual(list(self.folder.glob("*.png")), [])
        self.assertEqual(len(self.frames(endless, "--fps", 10, "--length", 1)[0]), 10)
        self.assertEqual(len(self.frames(endless, "--still", "5,2")[0]), 2)
        scenes = {"scenes": [{"id": "a", "entries": [entry("clock", 0, 0)]}]}
        self.assert_one_line(self.play(scenes, "-o", "f-%d.png", code=1).err, "config.json")

    @unittest.skipIf(WINDOWS, "Wine draws its console itself")
    def test_progress_on_a_terminal(self):
        terminal, side = os.openpty()
        with os.fdopen(terminal, "rb", buffering=0) as screen:
            process = subprocess.Popen([*COMMAND, "-o", "f-%d.png", self.write_show(show(entry("clock", 0, 0.5)))],
                                       stdout=subprocess.DEVNULL, stderr=side, cwd=self.folder, env=environment())
            os.close(side)
            self.assertEqual(process.wait(60), 0)
            self.assertRegex(screen.read(4096).decode(),
                             r"\r30 of 30 frames, 100%, [\d.]+ frames/s, 0 s left *\r?\n\Z")


if __name__ == "__main__":
    unittest.main()
