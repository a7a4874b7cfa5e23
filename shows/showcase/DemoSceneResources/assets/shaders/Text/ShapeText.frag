#version 330 core
// A logo out of a hard mask: soft edges at any size, a bevel that catches light, scan lines, a glow around it,
// a wave through it, and a hot front that draws it in.
in vec2 vLogo;              // 0..1 over the logo, y up
flat in vec3 vMoment;       // where the sheen is, how bright the glow, how hot the front
out vec4 fragColor;

uniform sampler2D uMask;    // alpha 0 or 1; first row: the logo's top
uniform vec2 uTexelSize;    // 1 / size of the mask
uniform sampler2D uGlowMask;// square roots of the blurred mask: red far, green near, blue close
uniform vec4 uGlowMap;      // where the mask lies in it: scale, offset
uniform vec3 uResolution;   // px
uniform vec4 uRect;         // left, bottom, width, height; shares of the output
uniform float uTime;        // s
uniform float uAlpha;       // 0..1
uniform vec4 uFillColor;
uniform vec4 uGlowColor;
uniform float uGlow;        // 1: full, 0: none
uniform float uEdge;        // the same
uniform float uReveal;      // 0 nothing .. 1.08 all of it
uniform float uWaveAmount;  // share of the logo's height
uniform float uWaveSpeed;   // radians a second
uniform float uScanSpeed;   // lines a second; 0: they stand still
uniform float uScanDepth = 0.14;    // how much darker the lines are; 0: none
uniform float uSheen = 0.55;        // of the light that passes over the logo

const float kFront = 0.08;  // width of the soft front
const float kLines = 240.0; // scan lines an output height, at most one in three pixels

float square(float x) {
    return x * x;
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

vec3 glowAt(vec2 at) {
    vec3 root = texture(uGlowMask, at * uGlowMap.xy + uGlowMap.zw).rgb;
    return root * root;
}

// Share of the pixel that the logo covers. `dx`, `dy`: the pixel's sides on the mask, in texels. A Gaussian
// over the pixel, but never less than the mask's own steps need to vanish; what that is wider than the pixel
// is taken back by steepening around one half, so that edges stay a pixel wide when texels are large.
float coverage(vec2 at, vec2 dx, vec2 dy, bool isNear) {
    const float kLeast = 1.3;       // texels
    float side = max(max(length(dx), length(dy)), 1e-4);
    float reach = max(0.55, kLeast / side);
    float sum = 0.0, weights = 1e-4;
    for (int j = 0, rows = isNear ? 4 : 0; j < rows; ++j) {
        for (int i = 0; i < 4; ++i) {
            vec2 k = (vec2(i, j) - 1.5) * 0.9;
            float weight = exp(-0.5 * dot(k, k));
            sum += weight * texture(uMask, at + (k.x * dx + k.y * dy) * reach * uTexelSize).a;
            weights += weight;
        }
    }
    vec2 inside = step(abs(at - 0.5), vec2(0.5));
    float gain = max(2.5 * kLeast / side, 1.25);
    return clamp(0.5 + (sum / weights - 0.5) * gain, 0.0, 1.0) * inside.x * inside.y;
}

// Loops of a single round stand where an "if" would: software drivers compute what a branch leaves out.
void main() {
    // Down the mask, as its rows go.
    vec2 at = vec2(vLogo.x, 1.0 - vLogo.y);
    float aspect = uRect.z * uResolution.x / max(uRect.w * uResolution.y, 1.0);
    vec2 dx = dFdx(at), dy = dFdy(at);
    float x = vLogo.x * aspect, t = uTime * uWaveSpeed;
    for (int i = 0, waves = uWaveAmount > 0.0 ? 1 : 0; i < waves; ++i) {
        at.y += uWaveAmount * sin(3.2 * x - t) * (0.75 + 0.25 * sin(1.3 * x + 1.7 + 0.37 * t));
    }

    vec3 light = glowAt(at);
    if (light.r < 1e-6 && uGlowMap.z > 0.0) discard;

    // The front leans a little, and so do its streaks.
    float along = clamp(at.x + 0.05 * (0.5 - clamp(at.y, 0.0, 1.0)) * (1.0 - at.x), 0.0, 1.0);
    float ahead = uReveal - along;
    float shown = smoothstep(0.0, kFront, ahead);
    float hot = exp(-square((ahead - 0.5 * kFront) / (0.5 * kFront))) * vMoment.z;

    bool isNear = light.b > 0.0 || uGlowMap.z <= 0.0;
    float cover = coverage(at, dx / uTexelSize, dy / uTexelSize, isNear);

    // The close blur falls toward the outline: its slope is the bevel's normal.
    vec2 reach = 1.5 * uTexelSize * max(1.0, 1.0 / (512.0 * max(uTexelSize.x, uTexelSize.y)));
    vec2 slope = vec2(0.0);
    for (int axis = 0, axes = isNear ? 2 : 0; axis < axes; ++axis) {
        vec2 unit = axis == 0 ? vec2(1.0, 0.0) : vec2(0.0, 1.0);
        slope += unit * (glowAt(at - unit * reach).b - glowAt(at + unit * reach).b);
    }
    vec2 normal = slope / max(length(slope), 1e-4);
    float rim = smoothstep(0.95, 0.5, light.b);
    float lit = 0.5 + 0.5 * dot(normal, normalize(vec2(-0.55, -0.8)));

    vec3 fill = uFillColor.rgb * mix(1.0, 0.78, smoothstep(0.12, 0.95, at.y));
    float sheen = exp(-square((at.x + (0.5 - at.y) * 0.35 / max(aspect, 0.1) - vMoment.x) / 0.055));
    fill += uSheen * sheen * mix(uGlowColor.rgb, vec3(1.0), 0.55);
    float pixels = (1.0 - at.y) * uRect.w;
    fill *= 1.0 - uScanDepth * (0.5 + 0.5 * cos(6.2831853 * (pixels * min(kLines, uResolution.y / 3.0) - uTime * uScanSpeed)));
    vec3 edge = mix(uGlowColor.rgb, vec3(1.0), 0.35);
    fill = mix(fill, fill * 0.42 + uGlowColor.rgb * 0.10, min(0.8 * uEdge, 1.0) * rim * (1.0 - lit) * 0.9);
    fill += edge * uEdge * rim * square(lit) * 0.75;
    fill = mix(fill, vec3(1.0), 0.85 * hot);

    // Light at the front is that of the front itself, and a beam across the logo.
    float halo = (1.15 * light.r + 0.6 * light.g) * vMoment.y * shown + 2.2 * hot * (light.g + 0.5 * light.b);
    halo += 0.7 * square(square(square(hot))) * exp(-square((at.y - 0.5) / 0.3)) * smoothstep(0.0, 0.03, light.r);
    halo = 1.0 - exp(-1.15 * uGlow * uGlowColor.a * halo);
    halo = clamp(halo + (hash(gl_FragCoord.x, gl_FragCoord.y, 1.0) - 0.5) / 255.0, 0.0, 1.0);
    vec3 haloColor = mix(uGlowColor.rgb, vec3(1.0), 0.35 * halo * halo + 0.3 * hot);

    float body = cover * shown * clamp(uFillColor.a, 0.0, 1.0);
    float alpha = body + halo * (1.0 - body);
    vec3 colour = (fill * body + haloColor * halo * (1.0 - body)) / max(alpha, 1e-4);
    fragColor = vec4(colour, alpha * uAlpha);
}
