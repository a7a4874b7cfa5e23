#version 330 core
// Blurring mist: drifting banks of haze; where they are thick, the picture melts into soft light.
//   uRadius  largest blur radius in frame heights, 0..0.15
//   uMist    density of the banks, 0..1
//   uSpeed   speed of the drift, 0..4
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uRadius = 0.05;
uniform float uMist = 0.6;
uniform float uSpeed = 1.0;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);
const int kTaps = 12;

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

// Lights of a town at night.
vec3 card(vec2 uv) {
    vec2 p = vec2((uv.x - 0.5) * iResolution.x / iResolution.y, uv.y) * 14.0, cell = floor(p);
    float h = hash(cell.x, cell.y, 51.0), skyline = 0.3 + 0.4 * hash(floor(cell.x * 0.5), 52.0, 1.0);
    float d = length(fract(p) - 0.5), on = step(0.35, h) * step(uv.y, skyline);
    vec3 sky = mix(vec3(0.24, 0.07, 0.06), kInk, smoothstep(0.25, 0.95, uv.y));
    vec3 house = step(uv.y, skyline) * vec3(0.5);
    vec3 light = h > 0.85 ? kSteel : h > 0.65 ? kBone : kEmber;
    return mix(sky, kInk * 0.8, house) + light * on * smoothstep(0.32, 0.2, d);
}

// Channel 0 cut to fill the frame, over ink where it is transparent. The size of an unbound sampler differs from
// the one reported for the channel: then the card takes its place.
vec3 source(vec2 uv) {
    vec2 size = max(iChannelResolution[0], vec2(1.0));
    if (any(notEqual(textureSize(iChannel0, 0), ivec2(size + 0.5)))) return card(uv);
    vec2 fit = iResolution.xy / size;
    vec4 c = textureLod(iChannel0, (uv - 0.5) * fit / max(fit.x, fit.y) + 0.5, 0.0);
    return mix(kInk, c.rgb, c.a);
}

void main() {
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 1200.0) * clamp(uSpeed, 0.0, 4.0);
    float amount = clamp(uMist, 0.0, 1.0);
    vec2 p = vec2(vUV.x * aspect, vUV.y);
    // Two banks pass through each other, torn by a finer one.
    float low = noise(p * 1.7 + vec2(-0.22, 0.03) * time, 1.0);
    float high = noise(p * 3.1 + vec2(0.16, -0.07) * time + low, 2.0);
    float wisp = noise(p * vec2(5.0, 8.0) + vec2(-0.4, 0.11) * time + 2.0 * high, 3.0);
    float bank = low * 0.55 + high * 0.3 + wisp * 0.15;
    float mist = smoothstep(0.5 - 0.45 * amount, 0.86 - 0.35 * amount, bank + 0.1 * (0.5 - vUV.y));
    float radius = clamp(uRadius, 0.0, 0.15) * (0.18 + 0.82 * mist);

    // Disc of samples in a golden spiral, turned from pixel to pixel so that its arms do not show.
    vec2 grid = floor(gl_FragCoord.xy);
    float turn = 6.2832 * fract(52.9829189 * fract(dot(grid, vec2(0.06711056, 0.00583715))));
    vec3 sum = vec3(0.0);
    float weight = 0.0;
    for (int i = 0; i < kTaps; ++i) {
        float n = float(i) + 0.5, a = n * 2.3999632 + turn, r = sqrt(n / float(kTaps)) * radius;
        vec3 c = source(vUV + r * vec2(cos(a), sin(a)) / vec2(aspect, 1.0));
        float w = 0.35 + dot(c, vec3(0.3, 0.59, 0.11));         // lights bloom over the dark
        sum += c * w;
        weight += w;
    }
    vec3 soft = sum / weight;
    vec3 haze = mix(kSteel * 0.62, kBone * 0.8, wisp) * (0.42 + 0.8 * dot(soft, vec3(0.3, 0.59, 0.11)));
    haze += soft * 0.25;
    vec3 colour = mix(soft * 0.94, haze, mist * (0.3 + 0.75 * amount));
    fragColor = vec4(min(colour, 1.0), uAlpha);
}
