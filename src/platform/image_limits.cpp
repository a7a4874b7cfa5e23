#include "platform/image_limits.h"

#include "platform/image.h"

bool fitsImageLimits(int64_t width, int64_t height) {
    return width > 0 && height > 0 && width <= kMaxImageSide && height <= kMaxImageSide &&
           width * height <= kMaxImagePixels;
}

std::string imageTooLarge(int64_t width, int64_t height) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels is too large";
}

std::string imageObjection(const ImageSize& claimed) {
    if (claimed.kind == ImageKind::unknown) return "not a picture of a known kind";
    if (claimed.width <= 0 || claimed.height <= 0) return "broken: no size";
    if (!fitsImageLimits(claimed.width, claimed.height)) return imageTooLarge(claimed.width, claimed.height);
    return claimed.safe ? "" : "broken: cut short or misshapen";
}
