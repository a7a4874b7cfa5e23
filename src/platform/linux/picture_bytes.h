// decodeImage without the file: for tests and fuzzing.
#pragma once

#include "platform/image.h"

// As decodeImage, from a file's whole content.
bool decodePicture(const std::string& bytes, DecodedImage& image, std::string& reason);
