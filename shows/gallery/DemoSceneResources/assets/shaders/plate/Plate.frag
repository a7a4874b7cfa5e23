#version 330 core
// A bright, brushed steel plate with the dagger weave cut into it, turning slowly.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // seamless tile: red daggers, green rings, blue gems; 0.5 on the outline
uniform float uSpread = 26.0;       // texels from the outline to full value in the tile
uniform float uSpin = 0.12;         // radians a second
uniform float uTiles = 1.35;        // tiles a frame height

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

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float angle = 0.3 + uSpin * iTime;
    float c = cos(angle), s = sin(angle);
    mat2 turn = mat2(c, s, -s, c);
    vec2 uv = turn * p * uTiles + vec2(0.05, 0.08) * iTime + 0.1;

    float texel = 2.0 * uSpread / iChannelResolution[0].x;  // tiles for the full value range
    float pixel = uTiles / iResolution.y;                   // tiles an output pixel
    vec3 d = (0.5 - texture(iChannel0, fract(uv)).rgb) * texel;
    vec3 cover = clamp(0.5 - d / pixel, 0.0, 1.0);
    // Light from the upper left: the cut's near wall is dark, its far edge catches the light.
    vec2 slip = turn * vec2(-0.012, 0.014) * uTiles;
    vec3 near = (0.5 - texture(iChannel0, fract(uv + slip)).rgb) * texel;
    vec3 far_ = (0.5 - texture(iChannel0, fract(uv - slip)).rgb) * texel;
    float wall = smoothstep(0.01, -0.008, min(near.r, near.b));
    float edge = smoothstep(0.012, -0.004, min(far_.r, far_.b));

    // Brushing runs across; the reflection of a window drifts over it.
    float brushed = hash(vUV.y * min(iResolution.y, 540.0) + 0.013, 1.0, 1.0);
    float sheen = 0.5 + 0.5 * sin(p.x * 2.3 + p.y * 0.9 - iTime * 0.9);
    vec3 colour = mix(mix(kSteel, kBone, 0.42), kBone, sheen * 0.85 + 0.15 * brushed);
    colour *= 0.97 - 0.1 * dot(p, p);
    colour = mix(colour, kSteel * 0.72, 0.85 * cover.g);
    colour *= 1.0 - 0.5 * wall * (1.0 - max(cover.r, cover.b));
    colour = mix(colour, vec3(1.0), 0.6 * edge * (1.0 - wall) * (1.0 - max(cover.r, cover.b)));
    colour = mix(colour, mix(kInk * 1.7, kSteel * 0.42, smoothstep(0.0, -0.03, d.r)), cover.r);
    colour = mix(colour, kEmber, cover.b);
    fragColor = vec4(colour, uAlpha);
}
