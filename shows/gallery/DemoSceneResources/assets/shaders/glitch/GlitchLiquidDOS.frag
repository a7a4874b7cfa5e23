#version 330 core
// Liquid DOS: text mode in sixteen colours and four shading characters, poured through a slow current.
//   uRows     rows of text a frame height, 12..60
//   uFlow     strength of the current, 0..1
//   uPalette  how far the palette itself flows, 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uRows = 25.0;
uniform float uFlow = 0.5;
uniform float uPalette = 0.5;

const vec3 kInk = vec3(0.027, 0.035, 0.067);

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

// Drops that merge and part.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float sum = 0.0;
    for (int i = 0; i < 4; ++i) {
        float n = float(i);
        vec2 turn = vec2(iTime * (0.5 + 0.1 * n) + n * 1.9, iTime * (0.6 - 0.08 * n) + n * 2.7);
        vec2 d = p - vec2(0.5 * sin(turn.x), 0.28 * cos(turn.y));
        sum += 0.016 / (dot(d, d) + 0.004);
    }
    float blue = 0.25 + 0.5 * smoothstep(0.9, 0.3, sum) + step(1.8, sum);
    return vec3(smoothstep(0.2, 1.5, sum), smoothstep(0.6, 1.9, sum), blue);
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

// The sixteen colours of the adapter: bits blue, green, red, bright; dark yellow is brown.
vec3 shade16(int i) {
    vec3 rgb = vec3(float((i >> 2) & 1), float((i >> 1) & 1), float(i & 1)) * 0.667;
    if (i == 6) return vec3(0.667, 0.333, 0.0);
    return rgb + (i > 7 ? 0.333 : 0.0);
}

void main() {
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 1200.0);
    float rows = clamp(uRows, 12.0, 60.0), flow = clamp(uFlow, 0.0, 1.0);
    // Whole pixels in a character, so that its pattern stays even.
    float dotSize = max(1.0, floor(iResolution.y / rows / 8.0 + 0.501));
    vec2 box = vec2(8.0 * dotSize), px = floor(vUV * iResolution.xy);
    vec2 cell = floor((px + 0.5) / box), bit = floor((px + 0.5 - cell * box) / dotSize);
    vec2 centre = (cell + 0.5) * box / iResolution.xy;

    // The current: each bend feeds the next.
    vec2 p = vec2(centre.x * aspect, centre.y) * 3.0, w = p;
    w += 0.7 * vec2(sin(w.y * 1.3 + time * 0.9), cos(w.x * 1.1 - time * 0.7));
    w += 0.45 * vec2(sin(w.y * 2.3 - time * 1.1), cos(w.x * 2.1 + time * 0.8));
    vec2 pull = (w - p) * 0.11 * flow / vec2(aspect, 1.0);
    vec3 seen = source(mirror(centre + pull));
    float light = dot(seen, vec3(0.3, 0.59, 0.11));
    float wave = 0.5 + 0.5 * sin(w.x * 1.7 + w.y * 1.2 + light * 5.0 - time * 1.6);
    // Two ramps of light, blue to white and red to white, change places with the tide.
    float l = clamp(light * 1.15 + 0.5 * (wave - 0.4), 0.0, 1.0);
    vec3 cold = vec3(smoothstep(0.6, 1.0, l), smoothstep(0.25, 0.75, l), 0.25 + smoothstep(0.0, 0.5, l));
    vec3 hot = vec3(0.1 + smoothstep(0.0, 0.45, l), smoothstep(0.3, 0.85, l), smoothstep(0.7, 1.05, l));
    float warm = clamp(0.5 + 1.6 * (seen.r - seen.b) + 0.9 * (wave - 0.75), 0.0, 1.0);
    vec3 tide = mix(cold, hot, smoothstep(0.25, 0.75, warm));
    vec3 wish = mix(seen * 1.25, tide, 0.35 + 0.6 * clamp(uPalette, 0.0, 1.0));

    // Foreground and background: the two nearest colours; the wish lies somewhere between them.
    float best = 9.0, second = 9.0;
    vec3 back = vec3(0.0), fore = vec3(0.0);
    for (int i = 0; i < 16; ++i) {
        vec3 c = shade16(i), d = (c - wish) * vec3(0.9, 1.15, 0.75);
        float far_ = dot(d, d);
        if (far_ < best) {
            second = best; fore = back;
            best = far_; back = c;
        } else if (far_ < second) {
            second = far_; fore = c;
        }
    }
    vec3 span = fore - back;
    float share = clamp(dot(wish - back, span) / max(dot(span, span), 1e-4), 0.0, 0.6);

    // Shading characters: a quarter, a half, three quarters of the dots; the rest are signs.
    float even = mod(bit.x + bit.y, 2.0), quarter = step(mod(bit.x + 2.0 * mod(bit.y, 2.0), 4.0), 0.5);
    float on = share > 0.36 ? even : share > 0.14 ? quarter : 0.0;
    float sign_ = hash(cell.x, cell.y, floor(time * 1.5 + 9.0 * hash(cell.x, cell.y, 3.0)));
    if (sign_ > 0.8 && wave > 0.72) {
        vec2 stroke = floor((bit - 0.5) * vec2(0.5, 1.0));
        float edge = step(bit.x, 6.5) * step(0.5, bit.y);
        on = edge * step(0.45, hash(stroke.x, stroke.y, floor(sign_ * 4096.0)));
        vec3 contrast = dot(back, vec3(0.333)) > 0.4 ? vec3(0.0, 0.0, 0.667) : vec3(0.333, 1.0, 1.0);
        if (dot(span, span) < 0.4) fore = contrast;
    }
    // The cursor writes its way through the rows.
    ivec2 page = max(ivec2((iResolution.xy + 0.5) / box), 1);
    int step_ = int(time * 24.0);
    float row = float(page.y - 1 - step_ / page.x % page.y);
    vec3 colour = mix(back, fore, on);
    float ahead = cell.x - float(step_ % page.x);
    if (abs(cell.y - row) < 0.5 && ahead < 0.5) colour = mix(vec3(0.0, 0.0, 0.667), vec3(1.0), on);
    if (abs(cell.y - row) < 0.5 && abs(ahead) < 0.5) colour = vec3(1.0, 1.0, 0.333);
    fragColor = vec4(colour, uAlpha);
}
