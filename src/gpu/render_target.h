// Offscreen colour targets: an RGBA8 texture, linear and clamped, with its framebuffer.
#pragma once

#include "gpu/textures.h"
#include "platform/gl.h"

struct RenderTarget {
    GLuint framebuffer = 0;
    GLuint texture = 0;
    int width = 0; // pixels
    int height = 0;
};

// Storage of the texture that is bound, RGBA8, linear and clamped; `pixels` may be null. The filters come
// first: by default a texture is mipmapped, and drivers make room for the levels.
void allocateTexels(int width, int height, const void* pixels);

// Framebuffer and texture of a new target; the content is undefined. Sizes are raised to at least 1.
RenderTarget createRenderTarget(int width, int height);

// Whether the target is there and fits an output of that size.
bool hasSize(const RenderTarget& target, int width, int height);

// Keeps a target of that size, otherwise deletes it and makes a new one; true when it made one.
bool ensureTarget(RenderTarget& target, int width, int height);

// Deletes both objects and resets the record.
void deleteTarget(RenderTarget& target);

// Makes the target current, with a viewport over all of it.
void bindTarget(const RenderTarget& target);

// Makes a target of that size current for a whole new picture: transparent black, depth test off. It is taken off
// texture units 0 and 1, where the frame before may have left it: what is drawn into must not be sampled.
void beginTarget(TextureCache& textures, RenderTarget& target, int width, int height);
