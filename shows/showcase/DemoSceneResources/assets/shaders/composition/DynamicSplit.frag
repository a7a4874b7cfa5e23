#version 330 core
// Two pictures side by side, divided by an edge that swings to and fro; a faint line of light rides on a
// soft edge. Away from the edge, by uFeather and more, both pictures are untouched.
in vec2 vUV;
out vec4 fragColor;

uniform sampler2D uTexA;             // left, or above
uniform sampler2D uTexB;             // right, or below
uniform float uAlpha = 1.0;          // 0..1
uniform float uTime;                 // s
uniform float uPosition = 0.5;       // share of the frame that A takes at rest, 0..1
uniform float uAmplitude = 0.2;      // swing to either side, share of the frame (in waves a quarter), 0..1
uniform float uSpeed = 1.0;          // radians of the swing a second
uniform float uAngle = 0.785398;     // mode 2: way from A to B, radians counter-clockwise from the right
uniform float uWaveFrequency = 5.0;  // mode 3: waves along a frame height
uniform float uFeather = 0.03;       // half the width of the edge, as a share of the frame, 0.0001..0.5
uniform int uMode = 0;               // 0 upright edge, 1 level edge, 2 at an angle, 3 upright and waving
uniform int uInvert = 0;             // 1 swaps the pictures' sides

const float kPi = 3.14159265;
const vec3 kLight = vec3(1.0, 0.93, 0.84);

void main() {
    vec2 size = vec2(textureSize(uTexA, 0));
    vec2 aspect = vec2(size.x / max(size.y, 1.0), 1.0);
    vec2 pos = (vUV - 0.5) * aspect;

    // Place of this pixel on the way from A (0) to B (1).
    vec2 way = uMode == 1 ? vec2(0.0, -1.0) : uMode == 2 ? vec2(cos(uAngle), sin(uAngle)) : vec2(1.0, 0.0);
    float span = dot(abs(way), aspect);
    float place = dot(pos, way) / span + 0.5;

    // Waves run along the edge instead of carrying it to and fro; their slope widens it for the feather.
    float phase = uTime * uSpeed, steep = 1.0;
    if (uMode == 3) {
        phase += 2.0 * kPi * uWaveFrequency * pos.y;
        steep = length(vec2(1.0, 0.25 * uAmplitude * 2.0 * kPi * uWaveFrequency * cos(phase) * span));
    }
    float swing = uAmplitude * (uMode == 3 ? 0.25 : 1.0) * sin(phase);
    float away = (place - uPosition - swing) / steep;

    float feather = max(uFeather, 0.5 * length(vec2(dFdx(place), dFdy(place)))); // at least a pixel in all
    float w = smoothstep(-feather, feather, away);
    if (uInvert != 0) w = 1.0 - w;

    vec4 a = texture(uTexA, vUV), b = texture(uTexB, vUV);
    float alpha = mix(a.a, b.a, w);
    // What is clear has no say in the colour.
    vec3 colour = alpha > 0.0 ? mix(a.rgb * a.a, b.rgb * b.a, w) / alpha : mix(a.rgb, b.rgb, w);
    float line = max(1.0 - abs(away) / feather, 0.0);
    colour += 0.3 * line * line * line * smoothstep(0.003, 0.03, uFeather) * kLight;
    fragColor = vec4(min(colour, 1.0), alpha * uAlpha);
}
