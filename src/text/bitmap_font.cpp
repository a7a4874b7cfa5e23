#include "text/bitmap_font.h"

#include "config/paths.h"
#include "foundation/json.h"
#include "foundation/log.h"
#include "gpu/shader_pack.h"
#include "text/fonts.h"

#include <algorithm>
#include <array>
#include <vector>

namespace {

struct BitmapGlyph {
    int code = 0;
    std::array<GLint, kBitmapGlyphRows> rows{}; // top first
};

std::string findFont(const std::string& baseDir) {
    const std::string inResources = joinPath(joinPath(baseDir, "DemoSceneResources"), "assets");
    for (const std::string& assets : {inResources, joinPath(baseDir, "assets")}) {
        std::string path = joinPath(joinPath(assets, "fonts"), "bitmapfont.json");
        if (fileExists(path)) return path;
    }
    return {};
}

// False for an element that is no glyph.
bool readGlyph(const JsonValue& json, BitmapGlyph& glyph) {
    const JsonValue& rows = find(json, "rows");
    if (rows.kind != JsonKind::array || rows.items.size() < kBitmapGlyphRows) return false;
    glyph.code = getInt(find(json, "code"), -1);
    for (size_t r = 0; r < kBitmapGlyphRows; ++r) glyph.rows[r] = getInt(rows.items[r], 0);
    return glyph.code >= 0;
}

std::vector<BitmapGlyph> readGlyphs(const JsonValue& root, const std::string& path) {
    GLint widest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &widest);
    const int lastCode = widest / kBitmapGlyphRows - 1;
    std::vector<BitmapGlyph> glyphs;
    int leftOut = 0;
    for (const JsonValue& element : root.items) {
        BitmapGlyph glyph;
        if (!readGlyph(element, glyph)) continue;
        if (glyph.code <= lastCode) {
            glyphs.push_back(glyph);
        } else {
            ++leftOut;
        }
    }
    if (leftOut > 0) {
        logLine("[FONT] %s: %d glyphs left out, codes above %d do not fit the driver's textures\n", path.c_str(),
                leftOut, lastCode);
    }
    return glyphs;
}

} // namespace

void loadBitmapFont(Fonts& fonts, const std::string& baseDir) {
    const std::string path = findFont(baseDir);
    if (path.empty()) {
        logLine("[FONT] bitmapfont.json not found\n");
        return;
    }
    const JsonValue root = parseJsonFile(readTextFile(path).c_str(), path);
    if (root.kind != JsonKind::array) return;
    const std::vector<BitmapGlyph> glyphs = readGlyphs(root, path);
    if (glyphs.empty()) return;

    int maxCode = 0;
    for (const BitmapGlyph& glyph : glyphs) maxCode = std::max(maxCode, glyph.code);
    std::vector<GLint> texels((static_cast<size_t>(maxCode) + 1) * kBitmapGlyphRows, 0);
    for (const BitmapGlyph& glyph : glyphs) {
        const ptrdiff_t first = static_cast<ptrdiff_t>(glyph.code) * kBitmapGlyphRows;
        std::copy(glyph.rows.begin(), glyph.rows.end(), texels.begin() + first);
    }
    fonts.bitmapGlyphs = createIntegerTexture(texels.data(), static_cast<int>(texels.size()));
    logLine("[FONT] Loaded %d glyphs (maxCode=%d)\n", static_cast<int>(glyphs.size()), maxCode);
}

GLuint createIntegerTexture(const GLint* texels, int width) {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_1D, texture);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER}) {
        glTexParameteri(GL_TEXTURE_1D, filter, GL_NEAREST);
    }
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexImage1D(GL_TEXTURE_1D, 0, GL_R32I, width, 0, GL_RED_INTEGER, GL_INT, texels);
    glBindTexture(GL_TEXTURE_1D, 0);
    return texture;
}
