#version 330 core
// Two sets of ink rings sliding over each other on paper, an ember disc between them.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;         // s
uniform vec3 iResolution;    // px
uniform float uAlpha;        // 0..1
uniform float uRings = 15.0; // rings a frame height
uniform float uSpeed = 1.0;  // relative

const vec3 kInk = vec3(0.05, 0.06, 0.1);
const vec3 kEmber = vec3(0.96, 0.28, 0.13);
const vec3 kPaper = vec3(0.94, 0.91, 0.85);

// Cover of rings around the origin with half the ring pitch inked.
float rings(vec2 p, float shift, float ink) {
    float r = length(p) * uRings - shift;
    return clamp(0.5 + (ink * 0.5 - abs(fract(r) - 0.5)) * iResolution.y / uRings, 0.0, 1.0);
}

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float t = iTime * uSpeed;
    vec2 a = vec2(0.42 * cos(t * 0.63 + 0.4), 0.17 * sin(t * 0.9));
    float grow = 1.0 - exp(-3.0 * t);
    float first = rings(p - a, t * 1.2, 0.5 * grow);
    float second = rings(p + a, -t * 1.2, 0.5 * grow);

    float radius = 0.27 * grow + 0.02 * exp(-4.0 * fract(iTime * 2.0));
    float disc = clamp(0.5 + (radius - length(p + 0.35 * a.yx)) * iResolution.y, 0.0, 1.0);
    // Ink over ink cancels out: the figure between the two sets appears by itself.
    float ink = abs(first - second);
    vec3 colour = mix(kPaper, kEmber, disc * (1.0 - first));
    colour = mix(colour, mix(kInk, kPaper, disc * second), ink);
    fragColor = vec4(colour, uAlpha);
}
