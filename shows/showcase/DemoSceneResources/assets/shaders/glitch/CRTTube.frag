#version 330 core
// Picture tube: curved glass, beam lines, a slotted mask of three phosphors and a rolling hum bar.
//   uCurve  curvature of the glass, 0..1
//   uMask   depth of the phosphor mask, 0..1
//   uGlow   light that spreads in the glass, 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uCurve = 0.5;
uniform float uMask = 0.55;
uniform float uGlow = 0.5;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

// Crosshatch with a block of colours: the service engineer's picture.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0) * 9.0;
    vec2 f = abs(fract(p + 0.5) - 0.5);
    vec3 colour = mix(vec3(0.02), kBone, step(min(f.x, f.y), 0.035));
    colour = mix(colour, kSteel, step(length(fract(p) - 0.5), 0.09));
    vec2 q = uv - vec2(0.5, 0.5);
    float bar = (q.x + 0.25) * 2.0;
    vec3 bars = bar < 0.25 ? kBone : bar < 0.5 ? kEmber : bar < 0.75 ? kSteel : vec3(0.85, 0.62, 0.2);
    bars *= q.y < -0.09 ? floor(bar * 8.0 + 1.0) / 8.0 : 1.0;
    return abs(q.x) < 0.25 && abs(q.y) < 0.17 ? bars : colour;
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
    float curve = clamp(uCurve, 0.0, 1.0), glow = clamp(uGlow, 0.0, 1.0);
    vec2 q = (vUV - 0.5) * 2.0;
    vec2 bent = q * (1.0 + curve * vec2(0.09, 0.13) * q.yx * q.yx) * (1.03 + 0.012 * curve);
    vec2 uv = bent * 0.5 + 0.5;

    // The face of the tube is a rounded rectangle; beyond it the frame mirrors a little of the light.
    vec2 box = abs(bent) * vec2(aspect, 1.0) - vec2(aspect, 1.0) + 0.09;
    float outside = length(max(box, 0.0)) + min(max(box.x, box.y), 0.0) - 0.09;
    float face = smoothstep(0.004, -0.004, outside);

    // The beam lands a hair off for every colour, and the lines shiver.
    uv.x += 0.0006 * sin(uv.y * 40.0 + time * 9.0) + 0.0015 * exp(-30.0 * abs(fract(uv.y - time * 0.21) - 0.5));
    vec2 miss = q * 0.0016;
    vec3 colour = vec3(source(mirror(uv + miss)).r, source(mirror(uv)).g, source(mirror(uv - miss)).b);
    vec3 halo = vec3(0.0);
    for (int i = 0; i < 4; ++i) {
        vec2 d = vec2(float(i & 1) - 0.5, float(i >> 1) - 0.5) * vec2(0.032 / aspect, 0.032);
        halo += source(mirror(uv + d)) * 0.25;
    }
    colour = pow(max(colour, 0.0), vec3(1.12)) * 1.08;

    // Beam lines: wider where the picture is bright. Their pitch is whole pixels, as is the mask's.
    float pitch = max(3.0, floor(iResolution.y / 240.0 + 0.501));
    float line = abs(fract(uv.y * iResolution.y / pitch - 0.25 * step(0.5, fract(time * 15.0))) - 0.5) * 2.0;
    float light = dot(colour, vec3(0.3, 0.59, 0.11));
    colour *= mix(1.0, 1.0 - smoothstep(0.25 + 0.5 * light, 1.25, line), 0.8) * 1.22;
    float triad = max(1.0, floor(iResolution.y / 1080.0 + 0.501));
    ivec2 px = ivec2(gl_FragCoord.xy / triad);
    float gap = (px.y + 2 * (px.x / 3 % 2)) % 4 == 3 ? 1.0 : 0.0;
    vec3 phosphor = vec3(equal(ivec3(px.x % 3), ivec3(0, 1, 2)));
    float deep = clamp(uMask, 0.0, 1.0);
    vec3 mask = mix(vec3(1.0), 0.45 + 1.45 * phosphor, deep) * (1.0 - 0.3 * gap * deep);
    colour = colour * mask + halo * glow * 0.26;

    // Hum climbs slowly; the whole tube flickers a trifle.
    colour *= 1.0 + 0.16 * sin(6.2832 * (uv.y * 0.8 - time * 0.35)) + 0.025 * sin(time * 53.0);
    colour *= 1.0 - 0.3 * dot(q, q) * 0.5;
    // A window reflected in the upper left of the glass.
    vec2 r = (bent - vec2(-0.62, 0.58)) * vec2(aspect / 1.7778, 1.0);
    r.x += 0.2 * r.y;
    vec2 lit = smoothstep(vec2(0.2, 0.24), vec2(0.12, 0.14), abs(r));
    float pane = lit.x * lit.y * smoothstep(0.0, 0.02, abs(r.x));
    colour += kSteel * 0.05 * pane;

    vec3 spill = 0.22 * glow * source(mirror(uv)) * exp(-max(outside, 0.0) * 26.0);
    vec3 frame = kInk * (1.0 - 0.35 * q.y) + spill;
    frame += kSteel * 0.09 * smoothstep(0.012, 0.0, abs(outside - 0.008)) * (0.6 - 0.4 * q.y);
    fragColor = vec4(clamp(mix(frame, colour, face), 0.0, 1.0), uAlpha);
}
