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
constexpr int kTextureUnits = kBufferUnit + 1;

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
std::string whyNoRoom(const TextureCache& cache, int width, int height) {
    GLint limit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    if (std::max(width, height) > limit) {
        return "larger than the driver's limit of " + std::to_string(limit) + " pixels";
    }
    if (cache.texels + int64_t{width} * height <= kMaxTexels) return {};
    return "the show's pictures are too many; there is room for " + std::to_string(kMaxTexels >> 20) + " megapixels";
}

void announce(const std::string& key, const TextureInfo& info) {
    logOnce(key, "  [TEX] %s (%dx%d)\n", info.path.c_str(), info.width, info.height);
}

TextureInfo reportFailure(const std::string& path, const std::string& reason) {
    logLine("  [WARN] Texture load failed: %s\n", path.c_str());
    if (!reason.empty()) printError("%s: %s\n", path.c_str(), reason.c_str());
    return {};
}

} // namespace

TextureInfo loadTexture(TextureCache& cache, const std::string& path) {
    if (path.empty()) return {};
    if (const TextureInfo* found = findTexture(cache, path)) return *found;
    std::string reason;
    DecodedImage image;
    const auto objection = [&](int width, int height) { return whyNoRoom(cache, width, height); };
    if (!decodeImage(path, image, reason, objection)) return reportFailure(path, reason);
    return addTexture(cache, path, path, image.pixels.data(), image.width, image.height);
}

const TextureInfo* findTexture(const TextureCache& cache, const std::string& key) {
    const auto found = cache.byKey.find(key);
    if (found == cache.byKey.end()) return nullptr;
    announce(key, found->second);
    return &found->second;
}

TextureInfo addTexture(TextureCache& cache, const std::string& key, const std::string& path, const uint8_t* pixels,
                       int width, int height) {
    const std::string reason = whyNoRoom(cache, width, height);
    if (!reason.empty()) return reportFailure(path, reason);
    const GLuint texture = uploadTexture(pixels, width, height);
    if (!texture) return reportFailure(path, "the driver has no memory for it");
    cache.texels += int64_t{width} * height;
    const TextureInfo& info = cache.byKey[key] = {texture, width, height, path};
    announce(key, info);
    return info;
}

TextureInfo reportMissingTexture(const std::string& path) {
    return reportFailure(path, "");
}

void bindBlackTexture(TextureCache& cache, int unit) {
    if (!cache.black) {
        const uint8_t texel[4] = {0, 0, 0, 255};
        cache.black = uploadTexture(texel, 1, 1);
    }
    gl.ActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
    glBindTexture(GL_TEXTURE_2D, cache.black);
}

void resetTextureUnits(TextureCache& cache) {
    for (int unit = kTextureUnits - 1; unit >= 0; --unit) {
        bindBlackTexture(cache, unit);
        glBindTexture(GL_TEXTURE_1D, 0);
    }
}

void deleteTextures(TextureCache& cache) {
    for (const auto& [key, info] : cache.byKey) glDeleteTextures(1, &info.texture);
    if (cache.black) glDeleteTextures(1, &cache.black);
    cache = {};
    forgetOnce();
}
