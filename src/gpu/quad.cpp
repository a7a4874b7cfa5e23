#include "gpu/quad.h"

#include "gpu/gl_functions.h"

namespace {

constexpr GLsizei kVertexCount = 6;
constexpr GLsizei kStride = 4 * sizeof(float);

// x, y, u, v
constexpr float kVertices[kVertexCount * 4] = {
    -1, -1, 0, 0, 1, -1, 1, 0, 1,  1, 1, 1, //
    -1, -1, 0, 0, 1, 1,  1, 1, -1, 1, 0, 1,
};

} // namespace

Quad createQuad() {
    Quad quad;
    gl.GenVertexArrays(1, &quad.vertexArray);
    gl.BindVertexArray(quad.vertexArray);
    gl.GenBuffers(1, &quad.buffer);
    gl.BindBuffer(GL_ARRAY_BUFFER, quad.buffer);
    gl.BufferData(GL_ARRAY_BUFFER, sizeof kVertices, kVertices, GL_STATIC_DRAW);
    gl.EnableVertexAttribArray(0);
    gl.VertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, kStride, nullptr);
    gl.EnableVertexAttribArray(1);
    gl.VertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, kStride, reinterpret_cast<const void*>(2 * sizeof(float)));
    return quad;
}

void drawQuad(const Quad& quad) {
    gl.BindVertexArray(quad.vertexArray);
    glDrawArrays(GL_TRIANGLES, 0, kVertexCount);
}

void deleteQuad(Quad& quad) {
    if (quad.vertexArray) gl.DeleteVertexArrays(1, &quad.vertexArray);
    if (quad.buffer) gl.DeleteBuffers(1, &quad.buffer);
    quad = {};
}
