#include "platform/image.h"
#include "platform/image_limits.h"

#include <SDL_image.h>

#include <cstddef>

namespace {

// A stream that appends what is written to a string: unlike a file's, none of its writes can fail
// unnoticed by the encoder.
std::string& streamBytes(SDL_RWops* stream) {
    return *static_cast<std::string*>(stream->hidden.unknown.data1);
}

SDL_RWops* openStringStream(std::string& bytes) {
    SDL_RWops* stream = SDL_AllocRW();
    if (!stream) return nullptr;
    stream->type = SDL_RWOPS_UNKNOWN;
    stream->hidden.unknown.data1 = &bytes;
    stream->size = [](SDL_RWops* self) { return static_cast<Sint64>(streamBytes(self).size()); };
    stream->seek = [](SDL_RWops* self, Sint64 offset, int from) -> Sint64 {
        // Only asked where it stands.
        return from == RW_SEEK_CUR && offset == 0 ? SDL_RWsize(self) : SDL_SetError("only appends");
    };
    stream->read = [](SDL_RWops*, void*, size_t, size_t) -> size_t { return 0; };
    stream->write = [](SDL_RWops* self, const void* data, size_t size, size_t count) {
        streamBytes(self).append(static_cast<const char*>(data), size * count);
        return count;
    };
    stream->close = [](SDL_RWops* self) {
        SDL_FreeRW(self);
        return 0;
    };
    return stream;
}

// A surface of its own for encoding: A stays or is dropped. Null when memory is short.
SDL_Surface* surfaceFromRows(const uint8_t* pixels, int width, int height, bool withAlpha, PixelLayout layout) {
    const Uint32 source = layout.blueFirst ? SDL_PIXELFORMAT_BGRA32 : SDL_PIXELFORMAT_RGBA32;
    const Uint32 format = withAlpha ? SDL_PIXELFORMAT_RGBA32 : SDL_PIXELFORMAT_RGB24;
    SDL_Surface* surface = SDL_CreateRGBSurfaceWithFormat(0, width, height, withAlpha ? 32 : 24, format);
    if (!surface) return nullptr;
    const ptrdiff_t rowBytes = static_cast<ptrdiff_t>(width) * 4;
    bool converted = true;
    for (int y = 0; converted && y < height; ++y) {
        const int from = layout.bottomFirst ? height - 1 - y : y;
        uint8_t* row = static_cast<uint8_t*>(surface->pixels) + static_cast<ptrdiff_t>(y) * surface->pitch;
        converted = SDL_ConvertPixels(width, 1, source, pixels + from * rowBytes, static_cast<int>(rowBytes), format,
                                      row, surface->pitch) == 0;
    }
    if (converted) return surface;
    SDL_FreeSurface(surface);
    return nullptr;
}

} // namespace

bool encodePng(const uint8_t* pixels, int width, int height, bool withAlpha, std::string& bytes, PixelLayout layout) {
    bytes.clear();
    if (!fitsImageLimits(width, height)) return false;
    SDL_Surface* surface = surfaceFromRows(pixels, width, height, withAlpha, layout);
    SDL_RWops* stream = openStringStream(bytes);
    const bool encoded = surface && stream && IMG_SavePNG_RW(surface, stream, 0) == 0;
    if (stream) SDL_RWclose(stream);
    SDL_FreeSurface(surface);
    if (!encoded) bytes.clear();
    return encoded;
}
