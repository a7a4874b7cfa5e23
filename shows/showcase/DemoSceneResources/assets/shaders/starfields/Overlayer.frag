#version 330 core
// Embers rising through five depths past cold stars, lit by a hearth below the frame.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;            // s
uniform vec3 iResolution;       // px
uniform float uAlpha;           // 0..1
uniform float uSpeed = 1.0;     // climb, 1 = about half a frame height a second in front
uniform float uPhase = 0.0;     // s added to the clock
uniform float uDensity = 0.55;  // share of cells that hold an ember, 0..1
uniform float uStars = 1.0;     // brightness of the stars, 0..1
uniform float uGround = 1.0;    // 1 = on its own dark ground, 0 = light alone, for additive use

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kHot = vec3(1.0, 0.7, 0.36);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

// Three chances in the bits of one: what a power of two leaves behind the point is exact.
vec3 hash3(vec2 p) {
    float h = hash(p.x, p.y, 1.0);
    return vec3(fract(h * 256.0), fract(h * 4096.0), h);
}

float noise(vec2 p) {
    vec2 i = floor(p), f = fract(p);
    f = f * f * (3.0 - 2.0 * f);
    return mix(mix(hash(i.x, i.y, 7.0), hash(i.x + 1.0, i.y, 7.0), f.x),
               mix(hash(i.x, i.y + 1.0, 7.0), hash(i.x + 1.0, i.y + 1.0, 7.0), f.x), f.y);
}

// -1..1, in place of a sine where the shape of the swing does not show.
float swing(float x) {
    return 4.0 * abs(fract(x * 0.159155) - 0.5) - 1.0;
}

vec3 stars(vec2 p, float t) {
    vec3 sum = vec3(0.0);
    for (int i = 0; i < 2; ++i) {
        vec2 q = p * (13.0 + 9.0 * float(i)) + vec2(7.7 * float(i), t * 0.06);
        vec3 h = hash3(floor(q) + vec2(91.0, 50.0 * float(i)));
        float d = length(fract(q) - 0.2 - 0.6 * h.xy);
        float twinkle = 0.6 + 0.4 * swing(t * (1.0 + 2.0 * h.y) + 40.0 * h.x);
        sum += smoothstep(0.16, 0.0, d) * step(0.62, h.z) * twinkle * h.z * kSteel;
    }
    return sum;
}

vec3 embers(vec2 p, float t) {
    vec3 sum = vec3(0.0);
    for (int i = 0; i < 5; ++i) {
        float depth = float(i) / 4.0;                       // 0 = far, 1 = near
        float cells = mix(11.0, 2.6, depth);                // cells a frame height
        vec2 q = p * cells;
        q.y -= t * uSpeed * mix(0.9, 1.35, depth);
        q.x += 0.36 * sin(q.y * 0.9 + float(i) * 2.1 + t * 0.3);
        q += vec2(float(i) * 17.3, float(i) * 5.1);
        vec3 h = hash3(floor(q));
        vec2 f = fract(q) - 0.32 - 0.36 * h.xy;
        // Mostly sparks, now and then a flake; each tumbles around its own axis.
        float rare = fract(h.z * 65536.0);
        float tumble = swing(t * (1.0 + 2.0 * h.y) + 30.0 * h.x);
        f += tumble * vec2(f.y, -f.x);
        float d = length(f * vec2(1.0, mix(0.85, 0.4, rare * rare)));
        float size = mix(0.03, 0.13, rare * rare * rare) * mix(1.15, 0.8, depth);
        float blur = mix(0.35, 1.0, abs(depth - 0.45) * 1.7);
        float core = smoothstep(size, size * (1.0 - blur), d);
        float halo = pow(max(0.0, 1.0 - d * 3.2), 3.0);
        float flicker = 0.65 + 0.35 * swing(t * (5.0 + 6.0 * h.x) + 60.0 * h.z);
        float cooling = smoothstep(0.75, -0.45, p.y);       // embers die as they climb
        float lit = step(1.0 - uDensity * mix(1.3, 0.8, depth), h.z) * flicker * cooling;
        vec3 tone = mix(kEmber, kHot, 0.8 * core * cooling);
        sum += lit * (core * mix(1.0, 0.6, depth) * tone + halo * 0.2 * kEmber);
    }
    return sum;
}

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float t = iTime + uPhase;
    float beat = exp(-3.5 * fract(t * 2.0));

    vec2 s = vec2(p.x * 1.6, p.y * 1.3 - t * 0.16);
    float smoke = 0.6 * noise(s * 2.2 + 0.5 * noise(s * 1.4)) + 0.4 * noise(s * 5.1 + 3.0);
    float rise = p.y + 0.5;
    float hearth = exp(-rise * 4.6) * (0.72 + 0.28 * beat) + 0.3 * exp(-rise * 2.0);
    hearth *= exp(-1.1 * p.x * p.x) * (0.35 + 1.0 * smoke);

    vec3 light = kEmber * hearth * 0.75 + kHot * 0.35 * pow(hearth, 2.5);
    light += uStars * kSteel * 0.1 * smoke * smoothstep(-0.3, 0.6, p.y);
    light += uStars * stars(p, t) * smoothstep(-0.45, 0.2, p.y);
    light += embers(p, t);
    fragColor = vec4(min(kInk * uGround + light, 1.0), uAlpha);
}
