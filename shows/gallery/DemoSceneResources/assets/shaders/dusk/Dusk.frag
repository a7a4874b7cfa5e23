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

float hash(vec2 p) {
    return fract(sin(dot(p, vec2(127.1, 311.7))) * 43758.5453);
}

// Cover of lines at whole numbers of x, as sharp as the pixels allow.
float lines(float x, float width) {
    float d = abs(fract(x - 0.5) - 0.5), edge = fwidth(x);
    return (1.0 - smoothstep(width, width + 1.5 * edge, d)) * clamp(0.35 / edge, 0.0, 1.0);
}

void main() {
    vec2 p = vec2((vUV.x - 0.5) * iResolution.x / iResolution.y, vUV.y - uHorizon);
    vec3 light = mix(kEmber, kSteel, uCold);
    float near = exp(-abs(p.y) * 9.0) * exp(-p.x * p.x * 0.9);
    vec3 colour = kInk * (0.7 + 0.6 * vUV.y) + light * 0.5 * near;
    if (p.y > 0.0) {
        vec2 cell = floor(p * 42.0), at = fract(p * 42.0) - 0.5;
        float lot = hash(cell);
        float star = step(0.965, lot) * smoothstep(0.16, 0.0, length(at - 0.5 * vec2(hash(cell + 7.0), hash(cell + 3.0)) + 0.25));
        colour += kSteel * star * (0.25 + 0.25 * sin(iTime * 2.0 + lot * 900.0)) * smoothstep(0.0, 0.3, p.y);
    } else {
        float depth = 0.16 / max(-p.y, 1e-4);
        float grid = max(lines(p.x * depth * 5.0, 0.012), lines(depth * 2.2 + iTime * uSpeed, 0.02));
        colour += light * 0.42 * grid * smoothstep(9.0, 0.6, depth);
    }
    colour += light * 0.9 * exp(-abs(p.y) * iResolution.y * 0.5) * exp(-p.x * p.x * 1.6);
    fragColor = vec4(colour, uAlpha);
}
