#version 330 core
// Raining blood: crimson runs down the glass before a picture drained of its colour.
//   uDensity  runs a frame height across, 4..40
//   uSpeed    speed of the runs, 0..4
//   uStain    how red the picture behind turns, 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uDensity = 8.0;
uniform float uSpeed = 1.0;
uniform float uStain = 0.6;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kBone = vec3(0.95, 0.92, 0.87);
const vec3 kBlood = vec3(0.46, 0.012, 0.02);
const vec3 kFresh = vec3(0.86, 0.06, 0.05);

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

// A moon over haze.
vec3 card(vec2 uv) {
    vec2 p = (uv - vec2(0.5, 0.56)) * vec2(iResolution.x / iResolution.y, 1.0);
    float d = length(p), haze = 0.35 * exp(-5.0 * max(d - 0.24, 0.0));
    vec3 sky = kInk + vec3(0.5, 0.47, 0.45) * haze + 0.12 * max(0.0, 0.35 - uv.y);
    float seas = 0.82 + 0.18 * sin(p.x * 17.0 + 2.0 * sin(p.y * 13.0));
    return mix(sky, kBone * seas, smoothstep(0.24, 0.235, d));
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

// Adds one layer of runs; xy: tilt of the surface, z: cover 0..1.
void runs(vec2 p, float count, float seed, inout vec3 wet) {
    float column = floor(p.x * count);
    float h = hash(column, seed, 1.0), h2 = hash(column, seed, 2.0);
    float phase = fract(mod(iTime, 3600.0) * clamp(uSpeed, 0.0, 4.0) * (0.12 + 0.14 * h2) + h);
    // Runs stick and slip; they are off the lower edge at two thirds of their time and dry for the last third.
    float drop = 1.12 - 1.75 * (phase + 0.012 * sin(phase * 70.0 + h * 40.0) + 0.02 * sin(phase * 23.0));
    float x = (fract(p.x * count) - 0.5 - 0.3 * (h2 - 0.5)) / count;
    float height = p.y - drop;
    x += 0.05 / count * sin(p.y * 9.0 + h * 30.0) + 0.012 / count * sin(p.y * 31.0 + h2 * 30.0);
    float size = (0.08 + 0.15 * h * h) / count;
    float radius = height > 0.0 ? size * (0.5 + 0.5 * exp(-height / (size * 6.0))) : size;
    radius *= 1.0 - 0.6 * smoothstep(0.72, 1.0, phase) * step(0.0, height);
    float away = height > 0.0 ? abs(x) : length(vec2(x, height));
    float thick = smoothstep(0.995, 0.9, phase);
    float cover = smoothstep(radius, radius - min(radius * 0.4, 1.5 / iResolution.y), away) * thick;
    if (cover > 0.0) {
        vec2 tilt = vec2(x / max(radius, 1e-4), height > 0.0 ? 0.0 : height / max(radius, 1e-4));
        wet = vec3(mix(wet.xy, tilt, cover), max(wet.z, cover));
    }
}

void main() {
    float aspect = iResolution.x / iResolution.y, density = clamp(uDensity, 4.0, 40.0);
    vec2 p = vec2(vUV.x * aspect, vUV.y);
    vec3 wet = vec3(0.0);
    runs(p + vec2(3.7, 0.0), density * 2.2, 11.0, wet);
    runs(p + vec2(1.3, 0.0), density, 12.0, wet);
    runs(p, density * 0.6, 13.0, wet);
    // It wells up along the upper edge.
    float tongue = noise(vec2(p.x * density * 0.8, iTime * 0.25), 4.0);
    float brim = 0.02 + 0.05 * noise(vec2(p.x * 3.0, iTime * 0.15), 3.0) + 0.2 * tongue * tongue * tongue;
    float pool = smoothstep(-0.004, 0.004, p.y - 1.0 + brim);
    float bulge = clamp((p.y - 1.0 + brim) / 0.03, 0.0, 1.0);
    wet = mix(wet, vec3(0.0, bulge - 1.0, 1.0), pool);

    vec2 uv = vUV - wet.xy * wet.z * vec2(0.03 / aspect, 0.03);
    vec3 seen = source(uv);
    float light = dot(seen, vec3(0.3, 0.59, 0.11));
    float stain = clamp(uStain, 0.0, 1.0);
    float mottle = noise(p * 2.5 + vec2(0.0, iTime * 0.12), 7.0);
    vec3 colour = mix(seen, vec3(light), 0.8) * mix(1.0, 0.72, stain);
    vec3 red = colour * vec3(1.35, 0.38, 0.36) + vec3(0.05, 0.0, 0.004);
    colour = mix(colour, red, stain * (0.6 + 0.4 * mottle));

    vec3 blood = mix(kBlood * 0.55, kFresh, 0.15 + (0.55 - 0.4 * pool) * light);
    blood *= 1.0 - 0.25 * abs(wet.x);
    float glint = smoothstep(0.5, 0.8, 1.0 - length(wet.xy - vec2(-0.38, 0.15)) * 1.35);
    blood = mix(blood, vec3(1.0, 0.72, 0.66), glint * 0.55 * (1.0 - 0.75 * pool));
    blood *= 1.0 - 0.45 * smoothstep(0.55, 1.0, length(wet.xy));
    blood += kFresh * 0.5 * pool * smoothstep(0.25, 0.05, abs(bulge - 0.45));
    colour = mix(colour, blood, wet.z * 0.94);
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
