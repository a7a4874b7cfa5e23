#version 330 core
// The finish over every scene: a vignette in ink and moving film grain.
in vec2 vUV;
out vec4 fragColor;

uniform int iFrame;            // counts from 1
uniform vec3 iResolution;      // px
uniform float uAlpha;          // 0..1
uniform float uVignette = 0.6; // darkness of the corners, 0..1
uniform float uGrain = 0.07;   // strength of the grain, 0..1

const vec3 kInk = vec3(0.016, 0.02, 0.04);

float hash(vec3 p) {
    p = fract(p * vec3(0.1031, 0.1030, 0.0973));
    p += dot(p, p.yxz + 33.33);
    return fract((p.x + p.y) * p.z);
}

void main() {
    vec2 corner = (vUV - 0.5) * 2.0;
    float far_ = dot(corner, corner) * 0.5;
    float shade = uVignette * smoothstep(0.12, 1.05, far_);
    // Grain keeps its size relative to a 720-line picture.
    vec2 cell = floor(gl_FragCoord.xy / max(1.0, iResolution.y / 720.0));
    float grain = (hash(vec3(cell, float(iFrame % 61))) - 0.5) * uGrain;
    float strength = abs(grain);
    float alpha = shade + strength - shade * strength;
    vec3 speck = grain > 0.0 ? vec3(0.9, 0.88, 0.85) : kInk;
    fragColor = vec4(mix(kInk, speck, strength / max(alpha, 0.001)), alpha * uAlpha);
}
