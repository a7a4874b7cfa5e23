#version 330 core
// Broken television: torn lines, a picture that jumps, snow, and a tube that now and then gives up.
//   uSnow     strength of the snow, 0..1
//   uTear     width of the tears in frame heights, 0..1
//   uCollapse whether the tube collapses to a line every few seconds
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uSnow = 0.45;
uniform float uTear = 0.35;
uniform bool uCollapse = true;

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

// Eight bars with a saw-tooth edge over a slogan plate.
vec3 card(vec2 uv) {
    float bar = floor(clamp(uv.x + 0.01 * step(0.5, fract(uv.y * 24.0)), 0.0, 0.999) * 8.0) / 7.0;
    vec3 warm = mix(kBone, kEmber, smoothstep(0.0, 0.45, bar));
    vec3 cold = mix(kSteel, kInk, smoothstep(0.6, 1.0, bar));
    vec3 colour = mix(warm, cold, step(0.5, bar));
    vec2 p = abs(uv - vec2(0.5, 0.5)) - vec2(0.3, 0.1);
    float plate = step(max(p.x, p.y), 0.0);
    float mark = step(0.35, fract(uv.x * 17.0)) * step(abs(uv.y - 0.5), 0.045);
    return mix(colour, mix(kInk, kBone, mark), plate);
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
    float tick = floor(time * 30.0), slow = floor(time * 5.0), tear = clamp(uTear, 0.0, 1.0);
    float lines = min(240.0, iResolution.y * 0.5), line = floor(vUV.y * lines + kOff);

    // Collapse: once in four seconds the picture shrinks to a line and jumps back.
    float beat = fract(time / 4.0 + 0.55) * 4.0;
    float flat_ = uCollapse ? smoothstep(0.0, 0.12, beat) * smoothstep(0.5, 0.3, beat) : 0.0;
    float squeeze = mix(1.0, 0.012, flat_);
    vec2 p = vec2(vUV.x, (vUV.y - 0.5) / squeeze + 0.5);
    float lit = step(0.0, p.y) * step(p.y, 1.0);

    // Vertical hold: jumps to another height and creeps back.
    float jump = hash(slow, 1.0, 1.0);
    float roll = step(0.6, jump) * (jump - 0.8) * 1.6 * (1.0 - fract(time * 5.0)) + 0.035 * sin(time * 2.3);
    float y = fract(p.y + roll + 1.0);
    float seam = smoothstep(0.035, 0.0, min(y, 1.0 - y)) * step(0.6, jump);

    // Tears: bands slanting off sideways, hard at one end, and a comb of single lines.
    float bands = p.y * 5.0 + 9.0 * hash(slow, 2.0, 1.0), at = floor(bands), within = fract(bands);
    float torn = step(hash(at, slow, 3.0), 0.4);
    float x = p.x + torn * tear * (hash(at, slow, 4.0) - 0.5) * within * 1.6 / aspect;
    float loose = smoothstep(0.35, 0.8, noise(vec2(time * 1.7, p.y * 2.0), 6.0));
    x += tear * 0.5 / aspect * (noise(vec2(p.y * 9.0, time * 9.0), 5.0) - 0.5) * loose;
    x += tear * 0.02 * (hash(line, tick, 7.0) - 0.5);
    vec2 uv = vec2(fract(x), y);
    float wrap = smoothstep(0.02, 0.0, min(uv.x, 1.0 - uv.x)) * step(0.005, abs(x - p.x));

    vec3 seen = source(uv), echo = source(vec2(uv.x - 0.02 / aspect, uv.y));
    float light = dot(seen, vec3(0.3, 0.59, 0.11));
    // The colour burst is lost in bands.
    float colourful = smoothstep(0.35, 0.55, noise(vec2(p.y * 4.0 + time * 1.3, slow * 0.7), 8.0));
    vec3 colour = mix(light * vec3(0.9, 0.97, 1.04), vec3(echo.r, seen.gb), 0.25 + 0.75 * colourful);
    colour = (colour - 0.5) * 1.25 + 0.54;

    // Snow, thick where the picture is torn, in dashes along the lines.
    float gust = 0.3 * step(0.85, hash(slow, 9.0, 1.0));
    float thick = clamp(uSnow, 0.0, 1.0) * (0.45 + 0.5 * torn + 0.6 * seam + gust);
    float grain = hash(p.x * lines * aspect * 0.5 + kOff, line, tick);
    float dash = hash(floor(p.x * 30.0 + 30.0 * hash(line, tick, 10.0)), line, tick + 50000.0);
    float cover = min(thick, 0.9) * (0.35 + 0.65 * step(0.45, grain));
    colour = mix(colour, vec3(0.05 + grain * grain * 1.15), cover);
    colour = mix(colour, kBone, step(1.0 - 0.035 * thick, dash));
    colour = mix(colour, kInk, max(seam * 0.9, wrap));

    colour *= 0.82 + 0.18 * cos(6.2832 * vUV.y * lines);
    colour *= (0.9 + 0.14 * hash(tick, 11.0, 1.0)) * (1.06 - 0.9 * dot(vUV - 0.5, vUV - 0.5));
    colour = mix(colour, colour * 1.5 + kSteel * 0.9, flat_) * lit;
    float glow = exp(-abs(vUV.y - 0.5) * 46.0) * flat_ * smoothstep(0.55, 0.2, abs(vUV.x - 0.5));
    colour += mix(kSteel, kBone, glow) * glow * 0.8 + kInk * (1.0 - lit);
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
