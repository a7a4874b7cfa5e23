// Which pictures are decoded, whatever decodes them.
#pragma once

#include "platform/image.h"
#include "platform/image_size.h"

#include <cstdint>
#include <string>
#include <string_view>

// Within the sides and the number of pixels that platform/image.h names.
bool fitsImageLimits(int64_t width, int64_t height);

// What is said of a picture that does not fit.
std::string imageTooLarge(int64_t width, int64_t height);

// Names the kind of a picture file's whole content. False, with `reason` in a few words, when by what it claims to be
// it is not even handed to a decoder. `objection` may be empty.
bool checkPicture(std::string_view bytes, const ImageObjection& objection, ImageKind& kind, std::string& reason);

// Reads the whole file, too.
bool readPicture(const std::string& path, const ImageObjection& objection, std::string& bytes, ImageKind& kind,
                 std::string& reason);
