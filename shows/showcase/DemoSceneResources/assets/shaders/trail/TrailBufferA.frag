#version 330 core
// Heat (red) and smoke (green) left by three flying sparks and by the mark struck once a bar.
in vec2 vUV;
flat in vec4 vStroke[6];     // strokes of this frame: from xy to zw, in frame heights from the centre
out vec4 fragColor;

uniform float iTime;         // s
uniform int iFrame;          // counts from 1
uniform vec3 iResolution;    // px
uniform sampler2D iChannel0; // the mark, drawn by its alpha
uniform sampler2D uBufferA;  // this buffer one frame ago
uniform float uSwirl = 1.0;  // strength of the flow, relative
uniform float uMark = 1.2;   // height of the struck picture in frame heights

// Chance for three whole numbers, 0 to 1 and never 1. It is reckoned in integers: floats are rounded by every
// compiler in its own way, and the same lot must fall on every machine.
float hash(float x, float y, float z) {
    uvec3 q = uvec3(ivec3(floor(vec3(x, y, z)))) * uvec3(0x8da6b343u, 0xd8163841u, 0xcb1ab31fu);
    uint n = q.x ^ q.y ^ q.z;
    n = (n ^ (n >> 15)) * 0x2c1b3c6du;
    n = (n ^ (n >> 13)) * 0x297a2d39u;
    return float((n ^ (n >> 15)) >> 8) / 16777216.0;
}

const int kSparks = 6;

// Everything drifts outwards and curls, in frame heights a second.
vec2 flow(vec2 p, float t) {
    float bend = 0.35 * sin(t * 0.7);
    vec2 v = 0.22 * p + vec2(-p.y, p.x) * (0.3 + bend) * exp(-1.5 * dot(p, p));
    v += 0.09 * vec2(sin(p.y * 8.0 + t * 0.8) + 0.5 * sin(p.y * 17.0 - t),
                     cos(p.x * 7.0 - t * 0.7) + 0.5 * cos(p.x * 15.0 + t));
    return v * uSwirl;
}

void main() {
    float aspect = iResolution.x / iResolution.y;
    vec2 p = (vUV - 0.5) * vec2(aspect, 1.0);
    // The mean frame length so far stands in for the last one, so trails age alike at any rate.
    float dt = clamp(iTime / float(max(iFrame, 1)), 0.004, 0.05);

    vec2 from = p - flow(p, iTime) * dt;                    // what arrives here comes from there
    vec2 old = texture(uBufferA, from / vec2(aspect, 1.0) + 0.5).rg;

    // Eight bits hold the buffer: without the dither, slow decay would stop short of black.
    float dither = (hash(gl_FragCoord.x, gl_FragCoord.y, float(iFrame % 64)) - 0.5) / 255.0;
    vec2 aged = old * exp(-dt * vec2(1.35, 0.4)) - dt * vec2(0.05, 0.03);
    aged += dither * step(0.002, max(old.r, old.g));

    float hot = 0.0;
    for (int i = 0; i < kSparks; ++i) {
        vec2 a = vStroke[i].xy, ab = vStroke[i].zw - a;
        float along = clamp(dot(p - a, ab) / max(dot(ab, ab), 1e-6), 0.0, 1.0);
        float d = length(p - a - ab * along);
        float width = i < 3 ? 0.0085 : 0.005;
        hot = max(hot, smoothstep(width, width * 0.3, d));
    }

    float barAge = mod(iTime, 2.0);
    vec2 uv = p / uMark + 0.5;
    float inside = step(0.0, min(min(uv.x, uv.y), min(1.0 - uv.x, 1.0 - uv.y)));
    float mark = texture(iChannel0, clamp(uv, 0.0, 1.0)).a * inside * exp(-5.0 * barAge);

    float heat = max(aged.r, max(hot, mark));
    float smoke = max(aged.g, max(0.85 * hot, 0.9 * mark));
    fragColor = vec4(clamp(heat, 0.0, 1.0), clamp(smoke, 0.0, 1.0), 0.0, 1.0);
}
