#version 330 core
// Chromatic aberration: a breathing lens that spreads every edge into a spectrum, more towards the rim.
//   uSpread   length of the spectrum at the rim in frame heights, 0..0.3
//   uBarrel   distortion of the lens, -1..1
//   uBreathe  breaths a second, 0..4
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uSpread = 0.12;
uniform float uBarrel = 0.35;
uniform float uBreathe = 0.35;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kBone = vec3(0.95, 0.92, 0.87);
const int kTaps = 7;

// Rays and rings.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float d = length(p), a = atan(p.y, p.x + 1e-6) / 6.2832;
    float ray = step(0.5, fract(a * 18.0 + floor(d * 7.0) * 0.5));
    return mix(kInk, kBone, step(0.06, d) * ray * (0.9 - 0.3 * d));
}

// Beyond its edges the picture goes on mirrored, once.
vec2 mirror(vec2 uv) {
    return 1.0 - abs(1.0 - abs(uv));
}

// Channel 0 is bound when its texture has the size that is reported for it.
bool bound() {
    return all(equal(textureSize(iChannel0, 0), ivec2(max(iChannelResolution[0], vec2(1.0)) + 0.5)));
}

// Channel 0 cut to fill the frame, over ink where it is transparent.
vec3 picture(vec2 uv) {
    vec2 fit = iResolution.xy / max(iChannelResolution[0], vec2(1.0));
    vec4 c = textureLod(iChannel0, (uv - 0.5) * fit / max(fit.x, fit.y) + 0.5, 0.0);
    return mix(kInk, c.rgb, c.a);
}

// Interleaved gradient noise, 0 to 1: neighbouring pixels look at places that lie evenly between 0 and 1. In
// integers, whose overflow is the fraction.
float jitter() {
    uvec2 at = uvec2(gl_FragCoord.xy) * uvec2(0x112e3b7du, 0x017e8ce0u);
    uint n = at.x + at.y;
    return float((n * 53u - (n >> 16) * 1119u) >> 8) / 16777216.0;
}

// Colour of a place in the spectrum, from red at 0 to violet at 1.
vec3 spectrum(float s) {
    vec3 w = max(1.0 - abs(s - vec3(0.1, 0.5, 0.9)) * 2.6, 0.0);
    return w + vec3(0.22 * max(1.0 - abs(s - 0.98) * 8.0, 0.0), 0.0, 0.0);
}

void main() {
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 600.0);
    float breath = sin(6.2832 * time * clamp(uBreathe, 0.0, 4.0));
    vec2 axis = 0.09 * vec2(sin(time * 1.1), cos(time * 0.9));  // the lens is loose in its mount
    vec2 p = (vUV - 0.5) * vec2(aspect, 1.0) - axis;
    float d2 = 4.0 * dot(p, p) / (aspect * aspect + 1.0);       // 1 in the corners
    float spread = clamp(uSpread, 0.0, 0.3) * (0.75 + 0.35 * breath);
    float barrel = clamp(uBarrel, -1.0, 1.0) * (0.4 + 0.14 * breath);
    vec2 bent = p * (1.0 - 0.3 * barrel) * (1.0 + barrel * d2);
    vec2 out_ = p * spread * (0.35 + 1.3 * d2) / 0.6;
    vec2 at = (bent - out_ + axis) / vec2(aspect, 1.0) + 0.5, way = 2.0 * out_ / vec2(aspect, 1.0);

    // Pixels look at slightly different places of the spectrum, which turns bands into fine grain.
    float shift = jitter();
    vec3 sum = vec3(0.0), weight = vec3(0.0);
    // The card takes the place of a missing picture, in a loop of its own: a rasterizer in software would work
    // out both sides of a branch.
    int taps = bound() ? kTaps : 0;
    for (int i = 0; i < taps; ++i) {
        float s = (float(i) + shift) / float(kTaps);
        sum += spectrum(s) * picture(mirror(at + way * s));
        weight += spectrum(s);
    }
    for (int i = taps; i < kTaps; ++i) {
        float s = (float(i) + shift) / float(kTaps);
        sum += spectrum(s) * card(at + way * s);
        weight += spectrum(s);
    }
    vec3 colour = sum / weight;
    // The rim is lost first in blue; a coated surface throws back a violet crescent.
    colour *= 1.0 - d2 * vec3(0.18, 0.32, 0.26);
    float flare = smoothstep(0.05, 0.0, abs(length(p + axis * 3.0) - 0.44 - 0.03 * breath));
    colour += vec3(0.09, 0.03, 0.13) * flare * smoothstep(-0.3, 0.5, dot(p, vec2(0.8, 0.6)));
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
