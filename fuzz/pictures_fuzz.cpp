// A picture file of any kind, as decodeImage takes it.
#include "platform/linux/picture_bytes.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    DecodedImage image;
    std::string reason;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const bool decoded = decodePicture(bytes, image, reason);
    if (decoded != reason.empty() || decoded == image.pixels.empty()) std::abort();
    return 0;
}
