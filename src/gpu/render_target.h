// Offscreen colour targets: an RGBA8 texture, linear and clamped, with its framebuffer.
#pragma once

#include "platform/gl.h"

struct RenderTarget {
    GLuint framebuffer = 0;
    GLuint texture = 0;
    int width = 0; // pixels
    int height = 0;
};

// Framebuffer and texture of a new target; the content is undefined. Sizes are raised to at least 1.
RenderTarget createRenderTarget(int width, int height);

// Keeps a target of that size, otherwise deletes it and makes a new one; true when it made one.
bool ensureTarget(RenderTarget& target, int width, int height);

// Deletes both objects and resets the record.
void deleteTarget(RenderTarget& target);

// Framebuffer and viewport that are current.
struct TargetBinding {
    GLint framebuffer = 0;
    GLint viewport[4] = {};
};

TargetBinding currentTarget();
void bindTarget(const RenderTarget& target); // with a viewport over all of it
void bindTarget(const TargetBinding& binding);
