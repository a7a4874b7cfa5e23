#include "platform/image.h"

#include "platform/image_limits.h"
#include "platform/linux/picture_bytes.h"

#include <SDL_image.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

// Goes straight to the sniffed kind's decoder. SDL_image's own choice looks for other kinds too, some
// of them (SVG text anywhere in the file's beginning) with sizes that were not checked here.
SDL_Surface* loadSurface(ImageKind kind, const std::string& bytes) {
    SDL_RWops* source = SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
    if (!source) return nullptr;
    SDL_Surface* surface = nullptr;
    switch (kind) {
    case ImageKind::unknown: break;
    case ImageKind::png: surface = IMG_LoadPNG_RW(source); break;
    case ImageKind::jpeg: surface = IMG_LoadJPG_RW(source); break;
    case ImageKind::bmp: surface = IMG_LoadBMP_RW(source); break;
    case ImageKind::gif: surface = IMG_LoadGIF_RW(source); break;
    case ImageKind::tiff: surface = IMG_LoadTIF_RW(source); break;
    case ImageKind::webp: surface = IMG_LoadWEBP_RW(source); break;
    }
    SDL_RWclose(source);
    return surface;
}

uint8_t scaled(int value, int by, int of) {
    return static_cast<uint8_t>(std::min(255, (value * by + of / 2) / of));
}

// A JPEG of four components comes out of SDL_image with its C, M, Y, K bytes as they stand in the file:
// inverted, 255 for no ink, the way that such files are written in practice.
SDL_Surface* inksToRgba(const SDL_Surface& inks) {
    SDL_Surface* rgba = SDL_CreateRGBSurfaceWithFormat(0, inks.w, inks.h, 32, SDL_PIXELFORMAT_RGBA32);
    if (!rgba) return nullptr;
    for (int y = 0; y < inks.h; ++y) {
        const uint8_t* from = static_cast<const uint8_t*>(inks.pixels) + static_cast<ptrdiff_t>(y) * inks.pitch;
        uint8_t* to = static_cast<uint8_t*>(rgba->pixels) + static_cast<ptrdiff_t>(y) * rgba->pitch;
        for (int x = 0; x < inks.w; ++x, from += 4, to += 4) {
            for (int i = 0; i < 3; ++i) to[i] = scaled(from[i], from[3], 255);
            to[3] = 255;
        }
    }
    return rgba;
}

// The decoded picture in R, G, B, A bytes; takes the surface over. Null when memory is short.
SDL_Surface* toRgba(ImageKind kind, SDL_Surface* surface) {
    if (!surface || surface->format->format == SDL_PIXELFORMAT_RGBA32) return surface;
    const bool inks = kind == ImageKind::jpeg && surface->format->BytesPerPixel == 4;
    SDL_Surface* rgba = inks ? inksToRgba(*surface) : SDL_ConvertSurfaceFormat(surface, SDL_PIXELFORMAT_RGBA32, 0);
    SDL_FreeSurface(surface);
    return rgba;
}

// libtiff multiplies colours by alpha, also where the file keeps them apart.
void divideByAlpha(std::vector<uint8_t>& pixels) {
    for (size_t i = 0; i + 3 < pixels.size(); i += 4) {
        const int alpha = pixels[i + 3];
        if (alpha == 0 || alpha == 255) continue;
        for (size_t c = i; c < i + 3; ++c) pixels[c] = scaled(pixels[c], 255, alpha);
    }
}

// The fourth byte of a BMP's pixel is more often filler than alpha; on Windows it counts for nothing.
void makeOpaque(std::vector<uint8_t>& pixels) {
    for (size_t i = 3; i < pixels.size(); i += 4) pixels[i] = 255;
}

void copyRowsBottomUp(const SDL_Surface& surface, DecodedImage& image) {
    image.width = surface.w;
    image.height = surface.h;
    const size_t rowBytes = static_cast<size_t>(surface.w) * 4;
    image.pixels.resize(rowBytes * static_cast<size_t>(surface.h));
    const uint8_t* row = static_cast<const uint8_t*>(surface.pixels);
    uint8_t* target = image.pixels.data() + image.pixels.size();
    for (int y = 0; y < surface.h; ++y, row += surface.pitch) {
        target -= rowBytes;
        std::memcpy(target, row, rowBytes);
    }
}

} // namespace

void startImageDecoding() {
    // SDL_image prepares each kind's decoder when the first picture of that kind comes.
}

void stopImageDecoding() {
    IMG_Quit();
}

bool decodeImage(const std::string& path, DecodedImage& image, std::string& reason) {
    std::string bytes;
    ImageKind kind = ImageKind::unknown;
    image = DecodedImage();
    return readPicture(path, bytes, kind, reason) && decodePicture(bytes, image, reason);
}

bool decodePicture(const std::string& bytes, DecodedImage& image, std::string& reason) {
    image = DecodedImage();
    ImageKind kind = ImageKind::unknown;
    if (!checkPicture(bytes, kind, reason)) return false;
    SDL_Surface* surface = toRgba(kind, loadSurface(kind, bytes));
    if (!surface) {
        reason = std::string("broken: ") + IMG_GetError();
        return false;
    }
    const bool fits = fitsImageLimits(surface->w, surface->h);
    if (!fits) reason = imageTooLarge(surface->w, surface->h);
    else copyRowsBottomUp(*surface, image);
    SDL_FreeSurface(surface);
    if (kind == ImageKind::tiff) divideByAlpha(image.pixels);
    if (kind == ImageKind::bmp) makeOpaque(image.pixels);
    return fits;
}
