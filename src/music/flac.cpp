// FLAC, by libFLAC. Of the metadata only the stream's own form is read.
#include "music/formats.h"
#include "music/library_table.h"

#include <FLAC/stream_decoder.h>

#include <cmath>

namespace {

#define FLAC_FUNCTIONS(USE)                                                                                            \
    USE(FLAC__stream_decoder_new)                                                                                      \
    USE(FLAC__stream_decoder_delete)                                                                                   \
    USE(FLAC__stream_decoder_init_stream)                                                                              \
    USE(FLAC__stream_decoder_init_ogg_stream)                                                                          \
    USE(FLAC__stream_decoder_process_single)                                                                           \
    USE(FLAC__stream_decoder_get_state)

struct LibFlac {
    FLAC_FUNCTIONS(LIBRARY_POINTER)
};
LIBRARY_LOADER(LibFlac, FLAC_FUNCTIONS, LIBFLAC_NAME)

} // namespace

struct FlacStream {
    LibFlac library;
    FLAC__StreamDecoder* decoder = nullptr;
    std::FILE* file = nullptr;
    SoundPiece* piece = nullptr; // where frames go
};

namespace {

FLAC__StreamDecoderReadStatus readBytes(const FLAC__StreamDecoder*, FLAC__byte* bytes, size_t* size, void* stream) {
    *size = std::fread(bytes, 1, *size, static_cast<FlacStream*>(stream)->file);
    return *size > 0 ? FLAC__STREAM_DECODER_READ_STATUS_CONTINUE : FLAC__STREAM_DECODER_READ_STATUS_END_OF_STREAM;
}

FLAC__StreamDecoderWriteStatus takeFrame(const FLAC__StreamDecoder*, const FLAC__Frame* frame,
                                         const FLAC__int32* const channels[], void* stream) {
    SoundPiece& piece = *static_cast<FlacStream*>(stream)->piece;
    const FLAC__FrameHeader& header = frame->header;
    piece.rate = static_cast<int>(header.sample_rate);
    piece.channels = static_cast<int>(header.channels);
    piece.samples.resize(size_t{header.blocksize} * header.channels);
    const float scale = std::ldexp(1.0f, 1 - static_cast<int>(header.bits_per_sample));
    float* sample = piece.samples.data();
    for (uint32_t i = 0; i < header.blocksize; ++i) {
        for (uint32_t channel = 0; channel < header.channels; ++channel) {
            *sample++ = static_cast<float>(channels[channel][i]) * scale;
        }
    }
    return FLAC__STREAM_DECODER_WRITE_STATUS_CONTINUE;
}

// What is damaged is left out.
void ignoreError(const FLAC__StreamDecoder*, FLAC__StreamDecoderErrorStatus, void*) {}

} // namespace

FlacStream* openFlac(std::FILE* file, bool inOgg, std::string& reason) {
    LibFlac library;
    if (!loadLibrary(library, reason)) return nullptr;
    FlacStream* stream = new FlacStream{library, library.FLAC__stream_decoder_new(), file, nullptr};
    const auto init = inOgg ? library.FLAC__stream_decoder_init_ogg_stream : library.FLAC__stream_decoder_init_stream;
    if (stream->decoder && init(stream->decoder, readBytes, nullptr, nullptr, nullptr, nullptr, takeFrame, nullptr,
                                ignoreError, stream) == FLAC__STREAM_DECODER_INIT_STATUS_OK) {
        return stream;
    }
    reason = "the FLAC decoder cannot be started";
    closeStream(stream);
    return nullptr;
}

bool nextPiece(FlacStream& stream, SoundPiece& piece) {
    stream.piece = &piece;
    piece.samples.clear();
    while (piece.samples.empty()) {
        if (!stream.library.FLAC__stream_decoder_process_single(stream.decoder)) return false;
        if (stream.library.FLAC__stream_decoder_get_state(stream.decoder) >= FLAC__STREAM_DECODER_END_OF_STREAM) break;
    }
    return !piece.samples.empty();
}

void closeStream(FlacStream* stream) {
    if (!stream) return;
    if (stream->decoder) stream->library.FLAC__stream_decoder_delete(stream->decoder);
    delete stream;
}
