// Image decoding and PNG encoding: by the formats' own libraries on Linux, by GDI+ on Windows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The largest picture that is decoded, per side and in all, so that a small file cannot claim the
// machine's memory.
constexpr int kMaxImageSide = 16384;
constexpr int64_t kMaxImagePixels = 1LL << 27;

// Tightly packed R, G, B, A bytes, not premultiplied; the first row is the bottom row of the picture,
// as OpenGL's lower-left origin expects.
struct DecodedImage {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> pixels; // width * height * 4
};

// Before the first and after the last decodeImage.
void startImageDecoding();
void stopImageDecoding();

// Why a picture of that size is not wanted; empty when it is. Asked before anything of that size is allocated.
using ImageObjection = std::function<std::string(int width, int height)>;

// False, with `image` empty, when the file is missing, no picture, broken, too large or not wanted; `reason` then
// says which in a few words. Of an animation only the first frame is looked at. What the decoding
// takes stays within 32 bytes a pixel and 64 MB, 2 s a megapixel and 1 s.
bool decodeImage(const std::string& path, DecodedImage& image, std::string& reason,
                 const ImageObjection& objection = {});

// How a picture of four bytes a pixel lies in memory.
struct PixelLayout {
    bool bottomFirst = false; // its rows, instead of the top one first
    bool blueFirst = false;   // B, G, R, A instead of R, G, B, A
};

// Encodes tightly packed rows as PNG into `bytes`; without alpha the picture is 24-bit RGB. False when the
// encoder fails.
bool encodePng(const uint8_t* pixels, int width, int height, bool withAlpha, std::string& bytes,
               PixelLayout layout = {});
