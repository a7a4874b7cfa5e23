#version 330 core
// Shows the heat and smoke of the buffer as glowing metal over brushed steel haze.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;        // s
uniform vec3 iResolution;   // px
uniform float uAlpha;       // 0..1
uniform sampler2D uBufferA; // red = heat, green = smoke, 0..1
uniform float uRelief = 1.0;// depth of the relief, relative

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    vec2 e = vec2(1.6 / 360.0) * vec2(iResolution.y / iResolution.x, 1.0);
    vec2 centre = texture(uBufferA, vUV).rg;
    float left = texture(uBufferA, vUV - vec2(e.x, 0.0)).g, right = texture(uBufferA, vUV + vec2(e.x, 0.0)).g;
    float down = texture(uBufferA, vUV - vec2(0.0, e.y)).g, up = texture(uBufferA, vUV + vec2(0.0, e.y)).g;

    vec3 normal = normalize(vec3((left - right) * 3.0 * uRelief, (down - up) * 3.0 * uRelief, 1.0));
    float lit = max(dot(normal, normalize(vec3(-0.5, 0.6, 0.6))), 0.0);
    float smoke = centre.g, heat = centre.r;

    // A few wide taps let the heat glow.
    float glow = 0.0;
    for (int i = 0; i < 6; ++i) {
        float a = float(i) * 1.0472 + 0.4;
        vec2 tap = vec2(cos(a), sin(a)) * (i % 2 == 0 ? 0.014 : 0.034);
        glow += texture(uBufferA, vUV + tap * vec2(iResolution.y / iResolution.x, 1.0)).r;
    }
    glow /= 6.0;

    float beat = exp(-4.0 * fract(iTime * 2.0));
    vec3 colour = kInk + kSteel * 0.06 * (1.0 - length(p)) + kEmber * 0.05 * beat * exp(-2.0 * dot(p, p));
    colour = mix(colour, kSteel * (0.2 + 1.25 * lit * lit), smoothstep(0.0, 0.5, smoke) * 0.9);
    colour = mix(colour, vec3(0.45, 0.06, 0.05), smoothstep(0.08, 0.35, heat) * 0.9);
    colour = mix(colour, kEmber, smoothstep(0.3, 0.66, heat));
    colour = mix(colour, vec3(1.0, 0.7, 0.42), smoothstep(0.62, 0.85, heat));
    colour = mix(colour, kBone, smoothstep(0.85, 1.0, heat));
    colour += kEmber * glow * 0.45;
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
