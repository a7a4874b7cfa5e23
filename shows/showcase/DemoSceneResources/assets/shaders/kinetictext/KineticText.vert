#version 330 core
// Places the glyphs of a kinetic text; passes on which corner of its quad each vertex is.
layout(location = 0) in vec2 aPos;    // px from the top left of the output
layout(location = 1) in vec2 aUV;     // of the atlas, lower-left origin
layout(location = 2) in float aAlpha; // 0..1
out vec2 vUV;
out vec2 vCorner; // 0..1 over the quad, lower-left origin
out float vAlpha;

uniform vec2 iResolution; // px

// The player writes six vertices a quad, in this order.
const vec2 kCorners[6] = vec2[6](vec2(0, 1), vec2(0, 0), vec2(1, 0), vec2(0, 1), vec2(1, 0), vec2(1, 1));

void main() {
    vUV = aUV;
    vCorner = kCorners[gl_VertexID % 6];
    vAlpha = aAlpha;
    gl_Position = vec4(aPos / iResolution * vec2(2.0, -2.0) + vec2(-1.0, 1.0), 0.0, 1.0);
}
