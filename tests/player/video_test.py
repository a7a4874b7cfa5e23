"""Rendering to video, read back with ffprobe and ffmpeg; and what must not stay behind when it fails."""

import array
import json
import math
import resource
import signal
import subprocess
import unittest
import wave
from fractions import Fraction

from support import HEADER, VERTEX, LivePlayer, PlayerTest, entry, png, show

RATE = 48000
OFFSET = 0.25  # seconds into the track at show time 0

# White in the frame that begins each half second.
FLASH = HEADER + """void main() {
    FragColor = vec4(vec3(mod(iTime + 0.005, 0.5) < 0.045 ? 1.0 : 0.0), 1.0);
}"""


class VideoTest(PlayerTest):
    def probe(self, name):
        done = subprocess.run(["ffprobe", "-v", "error", "-count_frames", "-show_streams", "-show_format", "-of", "json",
                               self.folder / name], stdout=subprocess.PIPE, check=True)
        probed = json.loads(done.stdout)
        streams = {stream["codec_type"]: stream for stream in probed["streams"]}
        self.assertEqual(len(streams), len(probed["streams"]))
        return streams, probed["format"]

    def decode(self, name, *arguments):
        return subprocess.run(["ffmpeg", "-v", "error", "-i", self.folder / name, *arguments, "-"],
                              stdout=subprocess.PIPE, check=True).stdout

    def flashing_show(self, **audio):
        """With a track of bursts of 10 ms of a 1 kHz tone at 0.8, one every half second from OFFSET to 3 s."""
        def sample(i):
            since = (i - int(OFFSET * RATE)) % (RATE // 2)
            return int(0.8 * 32767 * math.cos(2 * math.pi * 1000 * i / RATE)) if since < RATE // 100 else 0

        with wave.open(str(self.folder / "track: 50%.wav"), "wb") as track:
            track.setparams((1, 2, RATE, 0, "NONE", ""))
            track.writeframes(array.array("h", map(sample, range(3 * RATE))).tobytes())
        self.write("assets/shaders/flash/flash.frag", FLASH)
        self.write("assets/shaders/flash/flash.vert", VERTEX)
        return self.write_show(show(entry("flash", 0, 4), size=(64, 36), audio={
            "path": "track: 50%.wav", "startOffset": OFFSET, "volume": 0.5, **audio}))

    def flashes(self, name, rate, pixels=64 * 36):
        """Times of the frames that begin to be white."""
        grey = self.decode(name, "-map", "0:v", "-fps_mode", "passthrough", "-f", "rawvideo", "-pix_fmt", "gray")
        lit = [grey[at + pixels // 2] > 128 for at in range(0, len(grey), pixels)]
        return [float(k / rate) for k in range(len(lit)) if lit[k] and not (k and lit[k - 1])]

    def clicks(self, name):
        """Times at which sound begins, its peak, and when all of it ends."""
        # Silence stands in for what the container leaves out at the beginning.
        samples = array.array("f", self.decode(name, "-map", "0:a", "-af", "aresample=async=1:first_pts=0", "-ac", "1",
                                               "-ar", str(RATE), "-f", "f32le"))
        times, last = [], -RATE
        for i, value in enumerate(samples):
            if abs(value) > 0.1:
                if i - last > RATE // 10:
                    times.append(i / RATE)
                last = i
        return times, max(map(abs, samples)), len(samples) / RATE


class WholeVideos(VideoTest):
    def test_sound_and_picture_meet(self):
        # The track ends at 3 s, in the show at 2.75: silence follows.
        path = self.flashing_show()
        for output, fps, codec in (("-a%d.mp4", "25", "h264"), ("b:c.mkv", "30000/1001", "h264"), ("c.webm", "50", "vp9"),
                                   ("d.mov", "60", "h264")):
            with self.subTest(output):
                self.run_player(f"--o={output}", "--fps", fps, "--start", 1, path)
                streams, _ = self.probe("./" + output)
                video, audio, rate = streams["video"], streams["audio"], Fraction(fps)
                frames = math.ceil(3 * rate)
                length, step = float(frames / rate), float(1 / rate)
                self.assertEqual((video["codec_name"], video["width"], video["height"]), (codec, 64, 36))
                self.assertEqual((int(video["nb_read_frames"]), Fraction(video["r_frame_rate"])), (frames, rate))
                self.assertAlmostEqual(float(video["start_time"]), 0, delta=0.001)
                flashes = self.flashes(output, rate)
                clicks, peak, end = self.clicks(output)
                self.assertAlmostEqual(end, length, delta=0.022)  # a decoder gives whole packets
                self.assertAlmostEqual(peak, 0.4, delta=0.1)
                self.assertEqual([len(flashes), len(clicks)], [6, 4])
                for k, flash in enumerate(flashes):
                    self.assertAlmostEqual(flash, k / 2, delta=step)
                for flash, click in zip(flashes, clicks):
                    self.assertAlmostEqual(click, flash, delta=step)
                for stream in (video, audio):
                    self.assertAlmostEqual(float(stream.get("duration", length)), length, delta=0.001)
                tags = [video["color_" + tag] for tag in ("range", "space", "transfer", "primaries")]
                self.assertEqual(tags, ["tv", "bt709", "bt709", "bt709"])
        self.assertEqual(list(self.folder.glob("*.part")), [])

    def test_music_as_it_is_asked_for(self):
        self.write("noise.mp3", b"no music at all" * 500)
        self.flashing_show()
        flac = self.decode("track: 50%.wav", "-f", "flac")
        head = flac.find(b"\xff\xf8")  # where the first packet begins
        self.write("cut.flac", flac[:head + 2000] + flac[-2000:])
        for audio, arguments, peak, line in (
                ({}, ("--no-audio",), None, ""), ({"volume": 7}, ("--length", 1), 0.8, ""),
                ({"startOffset": 1e30}, (), 0.0, ""), ({"path": "cut.flac"}, (), 0.4, ""),
                ({}, ("--press", "0.5:Right", "--press", "1.5:Escape"), 0.4, ""),
                ({"path": "gone.ogg"}, (), None, "[AUDIO] File not found: {folder}/gone.ogg\n"),
                ({"path": "noise.mp3"}, (), None, "[AUDIO] Rendering without music; ffmpeg cannot read {folder}/noise.mp3: ")):
            with self.subTest(audio=audio, arguments=arguments):
                result = self.run_player("-o", "a.mp4", "--fps", 20, *arguments, self.flashing_show(**audio))
                self.assertIn(line.replace("{folder}", str(self.folder)), result.log)
                streams, _ = self.probe("a.mp4")
                self.assertEqual("audio" in streams, peak is not None)
                if peak is not None:
                    video_length = float(streams["video"]["duration"])
                    self.assertAlmostEqual(float(streams["audio"]["duration"]), video_length, delta=0.022)
                    self.assertAlmostEqual(self.clicks("a.mp4")[1], peak, delta=0.15)

    def test_colors_of_a_card(self):
        card = [(r, g, b) for r in (0, 128, 255) for g in (0, 100, 255) for b in (0, 160, 255)]
        card += [(v, v, v) for v in (8, 64, 192)] + [(200, 150, 120), (30, 60, 40)]
        columns, side = 8, 16
        width, height = columns * side, 4 * side
        patch = [card[y // side * columns + x // side] for y in range(height) for x in range(width)]
        self.write("card.png", png(width, height, b"".join(bytes((*color, 255)) for color in patch)))
        path = self.write_show(show(entry("image", 0, 0.2, params={"image": "card.png"}), size=(width, height)))
        still = self.run_player("-o", "-", "--still", 0, path).out
        for output in ("a.mp4", "a.gif"):
            with self.subTest(output):
                self.run_player("-o", output, "--fps", 25, path)
                rgb = self.decode(output, "-vf", "scale=flags=accurate_rnd+full_chroma_int+full_chroma_inp", "-f",
                                  "rawvideo", "-pix_fmt", "rgb24")
                # Every patch's middle; its borders share their chroma with the next.
                for i, color in enumerate(card):
                    at = ((i // columns * side + side // 2) * width + i % columns * side + side // 2)
                    for got, wanted in zip(rgb[3 * at:3 * at + 3], still[4 * at:4 * at + 3], strict=True):
                        self.assertAlmostEqual(got, wanted, delta=3, msg=f"{output}: {color}")

    def test_other_sizes_rates_and_arguments(self):
        path = self.write_show(show(entry("clock", 0, 1)))
        for output, size, arguments, frames, rate, wanted in (
                ("a.mkv", "7x5", ("--fps", "23.976"), 24, "2997/125", (8, 6)),
                ("a.mp4", "8x8", ("--fps", 10, "--ffmpeg-args", "-frames:v 3 -vf 'scale=32:16'"), 3, "10/1", (32, 16)),
                ("a.GIF", "5x3", (), 50, "50/1", (5, 3))):
            with self.subTest(output, size=size):
                self.run_player("-o", output, "--size", size, *arguments, path)
                video = self.probe(output)[0]["video"]
                self.assertEqual((int(video["nb_read_frames"]), video["width"], video["height"]), (frames, *wanted))
                self.assertEqual(Fraction(video["r_frame_rate"]), Fraction(rate))


class Failures(VideoTest):
    def assert_fails(self, output, *words, arguments=(), **more):
        """One line, exit code 1, and what had the name before is untouched."""
        self.write("old.mp4", "old")
        result = self.run_player("-o", output, "--fps", 10, *arguments, "config.json", code=1, **more)
        beside_the_log = "".join(line for line in result.err.splitlines(True) if not line.startswith("["))
        self.assert_one_line(beside_the_log, "Cannot write " + output, *words)
        self.assertEqual((self.folder / "old.mp4").read_text(), "old")
        names = {file.name for file in self.folder.iterdir() if file.is_file()}
        self.assertEqual(names, {"config.json", "old.mp4"})

    def test_ffmpeg_fails(self):
        self.write_show(show(entry("clock", 0, 1), size=(640, 360)))
        (self.folder / "folder.mp4").mkdir()
        self.assert_fails("old.mp4", "ffmpeg cannot be started: No such file", env={"PATH": "/nonexistent"})
        self.assert_fails("old.mp4", "Unknown encoder 'nonsense'", arguments=("--ffmpeg-args=-c:v nonsense",))
        self.assert_fails("gone/a.mp4", "gone/a.mp4.part: No such file or directory")
        self.assert_fails("folder.mp4", "directory")

    def test_disk_runs_full(self):
        # A file that may not grow stands in for the disk; Python ignores the signal that would come with it.
        self.write_show(show(entry("clock", 0, 3), size=(640, 360)))
        full = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (256, 256)), "restore_signals": False}
        for output in ("a.mp4", "a.gif"):
            self.assert_fails(output, "File too large", **full)

    def test_ffmpeg_dies_or_hangs(self):
        config = self.write_show(show(entry("clock", 0, 3600), size=(640, 360)))
        fake = self.write("bin/ffmpeg", "#!/bin/sh\nhead -c 3000000 >/dev/null\necho 'some; last words' >&2\nkill -9 $$\n")
        fake.chmod(0o755)
        path = {"PATH": f"{fake.parent}:/usr/bin:/bin"}
        self.assert_fails("old.mp4", "ffmpeg: some; last words", env=path)
        fake.write_text("#!/bin/sh\nexec sleep 1000\n")
        player = LivePlayer(self, "-o", "a.mp4", config, env=path)
        player.wait_for(r"\[PLAY\]")
        player.process.send_signal(signal.SIGINT)
        player.end(code=1, limit=10)

    def test_interrupted(self):
        path = self.write_show(show(entry("clock", 0, 36000), size=(64, 36)))
        for number, output in ((signal.SIGINT, "a.mp4"), (signal.SIGTERM, "a.gif")):
            with self.subTest(output):
                player = LivePlayer(self, "-o", output, path)
                player.wait_for(r"\[PLAY\]")
                player.process.send_signal(number)
                self.assertEqual(player.end(code=1), ["[EXIT] WM_QUIT", "[DONE]"])
                self.assert_one_line("\n".join(player.others) + "\n", "Interrupted", "of 2160000 frames" if output == "a.mp4"
                                     else "of 1800000 frames", output)
                self.assertEqual(list(self.folder.glob("a.*")), [])


if __name__ == "__main__":
    unittest.main()
