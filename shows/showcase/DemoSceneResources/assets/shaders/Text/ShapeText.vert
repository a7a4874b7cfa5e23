#version 330 core
// Places the shared quad over a logo and the light around it; vLogo is 0..1 over the logo, y up.
layout(location = 0) in vec2 aPos;
layout(location = 1) in vec2 aUV;
out vec2 vLogo;
flat out vec3 vMoment;      // what is the same all over the logo: where the sheen is, how bright the glow, how
                            // hot the front

uniform float uTime;        // s
uniform float uReveal;      // 0 nothing .. 1.08 all of it
uniform float uScanSpeed;   // lines a second
uniform vec3 uResolution;   // px
uniform vec4 uRect;         // left, bottom, width, height; shares of the output, y up
uniform float uRotation;    // degrees, counter-clockwise about the centre
uniform vec4 uGlowMap;      // where the logo lies in its glow: scale, offset
uniform float uWaveAmount;  // share of the logo's height

void main() {
    vec2 reach = uGlowMap.zw / uGlowMap.xy + vec2(0.0, uWaveAmount);
    vLogo = mix(-reach, 1.0 + reach, aUV);
    vec2 p = (vLogo - 0.5) * uRect.zw * uResolution.xy;
    float angle = radians(uRotation);
    float c = cos(angle), s = sin(angle);
    vec2 centre = (uRect.xy + 0.5 * uRect.zw) * uResolution.xy;
    vec2 at = (centre + vec2(c * p.x - s * p.y, s * p.x + c * p.y)) / uResolution.xy;
    float sheen = fract(0.15 + uTime * 0.11 * min(uScanSpeed / 4.0, 1.0)) * 2.2 - 0.6;
    float flicker = 1.0 + 0.06 * sin(uTime * 7.3) * sin(uTime * 3.1);
    vMoment = vec3(sheen, flicker, smoothstep(-0.02, 0.04, uReveal) * (1.0 - smoothstep(1.0, 1.08, uReveal)));
    gl_Position = vec4(at * 2.0 - 1.0, 0.0, 1.0);
}
