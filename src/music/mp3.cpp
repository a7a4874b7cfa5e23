// MPEG audio, layers 1 to 3, by libmpg123.
#include "music/formats.h"
#include "music/library_table.h"

#include <mpg123.h>

namespace {

#define MPG123_FUNCTIONS(USE)                                                                                          \
    USE(mpg123_init)                                                                                                   \
    USE(mpg123_new)                                                                                                    \
    USE(mpg123_delete)                                                                                                 \
    USE(mpg123_param)                                                                                                  \
    USE(mpg123_replace_reader_handle)                                                                                  \
    USE(mpg123_open_handle)                                                                                            \
    USE(mpg123_read)                                                                                                   \
    USE(mpg123_getformat)                                                                                              \
    USE(mpg123_strerror)

struct Mpg123 {
    MPG123_FUNCTIONS(LIBRARY_POINTER)
};
LIBRARY_LOADER(Mpg123, MPG123_FUNCTIONS, LIBMPG123_NAME)

mpg123_ssize_t readBytes(void* file, void* bytes, size_t size) {
    return static_cast<mpg123_ssize_t>(std::fread(bytes, 1, size, static_cast<std::FILE*>(file)));
}

// Read from the first byte to the last: what a broken index or tag at the end says is not asked.
off_t refuseSeek(void*, off_t, int) {
    return -1;
}

} // namespace

struct Mp3Stream {
    Mpg123 library;
    mpg123_handle* handle = nullptr;
};

Mp3Stream* openMp3(std::FILE* file, std::string& reason) {
    Mpg123 library;
    if (!loadLibrary(library, reason)) return nullptr;
    library.mpg123_init();
    Mp3Stream* stream = new Mp3Stream{library, library.mpg123_new(nullptr, nullptr)};
    const long flags = MPG123_QUIET | MPG123_FORCE_FLOAT | MPG123_SKIP_ID3V2;
    const bool opened = stream->handle &&
                        library.mpg123_param(stream->handle, MPG123_ADD_FLAGS, flags, 0.0) == MPG123_OK &&
                        library.mpg123_replace_reader_handle(stream->handle, readBytes, refuseSeek, nullptr) ==
                            MPG123_OK &&
                        library.mpg123_open_handle(stream->handle, file) == MPG123_OK;
    if (opened) return stream;
    reason = stream->handle ? library.mpg123_strerror(stream->handle) : "the MP3 decoder cannot be started";
    closeStream(stream);
    return nullptr;
}

bool nextPiece(Mp3Stream& stream, SoundPiece& piece) {
    constexpr size_t kMostSamples = 8192;
    piece.samples.resize(kMostSamples);
    size_t bytes = 0;
    int state = MPG123_OK;
    do {
        state = stream.library.mpg123_read(stream.handle, piece.samples.data(), kMostSamples * sizeof(float), &bytes);
        if (state != MPG123_NEW_FORMAT) continue;
        long rate = 0;
        int encoding = 0;
        stream.library.mpg123_getformat(stream.handle, &rate, &piece.channels, &encoding);
        piece.rate = static_cast<int>(rate);
    } while (bytes == 0 && (state == MPG123_OK || state == MPG123_NEW_FORMAT));
    piece.samples.resize(bytes / sizeof(float));
    return bytes > 0;
}

void closeStream(Mp3Stream* stream) {
    if (!stream) return;
    stream->library.mpg123_delete(stream->handle);
    delete stream;
}
