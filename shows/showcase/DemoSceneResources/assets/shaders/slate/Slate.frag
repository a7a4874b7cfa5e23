#version 330 core
// Scene label at the lower left and a count of bars at the lower right, on small plates of ink.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // one label a row from the top; 0.5 on the outline
uniform float uRow = 0.0;           // label row, from 0
uniform float uLabel = 3.0;         // width of the label without its number, in row heights
uniform float uRows = 8.0;          // rows in the picture
uniform float uSpread = 9.0;        // texels from the outline to full value
uniform float uBars = 3.0;          // length of the scene in bars of 2 s

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

void main() {
    float aspect = iResolution.x / iResolution.y;
    vec2 p = vec2(vUV.x * aspect, vUV.y);                   // frame heights from the lower left
    float rowHeight = max(0.042, 22.0 / iResolution.y);     // never too small to read
    float margin = 0.055;
    float shown = smoothstep(0.05, 0.6, iTime);

    // Label: uncovered from the left, its number in ember.
    float rowTexels = iChannelResolution[0].y / uRows;
    float width = iChannelResolution[0].x / rowTexels;      // row width in row heights
    vec2 q = (p - vec2(margin - 0.25 * rowHeight, margin - 0.35 * rowHeight)) / rowHeight;
    vec2 uv = vec2(q.x / width, 1.0 - (uRow + 1.0 - clamp(q.y, 0.0, 1.0)) / uRows);
    float inside = step(0.0, q.x) * step(q.x, width * shown) * step(0.0, q.y) * step(q.y, 1.0);
    float d = (texture(iChannel0, uv).r - 0.5) * 2.0 * uSpread / rowTexels; // row heights, positive inside
    float label = inside * clamp(0.5 + d * rowHeight * iResolution.y, 0.0, 1.0);
    vec3 colour = q.x < 1.55 ? kEmber : kBone;

    // Bars: one dash each, filled as it passes.
    float pitch = 0.05, right = aspect - margin;
    float x = (p.x - (right - uBars * pitch)) / pitch;
    float bar = floor(x), f = fract(x);
    float line = max(0.0035, 1.5 / iResolution.y);
    float dash = step(0.0, x) * step(x, uBars) * step(0.14, f)
              * step(abs(p.y - margin - 0.15 * rowHeight), line * 0.5);
    float done = clamp(iTime * 0.5 - bar, 0.0, 1.0);
    float filled = step((f - 0.14) / 0.86, done) * step(0.0001, done);
    dash *= mix(0.28, 1.0, filled) * shown;
    colour = dash > label ? mix(kBone, kEmber, filled * step(done, 0.999)) : colour;

    // Plates keep the signs legible over bright scenes; they open with the label.
    vec2 size = vec2((2.4 + uLabel) * shown, 1.0) * rowHeight;
    vec2 low = vec2(margin - 0.45 * rowHeight, margin - 0.35 * rowHeight);
    vec2 in_ = step(low, p) * step(p, low + size);
    vec2 low2 = vec2(right - uBars * pitch * shown - 0.005, low.y);
    vec2 in2 = step(low2, p) * step(p, vec2(right + 0.014, low.y + rowHeight));
    float plate = 0.85 * max(in_.x * in_.y, in2.x * in2.y) * shown;
    float sign_ = max(label, dash);
    float alpha = sign_ + plate * (1.0 - sign_);
    fragColor = vec4(mix(kInk, colour, sign_ / max(alpha, 0.001)), alpha * uAlpha);
}
