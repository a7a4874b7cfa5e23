#version 330 core
// Glitch, plain: bands torn sideways, blocks from elsewhere, blocks reduced to two colours, in bursts.
//   uAmount  how much of the picture is hit, 0..1
//   uRate    jumps a second, 0..30
//   uBlocks  large blocks a frame height, 2..40
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uAmount = 0.5;
uniform float uRate = 8.0;
uniform float uBlocks = 9.0;

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

// Chevrons round a diamond.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float d = abs(p.x) + abs(p.y);
    float ring = smoothstep(0.46, 0.5, abs(fract(d * 4.0) - 0.5) * 2.0);
    vec3 colour = mix(kInk * 1.5, mix(kEmber, kSteel, smoothstep(0.2, 0.9, d)), ring * (1.0 - 0.5 * d));
    return mix(colour, kBone, step(d, 0.125));
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
    float amount = clamp(uAmount, 0.0, 1.0), blocks = clamp(uBlocks, 2.0, 40.0);
    float tick = floor(mod(iTime, 600.0) * clamp(uRate, 0.0, 30.0));
    float burst = amount * (0.7 + 0.3 * step(0.55, hash(tick * 0.25, 3.0, 1.0)));
    vec2 p = vec2(vUV.x * aspect, vUV.y) * blocks + kOff;

    // Bands: two grids of rows, the finer one only in places.
    float row = floor(p.y * 0.6 + 7.0 * hash(tick, 1.0, 5.0)), fine = floor(p.y * 4.0);
    float shift = (hash(row, tick, 11.0) - 0.5) * 0.34 * step(hash(row, tick, 12.0), burst * 0.9);
    shift += (hash(fine, tick, 13.0) - 0.5) * 0.12 * step(hash(row, tick, 14.0), burst * 0.45);
    shift += 0.006 * sin(vUV.y * 9.0 + iTime * 5.0);

    // Blocks: wide ones and slivers, each read from another place.
    vec2 wide = floor(p / vec2(2.2, 1.0)), sliver = floor(p / vec2(0.9, 0.25));
    float pick = hash(wide.x, wide.y, tick), pick2 = hash(sliver.x, sliver.y, tick + 30000.0);
    vec2 uv = vUV + vec2(shift, 0.0);
    if (pick < burst * 0.22) uv += 0.5 * (vec2(hash(wide.x, tick, 21.0), hash(wide.y, tick, 22.0)) - 0.5);
    if (pick2 < burst * 0.1) uv.x += 0.3 * (pick2 / max(burst, 0.01) * 10.0 - 0.5);

    vec2 fringe = vec2(0.008 + 0.06 * abs(shift), 0.0) / aspect;
    vec3 colour = vec3(source(uv + fringe).r, source(uv).g, source(uv - fringe).b);
    float light = dot(colour, vec3(0.3, 0.59, 0.11));
    vec3 duotone = mix(kEmber * 0.35, kEmber, smoothstep(0.05, 0.5, light));
    duotone = mix(duotone, kBone, smoothstep(0.5, 0.95, light));
    vec3 cold = mix(kSteel, kInk, smoothstep(0.05, 0.7, light));
    float dye = hash(wide.x, wide.y, tick + 60000.0);
    if (dye < burst * 0.1) colour = duotone;
    else if (dye > 1.0 - burst * 0.08) colour = cold;
    if (pick2 > 1.0 - burst * 0.035) colour = mix(colour, pick2 > 1.0 - burst * 0.017 ? kBone : kEmber, 0.85);
    colour *= 0.9 + 0.1 * step(0.5, fract(vUV.y * 90.0 - iTime * 3.0 + kOff));
    fragColor = vec4(colour, uAlpha);
}
