#version 330 core
// Paper: fibre grain that stays put and a soft warm shade towards the edges.
in vec2 vUV;
out vec4 fragColor;

uniform vec3 iResolution;    // px
uniform float uAlpha;        // 0..1
uniform float uShade = 0.35; // darkness of the corners, 0..1

const vec3 kUmber = vec3(0.16, 0.1, 0.08);

float hash(vec2 p) {
    vec3 q = fract(vec3(p.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

void main() {
    vec2 corner = (vUV - 0.5) * 2.0;
    vec2 cell = floor(gl_FragCoord.xy / max(1.0, iResolution.y / 720.0));
    float fibre = 0.5 * hash(cell) + 0.3 * hash(floor(cell / vec2(3.0, 1.0)) + 9.0)
                + 0.2 * hash(floor(cell / vec2(1.0, 4.0)) + 31.0);
    float shade = uShade * smoothstep(0.25, 1.1, dot(corner, corner) * 0.5);
    fragColor = vec4(kUmber, (shade + 0.09 * fibre * fibre) * uAlpha);
}
