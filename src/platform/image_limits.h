// Which pictures are decoded, whatever decodes them.
#pragma once

#include "platform/image_size.h"

#include <cstdint>
#include <string>

// Within the sides and the number of pixels that platform/image.h names.
bool fitsImageLimits(int64_t width, int64_t height);

// What is said of a picture that does not fit.
std::string imageTooLarge(int64_t width, int64_t height);

// Why a file that claims this is not even handed to a decoder, in a few words; empty when it may be.
std::string imageObjection(const ImageSize& claimed);
