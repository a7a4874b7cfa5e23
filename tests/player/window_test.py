"""A real window under Xvfb: keys, the ways to close it, its size, and the picture on the screen."""

import signal
import time
import unittest

from system import WINDOWS
from support import TIME_LIMIT, Display, Player, PlayerTest, entry, show


class Window(PlayerTest):
    CONFIG = show(entry("plain", 0, 1000, scene="one", params={"color": [1, 0.4, 0, 1]}),
                  entry("plain", 1000, 1000, id="2", scene="two", params={"color": [0, 0.4, 1, 1]}),
                  loop=True, size=(200, 150))

    def setUp(self):
        super().setUp()
        self.display = Display(self)

    def open(self, *arguments):
        player = Player(self, *arguments, self.write_show(self.CONFIG), env=self.display.env)
        player.wait_for(r"\[PLAY\]")
        return player, self.display.window()

    def escape(self, player):
        self.display.xdotool("key", "Escape")
        self.assertTrue(player.end().log.endswith("[EXIT] ESC\n[DONE]\n"))
        self.assertEqual(player.err, "")

    def assert_color(self, x, y, color, window="root"):
        deadline = time.monotonic() + TIME_LIMIT
        while (seen := self.display.pixel(x, y, window)) != color:
            self.assertLess(time.monotonic(), deadline, f"{seen} instead of {color}")

    def test_keys(self):
        player, _ = self.open()
        # Keys with Alt are the desktop's; keys of the number pad type digits while NumLock is on.
        self.display.xdotool("key", "a", "space", "Return", "alt+Right", "alt+Escape", "Num_Lock", "KP_Right", "Num_Lock")
        for keys in ("Left", "Right", "Up", "Down"), ("KP_Left", "KP_Right", "KP_Up", "KP_Down"):
            at = []
            for key in keys:
                self.display.xdotool("key", key)
                at.append(float(player.wait_for(r"^\[SEEK\] t=(\d+\.\d{3})s scene=(?:one|two)$").group(1)))
            left, right, up, down = at
            self.assertEqual((left, right), (0, 1000))
            # Time passes between the keys.
            self.assertTrue(1009.9 < up < down + 10.1 < up + 20, at)
        self.display.xdotool("keydown", "Up")
        for _ in range(3):
            player.wait_for(r"^\[SEEK\]")
        self.display.xdotool("keyup", "Up")
        self.escape(player)

    def test_ways_to_close(self):
        ways = [("WM_CLOSE", lambda player, window: self.display.ask_to_close(window)),
                ("WM_QUIT", lambda player, window: player.process.send_signal(signal.SIGINT))]
        if not WINDOWS:  # which has no other signals, and where no window is destroyed by others
            ways += [("WM_QUIT", lambda player, window: player.process.send_signal(signal.SIGTERM)),
                     ("WM_DESTROY", lambda player, window: self.display.xdotool("windowclose", window))]
        for reason, close in ways:
            with self.subTest(reason):
                player, window = self.open()
                close(player, window)
                self.assertTrue(player.end().log.endswith(f"[EXIT] {reason}\n[DONE]\n"))
                self.assertEqual(player.err, "")

    @unittest.skipIf(WINDOWS, "the desktop outlives every program")
    def test_server_goes_away(self):
        player, _ = self.open()
        self.display.server.terminate()
        player.end(code=1)

    @unittest.skipUnless(WINDOWS, "SDL leaves the whole screen to a window manager")
    def test_full_screen(self):
        player, _ = self.open("--fullscreen")
        self.assertIn(f" {self.display.size} (requested=200x150, fullscreen=true)\n", player.log)
        width, height = map(int, self.display.size.split("x"))
        for x, y in ((0, 0), (width - 1, height - 1)):
            self.assert_color(x, y, (255, 102, 0))
        self.escape(player)

    def test_sizes_and_picture(self):
        player, window = self.open()
        self.assert_color(195, 145, (255, 102, 0), window)
        self.display.xdotool("windowsize", window, 250, 180)
        self.assert_color(245, 175, (255, 102, 0), window)
        self.display.xdotool("key", "Right")
        self.assert_color(1, 1, (0, 102, 255), window)
        self.escape(player)
        self.write_show(show(entry("clock"), size=(-5, 0)), "odd.json")
        self.write_show(show(entry("clock"), size=(40000, 100)), "wide.json")
        for arguments, line in (
                ("config.json", "200x150 (requested=200x150, fullscreen=false)"),
                ("config.json --fs --windowed", "200x150 (requested=200x150, fullscreen=false)"),
                ("config.json --size 160x140", "160x140 (requested=160x140, fullscreen=false)"),
                ("config.json --fullscreen", self.display.size + " (requested=200x150, fullscreen=true)"),
                ("wide.json", "(requested=40000x100, fullscreen=false)"),
                ("wide.json --fs", self.display.size + " (requested=40000x100, fullscreen=true)"),
                ("odd.json", "(requested=1x1, fullscreen=false)")):
            log = self.run_player(*arguments.split(), "--length", 0.1, env=self.display.env).log
            self.assertIn(line + "\n", log)


if __name__ == "__main__":
    unittest.main()
