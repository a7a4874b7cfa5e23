#version 330 core
// Moving slabs: the picture cut into slanted slabs that slide past one another and throw shadows.
//   uSlabs  slabs a frame height, 2..30
//   uSlide  how far they slide, in frame heights, 0..1
//   uAngle  slant in degrees, -90..90
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uSlabs = 6.0;
uniform float uSlide = 0.3;
uniform float uAngle = -20.0;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

// Squares in squares.
vec3 card(vec2 uv) {
    vec2 p = abs((uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0));
    float d = max(p.x, p.y) * 12.0, ring = floor(d);
    vec3 colour = mix(kEmber, kSteel * 0.8, clamp(ring / 9.0, 0.0, 1.0)) * max(0.95 - 0.06 * ring, 0.4);
    return mix(mix(colour, kInk, 0.9 * mod(ring, 2.0)), kBone, step(ring, 0.5));
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

// Offset of a slab along its length at a time: hops with soft starts and ends over a slow drift.
float slide(float slab, float time) {
    float clock = time * (0.6 + 0.3 * hash(slab, 1.0, 1.0)) + 5.0 * hash(slab, 2.0, 1.0);
    float n = floor(clock), f = clamp(fract(clock) * 1.7, 0.0, 1.0);
    f = f * f * f * (f * (f * 6.0 - 15.0) + 10.0);
    float hop = mix(hash(slab, n, 3.0), hash(slab, n + 1.0, 3.0), f) * 2.0 - 1.0;
    return hop + 0.16 * sin(time * 0.9 + slab * 2.1);
}

void main() {
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 600.0);
    float count = clamp(uSlabs, 2.0, 30.0), far_ = clamp(uSlide, 0.0, 1.0);
    float a = radians(clamp(uAngle, -90.0, 90.0));
    vec2 along = vec2(cos(a), sin(a)), across = vec2(-along.y, along.x);
    vec2 p = (vUV - 0.5) * vec2(aspect, 1.0);
    float v = dot(p, across) * count;
    v += 0.3 * sin(v * 2.3);                               // slabs of unequal width; stays monotonous
    float slab = floor(v), f = fract(v);

    float shift = slide(slab, time) * far_;
    float depth = hash(slab, 9.0, 9.0), above = hash(slab + 1.0, 9.0, 9.0), below = hash(slab - 1.0, 9.0, 9.0);
    vec2 at = p - along * shift;
    at *= 1.06 - 0.12 * depth;                             // nearer slabs are larger
    vec3 colour = source(mirror(at / vec2(aspect, 1.0) + 0.5));

    // Nearer neighbours throw a shadow; a nearer slab has a lit upper edge.
    float shadow = 0.7 * exp(-f * 6.0) * step(depth, below) + 0.75 * exp(-(1.0 - f) * 4.5) * step(depth, above);
    colour *= (0.82 + 0.26 * depth) * (1.0 - min(shadow, 0.9));
    float thin = count * 1.6 / iResolution.y + 0.012;
    float edge = step(1.0 - thin, f) * step(above, depth);
    float speed = abs(slide(slab, time + 0.02) - slide(slab, time)) * 30.0;
    colour = mix(colour, mix(kBone, kEmber, min(speed, 1.0)), edge * 0.75);
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
