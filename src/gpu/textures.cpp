#include "gpu/textures.h"

#include "foundation/log.h"
#include "gpu/gl_functions.h"
#include "gpu/render_target.h"
#include "gpu/uniforms.h"
#include "platform/image.h"

#include <algorithm>
#include <unordered_map>

namespace {

constexpr int64_t kMaxTexels = 1 << 28; // of all pictures together: a gigabyte

struct TextureCache {
    std::unordered_map<std::string, TextureInfo> byKey;
    int64_t texels = 0;
    GLuint black = 0;
};

TextureCache& cache() {
    static TextureCache instance;
    return instance;
}

// Uploads width x height RGBA texels; 0 when the driver has no room for them.
GLuint uploadTexture(const uint8_t* pixels, int width, int height) {
    clearGlErrors();
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    allocateTexels(width, height, pixels);
    if (glGetError() == GL_NO_ERROR) return texture;
    glDeleteTextures(1, &texture);
    return 0;
}

// Why a picture of that size has no place; empty when it has.
std::string whyNoRoom(int width, int height) {
    GLint limit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    if (std::max(width, height) > limit) {
        return "larger than the driver's limit of " + std::to_string(limit) + " pixels";
    }
    if (cache().texels + int64_t{width} * height <= kMaxTexels) return {};
    return "the show's pictures are too many; there is room for " + std::to_string(kMaxTexels >> 20) + " megapixels";
}

TextureInfo reportFailure(const std::string& path, const std::string& reason) {
    logLine("  [WARN] Texture load failed: %s\n", path.c_str());
    if (!reason.empty()) printError("%s: %s\n", path.c_str(), reason.c_str());
    return {};
}

} // namespace

TextureInfo loadTexture(const std::string& path) {
    if (path.empty()) return {};
    if (const TextureInfo* found = findTexture(path)) return *found;
    std::string reason;
    DecodedImage image;
    if (!decodeImage(path, image, reason, whyNoRoom)) return reportFailure(path, reason);
    return addTexture(path, path, image.pixels.data(), image.width, image.height);
}

const TextureInfo* findTexture(const std::string& key) {
    const auto found = cache().byKey.find(key);
    return found == cache().byKey.end() ? nullptr : &found->second;
}

TextureInfo addTexture(const std::string& key, const std::string& path, const uint8_t* pixels, int width, int height) {
    const std::string reason = whyNoRoom(width, height);
    if (!reason.empty()) return reportFailure(path, reason);
    const GLuint texture = uploadTexture(pixels, width, height);
    if (!texture) return reportFailure(path, "the driver has no memory for it");
    cache().texels += int64_t{width} * height;
    logLine("  [TEX] %s (%dx%d)\n", path.c_str(), width, height);
    return cache().byKey[key] = {texture, width, height, path};
}

TextureInfo reportMissingTexture(const std::string& path) {
    return reportFailure(path, "");
}

void bindBlackTextures() {
    for (int unit = kBufferUnit; unit >= 0; --unit) bindBlackTexture(unit);
}

void bindBlackTexture(int unit) {
    if (!cache().black) {
        const uint8_t texel[4] = {0, 0, 0, 255};
        cache().black = uploadTexture(texel, 1, 1);
    }
    gl.ActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
    glBindTexture(GL_TEXTURE_2D, cache().black);
}

void deleteTextures() {
    for (const auto& [key, info] : cache().byKey) glDeleteTextures(1, &info.texture);
    if (cache().black) glDeleteTextures(1, &cache().black);
    cache() = {};
}
