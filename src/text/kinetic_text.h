// Kinetic text: lines of a colour font of which every glyph moves.
#pragma once

#include "gpu/uniforms.h"
#include "gpu/vertex_stream.h"
#include "text/color_font.h"
#include "text/kinetic_geometry.h"

// Of a text's program, resolved when it is made.
struct KineticUniforms {
    UniformInfo fontTexture, texelSize, renderMode, glowColor, glowIntensity, glowRadius, glowPad;
};

struct KineticText {
    KineticTextParams params;
    ColorFont font;
    KineticLayout layout;
    KineticGeometry geometry; // of the latest draw
    KineticUniforms uniforms;
    VertexStream stream;
};

// Loads the font for a linked program; false when there is no font.
bool createKineticText(KineticText& text, const KineticTextParams& params, const std::string& baseDir, GLuint program);

// The same with a font that is loaded already; it is taken over.
void createKineticText(KineticText& text, const KineticTextParams& params, ColorFont font, GLuint program);

// Draws the text at `time` seconds, in frame `frame`, into the current target, `width` x `height` pixels. Sets
// blending.
void drawKineticText(KineticText& text, GLuint program, float time, int frame, int width, int height);

void releaseKineticText(KineticText& text);
