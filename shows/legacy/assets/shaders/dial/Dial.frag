#version 330 core
// A dial of nested ticked rings winding down to its end, then an iris of ink closes over it.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;         // s
uniform vec3 iResolution;    // px
uniform float uAlpha;        // 0..1
uniform float uLength = 6.0; // s until the iris has closed

const float kTau = 6.2831853;
const vec3 kInk = vec3(0.05, 0.06, 0.1);
const vec3 kEmber = vec3(0.96, 0.28, 0.13);
const vec3 kPaper = vec3(0.94, 0.91, 0.85);

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float r = length(p), pixel = 1.0 / iResolution.y;
    float angle = atan(p.x, p.y + 1e-6) / kTau;                    // turns clockwise from the top
    vec3 colour = kPaper;

    // Rings of ticks, each with its own count and pace; every one steps on the beat.
    float steps = floor(iTime * 2.0) + 1.0 - exp(-9.0 * fract(iTime * 2.0));
    for (int i = 0; i < 5; ++i) {
        float n = float(i), inner = 0.25 + 0.085 * n, count = 12.0 * (n + 2.0);
        float way = mod(n, 2.0) < 0.5 ? 1.0 : -1.0;
        float turn = fract(angle + way * steps * (n + 1.0) / count);
        float f = abs(fract(turn * count) - 0.5) * kTau * r / count;
        float isLong = step(mod(floor(turn * count) + 0.5, 6.0), 1.0);
        float long_ = mix(0.022, 0.052, isLong);
        float tick = clamp(0.5 + (mix(0.0028, 0.006, isLong) - f) / pixel, 0.0, 1.0);
        tick *= clamp(0.5 + (r - inner) / pixel, 0.0, 1.0) * clamp(0.5 + (inner + long_ - r) / pixel, 0.0, 1.0);
        colour = mix(colour, isLong > 0.5 && turn * count < 1.0 ? kEmber : kInk, tick);
    }
    // The time that is left, as a shrinking ember sector inside a thin ring.
    float left = clamp(1.0 - iTime / (uLength - 1.0), 0.0, 1.0);
    float sector = clamp(0.5 + (left - fract(angle)) * kTau * r / pixel, 0.0, 1.0) * step(0.0005, left);
    colour = mix(colour, kEmber, sector * clamp(0.5 + (0.205 - r) / pixel, 0.0, 1.0));
    colour = mix(colour, kInk, clamp(0.5 + (0.003 - abs(r - 0.222)) / pixel, 0.0, 1.0));

    float reach = length(iResolution.xy) / iResolution.y * 0.52;
    float close = smoothstep(uLength - 1.0, uLength - 0.15, iTime);
    float iris = reach * (1.0 - close * close);
    colour = mix(colour, kInk, clamp(0.5 + (r - iris) / pixel, 0.0, 1.0));
    fragColor = vec4(colour, uAlpha);
}
