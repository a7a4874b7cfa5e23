#include "platform/linux/images/decoders.h"

#include <gif_lib.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

struct Color {
    uint8_t r = 0, g = 0, b = 0, a = 0;
};

int readBytes(GifFileType* gif, GifByteType* target, int count) {
    auto& rest = *static_cast<std::string_view*>(gif->UserData);
    const size_t given = std::min(rest.size(), static_cast<size_t>(count));
    std::memcpy(target, rest.data(), given);
    rest.remove_prefix(given);
    return static_cast<int>(given);
}

// Passes over an extension; a graphics control in it may name the index that is transparent.
bool readExtension(GifFileType* gif, int& transparent) {
    int label = 0;
    GifByteType* block = nullptr; // its length, then that many bytes
    if (DGifGetExtension(gif, &label, &block) == GIF_ERROR) return false;
    GraphicsControlBlock control;
    if (label == GRAPHICS_EXT_FUNC_CODE && block && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK &&
        control.TransparentColor != NO_TRANSPARENT_COLOR) {
        transparent = control.TransparentColor;
    }
    while (block) {
        if (DGifGetExtensionNext(gif, &block) == GIF_ERROR) return false;
    }
    return true;
}

// Goes on to the first frame, past bytes that begin no block; the other frames are never looked at.
bool findFrame(GifFileType* gif, int& transparent) {
    for (;;) {
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif, &record) == GIF_ERROR) {
            if (gif->Error != D_GIF_ERR_WRONG_RECORD) return false;
        } else if (record == IMAGE_DESC_RECORD_TYPE) {
            return DGifGetImageHeader(gif) == GIF_OK;
        } else if (record != EXTENSION_RECORD_TYPE || !readExtension(gif, transparent)) {
            return false;
        }
    }
}

// What every index looks like; indices that the palette lacks are black.
std::vector<Color> paletteOf(const GifFileType& gif, int transparent) {
    std::vector<Color> palette(256, {0, 0, 0, 255});
    const ColorMapObject* map = gif.Image.ColorMap ? gif.Image.ColorMap : gif.SColorMap;
    for (int i = 0; map && i < std::min(map->ColorCount, 256); ++i) {
        palette[static_cast<size_t>(i)] = {map->Colors[i].Red, map->Colors[i].Green, map->Colors[i].Blue, 255};
    }
    if (transparent >= 0) palette[static_cast<size_t>(transparent)].a = 0;
    return palette;
}

// The frame's rows in the order in which the file has them.
std::vector<int> rowOrder(const GifImageDesc& frame) {
    std::vector<int> order;
    order.reserve(static_cast<size_t>(frame.Height));
    if (frame.Interlace) {
        constexpr struct { int first, step; } kPasses[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
        for (const auto& pass : kPasses) {
            for (int y = pass.first; y < frame.Height; y += pass.step) order.push_back(y);
        }
    } else {
        for (int y = 0; y < frame.Height; ++y) order.push_back(y);
    }
    return order;
}

void copyColors(const std::vector<GifPixelType>& indices, const std::vector<Color>& palette, uint8_t* to) {
    for (size_t x = 0; x < indices.size(); ++x) std::memcpy(to + x * 4, &palette[indices[x]], 4);
}

// What a cut or broken file lacks is of the first colour.
bool readFrame(GifFileType* gif, int transparent, DecodedImage& image, std::string& reason) {
    const GifImageDesc& frame = gif->Image;
    if (!makePicture(frame.Width, frame.Height, image, reason)) return false;
    const std::vector<Color> palette = paletteOf(*gif, transparent);
    std::vector<GifPixelType> indices(static_cast<size_t>(frame.Width));
    bool going = true;
    for (const int y : rowOrder(frame)) {
        std::fill(indices.begin(), indices.end(), GifPixelType{0});
        going = going && DGifGetLine(gif, indices.data(), frame.Width) == GIF_OK;
        copyColors(indices, palette, rowFromTop(image, y));
    }
    return true;
}

} // namespace

bool decodeGif(std::string_view bytes, DecodedImage& image, std::string& reason) {
    int error = D_GIF_SUCCEEDED;
    int transparent = NO_TRANSPARENT_COLOR;
    GifFileType* gif = DGifOpen(&bytes, readBytes, &error);
    const bool decoded = gif && findFrame(gif, transparent) && readFrame(gif, transparent, image, reason);
    if (gif && gif->Error != D_GIF_SUCCEEDED) error = gif->Error;
    if (!decoded && reason.empty() && GifErrorString(error)) reason = std::string("broken: ") + GifErrorString(error);
    if (gif) DGifCloseFile(gif, nullptr);
    return decoded;
}
