#version 330 core
// Sine wave: the picture rides on travelling waves like cloth, under the trace of an oscilloscope.
//   uAmplitude  height of the waves in frame heights, 0..0.3
//   uWaves      waves a frame height, 0.5..12
//   uTrace      brightness of the trace, 0..1
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // the picture to spoil
uniform float uAmplitude = 0.05;
uniform float uWaves = 2.5;
uniform float uTrace = 0.7;

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

// A grid of lines with a block in every second field.
vec3 card(vec2 uv) {
    vec2 p = (uv - 0.5) * vec2(iResolution.x / iResolution.y, 1.0) * 8.0;
    vec2 f = abs(fract(p) - 0.5), cell = floor(p);
    float line = smoothstep(0.44, 0.47, max(f.x, f.y));
    float odd = mod(cell.x + cell.y, 2.0);
    vec3 colour = mix(kInk * 1.6, mix(kSteel, kEmber, step(abs(cell.y + 0.5), 1.0)) * 0.8, odd);
    return mix(colour, kBone, line);
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
    float aspect = iResolution.x / iResolution.y, time = mod(iTime, 628.3185);
    float high = clamp(uAmplitude, 0.0, 0.3), k = 6.2832 * clamp(uWaves, 0.5, 12.0);
    vec2 p = vec2(vUV.x * aspect, vUV.y);
    float swell = 0.75 + 0.25 * sin(time * 0.9);
    float a = p.y * k + time * 2.6, b = p.y * k * 2.37 - time * 3.7, c = p.x * k * 0.61 + time * 1.9;
    vec2 shift = high * swell * vec2(sin(a) + 0.45 * sin(b), 0.6 * sin(c + 0.8 * sin(a)));
    vec3 colour = source(mirror((p + shift) / vec2(aspect, 1.0)));

    // Light falls along the slopes, so that the waves read as folds.
    float slope = cos(a) + 0.5 * cos(b) + 0.7 * cos(c + 0.8 * sin(a));
    float lit = min(1.0, high * 16.0) * 0.26 * slope;
    colour = colour * (1.0 + lit) + kBone * 0.07 * max(lit, 0.0);

    // The trace: a carrier in a swelling envelope across the middle.
    float x = p.x - 0.5 * aspect;
    float envelope = (0.05 + high * 1.6) * (0.4 + 0.6 * sin(x * 2.1 - time * 1.3) * sin(x * 0.7 + time * 0.5));
    float phase = x * k * 1.7 - time * 6.0;
    float off = p.y - 0.5 - envelope * sin(phase);
    float steep = envelope * k * 1.7 * cos(phase);
    float away = abs(off) * inversesqrt(1.0 + steep * steep);
    float thin = max(0.0022, 1.0 / iResolution.y);
    float trace = clamp(uTrace, 0.0, 1.0);
    colour += trace * (kEmber * 0.55 * exp(-away / (thin * 7.0)) + kBone * exp(-away * away / (thin * thin)));
    fragColor = vec4(min(colour, 1.0), uAlpha);
}
