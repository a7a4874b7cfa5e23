#version 330 core
// Full-screen quad; also works out the stroke that each spark draws in this frame.
layout(location = 0) in vec2 aPos;
layout(location = 1) in vec2 aUV;
out vec2 vUV;
flat out vec4 vStroke[6];    // from xy to zw, in frame heights from the centre

uniform float iTime;         // s
uniform int iFrame;          // counts from 1
uniform vec3 iResolution;    // px
uniform float uSwirl = 1.0;  // strength of the flow, relative

const int kSparks = 6;

// Six sparks on two crossing loops, three a loop.
vec2 spark(float t, int i, float aspect) {
    float n = float(i), twin = float(i / 3);
    float way = twin > 0.5 ? -1.0 : 1.0;
    float a = way * t * 1.5708 + n * 2.0944 + twin;
    float reach = mix(0.34, 0.22, twin) + 0.1 * sin(t * 0.9 + n * 2.4);
    vec2 loop = vec2(cos(a) * min(aspect, 2.0) * 0.95, sin(a * (1.5 - 0.5 * twin) + n));
    return reach * loop + 0.03 * vec2(sin(t * 5.1 + n), cos(t * 4.3 + n));
}

// Everything drifts outwards and curls, in frame heights a second.
vec2 flow(vec2 p, float t) {
    float bend = 0.35 * sin(t * 0.7);
    vec2 v = 0.22 * p + vec2(-p.y, p.x) * (0.3 + bend) * exp(-1.5 * dot(p, p));
    v += 0.09 * vec2(sin(p.y * 8.0 + t * 0.8) + 0.5 * sin(p.y * 17.0 - t),
                     cos(p.x * 7.0 - t * 0.7) + 0.5 * cos(p.x * 15.0 + t));
    return v * uSwirl;
}

void main() {
    vUV = aUV;
    gl_Position = vec4(aPos, 0.0, 1.0);
    float aspect = iResolution.x / iResolution.y;
    float dt = clamp(iTime / float(max(iFrame, 1)), 0.004, 0.05);
    for (int i = 0; i < kSparks; ++i) {
        // From where the flow has carried the last stroke's tip to the spark's new place.
        // It starts a little earlier than that, so that an uneven frame leaves no gap.
        float back = 1.6 * dt;
        vec2 tip = spark(iTime - back, i, aspect);
        vStroke[i] = vec4(tip + flow(tip, iTime) * back, spark(iTime, i, aspect));
    }
}
