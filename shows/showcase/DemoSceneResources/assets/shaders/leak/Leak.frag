#version 330 core
// Light leaks: warm light creeping in from one side, cold from the other; meant to be added.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;        // s
uniform vec3 iResolution;   // px
uniform float uAlpha;       // 0..1
uniform vec2 uSides = vec2(1.0, 0.6); // strength of the warm and the cold leak
uniform float uSeed = 0.0;  // shifts the drift, s

const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);

void main() {
    float aspect = iResolution.x / iResolution.y;
    vec2 p = (vUV - 0.5) * vec2(aspect, 1.0);
    float t = iTime + uSeed;
    float breath = 0.75 + 0.25 * exp(-3.0 * fract(iTime * 2.0));
    vec2 a = p - vec2(-0.56 * aspect + 0.08 * sin(t * 0.6), 0.28 * sin(t * 0.37));
    vec2 b = p - vec2(0.56 * aspect + 0.06 * cos(t * 0.5), -0.3 * cos(t * 0.43));
    float warm = exp(-dot(a, a) * 9.0) + 0.5 * exp(-abs(a.x + 0.25 * a.y) * 7.0 - 1.8 * a.y * a.y);
    float cold = exp(-dot(b, b) * 6.0);
    vec3 light = kEmber * warm * uSides.x * breath + kSteel * cold * uSides.y * 0.7;
    fragColor = vec4(min(light, 1.0), uAlpha);
}
