#include "music/stereo.h"

#include "music/library_table.h"

#include <speex/speex_resampler.h>

#include <algorithm>
#include <cmath>

namespace {

#define SPEEX_FUNCTIONS(USE)                                                                                           \
    USE(speex_resampler_init)                                                                                          \
    USE(speex_resampler_destroy)                                                                                       \
    USE(speex_resampler_skip_zeros)                                                                                    \
    USE(speex_resampler_get_input_latency)                                                                             \
    USE(speex_resampler_process_interleaved_float)

struct SpeexDsp {
    SPEEX_FUNCTIONS(LIBRARY_POINTER)
};
LIBRARY_LOADER(SpeexDsp, SPEEX_FUNCTIONS, LIBSPEEXDSP_NAME)

constexpr int kLeastRate = 1000, kMostRate = 768000; // frames a second
constexpr int kMostChannels = 8;
constexpr int kQuality = 5; // of 10: 105 dB between signal and noise up to 18 kHz

struct Weights {
    float left = 0.0f;
    float right = 0.0f;
};

} // namespace

struct StereoConverter {
    int rate = 0;
    SpeexDsp library;
    SpeexResamplerState* resampler = nullptr; // null where the rate is right
    uint64_t framesIn = 0;                    // at this rate
    uint64_t framesOut = 0;
    std::vector<float> stereo; // the piece in two channels
};

namespace {

// Where a channel is heard. The rear, side and centre channels come in at -3 dB, low frequencies not at all.
Weights channelWeights(int channels, int channel) {
    constexpr float kHalfPower = 0.70710678f;
    constexpr Weights kLeft = {1.0f, 0.0f}, kRight = {0.0f, 1.0f}, kSilent = {};
    constexpr Weights kCentre = {kHalfPower, kHalfPower}, kLeftBehind = {kHalfPower, 0.0f};
    constexpr Weights kRightBehind = {0.0f, kHalfPower};
    // In the order of WAVE files, by the number of channels.
    static constexpr Weights kLayouts[kMostChannels + 1][kMostChannels] = {
        {},
        {{1.0f, 1.0f}},
        {kLeft, kRight},
        {kLeft, kRight, kCentre},
        {kLeft, kRight, kLeftBehind, kRightBehind},
        {kLeft, kRight, kCentre, kLeftBehind, kRightBehind},
        {kLeft, kRight, kCentre, kSilent, kLeftBehind, kRightBehind},
        {kLeft, kRight, kCentre, kSilent, kCentre, kLeftBehind, kRightBehind},
        {kLeft, kRight, kCentre, kSilent, kLeftBehind, kRightBehind, kLeftBehind, kRightBehind},
    };
    return kLayouts[channels][channel];
}

// The place in WAVE's order of a channel in Vorbis's order.
int waveOrder(int channels, int channel) {
    static constexpr int kOrders[kMostChannels + 1][kMostChannels] = {
        {},
        {0},
        {0, 1},
        {0, 2, 1},
        {0, 1, 2, 3},
        {0, 2, 1, 3, 4},
        {0, 2, 1, 4, 5, 3},
        {0, 2, 1, 5, 6, 4, 3},
        {0, 2, 1, 6, 7, 4, 5, 3},
    };
    return kOrders[channels][channel];
}

// Samples that are no numbers, or no sound, would spread.
float audible(float sample) {
    constexpr float kLoudest = 16.0f;
    return std::isfinite(sample) ? std::clamp(sample, -kLoudest, kLoudest) : 0.0f;
}

// Weights add up to 1 at most, so that nothing clips that did not before.
void mixToStereo(const SoundPiece& piece, std::vector<float>& stereo) {
    Weights weights[kMostChannels], sum;
    for (int channel = 0; channel < piece.channels; ++channel) {
        const int place = piece.centreSecond ? waveOrder(piece.channels, channel) : channel;
        weights[channel] = channelWeights(piece.channels, place);
        sum = {sum.left + weights[channel].left, sum.right + weights[channel].right};
    }
    const size_t channels = static_cast<size_t>(piece.channels), frames = piece.samples.size() / channels;
    stereo.resize(2 * frames);
    for (size_t frame = 0; frame < frames; ++frame) {
        float left = 0.0f, right = 0.0f;
        for (size_t channel = 0; channel < channels; ++channel) {
            const float sample = audible(piece.samples[frame * channels + channel]);
            left += weights[channel].left * sample;
            right += weights[channel].right * sample;
        }
        stereo[2 * frame] = left / sum.left;
        stereo[2 * frame + 1] = right / sum.right;
    }
}

void resample(StereoConverter& converter, const float* samples, size_t frames, std::vector<float>& converted) {
    constexpr size_t kStepFrames = 4096;
    while (frames > 0) {
        const size_t before = converted.size();
        converted.resize(before + kMusicChannels * kStepFrames);
        spx_uint32_t in = static_cast<spx_uint32_t>(std::min<size_t>(frames, kStepFrames)), out = kStepFrames;
        converter.library.speex_resampler_process_interleaved_float(converter.resampler, samples, &in,
                                                                    converted.data() + before, &out);
        converted.resize(before + kMusicChannels * size_t{out});
        converter.framesOut += out;
        samples += kMusicChannels * size_t{in};
        frames -= in;
        if (in == 0 && out == 0) return;
    }
}

void stopResampling(StereoConverter& converter) {
    if (converter.resampler) converter.library.speex_resampler_destroy(converter.resampler);
    converter.resampler = nullptr;
}

bool startResampling(StereoConverter& converter, int rate, std::string& reason) {
    if (rate < kLeastRate || rate > kMostRate) {
        reason = "a rate of " + std::to_string(rate) + " samples a second";
        return false;
    }
    converter.rate = rate;
    converter.framesIn = converter.framesOut = 0;
    if (rate == kMusicRate) return true;
    if (!loadLibrary(converter.library, reason)) return false;
    converter.resampler = converter.library.speex_resampler_init(kMusicChannels, static_cast<spx_uint32_t>(rate),
                                                                 kMusicRate, kQuality, nullptr);
    if (!converter.resampler) reason = "its rate cannot be converted";
    // The first sample out is the first one in.
    else converter.library.speex_resampler_skip_zeros(converter.resampler);
    return converter.resampler != nullptr;
}

} // namespace

StereoConverter* createConverter() {
    return new StereoConverter();
}

bool convertPiece(StereoConverter& converter, const SoundPiece& piece, std::vector<float>& converted,
                  std::string& reason) {
    if (piece.channels < 1 || piece.channels > kMostChannels) {
        reason = std::to_string(piece.channels) + " channels";
        return false;
    }
    if (piece.rate != converter.rate) {
        finishConversion(converter, converted);
        if (!startResampling(converter, piece.rate, reason)) return false;
    }
    mixToStereo(piece, converter.stereo);
    const size_t frames = converter.stereo.size() / kMusicChannels;
    if (converter.resampler) resample(converter, converter.stereo.data(), frames, converted);
    else converted.insert(converted.end(), converter.stereo.begin(), converter.stereo.end());
    converter.framesIn += frames;
    return true;
}

void finishConversion(StereoConverter& converter, std::vector<float>& converted) {
    if (!converter.resampler) return;
    const uint64_t rate = static_cast<uint64_t>(converter.rate);
    const uint64_t due = (converter.framesIn * kMusicRate + rate / 2) / rate;
    const int latency = converter.library.speex_resampler_get_input_latency(converter.resampler);
    const std::vector<float> silence(kMusicChannels * (static_cast<size_t>(std::max(latency, 0)) + 1), 0.0f);
    resample(converter, silence.data(), silence.size() / kMusicChannels, converted);
    if (converter.framesOut > due) {
        const size_t surplus = static_cast<size_t>(converter.framesOut - due) * kMusicChannels;
        converted.resize(converted.size() - std::min(converted.size(), surplus));
    }
    stopResampling(converter);
    converter.rate = 0;
}

void releaseConverter(StereoConverter* converter) {
    if (!converter) return;
    stopResampling(*converter);
    delete converter;
}
