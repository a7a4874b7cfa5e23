#version 330 core
// Scan lines in ink with a soft band of brighter lines rolling up the picture.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;           // s
uniform vec3 iResolution;      // px
uniform float uAlpha;          // 0..1
uniform float uLines = 180.0;  // wished lines a frame height; their pitch is made whole pixels
uniform float uDepth = 0.5;    // darkness of the lines, 0..1

const vec3 kInk = vec3(0.016, 0.02, 0.04);

void main() {
    float pitch = max(2.0, floor(iResolution.y / uLines + 0.501));
    float f = fract(gl_FragCoord.y / pitch);
    float line = smoothstep(0.3, 0.55, abs(f - 0.5) * 2.0 - 0.1);
    float band = exp(-60.0 * pow(fract(vUV.y - iTime * 0.25) - 0.5, 2.0));
    fragColor = vec4(kInk, line * uDepth * (1.0 - 0.7 * band) * uAlpha);
}
