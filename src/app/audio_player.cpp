#include "app/audio_player.h"

#include "config/paths.h"
#include "foundation/log.h"
#include "music/built_in_audio.h"
#include "platform/files.h"
#include "platform/library.h"

#include <algorithm>

namespace {

// The first place that has the library: beside the program, or up to four directories above. Else its bare
// name, which leaves the search to the system; on Linux that does not look into the current directory,
// which may be a stranger's show.
std::string findLibrary() {
    constexpr int kLevelsAbove = 4;
    std::string directory = executableDirectory();
    for (int level = 0; level <= kLevelsAbove; ++level) {
        const std::string candidate = joinPath(directory, kAudioLibraryName);
        if (isRegularFile(candidate)) return locateFile(candidate);
        directory = fullPath(joinPath(directory, ".."));
    }
    return kAudioLibraryName;
}

bool resolveAll(void* library, AudioFunctions& table) {
    return resolveSymbol(library, "BASS_Init", table.init) && resolveSymbol(library, "BASS_Free", table.free) &&
           resolveSymbol(library, "BASS_StreamCreateFile", table.streamCreateFile) &&
           resolveSymbol(library, "BASS_StreamFree", table.streamFree) &&
           resolveSymbol(library, "BASS_ChannelPlay", table.channelPlay) &&
           resolveSymbol(library, "BASS_ChannelPause", table.channelPause) &&
           resolveSymbol(library, "BASS_ChannelStop", table.channelStop) &&
           resolveSymbol(library, "BASS_ChannelSetAttribute", table.channelSetAttribute) &&
           resolveSymbol(library, "BASS_ChannelSetPosition", table.channelSetPosition) &&
           resolveSymbol(library, "BASS_ChannelGetPosition", table.channelGetPosition) &&
           resolveSymbol(library, "BASS_ChannelGetLength", table.channelGetLength) &&
           resolveSymbol(library, "BASS_ChannelBytes2Seconds", table.channelBytes2Seconds) &&
           resolveSymbol(library, "BASS_ChannelSeconds2Bytes", table.channelSeconds2Bytes) &&
           resolveSymbol(library, "BASS_ErrorGetCode", table.errorGetCode);
}

void unload(AudioPlayer& player) {
    closeLibrary(player.library);
    player = AudioPlayer();
}

bool loadFunctions(AudioPlayer& player) {
    const std::string name = findLibrary();
    player.library = openLibrary(name.c_str());
    if (!player.library) {
        logLine("[AUDIO] BASS DLL not found: %s\n", name.c_str());
        if (!builtInAudio(player.functions)) return false;
        logLine("[AUDIO] Using built-in playback\n");
        return true;
    }
    if (resolveAll(player.library, player.functions)) return true;
    logLine("[AUDIO] BASS DLL missing required exports.\n");
    unload(player);
    return false;
}

unsigned long errorCode(const AudioPlayer& player) {
    return static_cast<uint32_t>(player.functions.errorGetCode());
}

bool openStream(AudioPlayer& player, const std::string& path) {
    constexpr int kDefaultDevice = -1;
    constexpr uint32_t kRate = 44100; // samples a second
    const AudioFunctions& audio = player.functions;
    if (!audio.init(kDefaultDevice, kRate, 0, nullptr, nullptr)) {
        logLine("[AUDIO] BASS_Init failed (err=%lu)\n", errorCode(player));
        return false;
    }
    player.stream = audio.streamCreateFile(0, locateFile(path).c_str(), 0, 0, kAudioStreamPrescan);
    if (player.stream) return true;
    logLine("[AUDIO] BASS_StreamCreateFile failed: %s (err=%lu)\n", path.c_str(), errorCode(player));
    audio.free();
    return false;
}

float streamDuration(const AudioPlayer& player) {
    const uint64_t bytes = player.functions.channelGetLength(player.stream, kAudioPositionBytes);
    if (bytes == 0 || bytes == kAudioUnknown) return 0.0f;
    return std::max(0.0f, static_cast<float>(player.functions.channelBytes2Seconds(player.stream, bytes)));
}

} // namespace

bool openAudio(AudioPlayer& player, const std::string& path, float volume, float startOffset) {
    player = AudioPlayer();
    if (!loadFunctions(player)) return false;
    if (!openStream(player, path)) {
        unload(player);
        return false;
    }
    player.volume = std::min(std::max(volume, 0.0f), 1.0f);
    player.startOffset = std::max(startOffset, 0.0f);
    player.functions.channelSetAttribute(player.stream, kAudioAttributeVolume, player.volume);
    player.duration = streamDuration(player);
    logLine("[AUDIO] BASS ready: %s (vol=%.0f%%, startOffset=%.3fs, duration=%.3fs)\n", path.c_str(),
            static_cast<double>(player.volume) * 100.0, static_cast<double>(player.startOffset),
            static_cast<double>(player.duration));
    player.ready = true;
    return true;
}

bool playFrom(AudioPlayer& player, double seconds) {
    const AudioFunctions& audio = player.functions;
    audio.channelStop(player.stream);
    const double position = std::max(0.0, static_cast<double>(player.startOffset) + seconds);
    const uint64_t bytes = audio.channelSeconds2Bytes(player.stream, position);
    return audio.channelSetPosition(player.stream, bytes, kAudioPositionBytes) && audio.channelPlay(player.stream, 0);
}

void closeAudio(AudioPlayer& player) {
    if (!player.ready) return;
    player.functions.channelStop(player.stream);
    player.functions.streamFree(player.stream);
    player.functions.free();
    unload(player);
}
