#!/usr/bin/env python3
"""Makes seeds/music/: a fifth of a second of two tones, 1000 Hz at 0.5 left and 500 Hz at 0.25 right, in every coding
that the decoders know, and tracker modules. Needs ffmpeg with its usual encoders."""

import os
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
SEEDS = HERE / "seeds/music"
STEREO = "0.5*sin(2000*PI*t)|0.25*sin(1000*PI*t)"
CODINGS = {  # name: rate, expression, encoder's arguments
    "pcm8.wav": (8000, STEREO, "-c:a pcm_u8"),
    "pcm16.wav": (8000, STEREO, "-c:a pcm_s16le"),
    "pcm24.wav": (8000, STEREO, "-c:a pcm_s24le"),
    "pcm32.wav": (8000, STEREO, "-c:a pcm_s32le"),
    "float32.wav": (8000, STEREO, "-c:a pcm_f32le"),
    "float64.wav": (4000, STEREO, "-c:a pcm_f64le"),
    "alaw.wav": (8000, STEREO, "-c:a pcm_alaw"),
    "mulaw.wav": (8000, STEREO, "-c:a pcm_mulaw"),
    "ima.wav": (11025, STEREO, "-c:a adpcm_ima_wav"),
    "ms.wav": (11025, STEREO, "-c:a adpcm_ms"),
    "surround.wav": (4000, STEREO + "|0|0|0|0", "-c:a pcm_s24le"),
    "surround.flac": (8000, STEREO + "|0|0|0|0", "-c:a flac"),
    "surround.ogg": (44100, STEREO + "|0|0|0|0", "-c:a libvorbis -q:a 0"),
    "flac16.flac": (16000, STEREO, "-c:a flac"),
    "flac24.flac": (8000, STEREO, "-c:a flac -sample_fmt s32"),
    "flac.oga": (16000, STEREO, "-c:a flac"),
    "vorbis.ogg": (44100, STEREO, "-c:a libvorbis -q:a 3"),
    "opus.opus": (48000, STEREO, "-c:a libopus -b:a 64k"),
    "layer3.mp3": (44100, STEREO, "-c:a libmp3lame -b:a 64k -id3v2_version 4 -metadata title=Tones"),
    "layer3-24000.mp3": (24000, STEREO, "-c:a libmp3lame -b:a 48k -id3v2_version 0"),
    "layer2.mp3": (44100, STEREO, "-c:a mp2 -b:a 64k -f mp2"),
}


def main():
    SEEDS.mkdir(parents=True, exist_ok=True)
    for name, (rate, expression, encoder) in CODINGS.items():
        source = f"aevalsrc={expression}:s={rate}:d=0.2"
        if expression.count("|") == 5:
            source += ":c=5.1"
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-bitexact", "-f", "lavfi", "-i", source, *encoder.split(), "-metadata_header_padding", "0",
                        "-fflags", "+bitexact", "-flags:a", "+bitexact", SEEDS / name], check=True)
    sys.path.insert(0, str(HERE.parent / "tests/player"))
    for name in ("QUILLON_STAND_IN_AUDIO", "QUILLON_INCOMPLETE_AUDIO", "QUILLON_PLAYER"):
        os.environ.setdefault(name, "")
    import audio_test
    audio_test.SECONDS = 0.1
    audio_test.tone = lambda rate, level: [int(level * (i % 8 < 4) - level / 2) for i in range(rate // 10)]
    for name, make in audio_test.MODULES.items():
        (SEEDS / f"module-{name}").write_bytes(make())


main()
