#include "app/soundtrack.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr size_t kHeaderBytes = 44;

char* putNumber(char* to, uint32_t value, int size) {
    for (int i = 0; i < size; ++i) *to++ = static_cast<char>(value >> (8 * i));
    return to;
}

char* putText(char* to, const char* text) {
    return std::copy_n(text, std::strlen(text), to); // without its end
}

void putHeader(char* to) {
    constexpr uint32_t kUnknown = 0xFFFFFFFF, kFormatBytes = 16, kPcm = 1;
    constexpr uint32_t kBlock = static_cast<uint32_t>(kMusicFrameBytes);
    to = putNumber(putText(to, "RIFF"), kUnknown, 4);
    to = putNumber(putText(to, "WAVEfmt "), kFormatBytes, 4);
    to = putNumber(putNumber(to, kPcm, 2), kMusicChannels, 2);
    to = putNumber(putNumber(to, kMusicRate, 4), kMusicRate * kBlock, 4);
    to = putNumber(putNumber(to, kBlock, 2), 8 * sizeof(int16_t), 2);
    putNumber(putText(to, "data"), kUnknown, 4);
}

} // namespace

uint64_t musicFrame(double startOffset, double showSeconds) {
    const double seconds = std::max(0.0, std::max(0.0, startOffset) + showSeconds);
    const double frame = std::round(seconds * kMusicRate);
    return static_cast<uint64_t>(std::min(frame, static_cast<double>(kMostTrackFrames)));
}

uint64_t soundBefore(long long number, const FrameRate& rate) {
    const double seconds = static_cast<double>(number) * rate.denominator / rate.numerator;
    return static_cast<uint64_t>(std::llround(seconds * kMusicRate));
}

void appendSpan(Soundtrack& soundtrack, MusicSpan span) {
    std::deque<MusicSpan>& spans = soundtrack.spans;
    if (!spans.empty() && spans.back().position + spans.back().frames == span.position) {
        spans.back().frames += span.frames;
    } else {
        spans.push_back(span);
    }
}

size_t nextSoundBytes(Soundtrack& soundtrack, char* bytes, size_t size) {
    size_t given = 0;
    if (!soundtrack.begun && size >= kHeaderBytes) {
        putHeader(bytes);
        given = kHeaderBytes;
        soundtrack.begun = true;
    }
    int16_t samples[2048 * kMusicChannels];
    while (!soundtrack.spans.empty()) {
        MusicSpan& span = soundtrack.spans.front();
        const uint64_t room = std::min<uint64_t>(std::size(samples) / kMusicChannels,
                                                 (size - given) / kMusicFrameBytes);
        const size_t frames = static_cast<size_t>(std::min(span.frames, room));
        copyTrack(soundtrack.track, span.position, soundtrack.volume, samples, frames);
        std::memcpy(bytes + given, samples, frames * kMusicFrameBytes);
        given += frames * kMusicFrameBytes;
        span.position += frames;
        span.frames -= frames;
        if (span.frames == 0) soundtrack.spans.pop_front();
        else if (frames == room && room < std::size(samples) / kMusicChannels) break;
    }
    return given;
}
