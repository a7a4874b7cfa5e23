// Triangles that are made anew every frame: a vertex array over one streamed buffer of floats.
#pragma once

#include "platform/gl.h"

#include <initializer_list>
#include <vector>

struct VertexStream {
    GLuint vertexArray = 0; // owned; 0: none
    GLuint buffer = 0;      // owned
    int vertexFloats = 0;   // floats a vertex
};

// Attribute locations count from 0, each with as many floats (1 to 4) as given; they lie packed in this order.
VertexStream createVertexStream(std::initializer_list<int> attributeSizes);

// Uploads the vertices and draws them as triangles with the program in use; nothing for an empty list.
void drawVertexStream(const VertexStream& stream, const std::vector<float>& vertices);

// Deletes both objects and resets the record.
void deleteVertexStream(VertexStream& stream);
