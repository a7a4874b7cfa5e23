#version 330 core
// Digital rain: falling columns of made-up signs, which carry the light of the picture.
//   uRows   signs a frame height, 8..90
//   uSpeed  speed of the fall, 0..4
//   uTint   colour of the signs, r g b 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uRows = 30.0;
uniform float uSpeed = 1.0;
uniform vec3 uTint = vec3(0.30, 0.72, 0.68);

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kBone = vec3(0.95, 0.92, 0.87);
// Shifts grids off the pixels' centres: rounding decides on which side of an edge a point exactly on it lies.
const float kOff = 0.013; // cells

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

// A planet with a lit rim.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float d = length(p), ball = smoothstep(0.34, 0.335, d);
    float lit = clamp(0.5 + dot(p, vec2(-1.6, 1.6)), 0.0, 1.0);
    float halo = exp(-9.0 * max(d - 0.34, 0.0));
    return vec3(mix(0.12 * halo, 0.08 + 0.85 * lit * (0.7 + 0.3 * sin(p.y * 40.0 + sin(p.x * 11.0))), ball));
}

// Channel 0 cut to fill the frame, over ink where it is transparent. The size of an unbound sampler differs
// from the one reported for the channel: then the card takes its place.
vec3 source(vec2 uv) {
    vec2 size = max(iChannelResolution[0], vec2(1.0));
    if (any(notEqual(textureSize(iChannel0, 0), ivec2(size + 0.5)))) return card(uv);
    vec2 fit = iResolution.xy / size;
    vec4 c = textureLod(iChannel0, (uv - 0.5) * fit / max(fit.x, fit.y) + 0.5, 0.0);
    return mix(kInk, c.rgb, c.a);
}

// A sign of 5 x 6 dots, mirrored in half of the cases; q 0..1 within the cell.
float sign_(vec2 q, float which) {
    vec2 dot_ = floor(q * vec2(6.0, 7.0));
    if (dot_.x > 4.5 || dot_.y > 5.5) return 0.0;
    if (fract(which * 0.5) < 0.4) dot_.x = min(dot_.x, 4.0 - dot_.x);
    float bar = step(0.72, hash(dot_.y, which, 31.0)) + step(0.78, hash(dot_.x, which, 37.0));
    return min(1.0, bar + step(0.8, hash(dot_.x, dot_.y, which)));
}

// Light of the fall in a cell: x trail 0..1, y head 0 or 1.
vec2 fall(vec2 cell, float rows, float seed) {
    float h = hash(cell.x, seed, 41.0), h2 = hash(cell.x, seed, 43.0);
    float way = mod(iTime, 3600.0) * clamp(uSpeed, 0.0, 4.0) * (6.0 + 13.0 * h2) + h * 400.0;
    float length_ = rows * (0.7 + 0.9 * h);
    float behind = mod(cell.y + way, length_);
    float tail = rows * (0.25 + 0.45 * h2);
    return vec2(exp(-behind / tail * 2.2), step(behind, 1.0));
}

void main() {
    float aspect = iResolution.x / iResolution.y, rows = clamp(uRows, 8.0, 90.0);
    vec2 p = vec2(vUV.x * aspect, vUV.y) * rows / vec2(0.72, 1.0) + kOff;
    vec2 cell = floor(p), q = fract(p);
    float age = floor(mod(iTime, 600.0) * (1.0 + 5.0 * hash(cell.x, cell.y, 2.0)));
    float shape = sign_(q, floor(4096.0 * hash(cell.x, cell.y, age)));

    vec3 seen = source((cell + 0.5) * vec2(0.72, 1.0) / rows / vec2(aspect, 1.0));
    float light = dot(seen, vec3(0.3, 0.59, 0.11));
    vec2 near = fall(cell, rows, 1.0);
    vec2 second = fall(cell, rows, 2.0);
    float trail = max(near.x, 0.55 * second.x), head = near.y;

    vec3 dye = mix(clamp(uTint, 0.0, 1.0), seen * 1.5 + 0.05, 0.4 * smoothstep(0.1, 0.6, light));
    if (hash(cell.x, 5.0, 6.0) > 0.94) dye = kEmber;
    vec3 ground = kInk * 0.6 + seen * 0.08;
    vec3 colour = ground + dye * shape * (0.03 + 0.6 * light + trail * (0.75 + 0.9 * light));
    colour = mix(colour, kBone, shape * head);
    // A far, smaller fall fills the gaps.
    vec2 far_ = floor(p * 2.0 + 77.0);
    float dim = fall(far_, rows * 2.0, 3.0).x;
    colour += dye * 0.16 * dim * step(0.45, hash(p.x * 8.0, p.y * 8.0, age)) * (1.0 - shape);
    colour += dye * 0.22 * near.x * exp(-3.0 * abs(q.x - 0.4)) * (0.3 + light);
    fragColor = vec4(min(colour, 1.0), uAlpha);
}
