#include "gpu/draw.h"

#include "gpu/gl_functions.h"

void beginDraw(const Draw& draw) {
    gl.BindFramebuffer(GL_FRAMEBUFFER, draw.framebuffer);
    glViewport(0, 0, draw.width, draw.height);
    setBlending(draw.blending);
}

void setStandardUniforms(const UniformTable& table, const Draw& draw) {
    setStandardUniforms(table, static_cast<float>(draw.time), draw.frame, draw.opacity, draw.width, draw.height);
}

Draw drawInto(const RenderTarget& target, const Draw& draw) {
    Draw into = draw;
    into.framebuffer = target.framebuffer;
    into.width = target.width;
    into.height = target.height;
    into.blending = BlendMode::opaque;
    return into;
}
