#version 330 core
// Fifteen ways from the outgoing picture (texA) to the incoming one (texB), one a value of effectId.
// Progress 0 shows texA untouched, progress 1 texB; everything that moves is a function of progress.
//
//  id  style          uses
//   0  fade           -
//   1  wipe           softness, rotation            (from the top; "vertical" is the same style)
//   2  bands          bands, softness, rotation
//   3  curtains       bands (folds a side), softness, rotation
//   4  horizontal     softness, rotation            (from the left)
//   5  dissolve       noiseScale, noiseThreshold, softness
//   6  noise_smoke    noiseScale, noiseSpeed, noiseThreshold, softness
//   7  noise_organic  noiseScale, noiseSpeed, noiseThreshold, softness
//   8  noise_glitch   blockSize, noiseScale, noiseSpeed, noiseThreshold, softness
//   9  wavy           waveAmplitude, softness, rotation
//  10  crosswarp      rotation
//  11  burning        noiseScale, noiseSpeed, noiseThreshold, softness, rotation
//  12  pixellated     blockSize, softness
//  13  radialwipe     softness, rotation
//  14  dots           dotFrequency, dotPower, softness, rotation
in vec2 vUV;
out vec4 fragColor;

uniform sampler2D texA;               // outgoing
uniform sampler2D texB;               // incoming
uniform float progress;               // 0..1
uniform float startDelay = 0.0;       // share of the progress that passes before the style starts, 0..0.999
uniform int effectId = 0;             // 0..14, see above
uniform float softness = 0.02;        // width of the edge as a share of the way that it travels, 0..1
uniform int bands = 8;                // stripes, or folds of each curtain, 1..128
uniform float rotationDeg = 0.0;      // counter-clockwise turn of the style's axis
uniform float blockSizePx = 48.0;     // output pixels, 1..half the shorter side
uniform float noiseScale = 3.0;       // features a frame height (dissolve: grains, times 120), 0.1..40
uniform float noiseSpeed = 1.0;       // frame heights of drift over the transition, relative, -10..10
uniform float noiseThreshold = 0.5;   // share still outgoing at half-way, 0.05..0.95
uniform float waveAmplitude = 0.1;    // sideways swing in frame heights, -1..1
uniform float dotFrequency = 200.0;   // radians a frame height: 200 gives 32 dots, 6.3..3 pixels a dot
uniform float dotPower = 10.0;        // 0 grows all dots at once, more makes a steeper front, 0..200
uniform vec2 screenSize;              // output pixels

const float kPi = 3.14159265;
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kHot = vec3(1.0, 0.72, 0.38);

// Set once in main, after the parameters were brought into their ranges.
vec2 size;      // output pixels
vec2 aspect;    // frame width and height in frame heights
vec2 pos;       // frame heights from the centre
float pixel;    // frame heights
float soft;     // 0..1
float turn;     // radians

// Not a number gives the lower bound.
float bounded(float x, float low, float high) {
    return x > low ? min(x, high) : low;
}

// Coordinates off the picture are folded back into it, so that a moved picture has no torn border.
vec2 folded(vec2 uv) {
    return abs(mod(uv + 1.0, 2.0) - 1.0);
}

// The pictures, moved by an offset in frame heights.
vec4 outgoing(vec2 offset) {
    return texture(texA, folded(vUV + offset / aspect));
}

vec4 incoming(vec2 offset) {
    return texture(texB, folded(vUV + offset / aspect));
}

// 0 at both ends of the progress, 1 between; decorations are multiplied by it.
float between(float p) {
    return smoothstep(0.0, 0.14, p) * smoothstep(0.0, 0.14, 1.0 - p);
}

// Weight of the incoming picture where `key` (0 turns first, 1 last) meets an edge of width `wide`.
float reveal(float key, float p, float wide) {
    return smoothstep(0.0, 1.0, (p * (1.0 + wide) - key) / wide);
}

// Progress bent so that a share of 1 - noiseThreshold has turned half-way.
float biased(float p) {
    float b = 1.0 - bounded(noiseThreshold, 0.05, 0.95);
    return p / ((1.0 / b - 2.0) * (1.0 - p) + 1.0);
}

vec2 turned(vec2 v) {
    float s = sin(turn), c = cos(turn);
    return vec2(c * v.x - s * v.y, s * v.x + c * v.y);
}

// Length of the frame along a direction, in frame heights.
float extent(vec2 direction) {
    return dot(abs(direction), aspect);
}

float hash(vec2 p) {
    vec3 q = fract(vec3(p.xyx) * 0.1031);
    q += dot(q, q.yzx + 33.33);
    return fract((q.x + q.y) * q.z);
}

vec2 hash2(vec2 p) {
    vec3 q = fract(vec3(p.xyx) * vec3(0.1031, 0.103, 0.0973));
    q += dot(q, q.yzx + 33.33);
    return fract((q.xx + q.yz) * q.zy);
}

float noise(vec2 p) {
    vec2 i = floor(p), f = p - i;
    f *= f * (3.0 - 2.0 * f);
    vec2 below = vec2(hash(i), hash(i + vec2(1.0, 0.0)));
    vec2 above = vec2(hash(i + vec2(0.0, 1.0)), hash(i + 1.0));
    vec2 column = mix(below, above, f.y);
    return mix(column.x, column.y, f.x);
}

float fractal(vec2 p, int octaves) {
    float sum = 0.0, weight = 0.5, total = 0.0;
    for (int i = 0; i < octaves; ++i) {
        sum += weight * noise(p);
        total += weight;
        weight *= 0.5;
        p = mat2(1.6, 1.2, -1.2, 1.6) * p + 7.3;
    }
    return sum / total;
}

float noiseFrequency() {
    return bounded(noiseScale, 0.1, 40.0);
}

float noiseTravel(float p) {
    return bounded(noiseSpeed, -10.0, 10.0) * p;
}

vec4 fade(float p) {
    return mix(outgoing(vec2(0.0)), incoming(vec2(0.0)), p);
}

// Shadow that the incoming picture throws on the outgoing one, `gap` frame heights ahead of its edge.
float shadow(float gap, float p) {
    return 0.55 * exp(-max(gap, 0.0) * 22.0) * (1.0 - soft) * between(p);
}

vec4 wipe(vec2 from, float p) {
    vec2 way = turned(from);
    float span = extent(way);
    float key = dot(pos, way) / span + 0.5;
    float wide = max(soft, pixel / span);
    vec4 a = outgoing(vec2(0.0));
    a.rgb *= 1.0 - shadow((key - p * (1.0 + wide)) * span, p);
    return mix(a, incoming(vec2(0.0)), reveal(key, p, wide));
}

// Bars slide in from both sides, one after the other.
vec4 slidingBands(float p) {
    vec2 way = turned(vec2(1.0, 0.0)), across = vec2(-way.y, way.x);
    float count = float(clamp(bands, 1, 128));
    float place = clamp((0.5 - dot(pos, across) / extent(across)) * count, 0.0, count - 0.001);
    float bar = floor(place);
    way *= mod(bar, 2.0) < 0.5 ? 1.0 : -1.0;
    float span = extent(way);

    float lag = 0.5 * bar / max(count - 1.0, 1.0);
    float q = clamp((p - lag) / 0.5, 0.0, 1.0);
    q *= q * (3.0 - 2.0 * q);
    float wide = max(soft, pixel / span);
    float key = dot(pos, way) / span + 0.5;
    vec4 a = outgoing(vec2(0.0));
    a.rgb *= 1.0 - shadow((key - q * (1.0 + wide)) * span, q);
    vec4 b = incoming(way * span * (1.0 - q));
    // A moving bar lies above the resting picture: its long sides darken a little.
    float side = min(place - bar, bar + 1.0 - place) / count;
    b.rgb *= 1.0 - 0.5 * exp(-side * 160.0) * between(q);
    return mix(a, b, reveal(key, q, wide));
}

// Two halves of cloth, gathered into folds, drawn aside from the centre; the hem trails the rail.
vec4 curtains(float p) {
    vec2 way = turned(vec2(1.0, 0.0)), up = vec2(-way.y, way.x);
    float halfSpan = 0.5 * extent(way);
    float s = dot(pos, way) / halfSpan;
    way *= s < 0.0 ? -1.0 : 1.0;
    s = abs(s);
    float height = dot(pos, up) / extent(up) + 0.5;
    float e = p * p * (3.0 - 2.0 * p);
    float open = e * (1.0 + (1.0 - e) * (0.9 * height * height - 0.35));

    float folds = float(clamp(bands, 1, 128));
    float width = mix(1.0, 0.4, open);
    float cloth = (s - open) / width;
    float phase = (cloth * folds + 0.25 * sin(height * 2.6)) * 2.0 * kPi;
    float foldPixels = width * halfSpan / (folds * pixel);
    float depth = smoothstep(0.0, 0.35, e) * smoothstep(3.0, 9.0, foldPixels);
    float gathered = abs(cloth + 0.6 * depth * sin(phase) / (folds * 2.0 * kPi));

    vec4 a = outgoing(way * (gathered - s) * halfSpan);
    float ridge = 0.5 + 0.5 * cos(phase + 0.9);
    a.rgb *= 1.0 - depth * (0.75 * (1.0 - ridge) * (1.0 - 0.4 * ridge));
    a.rgb += depth * 0.1 * pow(ridge, 6.0);
    vec4 b = incoming(vec2(0.0));
    b.rgb *= 1.0 - 0.6 * exp(-max(open - s, 0.0) * halfSpan * 12.0) * between(p);
    return mix(a, b, reveal(s, open, max(soft, pixel / halfSpan)));
}

// Fine grain turns speck by speck, in faint clouds.
vec4 dissolve(float p) {
    float frequency = noiseFrequency();
    float grain = max(size.y / (120.0 * frequency), 1.0);
    float key = mix(hash(floor(vUV * size / grain)), noise(pos * frequency + 11.0), 0.35);
    float turnedShare = biased(p), wide = max(soft, 0.002);
    float w = reveal(key, turnedShare, wide);
    float fresh = exp(-abs(turnedShare * (1.0 + wide) - key) * 28.0);
    vec4 c = mix(outgoing(vec2(0.0)), incoming(vec2(0.0)), w);
    c.rgb += 0.3 * c.rgb * fresh * between(p);
    return c;
}

// Smoke billows up, carries the outgoing picture off and clears.
vec4 smoke(float p) {
    vec2 q = pos * noiseFrequency() * 0.8 + 20.0;
    float rise = noiseTravel(p);
    vec2 swirl = vec2(fractal(q + vec2(0.0, -rise), 3), fractal(q + vec2(5.2, 1.3 - rise), 3)) - 0.5;
    float n = fractal(q * 0.9 + 2.2 * swirl - vec2(0.0, 1.4 * rise), 4);
    float key = smoothstep(0.12, 0.88, n + 0.2 * pos.y);
    float w = reveal(key, biased(p), 0.22 + 0.78 * soft);

    vec4 c = mix(outgoing(-0.35 * swirl * w), incoming(0.35 * swirl * (1.0 - w)), w);
    float density = 4.0 * w * (1.0 - w) * between(p);
    float lit = clamp(0.5 + 2.2 * (n - 0.5) - 1.2 * swirl.y, 0.0, 1.0);
    c.rgb = mix(c.rgb, mix(vec3(0.1, 0.11, 0.13), vec3(0.62, 0.63, 0.64), lit), 0.72 * density);
    return c;
}

// Cells open at their nuclei, swell and flow together; their rims bend the outgoing picture.
vec4 organic(float p) {
    vec2 q = pos * noiseFrequency() * 1.4 + 20.0;
    vec2 home = floor(q), f = q - home;
    float sum = 0.0;
    vec2 pull = vec2(0.0);
    for (int y = -1; y <= 1; ++y) {
        for (int x = -1; x <= 1; ++x) {
            vec2 cell = vec2(x, y);
            vec2 random = hash2(home + cell);
            float swim = 2.0 * kPi * (random.x + 0.35 * noiseTravel(p));
            vec2 r = cell + 0.5 + 0.34 * vec2(cos(swim), sin(swim + random.y * 6.0)) - f;
            float weight = exp(-9.0 * (length(r) + 0.7 * random.y));
            sum += weight;
            pull += weight * r;
        }
    }
    pull /= max(sum, 1e-9);
    float key = smoothstep(-0.1, 1.05, -log(max(sum, 1e-9)) / 9.0);
    float wide = 0.02 + 0.98 * soft, opened = biased(p);
    float gap = key - opened * (1.0 + wide);
    float w = reveal(key, opened, wide);

    float rim = exp(-abs(gap + 0.5 * wide) * 16.0 / (1.0 + 4.0 * soft)) * between(p);
    vec2 bend = pull * rim * 0.35 / noiseFrequency();
    vec4 c = mix(outgoing(bend), incoming(-0.5 * bend), w);
    c.rgb *= 1.0 - 0.55 * rim * (1.0 - w);
    c.rgb += 0.35 * pow(rim, 3.0) * w * (0.35 + 0.65 * clamp(0.5 + 1.2 * pull.y - 0.8 * pull.x, 0.0, 1.0));
    return c;
}

// Blocks drop out in bursts, rows tear, colours part; everything moves in ticks of the progress.
vec4 glitch(float p) {
    float block = bounded(blockSizePx, 2.0, 0.5 * min(size.x, size.y));
    float tick = floor(24.0 * noiseTravel(p));
    float unrest = sin(kPi * p);
    vec2 at = vUV * size;
    float row = floor(at.y / max(floor(block / 6.0), 1.0));
    float tear = hash(vec2(row, tick)) < 0.22 * unrest ? hash(vec2(tick, row)) - 0.5 : 0.0;
    at.x += tear * 0.22 * unrest * size.x;

    // Some blocks fall into quarters, some of those again.
    vec2 cell = floor(at / block);
    for (int i = 0; i < 2; ++i) {
        if (hash(cell + 3.7) < 0.55) break;
        block *= 0.5;
        cell = floor(at / block) + 40.0;
    }
    vec2 centre = (floor(at / block) + 0.5) * block / size.y;
    float key = mix(hash(cell), noise(centre * noiseFrequency() + 5.0), 0.6);
    key = clamp(key + (hash(cell + tick) - 0.5) * 0.3 * unrest, 0.0, 1.0);
    float turnedShare = biased(p), wide = max(soft, 0.004);
    float w = reveal(key, turnedShare, wide);

    float hit = smoothstep(0.16, 0.0, abs(turnedShare * (1.0 + wide) - key)) * unrest;
    vec2 shift = vec2(tear * 0.22 * unrest * aspect.x + (hash(cell - tick) - 0.5) * 0.2 * hit, 0.0);
    vec2 part = vec2((0.004 + 0.03 * hit) * unrest, 0.0);
    vec4 a = outgoing(shift), b = incoming(shift);
    a.r = outgoing(shift + part).r;
    b.r = incoming(shift + part).r;
    a.b = outgoing(shift - part).b;
    b.b = incoming(shift - part).b;
    vec4 c = mix(a, b, w);
    float line = mod(floor(vUV.y * size.y / max(floor(size.y / 240.0), 1.0)), 2.0);
    c.rgb = mix(c.rgb, 1.25 * c.rgb * (0.45 + 0.75 * line) + 0.06 * line, hit);
    return c;
}

// Both pictures swing in rows, as on water; the incoming one surfaces on the crests.
vec4 wavy(float p) {
    vec2 way = turned(vec2(1.0, 0.0)), up = vec2(-way.y, way.x);
    float swing = bounded(waveAmplitude, -1.0, 1.0) * sin(kPi * p);
    float y = dot(pos, up), x = dot(pos, way);
    float first = 2.0 * kPi * (1.7 * y + 0.22 * sin(2.6 * x) + 1.1 * p);
    float second = 2.0 * kPi * (3.9 * y - 0.3 * sin(1.9 * x) - 1.6 * p) + 1.0;
    float wave = (sin(first) + 0.45 * sin(second)) / 1.45;
    float slope = (cos(first) + 0.45 * 2.3 * cos(second)) / 2.0;

    float key = 0.5 + 0.42 * wave + 0.08 * sin(5.0 * x + 3.0 * y);
    float w = reveal(key, p, 0.3 + 0.7 * soft);
    vec4 c = mix(outgoing(way * swing * wave), incoming(-0.6 * way * swing * wave), w);
    float light = slope * min(abs(swing) * 4.0, 0.5);
    c.rgb *= 1.0 + 0.7 * light;
    c.rgb += 0.16 * pow(max(light, 0.0) * 2.0, 3.0);
    return c;
}

// The outgoing picture is drawn to a line, the incoming one drawn out of it, along a passing front.
vec4 crosswarp(float p) {
    vec2 way = turned(vec2(1.0, 0.0));
    float key = dot(pos, way) / extent(way) + 0.5;
    float x = smoothstep(0.0, 1.0, 2.0 * p - key);
    return mix(outgoing(-pos * x), incoming(-pos * (1.0 - x)), x);
}

// Paper catches at the lower edge: a browned and charred border, an ember line, then a hole.
vec4 burning(float p) {
    vec2 way = turned(vec2(0.0, 1.0));
    float frequency = noiseFrequency();
    vec2 q = pos * frequency + 30.0;
    float n = fractal(q - way * noiseTravel(p) * 0.35, 5);
    float key = 0.6 * smoothstep(0.15, 0.85, n) + 0.4 * (dot(pos, way) / extent(way) + 0.5);
    float glow = 0.025 + 0.12 * soft;
    float ahead = 0.2 + glow;
    float gap = key - mix(-ahead, 1.0 + 3.0 * glow, biased(p));

    // From the sound paper inwards: browned, charred, glowing, gone.
    vec4 a = outgoing(vec2(0.0));
    float grey = dot(a.rgb, vec3(0.3, 0.6, 0.1));
    float brown = smoothstep(ahead, 0.04, gap), black = smoothstep(0.1, 0.02, gap);
    a.rgb = mix(a.rgb, vec3(0.62, 0.34, 0.16) * (0.15 + grey), 0.85 * brown);
    a.rgb *= 1.0 - 0.94 * black;
    float flicker = noise(q * 5.0 + vec2(0.0, 30.0 * p));
    a.rgb += kEmber * smoothstep(0.62, 0.9, flicker) * black * smoothstep(0.12, 0.03, gap) * 0.9;

    vec4 b = incoming(vec2(0.0));
    float w = smoothstep(0.0, -max(0.3 * glow, 2.0 * pixel), gap);
    float heat = exp(-abs(gap) / glow);
    vec4 c = mix(a, b, w);
    float live = smoothstep(ahead, 0.6 * ahead, gap) * smoothstep(-3.0 * glow, -2.0 * glow, gap);
    c.rgb += live * (kEmber * heat * (0.7 + 0.6 * flicker) + kHot * pow(heat, 4.0) * 1.1);
    return c;
}

// Mean of four taps in a square block of the given side in pixels, the grid centred on the frame.
vec4 mosaic(sampler2D picture, float block) {
    vec2 centre = (floor((vUV - 0.5) * size / block + 0.5)) * block;
    vec4 sum = vec4(0.0);
    for (int i = 0; i < 4; ++i) {
        vec2 tap = vec2(i & 1, i >> 1) - 0.5;
        sum += texture(picture, clamp((centre + 0.5 * tap * block) / size + 0.5, 0.0, 1.0));
    }
    return 0.25 * sum;
}

// Blocks coarsen in steps to their full size, change over one by one, and become fine again.
vec4 pixellated(float p) {
    float largest = bounded(blockSizePx, 1.0, 0.5 * min(size.x, size.y));
    float level = floor(15.0 * (1.0 - abs(2.0 * p - 1.0)) + 0.01) / 14.0;
    float block = floor(exp2(log2(largest) * min(level, 1.0)) + 0.5);
    if (block < 2.0) return p < 0.5 ? outgoing(vec2(0.0)) : incoming(vec2(0.0));
    vec2 cell = floor((vUV - 0.5) * size / block + 0.5);
    float w = reveal(hash(cell + 9.0), clamp((p - 0.3) / 0.4, 0.0, 1.0), max(soft, 0.01));
    return mix(mosaic(texA, block), mosaic(texB, block), w);
}

// A clock hand from twelve, clockwise.
vec4 radialWipe(float p) {
    vec2 r = turned(pos);
    float key = fract(atan(r.x, r.y) / (2.0 * kPi) + 1.0);
    float around = 2.0 * kPi * max(length(pos), pixel);
    float wide = min(max(soft, pixel / around), 1.0);
    float w = reveal(key, p, wide);
    // The line where the hand sets out has a neighbour on its other side.
    float seam = 0.5 * clamp(1.0 - min(key, 1.0 - key) * around / pixel, 0.0, 1.0);
    w = mix(w, reveal(key < 0.5 ? 1.0 : 0.0, p, wide), seam);

    float gap = (key - p * (1.0 + wide)) * around;
    vec4 a = outgoing(vec2(0.0)), b = incoming(vec2(0.0));
    a.rgb *= 1.0 - shadow(gap, p);
    return mix(a, b, w);
}

// A halftone screen at 45 degrees whose dots swell from the centre outwards.
vec4 dots(float p) {
    float cells = bounded(dotFrequency, 2.0 * kPi, 2.0 * kPi * size.y / 3.0) / (2.0 * kPi);
    vec2 way = turned(vec2(0.70710678));
    mat2 screen = mat2(way.x, -way.y, way.y, way.x);
    vec2 q = screen * pos * cells;
    vec2 centre = floor(q) + 0.5;
    float key = min(length(centre * screen / cells) / length(0.5 * aspect), 1.0);
    float front = 4.0 / (4.0 + bounded(dotPower, 0.0, 200.0));
    float grown = clamp((p - key * (1.0 - front)) / front, 0.0, 1.0);

    float edge = pixel * cells + 0.5 * soft;
    float radius = mix(-edge, 0.7072 + edge, grown);
    float w = smoothstep(-edge, edge, radius - length(q - centre));
    return mix(outgoing(vec2(0.0)), incoming(vec2(0.0)), w);
}

vec4 styled(float p) {
    switch (effectId) {
    case 1: return wipe(vec2(0.0, -1.0), p);
    case 2: return slidingBands(p);
    case 3: return curtains(p);
    case 4: return wipe(vec2(1.0, 0.0), p);
    case 5: return dissolve(p);
    case 6: return smoke(p);
    case 7: return organic(p);
    case 8: return glitch(p);
    case 9: return wavy(p);
    case 10: return crosswarp(p);
    case 11: return burning(p);
    case 12: return pixellated(p);
    case 13: return radialWipe(p);
    case 14: return dots(p);
    }
    return fade(p);
}

void main() {
    size = vec2(bounded(screenSize.x, 1.0, 65536.0), bounded(screenSize.y, 1.0, 65536.0));
    aspect = vec2(size.x / size.y, 1.0);
    pos = (vUV - 0.5) * aspect;
    pixel = 1.0 / size.y;
    soft = bounded(softness, 0.0, 1.0);
    turn = radians(mod(bounded(rotationDeg, -36000.0, 36000.0), 360.0));

    float delay = bounded(startDelay, 0.0, 0.999);
    float p = bounded((progress - delay) / (1.0 - delay), 0.0, 1.0);
    if (p <= 0.0) {
        fragColor = texture(texA, vUV);
    } else if (p >= 1.0) {
        fragColor = texture(texB, vUV);
    } else {
        fragColor = styled(p);
    }
}
