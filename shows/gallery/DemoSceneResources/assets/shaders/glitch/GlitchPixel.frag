#version 330 core
// Pixels: the picture in square fields that keep splitting into smaller ones and melting together again.
//   uCells   largest fields a frame height, 2..24
//   uDetail  how readily fields split, 0..1
//   uRate    changes a second of a field, 0..8
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uCells = 6.0;
uniform float uDetail = 0.55;
uniform float uRate = 1.2;

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

// A sun above the sea.
vec3 card(vec2 uv) {
    vec2 p = (uv - vec2(0.5, 0.42)) * vec2(iResolution.x / iResolution.y, 1.0);
    float d = length(p - vec2(0.0, 0.12));
    vec3 sky = mix(vec3(0.75, 0.2, 0.12), vec3(0.13, 0.16, 0.26), smoothstep(0.0, 0.5, p.y));
    sky = mix(sky, mix(kEmber, kBone, smoothstep(0.0, 0.4, p.y)), smoothstep(0.27, 0.26, d));
    float path = exp(-abs(p.x) * 5.0) * (0.5 + 0.5 * sin(p.y * 90.0 + sin(p.x * 9.0 + iTime * 2.0) * 2.0));
    vec3 sea = mix(vec3(0.06, 0.12, 0.19), kSteel * 0.5, smoothstep(-0.45, 0.0, p.y)) + kEmber * 0.8 * path;
    return p.y > 0.0 ? sky : sea;
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

void main() {
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 600.0);
    float size = 1.0 / clamp(uCells, 2.0, 24.0), detail = clamp(uDetail, 0.0, 1.0);
    vec2 p = (vUV - 0.5) * vec2(aspect, 1.0) + 0.1 * kOff;
    vec2 cell = floor(p / size);
    float swell = 0.2 * sin(p.x * 2.3 + time * 0.9) * sin(p.y * 2.9 - time * 0.7), fresh = 1.0;
    // Up to three splits; each field decides by its own clock, and more of them split as a swell passes.
    for (int i = 0; i < 3; ++i) {
        float level = float(i) * 7.0, own = hash(cell.x, cell.y, level + 1.0);
        float clock = time * clamp(uRate, 0.0, 8.0) * (0.5 + own) + own * 9.0;
        float dice = hash(cell.x, cell.y, floor(clock) * 31.0 + level);
        fresh = min(fresh, fract(clock) / max(clamp(uRate, 0.0, 8.0), 0.2) * 3.0);
        if (dice > detail * (1.25 - 0.18 * float(i)) + swell || size * iResolution.y < 6.0) break;
        size *= 0.5;
        cell = floor(p / size);
    }
    vec2 q = p / size - cell, centre = (cell + 0.5) * size;
    vec2 at = centre / vec2(aspect, 1.0) + 0.5;
    // Five looks into the field stand for its mean.
    vec2 d = 0.27 * size / vec2(aspect, 1.0), e = vec2(d.x, -d.y);
    vec3 colour = 0.2 * (source(at) + source(at + d) + source(at - d) + source(at + e) + source(at - e));
    colour = mix(colour, floor(colour * 7.0 + 0.5) / 7.0, 0.6);
    float h = hash(cell.x, cell.y, size * 4096.0 + kOff);
    colour *= 0.93 + 0.14 * h;
    // Tiles: a lit upper edge, a dark gap of a constant width, a flash on a fresh change.
    float thin = max(1.0, iResolution.y / 540.0) / (size * iResolution.y);
    vec2 rim = min(q, 1.0 - q);
    colour *= 1.0 + 0.22 * step(1.0 - 3.0 * thin, q.y) - 0.18 * step(q.y, 3.0 * thin);
    colour = mix(colour, kInk, 0.8 * step(min(rim.x, rim.y), thin));
    float flash = exp(-6.0 * max(fresh, 0.0)) * step(0.62, h);
    colour = mix(colour, mix(kEmber, kBone, step(0.8, h)), 0.75 * flash);
    fragColor = vec4(min(colour, 1.0), uAlpha);
}
