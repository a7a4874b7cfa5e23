#version 330 core
// Hardcode: a broken video stream whose blocks smear along wrong motion, and regions that show their raw bytes.
//   uBlocks  blocks a frame height, 6..60
//   uMosh    length of the smear, 0..1
//   uCode    share of the picture shown as code, 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uBlocks = 18.0;
uniform float uMosh = 0.5;
uniform float uCode = 0.3;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);
// Hexadecimal digits: 4 x 7 bits, the lowest bit at the lower left.
const uint kDigits[16] = uint[16](
    0x6999996u, 0x464444eu, 0x698421fu, 0x7886887u, 0x999f888u, 0xf178896u, 0x6117996u, 0xf884422u,
    0x6996996u, 0x699e886u, 0x699f999u, 0x7997997u, 0x6911196u, 0x7999997u, 0xf11711fu, 0xf117111u);
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

float noise(vec2 p, float seed) {
    vec2 i = floor(p), f = fract(p);
    f *= f * (3.0 - 2.0 * f);
    return mix(mix(hash(i.x, i.y, seed), hash(i.x + 1.0, i.y, seed), f.x),
               mix(hash(i.x, i.y + 1.0, seed), hash(i.x + 1.0, i.y + 1.0, seed), f.x), f.y);
}

// A page of text.
vec3 card(vec2 uv) {
    vec2 p = vec2(uv.x * iResolution.x / iResolution.y, uv.y) * 18.0 + vec2(0.0, floor(iTime * 2.0) * -1.0);
    float row = floor(p.y), word = floor(p.x * 1.3 + hash(row, 1.0, 61.0) * 4.0);
    float indent = floor(hash(row, 2.0, 61.0) * 4.0) + 1.0;
    float end = iResolution.x / iResolution.y * 18.0 * (0.3 + 0.65 * hash(row, 3.0, 61.0));
    float h = hash(word, row, 62.0);
    float ink = step(0.28, fract(p.y)) * step(0.2, h) * step(indent, p.x) * step(p.x, end);
    vec3 dye = h > 0.88 ? kEmber : h > 0.6 ? kSteel : kBone * 0.75;
    return mix(mix(kInk, kSteel * 0.3, 0.35 + 0.25 * uv.y), dye, ink);
}

// Beyond its edges the picture goes on mirrored.
vec2 mirror(vec2 uv) {
    return 1.0 - abs(mod(uv, 2.0) - 1.0);
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

void main() {
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 600.0);
    float count = clamp(uBlocks, 6.0, 60.0), mosh = clamp(uMosh, 0.0, 1.0);
    vec2 p = vec2(vUV.x * aspect, vUV.y) * count + kOff, block = floor(p), q = fract(p);
    vec2 scale = 1.0 / (count * vec2(aspect, 1.0));

    // Motion vectors come in fields of several blocks and are rounded to whole steps, as a codec would.
    vec2 field = floor((block + 0.5) / vec2(3.0, 2.0));
    float clock = time * 0.9 + hash(field.x, field.y, 1.0), epoch = floor(clock), age = fract(clock);
    float lost = step(hash(field.x, field.y, epoch + 40.0), 0.3 + 0.6 * mosh);
    vec2 vector = vec2(noise(field * 0.37 + epoch, 2.0), noise(field * 0.37 + epoch, 3.0)) - 0.5;
    vec2 push = floor(vector * 14.0 * mosh * (0.35 + age) + 0.5) * lost;
    vec2 at = p + push + lost * vector * 5.0 * mosh * age;
    vec3 held = source(mirror((floor(at) + 0.5) * scale)), fresh = source(mirror(at * scale));
    vec3 true_ = source(vUV);
    // A smeared block keeps its old detail and takes the new picture's difference on top.
    vec3 colour = mix(true_, fresh + 0.55 * lost * (true_ - held), lost);
    // Lost coefficients leave bars and steps within a block.
    float wave = cos(3.1416 * q.x * floor(1.0 + 6.0 * hash(block.x, block.y, epoch))) *
                 cos(3.1416 * q.y * floor(3.0 * hash(block.y, block.x, epoch)));
    float broken = step(hash(block.x, block.y, floor(time * 5.0) + 70.0), 0.1 * (0.4 + mosh));
    colour = mix(colour, held + 0.22 * wave, max(broken, 0.35 * lost));
    vec3 steps = floor(colour * 9.0 + 0.5) / 9.0;
    colour = mix(colour, steps, 0.5 * lost);

    // Code: regions of the stream as bytes, typed from the upper left.
    vec2 region = floor((block + 0.5) / vec2(6.0, 3.0));
    float shift = time * 0.8 + 5.0 * hash(region.x, region.y, 5.0);
    float shown = hash(region.x, region.y, floor(shift) + 90.0), grow = fract(shift);
    vec2 cell = floor(p * vec2(2.4, 1.5)), glyph = fract(p * vec2(2.4, 1.5));
    float typed = step(fract(p.x / 6.0) * 0.25 + (1.0 - fract(p.y / 3.0)), grow * 3.5);
    if (shown < clamp(uCode, 0.0, 1.0) * typed) {
        vec3 seen = source(mirror((cell + 0.5) / vec2(2.4, 1.5) * scale));
        float light = dot(seen, vec3(0.3, 0.59, 0.11));
        float change = floor(time * (1.0 + 7.0 * hash(cell.x, cell.y, 6.0)));
        int digit = int(hash(cell.x, cell.y, change) * 15.99);
        ivec2 bit = ivec2(glyph * vec2(5.5, 9.0)) - ivec2(0, 1);
        float on = bit.x < 4 && bit.y >= 0 && bit.y < 7
                 ? float((kDigits[digit] >> uint(bit.y * 4 + bit.x)) & 1u) : 0.0;
        vec3 dye = mix(kSteel, kBone, smoothstep(0.15, 0.7, light));
        if (hash(cell.x, cell.y, 8.0) > 0.9) dye = kEmber;
        colour = mix(kInk + seen * 0.16, dye, on * (0.35 + 0.65 * smoothstep(0.0, 0.5, light)));
        if (shown < 0.06 * clamp(uCode, 0.0, 1.0)) colour = mix(kEmber, kInk, on);
    }
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
