#include "app/yuv_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

struct Picture {
    int width, height;
    std::vector<uint8_t> bgra; // bottom row first
};

// Every byte drawn from a fixed sequence; alpha too, which must not matter.
Picture noise(int width, int height) {
    Picture picture{width, height, std::vector<uint8_t>(static_cast<size_t>(width) * height * 4)};
    uint32_t state = 1;
    for (uint8_t& byte : picture.bgra) byte = static_cast<uint8_t>((state = state * 1664525u + 1013904223u) >> 24);
    return picture;
}

// R, G, B at a place counted from the top left; places outside show the edge.
std::array<double, 3> colorAt(const Picture& picture, int x, int y) {
    x = std::clamp(x, 0, picture.width - 1);
    y = picture.height - 1 - std::clamp(y, 0, picture.height - 1);
    const uint8_t* pixel = &picture.bgra[(static_cast<size_t>(y) * picture.width + x) * 4];
    return {pixel[2] / 255.0, pixel[1] / 255.0, pixel[0] / 255.0};
}

// Y, Cb, Cr of BT.709 in limited range, exactly.
std::array<double, 3> toYuv(const std::array<double, 3>& c) {
    const double y = 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2];
    return {16 + 219 * y, 128 + 224 * (c[2] - y) / 1.8556, 128 + 224 * (c[0] - y) / 1.5748};
}

// Chroma lies on the left column of a pair of columns and between two rows.
std::array<double, 3> chromaColor(const Picture& picture, int pairX, int pairY) {
    std::array<double, 3> sum = {};
    for (int y = 0; y < 2; ++y) {
        for (int x = -1; x < 2; ++x) {
            const std::array<double, 3> color = colorAt(picture, 2 * pairX + x, 2 * pairY + y);
            for (int i = 0; i < 3; ++i) sum[i] += color[i] * (x == 0 ? 2 : 1) / 8.0;
        }
    }
    return sum;
}

TEST(YuvFrame, MatchesTheExactConversionAtEverySize) {
    const int sizes[][2] = {{2, 2}, {1, 1}, {3, 2}, {2, 3}, {5, 7}, {31, 4}, {64, 33}, {257, 65}, {1280, 6}};
    YuvFrame frame; // one for all, as sizes may change under it
    for (const auto& [width, height] : sizes) {
        SCOPED_TRACE(std::to_string(width) + "x" + std::to_string(height));
        const Picture picture = noise(width, height);
        convertFrame(frame, picture.bgra.data(), width, height);
        const int evenWidth = evenSide(width), evenHeight = evenSide(height), pairs = evenWidth / 2;
        ASSERT_EQ(frame.planes.size(), static_cast<size_t>(evenWidth) * evenHeight * 3 / 2);
        double worst = 0.0;
        for (int y = 0; y < evenHeight; ++y) {
            for (int x = 0; x < evenWidth; ++x) {
                worst = std::max(worst, std::abs(frame.planes[y * evenWidth + x] - toYuv(colorAt(picture, x, y))[0]));
            }
        }
        const uint8_t* cb = frame.planes.data() + evenWidth * evenHeight;
        const uint8_t* cr = cb + pairs * evenHeight / 2;
        for (int y = 0; y < evenHeight / 2; ++y) {
            for (int x = 0; x < pairs; ++x) {
                const std::array<double, 3> exact = toYuv(chromaColor(picture, x, y));
                worst = std::max({worst, std::abs(cb[y * pairs + x] - exact[1]), std::abs(cr[y * pairs + x] - exact[2])});
            }
        }
        EXPECT_LT(worst, 0.6);
    }
}

TEST(YuvFrame, KeepsGreysGreyAndEndsAtTheLimits) {
    YuvFrame frame;
    for (int grey = 0; grey < 256; ++grey) {
        const std::vector<uint8_t> bgra(16, static_cast<uint8_t>(grey));
        convertFrame(frame, bgra.data(), 2, 2);
        EXPECT_LT(std::abs(frame.planes[0] - (16 + 219 * grey / 255.0)), 0.6) << grey;
        EXPECT_EQ(frame.planes[4], 128) << grey;
        EXPECT_EQ(frame.planes[5], 128) << grey;
    }
    const uint8_t blue[] = {255, 0, 0, 0}, red[] = {0, 0, 255, 0}, yellow[] = {0, 255, 255, 0};
    const struct {
        const uint8_t* bgra;
        size_t plane;
        int value;
    } limits[] = {{blue, 4, 240}, {yellow, 4, 16}, {red, 5, 240}};
    for (const auto& limit : limits) {
        convertFrame(frame, limit.bgra, 1, 1);
        EXPECT_EQ(frame.planes[limit.plane], limit.value);
    }
}

} // namespace
