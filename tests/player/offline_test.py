"""Offline rendering and the command line: which frames there are, what each shows, where they go."""

import math
import os
import re
import signal
import unittest
from fractions import Fraction

from system import WINDOWS
from support import HEADER, Player, PlayerTest, beside_the_log, entry, output_of, show

SCENES = show(entry("clock", 0, 22, scene="one"), entry("clock", 20, 20, id="2", scene="two"),
              entry("clock", 40, 20, id="3", scene="three"))
LIST = {"globals": {"loop": False}, "scenes": [{"id": "a", "entries": [entry("clock", 0, 2)]},
                                               {"id": "b", "entries": [entry("clock", 0, 3, delay=1)]}]}


def times(frames):
    """Milliseconds of local time that the "clock" shader painted."""
    return [pixel[0][0] + 256 * pixel[0][1] for pixel in frames]


class Frames(PlayerTest):
    def assert_times(self, frames, wanted):
        self.assertEqual(len(frames), len(wanted))
        for got, time in zip(times(frames), wanted):
            self.assertAlmostEqual(got, time, delta=1)

    def test_count_is_duration_times_rate_rounded_up(self):
        for start, duration, fps in (
                ("0", "0.3", "10"), ("0", "1.1", "10"), ("0", "1", "29.97"), ("0", "0.001", "60"),
                ("0", "1.001", "1000"), ("0", "3600", "0.1"), ("12.1", "0.7", "50"), ("9.8", "19.6", "25"),
                ("36000.3", "1.7", "30")):
            with self.subTest(start=start, duration=duration, fps=fps):
                frames, _ = self.frames(show(entry("clock", float(start), float(duration))), "--fps", fps)
                self.assertEqual(len(frames), math.ceil(Fraction(duration) * Fraction(fps)))

    def test_frame_k_shows_start_plus_k_steps(self):
        frames, _ = self.frames(show(entry("clock", 2.5, 3)), "--fps", 60)
        self.assert_times(frames, [1000 * k / 60 for k in range(180)])
        self.assertEqual([frame[0][2] for frame in frames], [k + 1 for k in range(180)])
        # One entry a frame: which of them plays tells the time to the step, however the sums are rounded.
        colors = [entry("plain", round(7.3 + k / 10, 1), 0.1, id=str(k), params={"color": [k / 255, 0, 0, 1]})
                  for k in range(60)]
        frames, _ = self.frames(show(*colors), "--fps", 10)
        self.assertEqual([frame[0][0] for frame in frames], list(range(60)))

    def test_one_pass_from_start_to_end(self):
        once, looped = "native timeline end", "main loop finished"
        short = entry("clock", 0, 0.25)
        late = show(entry("clock", 100, 50))  # begins there, and its length counts from there
        for config, arguments, first, count, ending in (
                (show(short), "", 0, 3, once), (show(short, loop=True), "", 0, 3, looped),
                (show(entry("clock", 0, 0)), "--length 1", 0, 10, looped),
                (SCENES, "--length 0.71", 0, 8, looped), (SCENES, "--start 1.5 --end 2", 1500, 5, looped),
                (SCENES, "--start 1 --length 5 --end 1.2", 1000, 2, looped),
                (SCENES, "--start 99", 19999, 1, once), (late, "--start 3 --length 0.5", 0, 5, looped),
                (late, "--start 101 --end 1:41.4", 1000, 4, looped),
                # The entry that ends last need not begin last, one without an end counts where it begins.
                (show(entry("clock", 1, 9), entry("plain", 2, 1)), "", 0, 90, once),
                (show(short, entry("plain", 6, 0)), "", 0, 60, once),
                (LIST, "--start 4.5", 1500, 15, "legacy timeline end"), (LIST, "--end 2.3", 0, 23, looped),
                ({"scenes": [{"entries": [short]}] * 2}, "", 0, 5, looped)):
            with self.subTest(arguments, ending=ending):
                frames, run = self.frames(config, "--fps", 10, *arguments.split())
                self.assertEqual((times(frames)[0], len(frames)), (first, count))
                self.assertTrue(run.err.endswith(f"[EXIT] {ending}\n[DONE]\n"), run.err)
                self.assertEqual("[TIMELINE] End reached" in run.err, ending == once)
                self.assertLessEqual(run.err.count("[TIMELINE] Loading"), 1)

    def test_stills_are_the_frames_of_a_seek(self):
        frames, _ = self.frames(SCENES, "--still", "0,2.5,0:27,1,99,27")
        self.assert_times(frames, (0, 2500, 7000, 1000, 19999, 7000))
        self.assert_times(self.frames(LIST, "--still", "4,0.5")[0], (1000, 500))
        # Feedback and order leave no trace.
        echo = show(entry("echo", 0, 5))
        first, again = (self.frames(echo, "--still", stills, size=(4, 1))[0] for stills in ("1", "3,2,1"))
        self.assertEqual(first[0], again[2])

    def test_rows_run_from_the_top_in_both_forms(self):
        self.write("assets/shaders/place/place.frag",
                   HEADER + "void main() { FragColor = vec4(floor(gl_FragCoord.xy) / 255.0, 0.2, 0.25); }")
        path = self.write_show(show(entry("place")))
        width, height = 256, 100  # more than is turned and written at once
        for output in ("c.rgba", "c.png"):
            self.run_player("-o", output, "--still", 0, "--size", f"{width}x{height}", path)
        pixels = [(x, y, 51) for y in reversed(range(height)) for x in range(width)]
        raw = b"".join(bytes((*pixel, 255)) for pixel in pixels)
        self.assertTrue((self.folder / "c.rgba").read_bytes() == raw)
        head = f"P7\nWIDTH {width}\nHEIGHT {height}\nDEPTH 3\nMAXVAL 255\nTUPLTYPE RGB\nENDHDR\n".encode()
        picture = head + b"".join(bytes(pixel) for pixel in pixels)
        self.assertTrue(output_of("convert", self.folder / "c.png", "pam:-") == picture)

    def test_same_bytes_every_time(self):
        config = show(entry("echo", 0, 1, scene="a"), entry("echo", 1, 1, id="b", scene="b"),
                      entry("clock", 0.3, 0.5, overlay=True, params={"alpha": 0.5}), loop=True)
        arguments = ("--fps", 30, "--press", "0.4:Right", "--press", "0.9:Left", "--length", "1.9")
        (one, log), (other, again) = (self.frames(config, *arguments, size=(8, 3)) for _ in range(2))
        self.assertTrue(one == other)
        self.assertEqual(log.err, again.err)
        frames, _ = self.frames(show(entry("echo", 0, 1)), "--fps", 10, size=(4, 1))
        self.assertEqual(frames, [[(8 * k, (1 + x) * k, 0, 255) for x in range(4)] for k in range(1, 11)])

    def test_scripted_keys(self):
        for keys, lines in (
                # Left within a second of a scene's start goes to the one before; later it restarts the scene.
                ("0.5:Right 1:Left", ["t=20.000s scene=two", "t=0.000s scene=one"]),
                ("0.5:Right 2:Left", ["t=20.000s scene=two", "t=20.000s scene=two"]),
                ("0.5:Up 1:Up 1.5:Down", ["t=10.500s scene=one", "t=21.000s scene=two", "t=11.500s scene=one"]),
                # Seeks of one frame add up, steps replace each other and come before the seeks.
                ("0.41:Up 0.45:up 0.5:DOWN", ["t=10.500s scene=one"]),
                ("0.5:Up 0.5:Left 0.5:Right", ["t=30.000s scene=two"]),
                # The end cannot be reached by seeking.
                ("0.5:Right 1:Right 1.5:Up 2:Up", ["t=20.000s scene=two", "t=40.000s scene=three",
                                                   "t=50.500s scene=three", "t=59.999s scene=three"])):
            with self.subTest(keys):
                pressed = [word for key in keys.split() for word in ("--press", key)]
                log = self.frames(SCENES, "--fps", 10, "--press", "2.3:Escape", *pressed)[1].err
                self.assertEqual(re.findall(r"^\[SEEK\] (.*)", log, flags=re.M), lines)
                reason = "native timeline end" if "t=59.999s scene=three" in lines else "ESC"
                self.assertTrue(log.endswith(f"[EXIT] {reason}\n[DONE]\n"), log[-200:])
                # What plays is named anew.
                self.assertEqual(log.count("[PLAY]"), 1 + len(lines))

    def test_the_frame_of_a_key(self):
        frames, run = self.frames(SCENES, "--fps", 10, "--press", "0.3:Right", "--press", "0.6:Escape")
        # Seven ticks of the clock, the last of which only meets Escape.
        self.assertEqual([frame[0][2] for frame in frames], [1, 2, 3, 1, 2, 3])
        self.assert_times(frames, (0, 100, 200, 100, 200, 300))
        said = re.findall(r"\[(?:PLAY|SEEK|EXIT)\] (?:t=)?(\S+)", run.err)
        self.assertEqual(said, ["0.000s", "20.000s", "20.000s", "ESC"])


class Runs(PlayerTest):
    def test_refused_in_one_line(self):
        self.write_show(show(entry("clock")))
        for arguments, named in ((["--bogus"], "--bogus"), (["--size", "9" * 400 + "x1"], "--size"),
                                 (["-o", "frame.png"], "frame.png"), (["-o", "f-%n.png"], "f-%n.png")):
            with self.subTest(arguments):
                self.assert_one_line(beside_the_log(self.run_player(*arguments, code=1).err), named)
        self.assertEqual(list(self.folder.glob("*.png")), [])

    def test_help_version_and_names_that_look_like_options(self):
        for option, word in (("--help", "Usage:"), ("--version", "quillon-player ")):
            run = self.run_player(option, "gone.json")
            self.assertRegex(run.log + run.err, rf"\A{word}(?s:(?!\[LOAD).)*\Z")
        self.write_show(show(entry("clock")), "--version")
        self.assertIn("[LOAD] --version\n", self.run_player("--headless", "--length", 0, "--", "--version").log)

    def test_keys_and_stop_times_reach_over_loops_on_the_real_clock(self):
        looped = show(entry("clock", 0, 0.2), loop=True)
        for arguments, ending in (("--press", "0.5:Escape"), "ESC"), (("--end", "0.5"), "main loop finished"):
            log = self.play(looped, *arguments).log
            self.assertTrue(log.endswith(f"[EXIT] {ending}\n[DONE]\n"), log)
            self.assertEqual((log.count("[TIMELINE] Loading"), log.count("[PLAY]")), (3, 3))
        log = self.play(LIST, "--press", "0.1:Right", "--press", "0.2:Up", "--press", "0.3:Escape").log
        self.assertTrue(log.endswith("  [OK] clock\n[EXIT] ESC\n[DONE]\n"), log)

    def test_unwritable_output(self):
        path = self.write_show(show(entry("clock", 0, 2)))
        self.write("file", "")
        (self.folder / "taken.rgba").mkdir()
        (self.folder / "disk.rgba").symlink_to("/dev/full")
        (self.folder / "disk-3.png").symlink_to("/dev/full")
        full, missing = "No space left on device", "No such file or directory"
        for output, named, reason in (
                ("disk.rgba", "disk.rgba", full), ("disk-%d.png", "disk-3.png", full),
                ("gone/f-%d.png", "gone/f-0.png", missing),
                ("file/f.rgba", "file/f.rgba", missing if WINDOWS else "Not a directory"),
                ("taken.rgba", "taken.rgba", "Permission denied" if WINDOWS else "Is a directory")):
            for size in ("2x2", "300x200"):
                with self.subTest(output, size=size):
                    run = self.run_player("-o", output, "--fps", 10, "--size", size, path, code=1)
                    self.assert_one_line(beside_the_log(run.err), named, reason)
        self.assertEqual(len(list(self.folder.glob("disk-*"))), 4)

    def test_closed_pipe(self):
        path = self.write_show(show(entry("clock", 0, 100)))
        for size in ("1x1", "300x200"):
            with self.subTest(size):
                reading, writing = os.pipe()
                player = Player(self, "-o", "-", "--size", size, path, stdout=writing)
                os.close(writing)
                os.read(reading, 4)
                os.close(reading)
                reason = "Invalid argument" if WINDOWS else "Broken pipe"
                self.assert_one_line(beside_the_log(player.end(code=1).err), "standard output", reason)

    def test_log_stays_out_of_the_pictures(self):
        # A file that is opened while standard error is closed takes the log's place.
        path = self.write_show(show(entry("clock", 0, 1)))
        self.run_player("-o", "r.rgba", "--fps", "10", path, preexec_fn=lambda: os.close(2))
        self.assertEqual((self.folder / "r.rgba").stat().st_size, 10 * 4 * 4 * 4)

    def test_interrupted(self):
        path = self.write_show(show(entry("clock", 0, 36000)))
        terminate = signal.SIGINT if WINDOWS else signal.SIGTERM  # which Windows does not have
        for number, output, log in ((signal.SIGINT, "s-%05d.png", "log"), (terminate, "s.rgba", "err")):
            with self.subTest(output):
                player = Player(self, "-o", output, path)
                player.wait_for(r"\[PLAY\]", log)
                player.process.send_signal(number)
                player.end(code=1)
                self.assertIn("\n[EXIT] WM_QUIT\n[DONE]\n", getattr(player, log))
                raw = self.folder / "s.rgba"
                written = raw.stat().st_size // 64 if raw.exists() else len(list(self.folder.glob("s-*")))
                said = f"Interrupted: {output} has {written} of {36000 * 60} frames\n"
                self.assertEqual(beside_the_log(player.err), said)

    def test_interrupted_twice(self):
        path = self.write_show(show(entry("endless", 0, 3600), size=(999, 997)))
        for output, log in ("s-%d.png", "log"), ("s.rgba", "err"):
            with self.subTest(output):
                player = Player(self, "-o", output, path).interrupt_twice(log)
                raw = self.folder / "s.rgba"
                written = raw.stat().st_size / 4 / 999 / 997 if raw.exists() else len(list(self.folder.glob("s-*")))
                said = f"Interrupted: {output} has {written:g} of {3600 * 60} frames\n"
                self.assertEqual(beside_the_log(player.err), said)

    def test_show_without_an_end(self):
        endless = entry("clock", 0, 0)
        backwards, early = show(entry("clock", 5, -3)), show(entry("clock", -5, 2))
        listed = {"scenes": [{"entries": [entry("clock")]}, {"entries": [endless]}]}
        for config in (show(endless), backwards, early, listed):
            self.assert_one_line(self.play(config, "-o", "f-%d.png", code=1).err, "config.json has no end")
        self.assertEqual(list(self.folder.glob("*.png")), [])
        for config, said in ((backwards, "5.000s -> 2.000s (duration=0.000s)"),
                             (early, "-5.000s -> 0.000s (duration=5.000s)")):
            frames, run = self.frames(config, "--still", "5,2")
            self.assertEqual(len(frames), 2)
            self.assertIn("Visual range " + said, run.err)

    @unittest.skipIf(WINDOWS, "Wine draws its console itself")
    def test_progress_on_a_terminal(self):
        terminal, side = os.openpty()
        with os.fdopen(terminal, "rb", buffering=0) as screen:
            player = Player(self, "-o", "f-%d.png", self.write_show(show(entry("clock", 0, 0.5))), stderr=side)
            os.close(side)
            player.end()
            said = screen.read(4096).decode()
            self.assertRegex(said, r"\r30 of 30 frames, 100%, [\d.]+ frames/s, 0 s left *\r?\n\Z")


if __name__ == "__main__":
    unittest.main()
