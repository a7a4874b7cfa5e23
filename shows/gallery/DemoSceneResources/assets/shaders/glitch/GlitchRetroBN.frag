#version 330 core
// Retro black and white: worn film in a gate that weaves, with grain, dust, scratches and a failing lamp.
//   uGrain    strength of the grain, 0..1
//   uWear     scratches, dust and hairs, 0..1
//   uFlicker  unsteadiness of lamp and gate, 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uGrain = 0.5;
uniform float uWear = 0.6;
uniform float uFlicker = 0.5;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const float kRate = 16.0; // pictures a second
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

// Start of the reel: a count-down clock, a turn every two seconds.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float d = length(p), turn = fract(atan(p.x, p.y + 1e-6) / 6.2832 + 1.0);
    float light = mix(0.66, 0.4, step(turn, fract(iTime * 0.5)));
    float thin = 0.006;
    float line = step(abs(d - 0.32), thin) + step(abs(d - 0.37), thin);
    line += step(min(abs(p.x), abs(p.y)), thin * 0.6);
    float hand = fract(iTime * 0.5) * 6.2832;
    vec2 way = vec2(sin(hand), cos(hand));
    line += step(abs(dot(p, vec2(way.y, -way.x))), thin * 0.7) * step(0.0, dot(p, way));
    float mark = step(abs(d - 0.13), 0.035) + step(d, 0.035);
    return vec3(mix(light, 0.06, clamp(line + mark, 0.0, 1.0)));
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
    float tick = floor(time * kRate), wear = clamp(uWear, 0.0, 1.0), shaky = clamp(uFlicker, 0.0, 1.0);

    // The gate weaves slowly and shivers every picture; now and then a perforation slips.
    vec2 weave = 0.004 * vec2(noise(vec2(time * 1.7, 1.0), 1.0) - 0.5, noise(vec2(time * 2.3, 2.0), 1.0) - 0.5);
    weave += 0.004 * shaky * vec2(hash(tick, 1.0, 1.0) - 0.5, hash(tick, 2.0, 1.0) - 0.5);
    weave.y += 0.05 * shaky * step(0.955, hash(tick, 3.0, 1.0));
    vec2 uv = (vUV - 0.5) * 0.985 + 0.5 + weave, soft = vec2(0.0016 / aspect, 0.0016);
    vec3 seen = 0.4 * source(mirror(uv)) + 0.3 * source(mirror(uv + soft)) + 0.3 * source(mirror(uv - soft));
    // Old stock: sees little red, deep shadows, lights that burn out.
    float light = dot(seen, vec3(0.34, 0.46, 0.2));
    light = mix(light, smoothstep(0.02, 0.82, light), 0.75);

    float lamp = 1.0 + shaky * (0.2 * (hash(tick, 4.0, 1.0) - 0.5) + 0.1 * sin(time * 2.1));
    float glow = 1.0 + 0.25 * shaky * (noise(vec2(vUV.x * 1.5 + tick * 0.37, vUV.y + tick * 0.11), 3.0) - 0.5);
    light = light * 0.92 * lamp * glow + 0.03;
    vec2 q = (vUV - 0.5) * 2.0;
    light *= 1.0 - 0.5 * smoothstep(0.3, 1.35, length(q * vec2(0.86, 0.95)));

    // Grain: clumps the size of a 540th of the height, strongest in the mid tones.
    float pitch = iResolution.y / min(540.0, iResolution.y);
    vec2 speck = floor(vUV * iResolution.xy / pitch + kOff);
    float clump = hash(floor(speck.x * 0.5), floor(speck.y * 0.5), tick + 20000.0);
    float grain = hash(speck.x, speck.y, tick) + 0.7 * clump - 0.85;
    light += clamp(uGrain, 0.0, 1.0) * 0.24 * grain * (0.35 + light * (1.2 - light));

    // Scratches run the length of the reel: each wanders for a while, then the next.
    vec2 p = vec2(vUV.x * aspect, vUV.y);
    for (int i = 0; i < 3; ++i) {
        float n = float(i), life = floor(time * (0.5 + 0.2 * n) + n * 0.3 + kOff);
        float x = hash(life, n, 5.0) * aspect + 0.012 * sin(time * 1.3 + n * 2.0);
        x += 0.0025 * (hash(tick, n, 6.0) - 0.5);
        float wide = max(0.0011 * (0.6 + hash(life, n, 7.0)), 0.6 / iResolution.y);
        float there = step(hash(life, n, 8.0), 0.25 + wear) * step(0.25, noise(vec2(p.y * 3.0 + tick, n), 4.0));
        float cut = there * smoothstep(wide, wide * 0.4, abs(p.x - x)) * min(1.0, wear * 2.0);
        light = mix(light, n > 1.5 ? 0.04 : 0.92, cut * 0.65);
    }
    // Dust: a few specks a picture, dark or clear, and a hair.
    vec2 at = floor(p * 4.0 + kOff);
    float spot = hash(at.x, at.y, tick + 30000.0);
    vec2 off = fract(p * 4.0 + kOff) - 0.2 - 0.6 * vec2(hash(at.x, tick, 9.0), hash(at.y, tick, 10.0));
    float blob = length(off) * (1.0 + 0.25 * sin(atan(off.y, off.x + 1e-6) * 2.0 + spot * 900.0));
    float size = 0.015 + 0.05 * fract(spot * 256.0);
    float dust = step(spot, 0.11 * wear) * smoothstep(size, size * 0.6, blob);
    light = mix(light, step(0.5, fract(spot * 4096.0)) * 0.9, dust);
    float reel = floor((tick + 0.5) / 5.0);
    vec2 h = p - vec2(hash(reel, 11.0, 1.0) * aspect, hash(reel, 12.0, 1.0));
    float hair = abs(h.x - 0.05 * sin(h.y * 24.0) - 2.0 * h.y * h.y);
    light *= 1.0 - 0.8 * step(hash(reel, 13.0, 1.0), wear * 0.5) * step(abs(h.y), 0.07)
                 * smoothstep(max(0.003, 1.0 / iResolution.y), 0.0, hair);

    // The gate's rounded corners.
    vec2 box = abs(q + weave * 2.0) * vec2(aspect, 1.0) - vec2(aspect, 1.0) + 0.02 + 0.1;
    float gate = length(max(box, 0.0)) - 0.1;
    light *= smoothstep(0.008, -0.008, gate);
    vec3 colour = clamp(light, 0.0, 1.0) * vec3(1.0, 0.985, 0.95);
    fragColor = vec4(colour, uAlpha);
}
