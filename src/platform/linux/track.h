// Music files decoded whole into memory, in the one form that the built-in playback plays.
#pragma once

#include <SDL_mixer.h>

#include <cstdint>
#include <string>
#include <vector>

constexpr int kTrackRate = 44100; // frames a second
constexpr int kTrackChannels = 2;
constexpr uint64_t kFrameBytes = kTrackChannels * sizeof(int16_t);

// Longer tracks are refused: half an hour takes 300 megabytes, and twice that while it is decoded.
constexpr uint64_t kMostTrackFrames = 30ULL * 60 * kTrackRate;

// SDL2_mixer, loaded when a show first has music: with all that it links to it costs every start 15 ms
// and 9 megabytes.
struct Mixer {
    decltype(&Mix_OpenAudioDevice) openDevice = nullptr;
    decltype(&Mix_CloseAudio) closeDevice = nullptr;
    decltype(&Mix_HookMusic) hookMusic = nullptr;
    decltype(&Mix_LoadWAV_RW) loadSound = nullptr;
    decltype(&Mix_FreeChunk) freeSound = nullptr;
};

// Interleaved left and right. The samples belong to one of the two owners.
struct Track {
    const int16_t* samples = nullptr; // null: no track
    uint64_t frames = 0;
    Mix_Chunk* sound = nullptr;
    std::vector<int16_t> rendered;
};

// Needs the mixer's device to be open with the form above. False, with `track` empty, when the file is
// missing, no music, broken or too long; `reason` then says which in a few words.
bool decodeTrack(const Mixer& mixer, const std::string& path, Track& track, std::string& reason);

void releaseTrack(const Mixer& mixer, Track& track);
