// What one draw is given: where it goes, how it is mixed in, and what the standard uniforms say. Nothing is asked
// of GL.
#pragma once

#include "gpu/blending.h"
#include "gpu/render_target.h"
#include "gpu/uniforms.h"

struct Draw {
    GLuint framebuffer = 0;
    int width = 0; // pixels, of the target
    int height = 0;
    BlendMode blending = BlendMode::opaque;
    double time = 0.0; // seconds on the clock of what is drawn
    int frame = 0;
    float opacity = 1.0f;
    const InputTexture* input = nullptr; // the picture of another effect, for one of the channels
};

// Makes the draw's target current, with a viewport over all of it and its blending.
void beginDraw(const Draw& draw);

// Sets the standard uniforms of the program in use.
void setStandardUniforms(const UniformTable& table, const Draw& draw);

// A draw at the same time and opacity over the whole of another target, unblended.
Draw drawInto(const RenderTarget& target, const Draw& draw);
