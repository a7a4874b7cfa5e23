"""The command line: what is refused and how, and what each option does to a run."""

import unittest

from support import PlayerTest, entry, show

SIZE_LINE = "[WIN] Client size: %dx%d (requested=%dx%d, fullscreen=false)\n"


class Refused(PlayerTest):
    def test_one_line_and_exit_code_1(self):
        self.write_show(show(entry("clock")))
        for arguments, named in (
                (["--bogus"], "--bogus"), (["-x"], "-x"), (["--headles"], "--headles"), (["--HELP"], "--HELP"),
                (["--help=yes"], "--help=yes"), (["--headless=1"], "--headless=1"), (["---"], "---"), (["-ox"], "-ox"),
                (["config.json", "--bogus"], "--bogus"), (["config.json", "other.json"], "other.json"),
                (["--", "config.json", "--headless"], "--headless"), (["--help", "--bogus"], "--bogus"),
                *((["--size", value], "--size") for value in
                  ("", "10", "10x", "x10", "10x10x10", "0x10", "-5x10", "1.5x2", "1e3x10", "99999x1", "9x9 ", "1,2",
                   "4294967297x1", "999999999999999999999x1")),
                *((["--start", value], "--start") for value in
                  ("", "abc", "-1", "1e3", "nan", "inf", "0x10", "1:60", "1:2:3:4", ":5", "5:", "1.5:10", "1::2",
                   "1s", "9" * 400, "99999999:00:00")),
                *(([option, "soon"], option) for option in ("--end", "--length", "--still", "--fps", "--press")),
                *((["--fps", value], "--fps") for value in ("0", "-1", "nan", "1e9", "0.0", "1000000000")),
                *((["-o", "f-%d.png", "--still", value], "--still") for value in ("", "1,", ",1", "1,,2", "1;2")),
                *((["--press", value], "--press") for value in
                  ("Left", "1:", ":Left", "1:Enter", "x:Left", "1 Left", "-1:Left")),
                (["--start"], "--start"), (["-o"], "-o"), (["--size"], "--size"), (["--o="], "--o"),
                (["--still", "1"], "--still"), (["-o", "film.avi"], "film.avi"), (["-o", "folder/"], "folder/")):
            with self.subTest(" ".join(arguments)):
                result = self.run_player(*arguments, code=1)
                self.assertEqual(result.log, "")
                self.assert_one_line(result.err, named)

    def test_patterns_that_no_frame_can_be_written_to(self):
        path = self.write_show(show(entry("clock")))
        for pattern in ("frame.png", "f-%s.png", "f-%d-%d.png", "f-%n.png", "f-%.png", "f-%999999999999d.png",
                        "f-%%.png", "f-%5$d.png", "f-%*d.png"):
            with self.subTest(pattern):
                result = self.run_player("-o", pattern, path, code=1)
                self.assert_one_line(result.err, pattern)
        self.assertEqual([file.name for file in self.folder.glob("*.png")], [])


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

    def test_size(self):
        for arguments, size in (([], (6, 5)), (["--size", "7x3"], (7, 3)), (["--size=1X1"], (1, 1))):
            result = self.play(self.config, "--length", "0", *arguments)
            self.assertIn(SIZE_LINE % (size + size), result.log)

    def first_and_count(self, *arguments, config=None):
        """Milliseconds that the first frame shows, and how many frames there are, at 10 frames a second."""
        frames, result = self.frames(config or self.config, "--fps", "10", *arguments)
        red, green = frames[0][0][:2]
        return red + 256 * green, len(frames), result

    def test_start_end_length(self):
        for arguments, expected in (
                (["--end", "0.7"], (0, 7)), (["--length", "0.7"], (0, 7)), (["--end", "0:01"], (0, 10)),
                (["--length", "0.71"], (0, 8)), (["--start", "1.5", "--end", "2"], (1500, 5)),
                (["--start=0:30", "--length=0.3"], (30000, 3)),
                (["--start", "00:00:20.25", "--end", "20.5"], (20250, 3)),
                (["--start", "1", "--length", "5", "--end", "1.2"], (1000, 2)), (["--start", "59.8"], (59800, 2)),
                (["--start", "9999"], (59999, 1)), (["--length", "00:00:00.1"], (0, 1))):
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

    def test_output_spellings(self):
        path = self.write_show(self.config)
        common = ["--length", "0.02", "--fps", "60", path]
        for option, names in ((["-o", "a-%d.png"], ["a-0.png", "a-1.png"]),
                              (["--o=b-%03d.png"], ["b-000.png", "b-001.png"]),
                              (["--o", "c%%-%d.PNG"], ["c%-0.PNG", "c%-1.PNG"]),
                              (["-o=d.rgba"], ["d.rgba"]), (["-o", "e f é.rgba"], ["e f é.rgba"])):
            with self.subTest(option):
                self.run_player(*option, *common)
                self.assertEqual(sorted(f.name for f in self.folder.glob(names[0][0] + "*") if f.is_file()
                                        and f.suffix != ".json"), names)


if __name__ == "__main__":
    unittest.main()
