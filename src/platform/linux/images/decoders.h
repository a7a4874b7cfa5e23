// One decoder a kind of picture, each by the format's own library, and what they share.
#pragma once

#include "platform/image.h"

#include <string>
#include <string_view>

// As decodeImage, from a file's whole content.
bool decodePicture(std::string_view bytes, DecodedImage& image, std::string& reason,
                   const ImageObjection& objection = {});

// Each takes a file of its kind whose claims checkPicture has found no fault with. False with `reason` in a few words,
// or with an empty one where the library said nothing; what `image` holds then is of no use.
bool decodePng(std::string_view bytes, DecodedImage& image, std::string& reason);
bool decodeJpeg(std::string_view bytes, DecodedImage& image, std::string& reason);
bool decodeBmp(std::string_view bytes, DecodedImage& image, std::string& reason);
bool decodeGif(std::string_view bytes, DecodedImage& image, std::string& reason);
bool decodeTiff(std::string_view bytes, DecodedImage& image, std::string& reason);
bool decodeWebp(std::string_view bytes, DecodedImage& image, std::string& reason);

// Makes `image` that large, black and clear. False, with `reason`, beyond what is decoded at all.
bool makePicture(int64_t width, int64_t height, DecodedImage& image, std::string& reason);

// Row `y` of the picture counted from its top, of width * 4 bytes.
uint8_t* rowFromTop(DecodedImage& image, int y);

// value * by / of to the nearest, 255 at most.
uint8_t scaled(uint32_t value, uint32_t by, uint32_t of);
