#version 330 core
// Places the shared quad over a logo and the light around it; vLogo is 0..1 over the logo, y up.
layout(location = 0) in vec2 aPos;
layout(location = 1) in vec2 aUV;
out vec2 vLogo;

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
    gl_Position = vec4(at * 2.0 - 1.0, 0.0, 1.0);
}
