"""Music: the calls of the audio library, which a stand-in prints, and what the built-in playback plays."""

import array
import math
import os
import re
import shutil
import struct
import unittest
from pathlib import Path

from system import PLAYER, RUNNER, WINDOWS
from support import Display, PlayerTest, entry, output_of, show, write_wav

LIBRARY = "bass.dll" if WINDOWS else "libbass.so"
STAND_IN = Path(os.environ["QUILLON_STAND_IN_AUDIO"])  # a folder with the library
FINDS = Path(__file__).resolve().parents[2] / "fuzz/finds/music"
INCOMPLETE = Path(os.environ["QUILLON_INCOMPLETE_AUDIO"])  # the same without its last export

OPENED = """\
  BASS_Init(-1, 44100, 0, 0, 0)
  BASS_StreamCreateFile(0, {folder}/m.ogg, 0, 0, 0x20000)
  BASS_ChannelSetAttribute(7, 2, %.3f)
  BASS_ChannelGetLength(7, 0)
  BASS_ChannelBytes2Seconds(7, 60000)
[AUDIO] BASS ready: {folder}/m.ogg (vol=%.0f%%, startOffset=%.3fs, duration=60.000s)
"""
COMPARED = "[TIMELINE] BASS audio duration=60.000s; visual/audio delta=-55.000s\n"
PLAYS = "  BASS_ChannelPlay(7, 0)\n"
SYNCED = "[AUDIO] Playback sync enabled (duration=60.000s, visual clock=delta time)\n"
ENDED = "[EXIT] main loop finished\n[DONE]\n"
FREED = "  BASS_Free()\n"
CLOSED = "  BASS_ChannelStop(7)\n  BASS_StreamFree(7)\n" + FREED + ENDED
NOT_FOUND = "[AUDIO] BASS DLL not found: %s\n" + ("" if WINDOWS else "[AUDIO] Using built-in playback\n")
# What lets the system find the library by its bare name.
FOUND = {"WINEPATH": "Z:" + str(STAND_IN).replace("/", "\\")} if WINDOWS else {"LD_LIBRARY_PATH": str(STAND_IN)}


def positioned(seconds):
    return f"""\
  BASS_ChannelStop(7)
  BASS_ChannelSeconds2Bytes(7, {seconds:.3f})
  BASS_ChannelSetPosition(7, {round(seconds * 1000)}, 0)
"""


def scenes(loop=False, **music):
    return show(entry("clock", 1, 2, scene="a"), entry("clock", 3, 2, scene="b"), loop=loop,
                audio={"path": "m.ogg", **music})


class StandIn(PlayerTest):
    def setUp(self):
        super().setUp()
        self.write("m.ogg", b"never read")

    def music(self, config, *arguments, length=0.3, **settings):
        """What concerns the music in the log of a run, and the calls."""
        log = self.play(config, "--audio", "--length", length, *arguments, env={**FOUND, **settings}).log
        lines = re.findall(r"^(?:  BASS_|\[AUDIO|\[SEEK|\[EXIT|\[DONE|\[TIMELINE\] BASS).*\n", log, flags=re.M)
        return "".join(lines)

    def test_start_steps_and_shutdown(self):
        keys = ("--press", "0.05:Right", "--press", "0.2:Left", "--press", "0.3:Escape")
        log = self.music(scenes(volume=0.25, startOffset=1.5), *keys, length=9)
        self.assert_log(log, OPENED % (0.25, 25, 1.5) + COMPARED + positioned(2.5) + PLAYS + SYNCED
                        + positioned(4.5) + PLAYS + "[SEEK] t=3.000s scene=b\n"
                        + positioned(2.5) + PLAYS + "[SEEK] t=1.000s scene=a\n"
                        + CLOSED.replace("main loop finished", "ESC"))
        # Values out of their range.
        for volume, offset, opened, start in ((1.5, -3, (1, 100, 0), 1), (-1, 100.25, (0, 0, 100.25), 101.25)):
            log = self.music(scenes(volume=volume, startOffset=offset))
            self.assert_log(log, OPENED % opened + COMPARED + positioned(start) + PLAYS + SYNCED + CLOSED)
        # A list of scenes has no synchronisation.
        scene = {"entries": [entry("clock", 0, 0.1)]}
        config = {"audio": {"path": "m.ogg", "startOffset": 2}, "scenes": [scene, scene]}
        for start in (0, 0.15):
            log = self.music(config, "--start", start, length=0.5)
            self.assert_log(log, OPENED % (1, 100, 2) + positioned(2 + start) + PLAYS + CLOSED)

    def test_list_of_scenes_is_ready_when_the_music_starts(self):
        scene = {"id": "one", "entries": [entry("clock", 0, 0.1)]}
        path = self.write_show({"audio": {"path": "m.ogg"}, "scenes": [scene]})
        needed = {"STAND_IN_REMOVES": str(self.folder / "assets/shaders/clock/clock.frag")}
        log = self.run_player("--headless", "--audio", "--length", 0.12, path, env={**FOUND, **needed}).log
        loaded = r"\[SCENE 1/1\].*\n  \[LOAD\] clock .*\n  \[OK\] clock\n"
        self.assertRegex(log, re.escape(PLAYS) + loaded, "said behind the start, done before it")

    def test_seeks_and_loop(self):
        # Frames that take their time, so that the wrap is well behind the start.
        arguments = ("--start", 2, "--press", "0:Up", "--press", "0.3:Down", "--size", "1600x1200")
        log = self.music(scenes(loop=True, startOffset=0.5), *arguments, length=3.6)
        self.assertIn(positioned(2.5) + PLAYS + SYNCED, log)
        self.assertIn(positioned(5.499) + PLAYS + "[SEEK] t=4.999s scene=b\n", log)
        # Down comes after the wrap. The position is where the picture is.
        wrap = r"SetPosition\(7, (\d+), 0\)\n" + re.escape(PLAYS) + r"\[AUDIO\] Loop seek to (1\.[01]\d\d)s"
        position, time = re.search(wrap, log).groups()
        self.assertAlmostEqual(int(position), float(time) * 1000 + 500, delta=1)
        self.assertIn(positioned(1.5) + PLAYS + "[SEEK] t=1.000s scene=a\n", log)

    def test_failures(self):
        opened, start, step = OPENED % (1, 100, 0) + COMPARED, positioned(1), positioned(3)
        silent, stepped = "[SEEK] Audio seek failed; continuing visual-only.\n", "[SEEK] t=3.000s scene=b\n"
        init, create, *_ = opened.splitlines(True)
        init_failed = "  BASS_ErrorGetCode()\n[AUDIO] BASS_Init failed (err=41)\n"
        create_failed = init_failed.replace("Init failed", "StreamCreateFile failed: {folder}/m.ogg")
        for name, times, expected in (
                ("BASS_Init", 1, init + init_failed + stepped + ENDED),
                ("BASS_StreamCreateFile", 1, init + create + create_failed + FREED + stepped + ENDED),
                ("BASS_ChannelSetPosition", 9, opened + start + step + silent + stepped + CLOSED),
                ("BASS_ChannelPlay", 9, opened + start + PLAYS + step + PLAYS + silent + stepped + CLOSED),
                # The music comes back at the first position that succeeds.
                ("BASS_ChannelPlay", 1, opened + start + PLAYS + step + PLAYS + stepped + CLOSED)):
            with self.subTest(name, times=times):
                settings = {"STAND_IN_FAILS": name, "STAND_IN_FAILS_TIMES": str(times)}
                self.assert_log(self.music(scenes(), "--press", "0.05:Right", **settings), expected)
        log = self.music(scenes(loop=True), "--start", 4.9, length=0.4, STAND_IN_FAILS="BASS_ChannelPlay")
        self.assertEqual(log.count("BASS_ChannelPlay"), 2)
        self.assertNotRegex(log, r"Loop seek|\[SEEK\]")

    def test_unknown_length(self):
        for length in (0, 2 ** 64 - 1):
            log = self.music(scenes(), STAND_IN_LENGTH=str(length))
            self.assertIn("duration=0.000s)\n" + COMPARED.replace("60.", "0.").replace("-55.", "5."), log)
            self.assertNotIn("Bytes2Seconds", log)

    def test_places(self):
        """Beside the program and up to four directories above, the nearest first; never where the show lies."""
        player = self.folder / "1/2/3/4/5/player.exe"
        player.parent.mkdir(parents=True)
        shutil.copy2(PLAYER, player)

        def log():
            beside = {"command": [*RUNNER, player], "cwd": player.parent.parent}
            return self.play(scenes(), "--audio", "--length", 0, env={"SDL_AUDIODRIVER": "dummy"}, **beside).log

        shutil.copy(STAND_IN / LIBRARY, self.folder)
        self.assertIn(NOT_FOUND % LIBRARY, log())
        for levels in range(4, -1, -1):
            whole = levels % 2 == 0
            shutil.copy((STAND_IN if whole else INCOMPLETE) / LIBRARY, player.parents[levels])
            said = "  BASS_Init(" if whole else "[AUDIO] BASS DLL missing required exports.\n[TIMELINE] Loading"
            self.assertIn("not found\n" + said, log(), levels)
        self.write("1/2/3/4/5/" + LIBRARY, b"no library")
        self.assertIn(NOT_FOUND % f"{player.parent}/{LIBRARY}", log())

    def test_runs_with_and_without_music(self):
        path = self.write_show(scenes())
        window = Display(self).env
        for arguments, sounds, env in (
                ("--headless", False, {}), ("--headless --audio --no-audio", False, {}),
                ("--audio -o f-%d.png", False, {}), ("", True, window), ("--no-audio", False, window)):
            log = self.run_player("--length", 0.12, *arguments.split(), path, env={**FOUND, **env}).log
            self.assertEqual("BASS_Init(" in log, sounds, arguments)
        for path in ("none.ogg", "C:\\NUL" if WINDOWS else "/dev/zero", "."):
            log = self.music(scenes(path=path))
            self.assertRegex(log, r"\A\[AUDIO\] File not found: .*\n\[EXIT\]")


# A tone that rises by a steady number of hertz a second: its pitch tells the place in the track.
LOWEST, RISE, SECONDS = 300, 300, 5
BLOCK = 1024  # frames of a device buffer, at whose edges playback starts, ends and jumps
RATE = 44100


def tone(rate, level):
    times = (i / rate for i in range(rate * SECONDS))
    return [int(level * math.sin(2 * math.pi * (LOWEST + RISE * t / 2) * t)) for t in times]


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
    note = bytes([period >> 8, period & 255, 0x10, 0])
    jump = bytes([0, 0, 0x0B if jumps else 0, 0])
    rows = note * 2 + bytes(8) + bytes(16 * (ROWS - 2)) + bytes(8) + jump + bytes(4)
    samples = struct.pack(">HBBHH", len(sample) // 2, 0, 64, 0, 1) + (bytes(28) + b"\0\1") * 30
    return bytes(42) + samples + bytes([1, 127] + [0] * 128) + b"M.K." + rows + sample


def xm():
    sample = pcm()
    deltas = bytes((value - before) & 255 for before, value in zip(b"\0" + sample, sample))
    cells = bytes([0x83, 49, 1]) + b"\x80" * (ROWS * 2 - 1)
    head = struct.pack("<17s20xB20xHI8H256x", b"Extended Module: ", 0x1a, 0x104, 276, 1, 0, 2, 1, 1, 1, *TEMPO)
    instrument = struct.pack("<I23xHI230xIII4B24x", 263, 1, 40, len(sample), 0, 0, 64, 0, 0, 128)
    return head + struct.pack("<IBHH", 9, 0, ROWS, len(cells)) + cells + instrument + deltas


def s3m():
    sample = pcm()
    cells = bytes([0x20, 0x40, 1]) + bytes(ROWS)
    pattern = padded(struct.pack("<H", len(cells) + 2) + cells, 16)
    head = 0x70  # orders and two addresses follow the first 0x60
    data_at = head + 0x50 + len(pattern)
    data = struct.pack("<28x4B6H4s6B10x", 26, 16, 0, 0, 2, 1, 1, 0, 0x1320, 1, b"SCRM", 64, *TEMPO, 0xB0, 0, 0)
    data += b"\0\x08" + b"\xff" * 30 + bytes([0, 255]) + struct.pack("<HH", head // 16, (head + 0x50) // 16)
    instrument = struct.pack("<B12xBH3IBxBBI40x4s", 1, data_at >> 20, data_at >> 4 & 0xFFFF, len(sample), 0, 0,
                             64, 0, 0, NOTE_RATE, b"SCRS")
    return padded(data, 16) + instrument + pattern + sample


def it():
    sample = pcm()
    cells = bytes([0x81, 3, 60, 1]) + bytes(ROWS)
    head = 0xC0 + 2 + 2 * 4
    data = struct.pack("<4s28x8H6B10x", b"IMPM", 2, 0, 1, 1, 0x214, 0x200, 9, 0, 128, 48, *TEMPO, 128, 0)
    data += b"\x20" * 64 + b"\x40" * 64 + bytes([0, 255]) + struct.pack("<II", head, head + 80)
    data += struct.pack("<4s13x3B26xBB7I4x", b"IMPS", 64, 1, 64, 1, 32, len(sample), 0, 0, NOTE_RATE, 0, 0,
                        head + 80 + 8 + len(cells))
    return data + struct.pack("<HH4x", len(cells), ROWS) + cells + sample


MODULES = {"mod": mod, "looping.mod": lambda: mod(True), "xm": xm, "s3m": s3m, "it": it}


def places(samples):
    """The place in the track, in seconds, of each block's first sample; None for silence."""
    found = []
    for at in range(0, len(samples) - BLOCK + 1, BLOCK):
        block = samples[at:at + BLOCK]
        pairs = enumerate(zip(block, block[1:]))
        crossings = [i + one / (one - other) for i, (one, other) in pairs if one < 0 <= other]
        if len(crossings) < 5:
            found.append(None)
            continue
        pitch = RATE * (len(crossings) - 1) / (crossings[-1] - crossings[0])
        found.append((pitch - LOWEST) / RISE - (crossings[0] + crossings[-1]) / 2 / RATE)
    return found


def starts(found):
    """The places at which playback started or jumped to."""
    follows = [None, *(place and place + BLOCK / RATE for place in found)]
    return [place for place, expected in zip(found, follows)
            if place is not None and (expected is None or abs(place - expected) > 0.01)]


@unittest.skipIf(WINDOWS, "there music comes from the library alone")
class BuiltIn(PlayerTest):
    FORMATS = {"wav": [], "flac": [], "ogg": ["-c:a", "libvorbis", "-q:a", "6"], "mp3": ["-b:a", "192k"],
               "opus": ["-b:a", "160k"]}

    def make_track(self, format):
        path = self.folder / f"m.{format}"
        if format in MODULES:
            return self.write(path.name, MODULES[format]())
        write_wav(self.folder / "tone.wav", 2, RATE, (v for v in tone(RATE, 20000) for _ in "LR"))
        output_of("ffmpeg", "-v", "error", "-i", self.folder / "tone.wav", *self.FORMATS[format], path)
        return path

    def listen(self, config, *arguments):
        """The log of a show, and the samples of one side of what it plays."""
        heard = self.folder / "heard.raw"
        env = {"SDL_AUDIODRIVER": "disk", "SDL_DISKAUDIOFILE": str(heard)}
        log = self.play(config, "--audio", *arguments, env=env).log
        return log, array.array("h", heard.read_bytes()[:heard.stat().st_size // 4 * 4])[0::2]

    def test_what_is_heard(self):
        """Start, a step forward, one back, and the loop wrap, of every format."""
        keys = ("--press", "0.4:Right", "--press", "0.7:Left", "--press", "1:Right", "--length", 2.2)
        for format in (*self.FORMATS, *MODULES):
            with self.subTest(format):
                config = show(entry("clock", 0, 0.8, scene="a"), entry("clock", 0.8, 0.8, scene="b"), loop=True,
                              audio={"path": self.make_track(format).name, "startOffset": 0.7, "volume": 0.5})
                log, samples = self.listen(config, *keys)
                self.assertIn("[AUDIO] Using built-in playback", log)
                shown = ["0", *re.findall(r"\[SEEK\] t=(\S+)s|\[AUDIO\] Loop seek to (\S+)s", log)]
                shown = [float("".join(time)) for time in shown]
                self.assertEqual((shown[:4], len(shown)), ([0, 0.8, 0, 0.8], 5))
                heard = starts(places(samples))
                self.assertEqual(len(heard), 5, heard)
                for place, time in zip(heard, shown):
                    self.assertAlmostEqual(place, time + 0.7, delta=0.02)
                self.assertAlmostEqual(max(samples), 10000, delta=1200 if format in self.FORMATS else 9000)

    def test_end_of_the_track(self):
        self.make_track("wav")
        config = show(entry("clock", 0, 100), audio={"path": "m.wav"})
        log, samples = self.listen(config, "--start", 4.5, "--length", 3, "--press", "2.9:Up")  # long after it
        self.assertIn("duration=5.000s)", log)
        self.assertIn("[SEEK] Audio seek failed; continuing visual-only.\n", log)
        heard = places(samples)
        self.assertEqual(len(starts(heard)), 1)
        self.assertAlmostEqual(sum(place is not None for place in heard) * BLOCK / RATE, 0.5, delta=0.05)

    def survive(self, content, driver):
        """The run of a show whose music is `content`: whatever that is, the show is played."""
        self.write("m.x", content)
        config = show(entry("clock"), audio={"path": "m.x"})
        run = self.play(config, "--audio", "--length", 0.12, env={"SDL_AUDIODRIVER": driver})
        self.assertIn("[PLAY] ", run.log)
        return run

    def test_no_sound_device(self):
        log = self.survive(b"RIFF", "nosuch").log
        self.assertIn("[AUDIO] Using built-in playback\n[AUDIO] BASS_Init failed (err=3)\n", log)

    def test_broken_tracks(self):
        """Files that are no music, cut short or built to take all memory end in one line; the show goes on."""
        format = struct.pack("<IHHIIHH", 16, 1, 2, RATE, RATE * 4, 4, 16)
        lies = b"RIFF\xff\xff\xff\x7fWAVEfmt " + format + b"data\xf0\xff\xff\x7f"
        hour = output_of("ffmpeg", "-v", "error", *"-f lavfi -i anullsrc=r=44100 -t 3600 -f flac -".split())
        crashed_once = [path.read_bytes() for path in sorted(FINDS.iterdir())]
        for content in (*crashed_once, hour, lies, lies[:-4] + bytes(4), b"", b"no music", mod()[:900],
                        b"fLaC" + bytes(100),
                        b"OggS" + bytes(100), b"\xff\xfb\x90\0" + bytes(50), b"ID3\4\0\0\x7f\x7f\x7f\x7f"):
            with self.subTest(content[:30]):
                run = self.survive(content, "dummy")
                self.assertIn(f"[AUDIO] BASS_StreamCreateFile failed: {self.folder}/m.x (err=41)\n", run.log)
                self.assertIn(f"No music: {self.folder}/m.x: ", run.err)
        for content in (mod()[:1084], bytes(range(256)) * 50):  # which a player of modules may take for one
            self.survive(content, "dummy")


if __name__ == "__main__":
    unittest.main()
