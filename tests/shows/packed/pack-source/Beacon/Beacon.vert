// The full-screen quad. The fragment stage needs this file's own output: the player's built-in vertex stage
// would not link with it.
#version 330 core
layout(location = 0) in vec2 aPos;
layout(location = 1) in vec2 aUV;
out vec2 beaconUV; // 0..1, from the lower left

void main() {
    beaconUV = aUV;
    gl_Position = vec4(aPos, 0.0, 1.0);
}
