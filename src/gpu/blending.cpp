#include "gpu/blending.h"

#include "platform/gl.h"

void setBlending(BlendMode mode) {
    if (mode == BlendMode::opaque) {
        glDisable(GL_BLEND);
        return;
    }
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, mode == BlendMode::additive ? GL_ONE : GL_ONE_MINUS_SRC_ALPHA);
}
