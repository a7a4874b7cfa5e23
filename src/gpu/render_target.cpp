#include "gpu/render_target.h"

#include "gpu/gl_functions.h"

#include <algorithm>

void allocateTexels(int width, int height, const void* pixels) {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

RenderTarget createRenderTarget(int width, int height) {
    RenderTarget target;
    target.width = std::max(1, width);
    target.height = std::max(1, height);

    glGenTextures(1, &target.texture);
    glBindTexture(GL_TEXTURE_2D, target.texture);
    allocateTexels(target.width, target.height, nullptr);

    gl.GenFramebuffers(1, &target.framebuffer);
    gl.BindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    gl.FramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, target.texture, 0);
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
    return target;
}

bool hasSize(const RenderTarget& target, int width, int height) {
    const bool isThere = target.framebuffer && target.texture;
    return isThere && target.width == std::max(1, width) && target.height == std::max(1, height);
}

bool ensureTarget(RenderTarget& target, int width, int height) {
    if (hasSize(target, width, height)) return false;
    deleteTarget(target);
    target = createRenderTarget(width, height);
    return true;
}

void deleteTarget(RenderTarget& target) {
    if (target.framebuffer) gl.DeleteFramebuffers(1, &target.framebuffer);
    if (target.texture) glDeleteTextures(1, &target.texture);
    target = {};
}

void bindTarget(const RenderTarget& target) {
    gl.BindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glViewport(0, 0, target.width, target.height);
}

void beginTarget(TextureCache& textures, RenderTarget& target, int width, int height) {
    ensureTarget(target, width, height);
    bindBlackTexture(textures, 1);
    bindBlackTexture(textures, 0);
    bindTarget(target);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDisable(GL_DEPTH_TEST);
}
