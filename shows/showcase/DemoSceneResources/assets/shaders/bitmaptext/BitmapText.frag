#version 330 core
// Text in a font of 5 x 7 pixels, line by line from its top left corner, over a plain colour.
//
// A glyph takes 6 pixels of a line (times uSpacing) and 7 of the height (times uLineSpacing), which are brought
// to whole pixels of the output so that all letters look alike. Signs spelled in UTF-8 find their glyph too:
// U+0080 to U+00BF, arrows from U+2190 (codes from 256 on), boxes and blocks from U+2500 (from 272 on).
in vec2 vUV;
flat in ivec4 vStarts[4]; // two lines in an int: byte at which the line begins; 1024 where bytes need decoding
flat in ivec2 vSize;      // lines, and bytes of the longest one
out vec4 fragColor;

uniform vec2 iResolution;     // px
uniform float uAlpha = 1.0;   // 0..1
uniform vec4 uTextColor;      // not premultiplied
uniform vec4 uBgColor;
uniform vec2 uTextPos;        // px from the top left of the output
uniform float uScale;         // px a pixel of a glyph
uniform float uSpacing;       // of 6 pixels
uniform float uLineSpacing;   // of 7 pixels
uniform int uTextLength;      // bytes, at most 512
uniform isampler1D uTextTex;  // 512 bytes
uniform isampler1D uGlyphTex; // 7 rows a code, top first; bits 4 to 0 are pixels from left to right

const int kNewline = 10;
const int kKnownLines = 32;
const vec2 kGlyph = vec2(5.0, 7.0);

int byteAt(int i) {
    return i < uTextLength ? texelFetch(uTextTex, i, 0).r : kNewline;
}

int lineStart(int line) {
    int known = min(line, kKnownLines - 1);
    int pair = vStarts[known / 8][known / 2 % 4];
    return known % 2 == 0 ? pair % 2048 : pair / 2048;
}

// Where a line begins that is beyond those that are known.
int walkLines(int at, int lines) {
    while (lines > 0 && at < uTextLength) {
        if (byteAt(at++) == kNewline) --lines;
    }
    return at;
}

// The glyph of the byte or UTF-8 sequence at `at`, which moves behind it.
int decode(inout int at) {
    int lead = byteAt(at++);
    if (lead < 0xC0) return lead;
    int second = byteAt(at);
    if (second < 0x80 || second > 0xBF) return lead;
    if (lead < 0xE0) {
        ++at;
        return (lead - 0xC0) * 64 + second - 0x80;
    }
    int third = byteAt(at + 1);
    if (lead != 0xE2 || third < 0x80 || third > 0xBF) return lead;
    at += 2;
    int sign_ = (second - 0x80) * 64 + third - 0x80; // from U+2000
    if (sign_ >= 0x190 && sign_ < 0x1A0) return sign_ - 0x190 + 256;
    if (sign_ >= 0x500 && sign_ < 0x600) return sign_ - 0x500 + 272;
    return 63;
}

// The code of a place in the text; a line feed where there is no letter.
int codeAt(int line, int column) {
    int start = lineStart(line);
    int at = start % 1024;
    bool spelled = start >= 1024 || line >= kKnownLines;
    if (line >= kKnownLines) at = walkLines(at, line - kKnownLines + 1);
    if (!spelled) {
        at += column;
        // Behind the line's end another line may already have begun.
        int end = line + 1 < vSize.x && line + 1 < kKnownLines ? lineStart(line + 1) % 1024 : uTextLength;
        return at < end ? byteAt(at) : kNewline;
    }
    int code = kNewline;
    for (int i = 0; i <= column; ++i) {
        code = decode(at);
        if (code == kNewline) break;
    }
    return code;
}

// Boxes and blocks fill the gaps around them, so that they join.
bool isJoining(int code) {
    return (code >= 19 && code <= 31) || (code >= 127 && code <= 156) || (code >= 272 && code < 272 + 0xA0);
}

bool isLit(vec2 p) {
    vec2 cell = max(floor(vec2(6.0, 7.0) * uScale * vec2(uSpacing, uLineSpacing) + 0.5), 1.0); // px
    vec2 place = floor(p / cell);
    if (place.x < 0.0 || place.y < 0.0 || place.x >= float(vSize.y) || place.y >= float(vSize.x)) return false;
    vec2 inGlyph = floor((p - place * cell) / uScale);
    int code = codeAt(int(place.y), int(place.x));
    bool isGap = any(greaterThanEqual(inGlyph, kGlyph));
    if (isGap && !isJoining(code)) return false;
    inGlyph = min(inGlyph, kGlyph - 1.0);

    // Without a font its unit holds another texture, whose size is no number of glyphs.
    int rows = textureSize(uGlyphTex, 0);
    int row = code * 7 + int(inGlyph.y);
    if (code == kNewline || row >= rows || rows % 7 != 0) return false;
    return (texelFetch(uGlyphTex, row, 0).r >> (4 - int(inGlyph.x)) & 1) == 1;
}

void main() {
    vec2 p = vec2(vUV.x, 1.0 - vUV.y) * iResolution - uTextPos + 0.013;
    vec4 color = uBgColor;
    if (uScale > 0.0 && isLit(p)) {
        // The text over the colour behind it, both not premultiplied.
        float alpha = uTextColor.a + uBgColor.a * (1.0 - uTextColor.a);
        vec3 sum = uTextColor.rgb * uTextColor.a + uBgColor.rgb * uBgColor.a * (1.0 - uTextColor.a);
        color = vec4(sum / max(alpha, 0.0001), alpha);
    }
    fragColor = vec4(color.rgb, color.a * uAlpha);
}
