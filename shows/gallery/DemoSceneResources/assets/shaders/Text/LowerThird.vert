#version 330 core
// Pieces of a lower third or a credit roll: positions in pixels from the output's top left.
layout(location = 0) in vec2 aPosition; // px
layout(location = 1) in vec2 aUV;
layout(location = 2) in float aAlpha;   // 0..1
layout(location = 3) in vec4 aColour;
layout(location = 4) in float aKind;    // 0 solid, 1 glyph, 2 soft
out vec2 vUV;     // solid: 0..1 from edge to edge; soft: radii from the rectangle
out vec2 vTexel;  // glyph: texels from the atlas's top left
out vec4 vColour;
flat out float vKind;

uniform vec2 uResolution; // px
uniform vec2 uAtlasSize;  // texels

void main() {
    vUV = aUV;
    vTexel = vec2(aUV.x, 1.0 - aUV.y) * uAtlasSize;
    vColour = vec4(aColour.rgb, aColour.a * aAlpha);
    vKind = aKind;
    gl_Position = vec4(aPosition.x / uResolution.x * 2.0 - 1.0, 1.0 - aPosition.y / uResolution.y * 2.0, 0.0, 1.0);
}
