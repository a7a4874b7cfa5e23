"""The command line: what is refused and how, and what each option does to a run."""

import unittest

from support import PlayerTest, entry, show

SIZE_LINE = "[WIN] Client size: %dx%d (requested=%dx%d, fullscreen=false)\n"


class Refused(PlayerTest):
    def test_one_line_and_exit_code_1(self):
        path = self.write_show(show(entry("clock")))
        for arguments, named in ((["--bogus"], "--bogus"), (["--size", "9" * 400 + "x1"], "--size"),
                                 (["--start", "9" * 400], "--start"), (["-o", "folder/"], "folder/"),
                                 (["-o", "frame.png", path], "frame.png"), (["-o", "f-%n.png", path], "f-%n.png")):
            with self.subTest(arguments):
                self.assert_one_line(self.run_player(*arguments, code=1).err, named)
        self.assertEqual(list(self.folder.glob("*.png")), [])


class Accepted(PlayerTest):
    def setUp(self):
        super().setUp()
        self.config = show(entry("clock", 0, 60), size=(6, 5))

    def test_help_and_version(self):
        for option, words in (("--help", ("Usage:", "--headless", "--still")), ("--version", ("quillon-player ",))):
            result = self.run_player(option, "gone.json")
            self.assertEqual(result.err, "")
            for word in words:
                self.assertIn(word, result.log)
            self.assertNotIn("[LOAD]", result.log)

    def test_show_names_that_look_like_options(self):
        self.write_show(self.config, "--version")
        result = self.run_player("--headless", "--length", "0", "--", "--version")
        self.assertIn("[LOAD] --version\n", result.log)
        self.write_show(self.config)
        result = self.run_player("--headless", "--length", "0")
        self.assertIn("[LOAD] config.json\n", result.log)

    def first_and_count(self, *arguments, config=None):
        """Milliseconds that the first frame shows, and how many frames there are, at 10 frames a second."""
        frames, result = self.frames(config or self.config, "--fps", "10", *arguments)
        red, green = frames[0][0][:2]
        return red + 256 * green, len(frames), result

    def test_start_end_length(self):
        for arguments, expected in (
                (["--end", "0.7"], (0, 7)), (["--length", "0.71"], (0, 8)), (["--start", "1.5", "--end", "2"], (1500, 5)),
                (["--start", "1", "--length", "5", "--end", "1.2"], (1000, 2)), (["--start", "59.8"], (59800, 2)),
                (["--start", "9999"], (59999, 1))):
            with self.subTest(arguments):
                start, count, result = self.first_and_count(*arguments)
                self.assertEqual((start, count), expected)
                self.assertNotIn("[SEEK]", result.err)
                whole = arguments[0] == "--start" and len(arguments) == 2
                self.assertIn("[EXIT] native timeline end" if whole else "[EXIT] main loop finished", result.err)

    def test_stop_reaches_over_loops(self):
        looped = show(entry("clock", 0, 0.2), loop=True)
        result = self.play(looped, "--end", "0.5")
        self.assertEqual(result.log.count("[TIMELINE] Loading 1 entries"), 3)
        # A show that begins late begins there, and its length counts from there.
        late = show(entry("clock", 100, 50))
        self.assertEqual(self.first_and_count("--length", "0.5", config=late)[:2], (0, 5))
        self.assertEqual(self.first_and_count("--start", "3", "--length", "0.5", config=late)[:2], (0, 5))
        self.assertEqual(self.first_and_count("--start", "101", "--end", "1:41.4", config=late)[:2], (1000, 4))

    def test_legacy_start(self):
        scenes = {"globals": {"loop": False}, "scenes": [{"id": "a", "entries": [entry("clock", 0, 2)]},
                                                         {"id": "b", "entries": [entry("clock", 0, 3, delay=1)]}]}
        start, count, result = self.first_and_count("--start", "4.5", config=scenes)
        self.assertEqual((start, count), (1500, 15))
        self.assertNotIn("[SCENE 1/2]", result.err.split("[EXIT]")[0].split("[SCENE 2/2]")[1])
        self.assertEqual(self.first_and_count("--end", "2.3", config=scenes)[1], 23)


if __name__ == "__main__":
    unittest.main()
