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
const int kTaps = 10;
const mat2 kGolden = mat2(-0.737369, 0.675490, -0.675490, -0.737369);

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

// Two smooth noises at once, from the halves of one hash.
vec2 corner(vec2 i) {
    float h = hash(i.x, i.y, 1.0) * 256.0;
    return vec2(floor(h) / 256.0, fract(h));
}

vec2 noise2(vec2 p) {
    vec2 i = floor(p), f = fract(p);
    f *= f * (3.0 - 2.0 * f);
    return mix(mix(corner(i), corner(i + vec2(1.0, 0.0)), f.x),
               mix(corner(i + vec2(0.0, 1.0)), corner(i + 1.0), f.x), f.y);
}

// Lights of a town at night.
vec3 card(vec2 uv) {
    vec2 p = vec2((uv.x - 0.5) * iResolution.x / iResolution.y, uv.y) * 14.0;
    vec2 cell = floor(p);
    float h = hash(cell.x, cell.y, 2.0);
    float skyline = 0.3 + 0.4 * hash(cell.x * 0.5, 0.0, 3.0);
    float d = length(fract(p) - 0.5), on = step(0.35, h) * step(uv.y, skyline);
    vec3 sky = mix(vec3(0.24, 0.07, 0.06), kInk, smoothstep(0.25, 0.95, uv.y));
    vec3 house = step(uv.y, skyline) * vec3(0.5);
    vec3 light = h > 0.85 ? kSteel : h > 0.65 ? kBone : kEmber;
    return mix(sky, kInk * 0.8, house) + light * on * smoothstep(0.32, 0.2, d);
}

// Channel 0 is bound when its texture has the size that is reported for it.
bool bound() {
    return all(equal(textureSize(iChannel0, 0), ivec2(max(iChannelResolution[0], vec2(1.0)) + 0.5)));
}

// Channel 0 cut to fill the frame, over ink where it is transparent.
vec3 picture(vec2 uv) {
    vec2 fit = iResolution.xy / max(iChannelResolution[0], vec2(1.0));
    vec4 c = textureLod(iChannel0, (uv - 0.5) * fit / max(fit.x, fit.y) + 0.5, 0.0);
    return mix(kInk, c.rgb, c.a);
}

// Interleaved gradient noise, 0 to 1: neighbouring pixels look at places that lie evenly between 0 and 1. In
// integers, whose overflow is the fraction.
float jitter() {
    uvec2 at = uvec2(gl_FragCoord.xy) * uvec2(0x112e3b7du, 0x017e8ce0u);
    uint n = at.x + at.y;
    return float((n * 53u - (n >> 16) * 1119u) >> 8) / 16777216.0;
}

// Radius of a point of a spiral that covers the unit disc evenly when every step turns by the golden angle.
float reach(int i) {
    return sqrt((float(i) + 0.5) / float(kTaps));
}

// Lights weigh more, so that they bloom over the dark.
void gather(vec3 c, inout vec4 sum) {
    sum += vec4(c, 1.0) * (0.35 + dot(c, vec3(0.3, 0.59, 0.11)));
}

void main() {
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 1200.0) * clamp(uSpeed, 0.0, 4.0);
    float amount = clamp(uMist, 0.0, 1.0);
    vec2 p = vec2(vUV.x * aspect, vUV.y);
    // Two banks pass through each other, torn by a finer one.
    vec2 low = noise2(p * 1.9 + vec2(-0.4, 0.05) * time);
    vec2 high = noise2(p * vec2(3.2, 4.6) + vec2(0.45, -0.14) * time + 1.4 * low.y);
    float wisp = high.y, bank = low.x * 0.55 + high.x * 0.3 + wisp * 0.15;
    float mist = smoothstep(0.5 - 0.45 * amount, 0.86 - 0.35 * amount, bank + 0.1 * (0.5 - vUV.y));
    float radius = clamp(uRadius, 0.0, 0.15) * (0.18 + 0.82 * mist);

    // The spiral is turned from pixel to pixel so that its arms do not show.
    float turn = 6.2832 * jitter();
    vec2 ray = vec2(cos(turn), sin(turn));
    vec4 sum = vec4(0.0);
    // The card takes the place of a missing picture, in a loop of its own: a rasterizer in software would work
    // out both sides of a branch.
    int taps = bound() ? kTaps : 0;
    vec2 size = radius / vec2(aspect, 1.0);
    for (int i = 0; i < taps; ++i, ray = kGolden * ray) gather(picture(vUV + size * reach(i) * ray), sum);
    for (int i = taps; i < kTaps; ++i, ray = kGolden * ray) gather(card(vUV + size * reach(i) * ray), sum);
    vec3 soft = sum.rgb / sum.a;
    vec3 haze = mix(kSteel * 0.62, kBone * 0.8, wisp) * (0.42 + 0.8 * dot(soft, vec3(0.3, 0.59, 0.11)));
    haze += soft * 0.25;
    vec3 colour = mix(soft * 0.94, haze, mist * (0.3 + 0.75 * amount));
    fragColor = vec4(min(colour, 1.0), uAlpha);
}
