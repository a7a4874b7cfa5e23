#version 330 core
// The word mark struck into place: the dagger falls, the letters spread from it, light runs over them.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // red = letters, green = dagger; 0.5 on the outline
uniform float uSpread = 14.0;       // texels from the outline to full value in the picture
uniform float uStrike = 0.5;        // s at which the dagger lands
uniform vec2 uAnchor = vec2(-0.104, 0.0); // dagger in the picture, from its centre, in its widths

const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

// Distances in picture widths, negative inside: x letters, y dagger shifted by (0, drop).
vec2 field(vec2 q, float drop, float ratio) {
    vec2 letters = vec2(q.x + 0.5, q.y * ratio + 0.5);
    vec2 blade = vec2(q.x + 0.5, (q.y - drop) * ratio + 0.5);
    float unit = 2.0 * uSpread / iChannelResolution[0].x;
    return (0.5 - vec2(texture(iChannel0, letters).r, texture(iChannel0, blade).g)) * unit;
}

void main() {
    float aspect = iResolution.x / iResolution.y;
    float ratio = iChannelResolution[0].x / iChannelResolution[0].y;
    float size = min(0.74 * aspect, 1.5);                   // picture width in frame heights
    vec2 q = (vUV - 0.5) * vec2(aspect, 1.0) / size;
    float pixel = 1.0 / (iResolution.y * size);

    float fall = clamp(iTime / uStrike, 0.0, 1.0);
    float since = iTime - uStrike;                          // s after the strike
    float drop = 0.55 * (1.0 - fall * fall * fall);
    float shake = since > 0.0 ? 0.006 * exp(-9.0 * since) * sin(70.0 * since) : 0.0;
    q.y += shake;

    vec2 d = field(q, drop, ratio);
    vec2 cover = clamp(0.5 - d / pixel, 0.0, 1.0);

    // The letters are uncovered from the dagger outwards, glowing while they are fresh.
    float away = abs(q.x - uAnchor.x);
    float front = since > 0.0 ? 0.85 * (1.0 - exp(-2.6 * since)) : -1.0;
    float fresh = exp(-9.0 * max(front - away, 0.0)) * exp(-0.9 * max(since, 0.0));
    cover.x *= smoothstep(0.0, 0.02, front - away);
    vec3 letters = mix(kBone, mix(kEmber, vec3(1.0, 0.86, 0.66), 0.4), fresh);

    // A cold glint once a bar, slanted like a blade edge.
    float sweep = fract(iTime * 0.5) * 2.4 - 0.9;
    float glint = smoothstep(0.045, 0.0, abs(q.x + 0.45 * q.y - sweep)) * step(0.0, since - 1.4);
    letters = mix(letters, vec3(1.0), 0.85 * glint) + kSteel * 0.25 * glint;
    vec3 blade = mix(kEmber, kBone, 0.75 * exp(-2.2 * max(since, 0.0)) * step(0.0, since) + 0.6 * glint);

    // Halo of the dagger, and the ring that the blow sends out.
    vec2 h = q - vec2(uAnchor.x, uAnchor.y + drop);
    float beat = exp(-4.0 * fract(iTime * 2.0));
    float heat = exp(-abs(h.x) * 26.0 - max(abs(h.y) - 0.1, 0.0) * 22.0) * (0.3 + 0.25 * beat);
    float wave = max(since, 0.0);
    float ringRadius = 0.72 * (1.0 - exp(-2.2 * wave));
    float shock = step(0.0, since) * exp(-3.0 * wave)
                * exp(-pow((length(h) - ringRadius) * 28.0 / (0.4 + wave), 2.0));
    float flash = step(0.0, since) * exp(-8.0 * wave) * exp(-5.0 * length(h));

    float glow = clamp(heat + 0.8 * shock + 0.9 * flash, 0.0, 1.0);
    float solid = max(cover.x, cover.y);
    vec3 colour = mix(letters, blade, cover.y);
    float alpha = solid + glow * (1.0 - solid);
    vec3 mixed = mix(mix(kEmber, kBone, 0.5 * flash + 0.3 * shock), colour, solid / max(alpha, 0.001));
    fragColor = vec4(mixed, alpha * uAlpha);
}
