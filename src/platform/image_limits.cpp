#include "platform/image_limits.h"

#include "platform/files.h"

namespace {

// Why a file that claims this is left alone; empty when it is not.
std::string faultOf(const ImageSize& claimed) {
    if (claimed.kind == ImageKind::unknown) return "not a picture of a known kind";
    if (claimed.width <= 0 || claimed.height <= 0) return "broken: no size";
    if (!fitsImageLimits(claimed.width, claimed.height)) return imageTooLarge(claimed.width, claimed.height);
    return claimed.safe ? "" : "broken: cut short or misshapen";
}

} // namespace

bool fitsImageLimits(int64_t width, int64_t height) {
    return width > 0 && height > 0 && width <= kMaxImageSide && height <= kMaxImageSide &&
           width * height <= kMaxImagePixels;
}

std::string imageTooLarge(int64_t width, int64_t height) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels is too large";
}

bool checkPicture(std::string_view bytes, const ImageObjection& objection, ImageKind& kind, std::string& reason) {
    const ImageSize claimed = readImageSize(bytes);
    kind = claimed.kind;
    reason = faultOf(claimed);
    if (reason.empty() && objection) {
        reason = objection(static_cast<int>(claimed.width), static_cast<int>(claimed.height));
    }
    return reason.empty();
}

bool readPicture(const std::string& path, const ImageObjection& objection, std::string& bytes, ImageKind& kind,
                 std::string& reason) {
    if (!readFile(path, bytes)) {
        reason = isRegularFile(path) ? "cannot be read" : "no such file";
        return false;
    }
    return checkPicture(bytes, objection, kind, reason);
}
