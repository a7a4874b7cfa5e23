#version 330 core
// Copper bars weaving in depth, drawn in whole raster lines; they go from ember to quenched steel. They are seen
// through a word, which comes in at the same size in pixels whatever the output's, and which they burst out of.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;          // s
uniform vec3 iResolution;     // px
uniform float uAlpha;         // 0..1
uniform sampler2D iChannel0;  // the word, from the picture's middle on: blue = letters, red = letters and their halo
uniform vec2 uMiddle = vec2(86.0, 30.0); // of the word: px to the right of the picture's middle and below it
uniform float uWordScale = 2.15; // px of a picture 360 px high that a px of the word becomes
uniform float uOpen = 5.5;    // s from which on there is no word
uniform float uLines = 180.0; // wished raster lines a frame height; their pitch is made whole pixels
uniform float uQuench = 4.0;  // s at which the bars begin to turn to steel

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

// Letters and halo at a point in frame heights from the middle.
vec2 wordAt(vec2 p) {
    vec2 at = uMiddle * vec2(1.0, -1.0) + p * 360.0 / uWordScale; // px
    vec4 texel = texture(iChannel0, 0.5 + at / iResolution.xy);
    // The letters are magnified; their outline lies where half a pixel was covered.
    return vec2(smoothstep(0.4, 0.6, texel.b), texel.r);
}

void main() {
    float aspect = iResolution.x / iResolution.y;
    float lines = iResolution.y / max(2.0, floor(iResolution.y / uLines + 0.501));
    float y = (floor(vUV.y * lines) + 0.5) / lines - 0.5;
    float x = (vUV.x - 0.5) * aspect;
    float beat = exp(-4.0 * fract(iTime * 2.0));
    // Quenching runs upwards through the picture like water filling it.
    float cold = smoothstep(-0.1, 0.1, (iTime - uQuench) * 1.1 - 0.75 - y);

    vec3 ground = mix(vec3(0.42, 0.06, 0.05), vec3(0.09, 0.17, 0.24), cold);
    vec3 colour = mix(kInk, ground, 0.75 + 0.25 * cos(y * 5.0));
    // The bars spread over the whole frame in the last quarter of every bar of music.
    float burst = smoothstep(0.74, 0.8, fract(iTime * 0.5)) * smoothstep(1.0, 0.97, fract(iTime * 0.5));
    float reach = mix(0.23, 0.47, burst);
    float front = -2.0;
    for (int i = 0; i < 10; ++i) {
        float n = float(i);
        float swing = iTime * 1.57 + n * 0.42;
        float centre = reach * sin(swing + n * burst * 0.25) * cos(iTime * 0.52 + n * 0.11) + 0.05 * sin(n * 2.4);
        float depth = cos(swing) + 0.02 * n;
        float half_ = 0.056 + 0.014 * depth + 0.012 * beat;
        float across = (y - centre) / half_;
        if (abs(across) < 1.0 && depth > front) {
            front = depth;
            float round_ = sqrt(1.0 - across * across);
            float shine = pow(max(0.0, 1.0 - abs(across - 0.3) * 1.5), 4.0);
            // A highlight slides along the bar, so that it reads as metal.
            float run = 0.5 + 0.5 * sin(x * 2.2 + iTime * 2.1 + n * 1.3);
            vec3 hot = mix(vec3(0.42, 0.05, 0.05), kEmber, round_);
            vec3 chilled = mix(kInk * 1.6, kSteel, round_ * round_);
            vec3 metal = mix(hot, chilled, cold) * (0.62 + 0.38 * round_) * (0.72 + 0.2 * depth + 0.2 * run);
            colour = metal + kBone * shine * (0.35 + 0.5 * run);
        }
    }
    // The waterline itself hisses white.
    float surface = (iTime - uQuench) * 1.1 - 0.75 - y;
    colour += kBone * exp(-900.0 * surface * surface) * 0.8;
    float line = fract(vUV.y * lines);
    colour *= 0.86 + 0.14 * smoothstep(0.0, 0.3, line) * smoothstep(1.0, 0.7, line);

    // The word rushes up and is gone when the bars have spread.
    float inBar = fract(iTime * 0.5);
    float rush = smoothstep(0.7, 0.76, inBar);
    vec2 word = wordAt(vec2(x, y) / (1.0 + 9.0 * rush * rush));
    float open = max(smoothstep(0.735, 0.755, inBar), step(uOpen, iTime));
    float cover = max(word.x, open);
    vec3 halo = mix(kEmber, kSteel, cold) * word.y * (1.0 - word.x) * (0.5 + 0.7 * beat);
    colour = mix(mix(kInk, colour, 0.035) + halo * (1.0 - open), colour, cover);
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
