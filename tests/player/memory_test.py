"""What a run may cost at most. Not for builds with sanitizers, which take several times as much."""

import os
import unittest
from pathlib import Path

from support import Player, PlayerTest, entry, show


BARE_CONTEXT = os.environ["QUILLON_BARE_CONTEXT"]


class PeakMemory(PlayerTest):
    def peak(self, *arguments, **more):
        """The largest resident size of a run, in megabytes."""
        process = Player(self, *arguments, **more).process
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(process.returncode, 0)
        return usage.ru_maxrss / 1024

    def test_one_shader_at_1280_x_720(self):
        path = self.write_show(show(entry("clock", 0, 10), size=(1280, 720)))
        driver = self.peak(command=[BARE_CONTEXT])  # 60 to 100, as its version has it
        self.assertLess(self.peak("--headless", "--length", 0.5, path), driver + 10)

    def test_loops_and_frames_do_not_pile_up(self):
        looped = show(entry("clock", 0, 0.05), entry("echo", 0.05, 0.05), loop=True, size=(320, 200))
        offline = show(entry("clock", 0, 60), size=(320, 200))
        for config, output, lengths in ((looped, "--headless", (0.3, 3)), (offline, "--o=f.rgba", (0.2, 6))):
            few, many = (self.peak(output, "--length", length, self.write_show(config)) for length in lengths)
            self.assertLess(many, few + 6, "after 30 loops, or 360 frames")

    def test_hostile_pictures(self):
        finds = Path(__file__).parents[2] / "fuzz/finds/pictures"
        clean = self.peak("--headless", "--length", 0.12, self.write_show(show(entry("textured"))))
        for kind in ("bmp", "gif", "jpeg", "png", "tiff", "webp"):
            with self.subTest(kind):
                pictures = sorted(map(str, finds.glob(f"{kind}-*")))
                self.assertGreater(len(pictures), 20)
                path = self.write_show(show(*(entry("textured", params={"image": picture}) for picture in pictures)))
                self.assertLess(self.peak("--headless", "--length", 0.12, path), clean + 300, "of all together")


if __name__ == "__main__":
    unittest.main()
