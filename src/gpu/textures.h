// Images as textures, each path decoded and uploaded once.
#pragma once

#include "platform/gl.h"

#include <string>

struct TextureInfo {
    GLuint texture = 0; // 0: none
    int width = 0;      // pixels
    int height = 0;
    std::string path;
};

// The image at `path` as an RGBA8 texture, linear and clamped, its first texel row the picture's bottom.
// An empty path gives the zero record in silence, an image that cannot be loaded one line in the log.
// Failures are not remembered. The texture belongs to the cache, whose key is the path as given.
TextureInfo loadTexture(const std::string& path);

// Binds a 1x1 black texture to a unit, or to all. Sampling it looks like sampling no texture at all, but to
// the driver it is an RGBA8 texture, like all others that code is compiled for.
void bindBlackTexture(int unit);
void bindBlackTextures();

// Deletes every cached texture: at shutdown.
void deleteTextures();
