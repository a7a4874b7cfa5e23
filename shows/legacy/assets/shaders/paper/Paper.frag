#version 330 core
// Paper: fibre grain that stays put and a soft warm shade towards the edges.
in vec2 vUV;
out vec4 fragColor;

uniform vec3 iResolution;    // px
uniform float uAlpha;        // 0..1
uniform float uShade = 0.35; // darkness of the corners, 0..1

const vec3 kUmber = vec3(0.16, 0.1, 0.08);

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
    vec2 cell = floor((gl_FragCoord.xy + 0.013) / max(1.0, iResolution.y / 720.0));
    float fibre = 0.5 * hash(cell.x, cell.y, 1.0) + 0.3 * hash((cell.x + 0.5) / 3.0, cell.y, 2.0)
                + 0.2 * hash(cell.x, cell.y / 4.0, 3.0);
    float shade = uShade * smoothstep(0.25, 1.1, dot(corner, corner) * 0.5);
    fragColor = vec4(kUmber, (shade + 0.09 * fibre * fibre) * uAlpha);
}
