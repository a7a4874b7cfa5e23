#include "music/track.h"

#include <algorithm>

namespace {

constexpr size_t kBlockFrames = 1 << 18; // a megabyte

// Until the end, or until the track is longer than it may be.
void decodeBlocks(Decoder& decoder, Track& track) {
    size_t got = kBlockFrames;
    while (got == kBlockFrames && track.frames <= kMostTrackFrames) {
        track.samples.push_back(std::make_unique_for_overwrite<int16_t[]>(kBlockFrames * kMusicChannels));
        got = readDecoder(decoder, track.samples.back().get(), kBlockFrames);
        track.frames += got;
    }
}

} // namespace

TrackState decodeTrack(const std::string& path, Track& track, std::string& reason) {
    track = {};
    reason.clear();
    Decoder decoder;
    if (!openDecoder(decoder, path, reason)) {
        return decoder.format == MusicFormat::None ? TrackState::Unknown : TrackState::Unreadable;
    }
    constexpr double kMostSeconds = static_cast<double>(kMostTrackFrames) / kMusicRate;
    const bool claimsTooMuch = decoder.seconds > kMostSeconds;
    if (!claimsTooMuch) decodeBlocks(decoder, track);
    if (claimsTooMuch || track.frames > kMostTrackFrames) reason = "longer than 30 minutes";
    else if (track.frames == 0) reason = decoder.failure.empty() ? "holds no sound" : decoder.failure;
    closeDecoder(decoder);
    if (reason.empty()) return TrackState::Decoded;
    track = {};
    return TrackState::Unreadable;
}

void copyTrack(const Track& track, uint64_t position, float volume, int16_t* samples, size_t frames) {
    while (frames > 0 && position < track.frames) {
        const size_t from = static_cast<size_t>(position % kBlockFrames);
        const uint64_t left = std::min<uint64_t>(track.frames - position, kBlockFrames - from);
        const size_t count = static_cast<size_t>(std::min<uint64_t>(frames, left));
        const int16_t* block = track.samples[static_cast<size_t>(position / kBlockFrames)].get() +
                               from * kMusicChannels;
        for (size_t i = 0; i < count * kMusicChannels; ++i) {
            samples[i] = static_cast<int16_t>(static_cast<float>(block[i]) * volume);
        }
        samples += count * kMusicChannels;
        position += count;
        frames -= count;
    }
    std::fill_n(samples, frames * kMusicChannels, int16_t{0});
}
