// Music files as samples: opened, read piece by piece from the first sample to the last, closed. Nothing here is
// shared between two decoders, so each may run on a thread of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

constexpr int kMusicRate = 44100; // frames a second, whatever the file has
constexpr int kMusicChannels = 2; // interleaved: left, right
constexpr uint64_t kMusicFrameBytes = kMusicChannels * sizeof(int16_t);

enum class MusicFormat { None, Mp3, Vorbis, Flac, Opus, Wave, Module };

struct StereoConverter;
struct Mp3Stream;
struct VorbisStream;
struct FlacStream;
struct OpusStream;
struct WaveStream;
struct ModuleStream;

// Samples as a file has them: interleaved, 1 is full scale.
struct SoundPiece {
    int rate = 0; // frames a second
    int channels = 0;
    bool centreSecond = false; // of three and more channels: Vorbis's order; else that of WAVE files
    std::vector<float> samples;
};

struct Decoder {
    MusicFormat format = MusicFormat::None;
    double seconds = 0.0; // the length, where the file tells it for certain before it is decoded; else 0
    std::string failure;  // why reading ended before the end of the music; empty so far

    std::FILE* file = nullptr;
    // The one of the format.
    Mp3Stream* mp3 = nullptr;
    VorbisStream* vorbis = nullptr;
    FlacStream* flac = nullptr;
    OpusStream* opus = nullptr;
    WaveStream* wave = nullptr;
    ModuleStream* module = nullptr;

    StereoConverter* converter = nullptr;
    SoundPiece piece;
    std::vector<float> converted; // of which those before `taken` have been read
    size_t taken = 0;
    bool ended = false;
};

// Opens a file of one of the formats, which its first bytes tell. Tags are skipped. False when it cannot be opened
// or is no music; `reason` then says which in a few words. The format stays None when the file is of none of them.
bool openDecoder(Decoder& decoder, const std::string& path, std::string& reason);

// The same for an open file, which is the decoder's from here on.
bool openDecoder(Decoder& decoder, std::FILE* file, std::string& reason);

// Decodes the next frames at kMusicRate and returns how many there were; fewer than asked for at the end alone.
size_t readDecoder(Decoder& decoder, int16_t* samples, size_t frames);

void closeDecoder(Decoder& decoder);
