// Music decoded whole into memory: every position is exact to the sample, and no later call decodes anything.
#pragma once

#include "music/decoder.h"

#include <memory>

// Longer tracks are refused: half an hour takes 300 megabytes.
constexpr uint64_t kMostTrackFrames = 30ULL * 60 * kMusicRate;

struct Track {
    uint64_t frames = 0;                             // 0: no track
    std::vector<std::unique_ptr<int16_t[]>> samples; // in blocks, so that nothing is copied while it grows
};

enum class TrackState {
    Decoded,
    Unreadable, // of a known format, but broken, silent or too long, or its library is not installed
    Unknown,    // no file, or none of the known formats
};

// Unless it is decoded `track` is empty, and `reason` says why in a few words.
TrackState decodeTrack(const std::string& path, Track& track, std::string& reason);

// Copies frames from a position on, at a volume from 0 to 1. Behind the end there is silence.
void copyTrack(const Track& track, uint64_t position, float volume, int16_t* samples, size_t frames);
