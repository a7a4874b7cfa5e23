#version 330 core
// Name of the thing shown, on a plate of ink at the lower right, after the sign of its group in ember.
in vec2 vUV;
out vec4 fragColor;

uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // one name a row from the top; 0.5 on the outline
uniform float uRow = 0.0;           // row of the name, from 0
uniform float uRows = 1.0;          // rows in the picture
uniform float uLabel = 3.0;         // width of the name, in row heights
uniform float uGroup = 0.0;         // 0 transition, 1 composite, 2 glitch, 3 text
uniform float uSpread = 7.0;        // texels from the outline to full value

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

// Cover of the group's sign at q, which runs over -0.5..0.5: two halves, two frames, torn bars, or lines of text.
float groupSign(vec2 q) {
    vec2 a = abs(q);
    float square = step(max(a.x, a.y), 0.28);
    if (uGroup < 0.5) return step(max(a.x, a.y), 0.28) * (q.x + q.y < 0.0 ? 1.0 : step(0.22, max(a.x, a.y)));
    if (uGroup < 1.5) {
        vec2 b = abs(q - vec2(0.09, -0.09));
        return max(square * step(0.22, max(a.x, a.y)), step(max(b.x, b.y), 0.11));
    }
    float bar = floor((q.y + 0.28) / 0.14);
    if (uGroup > 2.5) {
        float line = step(a.y, 0.27) * step(fract((q.y + 0.28) / 0.14), 0.6);
        return line * step(-0.28, q.x) * step(q.x, 0.28 - 0.16 * mod(bar + 1.0, 2.0));
    }
    return step(a.y, 0.27) * step(abs(q.x - 0.12 * (mod(bar, 2.0) - 0.5)), 0.24) * step(fract((q.y + 0.28) / 0.14), 0.7);
}

void main() {
    float aspect = iResolution.x / iResolution.y;
    vec2 size = vec2(uLabel + 1.45, 1.0);                   // of the plate, in row heights
    // In frame heights: never too small to read, never wider than the frame.
    float rowHeight = min(max(0.06, 20.0 / iResolution.y), (aspect - 0.09) / size.x);
    vec2 low = vec2(aspect - 0.045 - size.x * rowHeight, 0.045);
    vec2 q = (vec2(vUV.x * aspect, vUV.y) - low) / rowHeight; // rows from the plate's lower left

    float plate = step(0.0, min(q.x, q.y)) * step(q.x, size.x) * step(q.y, size.y);
    float rowTexels = iChannelResolution[0].y / uRows;
    float width = iChannelResolution[0].x / rowTexels;      // row width in row heights
    vec2 at = vec2(q.x - 1.0, clamp(q.y, 0.0, 1.0));
    float inside = plate * step(0.0, at.x) * step(at.x, min(width, uLabel + 0.3));
    float d = (texture(iChannel0, vec2(at.x / width, 1.0 - (uRow + 1.0 - at.y) / uRows)).r - 0.5) * 2.0 * uSpread / rowTexels;
    float name = inside * clamp(0.5 + d * rowHeight * iResolution.y, 0.0, 1.0);
    float mark = plate * groupSign(q - vec2(0.55, 0.5) + 0.001);

    float sign_ = max(name, mark);
    float alpha = sign_ + 0.86 * plate * (1.0 - sign_);
    fragColor = vec4(mix(kInk, mark > name ? kEmber : kBone, sign_ / max(alpha, 0.001)), alpha * uAlpha);
}
