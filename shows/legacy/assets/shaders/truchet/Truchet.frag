#version 330 core
// Quarter-circle tiles that turn a quarter at a time on the beat, so that ink lines rewire themselves.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;         // s
uniform vec3 iResolution;    // px
uniform float uAlpha;        // 0..1
uniform float uTiles = 5.0;  // tiles a frame height
uniform float uWidth = 0.17; // width of the lines in tiles

const vec3 kInk = vec3(0.05, 0.06, 0.1);
const vec3 kEmber = vec3(0.96, 0.28, 0.13);
const vec3 kSteel = vec3(0.36, 0.56, 0.7);
const vec3 kPaper = vec3(0.94, 0.91, 0.85);

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
    p = mat2(0.9659, 0.2588, -0.2588, 0.9659) * p;
    vec2 grid = p * uTiles + vec2(0.35, 0.2) * iTime + 40.0;
    vec2 cell = floor(grid), f = fract(grid) - 0.5;

    // About a third of the tiles turn on any beat; the turn takes the first half of it.
    float beat = floor(iTime * 2.0), age = fract(iTime * 2.0);
    float turns = floor(hash(cell.x, cell.y, 0.0) * 4.0);
    for (int i = 0; i < 12; ++i) {
        float chosen = step(0.66, hash(cell.x, cell.y, float(i + 1)));
        turns += chosen * (float(i) < beat ? 1.0 : float(i) == beat ? smoothstep(0.0, 0.55, age) : 0.0);
    }
    float a = turns * 1.570796;
    f = mat2(cos(a), sin(a), -sin(a), cos(a)) * f;

    float d = min(abs(length(f - 0.5) - 0.5), abs(length(f + 0.5) - 0.5));
    float pixel = uTiles / iResolution.y;
    float line = clamp(0.5 + (uWidth - d) / pixel, 0.0, 1.0);
    float core = clamp(0.5 + (uWidth * 0.3 - d) / pixel, 0.0, 1.0);
    float turning = abs(fract(turns) - 0.5) < 0.499 ? 1.0 : 0.0;

    float checker = mod(cell.x + cell.y, 2.0);
    vec3 ground = kPaper * (0.97 + 0.03 * checker);
    float spot = step(0.86, hash(cell.x, cell.y, 14.0)) * clamp(0.5 + (0.24 - length(f)) / pixel, 0.0, 1.0);
    vec3 colour = mix(ground, kSteel, spot * 0.9);
    colour = mix(colour, kInk, line);
    colour = mix(colour, mix(kPaper, kEmber, max(turning, step(0.7, hash(cell.x, cell.y, 15.0)))), core);
    fragColor = vec4(colour, uAlpha);
}
