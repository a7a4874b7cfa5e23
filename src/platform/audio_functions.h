// The audio library as the player calls it: its file name on this system and its entry points. The types
// are this player's own; they match the library's binary interface, whose header is not needed.
#pragma once

#include <cstdint>

#ifdef _WIN32
#define AUDIO_CALL __stdcall
#else
#define AUDIO_CALL
#endif

extern const char* const kAudioLibraryName;

// In the order in which the player resolves them. Where the comment says nothing else the result is
// nonzero for success; a failed call leaves its reason in errorGetCode.
struct AudioFunctions {
    int(AUDIO_CALL* init)(int device, uint32_t rate, uint32_t flags, void* window, const void* classId) = nullptr;
    int(AUDIO_CALL* free)() = nullptr;
    // A stream handle, 0 on failure.
    uint32_t(AUDIO_CALL* streamCreateFile)(int inMemory, const void* file, uint64_t offset, uint64_t length,
                                           uint32_t flags) = nullptr;
    int(AUDIO_CALL* streamFree)(uint32_t stream) = nullptr;
    int(AUDIO_CALL* channelPlay)(uint32_t channel, int restart) = nullptr;
    int(AUDIO_CALL* channelPause)(uint32_t channel) = nullptr;
    int(AUDIO_CALL* channelStop)(uint32_t channel) = nullptr;
    int(AUDIO_CALL* channelSetAttribute)(uint32_t channel, uint32_t attribute, float value) = nullptr;
    int(AUDIO_CALL* channelSetPosition)(uint32_t channel, uint64_t position, uint32_t mode) = nullptr;
    // Positions and lengths are bytes of the decoded samples; kAudioUnknown on failure.
    uint64_t(AUDIO_CALL* channelGetPosition)(uint32_t channel, uint32_t mode) = nullptr;
    uint64_t(AUDIO_CALL* channelGetLength)(uint32_t channel, uint32_t mode) = nullptr;
    double(AUDIO_CALL* channelBytes2Seconds)(uint32_t channel, uint64_t bytes) = nullptr; // negative on failure
    uint64_t(AUDIO_CALL* channelSeconds2Bytes)(uint32_t channel, double seconds) = nullptr;
    int(AUDIO_CALL* errorGetCode)() = nullptr;
};

constexpr uint64_t kAudioUnknown = ~uint64_t{0};
constexpr uint32_t kAudioAttributeVolume = 2;     // 0 to 1
constexpr uint32_t kAudioPositionBytes = 0;       // the one mode of positions and lengths
constexpr uint32_t kAudioStreamPrescan = 0x20000; // exact lengths and positions
