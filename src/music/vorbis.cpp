// Ogg Vorbis, by libvorbisfile.
#include "music/formats.h"
#include "music/library_table.h"

#define OV_EXCLUDE_STATIC_CALLBACKS
#include <vorbis/vorbisfile.h>

namespace {

#define VORBIS_FUNCTIONS(USE)                                                                                          \
    USE(ov_open_callbacks)                                                                                             \
    USE(ov_clear)                                                                                                      \
    USE(ov_info)                                                                                                       \
    USE(ov_read_float)

struct VorbisFile {
    VORBIS_FUNCTIONS(LIBRARY_POINTER)
};
LIBRARY_LOADER(VorbisFile, VORBIS_FUNCTIONS, LIBVORBISFILE_NAME)

size_t readBytes(void* bytes, size_t size, size_t count, void* file) {
    return std::fread(bytes, size, count, static_cast<std::FILE*>(file));
}

} // namespace

struct VorbisStream {
    VorbisFile library;
    OggVorbis_File file = {};
};

VorbisStream* openVorbis(std::FILE* file, std::string& reason) {
    VorbisFile library;
    if (!loadLibrary(library, reason)) return nullptr;
    VorbisStream* stream = new VorbisStream{library, {}};
    // As a stream that cannot seek: else every link of a chain is looked for first.
    const ov_callbacks callbacks = {readBytes, nullptr, nullptr, nullptr};
    if (library.ov_open_callbacks(file, &stream->file, nullptr, 0, callbacks) == 0) return stream;
    delete stream; // which the library has cleared
    reason = "broken Ogg Vorbis headers";
    return nullptr;
}

bool nextPiece(VorbisStream& stream, SoundPiece& piece) {
    constexpr int kMostFrames = 4096;
    float** channels = nullptr;
    int link = 0;
    long frames = 0;
    do {
        frames = stream.library.ov_read_float(&stream.file, &channels, kMostFrames, &link);
    } while (frames == OV_HOLE); // bytes between two pages, or a page that is missing
    const vorbis_info* info = frames > 0 ? stream.library.ov_info(&stream.file, -1) : nullptr;
    if (!info) return false;
    piece.rate = static_cast<int>(info->rate);
    piece.channels = info->channels;
    piece.centreSecond = true;
    piece.samples.resize(static_cast<size_t>(frames) * static_cast<size_t>(info->channels));
    float* sample = piece.samples.data();
    for (long frame = 0; frame < frames; ++frame) {
        for (int channel = 0; channel < info->channels; ++channel) *sample++ = channels[channel][frame];
    }
    return true;
}

void closeStream(VorbisStream* stream) {
    if (!stream) return;
    stream->library.ov_clear(&stream->file);
    delete stream;
}
