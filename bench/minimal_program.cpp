// The least program that shows one shader's picture: what no player can start faster than.
#include "gpu/gl_functions.h"
#include "gpu/program.h"
#include "gpu/quad.h"
#include "platform/window.h"

#include <cstdio>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    constexpr int kWidth = 320, kHeight = 180;
    Surface* surface = createHeadlessSurface(kWidth, kHeight);
    if (argc < 2 || !surface || !loadGlFunctions(glLookup(surface))) return 1;
    Quad quad = createQuad();
    const Program program = linkProgram(kQuadVertexSource,
                                        "#version 330 core\nin vec2 vUV; out vec4 colour;\n"
                                        "void main() { colour = vec4(0.5 + 0.5 * sin(vUV.xyx * 9.0), 1.0); }\n",
                                        "minimal");
    gl.UseProgram(program.handle);
    glViewport(0, 0, kWidth, kHeight);
    drawQuad(quad);
    std::vector<unsigned char> pixels(kWidth * kHeight * 4);
    glReadPixels(0, 0, kWidth, kHeight, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    std::FILE* file = std::fopen(argv[1], "wb");
    if (!file) return 1;
    const bool written = std::fwrite(pixels.data(), 1, pixels.size(), file) == pixels.size();
    std::fclose(file);
    destroySurface(surface);
    return written ? 0 : 1;
}
