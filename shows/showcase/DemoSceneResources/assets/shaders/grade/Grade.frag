#version 330 core
// The finish over every scene: a vignette in ink and moving film grain.
in vec2 vUV;
out vec4 fragColor;

uniform int iFrame;            // counts from 1
uniform vec3 iResolution;      // px
uniform float uAlpha;          // 0..1
uniform float uVignette = 0.6; // darkness of the corners, 0..1
uniform float uGrain = 0.07;   // strength of the grain, 0..1

const vec3 kInk = vec3(0.016, 0.02, 0.04);

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

void main() {
    vec2 corner = (vUV - 0.5) * 2.0;
    float far_ = dot(corner, corner) * 0.5;
    float shade = uVignette * smoothstep(0.12, 1.05, far_);
    // Grain keeps its size relative to a 720-line picture.
    vec2 cell = floor((gl_FragCoord.xy + 0.013) / max(1.0, iResolution.y / 720.0));
    float grain = (hash(cell.x, cell.y, float(iFrame % 61)) - 0.5) * uGrain;
    float strength = abs(grain);
    float alpha = shade + strength - shade * strength;
    vec3 speck = grain > 0.0 ? vec3(0.9, 0.88, 0.85) : kInk;
    fragColor = vec4(mix(kInk, speck, strength / max(alpha, 0.001)), alpha * uAlpha);
}
