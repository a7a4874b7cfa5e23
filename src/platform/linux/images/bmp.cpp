#include "platform/linux/images/decoders.h"

#include <SDL.h>

#include <cstddef>
#include <cstring>

namespace {

// The fourth byte of a pixel is more often filler than alpha; on Windows it counts for nothing.
void copyOpaque(const uint8_t* from, uint8_t* to, int pixels) {
    std::memcpy(to, from, static_cast<size_t>(pixels) * 4);
    for (int x = 0; x < pixels; ++x) to[x * 4 + 3] = 255;
}

SDL_Surface* loadRgba(std::string_view bytes) {
    SDL_RWops* source = SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
    SDL_Surface* surface = source ? SDL_LoadBMP_RW(source, 1) : nullptr;
    if (!surface) return nullptr;
    SDL_Surface* rgba = SDL_ConvertSurfaceFormat(surface, SDL_PIXELFORMAT_RGBA32, 0);
    SDL_FreeSurface(surface);
    return rgba;
}

} // namespace

bool decodeBmp(std::string_view bytes, DecodedImage& image, std::string& reason) {
    SDL_Surface* surface = loadRgba(bytes);
    if (!surface) {
        reason = std::string("broken: ") + SDL_GetError();
        return false;
    }
    const bool made = makePicture(surface->w, surface->h, image, reason);
    const auto* row = static_cast<const uint8_t*>(surface->pixels);
    for (int y = 0; y < image.height; ++y, row += surface->pitch) copyOpaque(row, rowFromTop(image, y), image.width);
    SDL_FreeSurface(surface);
    return made;
}
