"""What a run may cost at most. Not for builds with sanitizers, which take several times as much."""

import os
import subprocess
import unittest

from support import COMMAND, PlayerTest, entry, environment, show

LIMIT_MB = 100


class PeakMemory(PlayerTest):
    def peak(self, *arguments):
        """The largest resident size of a run, in megabytes."""
        process = subprocess.Popen([*COMMAND, *map(str, arguments)], cwd=self.folder, env=environment(),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(process.returncode, 0)
        return usage.ru_maxrss / 1024

    def test_one_shader_at_1280_x_720(self):
        path = self.write_show(show(entry("clock", 0, 10), size=(1280, 720)))
        self.assertLess(self.peak("--headless", "--length", 0.5, path), LIMIT_MB)

    def test_loops_and_frames_do_not_pile_up(self):
        path = self.write_show(show(entry("clock", 0, 0.05), entry("echo", 0.05, 0.05), loop=True, size=(320, 200)))
        few, many = (self.peak("--headless", "--length", length, path) for length in (0.3, 3))
        self.assertLess(many, few + 6, "after 30 loops")
        path = self.write_show(show(entry("clock", 0, 60), size=(320, 200)))
        few, many = (self.peak("-o", "f.rgba", "--length", length, path) for length in (0.2, 6))
        self.assertLess(many, few + 6, "after 360 frames")


if __name__ == "__main__":
    unittest.main()
