// A stand-in for the audio library: prints every call among the player's own lines. A stream has a
// millisecond to the byte. STAND_IN_FAILS names a function whose calls fail, STAND_IN_FAILS_TIMES how
// many of them; STAND_IN_LENGTH is the stream's length in bytes. STAND_IN_REMOVES names a file that is gone once the
// music plays.
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const char* setting(const char* name, const char* fallback) {
    const char* value = std::getenv(name);
    return value ? value : fallback;
}

// Prints the call; false when it is one that is to fail.
bool record(const char* name, const char* format, ...) {
    static int failed = 0;
    std::printf("  %s(", name);
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::puts(")");
    std::fflush(stdout);
    return std::strcmp(name, setting("STAND_IN_FAILS", "")) != 0 ||
           failed++ >= std::atoi(setting("STAND_IN_FAILS_TIMES", "1000"));
}

using Long = unsigned long long;

} // namespace

// The exports, one a line where they fit.
extern "C" {

int BASS_Init(int device, uint32_t rate, uint32_t flags, void* window, void* id) {
    return record("BASS_Init", "%d, %u, %u, %d, %d", device, rate, flags, window != nullptr, id != nullptr);
}

uint32_t BASS_StreamCreateFile(int inMemory, char* file, uint64_t offset, uint64_t length, uint32_t flags) {
    const char* format = "%d, %s, %llu, %llu, 0x%x";
    return record("BASS_StreamCreateFile", format, inMemory, file, Long{offset}, Long{length}, flags) ? 7 : 0;
}

int BASS_Free() {
    return record("BASS_Free", "");
}
int BASS_StreamFree(uint32_t stream) {
    return record("BASS_StreamFree", "%u", stream);
}
int BASS_ChannelPlay(uint32_t stream, int again) {
    std::remove(setting("STAND_IN_REMOVES", ""));
    return record("BASS_ChannelPlay", "%u, %d", stream, again);
}
int BASS_ChannelPause(uint32_t channel) {
    return record("BASS_ChannelPause", "%u", channel);
}
int BASS_ChannelStop(uint32_t channel) {
    return record("BASS_ChannelStop", "%u", channel);
}

int BASS_ChannelSetAttribute(uint32_t channel, uint32_t attribute, float value) {
    return record("BASS_ChannelSetAttribute", "%u, %u, %.3f", channel, attribute, static_cast<double>(value));
}

int BASS_ChannelSetPosition(uint32_t channel, uint64_t position, uint32_t mode) {
    return record("BASS_ChannelSetPosition", "%u, %llu, %u", channel, Long{position}, mode);
}

uint64_t BASS_ChannelGetPosition(uint32_t channel, uint32_t mode) {
    return record("BASS_ChannelGetPosition", "%u, %u", channel, mode);
}

uint64_t BASS_ChannelGetLength(uint32_t channel, uint32_t mode) {
    record("BASS_ChannelGetLength", "%u, %u", channel, mode);
    return std::strtoull(setting("STAND_IN_LENGTH", "60000"), nullptr, 10);
}

double BASS_ChannelBytes2Seconds(uint32_t channel, uint64_t bytes) {
    record("BASS_ChannelBytes2Seconds", "%u, %llu", channel, Long{bytes});
    return static_cast<double>(bytes) / 1000.0;
}

uint64_t BASS_ChannelSeconds2Bytes(uint32_t channel, double seconds) {
    record("BASS_ChannelSeconds2Bytes", "%u, %.3f", channel, seconds);
    return static_cast<uint64_t>(seconds * 1000.0 + 0.5);
}

#ifndef WITHOUT_THE_LAST_EXPORT
int BASS_ErrorGetCode() {
    record("BASS_ErrorGetCode", "");
    return 41;
}
#endif

} // extern "C"
