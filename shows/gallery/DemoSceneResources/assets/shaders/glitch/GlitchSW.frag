#version 330 core
// Space warp: the picture is drawn out towards the edges while streaks of starlight rush past.
//   uWarp   length of the drawn-out light, 0..1
//   uStars  density of the streaks, 0..1
//   uSpeed  speed of the streaks, 0..4
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uWarp = 0.5;
uniform float uStars = 0.6;
uniform float uSpeed = 1.0;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);
const int kTaps = 8;

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

// A sun in a spiral nebula.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float d = length(p), a = atan(p.y, p.x + 1e-6);
    float arm = 0.5 + 0.5 * sin(a * 3.0 - log(d + 0.02) * 5.0 + iTime * 0.6);
    vec3 colour = mix(kInk, mix(kEmber, kSteel, smoothstep(0.1, 0.7, d)), arm * arm * exp(-1.6 * d) * 0.7);
    return colour + kBone * exp(-d * d * 160.0);
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

// One shell of streaks: angle sectors, each with a streak that runs outwards.
vec3 streaks(float angle, float d, float sectors, float seed, float time) {
    float s = angle / 6.2832 * sectors, n = floor(s), h = hash(n, seed, 1.0);
    if (h > clamp(uStars, 0.0, 1.0)) return vec3(0.0);
    float h2 = fract(h * 256.0), z = fract(time * (0.35 + 0.5 * h2) + fract(h * 4096.0));
    // Perspective: a head at depth z appears at 1 / (1 - z); the tail lags by a share of its way.
    float head = 0.06 / max(1.02 - z, 0.02), tail = head * (0.68 - 0.5 * clamp(uWarp, 0.0, 1.0));
    float along = smoothstep(tail, head, d) * smoothstep(head * 1.02 + 0.002, head, d);
    float width = 0.5 - abs(fract(s) - 0.5 - 0.25 * (h2 - 0.5));
    float thin = smoothstep(0.5 - min(0.35, 0.0022 * sectors / (6.2832 * max(d, 0.02))), 0.5, width);
    vec3 dye = h2 > 0.8 ? mix(kEmber, kBone, 0.3) : mix(kSteel * 1.2, kBone, h2);
    return dye * along * thin * smoothstep(0.03, 0.18, d) * (0.7 + 0.9 * z);
}

void main() {
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 600.0) * clamp(uSpeed, 0.0, 4.0);
    float warp = clamp(uWarp, 0.0, 1.0);
    vec2 centre = 0.02 * vec2(sin(iTime * 0.7), cos(iTime * 0.9));
    vec2 p = (vUV - 0.5) * vec2(aspect, 1.0) - centre;
    float d = length(p), angle = atan(p.y, p.x + 1e-6) + 3.1416;

    // The middle stays, the rim is drawn out; the pull comes in surges.
    float surge = 0.7 + 0.3 * sin(iTime * 1.9) * sin(iTime * 0.83);
    float pull = warp * surge * (0.25 + 0.75 * smoothstep(0.0, 0.75, d));
    float ray = hash(floor(angle / 6.2832 * 240.0), 7.0, 7.0);
    pull *= 0.7 + 0.5 * ray;
    float shift = jitter();
    vec2 at = p * (0.96 - 0.16 * warp * smoothstep(0.1, 0.9, d)) / vec2(aspect, 1.0);
    vec2 middle = centre / vec2(aspect, 1.0) + 0.5;
    vec4 sum = vec4(0.0);
    // The card takes the place of a missing picture, in a loop of its own: a rasterizer in software would work
    // out both sides of a branch.
    int taps = bound() ? kTaps : 0;
    for (int i = 0; i < taps; ++i) {
        float f = (float(i) + shift) / float(kTaps), w = 1.15 - f;
        sum += w * vec4(picture(at * (1.0 - 0.6 * pull * f) + middle), 1.0);
    }
    // The card is smooth along the rays and needs only every third look.
    for (int i = taps; i < kTaps; i += 3) {
        float f = (float(i) + 3.0 * shift) / float(kTaps + 2), w = 1.15 - f;
        sum += w * vec4(card(at * (1.0 - 0.6 * pull * f) + middle), 1.0);
    }
    vec3 colour = sum.rgb / sum.a;
    // Light ahead is blue, light that falls behind is red.
    colour *= mix(vec3(0.72, 1.0, 1.35), vec3(1.15, 0.86, 0.74), smoothstep(0.05, 0.8, d));
    colour *= 1.0 - 0.45 * smoothstep(0.25, 0.95, d);
    vec3 light = streaks(angle, d, 110.0, 1.0, time) + 0.8 * streaks(angle, d, 200.0, 2.0, time * 0.7);
    colour += light + mix(kSteel, kBone, 0.4) * 0.9 * warp * surge * exp(-d * 9.0);
    fragColor = vec4(min(colour, 1.0), uAlpha);
}
