#version 330 core
// A weave of daggers turned and zoomed on the beat, its inks swapped by a round wipe at every bar.
in vec2 vUV;
out vec4 fragColor;

uniform float iTime;                // s
uniform vec3 iResolution;           // px
uniform vec2 iChannelResolution[4]; // px
uniform float uAlpha;               // 0..1
uniform sampler2D iChannel0;        // seamless tile: red daggers, green rings, blue gems; 0.5 on the outline
uniform float uSpread = 26.0;       // texels from the outline to full value in the tile
uniform float uSpin = 0.4;          // radians a second
uniform float uTiles = 1.7;         // tiles a frame height at rest
uniform vec2 uDrift = vec2(0.11, 0.17); // tiles a second

const vec3 kInk = vec3(0.027, 0.035, 0.067);
const vec3 kEmber = vec3(1.0, 0.31, 0.15);
const vec3 kSteel = vec3(0.44, 0.65, 0.78);
const vec3 kBone = vec3(0.95, 0.92, 0.87);

// Four inks of a bar: ground, daggers, rings, gems.
void inks(float bar, out vec3 ground, out vec3 blade, out vec3 ring, out vec3 gem) {
    int turn = int(bar) % 3;
    ground = kInk; blade = kEmber; ring = kSteel * 0.75; gem = kBone;
    if (turn == 2) {
        ground = kBone * 0.94; blade = kInk; ring = kEmber; gem = kEmber;
    } else if (turn == 1) {
        ground = kEmber * 0.95; blade = kInk; ring = vec3(0.56, 0.1, 0.07); gem = kBone;
    }
}

void main() {
    vec2 p = (vUV - 0.5) * vec2(iResolution.x / iResolution.y, 1.0);
    float bars = iTime * 0.5;
    float beatAge = fract(iTime * 2.0);
    float beats = floor(iTime * 2.0);
    float kick = exp(-5.0 * beatAge);

    // Turns a little all the time and snaps ahead on each beat.
    float snap = beats + 1.0 - exp(-7.0 * beatAge);
    float angle = uSpin * iTime + 0.26 * snap;
    float zoom = uTiles * (1.0 + 0.42 * sin(iTime * 1.047 - 1.2) - 0.09 * kick);
    vec2 lens = p * (1.0 - 0.16 * dot(p, p));
    float c = cos(angle), s = sin(angle);
    vec2 uv = mat2(c, s, -s, c) * lens * zoom + uDrift * iTime;

    float texel = 2.0 * uSpread / iChannelResolution[0].x;   // tiles for the full value range
    float pixel = zoom / iResolution.y;                      // tiles an output pixel
    vec3 d = (0.5 - texture(iChannel0, fract(uv)).rgb) * texel;
    vec3 cover = clamp(0.5 - d / pixel, 0.0, 1.0);
    // Shadows fall towards the lower right of the frame whatever the turn.
    vec2 slip = mat2(c, s, -s, c) * vec2(-0.022, 0.03) * zoom;
    vec3 below = (0.5 - texture(iChannel0, fract(uv + slip)).rgb) * texel;
    float shadow = smoothstep(0.02, -0.012, min(below.r, below.b));

    vec3 ground, blade, ring, gem, ground0, blade0, ring0, gem0;
    float bar = floor(bars), wipe = fract(bars) * 2.0;       // wipe in s
    inks(bar, ground, blade, ring, gem);
    inks(max(bar - 1.0, 0.0), ground0, blade0, ring0, gem0);
    float edge = 2.4 * (1.0 - exp(-3.2 * wipe)) - length(p) * 1.6;
    float fresh = step(1.0, bar) * (1.0 - clamp(0.5 + edge * iResolution.y / 1.6, 0.0, 1.0));
    ground = mix(ground, ground0, fresh); blade = mix(blade, blade0, fresh);
    ring = mix(ring, ring0, fresh); gem = mix(gem, gem0, fresh);

    vec3 colour = mix(ground, ring, cover.g);
    colour *= 1.0 - 0.42 * shadow * (1.0 - cover.r);
    colour = mix(colour, blade, cover.r);
    // One half of each blade is ground darker, as on a real edge.
    colour *= 1.0 + 0.16 * cover.r * smoothstep(0.0, -0.03, d.r);
    colour = mix(colour, gem, cover.b);
    fragColor = vec4(clamp(colour, 0.0, 1.0), uAlpha);
}
