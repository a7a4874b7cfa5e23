#version 330 core
// Signal: a weak analogue broadcast with ghosts beside every edge, herringbone and a picture that rolls.
//   uGhost  strength of the echoes, 0..1
//   uRoll   pictures that roll by a second, -3..3
//   uNoise  strength of the interference, 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uGhost = 0.6;
uniform float uRoll = 0.16;
uniform float uNoise = 0.4;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);
const vec3 kLuma = vec3(0.299, 0.587, 0.114);
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

// A broadcaster's card: circle, grid, grey steps.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    vec2 f = abs(fract(p * 7.0) - 0.5);
    float d = length(p);
    vec3 colour = mix(vec3(0.26, 0.28, 0.31), kBone, step(0.47, max(f.x, f.y)) * 0.8);
    vec3 inner = mix(vec3(0.1), kBone, step(0.5, fract(p.x * (8.0 + 6.0 * floor(p.y * 7.0)))));
    if (abs(p.y) < 0.143) inner = vec3(floor((p.x + 0.43) * 7.0) / 6.0);
    if (p.y < -0.143) inner = mix(vec3(0.75, 0.25, 0.15), vec3(0.2, 0.4, 0.55), step(0.0, p.x));
    colour = mix(colour, inner, step(d, 0.42));
    return mix(colour, kBone, step(abs(d - 0.42), 0.008));
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
    float tick = floor(time * 25.0), dirt = clamp(uNoise, 0.0, 1.0), echo = clamp(uGhost, 0.0, 1.0);
    float lines = min(288.0, iResolution.y * 0.5), line = floor(vUV.y * lines + kOff);

    // Vertical hold: the picture creeps and now and then lurches; the blanking bar comes by with it.
    float lurch = smoothstep(0.72, 1.0, fract(time * 0.31)) * 0.35;
    float roll = vUV.y * 1.09 + time * clamp(uRoll, -3.0, 3.0) + lurch;
    float y = fract(roll / 1.09) * 1.09;
    float blank = smoothstep(1.0, 1.004, y);
    // Horizontal hold: lines after the bar start late and recover; mains hum bends the rest.
    float hook = 0.16 * exp(-(1.0 - min(y, 1.0)) * 16.0) * (0.7 + 0.3 * sin(time * 7.0));
    float x = vUV.x + hook + 0.006 * sin(vUV.y * 7.0 + time * 4.0);
    x += 0.004 * dirt * (hash(line, tick, 1.0) - 0.5);
    vec2 uv = vec2(x, clamp(y, 0.0, 1.0));

    vec3 c = source(uv);
    float sway = 1.0 + 0.3 * sin(time * 0.7);
    vec3 near = source(uv - vec2(0.03 * sway / aspect, 0.0));
    vec3 far_ = source(uv - vec2(0.11 * sway / aspect, 0.0));
    float pre = dot(source(uv + vec2(0.016 / aspect, 0.0)), kLuma);
    float ghost = 0.42 * dot(near, kLuma) + 0.3 * dot(far_, kLuma) - 0.26 * pre;
    float light = dot(c, kLuma) * (1.0 - 0.25 * echo) + echo * ghost;
    // The colour carrier drifts: hues swing from line to line.
    vec3 chroma = 0.5 * (c + near) - dot(0.5 * (c + near), kLuma);
    float swing = 0.9 * sin(vUV.y * 5.0 - time * 1.9) + 0.35 * (mod(line, 2.0) - 0.5);
    vec3 turned = mix(chroma, swing > 0.0 ? chroma.brg : chroma.gbr, min(abs(swing) * 0.6, 1.0));
    vec3 colour = vec3(light) + turned * 0.85;

    // Another station's carrier lies over it as a herringbone.
    float bone = sin(vUV.x * aspect * 260.0 + sin(vUV.y * 90.0 + time * 3.0) * 2.2 + time * 31.0);
    colour += dirt * 0.11 * bone * (0.6 + 0.4 * sin(vUV.y * 4.0 + time * 2.0));
    colour += dirt * 0.24 * (hash(vUV.x * lines * aspect + kOff, line, tick) - 0.5);
    vec3 bar = vec3(0.02) + 0.5 * kSteel * step(abs(y - 1.045), 0.012) * step(fract(x * 3.0), 0.8);
    colour = mix(colour, bar, blank);
    colour *= 0.95 + 0.05 * cos(6.2832 * vUV.y * lines);
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
