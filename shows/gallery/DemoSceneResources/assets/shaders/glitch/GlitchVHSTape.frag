#version 330 core
// VHS tape: soft lines, colour smeared to the right, wandering tracking noise and the recorder's own signs.
//   uTracking  strength of the tracking error, 0..1
//   uBleed     how far colour smears, 0..1
//   uSigns     whether "PLAY" and the counter are shown
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uTracking = 0.5;
uniform float uBleed = 0.5;
uniform bool uSigns = true;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kBone = vec3(0.95, 0.92, 0.87);
const vec3 kLuma = vec3(0.299, 0.587, 0.114);
// Digits, "PLAY", a triangle, a colon and a space: 4 x 7 bits, the lowest bit at the lower left.
const uint kGlyphs[17] = uint[17](
    0x6999996u, 0x464444eu, 0x698421fu, 0x7886887u, 0x999f888u, 0xf178896u, 0x6117996u, 0xf884422u,
    0x6996996u, 0x699e886u, 0x7997111u, 0x111111fu, 0x699f999u, 0x999e886u, 0x137f731u, 0x0400040u,
    0x0000000u);
const int kPlay[6] = int[6](10, 11, 12, 13, 16, 14);
// Shifts grids off the pixels' centres: rounding decides on which side of an edge a point exactly on it lies.
const float kOff = 0.013; // cells

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

// Colour bars over a grey scale.
vec3 card(vec2 uv) {
    float bar = floor(clamp(uv.x, 0.0, 0.999) * 7.0);
    vec3 colour = vec3(step(mod(bar, 4.0), 1.5), step(bar, 3.5), step(mod(bar, 2.0), 0.5)) * 0.54 + 0.14;
    vec3 grey = vec3(floor(uv.x * 9.0) / 9.0);
    return uv.y < 0.22 ? grey : (uv.y < 0.3 ? colour.bgr * 0.6 : colour);
}

// Channel 0 cut to fill the frame, over ink where it is transparent. The size of an unbound sampler differs
// from the one reported for the channel: then the card takes its place.
vec3 source(vec2 uv) {
    vec2 size = max(iChannelResolution[0], vec2(1.0));
    if (any(notEqual(textureSize(iChannel0, 0), ivec2(size + 0.5)))) return card(uv);
    vec2 fit = iResolution.xy / size;
    vec4 c = textureLod(iChannel0, (uv - 0.5) * fit / max(fit.x, fit.y) + 0.5, 0.0);
    return mix(kInk, c.rgb, c.a);
}

// 1 inside a sign; q in sign heights from the first sign's lower left corner.
float signs(vec2 q, bool play) {
    int slot = int(floor(q.x / 0.75));
    if (slot < 0 || slot > 5 || q.y < 0.0 || q.y >= 1.0) return 0.0;
    int s = int(mod(iTime, 3600.0)), glyph = kPlay[slot];
    if (!play) {
        int[6] counter = int[6](s / 600, (s / 60) % 10, 15, (s % 60) / 10, s % 10, 16);
        glyph = counter[slot];
    }
    ivec2 bit = ivec2(vec2(fract(q.x / 0.75) * 5.0, q.y * 7.0));
    return bit.x > 3 ? 0.0 : float((kGlyphs[glyph] >> uint(bit.y * 4 + bit.x)) & 1u);
}

void main() {
    float aspect = iResolution.x / iResolution.y;
    float tracking = clamp(uTracking, 0.0, 1.0), bleed = clamp(uBleed, 0.0, 1.0);
    float lines = min(240.0, iResolution.y * 0.5);
    float line = floor(vUV.y * lines + kOff), tick = floor(mod(iTime, 600.0) * 30.0);

    // Every line starts a little late; the tape's wander adds to it.
    float x = vUV.x + (hash(line, tick, 1.0) - 0.5) * 0.0025;
    x += 0.0025 * sin(vUV.y * 14.0 + iTime * 3.1) * sin(iTime * 1.3 + vUV.y * 3.0);
    // The tracking error climbs through the picture; the head switches near the lower edge.
    float centre = fract(iTime * 0.11 + 0.3) * 1.4 - 0.2;
    float off = (vUV.y - centre) / 0.085;
    float band = exp(-off * off) * tracking;
    x += band * (0.05 * sin(vUV.y * 60.0 + iTime * 20.0) + 0.12 * (hash(floor(line / 2.0), tick, 2.0) - 0.5));
    float switching = smoothstep(0.045, 0.0, vUV.y);
    x += switching * (0.09 + 0.05 * hash(line, tick, 3.0));
    vec2 uv = vec2(x, (line + 0.5) / lines);

    float step_ = 0.0035 / aspect * 1.6;
    vec3 c0 = source(uv), c1 = source(uv - vec2(step_, 0.0)), c2 = source(uv + vec2(step_, 0.0));
    float here = dot(c0, kLuma), soft = dot(c1 + c2, kLuma) * 0.5;
    // Sharpened again by the recorder, which leaves a bright rim after dark edges.
    float light = mix(here, soft, 0.5) + 0.5 * (here - dot(c1, kLuma));
    vec3 late = 0.25 * c1;
    float reach = (0.012 + 0.05 * bleed) / aspect;
    for (int i = 0; i < 3; ++i) late += 0.25 * source(uv - vec2(reach * (float(i) * 0.4 + 0.2), 0.004));
    vec3 chroma = late - dot(late, kLuma);
    float tint = 1.25 + 0.2 * sin(vUV.y * 5.0 + iTime * 0.9);
    vec3 colour = light * 0.88 + 0.055 + chroma * tint;
    colour += vec3(0.018, -0.006, 0.02);

    // Noise: a fine one everywhere, dashes in the band and at the switch, drop-outs anywhere.
    float dash = hash(floor(vUV.x * 90.0 + 40.0 * hash(line, tick, 4.0)), line, tick);
    float dirt = clamp(band * 1.5 + switching, 0.0, 1.0);
    colour = mix(colour, vec3(0.9) * step(0.5, fract(dash * 256.0)), step(1.0 - 0.5 * dirt, dash));
    float fleck = hash(floor(vUV.x * 7.0 + 7.0 * hash(line, tick, 5.0)), line, tick + 50000.0);
    colour = mix(colour, kBone, 0.8 * step(0.9985, fleck));
    colour += (hash(vUV.x * lines * aspect * 0.6 + kOff, line, tick) - 0.5) * 0.09;
    colour *= 0.93 + 0.07 * cos(6.2832 * vUV.y * lines);

    if (uSigns) {
        float size = 0.062;
        vec2 q = vec2(x * aspect, uv.y);
        float play = signs((q - vec2(0.08, 0.86)) / size, true);
        float count = signs((q - vec2(0.08, 0.09)) / size, false);
        float shade = signs((q - vec2(0.086, 0.853)) / size, true);
        shade += signs((q - vec2(0.086, 0.083)) / size, false);
        colour = mix(colour * (1.0 - 0.6 * min(shade, 1.0)), vec3(0.93, 0.95, 0.92), max(play, count) * 0.92);
    }
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
