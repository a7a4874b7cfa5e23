#version 330 core
// Video wall: a grid of misaligned monitors; some roll, some show the whole picture, some nothing.
//   uColumns  monitors across and up, 1..12
//   uDrift    how far the monitors are out of place, 0..1
//   uFaults   share of the monitors that misbehave, 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uColumns = 4.0;
uniform float uDrift = 0.5;
uniform float uFaults = 0.35;

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

// Circle and cross hairs of an alignment card.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float d = length(p);
    vec3 colour = mix(kSteel * 0.45, kEmber * 0.8, smoothstep(-0.6, 0.6, p.x + p.y));
    colour = mix(colour, kInk * 2.0, step(d, 0.4));
    float angle = atan(p.y, p.x + 1e-6) + iTime * 0.5;
    float line = step(abs(d - 0.4), 0.012) + step(min(abs(p.x), abs(p.y)), 0.006) + step(abs(d - 0.2), 0.006);
    colour = mix(colour, kEmber, step(d, 0.19) * fract(angle / 6.2832));
    return mix(colour, kBone, min(line, 1.0));
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
    float n = floor(clamp(uColumns, 1.0, 12.0) + 0.5), aspect = iResolution.x / iResolution.y;
    float time = mod(iTime, 600.0);
    vec2 p = vUV * n + kOff, cell = floor(p), q = fract(p);
    float h = hash(cell.x, cell.y, 1.0);
    // Every monitor changes its state on its own clock.
    float tick = floor(time * 0.7 + h * 8.0), state = hash(cell.x, cell.y, tick + 20.0);
    float late = fract(time * 0.7 + h * 8.0);
    float faults = clamp(uFaults, 0.0, 1.0), drift = clamp(uDrift, 0.0, 1.0);

    // Inset by the frame of the monitor; its face runs 0..1.
    float bezel = 0.028;
    vec2 face = (q - 0.5) / (1.0 - 2.0 * bezel) + 0.5;
    vec2 inside = smoothstep(vec2(0.0), vec2(0.02), face) * smoothstep(vec2(0.0), vec2(0.02), 1.0 - face);
    float screen = inside.x * inside.y;

    vec2 home = (cell + face) / n;
    float swing = time * (0.5 + 0.6 * h) + h * 30.0;
    vec2 out_ = drift * 0.09 * vec2(sin(swing), cos(swing * 0.83)) + drift * 0.05 * (h - 0.5);
    vec2 uv = 0.5 + (home - 0.5) * (1.0 - 0.18 * drift * (0.4 + h)) + out_;
    float gain = 0.86 + 0.22 * hash(cell.x, cell.y, 2.0);
    vec3 dye = vec3(1.0) + 0.1 * vec3(h - 0.5, 0.0, 0.5 - h);
    float fault = state / max(faults, 0.001);
    bool dead = false;
    if (fault < 0.35) uv = face;                                            // the whole picture
    else if (fault < 0.6) uv.y = fract(uv.y + late * 1.3);                  // rolls
    else if (fault < 0.78) uv = (floor(vec2(hash(cell.x, tick, 5.0), hash(cell.y, tick, 6.0)) * n) + face) / n;
    else if (fault < 0.88) dead = true;
    else if (fault < 1.0) dye = vec3(1.2, 0.55, 0.4);
    // A change of state tears the picture for an instant.
    uv.x += exp(-9.0 * late) * 0.12 * (hash(face.y * 18.0 + kOff, tick, 7.0) - 0.5);
    vec3 colour = source(mirror(uv)) * gain * dye;
    if (dead) {
        float snow = hash(face.x * 64.0 + kOff, face.y * 40.0 + kOff, time * 24.0);
        colour = kSteel * (0.1 + 0.22 * snow) + kEmber * 0.4 * step(abs(face.y - 0.5), 0.012);
    }
    colour *= 0.9 + 0.1 * cos(6.2832 * face.y * min(60.0, iResolution.y / n / 3.0));
    colour *= 1.0 + 0.25 * exp(-30.0 * abs(fract(face.y + time * 0.6 + h) - 0.5));
    colour *= 1.08 - 0.9 * dot(face - 0.5, face - 0.5);
    // Frames with a lit upper edge.
    vec3 frame = kInk * 0.7 + kSteel * 0.12 * smoothstep(0.03, 0.0, 1.0 - q.y) ;
    fragColor = vec4(mix(frame, min(colour, 1.0), screen), uAlpha);
}
