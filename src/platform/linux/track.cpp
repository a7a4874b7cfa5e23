#include "platform/linux/track.h"

#include "platform/files.h"
#include "platform/library.h"

#include <SDL.h>
#include <libmodplug/modplug.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <string_view>

#include <malloc.h>

namespace {

// A few megabytes of silence can unfold to hours, and a header may say anything; the mixer decodes until the
// end or until it gets no more memory. So it gets as much as the longest track takes, twice: the mixer
// gathers pieces and then joins them.
constexpr int64_t kMostDecoderBytes = 2 * static_cast<int64_t>(kMostTrackFrames * kFrameBytes) + (16 << 20);

std::atomic<int64_t> decoderBytes; // more than there were before the decoding began
std::atomic<bool> memoryRefused;

struct MemoryFunctions {
    SDL_malloc_func allocate = nullptr;
    SDL_calloc_func allocateZeroed = nullptr;
    SDL_realloc_func resize = nullptr;
    SDL_free_func release = nullptr;
};
MemoryFunctions systemMemory;

bool mayTake(size_t bytes) {
    const int64_t more = static_cast<int64_t>(std::min<size_t>(bytes, kMostDecoderBytes));
    if (decoderBytes + more < kMostDecoderBytes) return true;
    memoryRefused = true;
    return false;
}

void* countTaken(void* block) {
    decoderBytes += static_cast<int64_t>(malloc_usable_size(block));
    return block;
}

void* boundedMalloc(size_t bytes) {
    return mayTake(bytes) ? countTaken(systemMemory.allocate(bytes)) : nullptr;
}

void* boundedCalloc(size_t count, size_t bytes) {
    const bool fits = bytes == 0 || count <= SIZE_MAX / bytes;
    return fits && mayTake(count * bytes) ? countTaken(systemMemory.allocateZeroed(count, bytes)) : nullptr;
}

void* boundedRealloc(void* block, size_t bytes) {
    if (!mayTake(bytes)) return nullptr;
    const int64_t before = static_cast<int64_t>(malloc_usable_size(block));
    void* resized = systemMemory.resize(block, bytes);
    if (resized) countTaken(resized);
    if (resized) decoderBytes -= before;
    return resized;
}

void countedFree(void* block) {
    decoderBytes -= static_cast<int64_t>(malloc_usable_size(block));
    systemMemory.release(block);
}

// The blocks are the system's own on either side of the bound, so others may come and go meanwhile.
void boundDecoderMemory() {
    decoderBytes = 0;
    memoryRefused = false;
    SDL_GetMemoryFunctions(&systemMemory.allocate, &systemMemory.allocateZeroed, &systemMemory.resize,
                           &systemMemory.release);
    SDL_SetMemoryFunctions(boundedMalloc, boundedCalloc, boundedRealloc, countedFree);
}

void unboundDecoderMemory() {
    SDL_SetMemoryFunctions(systemMemory.allocate, systemMemory.allocateZeroed, systemMemory.resize,
                           systemMemory.release);
}

// Closes the file.
bool decodeSound(const Mixer& mixer, SDL_RWops* file, Track& track, std::string& reason) {
    boundDecoderMemory();
    track.sound = mixer.loadSound(file, 1);
    unboundDecoderMemory();
    if (!track.sound) {
        reason = memoryRefused ? "longer than 30 minutes, or claims to be" : SDL_GetError();
        return false;
    }
    track.samples = reinterpret_cast<const int16_t*>(track.sound->abuf);
    track.frames = track.sound->alen / kFrameBytes;
    if (track.frames == 0) reason = "holds no sound";
    return track.frames > 0;
}

// The mixer's own module player, asked directly: through the mixer a module that jumps back at its end, as
// many do, never ends, and a seek lands on some row near the time.
struct ModulePlayer {
    decltype(&ModPlug_Load) load = nullptr;
    decltype(&ModPlug_Unload) unload = nullptr;
    decltype(&ModPlug_Read) read = nullptr;
    decltype(&ModPlug_GetLength) length = nullptr;
    decltype(&ModPlug_GetSettings) settings = nullptr;
    decltype(&ModPlug_SetSettings) setSettings = nullptr;
};

bool openModulePlayer(ModulePlayer& player) {
    void* library = openLibrary("libmodplug.so.1"); // stays: the mixer may hold it too
    const bool whole = resolveSymbol(library, "ModPlug_Load", player.load) &&
                       resolveSymbol(library, "ModPlug_Unload", player.unload) &&
                       resolveSymbol(library, "ModPlug_Read", player.read) &&
                       resolveSymbol(library, "ModPlug_GetLength", player.length) &&
                       resolveSymbol(library, "ModPlug_GetSettings", player.settings) &&
                       resolveSymbol(library, "ModPlug_SetSettings", player.setSettings);
    if (!whole) return false;
    ModPlug_Settings settings = {};
    player.settings(&settings);
    settings.mFlags = MODPLUG_ENABLE_OVERSAMPLING;
    settings.mChannels = kTrackChannels;
    settings.mBits = 16;
    settings.mFrequency = kTrackRate;
    settings.mResamplingMode = MODPLUG_RESAMPLE_FIR;
    settings.mLoopCount = 0;
    player.setSettings(&settings);
    return true;
}

// Up to its end, or once around for a module that jumps back; its length is known to the second.
bool renderModule(const ModulePlayer& player, ModPlugFile* module, Track& track, std::string& reason) {
    constexpr size_t kPieceFrames = 16384;
    const uint64_t milliseconds = static_cast<uint64_t>(std::max(0, player.length(module)));
    const uint64_t most = milliseconds * kTrackRate / 1000;
    if (most > kMostTrackFrames) {
        reason = "longer than 30 minutes";
        return false;
    }
    track.rendered.reserve((most + kPieceFrames) * kTrackChannels);
    while (track.frames < most) {
        track.rendered.resize((track.frames + kPieceFrames) * kTrackChannels);
        const int bytes = player.read(module, &track.rendered[track.frames * kTrackChannels],
                                      static_cast<int>(kPieceFrames * kFrameBytes));
        if (bytes <= 0) break;
        track.frames += static_cast<uint64_t>(bytes) / kFrameBytes;
    }
    track.frames = std::min(track.frames, most);
    track.rendered.resize(track.frames * kTrackChannels);
    track.samples = track.rendered.data();
    if (track.frames == 0) reason = "holds no sound";
    return track.frames > 0;
}

// False, with `reason` empty, when the file is no module, or nothing here plays modules.
bool decodeModule(const std::string& path, Track& track, std::string& reason) {
    constexpr size_t kMostModuleBytes = 64 << 20;
    std::string bytes;
    ModulePlayer player;
    if (!openModulePlayer(player) || !readFile(path, bytes) || bytes.size() > kMostModuleBytes) return false;
    ModPlugFile* module = player.load(bytes.data(), static_cast<int>(bytes.size()));
    if (!module) return false;
    const bool whole = renderModule(player, module, track, reason);
    player.unload(module);
    return whole;
}

// Told by their first bytes; modules have no mark in common.
bool isRecording(SDL_RWops* file) {
    char bytes[4] = {};
    const std::string_view head(bytes, SDL_RWread(file, bytes, 1, sizeof bytes));
    SDL_RWseek(file, 0, RW_SEEK_SET);
    for (const char* mark : {"RIFF", "FORM", "OggS", "fLaC", "ID3"}) {
        if (head.starts_with(mark)) return true;
    }
    return head.size() == sizeof bytes && bytes[0] == '\xFF' && (bytes[1] & 0xE0) == 0xE0; // a bare MP3 frame
}

} // namespace

bool decodeTrack(const Mixer& mixer, const std::string& path, Track& track, std::string& reason) {
    track = {};
    reason.clear();
    const std::string found = locateFile(path);
    SDL_RWops* file = isRegularFile(found) ? SDL_RWFromFile(found.c_str(), "rb") : nullptr;
    if (!file) {
        reason = "cannot be opened";
        return false;
    }
    bool whole = !isRecording(file) && decodeModule(found, track, reason);
    if (whole || !reason.empty()) {
        SDL_RWclose(file);
    } else {
        whole = decodeSound(mixer, file, track, reason);
    }
    if (!whole) releaseTrack(mixer, track);
    return whole;
}

void releaseTrack(const Mixer& mixer, Track& track) {
    if (track.sound) mixer.freeSound(track.sound);
    track = {};
}
