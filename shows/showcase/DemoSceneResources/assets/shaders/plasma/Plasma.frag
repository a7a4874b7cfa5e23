#version 330 core
// Molten steel: a warped plasma shaded as liquid relief, with engraved contour lines where it cools.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;          // s
uniform vec3 iResolution;     // px
uniform float uAlpha;         // 0..1
uniform float uScale = 1.0;   // waves a frame height, relative
uniform float uFlow = 1.0;    // speed of the flow, relative
uniform float uContours = 7.0;// contour lines between darkest and brightest

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

// The plasma in x and its slopes along p in yz, by the chain rule: dFdx would differ between drivers, which may
// take it from any two pixels of four.
vec3 plasma(vec2 p, float t) {
    vec2 a = p.yx * vec2(2.3, 2.0) + t * vec2(0.7, -0.6);
    vec2 q = p + 0.32 * vec2(sin(a.x), cos(a.y));
    vec2 qx = vec2(1.0, -0.64 * sin(a.y)), qy = vec2(0.736 * cos(a.x), 1.0); // of q, along p.x and p.y
    a = q.yx * vec2(4.1, 3.7) + t * vec2(-0.9, 1.1);
    q += 0.18 * vec2(sin(a.x), cos(a.y));
    vec2 bend = vec2(0.738 * cos(a.x), -0.666 * sin(a.y));
    qx += bend * qx.yx;
    qy += bend * qy.yx;

    vec3 b = vec3(q.x * 2.6, q.y * 3.1, (q.x + q.y) * 2.2) + t * vec3(0.5, -0.8, 0.6), c = cos(b);
    vec2 eye = q - vec2(0.5 * sin(t * 0.4), 0.3 * cos(t * 0.5));
    float far_ = sqrt(dot(eye, eye) + 0.3), ring = far_ * 5.0 - t * 1.4;
    float v = dot(sin(b), vec3(1.0)) + 1.2 * sin(ring);
    vec2 slope = vec2(2.6 * c.x, 3.1 * c.y) + 2.2 * c.z + 6.0 * cos(ring) / far_ * eye; // along q
    return vec3(v / 8.4 + 0.5, vec2(dot(slope, qx), dot(slope, qy)) / 8.4);
}

float square(float x) {
    return x * x;
}

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float t = iTime * uFlow;
    float beatAge = fract(iTime * 2.0);
    // Each beat drops into the pool and sends a ring outwards.
    float reach = length(p) - beatAge * 1.3;
    float ripple = exp(-90.0 * reach * reach) * exp(-3.0 * beatAge);

    vec3 pool = plasma(p * 1.9 * uScale, t + 2.0);
    float v = pool.x + 0.05 * ripple;
    vec2 slope = pool.yz * 1.9 * uScale - 9.0 * ripple * reach * p / max(length(p), 1e-4); // a frame height
    vec3 normal = normalize(vec3(-slope, 1.5));
    vec3 key = normalize(vec3(-0.45, 0.65, 0.62));
    vec3 fill = normalize(vec3(0.7, -0.35, 0.35));
    float diffuse = max(dot(normal, key), 0.0);
    float hard = max(reflect(-key, normal).z, 0.0), cold = max(reflect(-fill, normal).z, 0.0);
    float fourth = square(square(hard));
    hard = square(square(fourth) * fourth * hard); // to the 26th power
    cold *= square(square(square(cold)));

    float place = clamp((v - 0.16) / 0.7, 0.0, 1.0), heat = place * place * (3.0 - 2.0 * place);
    vec3 colour = mix(kInk, vec3(0.2, 0.03, 0.045), smoothstep(0.08, 0.34, heat));
    colour = mix(colour, kEmber * 0.92, smoothstep(0.3, 0.66, heat));
    colour = mix(colour, vec3(1.0, 0.66, 0.36), smoothstep(0.64, 0.84, heat));
    colour = mix(colour, kBone, smoothstep(0.82, 0.98, heat));
    colour *= 0.45 + 0.75 * diffuse;

    float crust = 1.0 - smoothstep(0.3, 0.6, heat);
    float level = heat * uContours;
    float pixel = uContours * place * (1.0 - place) * 6.0 / 0.7 * (abs(slope.x) + abs(slope.y)) / iResolution.y;
    float line = abs(fract(level) - 0.5) / max(pixel, 0.0001);
    colour = mix(colour, kSteel * 0.62, crust * 0.75 * (1.0 - smoothstep(0.5, 1.5, line)));
    colour += kSteel * 0.5 * cold * crust;
    colour += vec3(1.0, 0.82, 0.62) * hard * (0.25 + 0.5 * heat);
    colour += kEmber * 0.25 * ripple;
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
