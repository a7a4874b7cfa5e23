#version 330 core
// Flat ink that comes or goes: its cover runs from one value to another and stays there.
out vec4 fragColor;

uniform float iTime;       // s
uniform float uAlpha;      // 0..1
uniform float uFrom = 0.0; // cover at the start, 0..1
uniform float uTo = 1.0;   // cover at the end, 0..1
uniform float uFade = 1.0; // s

const vec3 kInk = vec3(0.027, 0.035, 0.067);

void main() {
    float cover = mix(uFrom, uTo, smoothstep(0.0, max(uFade, 0.001), iTime));
    fragColor = vec4(kInk, cover * uAlpha);
}
