"""The command line: what is refused and how, and what each option does to a run."""

import unittest

from support import PlayerTest, entry, show

class Refused(PlayerTest):
    def test_one_line_and_exit_code_1(self):
        self.write_show(show(entry("clock")))
        for arguments, named in ((["--bogus"], "--bogus"), (["--size", "9" * 400 + "x1"], "--size"),
                                 (["-o", "frame.png"], "frame.png"), (["-o", "f-%n.png"], "f-%n.png")):
            with self.subTest(arguments):
                self.assert_one_line(self.run_player(*arguments, code=1).err, named)
        self.assertEqual(list(self.folder.glob("*.png")), [])


class Accepted(PlayerTest):
    def setUp(self):
        super().setUp()
        self.config = show(entry("clock", 0, 60), size=(6, 5))

    def test_help_and_version(self):
        for option, word in (("--help", "Usage:"), ("--version", "quillon-player ")):
            result = self.run_player(option, "gone.json")
            self.assertEqual(result.err, "")
            self.assertIn(word, result.log)
            self.assertNotIn("[LOAD]", result.log)

    def test_show_names_that_look_like_options(self):
        self.write_show(self.config, "--version")
        self.assertIn("[LOAD] --version\n", self.run_player("--headless", "--length", 0, "--", "--version").log)

    def first_and_count(self, *arguments, config=None):
        """Milliseconds that the first frame shows, and how many frames there are, at 10 frames a second."""
        frames, result = self.frames(config or self.config, "--fps", "10", *arguments)
        red, green = frames[0][0][:2]
        return red + 256 * green, len(frames), result

    def test_start_end_length(self):
        for arguments, expected in (
                (["--length", "0.71"], (0, 8)), (["--start", "1.5", "--end", "2"], (1500, 5)),
                (["--start", "1", "--length", "5", "--end", "1.2"], (1000, 2)), (["--start", "9999"], (59999, 1))):
            with self.subTest(arguments):
                start, count, result = self.first_and_count(*arguments)
                self.assertEqual((start, count), expected)
                ending = "native timeline end" if count == 1 else "main loop finished"
                self.assertIn(f"[EXIT] {ending}\n", result.err)

    def test_stop_reaches_over_loops(self):
        result = self.play(show(entry("clock", 0, 0.2), loop=True), "--end", "0.5")
        self.assertEqual(result.log.count("[TIMELINE] Loading 1 entries"), 3)
        # A show that begins late begins there, and its length counts from there.
        late = show(entry("clock", 100, 50))
        for arguments, expected in ((["--start", "3", "--length", "0.5"], (0, 5)),
                                    (["--start", "101", "--end", "1:41.4"], (1000, 4))):
            self.assertEqual(self.first_and_count(*arguments, config=late)[:2], expected)

    def test_legacy_start(self):
        scenes = {"globals": {"loop": False}, "scenes": [{"id": "a", "entries": [entry("clock", 0, 2)]},
                                                         {"id": "b", "entries": [entry("clock", 0, 3, delay=1)]}]}
        start, count, result = self.first_and_count("--start", "4.5", config=scenes)
        self.assertEqual((start, count), (1500, 15))
        self.assertNotIn("[SCENE 1/2]", result.err.split("[EXIT]")[0].split("[SCENE 2/2]")[1])
        self.assertEqual(self.first_and_count("--end", "2.3", config=scenes)[1], 23)


if __name__ == "__main__":
    unittest.main()
