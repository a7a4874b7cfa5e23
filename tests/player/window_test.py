"""A real window under Xvfb: keys, the ways to close it, its size, and the picture on the screen."""

import signal
import time
import unittest

from system import WINDOWS
from support import Display, LivePlayer, PlayerTest, entry, show


class Window(PlayerTest):
    CONFIG = show(entry("plain", 0, 100, scene="one", params={"color": [1, 0.4, 0, 1]}),
                  entry("plain", 100, 100, id="2", scene="two", params={"color": [0, 0.4, 1, 1]}),
                  loop=True, size=(200, 150))

    def setUp(self):
        super().setUp()
        self.display = Display(self)

    def open(self, *arguments, config=CONFIG):
        player = LivePlayer(self, *arguments, self.write_show(config), env=self.display.env)
        player.wait_for(r"\[PLAY\]")
        return player, self.display.window()

    def test_keys(self):
        player, _ = self.open()
        seconds = r"^\[SEEK\] t=(\d+\.\d{3})s scene=%s$"
        times = []
        keys = {"Right": "two", "Up": "two", "Down": "two", "Left": "one"}
        for key, scene in (*keys.items(), ("Right", "two"), ("Down", "one")):
            self.display.xdotool("key", key)
            times.append(float(player.wait_for(seconds % scene).group(1)))
        self.assertEqual((times[0], times[4]), (100.0, 100.0))
        self.assertTrue(110 <= times[1] < 125 and times[1] - 10 <= times[2] < times[1] and times[3] in (0, 100)
                        and 90 <= times[5] < 105, times)
        self.display.xdotool("key", "a", "space", "Return")
        self.display.xdotool("key", "Escape")
        self.assertEqual(player.end(), ["[EXIT] ESC", "[DONE]"])
        self.assertEqual(sum("[SEEK]" in line for line in player.lines), 6)
        self.assertEqual(player.others, [])

    def test_a_key_held_down_repeats(self):
        player, _ = self.open(config=show(entry("clock", 0, 100000), size=(32, 32)))
        self.display.xdotool("keydown", "Up")
        for _ in range(3):
            last = float(player.wait_for(r"^\[SEEK\] t=(\S+)s").group(1))
        self.display.xdotool("keyup", "Up")
        self.assertGreaterEqual(last, 30)

    def test_ways_to_close(self):
        ways = (("WM_CLOSE", lambda player, window: self.display.ask_to_close(window)),
                ("WM_QUIT", lambda player, window: player.process.send_signal(signal.SIGINT)),
                ("WM_QUIT", lambda player, window: player.process.send_signal(signal.SIGTERM)),
                ("WM_DESTROY", lambda player, window: self.display.xdotool("windowclose", window)))
        if WINDOWS:
            ways = ways[:2]  # no signals but Ctrl+C, and no window destroyed by others
        for reason, close in ways:
            with self.subTest(reason):
                player, window = self.open()
                close(player, window)
                self.assertEqual(player.end(), [f"[EXIT] {reason}", "[DONE]"])
                self.assertEqual(player.others, [])

    @unittest.skipIf(WINDOWS, "the desktop outlives every program")
    def test_server_goes_away(self):
        player, _ = self.open()
        self.display.server.terminate()
        player.end(code=1)

    def wait_for_color(self, x, y, color, window=None):
        deadline = time.monotonic() + 20
        while (seen := self.display.pixel(x, y, window)) != color:
            self.assertLess(time.monotonic(), deadline, f"{seen} instead of {color}")
            time.sleep(0.02)

    @unittest.skipUnless(WINDOWS, "SDL leaves the whole screen to a window manager")
    def test_full_screen(self):
        player, _ = self.open("--fullscreen")
        self.assertIn(f"[WIN] Client size: {self.display.size} (requested=200x150, fullscreen=true)", player.lines)
        width, height = map(int, self.display.size.split("x"))
        for x, y in ((0, 0), (width - 1, height - 1)):
            self.wait_for_color(x, y, (255, 102, 0))
        self.display.xdotool("key", "Escape")
        self.assertEqual(player.end(), ["[EXIT] ESC", "[DONE]"])

    def test_sizes_and_picture(self):
        player, window = self.open()
        self.assertIn("[WIN] Client size: 200x150 (requested=200x150, fullscreen=false)", player.lines)
        self.wait_for_color(195, 145, (255, 102, 0), window)
        self.display.xdotool("windowsize", window, 250, 180)
        self.wait_for_color(245, 175, (255, 102, 0), window)
        self.display.xdotool("key", "Right")
        self.wait_for_color(1, 1, (0, 102, 255), window)
        self.display.xdotool("key", "Escape")
        player.end()
        for arguments, line in ((["--size", "160x140"], "160x140 (requested=160x140, fullscreen=false)"),
                                (["--fullscreen"], f"{self.display.size} (requested=200x150, fullscreen=true)"),
                                (["--fs", "--windowed"], "200x150 (requested=200x150, fullscreen=false)")):
            result = self.run_player(*arguments, "--length", 0.1, "config.json", env=self.display.env)
            self.assertIn(f"[WIN] Client size: {line}\n", result.log)
            self.assertIn("[EXIT] main loop finished\n[DONE]\n", result.log)
        path = self.write_show(show(entry("clock"), size=(-5, 0)))
        result = self.run_player("--length", 0, path, env=self.display.env)
        self.assertIn("requested=1x1", result.log)


if __name__ == "__main__":
    unittest.main()
