// What a picture file says about itself: its kind and the size that it claims, read before a decoder
// allocates what the file asks for.
#pragma once

#include <cstdint>
#include <string_view>

enum class ImageKind { unknown, png, jpeg, bmp, gif, tiff, webp };

// The size of the picture that is shown, 0 where the file names none. Of a GIF, of which the first frame is shown, each
// is that of its screen where that is larger: decoders may hold that, too.
struct ImageSize {
    ImageKind kind = ImageKind::unknown;
    int64_t width = 0;
    int64_t height = 0;
    bool safe = true; // false: cut short or built such that decoders would run on or take too much memory
};

// `bytes` is the file's whole content: JPEG and TIFF keep the size anywhere.
ImageSize readImageSize(std::string_view bytes);
