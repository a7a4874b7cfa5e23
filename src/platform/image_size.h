// What the first bytes of a picture file say: its kind and the size that it claims, read before a
// decoder allocates what they ask for.
#pragma once

#include <cstdint>
#include <string_view>

enum class ImageKind { unknown, png, jpeg, bmp, gif, tiff, webp };

// Width and height are 0 where the header is cut short or breaks the format's rules. For kinds with
// more than one size inside (GIF frames, TIFF tiles) each is the largest that a decoder needs to hold.
struct ImageSize {
    ImageKind kind = ImageKind::unknown;
    int64_t width = 0;
    int64_t height = 0;
};

// `bytes` is the file's whole content: JPEG and TIFF keep the size anywhere.
ImageSize readImageSize(std::string_view bytes);
