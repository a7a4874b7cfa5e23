#version 330 core
// Words or a logo, drawn on nothing, as a sheet of glass: faded in and out, and rushed towards the eye. A sheet
// that is laid out in pixels is brought to the output's size, so that it looks the same at every resolution.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;            // s
uniform vec3 iResolution;       // px
uniform float uAlpha;           // 0..1
uniform sampler2D iChannel0;    // colour times alpha, and alpha squared: what blending leaves on nothing
uniform float uPixel = 0.0;     // px of a picture 360 px high that a px of the sheet becomes; 0: the sheet as it is
uniform vec2 uMiddle = vec2(0); // of the words: px to the right of the picture's middle and below it
uniform float uRush = 0.0;      // e-folds of size a second
uniform float uIn = 0.2;        // s the fade in takes
uniform float uOut = 1e6;       // s at which the fade out begins
uniform float uFade = 0.8;      // s it takes

// Cubic B-spline out of four bilinear fetches: letters magnified several times show no texels.
vec4 smoothly(vec2 at, vec2 size) {
    vec2 p = at - 0.5, base = floor(p), f = p - base, g = 1.0 - f;
    vec2 w0 = g * g * g / 6.0, w1 = (4.0 - 6.0 * f * f + 3.0 * f * f * f) / 6.0;
    vec2 w3 = f * f * f / 6.0, w2 = 1.0 - w0 - w1 - w3;
    vec2 low = w0 + w1, high = w2 + w3;
    vec2 a = (base - 0.5 + w1 / low) / size, b = (base + 1.5 + w3 / high) / size;
    return (texture(iChannel0, a) * low.x + texture(iChannel0, vec2(b.x, a.y)) * high.x) * low.y
         + (texture(iChannel0, vec2(a.x, b.y)) * low.x + texture(iChannel0, b) * high.x) * high.y;
}

void main() {
    float size = exp(uRush * iTime);
    vec2 p = (vUV - 0.5) * iResolution.xy / size;
    vec4 texel;
    if (uPixel > 0.0) {
        vec2 at = 0.5 * iResolution.xy + uMiddle * vec2(1.0, -1.0) + p * 360.0 / (iResolution.y * uPixel);
        texel = smoothly(at, iResolution.xy);
    } else {
        texel = texture(iChannel0, 0.5 + p / iResolution.xy);
    }
    float cover = sqrt(texel.a);
    float shown = smoothstep(0.0, uIn, iTime) * (1.0 - smoothstep(0.0, uFade, iTime - uOut));
    fragColor = vec4(texel.rgb / max(cover, 0.001), cover * shown * uAlpha);
}
