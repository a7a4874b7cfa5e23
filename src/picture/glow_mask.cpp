#include "picture/glow_mask.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kReachShare = 0.38f; // of the mask's shorter side: three of the widest spreads, and some air
constexpr float kSpreads[] = {0.115f, 0.036f, 0.012f}; // standard deviations, of the same side
constexpr int kBoxPasses = 3;                          // as good as a Gaussian, and dark beyond three spreads

struct Field {
    int width = 0;
    int height = 0;
    std::vector<float> values;
};

// How a field lies over its mask.
struct Grid {
    int reach = 0; // texels of the mask beyond each of its sides
    int step = 1;  // texels of the mask to one of the field, each way
    int width = 0; // texels of the field
    int height = 0;
};

Grid gridFor(int maskWidth, int maskHeight) {
    Grid grid;
    grid.reach = static_cast<int>(std::lround(static_cast<float>(std::min(maskWidth, maskHeight)) * kReachShare));
    const int width = maskWidth + 2 * grid.reach, height = maskHeight + 2 * grid.reach;
    grid.step = (std::max(width, height) + kMaxGlowSide - 1) / kMaxGlowSide;
    grid.width = (width + grid.step - 1) / grid.step;
    grid.height = (height + grid.step - 1) / grid.step;
    return grid;
}

// The mask, padded and averaged over squares.
Field shrink(const SvgMask& mask, const Grid& grid) {
    const int reach = grid.reach, step = grid.step;
    Field field = {grid.width, grid.height, {}};
    field.values.resize(static_cast<size_t>(field.width) * static_cast<size_t>(field.height));
    const float share = 1.0f / static_cast<float>(step * step * 255);
    for (int y = 0; y < mask.height; ++y) {
        const uint8_t* row = mask.pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(mask.width) * 4;
        float* out = field.values.data() + static_cast<size_t>((y + reach) / step) * static_cast<size_t>(field.width);
        for (int x = 0; x < mask.width;) {
            const int column = (x + reach) / step;
            int sum = 0;
            const int end = std::min((column + 1) * step - reach, mask.width);
            for (; x < end; ++x) sum += row[4 * static_cast<size_t>(x)];
            out[column] += static_cast<float>(sum) * share;
        }
    }
    return field;
}

// A running mean over 2 * radius + 1 values that lie `stride` apart; outside is dark.
void boxBlur(const float* in, float* out, ptrdiff_t count, ptrdiff_t stride, ptrdiff_t radius) {
    const float share = 1.0f / static_cast<float>(2 * radius + 1);
    float sum = 0.0f;
    for (ptrdiff_t i = 0; i < std::min(radius, count); ++i) sum += in[i * stride];
    for (ptrdiff_t i = 0; i < count; ++i) {
        if (i + radius < count) sum += in[(i + radius) * stride];
        if (i - radius > 0) sum -= in[(i - radius - 1) * stride];
        out[i * stride] = sum * share;
    }
}

// `spread`: standard deviation in texels.
Field blur(Field field, float spread) {
    const float side = std::sqrt(12.0f * spread * spread / kBoxPasses + 1.0f); // of boxes with that variance
    const int radius = std::max(static_cast<int>(std::lround((side - 1.0f) * 0.5f)), 1);
    std::vector<float> other(field.values.size());
    for (int pass = 0; pass < kBoxPasses; ++pass) {
        for (int y = 0; y < field.height; ++y) {
            const size_t row = static_cast<size_t>(y) * static_cast<size_t>(field.width);
            boxBlur(field.values.data() + row, other.data() + row, field.width, 1, radius);
        }
        for (int x = 0; x < field.width; ++x) {
            boxBlur(other.data() + x, field.values.data() + x, field.height, field.width, radius);
        }
    }
    return field;
}

} // namespace

GlowPlace glowPlace(int maskWidth, int maskHeight) {
    const Grid grid = gridFor(maskWidth, maskHeight);
    const float width = static_cast<float>(grid.width * grid.step);
    const float height = static_cast<float>(grid.height * grid.step);
    const float reach = static_cast<float>(grid.reach);
    return {static_cast<float>(maskWidth) / width, static_cast<float>(maskHeight) / height, reach / width,
            reach / height};
}

GlowMask makeGlowMask(const SvgMask& mask) {
    const Grid grid = gridFor(mask.width, mask.height);
    const Field sharp = shrink(mask, grid);
    const float side = static_cast<float>(std::min(mask.width, mask.height)) / static_cast<float>(grid.step);
    GlowMask glow = {sharp.width, sharp.height, std::vector<uint8_t>(sharp.values.size() * 4, 255)};
    for (size_t channel = 0; channel < std::size(kSpreads); ++channel) {
        const Field soft = blur(sharp, kSpreads[channel] * side);
        for (size_t i = 0; i < soft.values.size(); ++i) {
            const float value = std::sqrt(std::clamp(soft.values[i], 0.0f, 1.0f));
            glow.pixels[4 * i + channel] = static_cast<uint8_t>(std::lround(value * 255.0f));
        }
    }
    return glow;
}
