#version 330 core
// RGB split: three prints of the picture, one a colour, that never quite meet.
//   uShift   distance between the prints in frame heights, 0..0.2
//   uRate    jumps a second, 0..20
//   uSlices  slices a frame height that jump further, 0..60
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uShift = 0.022;
uniform float uRate = 4.0;
uniform float uSlices = 14.0;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
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

// Rings and a cross in bone, to show the split best.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float d = length(p);
    float shape = step(abs(d - 0.3), 0.035) + step(d, 0.09) + step(abs(d - 0.44), 0.006);
    shape += step(min(abs(p.x), abs(p.y)), 0.008) * step(0.36, d);
    shape += step(abs(fract(p.x * 5.0) - 0.5), 0.05) * step(0.38, abs(p.y));
    return mix(kInk, kBone, min(shape, 1.0));
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
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 600.0);
    float beat = time * clamp(uRate, 0.0, 20.0), tick = floor(beat), f = fract(beat);
    // The direction turns steadily; each jump springs out and settles.
    float settle = exp(-4.0 * f);
    float angle = time * 0.8 + 2.4 * (hash(tick, 1.0, 1.0) - 0.5) * settle;
    float reach = clamp(uShift, 0.0, 0.2) * (0.85 + 1.9 * settle * hash(tick, 2.0, 1.0));
    float slice = floor(vUV.y * max(clamp(uSlices, 0.0, 60.0), 1.0) + kOff);
    float far_ = step(hash(slice, tick, 3.0), 0.16) * step(0.5, uSlices);
    vec2 d = vec2(cos(angle), sin(angle)) * reach;
    d = mix(d, vec2((hash(slice, tick, 4.0) - 0.5) * 10.0, 0.0) * reach, far_) / vec2(aspect, 1.0);

    // The prints breathe against each other as well, so that the split shows in the middle, too.
    vec2 centre = vUV - 0.5;
    float swell = 0.012 * sin(time * 1.7);
    vec3 r = source(mirror(0.5 + centre * (1.0 - swell) + d));
    vec3 g = source(mirror(vUV + far_ * d * 0.3));
    vec3 b = source(mirror(0.5 + centre * (1.0 + swell) - d));
    vec3 colour = vec3(r.r, g.g, b.b);
    // Over-printed ink is denser: each print's light breathes on its own.
    colour *= 1.0 + 0.12 * sin(time * vec3(2.1, 2.7, 3.3) + vec3(0.0, 2.1, 4.2) + vUV.y * 3.0);
    colour += vec3(0.03, 0.0, 0.035) * (1.0 - colour.g);
    fragColor = vec4(min(colour, 1.0), uAlpha);
}
