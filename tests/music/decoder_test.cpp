#include "music/track.h"
#include "platform/files.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <random>

namespace {

constexpr size_t kMostFrames = 2 * kMusicRate; // damage may lengthen a file; so much of it is decoded
const std::string kFolder = SEEDS_PATH "/";

// Amplitude, and by how many frames it is late, of a sine that begins with the music.
struct Tone {
    double amplitude = 0.0;
    double delay = 0.0;
};

Tone findTone(const Track& track, size_t side, double hertz) {
    constexpr size_t kFirst = 2205, kFrames = 4410; // in the middle, whole periods
    std::vector<int16_t> samples(kMusicChannels * kFrames);
    copyTrack(track, kFirst, 1.0f, samples.data(), kFrames);
    const double step = 2.0 * M_PI * hertz / kMusicRate;
    std::complex<double> sum;
    for (size_t i = 0; i < kFrames; ++i) {
        sum += samples[kMusicChannels * i + side] / 32768.0 *
               std::polar(2.0 / kFrames, -step * static_cast<double>(kFirst + i));
    }
    return {std::abs(sum), -std::arg(sum * std::complex<double>(0.0, 1.0)) / step};
}

// What a file's bytes give, up to kMostFrames.
size_t decodedFrames(std::string bytes) {
    bytes.reserve(1); // a file in memory needs some
    Decoder decoder;
    std::string reason;
    std::FILE* file = fmemopen(bytes.data(), std::max<size_t>(bytes.size(), 1), "rb");
    const bool opened = openDecoder(decoder, file, reason);
    EXPECT_EQ(opened, reason.empty()) << reason;
    if (!opened) return 0;
    std::vector<int16_t> samples(kMusicChannels * kMostFrames);
    const size_t frames = readDecoder(decoder, samples.data(), kMostFrames);
    closeDecoder(decoder);
    return frames;
}

// Tones that are too loud, too soft, late, on the wrong side or cut short.
TEST(Decoder, everyCodingKeepsItsTonesInPlace) {
    struct Case {
        const char* name;
        MusicFormat format;
        uint64_t frames = 8820;   // a fifth of a second
        double amplitude = 0.005; // may be off by so much
        double sides = 1.0;       // of the sum of what goes to a side
    };
    const double surround = 1.0 / (1.0 + std::sqrt(2.0));
    const Case cases[] = {
        {"pcm8.wav", MusicFormat::Wave},
        {"pcm16.wav", MusicFormat::Wave},
        {"pcm24.wav", MusicFormat::Wave},
        {"pcm32.wav", MusicFormat::Wave},
        {"float32.wav", MusicFormat::Wave},
        {"float64.wav", MusicFormat::Wave},
        {"alaw.wav", MusicFormat::Wave, 8820, 0.01},
        {"mulaw.wav", MusicFormat::Wave, 8820, 0.01},
        {"ima.wav", MusicFormat::Wave, 12204, 0.01},
        {"ms.wav", MusicFormat::Wave, 12144, 0.01},
        {"surround.wav", MusicFormat::Wave, 8820, 0.005, surround},
        {"surround.flac", MusicFormat::Flac, 8820, 0.005, surround},
        {"surround.ogg", MusicFormat::Vorbis, 8820, 0.02, surround},
        {"flac16.flac", MusicFormat::Flac},
        {"flac24.flac", MusicFormat::Flac},
        {"flac.oga", MusicFormat::Flac},
        {"vorbis.ogg", MusicFormat::Vorbis, 8820, 0.02},
        {"opus.opus", MusicFormat::Opus, 8820, 0.02},
        {"layer3.mp3", MusicFormat::Mp3, 8820, 0.03},
        {"layer3-24000.mp3", MusicFormat::Mp3, 8820, 0.03},
        {"module-mod", MusicFormat::Module, 0},
        {"module-looping.mod", MusicFormat::Module, 0},
        {"module-xm", MusicFormat::Module, 0},
        {"module-s3m", MusicFormat::Module, 0},
        {"module-it", MusicFormat::Module, 0},
    };
    for (const Case& wanted : cases) {
        SCOPED_TRACE(wanted.name);
        Decoder decoder;
        Track track;
        std::string reason;
        ASSERT_TRUE(openDecoder(decoder, kFolder + wanted.name, reason)) << reason;
        EXPECT_EQ(decoder.format, wanted.format);
        closeDecoder(decoder);
        ASSERT_EQ(decodeTrack(kFolder + wanted.name, track, reason), TrackState::Decoded) << reason;
        if (wanted.frames == 0) {
            // A row lasts 0.12 s, of 64 there are; not for ever where the last one jumps back.
            EXPECT_NEAR(static_cast<double>(track.frames) / kMusicRate, 64 * 0.12, 0.2);
            continue;
        }
        EXPECT_EQ(track.frames, wanted.frames);
        const Tone left = findTone(track, 0, 1000.0), right = findTone(track, 1, 500.0);
        EXPECT_NEAR(left.amplitude, 0.5 * wanted.sides, wanted.amplitude);
        EXPECT_NEAR(right.amplitude, 0.25 * wanted.sides, wanted.amplitude);
        EXPECT_NEAR(left.delay, 0.0, 0.2);
        EXPECT_NEAR(right.delay, 0.0, 0.2);
        EXPECT_LT(findTone(track, 1, 1000.0).amplitude, 0.01);
    }
}

TEST(Track, isCopiedAcrossBlocksAndSilentBehindItsEnd) {
    Track track;
    std::string reason;
    ASSERT_EQ(decodeTrack(kFolder + "module-mod", track, reason), TrackState::Decoded);
    ASSERT_GT(track.samples.size(), 1u); // blocks
    const size_t frames = static_cast<size_t>(track.frames) + 100;
    std::vector<int16_t> whole(kMusicChannels * frames, 1), pieces(whole.size(), 1);
    copyTrack(track, 0, 0.5f, whole.data(), frames);
    for (size_t at = 0; at < frames; at += 777) {
        copyTrack(track, at, 0.5f, &pieces[kMusicChannels * at], std::min<size_t>(777, frames - at));
    }
    EXPECT_EQ(whole, pieces);
    EXPECT_TRUE(std::all_of(whole.end() - 200, whole.end(), [](int16_t sample) { return sample == 0; }));
}

TEST(Decoder, tellsOtherFilesFromBrokenOnes) {
    Track track;
    std::string reason;
    EXPECT_EQ(decodeTrack(kFolder + "none.wav", track, reason), TrackState::Unknown);
    EXPECT_EQ(reason, "cannot be opened");
    EXPECT_EQ(decodeTrack(kFolder + "../../CMakeLists.txt", track, reason), TrackState::Unknown);
    EXPECT_EQ(reason, "no music of a known kind");
}

// Files cut at any length, and twenty and more damaged copies of each: all are given up or played, none for long.
TEST(Decoder, survivesDamage) {
    constexpr size_t kCuts = 60, kCopies = 25, kMostChanges = 12;
    std::mt19937 random(20);
    for (const std::string& name : listFiles(kFolder)) {
        SCOPED_TRACE(name);
        std::string whole;
        ASSERT_TRUE(readFile(kFolder + name, whole));
        for (size_t cut = 0; cut < kCuts; ++cut)
            decodedFrames(whole.substr(0, whole.size() * cut * cut / kCuts / kCuts));
        for (size_t copy = 0; copy < kCopies; ++copy) {
            std::string damaged = whole;
            // Most in the headers, where sizes stand.
            const size_t range = copy % 2 ? std::min<size_t>(whole.size(), 200) : whole.size();
            for (size_t i = 0; i <= random() % kMostChanges; ++i) {
                damaged[random() % range] = static_cast<char>(random() % 3 ? random() : -(random() % 2));
            }
            EXPECT_LE(decodedFrames(damaged), kMostFrames);
        }
    }
}

} // namespace
