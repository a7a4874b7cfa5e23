#version 330 core
// Falling down an eight-sided shaft of riveted plates; rings of fire climb it on the beat.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;        // s
uniform vec3 iResolution;   // px
uniform float uAlpha;       // 0..1
uniform float uSpeed = 3.0; // plates a second
uniform float uTwist = 0.1; // radians a plate
uniform float uBend = 0.5;  // how far the shaft wanders to the side, in shaft radii

const int kSteps = 30;
const float kFar = 26.0;      // plates
const float kSides = 8.0;
const float kPi = 3.14159265;
const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kHot = vec3(1.0, 0.7, 0.36);

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

vec2 axis(float z) {
    return uBend * vec2(sin(z * 0.23) + 0.5 * sin(z * 0.13 + 1.0), 0.9 * cos(z * 0.19 + 0.6));
}

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float travel = iTime * uSpeed;

    // March along the view ray to the octagon; the eye stays on the wandering axis and looks along it.
    vec2 eye = axis(travel), ahead = axis(travel + 4.0) - eye;
    vec2 slope = p * 1.55 + ahead * 0.25;                   // sideways travel a plate of depth
    float steep = length(slope) + 0.25;
    float depth = 0.2, side = 0.0, across = 0.0, away = 0.0;
    for (int i = 0; i < kSteps; ++i) {
        vec2 q = eye + slope * depth - axis(travel + depth);
        float sector = (atan(q.y, q.x) + uTwist * (depth + travel) + kPi) * kSides / (2.0 * kPi);
        side = floor(sector);
        across = fract(sector) - 0.5;
        away = length(q) * cos(across * 2.0 * kPi / kSides);
        float gap = 1.0 - away;
        if (gap < 0.002 * depth || depth > kFar) break;
        depth += gap / steep;
    }
    depth = min(depth, kFar);
    side = mod(side, kSides);
    float z = depth + travel;
    float plate = floor(z), along = fract(z) - 0.5;
    float grain = hash(side, plate, 2.0);
    // Widths of one output pixel, for seams that neither crawl nor break up far away.
    float pixelAlong = 1.55 * depth * depth / iResolution.y;
    float pixelAcross = 1.55 * depth * kSides / (2.0 * kPi) / iResolution.y;

    float fog = exp(-depth * 0.17);
    float lightAngle = (side + 0.5) * 2.0 * kPi / kSides - uTwist * z - kPi;
    float facing = 0.5 + 0.5 * sin(lightAngle + 0.5);
    vec3 metal = kSteel * (0.1 + 0.17 * grain) * (0.35 + 0.95 * facing);

    // Engraved panel, seams and rivets.
    float seam = min(0.5 - abs(along), 0.5 - abs(across));
    float wide = min(max(pixelAlong, pixelAcross), 0.4);
    metal *= 0.25 + 0.75 * smoothstep(0.012, 0.035 + wide, seam);
    float bevel = smoothstep(0.05 + wide, 0.03, seam) * smoothstep(0.015, 0.03, seam);
    metal += kSteel * 0.4 * bevel * facing;
    vec2 corner = vec2(0.5 - abs(along), 0.5 - abs(across)) - 0.13;
    metal += kSteel * 0.4 * smoothstep(0.022 + wide, 0.01, length(corner)) * facing;
    float groove = abs(abs(across) - 0.24) - 0.012;
    metal *= 1.0 - 0.5 * step(0.45, grain) * (1.0 - smoothstep(0.0, 0.012 + wide, groove)) * step(abs(along), 0.3);

    // Some plates glow from behind; fire rings climb towards the camera, one a beat.
    float window = step(0.86, grain) * smoothstep(0.0, 0.04 + wide, 0.3 - max(abs(along), abs(across)));
    float beatAge = fract(iTime * 2.0);
    float pulse = exp(-3.0 * beatAge);
    float ringGap = abs(fract((z + iTime * 4.0) / 5.0) - 0.5) * 5.0;
    float ring = exp(-ringGap * ringGap * 9.0);
    vec3 fire = kEmber * (ring * 1.1 * (0.35 + 0.65 * smoothstep(0.0, 0.1, seam)) + exp(-ringGap * 1.3) * 0.28);
    fire += mix(kEmber, kHot, 0.55) * window * (0.55 + 0.65 * pulse);
    fire += kHot * 0.5 * ring * bevel;

    metal *= 1.0 - clamp(ring + window, 0.0, 0.85);
    vec3 colour = kInk + (metal * 1.5 + fire) * fog;
    // The furnace at the far end.
    float core = smoothstep(5.0, kFar, depth);
    colour += kEmber * core * (0.8 + 0.4 * pulse) + kHot * pow(core, 3.0) * (0.5 + 0.4 * pulse);
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
