// Makes the showcase's track: a synthesizer, the notes, and a mix of exactly 29 bars that loops without a seam.
//
// To make it again (vorbis-tools):
//   cmake --build --preset release --target make_music
//   build/release/tools/music/make_music build/quillon.wav
//   oggenc -Q -q 5 --serial 1 --discard-comments -o shows/showcase/assets/music/quillon.ogg build/quillon.wav
//
// make_music [--notes] [--only PART] FILE.wav
//   --notes       lists every pitched note: bar and step of its start, length in steps, part, name
//   --only PART   leaves the other parts out: kick drums steel bass pad arp lead bell air
// Printed: the level of every part in every scene, dB RMS.
#include "mix.h"
#include "score.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

namespace {

void printLevels(const Song& song) {
    constexpr int kScenes[] = {0, 4, 7, 10, 13, 17, 21, 25, 29};
    constexpr const char* kNames[] = {"ignite", "melt", "guard", "heat", "descent", "trail", "monolith", "rest"};
    for (int s = 0; s < 8; ++s) {
        std::printf("%-9s", kNames[s]);
        for (const Part& part : song.parts) {
            int from = kScenes[s] * 2 * kRate, to = kScenes[s + 1] * 2 * kRate;
            double sum = 1e-12;
            for (int i = from; i < to; ++i) {
                sum += 0.5 * (part.left[i] * part.left[i] + part.right[i] * part.right[i]);
            }
            std::printf(" %s %.1f", part.name, 10.0 * std::log10(sum / (to - from)));
        }
        std::printf("\n");
    }
}

void printNotes(const Song& song) {
    constexpr const char* kLetters[] = {"C", "C#", "D", "Eb", "E", "F", "F#", "G", "G#", "A", "Bb", "B"};
    for (const NoteEntry& note : song.notes) {
        std::printf("%2d %5.2f %5.2f %-5s %s%d\n", static_cast<int>(note.step) / kSteps, std::fmod(note.step, kSteps),
                    note.length, song.parts[note.part].name, kLetters[note.key % 12], note.key / 12 - 1);
    }
}

// 24-bit stereo WAV.
bool writeWave(const char* path, const Ring (&sides)[2]) {
    std::vector<uint8_t> bytes;
    auto put = [&](uint32_t value, int count) {
        for (int i = 0; i < count; ++i) {
            bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
        }
    };
    auto tag = [&](const char* text) { bytes.insert(bytes.end(), text, text + 4); };
    const uint32_t size = kFrames * 6u;
    tag("RIFF"), put(size + 36, 4), tag("WAVE"), tag("fmt "), put(16, 4), put(1, 2), put(2, 2);
    put(kRate, 4), put(kRate * 6, 4), put(6, 2), put(24, 2), tag("data"), put(size, 4);
    for (int i = 0; i < kFrames; ++i) {
        for (const Ring& side : sides) {
            double v = std::clamp(side[i], -1.0, 1.0);
            put(static_cast<uint32_t>(static_cast<int32_t>(std::lround(v * 8388607.0))), 3);
        }
    }
    FILE* file = std::fopen(path, "wb");
    bool whole = file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return file && std::fclose(file) == 0 && whole;
}

} // namespace

int main(int argc, char** argv) {
    std::string path, only;
    bool list = false;
    for (int i = 1; i < argc; ++i) {
        std::string word = argv[i];
        if (word == "--notes") {
            list = true;
        } else if (word == "--only" && i + 1 < argc) {
            only = argv[++i];
        } else {
            path = word;
        }
    }
    if (path.empty()) {
        std::fprintf(stderr, "usage: make_music [--notes] [--only PART] FILE.wav\n");
        return 1;
    }
    Song song;
    for (Part& part : song.parts) {
        part.left.assign(kFrames, 0.0f);
        part.right.assign(kFrames, 0.0f);
    }
    writeNotes(song);
    if (list) {
        printNotes(song);
    }
    Ring master[2];
    mix(song, only, master);
    printLevels(song);
    if (!writeWave(path.c_str(), master)) {
        std::fprintf(stderr, "%s: cannot be written\n", path.c_str());
        return 1;
    }
    return 0;
}
