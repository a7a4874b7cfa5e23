// Frames as encoders take them: rows of pixels to planar Y'CbCr 4:2:0, BT.709, limited range.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Scratch and result of one size; nothing is allocated after the first frame.
struct YuvFrame {
    int width = 0; // pixels of the picture
    int height = 0;
    std::vector<int16_t> rows;   // scratch: two rows of R, G and B, and their column sums
    std::vector<uint8_t> planes; // Y, then Cb, then Cr
};

// 4:2:0 needs even sides: an odd last row or column is there twice.
int evenSide(int side);

// Converts width * height pixels of B, G, R, A bytes, bottom row first, into `frame.planes`, top row first;
// alpha is ignored. Chroma is sited as H.264 and VP9 decoders expect: on the left column of each pair, between its
// two rows, hence weights of 1, 2, 1 across and 1, 1 down. Every value is within 0.6 of the exact one.
void convertFrame(YuvFrame& frame, const uint8_t* pixels, int width, int height);
