// Kinetic text: lines of a colour font of which every glyph moves.
#pragma once

#include "gpu/draw.h"
#include "gpu/uniform_values.h"
#include "gpu/vertex_stream.h"
#include "text/fonts.h"
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
bool createKineticText(Fonts& fonts, KineticText& text, const KineticTextParams& params, const std::string& baseDir,
                       const Program& program);

// The same with a font that is loaded already; it is taken over.
void createKineticText(KineticText& text, const KineticTextParams& params, ColorFont font, const Program& program);

// Blends as the text's own params say.
void drawKineticText(KineticText& text, Program& program, const UniformValues& values, const Draw& draw);

void releaseKineticText(KineticText& text);
