#version 330 core
// A picture card: fitted into the frame, uncovered from top to bottom over a dimmed scene, faded out.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the card
uniform float uIn = 1.2;            // s the uncovering takes
uniform float uOut = 6.0;           // s at which the fade begins
uniform float uFade = 0.8;          // s the fade takes
uniform float uDim = 0.72;          // how much of the scene behind is covered by ink, 0..1

const vec3 kInk = vec3(0.027, 0.035, 0.067);

void main() {
    float frame = iResolution.x / iResolution.y;
    float card = iChannelResolution[0].x / iChannelResolution[0].y;
    vec2 p = (vUV - 0.5) * (frame > card ? vec2(frame / card, 1.0) : vec2(1.0, card / frame));
    vec2 uv = p + 0.5;
    float inside = step(max(abs(p.x), abs(p.y)), 0.5);

    float leave = 1.0 - smoothstep(0.0, uFade, iTime - uOut);
    float front = iTime / uIn * 1.3 - 0.1;                  // 0 = top edge, 1 = bottom edge
    float open = smoothstep(front, front - 0.12, 1.0 - uv.y);
    vec4 picture = texture(iChannel0, clamp(uv, 0.0, 1.0));
    float sign_ = picture.a * inside * open * leave;
    float dim = uDim * leave * smoothstep(0.0, uIn, iTime) * (1.0 - 0.8 * smoothstep(0.4, 0.75, length(p)));
    float alpha = sign_ + dim * (1.0 - sign_);
    fragColor = vec4(mix(kInk, picture.rgb, sign_ / max(alpha, 0.001)), alpha * uAlpha);
}
