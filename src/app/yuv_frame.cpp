#include "app/yuv_frame.h"

namespace {

// All arithmetic is in 16 bits, of which the compiler makes vectors of 8 and more: a product keeps its high
// half. Weights have 15 fractional bits; a picture's 8 bits are moved up before they are multiplied.
constexpr int16_t weight(double value) {
    return static_cast<int16_t>(value * 32768.0 + (value < 0.0 ? -0.5 : 0.5));
}

constexpr double kLumaScale = 219.0 / 255.0;
constexpr double kChromaScale = 224.0 / 255.0;
// ITU-R BT.709; Cb = (B - Y) / 1.8556, Cr = (R - Y) / 1.5748.
constexpr double kRed = 0.2126, kGreen = 0.7152, kBlue = 0.0722;
constexpr int16_t kLuma[3] = {weight(kRed * kLumaScale), weight(kGreen* kLumaScale), weight(kBlue* kLumaScale)};
// The largest weight is what the others leave, so that greys have no colour.
constexpr int16_t kCb[2] = {weight(-kRed / 1.8556 * kChromaScale), weight(-kGreen / 1.8556 * kChromaScale)};
constexpr int16_t kCr[2] = {weight(-kGreen / 1.5748 * kChromaScale), weight(-kBlue / 1.5748 * kChromaScale)};
constexpr int16_t kCbBlue = static_cast<int16_t>(-kCb[0] - kCb[1]);
constexpr int16_t kCrRed = static_cast<int16_t>(-kCr[0] - kCr[1]);

inline int16_t highHalf(int16_t value, int16_t by) {
    return static_cast<int16_t>((static_cast<int32_t>(value) * by) >> 16);
}

// A weighted sum of three values of 15 bits: 8 bits with 6 fractional ones. Each high half is cut off, not
// rounded, by half a unit on average; `offset` makes up for that.
inline uint8_t mix(int16_t a, int16_t b, int16_t c, int16_t wa, int16_t wb, int16_t wc, int16_t offset) {
    const int16_t sum = static_cast<int16_t>(highHalf(a, wa) + highHalf(b, wb) + highHalf(c, wc) + offset);
    return static_cast<uint8_t>(sum >> 6);
}

constexpr int16_t kRounding = 32 + 1;
constexpr int16_t kLumaOffset = 16 * 64 + kRounding;
constexpr int16_t kChromaOffset = 128 * 64 + kRounding;

// One row of R, G and B, each `stride` long, values moved up by 7 bits. The columns beyond the picture
// repeat its edges: one before, up to two after.
struct RowPlanes {
    int16_t* r;
    int16_t* g;
    int16_t* b;
};

RowPlanes rowPlanes(YuvFrame& frame, int row, size_t stride) {
    int16_t* first = frame.rows.data() + static_cast<size_t>(row) * 3 * stride + 1;
    return {first, first + stride, first + 2 * stride};
}

void splitRow(const uint8_t* __restrict pixels, int width, const RowPlanes& planes) {
    int16_t* __restrict r = planes.r;
    int16_t* __restrict g = planes.g;
    int16_t* __restrict b = planes.b;
    for (ptrdiff_t x = 0; x < width; ++x) {
        b[x] = static_cast<int16_t>(pixels[4 * x] << 7);
        g[x] = static_cast<int16_t>(pixels[4 * x + 1] << 7);
        r[x] = static_cast<int16_t>(pixels[4 * x + 2] << 7);
    }
    for (int16_t* plane : {r, g, b}) {
        plane[-1] = plane[0];
        plane[width] = plane[width - 1];
    }
}

void writeLuma(const RowPlanes& planes, int width, uint8_t* __restrict luma) {
    const int16_t* __restrict r = planes.r;
    const int16_t* __restrict g = planes.g;
    const int16_t* __restrict b = planes.b;
    for (int x = 0; x < width; ++x) {
        luma[x] = mix(r[x], g[x], b[x], kLuma[0], kLuma[1], kLuma[2], kLumaOffset);
    }
}

// Adds the row below into the upper one, at half the weight each.
void averageRows(const RowPlanes& upper, const RowPlanes& lower, int width) {
    const int16_t* below[3] = {lower.r, lower.g, lower.b};
    int16_t* above[3] = {upper.r, upper.g, upper.b};
    for (int plane = 0; plane < 3; ++plane) {
        int16_t* __restrict to = above[plane];
        const int16_t* __restrict from = below[plane];
        for (int x = -1; x <= width; ++x) to[x] = static_cast<int16_t>((to[x] >> 1) + (from[x] >> 1));
    }
}

inline int16_t across(const int16_t* plane, ptrdiff_t x) {
    return static_cast<int16_t>((plane[2 * x - 1] >> 2) + (plane[2 * x] >> 1) + (plane[2 * x + 1] >> 2));
}

void writeChroma(const RowPlanes& planes, int pairs, uint8_t* __restrict cb, uint8_t* __restrict cr) {
    const int16_t* __restrict r = planes.r;
    const int16_t* __restrict g = planes.g;
    const int16_t* __restrict b = planes.b;
    for (int x = 0; x < pairs; ++x) {
        const int16_t red = across(r, x), green = across(g, x), blue = across(b, x);
        cb[x] = mix(red, green, blue, kCb[0], kCb[1], kCbBlue, kChromaOffset);
        cr[x] = mix(red, green, blue, kCrRed, kCr[0], kCr[1], kChromaOffset);
    }
}

} // namespace

int evenSide(int side) {
    return side + (side & 1);
}

void convertFrame(YuvFrame& frame, const uint8_t* pixels, int width, int height) {
    const int evenWidth = evenSide(width), evenHeight = evenSide(height);
    const size_t stride = static_cast<size_t>(evenWidth) + 2;
    const size_t lumaBytes = static_cast<size_t>(evenWidth) * static_cast<size_t>(evenHeight);
    frame.width = width;
    frame.height = height;
    frame.rows.resize(6 * stride);
    frame.planes.resize(lumaBytes + lumaBytes / 2);

    const RowPlanes upper = rowPlanes(frame, 0, stride), lower = rowPlanes(frame, 1, stride);
    const size_t rowBytes = static_cast<size_t>(width) * 4;
    uint8_t* luma = frame.planes.data();
    uint8_t* cb = luma + lumaBytes;
    uint8_t* cr = cb + lumaBytes / 4;
    for (int y = 0; y < evenHeight; y += 2) {
        const uint8_t* row = pixels + static_cast<size_t>(height - 1 - y) * rowBytes;
        splitRow(row, width, upper);
        splitRow(y + 1 < height ? row - rowBytes : row, width, lower);
        writeLuma(upper, evenWidth, luma);
        writeLuma(lower, evenWidth, luma + evenWidth);
        averageRows(upper, lower, evenWidth);
        writeChroma(upper, evenWidth / 2, cb, cr);
        luma += 2 * static_cast<ptrdiff_t>(evenWidth);
        cb += evenWidth / 2;
        cr += evenWidth / 2;
    }
}
