#version 330 core
// A stage for words: a dark sky with a glow on the horizon, over a floor of lines that comes nearer.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;            // s
uniform vec3 iResolution;       // px
uniform float uAlpha;           // 0..1
uniform float uSpeed = 0.6;     // floor lines a second
uniform float uHorizon = 0.3;   // frame heights from the bottom
uniform float uCold = 0.0;      // 0 ember, 1 steel

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
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

// Cover of lines at whole numbers of x, as sharp as the pixels allow; `edge`: what x grows in a pixel's width and
// height.
float lines(float x, float width, float edge) {
    float d = abs(fract(x - 0.5) - 0.5);
    return (1.0 - smoothstep(width, width + 1.5 * edge, d)) * clamp(0.35 / edge, 0.0, 1.0);
}

void main() {
    vec2 p = vec2((vUV.x - 0.5) * iResolution.x / iResolution.y, vUV.y - uHorizon);
    vec3 light = mix(kEmber, kSteel, uCold);
    float near = exp(-abs(p.y) * 9.0) * exp(-p.x * p.x * 0.9);
    vec3 colour = kInk * (0.7 + 0.6 * vUV.y) + light * 0.5 * near;
    if (p.y > 0.0) {
        vec2 cell = floor(p * 42.0), at = fract(p * 42.0) - 0.5;
        float lot = hash(cell.x, cell.y, 1.0);
        vec2 place = 0.5 * fract(lot * vec2(256.0, 4096.0)) - 0.25; // the lower bits are chances of their own
        float star = step(0.965, lot) * smoothstep(0.16, 0.0, length(at - place));
        colour += kSteel * star * (0.25 + 0.25 * sin(iTime * 2.0 + lot * 900.0)) * smoothstep(0.0, 0.3, p.y);
    } else {
        float depth = 0.16 / max(-p.y, 1e-4);
        float steep = depth / max(-p.y, 1e-4);
        float edge = 5.0 * (depth + abs(p.x) * steep) / iResolution.y;
        float across = lines(p.x * depth * 5.0, 0.012, edge);
        float grid = max(across, lines(depth * 2.2 + iTime * uSpeed, 0.02, 2.2 * steep / iResolution.y));
        colour += light * 0.42 * grid * smoothstep(9.0, 0.6, depth);
    }
    colour += light * 0.9 * exp(-abs(p.y) * iResolution.y * 0.5) * exp(-p.x * p.x * 1.6);
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
