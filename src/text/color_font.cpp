#include "text/color_font.h"

#include "config/paths.h"
#include "foundation/json.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/gl_functions.h"
#include "gpu/shader_pack.h"
#include "platform/files.h"
#include "platform/image.h"
#include "text/fonts.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr const char* kDefaultFont = "assets/fonts/color/demo_neon_32.json";
constexpr size_t kMaxPathBytes = 4096;       // no system opens a longer one
constexpr int64_t kMaxAtlasTexels = 1 << 27; // of all fonts together: half a gigabyte
constexpr uint8_t kFaintestInk = 8;          // alpha that does not count as ink yet

std::string withSystemSeparators(const std::string& path) {
    if (path.size() > kMaxPathBytes) return {};
    std::string result = printableName(path);
    for (char& c : result) {
        if (c == '/' || c == '\\') c = kPathSeparator;
    }
    return result;
}

std::string directoryOf(const std::string& path) {
    const size_t end = path.find_last_of("/\\");
    if (end == std::string::npos) return ".";
    return end == 0 ? path.substr(0, 1) : path.substr(0, end);
}

// For candidates, whose first half is a path of this system already.
std::string joined(const std::string& base, const std::string& path) {
    std::string result = joinPath(base, path);
    std::replace(result.begin(), result.end(), '/', kPathSeparator);
    return result;
}

std::string firstExisting(std::initializer_list<std::string> candidates) {
    for (const std::string& candidate : candidates) {
        if (fileExists(candidate)) return candidate;
    }
    return {};
}

void readDescription(const JsonValue& root, ColorFont& font) {
    const auto whole = [&](const char* key, int fallback) { return getInt(find(root, key), fallback); };
    font.cellWidth = whole("cellWidth", 32);
    font.cellHeight = whole("cellHeight", 32);
    font.columns = whole("columns", 16);
    font.rows = whole("rows", 4);
    font.baseline = whole("baseline", font.cellHeight);
    font.spaceWidth = getFinite(find(root, "spaceWidth"), static_cast<float>(font.cellWidth) * 0.5f);
    font.chars = getString(find(root, "chars"), "").substr(0, kMaxFontChars);
}

// Cells that have a character. A grid without columns or rows has none.
int countGlyphs(const ColorFont& font) {
    const int64_t cells = int64_t{std::max(font.columns, 0)} * std::max(font.rows, 0);
    return static_cast<int>(std::min(cells, static_cast<int64_t>(font.chars.size())));
}

bool isInked(const uint8_t* row, int width) {
    for (int x = 0; x < width; ++x) {
        if (row[x * 4 + 3] > kFaintestInk) return true;
    }
    return false;
}

// Rows from the first to the last that any glyph has ink in, counted within the cell; 0 without ink.
int measureInk(const ColorFont& font, const DecodedImage& image, int glyphCount) {
    if (font.cellWidth <= 0 || font.cellHeight <= 0 || image.width <= 0 || image.height <= 0) return 0;
    int first = INT32_MAX, last = -1;
    for (int i = 0; i < glyphCount; ++i) {
        if (font.chars[static_cast<size_t>(i)] == ' ') continue;
        const int64_t left = int64_t{i % font.columns} * font.cellWidth;
        const int64_t top = int64_t{i / font.columns} * font.cellHeight;
        if (left + font.cellWidth > image.width || top + font.cellHeight > image.height) continue;
        for (int y = 0; y < font.cellHeight; ++y) {
            const uint8_t* row = &image.pixels[static_cast<size_t>(((top + y) * image.width + left) * 4)];
            if ((y >= first && y <= last) || !isInked(row, font.cellWidth)) continue;
            first = std::min(first, y);
            last = std::max(last, y);
        }
    }
    return last < first ? 0 : last - first + 1;
}

void makeGlyphs(ColorFont& font, int glyphCount) {
    const float width = static_cast<float>(font.textureWidth), height = static_cast<float>(font.textureHeight);
    const auto edge = [](int64_t cell, int size, float of) { return static_cast<float>(cell * size) / of; };
    for (int i = 0; i < glyphCount; ++i) {
        const unsigned char c = static_cast<unsigned char>(font.chars[static_cast<size_t>(i)]);
        const int64_t column = i % font.columns, row = i / font.columns;
        ColorGlyph glyph;
        glyph.u0 = edge(column, font.cellWidth, width);
        glyph.u1 = edge(column + 1, font.cellWidth, width);
        glyph.v0 = 1.0f - edge(row + 1, font.cellHeight, height);
        glyph.v1 = 1.0f - edge(row, font.cellHeight, height);
        glyph.advance = c == ' ' ? font.spaceWidth : static_cast<float>(font.cellWidth);
        font.glyphs[c] = glyph;
    }
}

// Why an atlas of that size has no place; empty when it has.
std::string whyNoRoom(const Fonts& fonts, int width, int height) {
    GLint limit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    if (std::max(width, height) > limit) {
        return "larger than the driver's limit of " + std::to_string(limit) + " pixels";
    }
    if (fonts.atlasTexels + int64_t{width} * height <= kMaxAtlasTexels) return {};
    return "the show's fonts are too many; there is room for " + std::to_string(kMaxAtlasTexels >> 20) + " megapixels";
}

// Empty when the driver takes the picture, else why not.
std::string uploadAtlas(Fonts& fonts, const DecodedImage& image, ColorFont& font) {
    clearGlErrors();
    glGenTextures(1, &font.texture);
    glBindTexture(GL_TEXTURE_2D, font.texture);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER}) {
        glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    }
    for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) {
        glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
    }
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, image.width, image.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 image.pixels.data());
    if (glGetError() != GL_NO_ERROR) {
        glDeleteTextures(1, &font.texture);
        font.texture = 0;
        return "the driver has no memory for it";
    }
    fonts.atlasTexels += int64_t{image.width} * image.height;
    return {};
}

// The font of a description that exists; its texture is 0 on failure.
LoadedColorFont readFont(Fonts& fonts, const std::string& baseDir, const std::string& jsonPath) {
    LoadedColorFont loaded;
    ColorFont& font = loaded.font;
    const std::string text = readTextFile(jsonPath);
    if (text.empty()) return loaded;
    const JsonValue root = parseJsonFile(text.c_str(), jsonPath);
    if (root.kind != JsonKind::object) return loaded;
    const std::string texture = getString(find(root, "texture"), "");
    readDescription(root, font);
    font.jsonPath = jsonPath;
    font.texturePath = resolveFontTexturePath(texture, jsonPath, baseDir);
    if (font.texturePath.empty()) {
        logLine("[KTEXT] Color font texture not found: %.1024s\n", texture.c_str());
        return loaded;
    }
    DecodedImage image;
    std::string reason;
    const auto objection = [&](int width, int height) { return whyNoRoom(fonts, width, height); };
    if (decodeImage(font.texturePath, image, reason, objection)) reason = uploadAtlas(fonts, image, font);
    if (!font.texture) {
        logLine("[KTEXT] Failed to load texture: %s\n", font.texturePath.c_str());
        printError("%s: %s\n", font.texturePath.c_str(), reason.c_str());
        return loaded;
    }
    font.textureWidth = image.width;
    font.textureHeight = image.height;
    const int glyphCount = countGlyphs(font);
    const int inkHeight = measureInk(font, image, glyphCount);
    font.lineAdvance = inkHeight > 0 ? std::max(static_cast<float>(inkHeight) + 2.0f, 1.0f)
                                     : static_cast<float>(font.cellHeight);
    makeGlyphs(font, glyphCount);
    loaded.letters = measureCaptionFont(font, image.pixels);
    return loaded;
}

} // namespace

std::string resolveColorFontPath(const std::string& fontPath, const std::string& baseDir) {
    std::string path = withSystemSeparators(fontPath.empty() ? kDefaultFont : fontPath);
    if (path.empty()) return {};
    if (isAbsolutePath(path) && fileExists(path)) return path;
    return firstExisting({
        joined(baseDir, path),
        joined(joinPath(baseDir, "DemoSceneResources"), path),
        path,
    });
}

std::string resolveFontTexturePath(const std::string& texture, const std::string& jsonPath,
                                   const std::string& baseDir) {
    std::string path = withSystemSeparators(texture);
    if (path.empty()) return {};
    if (isAbsolutePath(path) && fileExists(path)) return path;
    return firstExisting({
        joined(directoryOf(jsonPath), path),
        joined(baseDir, path),
        joined(joinPath(baseDir, "DemoSceneResources"), path),
        path,
    });
}

bool loadColorFont(Fonts& fonts, const std::string& baseDir, const std::string& fontPath, ColorFont& font) {
    if (font.texture) return true;
    const std::string jsonPath = resolveColorFontPath(fontPath, baseDir);
    if (jsonPath.empty()) {
        logLine("[KTEXT] Color font json not found: %.1024s\n", fontPath.c_str());
        return false;
    }
    auto known = fonts.colorFonts.find(jsonPath);
    if (known == fonts.colorFonts.end()) {
        LoadedColorFont loaded = readFont(fonts, baseDir, jsonPath);
        if (!loaded.font.texture) return false;
        known = fonts.colorFonts.emplace(jsonPath, std::move(loaded)).first;
    }
    font = known->second.font;
    logLine("[KTEXT] Loaded color font: %s (%d glyphs, %dx%d, cell=%dx%d, lineAdvance=%.1f)\n",
            font.texturePath.c_str(), countGlyphs(font), font.textureWidth, font.textureHeight, font.cellWidth,
            font.cellHeight, static_cast<double>(font.lineAdvance));
    return true;
}

void releaseColorFont(ColorFont& font) {
    font = {};
}
