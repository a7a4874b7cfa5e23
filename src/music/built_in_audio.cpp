#include "music/built_in_audio.h"

#include "foundation/log.h"
#include "music/track.h"
#include "platform/sound_device.h"

#include <algorithm>
#include <cmath>
#include <mutex>

namespace {

// Reasons by the numbers that the library gives them.
enum ErrorCode {
    kNoError = 0,
    kNoDriver = 3,
    kBadHandle = 5,
    kBadPosition = 7,
    kNotInitialised = 8,
    kAlready = 14,
    kBadParameter = 20,
    kBadFile = 41,
};

constexpr uint32_t kStream = 1; // there is one stream at a time

struct BuiltIn {
    SoundDevice* device = nullptr; // null until it is initialised
    int error = kNoError;
    Track track;
    std::mutex mutex;      // held over the members below, by the device's thread while it fills a buffer
    uint64_t position = 0; // frames: the next one heard
    float volume = 1.0f;
    bool playing = false;
};
BuiltIn builtIn;

int succeed() {
    builtIn.error = kNoError;
    return 1;
}

int fail(ErrorCode error) {
    builtIn.error = error;
    return 0;
}

bool isStream(uint32_t handle) {
    return handle == kStream && builtIn.track.frames > 0;
}

// On the device's thread.
void fillBuffer(int16_t* samples, size_t frames) {
    const std::lock_guard lock(builtIn.mutex);
    const uint64_t left = builtIn.playing ? builtIn.track.frames - builtIn.position : 0;
    copyTrack(builtIn.track, left > 0 ? builtIn.position : builtIn.track.frames, builtIn.volume, samples, frames);
    builtIn.position += std::min<uint64_t>(frames, left);
    if (left <= frames) builtIn.playing = false;
}

int init(int, uint32_t, uint32_t, void*, const void*) {
    if (builtIn.device) return fail(kAlready);
    std::string reason;
    builtIn.device = openSoundDevice(kMusicRate, kMusicChannels, fillBuffer, reason);
    if (builtIn.device) return succeed();
    printError("No sound: %s\n", reason.c_str());
    return fail(kNoDriver);
}

int streamFree(uint32_t stream) {
    if (!isStream(stream)) return fail(kBadHandle);
    const std::lock_guard lock(builtIn.mutex);
    builtIn.playing = false;
    builtIn.track = {};
    return succeed();
}

int freeAll() {
    if (!builtIn.device) return fail(kNotInitialised);
    streamFree(kStream);
    closeSoundDevice(builtIn.device);
    builtIn.device = nullptr;
    return succeed();
}

uint32_t streamCreateFile(int inMemory, const void* file, uint64_t, uint64_t, uint32_t) {
    if (!builtIn.device) return static_cast<uint32_t>(fail(kNotInitialised));
    if (inMemory || !file) return static_cast<uint32_t>(fail(kBadParameter));
    const std::string path = static_cast<const char*>(file);
    Track track;
    std::string reason;
    streamFree(kStream);
    if (decodeTrack(path, track, reason) != TrackState::Decoded) {
        printError("No music: %s: %s\n", path.c_str(), reason.c_str());
        return static_cast<uint32_t>(fail(kBadFile));
    }
    const std::lock_guard lock(builtIn.mutex);
    builtIn.track = std::move(track);
    builtIn.position = 0;
    builtIn.volume = 1.0f;
    succeed();
    return kStream;
}

int channelPlay(uint32_t channel, int restart) {
    if (!isStream(channel)) return fail(kBadHandle);
    const std::lock_guard lock(builtIn.mutex);
    if (restart) builtIn.position = 0;
    builtIn.playing = true;
    return succeed();
}

// Stopped and paused are one: a stream keeps its position.
int channelStop(uint32_t channel) {
    if (!isStream(channel)) return fail(kBadHandle);
    const std::lock_guard lock(builtIn.mutex);
    builtIn.playing = false;
    return succeed();
}

int channelSetAttribute(uint32_t channel, uint32_t attribute, float value) {
    if (!isStream(channel)) return fail(kBadHandle);
    if (attribute != kAudioAttributeVolume || !(value >= 0.0f && value <= 1.0f)) return fail(kBadParameter);
    const std::lock_guard lock(builtIn.mutex);
    builtIn.volume = value;
    return succeed();
}

int channelSetPosition(uint32_t channel, uint64_t position, uint32_t mode) {
    if (!isStream(channel)) return fail(kBadHandle);
    const uint64_t frame = position / kMusicFrameBytes;
    if (mode != kAudioPositionBytes || frame > builtIn.track.frames) return fail(kBadPosition);
    const std::lock_guard lock(builtIn.mutex);
    builtIn.position = frame;
    return succeed();
}

uint64_t failBytes(ErrorCode error) {
    fail(error);
    return kAudioUnknown;
}

uint64_t channelGetPosition(uint32_t channel, uint32_t) {
    if (!isStream(channel)) return failBytes(kBadHandle);
    const std::lock_guard lock(builtIn.mutex);
    succeed();
    return builtIn.position * kMusicFrameBytes;
}

uint64_t channelGetLength(uint32_t channel, uint32_t) {
    if (!isStream(channel)) return failBytes(kBadHandle);
    succeed();
    return builtIn.track.frames * kMusicFrameBytes;
}

double channelBytes2Seconds(uint32_t channel, uint64_t bytes) {
    if (!isStream(channel)) {
        fail(kBadHandle);
        return -1.0;
    }
    succeed();
    const uint64_t frame = bytes / kMusicFrameBytes;
    return static_cast<double>(frame) / kMusicRate;
}

uint64_t channelSeconds2Bytes(uint32_t channel, double seconds) {
    constexpr double kMostSeconds = 1e9;
    if (!isStream(channel)) return failBytes(kBadHandle);
    if (!(seconds >= 0.0 && seconds <= kMostSeconds)) return failBytes(kBadParameter);
    succeed();
    return static_cast<uint64_t>(std::llround(seconds * kMusicRate)) * kMusicFrameBytes;
}

int errorGetCode() {
    return builtIn.error;
}

} // namespace

bool builtInAudio(AudioFunctions& functions) {
    functions.init = init;
    functions.free = freeAll;
    functions.streamCreateFile = streamCreateFile;
    functions.streamFree = streamFree;
    functions.channelPlay = channelPlay;
    functions.channelPause = channelStop;
    functions.channelStop = channelStop;
    functions.channelSetAttribute = channelSetAttribute;
    functions.channelSetPosition = channelSetPosition;
    functions.channelGetPosition = channelGetPosition;
    functions.channelGetLength = channelGetLength;
    functions.channelBytes2Seconds = channelBytes2Seconds;
    functions.channelSeconds2Bytes = channelSeconds2Bytes;
    functions.errorGetCode = errorGetCode;
    return true;
}
