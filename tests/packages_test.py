"""The packages that package.sh has made: each, unpacked somewhere else, plays."""

import os
import subprocess
import sys
import unittest
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
PACKAGES = ROOT / "build/packages"
WINE = ROOT / "tools/wine.sh"
os.environ.setdefault("QUILLON_PLAYER", "player.exe")
os.environ.setdefault("QUILLON_WINE", str(WINE))
sys.path.insert(0, str(ROOT / "tests/player"))

from support import Display, PlayerTest  # noqa: E402


def only(pattern):
    found, = PACKAGES.glob(pattern)
    return found


class Packages(PlayerTest):
    def assert_draws(self, command, show):
        done = subprocess.run([*command, show, "--size", "160x90", "--still", "3,9", "-o", "still-%d.png"], cwd=self.folder,
                              capture_output=True, timeout=120)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertNotRegex(done.stdout, rb"\[(WARN|ERROR|SKIP|SHADER ERROR)\]")
        self.assertEqual(len(list(self.folder.glob("still-?.png"))), 2)

    def test_debian(self):
        home = self.folder / "un packed"
        subprocess.run(["dpkg-deb", "-x", only("*.deb"), home], check=True)
        for show in ("showcase", "gallery", "legacy"):
            self.assert_draws([home / "usr/bin/quillon-player"], home / f"usr/share/quillon-player/shows/{show}/config.json")

    def test_windows(self):
        archive = only("*-win64.zip")
        with zipfile.ZipFile(archive) as file:
            file.extractall(self.folder / "un packed")
        home, = (self.folder / "un packed").iterdir()
        self.assertEqual(home.name, archive.stem)
        readme = (home / "README.txt").read_bytes()
        self.assertEqual(readme.count(b"\n"), readme.count(b"\r\n"))
        needed = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", home / "quillon-player.exe"], capture_output=True, check=True)
        libraries = {line.split()[-1].lower() for line in needed.stdout.decode().splitlines() if "DLL Name" in line}
        self.assertLessEqual(libraries, {name + ".dll" for name in ("gdi32", "gdiplus", "kernel32", "msvcrt", "ole32",
                                                                  "opengl32", "user32")})
        for show in ("showcase", "gallery"):
            self.assert_draws([WINE, home / "quillon-player.exe"], home / f"shows/{show}/config.json")

        display = Display(self)
        player = subprocess.Popen([WINE, "cmd", "/c", "Showcase in full screen.bat"], cwd=home, stdout=subprocess.PIPE)
        display.window()
        display.xdotool("key", "Escape")
        log = player.communicate(timeout=60)[0].decode()
        self.assertRegex(log, r"Client size: %s .*fullscreen=true" % display.size)
        self.assertIn("[EXIT] ESC\r\n[DONE]\r\n", log)


if __name__ == "__main__":
    unittest.main()
