#version 330 core
// Memory leak: the picture fills from below with other people's bytes until they are freed, and fills again.
//   uCells   memory cells a frame height, 12..96
//   uPeriod  s from one release to the next, 2..60
//   uLevel   highest level of the leak, 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uCells = 40.0;
uniform float uPeriod = 8.0;
uniform float uLevel = 0.9;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);
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

float noise(vec2 p, float seed) {
    vec2 i = floor(p), f = fract(p);
    f *= f * (3.0 - 2.0 * f);
    return mix(mix(hash(i.x, i.y, seed), hash(i.x + 1.0, i.y, seed), f.x),
               mix(hash(i.x, i.y + 1.0, seed), hash(i.x + 1.0, i.y + 1.0, seed), f.x), f.y);
}

// A desk with windows on it.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    vec3 colour = mix(vec3(0.10, 0.17, 0.22), vec3(0.20, 0.30, 0.37), uv.y);
    for (int i = 0; i < 3; ++i) {
        float n = float(i);
        vec2 q = p - vec2(-0.36 + 0.34 * n, 0.12 - 0.11 * n), s = vec2(0.3, 0.22);
        if (abs(q.x) > s.x || abs(q.y) > s.y) continue;
        float end = s.x * (0.8 * hash(floor(q.y * 22.0), n, 71.0) - 0.1);
        float line = step(0.5, fract(q.y * 22.0)) * step(q.x, end);
        colour = mix(kBone * 0.9, kInk * 2.0, line * step(abs(q.x), s.x * 0.9));
        float button = step(length(q - s + 0.028), 0.012);
        if (q.y > s.y - 0.055) colour = mix(n > 1.5 ? kEmber : kSteel * 0.8, kInk, button);
    }
    return uv.y < 0.07 ? kInk * 1.8 : colour;
}

// Beyond its edges the picture goes on mirrored.
vec2 mirror(vec2 uv) {
    return 1.0 - abs(mod(uv, 2.0) - 1.0);
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

// What a leaked cell holds; q 0..1 within it.
vec3 garbage(vec2 cell, vec2 q, vec2 uv, float time) {
    // Pages of several rows share a content; most are dead, a few still written to.
    float page = floor((cell.y + 0.5) / 3.0), span = floor(cell.x / (4.0 + 20.0 * hash(page, 1.0, 2.0)));
    float kind = hash(page, span, 3.0), live = step(0.6, hash(page, span, 4.0)) * floor(time * 9.0);
    vec3 dye = kind < 0.4 ? kSteel : kind < 0.75 ? kEmber : kBone;
    float byte_ = hash(cell.x, cell.y, live);
    if (kind < 0.3) {                                       // bits
        vec2 bit = floor(q * 4.0);
        float on = step(0.52, hash(bit.x, bit.y + 4.0 * cell.y, cell.x + live));
        return mix(kInk, dye, on * (0.4 + 0.6 * byte_));
    }
    if (kind < 0.52) {                                      // the picture read with a wrong row length
        vec2 at = vec2(fract(uv.x * 1.7 + cell.y * 0.137 + 0.05 * time), fract(cell.y * 0.031 + kind * 5.0));
        vec3 c = source(at);
        return mix(kInk, dye, dot(c, vec3(0.3, 0.59, 0.11)) * 1.5) + c * 0.25;
    }
    if (kind < 0.72) {                                      // one value over and over
        float v = hash(page, span, floor(live * 0.2));
        return mix(kInk * 1.5, dye, (0.25 + 0.6 * v) * step(0.12, q.x) * step(0.12, q.y));
    }
    if (kind < 0.88) {                                      // counters
        return mix(kInk, dye, step(q.y, fract(byte_ + time * (0.2 + byte_))) * step(0.2, q.x));
    }
    return 1.0 - source(mirror(uv * 0.25 + vec2(kind * 7.0, byte_ * 0.08)));
}

void main() {
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 1200.0);
    float count = clamp(uCells, 12.0, 96.0), period = clamp(uPeriod, 2.0, 60.0);
    vec2 p = vec2(vUV.x * aspect, vUV.y) * count + kOff, cell = floor(p), q = fract(p);

    // The leak starts at a third, rises, and is freed in the last twentieth of the period.
    float phase = fract(time / period + 0.12);
    float level = clamp(uLevel, 0.0, 1.0) * (0.34 + 0.66 * phase / 0.95);
    level *= 1.0 - 0.62 * smoothstep(0.95, 1.0, phase);
    // Columns fill unevenly, and single cells run ahead.
    float column = noise(vec2(cell.x * 0.13, floor(time * 2.0) * 0.21), 5.0);
    column += 0.4 * hash(cell.x * 0.5, 6.0, 1.0);
    float front = level * 1.12 - 0.14 + 0.22 * (column - 0.6);
    float ahead = (cell.y + 0.5) / count - front, lone = hash((cell.x + 0.5) / 3.0, cell.y, 8.0);
    bool full = ahead < 0.0 || (lone < 0.3 * exp(-ahead * 9.0)) || lone < 0.03;

    // Above the front rows are already read from the wrong place.
    float slip = (hash(cell.y, floor(time * 4.0), 9.0) - 0.5) * 0.07 * exp(-max(ahead, 0.0) * 5.0);
    slip += 0.004 * sin(time * 6.0 + cell.y);
    vec3 colour = source(mirror(vec2(vUV.x + slip, vUV.y)));
    if (full) {
        colour = garbage(cell, q, vUV, time);
        colour *= 0.86 + 0.14 * step(0.08, q.y);
    }
    // Cells that have just been taken glow.
    float edge = exp(-abs(ahead) * count * 0.55) * step(0.35, hash(cell.x, cell.y, floor(time * 8.0)));
    colour = mix(colour, mix(kEmber, kBone, hash(cell.x, cell.y, 12.0)), edge * (full ? 0.85 : 0.0));
    fragColor = vec4(min(colour, 1.0), uAlpha);
}
