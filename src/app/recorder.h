// Offline rendering's output: every frame, in order, as a picture sequence or raw bytes.
#pragma once

#include "gpu/readback.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

struct Recorder {
    bool active = false;
    bool failed = false;    // a frame could not be written; the reason has been said
    std::string output;     // as given on the command line
    std::FILE* raw = nullptr; // null for picture sequences
    Readback readback;
    std::vector<uint8_t> picture; // RGBA, top row first, opaque
    long long written = 0;        // frames
    // For the progress line.
    long long expected = 0; // frames; 0 when it cannot be told
    bool showProgress = false;
    int64_t startCounter = 0;
    int64_t lastReport = 0;
};

// The path of frame `number`: the pattern's "%d" or "%0Nd" replaced, "%%" as "%". False for any other "%"
// and for more than one number.
bool framePath(const std::string& pattern, long long number, std::string& path, bool& hasNumber);

// Opens the output for frames of a size. `expectedFrames` may be 0. False, with one line on standard
// error, when it cannot be opened or would write several frames under one name.
bool openRecorder(Recorder& recorder, const std::string& output, GlLookup lookup, int width, int height,
                  long long expectedFrames);

// Takes the frame in framebuffer 0; the frame before it is written meanwhile. False after a failed write.
bool recordFrame(Recorder& recorder);

// Writes what is on its way and closes the output; false when anything was not written.
bool closeRecorder(Recorder& recorder);
