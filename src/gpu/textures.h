// Pictures as textures, each image file decoded and uploaded once.
#pragma once

#include "platform/gl.h"

#include <cstdint>
#include <string>
#include <unordered_map>

struct TextureInfo {
    GLuint texture = 0; // 0: none
    int width = 0;      // pixels
    int height = 0;
    std::string path;
};

struct TextureCache {
    std::unordered_map<std::string, TextureInfo> byKey;
    int64_t texels = 0; // of all of them
    GLuint black = 0;   // made when it is first bound
};

// The image at `path` as an RGBA8 texture, linear and clamped, its first texel row the picture's bottom.
// An empty path gives the zero record in silence, an image that cannot be loaded one line in the log.
// Failures are not remembered. The texture belongs to the cache, whose key is the path as given.
TextureInfo loadTexture(TextureCache& cache, const std::string& path);

// The cache itself, for pictures that are made instead of decoded: their key is the path and behind a newline,
// which no path has, what tells them from the file's other pictures. Null when the key is not there; the
// record stays where it is until the next picture comes.
const TextureInfo* findTexture(const TextureCache& cache, const std::string& key);

// Adds width x height RGBA texels, first row at the bottom of texture space. `path` is for the log, which gets
// one line, and on failure (too large, the show's pictures too many) the zero record comes back.
TextureInfo addTexture(TextureCache& cache, const std::string& key, const std::string& path, const uint8_t* pixels,
                       int width, int height);

// The zero record, and the log line of a picture that cannot be loaded.
TextureInfo reportMissingTexture(const std::string& path);

// Binds a 1x1 black texture to a unit. Sampling it looks like sampling no texture at all, but to
// the driver it is an RGBA8 texture, like all others that code is compiled for.
void bindBlackTexture(TextureCache& cache, int unit);

// Puts it on every unit that a draw may sample, and nothing where one-dimensional textures go: what a frame begins
// with, whatever the one before left behind.
void resetTextureUnits(TextureCache& cache);

// Deletes every texture and empties the cache.
void deleteTextures(TextureCache& cache);
