#include "platform/built_in_audio.h"

#include "foundation/log.h"
#include "platform/library.h"
#include "platform/linux/track.h"

#include <SDL.h>

#include <algorithm>
#include <cmath>
#include <mutex>

const char* const kAudioLibraryName = "libbass.so";

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

constexpr uint32_t kStream = 1;     // there is one stream at a time
constexpr int kDeviceFrames = 1024; // a device buffer: 23 ms

struct BuiltIn {
    Mixer mixer;
    bool initialised = false;
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
    return handle == kStream && builtIn.track.samples;
}

// On the device's thread. The mixer has laid silence into the buffer.
void fillBuffer(void*, Uint8* bytes, int size) {
    const std::lock_guard lock(builtIn.mutex);
    if (!builtIn.playing) return;
    const uint64_t left = builtIn.track.frames - builtIn.position;
    const uint64_t frames = std::min(static_cast<uint64_t>(size) / kFrameBytes, left);
    const int16_t* from = builtIn.track.samples + builtIn.position * kTrackChannels;
    int16_t* to = reinterpret_cast<int16_t*>(bytes);
    for (uint64_t i = 0; i < frames * kTrackChannels; ++i) {
        to[i] = static_cast<int16_t>(static_cast<float>(from[i]) * builtIn.volume);
    }
    builtIn.position += frames;
    if (builtIn.position == builtIn.track.frames) builtIn.playing = false;
}

int init(int, uint32_t, uint32_t, void*, const void*) {
    if (builtIn.initialised) return fail(kAlready);
    const bool ready = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
    // Whatever the device runs at is SDL's affair.
    if (!ready || builtIn.mixer.openDevice(kTrackRate, AUDIO_S16SYS, kTrackChannels, kDeviceFrames, nullptr, 0) != 0) {
        printError("No sound: %s\n", SDL_GetError());
        if (ready) SDL_QuitSubSystem(SDL_INIT_AUDIO);
        return fail(kNoDriver);
    }
    builtIn.mixer.hookMusic(fillBuffer, nullptr);
    builtIn.initialised = true;
    return succeed();
}

int streamFree(uint32_t stream) {
    if (!isStream(stream)) return fail(kBadHandle);
    const std::lock_guard lock(builtIn.mutex);
    builtIn.playing = false;
    releaseTrack(builtIn.mixer, builtIn.track);
    return succeed();
}

int freeAll() {
    if (!builtIn.initialised) return fail(kNotInitialised);
    streamFree(kStream);
    builtIn.mixer.closeDevice();
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    builtIn.initialised = false;
    return succeed();
}

uint32_t streamCreateFile(int inMemory, const void* file, uint64_t, uint64_t, uint32_t) {
    if (!builtIn.initialised) return static_cast<uint32_t>(fail(kNotInitialised));
    if (inMemory || !file) return static_cast<uint32_t>(fail(kBadParameter));
    const std::string path = static_cast<const char*>(file);
    std::string reason;
    streamFree(kStream);
    if (!decodeTrack(builtIn.mixer, path, builtIn.track, reason)) {
        printError("No music: %s: %s\n", path.c_str(), reason.c_str());
        return static_cast<uint32_t>(fail(kBadFile));
    }
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
    const uint64_t frame = position / kFrameBytes;
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
    return builtIn.position * kFrameBytes;
}

uint64_t channelGetLength(uint32_t channel, uint32_t) {
    if (!isStream(channel)) return failBytes(kBadHandle);
    succeed();
    return builtIn.track.frames * kFrameBytes;
}

double channelBytes2Seconds(uint32_t channel, uint64_t bytes) {
    if (!isStream(channel)) {
        fail(kBadHandle);
        return -1.0;
    }
    succeed();
    return static_cast<double>(bytes / kFrameBytes) / kTrackRate;
}

uint64_t channelSeconds2Bytes(uint32_t channel, double seconds) {
    constexpr double kMostSeconds = 1e9;
    if (!isStream(channel)) return failBytes(kBadHandle);
    if (!(seconds >= 0.0 && seconds <= kMostSeconds)) return failBytes(kBadParameter);
    succeed();
    return static_cast<uint64_t>(std::llround(seconds * kTrackRate)) * kFrameBytes;
}

int errorGetCode() {
    return builtIn.error;
}

bool openMixer(Mixer& mixer) {
    // Not closed again: libraries below it keep threads and hooks of their own.
    void* library = openLibrary("libSDL2_mixer-2.0.so.0");
    return resolveSymbol(library, "Mix_OpenAudioDevice", mixer.openDevice) &&
           resolveSymbol(library, "Mix_CloseAudio", mixer.closeDevice) &&
           resolveSymbol(library, "Mix_HookMusic", mixer.hookMusic) &&
           resolveSymbol(library, "Mix_LoadWAV_RW", mixer.loadSound) &&
           resolveSymbol(library, "Mix_FreeChunk", mixer.freeSound);
}

} // namespace

bool builtInAudio(AudioFunctions& functions) {
    if (!openMixer(builtIn.mixer)) {
        printError("No music: neither %s nor SDL2_mixer is installed\n", kAudioLibraryName);
        return false;
    }
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
