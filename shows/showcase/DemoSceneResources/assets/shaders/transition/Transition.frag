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
uniform float noiseSpeed = 1.0;       // drift over the transition in features (glitch: in 24 ticks), -10..10
uniform float noiseThreshold = 0.5;   // share still outgoing at half-way, 0.05..0.95
uniform float waveAmplitude = 0.1;    // sideways swing in frame heights, -1..1
uniform float dotFrequency = 200.0;   // radians a frame height: 200 gives 32 dots; 6.3..2 a pixel
uniform float dotPower = 10.0;        // 0 grows all dots at once, more makes a steeper front, 0..200
uniform vec2 screenSize;              // output pixels

const float kPi = 3.14159265;
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kHot = vec3(1.0, 0.72, 0.38);

// Not a number gives the lower bound.
float bounded(float x, float low, float high) {
    return x > low ? min(x, high) : low;
}

// 1 up to `low`, 0 from `high` on.
float falling(float low, float high, float v) {
    return 1.0 - smoothstep(low, high, v);
}

// 0 at both ends of the progress, 1 between; decorations are multiplied by it.
float between(float q) {
    return smoothstep(0.0, 0.14, q) * smoothstep(0.0, 0.14, 1.0 - q);
}

// Progress bent so that a share of 1 - noiseThreshold has turned half-way.
float biased(float q) {
    float b = 1.0 - bounded(noiseThreshold, 0.05, 0.95);
    return q / ((1.0 / b - 2.0) * (1.0 - q) + 1.0);
}

// What most styles share; parameters are brought into their ranges here.
float delay = bounded(startDelay, 0.0, 0.999);
float p = bounded((progress - delay) / (1.0 - delay), 0.0, 1.0); // progress of the style
vec2 size = max(screenSize, vec2(1.0));                          // output pixels
vec2 aspect = vec2(size.x / size.y, 1.0);                        // frame width and height in frame heights
vec2 pos = (vUV - 0.5) * aspect;                                 // frame heights from the centre
float pixel = 1.0 / size.y;                                      // side of one, in frame heights
float soft = bounded(softness, 0.0, 1.0);
float turn = radians(mod(bounded(rotationDeg, -36000.0, 36000.0), 360.0));
vec2 right = vec2(cos(turn), sin(turn)), up = vec2(-right.y, right.x);  // the style's axes
float x = dot(pos, right), y = dot(pos, up);                            // pos on them
float width = dot(abs(right), aspect), height = dot(abs(up), aspect);   // extent of the frame along them
float middle = between(p);
float share = biased(p);
float frequency = bounded(noiseScale, 0.1, 40.0);
float travel = p * bounded(noiseSpeed, -10.0, 10.0);
// Both ends are left to the fade, which is exact there.
int style = p > 0.0 && p < 1.0 ? effectId : 0;

// A style returns the weight of the incoming picture at this pixel and may set what follows. The pictures
// are fetched once, after it: software drivers run every branch for every pixel, wanted or not. Only loops
// are left early, hence the loops of the costly styles, with a length of 0 for the others; it is found out
// here, out of those styles' branches, where a compiler would know it and unroll.
int layers = max(3 - 9 * abs(style - 6), 0);
int octaves = max(5 - 9 * abs(style - 11), layers);
int cells = max(9 - 9 * abs(style - 7), 0);
int taps = style == 8 ? 3 : style == 12 ? 4 : 1;
vec2 moveA = vec2(0.0), moveB = vec2(0.0); // where to look instead of here, frame heights
vec2 spread = vec2(0.0);                   // between the taps of a picture, frame heights
vec4 tone = vec4(0.0);                     // colour of the outgoing picture's greys, and how far it takes it
vec3 liftA = vec3(0.0);                    // added to the outgoing picture
float shadeA = 1.0, shadeB = 1.0;          // factors on the pictures
vec4 veil = vec4(0.0);                     // colour over the mix, and its cover
vec3 glow = vec3(0.0);                     // added to the mix

// Weight of the incoming picture where `key` (0 turns first, 1 last) meets an edge of width `wide`.
float reveal(float key, float q, float wide) {
    return smoothstep(0.0, 1.0, (q * (1.0 + wide) - key) / wide);
}

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

float noise(vec2 at) {
    vec2 i = floor(at), f = at - i;
    f *= f * (3.0 - 2.0 * f);
    vec2 below = vec2(hash(i.x, i.y, 1.0), hash(i.x + 1.0, i.y, 1.0));
    vec2 above = vec2(hash(i.x, i.y + 1.0, 1.0), hash(i.x + 1.0, i.y + 1.0, 1.0));
    vec2 column = mix(below, above, f.y);
    return mix(column.x, column.y, f.x);
}

float fractal(vec2 at, int count) {
    float sum = 0.0, weight = 0.5;
    for (int i = 0; i < count; ++i) {
        sum += weight * noise(at);
        weight *= 0.5;
        at = mat2(1.6, 1.2, -1.2, 1.6) * at + 7.3;
    }
    return sum / (1.0 - weight * 2.0 + 1e-6);
}

// Shadow that the incoming picture throws on the outgoing one, `gap` frame heights ahead of its edge.
float shadow(float gap, float strength) {
    return 0.55 * exp2(-max(gap, 0.0) * 32.0) * (1.0 - soft) * strength;
}

// `key` 0..1 along a way of `span` frame heights.
float wipe(float key, float span) {
    float wide = max(soft, pixel / span);
    shadeA = 1.0 - shadow((key - p * (1.0 + wide)) * span, middle);
    return reveal(key, p, wide);
}

// Bars slide in from both sides, one after the other.
float slidingBands() {
    float count = float(clamp(bands, 1, 128));
    float place = clamp((0.5 - y / height) * count + 0.003, 0.0, count - 0.001);
    float bar = floor(place);
    float way = mod(bar, 2.0) < 0.5 ? width : -width;

    float lag = count > 1.0 ? 0.5 : 0.0; // of the last bar
    float q = clamp((p - lag * bar / max(count - 1.0, 1.0)) / (1.0 - lag), 0.0, 1.0);
    q *= q * (3.0 - 2.0 * q);
    float key = x / way + 0.5, wide = max(soft, pixel / width), moving = between(q);
    moveB = right * way * (1.0 - q);
    shadeA = 1.0 - shadow((key - q * (1.0 + wide)) * width, moving);
    // A moving bar lies above the resting picture: its long sides darken a little.
    float side = min(place - bar, bar + 1.0 - place) / count;
    shadeB = 1.0 - 0.5 * exp2(-side * 230.0) * moving;
    return reveal(key, q, wide);
}

// Two halves of cloth, gathered into folds, drawn aside from the centre; the hem trails the rail.
float curtains() {
    float reach = 0.5 * width;
    float s = abs(x) / reach;
    float level = y / height + 0.5;
    float e = p * p * (3.0 - 2.0 * p);
    float open = e * (1.0 + (1.0 - e) * (0.9 * level * level - 0.35));

    float folds = float(clamp(bands, 1, 128));
    float squeeze = mix(1.0, 0.4, open);
    float cloth = (s - open) / squeeze;
    float phase = (cloth * folds + 0.25 * sin(level * 2.6)) * 2.0 * kPi;
    float foldPixels = squeeze * reach / (folds * pixel);
    float depth = smoothstep(0.0, 0.35, e) * smoothstep(3.0, 9.0, foldPixels);
    float gathered = abs(cloth + 0.6 * depth * sin(phase) / (folds * 2.0 * kPi));
    moveA = right * (x < 0.1 * pixel ? -reach : reach) * (gathered - s);

    float ridge = 0.5 + 0.5 * cos(phase + 0.9);
    shadeA = 1.0 - depth * 0.75 * (1.0 - ridge) * (1.0 - 0.4 * ridge);
    liftA = vec3(depth * 0.1 * ridge * ridge * ridge * ridge);
    shadeB = 1.0 - 0.6 * exp2(-max(open - s, 0.0) * reach * 17.0) * middle;
    return reveal(s, open, max(soft, pixel / reach));
}

// Fine grain turns speck by speck, in faint clouds.
float dissolve() {
    float grain = max(size.y / (120.0 * frequency), 1.0);
    vec2 speck = vUV * size / grain + 0.013;
    float key = mix(hash(speck.x, speck.y, 2.0), noise(pos * frequency + 11.0), 0.35);
    float wide = max(soft, 0.002);
    shadeA = shadeB = 1.0 + 0.3 * exp2(-abs(share * (1.0 + wide) - key) * 40.0) * middle;
    return reveal(key, share, wide);
}

// Smoke billows up, carries the outgoing picture off and clears.
float smoke() {
    vec2 q = pos * frequency * 0.7 + 20.0 - vec2(0.0, travel);
    vec3 n = vec3(0.5);
    for (int i = 0; i < layers; ++i) {
        vec2 at = i == 2 ? q + 1.5 * (n.xy - 0.5) - vec2(0.0, 0.5 * travel) : q + 5.2 * float(i);
        float value = fractal(at, octaves + i - 1);
        n = i == 0 ? vec3(value, n.yz) : i == 1 ? vec3(n.x, value, n.z) : vec3(n.xy, value);
    }
    vec2 swirl = n.xy - 0.5;
    float wide = 0.3 + 0.7 * soft, key = smoothstep(0.2, 0.86, n.z + 0.25 * pos.y);
    float w = reveal(key, share, wide);
    moveA = -0.35 * swirl * w;
    moveB = 0.35 * swirl * (1.0 - w);

    // Lit from the upper left; thin smoke in front of the outgoing picture, thick where it turns.
    float gap = (key - share * (1.0 + wide) + 0.5 * wide) / wide;
    vec2 slope = vec2(dFdx(n.z), dFdy(n.z)) * size.y / frequency;
    float lit = smoothstep(-0.1, 1.1, 0.45 + 0.3 * (slope.x - slope.y) + 1.6 * (n.z - 0.5) - 0.9 * swirl.y);
    veil.rgb = mix(vec3(0.1, 0.105, 0.12), vec3(0.74, 0.73, 0.72), lit);
    veil.a = 0.95 * exp2(-4.0 * gap * gap) * middle;
    return w;
}

// Cells open at their nuclei, swell and flow together; their rims bend the outgoing picture.
float organic() {
    vec2 q = pos * frequency * 1.4 + 20.0;
    vec2 home = floor(q), f = q - home;
    float sum = 1e-9;
    vec2 pull = vec2(0.0);
    for (int i = 0; i < cells; ++i) {
        vec2 cell = vec2(i % 3, i / 3) - 1.0;
        float lot = hash(home.x + cell.x, home.y + cell.y, 3.0);
        vec2 random = vec2(lot, fract(lot * 4096.0)); // the lower bits are a chance of their own
        vec2 swim = abs(fract(random.yx + vec2(0.35, 0.28) * travel) - 0.5); // to and fro
        vec2 r = cell + 0.15 + 1.4 * swim - f;
        float weight = exp2(-13.0 * (length(r) + 0.7 * random.y));
        sum += weight;
        pull += weight * r;
    }
    pull /= sum;
    float ripe = clamp(-log2(sum) / 14.5, 0.0, 1.0);
    float key = ripe * ripe;
    float wide = 0.02 + 0.98 * soft;
    float w = reveal(key, share, wide);

    float gap = key - share * (1.0 + wide) + 0.5 * wide;
    float rim = exp2(-abs(gap) * 23.0 / (1.0 + 4.0 * soft)) * middle;
    moveA = pull * rim * 0.35 / frequency;
    moveB = -0.5 * moveA;
    shadeA = shadeB = 1.0 - 0.55 * rim * (1.0 - w);
    float facing = clamp(0.5 + 1.2 * pull.y - 0.8 * pull.x, 0.0, 1.0);
    glow = vec3(0.35 * rim * rim * rim * w * (0.35 + 0.65 * facing));
    return w;
}

// Blocks drop out in bursts, rows tear, colours part; everything moves in ticks of the progress.
float glitch() {
    float block = bounded(blockSizePx, 2.0, 0.5 * min(size.x, size.y));
    float tick = floor(24.0 * travel);
    float unrest = sin(kPi * p);
    vec2 at = vUV * size + 0.03;
    float row = floor(at.y / max(floor(block / 6.0), 1.0));
    float tear = hash(row, tick, 5.0) < 0.22 * unrest ? 0.22 * unrest * (hash(row, tick, 6.0) - 0.5) : 0.0;
    at.x += tear * size.x;

    // Some blocks fall into quarters.
    vec2 cell = floor(at / block);
    if (hash(cell.x, cell.y, 7.0) > 0.55) {
        block *= 0.5;
        cell = floor(at / block) + 40.0;
    }
    vec2 centre = (floor(at / block) + 0.5) * block / size.y;
    float key = mix(hash(cell.x, cell.y, 8.0), noise(centre * frequency + 8.0), 0.55);
    key = clamp(key + (hash(cell.x, cell.y, tick + 1000.0) - 0.5) * 0.3 * unrest, 0.0, 1.0);
    float wide = max(soft, 0.004);

    float hit = falling(0.0, 0.16, abs(share * (1.0 + wide) - key)) * unrest;
    moveA = moveB = vec2(tear * aspect.x + (hash(cell.x, cell.y, tick + 2000.0) - 0.5) * 0.2 * hit, 0.0);
    spread = vec2((0.004 + 0.03 * hit) * unrest, 0.0);
    float line = mod(floor(vUV.y * size.y / max(floor(size.y / 240.0), 1.0)), 2.0);
    shadeA = shadeB = mix(1.0, 0.56 + 0.94 * line, hit);
    glow = vec3(0.06 * line * hit);
    return reveal(key, share, wide);
}

// Both pictures swing in rows, as on water; the incoming one surfaces on the crests.
float wavy() {
    float swing = bounded(waveAmplitude, -1.0, 1.0) * sin(kPi * p);
    float first = 2.0 * kPi * (1.7 * y + 0.22 * sin(2.6 * x) + 1.1 * p);
    float second = 2.0 * kPi * (3.9 * y - 0.3 * sin(1.9 * x) - 1.6 * p) + 1.0;
    float wave = (sin(first) + 0.45 * sin(second)) / 1.45;
    float slope = (cos(first) + 0.45 * 2.3 * cos(second)) / 2.0;

    moveA = right * swing * wave;
    moveB = -0.6 * moveA;
    float light = slope * min(abs(swing) * 4.0, 0.5);
    shadeA = shadeB = 1.0 + 0.7 * light;
    glow = vec3(1.3 * max(light, 0.0) * light * light);
    float key = 0.5 + 0.42 * wave + 0.08 * sin(5.0 * x + 3.0 * y);
    return reveal(key, p, 0.3 + 0.7 * soft);
}

// The outgoing picture is drawn to a line, the incoming one drawn out of it, along a passing front.
float crosswarp() {
    float w = smoothstep(0.0, 1.0, 2.0 * p - x / width - 0.5);
    moveA = -pos * w;
    moveB = -pos * (1.0 - w);
    return w;
}

// Paper catches at the lower edge: a browned and charred border, an ember line, then a hole.
float burning() {
    vec2 q = pos * frequency + 30.0;
    float n = fractal(q - up * travel * 0.35, octaves);
    float key = smoothstep(0.1, 0.9, 0.6 * smoothstep(0.2, 0.8, n) + 0.4 * (y / height + 0.5));
    float line = 0.025 + 0.12 * soft;
    float ahead = 0.2 + line;
    float gap = key - mix(-ahead, 1.0 + 3.0 * line, share);

    // From the sound paper inwards: browned, charred, glowing, gone.
    float flicker = noise(q * 5.0 + vec2(0.0, 30.0 * p));
    float black = falling(0.02, 0.1, gap);
    tone = vec4(0.62, 0.34, 0.16, 0.85 * falling(0.04, ahead, gap));
    shadeA = 1.0 - 0.94 * black;
    liftA = kEmber * smoothstep(0.62, 0.9, flicker) * black * falling(0.03, 0.12, gap) * 0.9;
    float heat = exp2(-1.44 * abs(gap) / line);
    float live = falling(0.6 * ahead, ahead, gap) * smoothstep(-3.0 * line, -2.0 * line, gap);
    glow = live * (kEmber * heat * (0.7 + 0.6 * flicker) + kHot * heat * heat * heat * heat * 1.1);
    return falling(-max(0.3 * line, 2.0 * pixel), 0.0, gap);
}

// Blocks coarsen in steps to their full size, change over one by one, and become fine again.
float pixellated() {
    float largest = bounded(blockSizePx, 1.0, 0.5 * min(size.x, size.y));
    float level = floor(15.0 * (1.0 - abs(2.0 * p - 1.0)) + 0.01) / 14.0;
    float block = floor(exp2(log2(largest) * min(level, 1.0)) + 0.5);
    vec2 cell = floor((vUV - 0.5) * size / block + (block > 1.0 ? 0.503 : 0.0));
    if (block > 1.0) {
        moveA = moveB = cell * block * pixel - pos;
        spread = vec2(0.5 * block * pixel);
    }
    return reveal(hash(cell.x, cell.y, 9.0), clamp((p - 0.3) / 0.4, 0.0, 1.0), max(soft, 0.01));
}

// A clock hand from twelve, clockwise.
float radialWipe() {
    float key = fract(atan(x, length(pos) > 0.0 ? y : 1.0) / (2.0 * kPi) + 1.0);
    float around = 2.0 * kPi * max(length(pos), pixel);
    float wide = min(max(soft, pixel / around), 1.0);
    shadeA = 1.0 - shadow((key - p * (1.0 + wide)) * around, middle);
    // The line where the hand sets out has a neighbour on its other side.
    float seam = 0.5 * clamp(1.0 - min(key, 1.0 - key) * around / pixel, 0.0, 1.0);
    shadeA = mix(shadeA, 1.0, 2.0 * seam);
    return mix(reveal(key, p, wide), reveal(key < 0.5 ? 1.0 : 0.0, p, wide), seam);
}

// A halftone screen at 45 degrees whose dots swell from the centre outwards.
float dots() {
    float cells = bounded(dotFrequency, 2.0 * kPi, max(2.0 * size.y, 7.0)) / (2.0 * kPi);
    vec2 q = vec2(x + y, y - x) * 0.70710678 * cells;
    vec2 centre = floor(q + 0.5);
    float key = min(length(centre) / cells / length(0.5 * aspect), 1.0);
    float front = 4.0 / (4.0 + bounded(dotPower, 0.0, 200.0));
    float grown = clamp((p - key * (1.0 - front)) / front, 0.0, 1.0);

    float edge = pixel * cells + 0.5 * soft;
    float radius = mix(-edge, 0.7072 + edge, grown);
    return smoothstep(-edge, edge, radius - length(q - centre));
}

float incomingWeight() {
    switch (style) {
    case 1: return wipe(0.5 - y / height, height);
    case 2: return slidingBands();
    case 3: return curtains();
    case 4: return wipe(0.5 + x / width, width);
    case 5: return dissolve();
    case 6: return smoke();
    case 7: return organic();
    case 8: return glitch();
    case 9: return wavy();
    case 10: return crosswarp();
    case 11: return burning();
    case 12: return pixellated();
    case 13: return radialWipe();
    case 14: return dots();
    }
    return p;
}

// One tap; for the glitch a tap each for green, red and blue; for the mosaic the mean of four.
vec4 fetch(sampler2D picture, vec2 move) {
    vec4 sum = vec4(0.0);
    for (int i = 0; i < taps; ++i) {
        vec2 side = taps == 4 ? vec2(i & 1, i >> 1) - 0.5 : vec2((i & 1) - (i >> 1), 0.0);
        vec4 part = taps == 4 ? vec4(0.25) : taps == 1 ? vec4(1.0) : vec4(i == 1, i == 0, i == 2, i == 0);
        // Beyond its border a moved picture is mirrored, so that it has no torn edge.
        vec2 uv = vUV + (move + side * spread) / aspect;
        sum += part * texture(picture, abs(mod(uv + 1.0, 2.0) - 1.0));
    }
    return sum;
}

void main() {
    float w = incomingWeight();
    vec4 a = fetch(texA, moveA), b = fetch(texB, moveB);
    float grey = dot(a.rgb, vec3(0.3, 0.6, 0.1));
    a.rgb = mix(a.rgb, tone.rgb * (0.15 + grey), tone.a) * shadeA + liftA;
    b.rgb *= shadeB;
    vec4 c = mix(a, b, w);
    fragColor = vec4(clamp(mix(c.rgb, veil.rgb, veil.a) + glow, 0.0, 1.0), c.a);
}
