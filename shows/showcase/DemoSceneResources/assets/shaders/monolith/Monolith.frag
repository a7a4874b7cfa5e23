#version 330 core
// Swords standing in still water before a low sun, ray-marched; the largest one waits on the sun's axis.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;         // s
uniform vec3 iResolution;    // px
uniform float uAlpha;        // 0..1
uniform float uDolly = 0.55; // camera travel towards the sword, units a second
uniform float uSun = 0.27;   // radius of the sun, as a tangent

const int kSteps = 38;
const float kFar = 34.0;
const float kCell = 3.4;     // one smaller sword a cell
const float kTop = 3.75;     // nothing reaches higher
const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

// Distance to a sword of height 3.6 standing point down at the origin.
float sword(vec3 p) {
    float x = abs(p.x), z = abs(p.z);
    float blade = max((x + 2.6 * z - 0.145 - 0.022 * p.y) * 0.36, abs(p.y - 1.0) - 1.5);
    float arch = abs(p.y - 2.5 + 0.16 * x * x) - 0.07 + 0.035 * x;
    float guard = max(max(x - 0.74, arch * 0.95), z - 0.08);
    float grip = max(max(x, z) - 0.055, abs(p.y - 2.9) - 0.46);
    float pommel = (x + z + abs(p.y - 3.43) - 0.2) * 0.577;
    return min(min(blade, guard), min(grip, pommel));
}

// The water mirrors the world, so the march simply continues in the mirrored half.
float world(vec3 p) {
    p.y = abs(p.y);
    vec2 cell = floor(p.xz / kCell + 0.5);
    vec3 q = p;
    q.xz -= cell * kCell;
    float h = hash(cell.x, cell.y, 4.0), g = fract(h * 64.0), size = 1.0;
    if (abs(cell.x) < 0.5) {
        // The lane on the axis is kept free but for the great sword.
        if (abs(cell.y - 4.0) > 0.5) return 2.0 * kCell;
    } else {
        if (h < 0.22) return 2.0 * kCell;
        size = 0.3 + 0.28 * g;
        q.xz -= vec2(h, g) - 0.5;
        q.x -= (fract(h * 4096.0) - 0.5) * 0.34 * q.y;
    }
    return sword(q / size) * size * 0.9;
}

// Way along dir to the wall of the cell around p; swords stay inside their cells.
float wallAhead(vec3 p, vec3 dir) {
    vec2 local = p.xz - kCell * floor(p.xz / kCell + 0.5);
    vec2 way = (0.5 * kCell - local * sign(dir.xz)) / max(abs(dir.xz), 1e-4);
    return min(way.x, way.y) + 0.02;
}

vec3 sky(vec3 ray) {
    float height = max(ray.y, 0.0);
    vec2 s = ray.xy / max(ray.z, 0.05) - vec2(0.0, 0.13);
    float r = length(s);
    vec3 colour = mix(vec3(0.3, 0.055, 0.055), kInk, smoothstep(0.0, 0.33, height));
    colour += kEmber * 0.32 * exp(-6.0 * max(r - uSun, 0.0)) * (1.0 - 0.5 * smoothstep(0.0, 0.5, height));
    float cloud = sin(s.y * 46.0 + sin(s.x * 5.0 + iTime * 0.2) * 1.6) * sin(s.x * 3.1 + s.y * 11.0 - iTime * 0.13);
    float disc = smoothstep(uSun, uSun - 0.004, r);
    vec3 sun = mix(vec3(1.0, 0.2, 0.1), vec3(1.0, 0.62, 0.36), smoothstep(-0.15, 0.32, s.y));
    colour = mix(colour, sun * (1.0 - 0.16 * smoothstep(0.2, 0.8, cloud)), disc);
    colour -= 0.05 * smoothstep(0.3, 1.0, cloud) * (1.0 - disc) * exp(-6.0 * height);
    return colour;
}

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float beat = exp(-3.0 * fract(iTime * 0.5) * 2.0);
    vec3 eye = vec3(0.55 * sin(iTime * 0.3 - 0.6), 1.25 + 0.1 * sin(iTime * 0.5), iTime * uDolly - 0.5);
    vec3 ray = normalize(vec3(p.x, p.y + 0.08, 1.35));

    float t = 0.9, d = 1.0;
    float top = ray.y > 0.0 ? (kTop - eye.y) / ray.y : (-kTop - eye.y) / ray.y;
    float far_ = min(kFar, top);
    float water = ray.y < 0.0 ? -eye.y / ray.y : 1e6;
    // Below the water line the reflected ray is bent by the ripples at the point where it enters.
    vec3 dir = ray, from = eye;
    float wet = 0.0;
    if (ray.y < 0.0) {
        vec3 hit = eye + ray * water;
        float calm = exp(-water * 0.06);
        vec2 wave = vec2(sin(hit.z * 5.0 + iTime * 1.7 + 2.0 * sin(hit.x * 1.3)),
                         sin(hit.z * 9.0 - iTime * 1.2 + hit.x * 2.0));
        vec2 bend = vec2(0.02, 0.05) * (wave + wave.yx * 0.5) * calm;
        dir = normalize(ray + vec3(bend, 0.0));
        dir.y = min(dir.y, -0.001);
        wet = 1.0;
    }
    for (int i = 0; i < kSteps; ++i) {
        vec3 q = t < water ? from + ray * t : from + ray * water + dir * (t - water);
        d = world(q);
        if (d < 0.0018 * t || t > far_) break;
        t += min(d, wallAhead(q, dir));
    }

    bool found = d < 0.003 * t && t < far_;
    vec3 seen = vec3(dir.x, abs(dir.y), dir.z);
    vec3 colour = sky(seen);
    if (found) {
        vec3 q = t < water ? from + ray * t : from + ray * water + dir * (t - water);
        vec2 e = vec2(0.012, -0.012);
        vec3 n = normalize(e.xyy * world(q + e.xyy) + e.yyx * world(q + e.yyx)
                         + e.yxy * world(q + e.yxy) + e.xxx * world(q + e.xxx));
        if (q.y < 0.0) n.y = -n.y;
        vec3 toSun = normalize(vec3(0.0, 0.16, 1.0));
        float rim = pow(clamp(1.0 + dot(n, seen), 0.0, 1.0), 2.0);
        float edge = clamp(dot(n, toSun) * 0.5 + 0.5, 0.0, 1.0);
        vec3 metal = kInk * 0.9 + kSteel * 0.14 * max(n.y + 0.35 * abs(n.x), 0.0);
        metal += kEmber * rim * edge * 0.9 + kBone * 0.25 * pow(rim * edge, 3.0);
        float haze = 1.0 - exp(-0.003 * t * t);
        colour = mix(metal, colour, haze);
    }
    // Water takes a share of the light and the sun leaves a broken path on it.
    if (wet > 0.5) {
        vec3 hit = eye + ray * water;
        float fresnel = 0.4 + 0.6 * pow(1.0 - clamp(-ray.y, 0.0, 1.0), 6.0);
        float under = found && t < water ? 0.0 : 1.0;           // no sword stands before the water
        colour = mix(colour, mix(kInk, colour, fresnel) * 0.92, under);
        float glitter = sin(hit.z * 7.0 + iTime * 2.0) * sin(hit.x * 5.0 + hit.z * 2.0) * exp(-hit.x * hit.x * 0.35);
        colour += under * kEmber * 0.28 * smoothstep(0.45, 1.0, glitter) * exp(-water * 0.05);
    }
    colour += kEmber * 0.05 * beat;
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
