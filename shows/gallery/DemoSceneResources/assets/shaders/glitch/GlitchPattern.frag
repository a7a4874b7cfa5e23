#version 330 core
// Pattern corruption: the picture in a turning kaleidoscope of repeating tiles, some of which fold wrongly.
//   uTiles     tiles a frame height, 1..8
//   uSegments  mirrors in a tile, 2..16
//   uSpin      turns of the mirrors a minute, -30..30
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uTiles = 2.0;
uniform float uSegments = 6.0;
uniform float uSpin = 3.0;

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

// Discs and bars, for the mirrors to fold.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    vec3 colour = mix(kInk, kSteel * 0.7, step(0.55, fract((p.x + p.y) * 6.0)) * 0.6);
    float sun = length(p - vec2(0.16, 0.1));
    colour = mix(colour, mix(kEmber, kBone, step(sun, 0.09)), step(sun, 0.21));
    float ring = abs(length(p + vec2(0.3, 0.14)) - 0.17);
    return mix(colour, kBone, step(ring, 0.025));
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

void main() {
    float aspect = iResolution.x / iResolution.y;
    float tiles = clamp(uTiles, 1.0, 8.0), segments = floor(clamp(uSegments, 2.0, 16.0) + 0.5);
    vec2 p = (vUV - 0.5) * vec2(aspect, 1.0) * tiles + vec2(0.07, 0.05) * iTime + kOff;
    vec2 cell = floor(p), q = abs(fract(p) - 0.5);          // mirrored tiles: no seams between them

    // A broken tile falls back to fewer mirrors, turned the other way, for a while.
    float tick = floor(mod(iTime, 600.0) * 1.5 + hash(cell.x, cell.y, 9.0));
    float broken = step(hash(cell.x, cell.y, tick), 0.22);
    segments = mix(segments, max(2.0, floor(segments * 0.5)), broken);
    float turn = 6.2832 * clamp(uSpin, -30.0, 30.0) / 60.0 * mod(iTime, 600.0) * mix(1.0, -2.0, broken);

    float r = length(q), wedge = 6.2832 / segments;
    float a = atan(q.y, q.x + 1e-6) + turn * 0.5;
    a = abs(mod(a, wedge) - wedge * 0.5) + turn;
    // Rings of the tile slip against each other in steps.
    float ring = floor(r * 9.0);
    a += broken * 0.6 * (hash(ring, cell.x + cell.y, tick) - 0.5);
    vec2 at = (r - 0.34) * vec2(cos(a), sin(a));
    // Each wedge looks across the whole picture; the point that it looks at wanders.
    vec2 eye = vec2(0.2 * sin(iTime * 0.31 + 0.8), 0.12 * cos(iTime * 0.23 + 1.2));
    vec2 uv = 0.5 + (eye + at * 1.6) / vec2(aspect, 1.0);
    vec3 colour = source(mirror(uv));

    // Facets: the mirrors' edges catch light, and every second wedge is a shade deeper.
    float edge = abs(mod(atan(q.y, q.x + 1e-6) + turn * 0.5, wedge) / wedge - 0.5);
    colour *= 0.78 + 0.44 * edge;
    float seam = smoothstep(0.49, 0.499, max(q.x, q.y));
    seam += smoothstep(0.012, 0.0, abs(r - 0.34 - 0.03 * sin(iTime)));
    colour = mix(colour, mix(kEmber, kBone, 0.35), 0.3 * min(seam, 1.0));
    if (broken > 0.5) colour = mix(colour, colour.gbr, 0.55);
    fragColor = vec4(colour, uAlpha);
}
