#version 330 core
// Glyphs of a colour font, and below them a soft halo that follows their outlines.
in vec2 vUV;
in vec2 vCorner; // 0..1 over the quad, lower-left origin
in float vAlpha; // 0..1
out vec4 fragColor;

uniform sampler2D uFontTexture;
uniform vec2 uTextureTexelSize; // of the atlas, in texture coordinates
uniform float uAlpha;           // 0..1
uniform int uRenderMode;        // 0 glyph, 1 halo
uniform vec3 uGlowColor;
uniform float uGlowIntensity;   // 1 is as bright as the glyph's alpha
uniform float uGlowPad;         // px that a halo's quad is larger than its glyph's on each side

// The glyph's alpha, blurred. The quad shows the cell's texture stretched over the halo's margin too; the
// cell's size and the quad's, told by how fast the coordinates run, give back where the point lies in the cell, so
// that halo and glyph cover each other at any size and nothing of the neighbouring cells shines in.
float blurredCover() {
    vec2 speed = vec2(length(vec2(dFdx(vUV.x), dFdy(vUV.x))), length(vec2(dFdx(vUV.y), dFdy(vUV.y))));
    vec2 run = vec2(length(vec2(dFdx(vCorner.x), dFdy(vCorner.x))), length(vec2(dFdx(vCorner.y), dFdy(vCorner.y))));
    vec2 cell = max(floor(speed / max(run * uTextureTexelSize, 1e-12) + 0.5), 1.0); // texels
    vec2 low = vUV / uTextureTexelSize - vCorner * cell;                            // its corner in the atlas
    vec2 quad = 1.0 / max(run, 1e-12);                                              // px
    vec2 texel = max(quad - 2.0 * uGlowPad, 1e-3) / cell;                           // px
    vec2 at = low + (vCorner * quad - uGlowPad) / texel;

    // Weights run smoothly from tap to tap, so that large texels do not show. Wide halos skip texels.
    float reach = clamp(uGlowPad / min(texel.x, texel.y), 1.0, 1e6);
    float stride = max(reach / 3.0, 1.0);
    int taps = int(ceil(min(reach / stride, 3.0) - 0.5));
    ivec2 last = textureSize(uFontTexture, 0) - 1;
    vec2 home = floor(at / stride) + 0.5;
    float cover = 0.0, total = 0.0;
    for (int y = -taps; y <= taps; ++y) {
        for (int x = -taps; x <= taps; ++x) {
            vec2 tap = (home + vec2(x, y)) * stride;
            vec2 d = (tap - at) / reach;
            float weight = max(1.0 - dot(d, d), 0.0);
            weight *= weight;
            total += weight;
            vec2 inside = step(low, tap) * step(tap, low + cell);
            ivec2 texel = clamp(ivec2(floor(tap)), ivec2(0), last);
            cover += weight * inside.x * inside.y * texelFetch(uFontTexture, texel, 0).a;
        }
    }
    return cover / max(total, 1e-6);
}

void main() {
    if (uRenderMode == 1) {
        float cover = blurredCover();
        float halo = cover * (2.0 - cover); // thin strokes glow too
        fragColor = vec4(uGlowColor, min(halo * uGlowIntensity, 1.0) * vAlpha * uAlpha);
    } else {
        vec4 texel = texture(uFontTexture, vUV + 0.0071 * uTextureTexelSize);
        fragColor = vec4(texel.rgb, texel.a * vAlpha * uAlpha);
    }
}
