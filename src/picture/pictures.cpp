#include "picture/pictures.h"

#include "foundation/text.h"
#include "picture/glow_mask.h"
#include "picture/svg_mask.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

// A tall drawing is as high as a wide one is wide.
int pictureWidth(const SvgBounds& bounds) {
    const float aspect = (bounds.maxX - bounds.minX) / (bounds.maxY - bounds.minY);
    return aspect < 1.0f ? static_cast<int>(std::round(std::max(aspect, 0.0f) * kPictureSide)) : kPictureSide;
}

void flipRows(SvgMask& mask) {
    const auto row = static_cast<ptrdiff_t>(mask.width) * 4;
    for (int top = 0, bottom = mask.height - 1; top < bottom; ++top, --bottom) {
        const auto first = mask.pixels.begin() + top * row;
        std::swap_ranges(first, first + row, mask.pixels.begin() + bottom * row);
    }
}

} // namespace

TextureInfo loadPicture(TextureCache& textures, const std::string& path) {
    if (!endsWith(toLower(path), ".svg")) return loadTexture(textures, path);
    if (const TextureInfo* found = findTexture(textures, path)) return *found;
    SvgDrawing drawing;
    SvgMask mask;
    if (!loadSvg(path, "", drawing) || !rasterizeDrawing(drawing, pictureWidth(drawing.bounds), kPictureSide, mask)) {
        return reportMissingTexture(path);
    }
    flipRows(mask);
    return addTexture(textures, path, path, mask.pixels.data(), mask.width, mask.height);
}

bool loadLogo(TextureCache& textures, const std::string& svgPath, const std::string& baseDir, int width, int height,
              bool withGlow, LogoTextures& logo) {
    logo = {};
    const std::string path = resolveSvgPath(svgPath, baseDir);
    const std::string key = path + "\nmask " + std::to_string(width) + "x" + std::to_string(height);
    const std::string glowKey = key + " glow";
    if (const TextureInfo* mask = findTexture(textures, key)) logo.mask = *mask;
    if (const TextureInfo* glow = findTexture(textures, glowKey); glow && withGlow) logo.glow = *glow;
    if (!logo.mask.texture || (withGlow && !logo.glow.texture)) {
        SvgMask mask;
        if (!rasterizeSvg(svgPath, baseDir, width, height, mask)) return false;
        if (!logo.mask.texture)
            logo.mask = addTexture(textures, key, path, mask.pixels.data(), mask.width, mask.height);
        if (!logo.mask.texture) return false;
        if (withGlow) {
            const GlowMask glow = makeGlowMask(mask);
            logo.glow = addTexture(textures, glowKey, path + " (glow)", glow.pixels.data(), glow.width, glow.height);
        }
    }
    if (logo.glow.texture) logo.glowPlace = glowPlace(logo.mask.width, logo.mask.height);
    return true;
}
