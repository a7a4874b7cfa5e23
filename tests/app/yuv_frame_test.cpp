#include "app/yuv_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace {

using Triple = std::array<double, 3>;

struct Picture {
    int width, height;
    std::vector<uint8_t> bgra; // bottom row first
};

// Every byte drawn at random, many at the ends of the range; alpha too, which must not matter.
Picture noise(int width, int height) {
    Picture picture{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 4)};
    std::mt19937 random(1);
    for (uint8_t& byte : picture.bgra) {
        byte = static_cast<uint8_t>(std::clamp(static_cast<int>(random() % 768) - 256, 0, 255));
    }
    return picture;
}

// Y, Cb, Cr of BT.709 in limited range, exactly, at a place from the top left; places outside show the edge.
Triple yuvAt(const Picture& picture, int x, int y) {
    x = std::clamp(x, 0, picture.width - 1);
    y = picture.height - 1 - std::clamp(y, 0, picture.height - 1);
    const uint8_t* pixel = &picture.bgra[(static_cast<size_t>(y) * picture.width + x) * 4];
    const double b = pixel[0] / 255.0, g = pixel[1] / 255.0, r = pixel[2] / 255.0;
    const double luma = 0.2126 * r + 0.7152 * g + 0.0722 * b;
    return {16 + 219 * luma, 128 + 224 * (b - luma) / 1.8556, 128 + 224 * (r - luma) / 1.5748};
}

// Chroma lies on the left column of a pair of columns and between two rows.
Triple chromaAt(const Picture& picture, int pairX, int pairY) {
    Triple sum = {};
    for (const auto& [x, weight] : {std::pair{-1, 0.125}, {0, 0.25}, {1, 0.125}}) {
        for (int y = 0; y < 2; ++y) {
            const Triple yuv = yuvAt(picture, 2 * pairX + x, 2 * pairY + y);
            for (int i = 0; i < 3; ++i) sum[i] += yuv[i] * weight;
        }
    }
    return sum;
}

TEST(YuvFrame, MatchesTheExactConversionAtEverySize) {
    const int sizes[][2] = {{2, 2}, {1, 1}, {3, 2}, {2, 3}, {5, 7}, {31, 4}, {256, 2}, {257, 65}, {1280, 6}};
    YuvFrame frame; // one for all, as sizes may change under it
    for (const auto& [width, height] : sizes) {
        SCOPED_TRACE(std::to_string(width) + "x" + std::to_string(height));
        Picture picture = noise(width, height);
        if (width == 256) { // all greys, each in a square
            for (size_t i = 0; i < picture.bgra.size(); ++i) picture.bgra[i] = static_cast<uint8_t>(i / 8 * 2);
        }
        convertFrame(frame, picture.bgra.data(), width, height);
        const int evenWidth = evenSide(width), pairs = evenWidth / 2, pairRows = evenSide(height) / 2;
        ASSERT_EQ(frame.planes.size(), static_cast<size_t>(pairs) * pairRows * 6);
        const uint8_t* cb = frame.planes.data() + pairs * pairRows * 4;
        const uint8_t* cr = cb + pairs * pairRows;
        double worst = 0.0;
        for (int y = 0; y < 2 * pairRows; ++y) {
            for (int x = 0; x < evenWidth; ++x) {
                const Triple chroma = chromaAt(picture, x / 2, y / 2);
                const int at = y / 2 * pairs + x / 2;
                worst = std::max({worst, std::abs(frame.planes[y * evenWidth + x] - yuvAt(picture, x, y)[0]),
                                  std::abs(cb[at] - chroma[1]), std::abs(cr[at] - chroma[2])});
            }
        }
        EXPECT_LT(worst, 0.6);
    }
}

} // namespace
