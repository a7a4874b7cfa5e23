#include "platform/image.h"

#include "platform/image_limits.h"
#include "platform/linux/images/decoders.h"

#include <algorithm>
#include <cstddef>

namespace {

bool decodeKind(ImageKind kind, std::string_view bytes, DecodedImage& image, std::string& reason) {
    switch (kind) {
    case ImageKind::unknown: break;
    case ImageKind::png: return decodePng(bytes, image, reason);
    case ImageKind::jpeg: return decodeJpeg(bytes, image, reason);
    case ImageKind::bmp: return decodeBmp(bytes, image, reason);
    case ImageKind::gif: return decodeGif(bytes, image, reason);
    case ImageKind::tiff: return decodeTiff(bytes, image, reason);
    case ImageKind::webp: return decodeWebp(bytes, image, reason);
    }
    return false;
}

bool decodeChecked(ImageKind kind, std::string_view bytes, DecodedImage& image, std::string& reason) {
    if (decodeKind(kind, bytes, image, reason)) return true;
    image = DecodedImage();
    if (reason.empty()) reason = "broken: the decoder gave up";
    return false;
}

} // namespace

void startImageDecoding() {
    // The libraries need no preparation.
}

void stopImageDecoding() {}

bool decodeImage(const std::string& path, DecodedImage& image, std::string& reason, const ImageObjection& objection) {
    image = DecodedImage();
    std::string bytes;
    ImageKind kind = ImageKind::unknown;
    return readPicture(path, objection, bytes, kind, reason) && decodeChecked(kind, bytes, image, reason);
}

bool decodePicture(std::string_view bytes, DecodedImage& image, std::string& reason, const ImageObjection& objection) {
    image = DecodedImage();
    ImageKind kind = ImageKind::unknown;
    return checkPicture(bytes, objection, kind, reason) && decodeChecked(kind, bytes, image, reason);
}

bool makePicture(int64_t width, int64_t height, DecodedImage& image, std::string& reason) {
    if (!fitsImageLimits(width, height)) {
        reason = imageTooLarge(width, height);
        return false;
    }
    image.width = static_cast<int>(width);
    image.height = static_cast<int>(height);
    image.pixels.assign(static_cast<size_t>(width * height * 4), 0);
    return true;
}

uint8_t* rowFromTop(DecodedImage& image, int y) {
    return image.pixels.data() + (image.height - 1 - y) * static_cast<ptrdiff_t>(image.width) * 4;
}

uint8_t scaled(uint32_t value, uint32_t by, uint32_t of) {
    return static_cast<uint8_t>(std::min(255u, (value * by + of / 2) / of));
}
