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
    std::unordered_map<std::string, TextureInfo> byPath;
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

// The texture of an image file; the zero record and the reason on failure.
TextureInfo createTexture(const std::string& path, std::string& reason) {
    TextureInfo info;
    DecodedImage image;
    if (!decodeImage(path, image, reason)) return info;
    GLint limit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    if (std::max(image.width, image.height) > limit) {
        reason = "larger than the driver's limit of " + std::to_string(limit) + " pixels";
        return info;
    }
    const int64_t texels = int64_t{image.width} * image.height;
    if (cache().texels + texels > kMaxTexels) {
        reason = "the show's pictures are too many; there is room for " + std::to_string(kMaxTexels >> 20) + " megapixels";
        return info;
    }
    const GLuint texture = uploadTexture(image.pixels.data(), image.width, image.height);
    if (!texture) {
        reason = "the driver has no memory for it";
        return info;
    }
    cache().texels += texels;
    return {texture, image.width, image.height, path};
}

} // namespace

TextureInfo loadTexture(const std::string& path) {
    if (path.empty()) return {};
    const auto found = cache().byPath.find(path);
    if (found != cache().byPath.end()) return found->second;

    std::string reason;
    const TextureInfo info = createTexture(path, reason);
    if (!info.texture) {
        logLine("  [WARN] Texture load failed: %s\n", path.c_str());
        printError("%s: %s\n", path.c_str(), reason.c_str());
        return {};
    }
    logLine("  [TEX] %s (%dx%d)\n", path.c_str(), info.width, info.height);
    cache().byPath[path] = info;
    return info;
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
    for (const auto& [path, info] : cache().byPath) glDeleteTextures(1, &info.texture);
    if (cache().black) glDeleteTextures(1, &cache().black);
    cache() = {};
}
