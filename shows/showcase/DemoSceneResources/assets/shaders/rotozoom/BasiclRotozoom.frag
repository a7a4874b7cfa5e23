#version 330 core
// The dagger weave as a slow, faint engraving in steel on ink.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // seamless tile: red daggers, green rings, blue gems; 0.5 on the outline
uniform float uSpread = 26.0;       // texels from the outline to full value in the tile
uniform float uSpin = 0.06;         // radians a second
uniform float uTiles = 1.6;         // tiles a frame height
uniform float uContrast = 0.3;      // strength of the lines, 0..1

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float angle = 0.4 + uSpin * iTime;
    float zoom = uTiles * (1.0 + 0.12 * sin(iTime * 0.5));
    float c = cos(angle), s = sin(angle);
    vec2 uv = mat2(c, s, -s, c) * p * zoom + vec2(0.02, 0.05) * iTime;

    vec3 d = (0.5 - texture(iChannel0, fract(uv)).rgb) * 2.0 * uSpread / iChannelResolution[0].x;
    float pixel = zoom / iResolution.y;
    vec3 fillIn = clamp(0.5 - d / pixel, 0.0, 1.0);
    vec3 outline = clamp(1.2 - abs(d) / pixel, 0.0, 1.0);
    float light = 0.5 + 0.5 * sin(p.x * 1.4 - p.y * 1.1 - iTime * 0.7);
    float ink = 0.7 * outline.r + 0.14 * fillIn.r + 0.4 * outline.g + 0.45 * fillIn.b;
    fragColor = vec4(kInk + kSteel * ink * uContrast * (0.3 + 0.7 * light), uAlpha);
}
