#version 330 core
// Pocket console: a dot display of four shades whose tile memory and scroll register have gone bad.
//   uLines   dots a frame height, 48..288; their pitch is made whole pixels
//   uGlitch  share of the tiles that are wrong, 0..1
//   uTint    colour of an unlit dot, r g b 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uLines = 120.0;
uniform float uGlitch = 0.3;
uniform vec3 uTint = vec3(0.76, 0.80, 0.42);

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kDark = vec3(0.07, 0.16, 0.12);

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

// A hill scene made for the small screen.
vec3 card(vec2 uv) {
    float x = (uv.x - 0.5) * iResolution.x / iResolution.y + 0.08 * iTime;
    float hill = 0.36 + 0.09 * sin(x * 4.0) + 0.03 * sin(x * 11.0);
    float far_ = 0.52 + 0.07 * sin(x * 2.3 + 2.0) + 0.03 * abs(fract(x * 5.0) - 0.5);
    vec2 brick = vec2(x * 12.0 + 0.5 * mod(floor(uv.y * 16.0), 2.0), uv.y * 16.0);
    float ground = min(step(0.12, fract(brick.x)), step(0.16, fract(brick.y))) * 0.45;
    float sun = step(length((uv - vec2(0.7, 0.74)) * vec2(iResolution.x / iResolution.y, 1.0)), 0.12);
    float sky = 0.8 + 0.25 * uv.y;
    float shade = uv.y < 0.19 ? ground : uv.y < hill ? 0.3 + 0.35 * uv.y : uv.y < far_ ? 0.62 : sky;
    return vec3(uv.y > far_ ? mix(shade, 0.45, sun) : shade);
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
    float glitch = clamp(uGlitch, 0.0, 1.0);
    float pitch = max(2.0, floor(iResolution.y / clamp(uLines, 48.0, 288.0) + 0.501));
    vec2 at = floor(vUV * iResolution.xy), dot_ = floor((at + 0.5) / pitch), dots = iResolution.xy / pitch;
    vec2 inside = (at + 0.5) / pitch - dot_;
    float tick = floor(mod(iTime, 600.0) * 6.0);

    // A climbing band loses its scroll register; tiles of 8 x 8 dots are fetched from elsewhere, in runs.
    float line = dot_.y, band = fract(vUV.y * 0.9 - iTime * 0.23);
    float slip = step(band, 0.3) * floor(10.0 * sin(line * 0.16 + iTime * 4.0) + 0.5);
    vec2 look = dot_ + vec2(slip, 0.0);
    vec2 tile = floor(look / 8.0);
    float run_ = hash((tile.x + 0.5) / 3.0, tile.y, (tick + 0.5) / 3.0 + 20000.0);
    float own = hash(tile.x, tile.y, tick);
    float junk = 0.0;
    vec2 wrong = floor(vec2(9.0, 5.0) * vec2(hash(run_ * 4096.0, 1.0, tick), own)) - vec2(4.0, 2.0);
    if (run_ < glitch * 0.4) look += 8.0 * wrong;
    if (own < glitch * 0.06) junk = 1.0;
    vec3 seen = source(mirror((look + 0.5) / dots));
    float light = pow(clamp(dot(seen, vec3(0.3, 0.59, 0.11)), 0.0, 1.0), 0.7);
    vec2 bit = mod(dot_, 8.0);
    float noise_ = hash(bit.x + 8.0 * tile.x, floor(bit.y / 2.0), floor(tile.y + tick * 0.5));
    if (junk > 0.5) light = step(0.5, noise_);

    // Four shades through an ordered 4 x 4 pattern.
    ivec2 b = ivec2(mod(dot_, 4.0));
    int x = b.x ^ b.y, rank = ((x & 1) << 3) | ((b.y & 1) << 2) | (x & 2) | ((b.y & 2) >> 1);
    float shade = clamp(floor(light * 3.0 + (float(rank) + 0.5) / 16.0), 0.0, 3.0) / 3.0;

    vec3 tint = clamp(uTint, 0.0, 1.0);
    vec3 colour = mix(kDark, tint, shade * (0.82 + 0.18 * shade));
    // Gaps between the dots, and the faint shadow that a dark dot throws on the glass behind it.
    float gap = max(step(1.0 - 1.01 / pitch, inside.x), step(1.0 - 1.01 / pitch, inside.y)) * step(2.5, pitch);
    colour = mix(colour, tint * 0.94, 0.22 * gap * (1.0 - 0.5 * shade));
    float refresh = exp(-40.0 * abs(fract(vUV.y + iTime * 0.5) - 0.5));
    colour += tint * 0.06 * refresh;
    vec2 corner = vUV - 0.5;
    colour *= 1.02 - 0.35 * dot(corner, corner);
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
