"""Music: the calls of the audio library that a stand-in prints, and what the built-in playback lets be heard."""

import array
import math
import os
import re
import shutil
import struct
import subprocess
import unittest
import wave
from pathlib import Path

from system import PLAYER, RUNNER, WINDOWS, text_of
from support import TIME_LIMIT, Display, LivePlayer, PlayerTest, entry, environment, show

LIBRARY = "bass.dll" if WINDOWS else "libbass.so"
STAND_IN = Path(os.environ["QUILLON_STAND_IN_AUDIO"])  # a folder with the library
INCOMPLETE = Path(os.environ["QUILLON_INCOMPLETE_AUDIO"])  # the same without its last export

OPENED = """\
  BASS_Init(-1, 44100, 0, 0, 0)
  BASS_StreamCreateFile(0, {folder}/m.ogg, 0, 0, 0x20000)
  BASS_ChannelSetAttribute(7, 2, %.3f)
  BASS_ChannelGetLength(7, 0)
  BASS_ChannelBytes2Seconds(7, 60000)
[AUDIO] BASS ready: {folder}/m.ogg (vol=%.0f%%, startOffset=%.3fs, duration=60.000s)
"""
POSITIONED = """\
  BASS_ChannelStop(7)
  BASS_ChannelSeconds2Bytes(7, {0}.{1})
  BASS_ChannelSetPosition(7, {0}{1}, 0)
"""
CLOSED = """\
  BASS_ChannelStop(7)
  BASS_StreamFree(7)
  BASS_Free()
[EXIT] main loop finished
[DONE]
"""
PLAYS = "  BASS_ChannelPlay(7, 0)\n"
SYNCED = "[AUDIO] Playback sync enabled (duration=60.000s, visual clock=delta time)\n"


NOT_FOUND = "[AUDIO] BASS DLL not found: %s\n" + ("" if WINDOWS else "[AUDIO] Using built-in playback\n")


def found_in(folder):
    """What lets the system find the library there by its bare name."""
    return {"WINEPATH": "Z:" + str(folder).replace("/", "\\")} if WINDOWS else {"LD_LIBRARY_PATH": str(folder)}


def scenes(loop=False, **music):
    return show(entry("clock", 1, 2, scene="a"), entry("clock", 3, 2, scene="b"), loop=loop, audio={"path": "m.ogg", **music})


class StandIn(PlayerTest):
    def setUp(self):
        super().setUp()
        self.write("m.ogg", b"never read")

    def music(self, config, *arguments, library=STAND_IN, length=0.3, env=None, **settings):
        """What concerns the music in the log of a run, and the calls."""
        env = {**found_in(library), **settings, **(env or {})}
        result = self.play(config, "--audio", "--length", length, *arguments, env=env)
        lines = re.findall(r"^(?:  BASS_|\[AUDIO|\[SEEK|\[EXIT|\[DONE|\[TIMELINE\] BASS).*\n", result.log, flags=re.M)
        return "".join(lines)

    def test_start_steps_and_shutdown(self):
        log = self.music(scenes(volume=0.25, startOffset=1.5), "--press", "0.05:Right", "--press", "0.2:Left", "--press", "0.3:Escape", length=9)
        self.assert_log(log, OPENED % (0.25, 25, 1.5) + "[TIMELINE] BASS audio duration=60.000s; visual/audio delta=-55.000s\n"
                        + POSITIONED.format(2, 500) + PLAYS + SYNCED
                        + POSITIONED.format(4, 500) + PLAYS + "[SEEK] t=3.000s scene=b\n"
                        + POSITIONED.format(2, 500) + PLAYS + "[SEEK] t=1.000s scene=a\n"
                        + CLOSED.replace("main loop finished", "ESC"))

    def test_values_out_of_range(self):
        for music, opened, start in (({"volume": 1.5, "startOffset": -3}, (1, 100, 0), 1),
                                     ({"volume": -1, "startOffset": 100.25}, (0, 0, 100.25), 101.25)):
            with self.subTest(music):
                log = self.music(scenes(**music))
                self.assert_log(log, OPENED % opened + "[TIMELINE] BASS audio duration=60.000s; visual/audio delta=-55.000s\n"
                                + POSITIONED.format(*f"{start:.3f}".split(".")) + PLAYS + SYNCED + CLOSED)

    def test_seeks_and_loop(self):
        config = scenes(loop=True, startOffset=0.5)
        log = self.music(config, "--start", 2, "--press", "0:Up", "--press", "0.3:Down", length=3.6)
        self.assertIn(POSITIONED.format(2, 500) + PLAYS + SYNCED, log)
        self.assertIn(POSITIONED.format(5, 499) + PLAYS + "[SEEK] t=4.999s scene=b\n", log)
        # Down comes after the wrap. The position is where the picture is.
        wrapped, *_ = re.findall(r"SetPosition\(7, (\d+), 0\)\n" + re.escape(PLAYS) + r"\[AUDIO\] Loop seek to (\d\.\d{3})s", log)
        self.assertAlmostEqual(int(wrapped[0]), float(wrapped[1]) * 1000 + 500, delta=1)
        self.assertTrue(1 <= float(wrapped[1]) < 1.2, wrapped)
        self.assertIn(POSITIONED.format(1, 500) + PLAYS + "[SEEK] t=1.000s scene=a\n", log)

    def test_scene_list(self):
        config = {"globals": {"width": 4, "height": 4, "loop": True}, "audio": {"path": "m.ogg", "startOffset": 2},
                  "scenes": [{"entries": [entry("clock", 0, 0.1)]}, {"entries": [entry("clock", 0, 0.1)]}]}
        for arguments, start in (((), "000"), (("--start", 0.15), "150")):
            log = self.music(config, *arguments, length=0.5)
            self.assert_log(log, OPENED % (1, 100, 2) + POSITIONED.format(2, start) + PLAYS + CLOSED)

    def test_failures(self):
        gives_up = "[EXIT] main loop finished\n[DONE]\n"
        said = "[TIMELINE] BASS audio duration=60.000s; visual/audio delta=-55.000s\n"
        opened, start, step = OPENED % (1, 100, 0), POSITIONED.format(1, "000"), POSITIONED.format(3, "000")
        silent, stepped = "[SEEK] Audio seek failed; continuing visual-only.\n", "[SEEK] t=3.000s scene=b\n"
        cases = (("BASS_Init", 1, "  BASS_Init(-1, 44100, 0, 0, 0)\n  BASS_ErrorGetCode()\n[AUDIO] BASS_Init failed (err=41)\n"
                  + stepped + gives_up),
                 ("BASS_StreamCreateFile", 1, "".join(opened.splitlines(True)[:2]) + "  BASS_ErrorGetCode()\n"
                  "[AUDIO] BASS_StreamCreateFile failed: {folder}/m.ogg (err=41)\n  BASS_Free()\n" + stepped + gives_up),
                 ("BASS_ChannelSetPosition", 9, opened + said + start + step + silent + stepped + CLOSED),
                 ("BASS_ChannelPlay", 9, opened + said + start + PLAYS + step + PLAYS + silent + stepped + CLOSED),
                 # The music comes back at the first position that succeeds.
                 ("BASS_ChannelPlay", 1, opened + said + start + PLAYS + step + PLAYS + stepped + CLOSED))
        for name, times, expected in cases:
            with self.subTest(name, times=times):
                log = self.music(scenes(), "--press", "0.05:Right", STAND_IN_FAILS=name, STAND_IN_FAILS_TIMES=str(times))
                self.assert_log(log, expected)

    def test_failed_loop_seek_says_nothing(self):
        log = self.music(scenes(loop=True), "--start", 4.9, length=0.4, STAND_IN_FAILS="BASS_ChannelPlay")
        self.assertEqual(log.count("BASS_ChannelPlay"), 2)
        self.assertNotRegex(log, r"Loop seek|\[SEEK\]")

    def test_unknown_length(self):
        for length in (0, 2 ** 64 - 1):
            log = self.music(scenes(), STAND_IN_LENGTH=str(length))
            self.assertIn("startOffset=0.000s, duration=0.000s)\n[TIMELINE] BASS audio duration=0.000s; visual/audio delta=5.000s\n", log)
            self.assertNotIn("Bytes2Seconds", log)

    def test_missing_export(self):
        log = self.music(scenes(), library=INCOMPLETE)
        self.assert_log(log, "[AUDIO] BASS DLL missing required exports.\n[EXIT] main loop finished\n[DONE]\n")

    def test_places(self):
        """Beside the program and up to four directories above, the nearest first; never where the show lies."""
        player = self.folder / "1/2/3/4/5/player.exe"
        player.parent.mkdir(parents=True)
        shutil.copy2(PLAYER, player)
        path = self.write_show(scenes())

        def log():
            done = subprocess.run([*RUNNER, player, "--headless", "--audio", "--length", "0", path], cwd=player.parent.parent,
                                  timeout=TIME_LIMIT, env=environment({"SDL_AUDIODRIVER": "dummy"}), capture_output=True)
            return text_of(done.stdout)

        shutil.copy(STAND_IN / LIBRARY, self.folder)
        self.assertIn(NOT_FOUND % LIBRARY, log())
        for levels in range(4, -1, -1):
            place = player.parents[levels]
            shutil.copy((STAND_IN if levels % 2 == 0 else INCOMPLETE) / LIBRARY, place)
            self.assertIn("BASS_Init(" if levels % 2 == 0 else "missing required exports", log(), place)
        self.write("1/2/3/4/5/" + LIBRARY, b"no library")
        self.assertIn(NOT_FOUND % f"{player.parent}/{LIBRARY}", log())

    def test_runs_with_and_without_music(self):
        env = found_in(STAND_IN)
        for arguments in ((), ("--no-audio",), ("--audio", "--no-audio"), ("--audio", "-o", "f-%d.png")):
            result = self.run_player("--headless", "--length", 0.02, *arguments, self.write_show(scenes()), env=env)
            self.assertNotRegex(result.log, "BASS|AUDIO", arguments)
        display = {**Display(self).env, **env}
        for arguments, sounds in (((), 1), (("--no-audio",), 0)):
            result = self.run_player("--length", 0.02, *arguments, self.write_show(scenes()), env=display)
            self.assertEqual(result.log.count("BASS_Init"), sounds, "in a window")
        for path in ("none.ogg", "C:\\NUL" if WINDOWS else "/dev/zero", "."):
            result = self.play(scenes(path=path), "--audio", "--length", 0.02, env=env)
            self.assertIn("[AUDIO] File not found: ", result.log)
            self.assertNotIn("BASS", result.log)
        result = self.play(show(entry("clock")), "--audio", "--length", 0.02, env=env)
        self.assertNotIn("AUDIO", result.log)


# A tone that rises by a steady number of hertz a second: its pitch tells the place in the track.
LOWEST, RISE, SECONDS = 300, 300, 5
BLOCK = 1024  # frames of a device buffer, at whose edges playback starts, ends and jumps
RATE = 44100


def tone(rate, level):
    return [int(level * math.sin(2 * math.pi * (LOWEST + RISE * t / 2) * t)) for t in (i / rate for i in range(rate * SECONDS))]


# Tracker modules whose one sample is the tone, played once by the first of their rows; the others take 7.6 s.
ROWS, TEMPO = 64, (6, 125)
NOTE_RATE = 8363  # at which the note plays the sample as it is


def pcm(rate=NOTE_RATE):
    return array.array("b", tone(rate, 100)).tobytes()


def padded(data, size):
    return data + bytes(-len(data) % size)


def mod(jumps=False):
    """With `jumps` it begins anew at its end, for ever."""
    rate, period = 8287, 428
    sample = padded(pcm(rate), 2)
    data = b"tone".ljust(20, b"\0") + bytes(22) + struct.pack(">HBBHH", len(sample) // 2, 0, 64, 0, 1)
    data += (bytes(28) + b"\0\1") * 30 + bytes([1, 127] + [0] * 128) + b"M.K."
    for row in range(ROWS):
        note = bytes([period >> 8, period & 255, 0x10, 0]) if row == 0 else bytes(4)
        data += note * 2 + (bytes([0, 0, 0x0B, 0]) if jumps and row == ROWS - 1 else bytes(4)) + bytes(4)
    return data + sample


def xm():
    sample = pcm()
    deltas = bytes((value - before) & 255 for before, value in zip(b"\0" + sample, sample))
    cells = bytes([0x83, 49, 1]) + b"\x80" * (ROWS * 2 - 1)
    return (b"Extended Module: " + bytes(20) + b"\x1a" + bytes(20) + struct.pack("<HIHHHHHHHH", 0x104, 276, 1, 0, 2, 1, 1, 1, *TEMPO)
            + bytes(256) + struct.pack("<IBHH", 9, 0, ROWS, len(cells)) + cells
            + struct.pack("<I23xHI230x", 263, 1, 40) + struct.pack("<III4B24x", len(sample), 0, 0, 64, 0, 0, 128) + deltas)


def s3m():
    sample = pcm()
    cells = bytes([0x20, 0x40, 1]) + bytes(ROWS)
    pattern = padded(struct.pack("<H", len(cells) + 2) + cells, 16)
    head = 0x70  # orders and two addresses follow the first 0x60
    data_at = head + 0x50 + len(pattern)
    data = bytes(28) + b"\x1a\x10" + struct.pack("<2xHHHHHH4s6B", 2, 1, 1, 0, 0x1320, 1, b"SCRM", 64, *TEMPO, 0xB0, 0, 0)
    data = (data + bytes(10) + b"\0\x08" + b"\xff" * 30 + bytes([0, 255]) + struct.pack("<HH", head // 16, (head + 0x50) // 16)).ljust(head, b"\0")
    data += struct.pack("<B12xBHIIIBxBBI12x28x4s", 1, data_at >> 20, data_at >> 4 & 0xFFFF, len(sample), 0, 0, 64, 0, 0, NOTE_RATE, b"SCRS")
    return data + pattern + sample


def it():
    sample = pcm()
    cells = bytes([0x81, 3, 60, 1]) + bytes(ROWS)
    head = 0xC0 + 2 + 2 * 4
    data = b"IMPM" + bytes(28) + struct.pack("<8H6B10x", 2, 0, 1, 1, 0x214, 0x200, 9, 0, 128, 48, *TEMPO, 128, 0)
    data += b"\x20" * 64 + b"\x40" * 64 + bytes([0, 255]) + struct.pack("<II", head, head + 80)
    data += struct.pack("<4s13x3B26xBB7I4x", b"IMPS", 64, 1, 64, 1, 32, len(sample), 0, 0, NOTE_RATE, 0, 0, head + 80 + 8 + len(cells))
    return data + struct.pack("<HH4x", len(cells), ROWS) + cells + sample


MODULES = {"mod": mod, "looping.mod": lambda: mod(True), "xm": xm, "s3m": s3m, "it": it}


def places(capture):
    """The place in the track, in seconds, of each block's first sample; None for silence."""
    samples = array.array("h", capture)[0::2]
    found = []
    for at in range(0, len(samples) - BLOCK + 1, BLOCK):
        block = samples[at:at + BLOCK]
        crossings = [i + block[i] / (block[i] - block[i + 1]) for i in range(BLOCK - 1) if block[i] < 0 <= block[i + 1]]
        if len(crossings) < 5:
            found.append(None)
            continue
        pitch = RATE * (len(crossings) - 1) / (crossings[-1] - crossings[0])
        found.append((pitch - LOWEST) / RISE - (crossings[0] + crossings[-1]) / 2 / RATE)
    return found


def runs(found):
    """The places at which playback started or jumped to."""
    starts, expected = [], None
    for place in found:
        if place is not None and (expected is None or abs(place - expected) > 0.01):
            starts.append(place)
        expected = None if place is None else place + BLOCK / RATE
    return starts


@unittest.skipIf(WINDOWS, "there music comes from the library alone")
class BuiltIn(PlayerTest):
    FORMATS = {"wav": [], "flac": [], "ogg": ["-c:a", "libvorbis", "-q:a", "6"], "mp3": ["-b:a", "192k"]}

    def make_track(self, format):
        path = self.folder / f"m.{format}"
        if format in MODULES:
            return self.write(path.name, MODULES[format]())
        with wave.open(str(self.folder / "tone.wav"), "wb") as file:
            file.setparams((2, 2, RATE, 0, "NONE", ""))
            file.writeframes(array.array("h", [v for v in tone(RATE, 20000) for _ in "LR"]).tobytes())
        subprocess.run(["ffmpeg", "-loglevel", "error", "-i", self.folder / "tone.wav", *self.FORMATS[format], path], check=True)
        return path

    def test_what_is_heard(self):
        """Start, a step forward, one back, and the loop wrap, of every format at once."""
        shows, players = {}, {}
        for format in (*self.FORMATS, *MODULES):  # all before the first player reads the shaders that they share
            config = show(entry("clock", 0, 0.8, scene="a"), entry("clock", 0.8, 0.8, scene="b"), loop=True,
                          audio={"path": self.make_track(format).name, "startOffset": 0.7, "volume": 0.5})
            shows[format] = self.write_show(config, f"{format}.json")
        for format, path in shows.items():
            env = {"SDL_AUDIODRIVER": "disk", "SDL_DISKAUDIOFILE": str(self.folder / f"{format}.raw")}
            arguments = ["--headless", "--audio", "--press", "0.4:Right", "--press", "0.7:Left", "--press", "1:Right"]
            players[format] = LivePlayer(self, *arguments, "--length", 2.2, path, env=env)
        for format, player in players.items():
            with self.subTest(format):
                player.end()
                self.assertIn("[AUDIO] Using built-in playback", player.lines)
                shown = [0.0] + [float(t) for line in player.lines for t in re.findall(r"^\[(?:SEEK\] t=|AUDIO\] Loop seek to )(\S+)s", line)]
                self.assertEqual((shown[:4], len(shown)), ([0, 0.8, 0, 0.8], 5))
                capture = (self.folder / f"{format}.raw").read_bytes()
                capture = capture[:len(capture) // 4 * 4]
                heard = runs(places(capture))
                self.assertEqual(len(heard), 5, heard)
                for place, time in zip(heard, shown):
                    self.assertAlmostEqual(place, time + 0.7, delta=0.02)
                loudest = max(array.array("h", capture))
                self.assertAlmostEqual(loudest, 10000, delta=1200) if format in self.FORMATS else self.assertGreater(loudest, 1000)

    def test_end_of_the_track(self):
        self.make_track("wav")
        capture = self.folder / "out.raw"
        config = show(entry("clock", 0, 100), audio={"path": "m.wav"})
        result = self.play(config, "--audio", "--start", 4.5, "--length", 1.2, "--press", "1:Up",
                           env={"SDL_AUDIODRIVER": "disk", "SDL_DISKAUDIOFILE": str(capture)})
        self.assertIn("duration=5.000s)", result.log)
        self.assertIn("[SEEK] Audio seek failed; continuing visual-only.\n", result.log)
        heard = places(capture.read_bytes())
        self.assertEqual(len(runs(heard)), 1)
        self.assertAlmostEqual(sum(place is not None for place in heard) * BLOCK / RATE, 0.5, delta=0.05)

    def test_no_sound_device(self):
        self.write("m.wav", b"RIFF")
        result = self.play(show(entry("clock"), audio={"path": "m.wav"}), "--audio", "--length", 0.02, env={"SDL_AUDIODRIVER": "nosuch"})
        self.assertRegex(result.log, r"\[AUDIO\] Using built-in playback\n\[AUDIO\] BASS_Init failed \(err=3\)\n")
        self.assertIn("[PLAY] ", result.log)

    def test_broken_tracks(self):
        """Files that are no music, cut short or built to take all memory end in one line; the show goes on."""
        lies = b"RIFF" + struct.pack("<I4s4sIHHIIHH4sI", 0x7fffffff, b"WAVE", b"fmt ", 16, 1, 2, RATE, RATE * 4, 4, 16, b"data", 0x7ffffff0)
        subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "anullsrc=r=44100", "-t", "3600", self.folder / "long.flac"], check=True)
        cases = {"long": (self.folder / "long.flac").read_bytes(), "lies": lies, "no samples": lies[:-4] + bytes(4), "empty": b"",
                 "text": b"no music", "module head": mod()[:1084], "half head": mod()[:900],
                 "noise": bytes(range(256)) * 50, "flac head": b"fLaC" + bytes(100), "ogg head": b"OggS" + bytes(100),
                 "mp3 head": b"\xff\xfb\x90\0" + bytes(50), "tag": b"ID3\4\0\0\x7f\x7f\x7f\x7f"}
        for name, content in cases.items():
            with self.subTest(name):
                self.write("m.x", content)
                result = self.play(show(entry("clock"), audio={"path": "m.x"}), "--audio", "--length", 0.02, env={"SDL_AUDIODRIVER": "dummy"})
                if name not in ("module head", "noise"):
                    self.assertIn(f"[AUDIO] BASS_StreamCreateFile failed: {self.folder}/m.x (err=41)\n", result.log)
                    self.assertIn(f"No music: {self.folder}/m.x: ", result.err)
                self.assertIn("[PLAY] ", result.log)


if __name__ == "__main__":
    unittest.main()
