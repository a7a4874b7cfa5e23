// What the driver takes by itself: a context without a display and one shader's picture of 1280x720.
#include "gpu/gl_functions.h"
#include "gpu/program.h"
#include "gpu/quad.h"
#include "platform/window.h"

int main() {
    Surface* surface = createHeadlessSurface(1280, 720);
    if (!surface || !loadGlFunctions(glLookup(surface))) return 1;
    const Quad quad = createQuad();
    gl.UseProgram(linkProgram(kQuadVertexSource,
                              "#version 330 core\nin vec2 vUV; out vec4 color;\n"
                              "void main() { color = vec4(vUV, 0.0, 1.0); }\n",
                              "bare")
                      .handle);
    drawQuad(quad);
    presentFrame(surface);
    destroySurface(surface);
    return 0;
}
