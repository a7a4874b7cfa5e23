// Opus in Ogg pages, by libopusfile, which brings it to stereo.
#include "music/formats.h"
#include "music/library_table.h"

#include <opusfile.h>

namespace {

#define OPUS_FUNCTIONS(USE)                                                                                            \
    USE(op_open_callbacks)                                                                                             \
    USE(op_free)                                                                                                       \
    USE(op_read_float_stereo)

struct OpusFile {
    OPUS_FUNCTIONS(LIBRARY_POINTER)
};
LIBRARY_LOADER(OpusFile, OPUS_FUNCTIONS, LIBOPUSFILE_NAME)

int readBytes(void* file, unsigned char* bytes, int size) {
    return static_cast<int>(std::fread(bytes, 1, static_cast<size_t>(size), static_cast<std::FILE*>(file)));
}

} // namespace

struct OpusStream {
    OpusFile library;
    OggOpusFile* file = nullptr;
};

OpusStream* openOpus(std::FILE* file, std::string& reason) {
    OpusFile library;
    if (!loadLibrary(library, reason)) return nullptr;
    // As a stream that cannot seek: else every link of a chain is looked for first.
    const OpusFileCallbacks callbacks = {readBytes, nullptr, nullptr, nullptr};
    OggOpusFile* opened = library.op_open_callbacks(file, &callbacks, nullptr, 0, nullptr);
    if (opened) return new OpusStream{library, opened};
    reason = "broken Opus headers";
    return nullptr;
}

bool nextPiece(OpusStream& stream, SoundPiece& piece) {
    constexpr size_t kMostSamples = size_t{2} * 5760; // the longest packet
    piece.rate = 48000;
    piece.channels = 2;
    piece.samples.resize(kMostSamples);
    int frames = 0;
    do {
        frames = stream.library.op_read_float_stereo(stream.file, piece.samples.data(), kMostSamples);
    } while (frames == OP_HOLE); // bytes between two pages, or a page that is missing
    piece.samples.resize(frames > 0 ? 2 * static_cast<size_t>(frames) : 0);
    return frames > 0;
}

void closeStream(OpusStream* stream) {
    if (!stream) return;
    stream->library.op_free(stream->file);
    delete stream;
}
