#version 330 core
// Full-screen quad. Looks up where each line of the text begins, once a corner, so that a pixel finds its
// letter without walking through the text.
layout(location = 0) in vec2 aPos;
layout(location = 1) in vec2 aUV;
out vec2 vUV;
flat out ivec4 vStarts[4]; // 32 lines, two in an int: byte at which the line begins; 1024 where bytes need decoding
flat out ivec2 vSize;      // lines, and bytes of the longest one

uniform isampler1D uTextTex; // 512 bytes
uniform int uTextLength;     // bytes, at most 512

const int kNewline = 10;
const int kKnownLines = 32;
const int kDecode = 1024;

void main() {
    vUV = aUV;
    gl_Position = vec4(aPos, 0.0, 1.0);

    int starts[kKnownLines];
    for (int i = 0; i < kKnownLines; ++i) starts[i] = uTextLength;
    int line = 0, begin = 0, longest = 0, decode = 0;
    for (int i = 0; i <= uTextLength; ++i) {
        int code = i < uTextLength ? texelFetch(uTextTex, i, 0).r : kNewline;
        if (code >= 0xC0) decode = kDecode;
        if (code != kNewline) continue;
        if (line < kKnownLines) starts[line] = begin + decode;
        longest = max(longest, i - begin);
        begin = i + 1;
        decode = 0;
        ++line;
    }
    vSize = ivec2(line, longest);
    for (int i = 0; i < kKnownLines / 2; ++i) vStarts[i / 4][i % 4] = starts[2 * i] + starts[2 * i + 1] * 2048;
}
