// Which pictures are decoded, whatever decodes them.
#pragma once

#include "platform/image_size.h"

#include <cstdint>
#include <string>

// Within the sides and the number of pixels that platform/image.h names.
bool fitsImageLimits(int64_t width, int64_t height);

// What is said of a picture that does not fit.
std::string imageTooLarge(int64_t width, int64_t height);

// Reads the whole file and its kind. False, with `reason` in a few words, when it cannot be read, or when by what
// it claims to be it is not even handed to a decoder.
bool readPicture(const std::string& path, std::string& bytes, ImageKind& kind, std::string& reason);
