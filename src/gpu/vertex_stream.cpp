#include "gpu/vertex_stream.h"

#include "gpu/gl_functions.h"

#include <cstddef>

VertexStream createVertexStream(std::initializer_list<int> attributeSizes) {
    VertexStream stream;
    for (const int size : attributeSizes) stream.vertexFloats += size;
    gl.GenVertexArrays(1, &stream.vertexArray);
    gl.GenBuffers(1, &stream.buffer);
    gl.BindVertexArray(stream.vertexArray);
    gl.BindBuffer(GL_ARRAY_BUFFER, stream.buffer);
    const GLsizei stride = static_cast<GLsizei>(stream.vertexFloats * sizeof(float));
    GLuint location = 0;
    size_t offset = 0;
    for (const int size : attributeSizes) {
        gl.EnableVertexAttribArray(location);
        gl.VertexAttribPointer(location, size, GL_FLOAT, GL_FALSE, stride, reinterpret_cast<const void*>(offset));
        offset += static_cast<size_t>(size) * sizeof(float);
        ++location;
    }
    gl.BindBuffer(GL_ARRAY_BUFFER, 0);
    gl.BindVertexArray(0);
    return stream;
}

void drawVertexStream(const VertexStream& stream, const std::vector<float>& vertices) {
    if (vertices.empty() || !stream.buffer) return;
    gl.BindVertexArray(stream.vertexArray);
    gl.BindBuffer(GL_ARRAY_BUFFER, stream.buffer);
    gl.BufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(float)), vertices.data(),
                  GL_DYNAMIC_DRAW);
    const size_t count = vertices.size() / static_cast<size_t>(stream.vertexFloats);
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(count));
    gl.BindBuffer(GL_ARRAY_BUFFER, 0);
    gl.BindVertexArray(0);
}

void deleteVertexStream(VertexStream& stream) {
    if (stream.vertexArray) gl.DeleteVertexArrays(1, &stream.vertexArray);
    if (stream.buffer) gl.DeleteBuffers(1, &stream.buffer);
    stream = {};
}
