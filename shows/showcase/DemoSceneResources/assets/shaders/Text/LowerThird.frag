#version 330 core
// Lower third and credit roll: plain and soft rectangles, and glyphs that are clean at every size.
in vec2 vUV;
in vec2 vTexel;
in vec4 vColour;
flat in float vKind;
out vec4 fragColor;

uniform sampler2D uFontTexture; // unfiltered, straight alpha
uniform vec2 uAtlasSize;        // texels
uniform vec2 uCellSize;         // texels
uniform float uAlpha;           // 0..1

const float kMostTexels = 7.0;  // averaged a side; more than this only shrinks to a few pixels

// Mean of the texels in a box around p: bilinear where a pixel is smaller than a texel, the pixel's own area
// where it is larger. The box stays in the glyph's cell, its neighbours are other letters.
vec4 glyph(vec2 p, vec2 footprint) {
    vec2 cell = max(uCellSize, 1.0);
    ivec2 low = ivec2(floor(p / cell) * cell);
    ivec2 high = min(low + ivec2(cell), ivec2(uAtlasSize)) - 1;
    vec2 size = clamp(footprint, 1.0, kMostTexels);
    vec2 from = p - 0.5 * size, to = p + 0.5 * size;
    ivec2 first = ivec2(floor(from)), last = ivec2(ceil(to)) - 1;
    int rows = int(uAtlasSize.y);
    vec4 sum = vec4(0.0);
    for (int y = first.y; y <= last.y; ++y) {
        float height = min(float(y) + 1.0, to.y) - max(float(y), from.y);
        for (int x = first.x; x <= last.x; ++x) {
            float width = min(float(x) + 1.0, to.x) - max(float(x), from.x);
            ivec2 at = min(max(ivec2(x, y), low), high);
            vec4 texel = texelFetch(uFontTexture, ivec2(at.x, rows - 1 - at.y), 0);
            sum += width * height * vec4(texel.rgb * texel.a, texel.a);
        }
    }
    float alpha = sum.a / (size.x * size.y);
    return vec4(sum.rgb / max(sum.a, 1e-4), alpha);
}

// Share of the pixel that lies between 0 and 1 along an axis with `pixel` of it a pixel.
float cover(float x, float pixel) {
    return clamp(clamp(x / pixel + 0.5, 0.0, 1.0) + clamp((1.0 - x) / pixel + 0.5, 0.0, 1.0) - 1.0, 0.0, 1.0);
}

void main() {
    vec2 footprint = abs(vec2(dFdx(vTexel.x), dFdy(vTexel.y)));
    vec2 pixel = max(abs(vec2(dFdx(vUV.x), dFdy(vUV.y))), 1e-6);
    vec4 colour = vColour;
    if (vKind < 0.5) {
        colour.a *= cover(vUV.x, pixel.x) * cover(vUV.y, pixel.y);
    } else if (vKind < 1.5) {
        colour *= glyph(vTexel, footprint);
    } else {
        float near = 1.0 - min(length(vUV), 1.0);
        colour.a *= near * near * (3.0 - 2.0 * near);
    }
    fragColor = vec4(colour.rgb, colour.a * uAlpha);
}
