"""The log, to the letter and in order, and the exit codes that go with it."""

import re
import time
import unittest

from system import WINDOWS
from support import SHADERS, PlayerTest, entry, png, show

RED = {"color": [1, 0, 0, 1]}

NATIVE_HEAD = """\
=== Quillon DemoScene - Native Player ===
[LOAD] {folder}/config.json
[CONFIG] baseDir = {folder}
"""


class NativeLog(PlayerTest):
    def test_whole_run(self):
        config = show(
            entry("image", 0, 0.5, id="mark", scene="intro", overlay=True, layer=2, params={"image": "@logo"}),
            entry("plain", 0, 0.5, id="Sky", scene="intro", params=RED),
            entry("plain", 0, 0.3, id="glow", scene="intro", overlay=True, layer=1, params=RED),
            entry("rotatingcube", 0.1, 0.5),
            entry("broken", 0.2, 0.4, scene="intro"),
            entry("novert", 0.5, 0.25, id="", scene=""),
            entry("echo", 0.75, 0.25, id="feed", scene="outro"),
            entry("textured", 0.75, 0.25, id="tex", scene="outro", overlay=True),
            entry("nosuch", 0.75, 0.25),
            entry("", 0.8, 0.1, id="empty"),
            schemaVersion="native-runtime/v1", fallbackImage="pictures/fallback.png",
            assets={"logo": "logo.png"}, transitions={"intro": {"type": "fade"}})
        self.write("assets/shaders/novert/novert.frag", SHADERS["clock"])
        self.write("logo.png", png(2, 1, bytes(8)))
        self.write("pictures/fallback.png", png(1, 3, bytes(12)))
        path = self.write_show(config)
        result = self.run_player("-o", "f-%d.png", "--fps", 20, path)
        self.assert_log(result.log, NATIVE_HEAD + """\
[CONFIG] native runtime schema: native-runtime/v1
[CONFIG] 1 transitions
[CONFIG] 0 scenes, 10 timeline entries, 4x4 windowed
[WIN] Client size: 4x4 (requested=4x4, fullscreen=false)
[GL] ...
[GL] ...
[FONT] bitmapfont.json not found
[TIMELINE] Loading 10 entries
  [LOAD] t=0.000s dur=0.500s scene=intro type=plain
  [OK] plain
  [LOAD] t=0.000s dur=0.300s scene=intro type=plain
  [OK] plain
  [LOAD] t=0.000s dur=0.500s scene=intro type=image
  [TEX] {folder}/logo.png (2x1)
  [OK] image
  [SKIP] rotatingcube (CPU-only, not supported)
  [LOAD] t=0.200s dur=0.400s scene=intro type=broken
[SHADER ERROR] broken:
...
  [SKIP] broken (shader failed)
  [LOAD] t=0.500s dur=0.250s scene=(none) type=novert
    [WARN] Vert not found: (none) (using default)
  [OK] novert
  [LOAD] t=0.750s dur=0.250s scene=outro type=echo
  [OK] echo (+BufferA)
  [LOAD] t=0.750s dur=0.250s scene=(none) type=nosuch
    [WARN] Vert not found: (none) (using default)
    [ERROR] Frag not found: (none)
  [SKIP] nosuch (shader failed)
  [LOAD] t=0.750s dur=0.250s scene=outro type=textured
  [TEX] {folder}/pictures/fallback.png (1x3)
  [TEX] using fallback for textured channel0
  [OK] textured
  [LOAD] t=0.800s dur=0.100s scene=(none) type=(none)
    [WARN] Vert not found: (none) (using default)
    [ERROR] Frag not found: (none)
  [SKIP] (none) (shader failed)
[TRANS] shader sources not found in DemoSceneResources/assets/shaders/transition or assets/shaders/transition
[TIMELINE] Visual range 0.000s -> 1.000s (duration=1.000s)
[CONTROLS] Right/Left: next/previous scene | Up/Down: +/-10s | ESC: exit
[PLAY] t=0.000s scene=intro sceneIn=0.000s sceneOut=0.500s base=Sky type=plain entryIn=0.000s entryOut=0.500s overlays=2
       [OVR] scene=intro id=glow type=plain entryIn=0.000s entryOut=0.300s dur=0.300s layer=1
       [OVR] scene=intro id=mark type=image entryIn=0.000s entryOut=0.500s dur=0.500s layer=2
[PLAY] t=0.300s scene=intro sceneIn=0.000s sceneOut=0.500s base=Sky type=plain entryIn=0.000s entryOut=0.500s overlays=1
       [OVR] scene=intro id=mark type=image entryIn=0.000s entryOut=0.500s dur=0.500s layer=2
[PLAY] t=0.500s scene=(none) sceneIn=0.500s sceneOut=0.750s base=(none) type=novert entryIn=0.500s entryOut=0.750s overlays=0
[PLAY] t=0.750s scene=outro sceneIn=0.750s sceneOut=1.000s base=feed type=echo entryIn=0.750s entryOut=1.000s overlays=1
       [OVR] scene=outro id=tex type=textured entryIn=0.750s entryOut=1.000s dur=0.250s layer=0
[TIMELINE] End reached at 1.000s; exiting because loop=false.
[TIMELINE] Final frame t=0.999s scene=outro sceneIn=0.750s sceneOut=1.000s base=feed type=echo entryIn=0.750s entryOut=1.000s overlays=1
       [OVR] scene=outro id=tex type=textured entryIn=0.750s entryOut=1.000s dur=0.250s layer=0
[EXIT] native timeline end
[DONE]
""")
        self.assertEqual(result.err, "")

    def test_overlays_without_a_base_and_missing_channels(self):
        config = show(entry("plain", 0, 0.1, id="o", overlay=True, params=RED),
                      entry("image", 0, 0.1, id="bare", overlay=True, layer=1),
                      entry("textured", 0, 0.1, id="lost", overlay=True, layer=2, params={"image": "gone.png"}))
        log = self.play(config, "-o", "f-%d.png", "--fps", 10).log
        for line in ("type=image\n  [OK] image\n", "type=textured\n  [OK] textured\n",
                     "[PLAY] t=0.000s scene=(none) base=(none) overlays=3\n[",
                     "[TIMELINE] Final frame t=0.099s scene=(none) base=(none) overlays=3\n["):
            self.assertIn(line, log)

    def test_loop_on_the_real_clock(self):
        config = show(entry("plain", 0, 0.15, id="a", scene="one", params=RED), entry("broken", 0.1, 0.1),
                      entry("plain", 0.15, 0.15, id="b", scene="two", params=RED), loop=True)
        log = self.play(config, "--length", 0.7).log
        times = [float(time) for time in re.findall(r"\[PLAY\] t=(\S+)s", log)]
        self.assertTrue(all(t < 0.15 for t in times[0::2]) and all(0.15 <= t < 0.3 for t in times[1::2]), times)
        lines = re.findall(r"^(\[TIMELINE|\[PLAY|\[SHADER|  \[OK|  \[SKIP|\[EXIT)", log, flags=re.M)
        load, plays = ["[TIMELINE", "  [OK", "[SHADER", "  [SKIP", "  [OK"], ["[PLAY", "[PLAY"]
        self.assertEqual(lines, load + ["[TIMELINE", *plays] + load + plays + load + ["[PLAY", "[EXIT"])
        self.assertTrue(log.endswith("[EXIT] main loop finished\n[DONE]\n"))

    def test_end_on_the_real_clock(self):
        begun = time.monotonic()
        log = self.play(show(entry("plain", 0, 0.2, id="a", params=RED)), "--windowed").log
        self.assertRegex(log, r"End reached at 0.200s.*\n.*Final frame t=0.199s .*\n.EXIT. native timeline end")
        self.assertGreaterEqual(time.monotonic() - begun, 0.2)


    def test_pace_without_a_display(self):
        # Of thirty entries in three seconds two frames a second meet seven at most.
        entries = [entry("plain", k / 10, 0.1, id=f"e{k}", params=RED) for k in range(30)]
        log = self.play(show(*entries), "--fps", "4/2").log
        self.assertLessEqual(log.count("[PLAY]"), 7, log)
        self.assertTrue(log.endswith("[EXIT] native timeline end\n[DONE]\n"), log)


class LegacyLog(PlayerTest):
    def test_scene_list(self):
        scenes = [{"id": "first", "entries": [entry("clock", 0, 0.2, delay=0.1), entry("neon_text", 0, 0.25)]},
                  {"id": "off", "enabled": False, "entries": [entry("clock")]},
                  {"id": "", "entries": [entry("broken", 0, 0.1), entry("image", 0, 0.2)]}]
        config = {"globals": {"width": 4, "height": 4, "loop": False}, "scenes": scenes}
        begun = time.monotonic()
        log = self.play(config, "--windowed").log
        self.assertGreaterEqual(time.monotonic() - begun, 0.5)
        self.assert_log(log, NATIVE_HEAD + """\
[CONFIG] 2 scenes, 0 timeline entries, 4x4 windowed
[WIN] Client size: 4x4 (requested=4x4, fullscreen=false)
[GL] ...
[GL] ...
[FONT] bitmapfont.json not found
[SCENE 1/2] "first" (2 entries, duration=0.3s)
  [LOAD] clock vert={folder}/assets/shaders/clock/clock.vert frag={folder}/assets/shaders/clock/clock.frag
  [OK] clock
  [SKIP] neon_text (CPU-only, not supported)
[SCENE 2/2] "(none)" (2 entries, duration=0.2s)
  [LOAD] broken vert={folder}/assets/shaders/broken/broken.vert frag={folder}/assets/shaders/broken/broken.frag
[SHADER ERROR] broken:
...
  [SKIP] broken (shader failed)
  [LOAD] image vert=(none) frag=(none)
  [OK] image
[EXIT] legacy timeline end
[DONE]
""")
        # Whatever a frame takes, up to 0.1 s of the clock, the stop falls into the third scene.
        log = self.play({**config, "globals": {}}, "--length", 0.7).log
        self.assertEqual(re.findall(r"\[SCENE (\d)", log), ["1", "2", "1"])


class StartUpFailures(PlayerTest):
    def test_nothing_to_play(self):
        (self.folder / "folder").mkdir()
        for path in ("gone.json", "folder", "folder/"):
            log = self.run_player("--headless", path, code=1).log
            self.assertEqual(log, f"[ERROR] Config not found: {path}\n")
        head = NATIVE_HEAD + "[CONFIG] 0 scenes, 0 timeline entries, 1280x720 windowed loop\n"
        unread = NATIVE_HEAD.replace("[CONFIG] baseDir = {folder}", "[ERROR] Cannot read {folder}/config.json")
        failure = "[ERROR] No scenes or timeline entries found.\n"
        for config in ("nonsense", '{"scenes": [{"entries": []}]}', '{"entries": [{"enabled": false}]}', ""):
            with self.subTest(config):
                run = self.play(config, code=1)
                self.assert_log(run.log, (head if config else unread) + failure)
                self.assertEqual(run.err, "")

    def test_no_opengl(self):
        usual, endless = (show(entry("plain", params=RED), size=(side, side)) for side in (4, 2147483647))
        for name, config, arguments, env in (
                ("no driver", usual, ["--headless"], {"__EGL_VENDOR_LIBRARY_FILENAMES": "/nonexistent"}),
                ("old driver", usual, ["--headless"], {"MESA_GL_VERSION_OVERRIDE": "2.1"}),
                ("impossible size", endless, ["--headless"], {}),
                ("no display", usual, [], {"DISPLAY": ":nonexistent"})):
            if WINDOWS and name == "no driver":
                continue  # there is no Windows without one
            with self.subTest(name):
                run = self.run_player(*arguments, self.write_show(config), code=1, env=env)
                # On Windows no step of a window's making is checked.
                size = r"(\[WIN\] Client size: .* \(requested=4x4, fullscreen=false\)\n)?" if WINDOWS else ""
                self.assertRegex(run.log, rf"windowed\n{size}\[ERROR\] Failed to load OpenGL 3.3 functions.\n$")
                self.assertTrue(run.err, "what the system said")


if __name__ == "__main__":
    unittest.main()
