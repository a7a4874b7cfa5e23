// The triangles of a kinetic text at one moment: plain computation, no GL.
#pragma once

#include "config/kinetic_params.h"
#include "text/kinetic_layout.h"

#include <vector>

// Floats of a vertex: position in pixels from the output's top left (2), texture coordinate (2), alpha (1).
constexpr size_t kKineticVertexFloats = 5;

// Two triangles. Corners come in the order top left, bottom left, bottom right, top left, bottom right, top
// right, so that a shader can tell them apart by gl_VertexID.
constexpr size_t kKineticQuadVertices = 6;

struct KineticGeometry {
    std::vector<float> glyphs; // whole quads, in the text's order
    std::vector<float> glow;   // the same quads, larger; empty without the outline glow
    size_t glyphVertices = 0;
    size_t glowVertices = 0;
};

// Pixels by which a glow quad is larger than its glyph's on each side; 0: no glow.
float glowPad(const KineticTextParams& params);

// Takes the memory that the longest frame needs, so that no frame takes any.
void reserveKineticGeometry(const KineticTextParams& params, const KineticLayout& layout, KineticGeometry& geometry);

// Builds both lists anew for an output of `width` x `height` pixels, `time` seconds after the text set out.
// The same arguments give the same bytes. A quad with a coordinate that is not finite is left out.
void buildKineticGeometry(const KineticTextParams& params, const KineticLayout& layout, float time, int width,
                          int height, KineticGeometry& geometry);
