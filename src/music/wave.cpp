// RIFF/WAVE files.
#include "music/formats.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace {

constexpr int kMostChannels = 8;

enum class Coding { Integer, Float, ALaw, MuLaw, ImaAdpcm, MsAdpcm };

struct Coefficients {
    int64_t last = 0;
    int64_t before = 0;
};

} // namespace

struct WaveStream {
    std::FILE* file = nullptr;
    Coding coding = Coding::Integer;
    int rate = 0;
    size_t channels = 0;
    size_t blockBytes = 0;            // of one frame, or of one block of ADPCM
    size_t blockFrames = 1;           // in a block
    uint64_t bytesLeft = 0;           // of the sound
    uint64_t framesLeft = UINT64_MAX; // of ADPCM, whose last block may be filled up
    std::vector<Coefficients> coefficients;
    std::vector<uint8_t> block;
};

namespace {

uint32_t littleEndian(const uint8_t* bytes, size_t count) {
    uint32_t value = 0;
    for (size_t i = 0; i < count; ++i) value |= static_cast<uint32_t>(bytes[i]) << (8 * i);
    return value;
}

int32_t signed16(const uint8_t* bytes) {
    return static_cast<int16_t>(littleEndian(bytes, 2));
}

// By reading: the file may be a pipe's, and its sizes anything.
bool skipBytes(std::FILE* file, uint64_t size) {
    uint8_t bytes[4096];
    while (size > 0) {
        const size_t step = static_cast<size_t>(std::min<uint64_t>(size, sizeof bytes));
        if (std::fread(bytes, 1, step, file) < step) return false;
        size -= step;
    }
    return true;
}

float integerSample(const uint8_t* bytes, size_t size) {
    if (size == 1) return (static_cast<float>(bytes[0]) - 128.0f) / 128.0f;
    uint32_t top = 0; // the value in the highest bytes
    for (size_t i = 0; i < size; ++i) top = top >> 8 | uint32_t{bytes[i]} << 24;
    return static_cast<float>(static_cast<int32_t>(top)) / 2147483648.0f;
}

float floatSample(const uint8_t* bytes, size_t size) {
    uint64_t bits = littleEndian(bytes, 4);
    if (size == 4) {
        float value = 0.0f;
        std::memcpy(&value, &bits, sizeof value); // little-endian, as all machines are that this is built for
        return value;
    }
    bits |= static_cast<uint64_t>(littleEndian(bytes + 4, 4)) << 32;
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return static_cast<float>(value);
}

// ITU-T G.711: sign, exponent of three bits, mantissa of four.
float aLawSample(uint8_t byte) {
    const int code = byte ^ 0x55, exponent = code >> 4 & 7;
    const int mantissa = (code & 15) * 16 + 8;
    const int value = exponent == 0 ? mantissa : (mantissa + 256) << (exponent - 1);
    return static_cast<float>(code & 0x80 ? value : -value) / 32768.0f;
}

float muLawSample(uint8_t byte) {
    const int code = byte ^ 0xFF, exponent = code >> 4 & 7;
    const int value = (((code & 15) * 8 + 132) << exponent) - 132;
    return static_cast<float>(code & 0x80 ? -value : value) / 32768.0f;
}

void decodeFrames(const WaveStream& wave, size_t frames, float* sample) {
    const size_t size = wave.blockBytes / wave.channels;
    const uint8_t* bytes = wave.block.data();
    for (size_t i = 0; i < frames * wave.channels; ++i, bytes += size) {
        switch (wave.coding) {
        case Coding::Integer: sample[i] = integerSample(bytes, size); break;
        case Coding::Float: sample[i] = floatSample(bytes, size); break;
        case Coding::ALaw: sample[i] = aLawSample(*bytes); break;
        case Coding::MuLaw: sample[i] = muLawSample(*bytes); break;
        case Coding::ImaAdpcm:
        case Coding::MsAdpcm: break; // come in blocks
        }
    }
}

// A block's head has each channel's first sample and step; groups of eight samples of each channel follow.
void decodeImaBlock(const WaveStream& wave, float* samples) {
    constexpr int kSteps = 89;
    static const std::array<int32_t, kSteps> kStepTable = {
        7,    8,     9,     10,    11,    12,    13,    14,    16,    17,    19,    21,    23,    25,   28,
        31,   34,    37,    41,    45,    50,    55,    60,    66,    73,    80,    88,    97,    107,  118,
        130,  143,   157,   173,   190,   209,   230,   253,   279,   307,   337,   371,   408,   449,  494,
        544,  598,   658,   724,   796,   876,   963,   1060,  1166,  1282,  1411,  1552,  1707,  1878, 2066,
        2272, 2499,  2749,  3024,  3327,  3660,  4026,  4428,  4871,  5358,  5894,  6484,  7132,  7845, 8630,
        9493, 10442, 11487, 12635, 13899, 15289, 16818, 18500, 20350, 22385, 24623, 27086, 29794, 32767};
    static constexpr int kIndexSteps[8] = {-1, -1, -1, -1, 2, 4, 6, 8};
    const size_t channels = wave.channels;
    for (size_t channel = 0; channel < channels; ++channel) {
        const uint8_t* head = wave.block.data() + 4 * channel;
        int32_t value = signed16(head);
        int index = std::min<int>(head[2], kSteps - 1);
        samples[channel] = static_cast<float>(value) / 32768.0f;
        for (size_t frame = 1; frame < wave.blockFrames; ++frame) {
            const size_t nibble = frame - 1;
            const uint8_t byte = head[4 * channels * (1 + nibble / 8) + nibble % 8 / 2];
            const int code = nibble % 2 ? byte >> 4 : byte & 15;
            const int32_t step = kStepTable[static_cast<size_t>(index)];
            const int32_t change = (step >> 3) + (code & 4 ? step : 0) + (code & 2 ? step >> 1 : 0) +
                                   (code & 1 ? step >> 2 : 0);
            value = std::clamp(code & 8 ? value - change : value + change, -32768, 32767);
            index = std::clamp(index + kIndexSteps[code & 7], 0, kSteps - 1);
            samples[frame * channels + channel] = static_cast<float>(value) / 32768.0f;
        }
    }
}

// A block's head has for each channel in turn the predictor, then the step, then its second and its first sample;
// the other samples follow frame by frame.
void decodeMsBlock(const WaveStream& wave, float* samples) {
    static constexpr int32_t kAdaption[16] = {230, 230, 230, 230, 307, 409, 512, 614,
                                              768, 614, 512, 409, 307, 230, 230, 230};
    constexpr int32_t kLeastStep = 16, kMostStep = INT32_MAX / 768;
    const size_t channels = wave.channels;
    const uint8_t* bytes = wave.block.data();
    for (size_t channel = 0; channel < channels; ++channel) {
        const Coefficients by = wave.coefficients[std::min<size_t>(bytes[channel], wave.coefficients.size() - 1)];
        int32_t step = signed16(bytes + channels + 2 * channel);
        int32_t last = signed16(bytes + 3 * channels + 2 * channel);
        int32_t before = signed16(bytes + 5 * channels + 2 * channel);
        samples[channel] = static_cast<float>(before) / 32768.0f;
        samples[channels + channel] = static_cast<float>(last) / 32768.0f;
        for (size_t frame = 2; frame < wave.blockFrames; ++frame) {
            const size_t nibble = (frame - 2) * channels + channel;
            const uint8_t byte = bytes[7 * channels + nibble / 2];
            const int code = nibble % 2 ? byte & 15 : byte >> 4;
            const int32_t expected = static_cast<int32_t>((last * by.last + before * by.before) / 256);
            const int32_t change = step * (code & 8 ? code - 16 : code);
            before = last;
            last = std::clamp(expected + change, -32768, 32767);
            step = std::clamp(step * kAdaption[code] / 256, kLeastStep, kMostStep);
            samples[frame * channels + channel] = static_cast<float>(last) / 32768.0f;
        }
    }
}

// The codec's own facts behind the common ones.
bool readMsCoefficients(WaveStream& wave, const std::vector<uint8_t>& format) {
    constexpr size_t kCountAt = 20, kFirstAt = 22;
    const size_t count = format.size() >= kFirstAt ? littleEndian(&format[kCountAt], 2) : 0;
    if (count == 0 || format.size() < kFirstAt + 4 * count) return false;
    for (size_t i = 0; i < count; ++i) {
        const uint8_t* pair = &format[kFirstAt + 4 * i];
        wave.coefficients.push_back({signed16(pair), signed16(pair + 2)});
    }
    return true;
}

// The codec; false when it is none that is known here.
bool readCoding(WaveStream& wave, const std::vector<uint8_t>& format) {
    constexpr uint32_t kExtensible = 0xFFFE;
    uint32_t tag = littleEndian(format.data(), 2);
    if (tag == kExtensible && format.size() >= 26) tag = littleEndian(&format[24], 2);
    switch (tag) {
    case 1: wave.coding = Coding::Integer; return true;
    case 2: wave.coding = Coding::MsAdpcm; return true;
    case 3: wave.coding = Coding::Float; return true;
    case 6: wave.coding = Coding::ALaw; return true;
    case 7: wave.coding = Coding::MuLaw; return true;
    case 17: wave.coding = Coding::ImaAdpcm; return true;
    default: return false;
    }
}

// Block and channels as the codec can have them.
bool readLayout(WaveStream& wave, const std::vector<uint8_t>& format) {
    wave.channels = littleEndian(&format[2], 2);
    wave.rate = static_cast<int>(std::min<uint32_t>(littleEndian(&format[4], 4), INT32_MAX));
    wave.blockBytes = littleEndian(&format[12], 2);
    if (wave.channels == 0 || wave.channels > kMostChannels || wave.blockBytes % wave.channels != 0) return false;
    const size_t sampleBytes = wave.blockBytes / wave.channels;
    switch (wave.coding) {
    case Coding::Integer: return sampleBytes >= 1 && sampleBytes <= 4;
    case Coding::Float: return sampleBytes == 4 || sampleBytes == 8;
    case Coding::ALaw:
    case Coding::MuLaw: return sampleBytes == 1;
    case Coding::ImaAdpcm:
        if (sampleBytes < 4) return false;
        wave.blockFrames = 1 + (sampleBytes - 4) / 4 * 8;
        return true;
    case Coding::MsAdpcm:
        if (sampleBytes < 7 || wave.channels > 2) return false;
        wave.blockFrames = 2 + (sampleBytes - 7) * 2;
        return readMsCoefficients(wave, format);
    }
    return false;
}

bool isChunk(const uint8_t* head, const char* name) {
    return std::memcmp(head, name, 4) == 0;
}

// Up to the first byte of the sound. False when the file ends before, or has no use.
bool readChunks(WaveStream& wave, bool& known) {
    constexpr uint32_t kLeastFormat = 16, kMostFormat = 4096;
    constexpr uint32_t kUntilTheEnd = 0xFFFFFFFF; // from who writes into a pipe and does not know the size beforehand
    std::vector<uint8_t> format;
    uint64_t frames = 0;
    uint8_t head[8] = {};
    while (std::fread(head, 1, sizeof head, wave.file) == sizeof head) {
        const uint32_t size = littleEndian(head + 4, 4);
        if (isChunk(head, "data")) {
            wave.bytesLeft = size == kUntilTheEnd ? UINT64_MAX : size;
            if (frames > 0 && wave.blockFrames > 1) wave.framesLeft = frames;
            return !format.empty();
        }
        uint64_t rest = uint64_t{size} + size % 2;
        if (isChunk(head, "fmt ") && format.empty() && size >= kLeastFormat && size <= kMostFormat) {
            format.resize(size);
            if (std::fread(format.data(), 1, size, wave.file) < size) return false;
            known = readCoding(wave, format);
            if (!known || !readLayout(wave, format)) return false;
            rest -= size;
        } else if (isChunk(head, "fact") && size >= 4) {
            uint8_t count[4] = {};
            if (std::fread(count, 1, sizeof count, wave.file) < sizeof count) return false;
            frames = littleEndian(count, 4);
            rest -= sizeof count;
        }
        if (!skipBytes(wave.file, rest)) return false;
    }
    return false;
}

} // namespace

WaveStream* openWave(std::FILE* file, bool& known, std::string& reason) {
    WaveStream* wave = new WaveStream();
    wave->file = file;
    known = true;
    constexpr uint64_t kHead = 12; // "RIFF", the size, "WAVE"
    if (skipBytes(file, kHead) && readChunks(*wave, known)) return wave;
    reason = known ? "broken WAVE headers" : "a codec that is not known here";
    closeStream(wave);
    return nullptr;
}

bool nextPiece(WaveStream& wave, SoundPiece& piece) {
    constexpr size_t kMostBlocks = 4096;
    const bool inBlocks = wave.coding == Coding::ImaAdpcm || wave.coding == Coding::MsAdpcm;
    const size_t wanted = static_cast<size_t>(
        std::min<uint64_t>((inBlocks ? 1 : kMostBlocks) * wave.blockBytes, wave.bytesLeft));
    wave.block.resize(wanted);
    const size_t blocks = std::fread(wave.block.data(), 1, wanted, wave.file) / wave.blockBytes;
    wave.bytesLeft -= wanted;
    size_t frames = blocks * wave.blockFrames;
    piece.rate = wave.rate;
    piece.channels = static_cast<int>(wave.channels);
    piece.samples.resize(frames * wave.channels);
    if (frames == 0) return false;
    if (wave.coding == Coding::ImaAdpcm) decodeImaBlock(wave, piece.samples.data());
    else if (wave.coding == Coding::MsAdpcm) decodeMsBlock(wave, piece.samples.data());
    else decodeFrames(wave, frames, piece.samples.data());
    frames = static_cast<size_t>(std::min<uint64_t>(frames, wave.framesLeft));
    wave.framesLeft -= frames;
    piece.samples.resize(frames * wave.channels);
    return frames > 0;
}

void closeStream(WaveStream* wave) {
    delete wave;
}
