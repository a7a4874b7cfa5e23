"""Rendering to video, read back with ffprobe and ffmpeg; and what must not stay behind when it fails."""

import array
import json
import math
import random
import resource
import signal
import time
import unittest
from fractions import Fraction

from support import Player, PlayerTest, beside_the_log, entry, output_of, png, show, write_wav

RATE = 48000
OFFSET = 0.25  # seconds into the track at show time 0


def click(i):
    """Samples of bursts of 10 ms of a 1 kHz tone at 0.8, one every half second from OFFSET."""
    since = (i - int(OFFSET * RATE)) % (RATE // 2)
    return int(0.8 * 32767 * math.cos(2 * math.pi * 1000 * i / RATE)) if since < RATE // 100 else 0


class VideoTest(PlayerTest):
    def streams(self, name):
        probe = "ffprobe -v error -count_frames -show_streams -of json".split()
        streams = json.loads(output_of(*probe, self.folder / name))["streams"]
        self.assertIn([stream["codec_type"] for stream in streams], (["video"], ["video", "audio"]))
        return (streams + [None])[:2]

    def decode(self, name, *arguments):
        return output_of("ffmpeg", "-v", "error", "-i", self.folder / name, *arguments, "-")

    def flashing_show(self, **audio):
        """Picture and sound meet each half second; the track ends at 3 s, in the show at 2.75."""
        write_wav(self.folder / "track: 50%.wav", 1, RATE, map(click, range(3 * RATE)))
        return self.write_show(show(entry("flash", 0, 4), size=(64, 36), audio={
            "path": "track: 50%.wav", "startOffset": OFFSET, "volume": 0.5, **audio}))

    def flashes(self, name, rate, pixels=64 * 36):
        """Times of the frames that begin to be white."""
        grey = self.decode(name, *"-map 0:v -fps_mode passthrough -f rawvideo -pix_fmt gray".split())
        lit = [grey[at + pixels // 2] > 128 for at in range(0, len(grey), pixels)]
        return [float(k / rate) for k in range(len(lit)) if lit[k] and not (k and lit[k - 1])]

    def clicks(self, name):
        """Times at which sound begins, its peak, and when all of it ends."""
        # Silence stands in for what the container leaves out at the beginning.
        whole = f"-map 0:a -af aresample=async=1:first_pts=0,pan=mono|c0=c0 -ar {RATE} -f f32le"
        samples = array.array("f", self.decode(name, *whole.split()))
        loud = [i for i, value in enumerate(samples) if abs(value) > 0.1]
        times = [i / RATE for before, i in zip([-RATE, *loud], loud) if i - before > RATE // 10]
        return times, max(map(abs, samples)), len(samples) / RATE


class WholeVideos(VideoTest):
    def test_sound_and_picture_meet(self):
        path = self.flashing_show()
        for output, fps, codec in (("-a%d.mp4", "25", "h264"), ("b:c.mkv", "30000/1001", "h264"),
                                   ("c.webm", "50", "vp9"), ("d.mov", "60", "h264")):
            with self.subTest(output):
                self.run_player(f"--o={output}", "--fps", fps, "--start", 1, path)
                video, audio = self.streams(output)
                rate = Fraction(fps)
                frames = math.ceil(3 * rate)
                length, step = float(frames / rate), float(1 / rate)
                self.assertEqual((video["codec_name"], video["width"], video["height"]), (codec, 64, 36))
                self.assertEqual(int(video["nb_read_frames"]), frames)
                self.assertEqual(Fraction(video["r_frame_rate"]), rate)
                self.assertAlmostEqual(float(video["start_time"]), 0, delta=0.001)
                for stream in (video, audio):
                    self.assertAlmostEqual(float(stream.get("duration", length)), length, delta=0.001)
                flashes = self.flashes(output, rate)
                clicks, peak, end = self.clicks(output)
                self.assertAlmostEqual(end, length, delta=0.022)  # a decoder gives whole packets
                self.assertAlmostEqual(peak, 0.4, delta=0.1)
                self.assertEqual((len(flashes), len(clicks)), (6, 4))
                for k, flash in enumerate(flashes):
                    self.assertAlmostEqual(flash, k / 2, delta=step)
                for flash, click in zip(flashes, clicks):
                    self.assertAlmostEqual(click, flash, delta=step)
                tags = [video["color_" + tag] for tag in ("range", "space", "transfer", "primaries")]
                self.assertEqual(tags, ["tv", "bt709", "bt709", "bt709"])
        self.assertEqual(list(self.folder.glob("*.part")), [])

    def test_music_is_that_of_play(self):
        """The track's own samples at the volume, from where play starts and where it jumps to, to the step."""
        noise = random.Random(1)
        track = array.array("h", (noise.randrange(-32768, 32768) for _ in range(2 * 44100 * 3)))
        write_wav(self.folder / "m.wav", 2, 44100, track)
        path = self.write_show(show(
            entry("clock", 0, 2, scene="a"), entry("clock", 2, 2, scene="b"),
            audio={"path": "m.wav", "startOffset": 0.25, "volume": 0.5}))
        # A frame fills more than a pipe: ffmpeg must not wait for sound while the player waits with a frame.
        self.run_player("-o", "a.mkv", "--fps", 25, "--start", 0.5, "--press", "1:Right", "--size", "1280x1024",
                        "--ffmpeg-args=-preset ultrafast -tune zerolatency", path)
        heard = array.array("h", self.decode("a.mkv", *"-map 0:a -f s16le".split()))
        second = 2 * 44100
        played = track[second * 3 // 4:second * 7 // 4] + track[second * 9 // 4:]
        played.extend([0] * (3 * second - len(played)))
        self.assertEqual(heard, array.array("h", (int(sample * 0.5) for sample in played)))

    def test_music_as_it_is_asked_for(self):
        self.write("list.mp3", "ffconcat version 1.0\nfile 'track: 50%.wav'\n")  # which might name any file
        refused = "[AUDIO] Rendering without music; ffmpeg cannot read {folder}/list.mp3: "
        self.write("broken.ogg", b"OggS" + bytes(22) + b"\1\x0d\1vorbis")
        self.flashing_show()
        flac = self.decode("track: 50%.wav", "-f", "flac")
        head = flac.find(b"\xff\xf8")  # where the first packet begins
        self.write("cut.flac", flac[:head + 2000] + flac[-2000:])
        self.write("other.au", self.decode("track: 50%.wav", "-f", "au"))
        for audio, arguments, peak, line in (
                ({}, "--no-audio", None, ""), ({"volume": 7}, "--length 1", 0.8, ""),
                ({"startOffset": 1e30}, "", 0.0, ""), ({}, "--press 0.5:Right --press 1.5:Escape", 0.4, ""),
                ({"path": "cut.flac"}, "", 0.4, ""), ({"path": "other.au"}, "", 0.3, ""),
                ({"path": "broken.ogg"}, "", None, "without music; cannot read {folder}/broken.ogg: broken"),
                ({"path": "gone.ogg"}, "", None, "[AUDIO] File not found: {folder}/gone.ogg\n"),
                ({"path": "list.mp3"}, "", None, refused)):
            with self.subTest(audio=audio, arguments=arguments):
                path = self.flashing_show(**audio)
                log = self.run_player("-o", "a.mp4", "--fps", 20, *arguments.split(), path).log
                self.assertIn(line.replace("{folder}", str(self.folder)), log)
                video, sound = self.streams("a.mp4")
                self.assertEqual(sound is not None, peak is not None)
                if sound:
                    self.assertAlmostEqual(float(sound["duration"]), float(video["duration"]), delta=0.022)
                    self.assertAlmostEqual(self.clicks("a.mp4")[1], peak, delta=0.15)
        path = self.flashing_show(path="other.au")  # which ffmpeg alone decodes
        run = self.run_player("-o", "b.mp4", "--press", "0.5:Right", path, code=1)
        self.assert_one_line(beside_the_log(run.err), "other.au: this music cannot follow the jumps of --press")

    def test_colors_of_a_card(self):
        card = [(r, g, b) for r in (0, 128, 255) for g in (0, 100, 255) for b in (0, 160, 255)]
        card += [(v, v, v) for v in (8, 64, 192)] + [(200, 150, 120), (30, 60, 40)]
        columns, side = 8, 16
        width, height = columns * side, 4 * side
        patch = [card[y // side * columns + x // side] for y in range(height) for x in range(width)]
        self.write("card.png", png(width, height, b"".join(bytes((*color, 255)) for color in patch)))
        path = self.write_show(show(entry("image", 0, 0.2, params={"image": "card.png"}), size=(width, height)))
        for output in ("a.mp4", "a.gif"):
            with self.subTest(output):
                self.run_player("-o", output, "--fps", 25, path)
                exact = "scale=flags=accurate_rnd+full_chroma_int+full_chroma_inp"
                rgb = self.decode(output, "-vf", exact, "-f", "rawvideo", "-pix_fmt", "rgb24")
                # Every patch's middle; its borders share their chroma with the next.
                for i, color in enumerate(card):
                    at = (i // columns * side + side // 2) * width + i % columns * side + side // 2
                    for got, wanted in zip(rgb[3 * at:3 * at + 3], color, strict=True):
                        self.assertAlmostEqual(got, wanted, delta=3, msg=str(color))

    def test_other_sizes_rates_and_arguments(self):
        path = self.write_show(show(entry("clock", 0, 1)))
        for output, size, arguments, frames, rate, wanted in (
                ("a.mkv", "7x5", ["--fps=23.976"], "24", "2997/125", (8, 6)),
                ("a.mp4", "8x8", ["--fps=9", "--ffmpeg-args=-frames:v 3 -s '32x16'"], "3", "9/1", (32, 16)),
                ("a.GIF", "5x3", [], "50", "50/1", (5, 3))):
            with self.subTest(output):
                self.run_player("-o", output, "--size", size, *arguments, path)
                video, _ = self.streams(output)
                self.assertEqual((video["nb_read_frames"], video["r_frame_rate"]), (frames, rate))
                self.assertEqual((video["width"], video["height"]), wanted)


class Failures(VideoTest):
    def setUp(self):
        super().setUp()
        self.path = self.write_show(show(entry("clock", 0, 3600), size=(640, 360)))
        self.write("old.mp4", "old")

    def assert_nothing_written(self):
        self.assertEqual((self.folder / "old.mp4").read_text(), "old")
        names = {file.name for file in self.folder.iterdir() if file.is_file()}
        self.assertEqual(names, {"config.json", "old.mp4"})

    def assert_fails(self, output, *words, arguments=(), **more):
        """One line, exit code 1, and what had the name before is untouched."""
        run = self.run_player("-o", output, "--fps", 10, *arguments, self.path, code=1, **more)
        self.assert_one_line(beside_the_log(run.err), "Cannot write " + output, *words)
        self.assert_nothing_written()

    def test_ffmpeg_fails(self):
        (self.folder / "folder.mp4").mkdir()
        self.assert_fails("old.mp4", "ffmpeg cannot be started: No such file", env={"PATH": "/nonexistent"})
        self.assert_fails("old.mp4", "Unknown encoder 'nonsense'", arguments=("--ffmpeg-args=-c:v nonsense",))
        self.assert_fails("gone/a.mp4", "gone/a.mp4.part: No such file or directory")
        self.assert_fails("folder.mp4", "it is a directory")

    def test_disk_runs_full(self):
        # A file that may not grow stands in for the disk; Python ignores the signal that would come with it.
        full = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (1024, 1024)),
                "restore_signals": False}
        for output in ("a.mp4", "a.gif"):
            self.assert_fails(output, "File too large", arguments=("--length", 3), **full)

    def interrupt(self, number, output, pause=0, **more):
        player = Player(self, "-o", output, self.path, **more)
        player.wait_for(r"\[PLAY\]")
        time.sleep(pause)
        player.process.send_signal(number)
        self.assertTrue(player.end(code=1).log.endswith("[EXIT] WM_QUIT\n[DONE]\n"))
        self.assert_nothing_written()
        return player.err

    def test_ffmpeg_dies_or_hangs(self):
        ending = "head -c 3000000 >/dev/null\necho 'some; last words' >&2\nkill -9 $$\n"
        fake = self.write("bin/ffmpeg", "#!/bin/sh\n" + ending)
        fake.chmod(0o755)
        path = {"PATH": f"{fake.parent}:/usr/bin:/bin"}
        self.assert_fails("old.mp4", "ffmpeg: some; last words", env=path)
        fake.write_text("#!/bin/sh\nexec sleep 1000\n")
        self.interrupt(signal.SIGINT, "old.mp4", pause=1, env=path)  # by then its pipe is full; sooner tests less

    def test_interrupted_twice(self):
        fake = self.write("bin/ffmpeg", '#!/bin/sh\nfor last; do :; done\n: >"${last#file:}"\nexec sleep 1000\n')
        fake.chmod(0o755)
        self.path = self.write_show(show(entry("endless", 0, 3600), size=(1000, 1000)))
        for env in {"PATH": f"{fake.parent}:/usr/bin:/bin"}, {}:
            self.assert_one_line(Player(self, "-o", "a.mp4", self.path, env=env).interrupt_twice().err,
                                 "Interrupted after ", " of 216000 frames: a.mp4 is not written")
            self.assert_nothing_written()

    def test_interrupted(self):
        for number, output, frames in ((signal.SIGINT, "a.mp4", 216000), (signal.SIGTERM, "a.gif", 180000)):
            with self.subTest(output):
                self.assert_one_line(self.interrupt(number, output), "Interrupted after ",
                                     f" of {frames} frames: {output} is not written")


if __name__ == "__main__":
    unittest.main()
