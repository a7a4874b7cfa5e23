#include "gpu/render_target.h"

#include "gpu/gl_functions.h"

#include <algorithm>

RenderTarget createRenderTarget(int width, int height) {
    RenderTarget target;
    target.width = std::max(1, width);
    target.height = std::max(1, height);

    glGenTextures(1, &target.texture);
    glBindTexture(GL_TEXTURE_2D, target.texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, target.width, target.height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);

    gl.GenFramebuffers(1, &target.framebuffer);
    gl.BindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    gl.FramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, target.texture, 0);
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
    return target;
}

bool ensureTarget(RenderTarget& target, int width, int height) {
    const bool valid = target.framebuffer && target.texture;
    if (valid && target.width == std::max(1, width) && target.height == std::max(1, height)) return false;
    deleteTarget(target);
    target = createRenderTarget(width, height);
    return true;
}

void deleteTarget(RenderTarget& target) {
    if (target.framebuffer) gl.DeleteFramebuffers(1, &target.framebuffer);
    if (target.texture) glDeleteTextures(1, &target.texture);
    target = {};
}

TargetBinding currentTarget() {
    TargetBinding binding;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &binding.framebuffer);
    glGetIntegerv(GL_VIEWPORT, binding.viewport);
    return binding;
}

void bindTarget(const RenderTarget& target) {
    gl.BindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glViewport(0, 0, target.width, target.height);
}

void bindTarget(const TargetBinding& binding) {
    gl.BindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(binding.framebuffer));
    glViewport(binding.viewport[0], binding.viewport[1], binding.viewport[2], binding.viewport[3]);
}
