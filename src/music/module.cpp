// Tracker modules, by libopenmpt.
#include "music/formats.h"
#include "music/library_table.h"

#include <libopenmpt/libopenmpt.h>

namespace {

#define OPENMPT_FUNCTIONS(USE)                                                                                         \
    USE(openmpt_module_create_from_memory2)                                                                            \
    USE(openmpt_module_destroy)                                                                                        \
    USE(openmpt_module_get_duration_seconds)                                                                           \
    USE(openmpt_module_read_interleaved_float_stereo)

struct OpenMpt {
    OPENMPT_FUNCTIONS(LIBRARY_POINTER)
};
LIBRARY_LOADER(OpenMpt, OPENMPT_FUNCTIONS, LIBOPENMPT_NAME)

constexpr size_t kMostBytes = 64 << 20; // modules are read whole

bool readWhole(std::FILE* file, std::string& bytes) {
    constexpr size_t kStep = 1 << 16;
    size_t size = 0;
    do {
        bytes.resize(size + kStep);
        size += std::fread(bytes.data() + size, 1, kStep, file);
    } while (size == bytes.size() && size <= kMostBytes);
    bytes.resize(size);
    return size <= kMostBytes;
}

// The default prints on standard error.
void ignoreWords(const char*, void*) {}

} // namespace

struct ModuleStream {
    OpenMpt library;
    openmpt_module* module = nullptr;
};

ModuleStream* openModule(std::FILE* file, double& seconds, std::string& reason) {
    OpenMpt library;
    std::string bytes;
    if (!loadLibrary(library, reason)) return nullptr;
    openmpt_module* module = nullptr;
    if (readWhole(file, bytes)) {
        module = library.openmpt_module_create_from_memory2(bytes.data(), bytes.size(), ignoreWords, nullptr, nullptr,
                                                            nullptr, nullptr, nullptr, nullptr);
    }
    if (!module) {
        reason = "no music of a known kind";
        return nullptr;
    }
    seconds = library.openmpt_module_get_duration_seconds(module);
    return new ModuleStream{library, module};
}

bool nextPiece(ModuleStream& stream, SoundPiece& piece) {
    constexpr size_t kMostFrames = 4096;
    piece.rate = kMusicRate;
    piece.channels = 2;
    piece.samples.resize(2 * kMostFrames);
    const size_t frames = stream.library.openmpt_module_read_interleaved_float_stereo(
        stream.module, kMusicRate, kMostFrames, piece.samples.data());
    piece.samples.resize(2 * frames);
    return frames > 0;
}

void closeStream(ModuleStream* stream) {
    if (!stream) return;
    stream->library.openmpt_module_destroy(stream->module);
    delete stream;
}
