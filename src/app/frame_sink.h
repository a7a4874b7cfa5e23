// Where rendered frames end: a picture sequence, raw bytes, or a video.
#pragma once

#include "app/soundtrack.h"
#include "app/video.h"
#include "app/yuv_frame.h"
#include "platform/process.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

struct FrameSink {
    std::string output; // as given on the command line
    int width = 0;      // pixels
    int height = 0;
    long long written = 0; // frames
    std::string failure;   // "name: reason" of what could not be written; empty so far
    // One of the two; neither for picture sequences.
    std::FILE* raw = nullptr;
    Process* encoder = nullptr;
    bool planar = false;       // the encoder takes Y'CbCr
    std::string partPath;      // a video's name until it is whole
    std::vector<uint8_t> band; // some upright rows, opaque
    YuvFrame yuv;
    Soundtrack sound; // to be filled in before a video is opened
    FrameRate rate;
    bool soundByFrame = false; // what is heard depends on what the show does; else all of it is known from the start
};

// A finished frame on its way.
struct RecordedFrame {
    const uint8_t* pixels = nullptr; // B, G, R, A bytes, bottom row first
    uint64_t music = 0;              // position in the track at its beginning
};

// What to write. `job` holds all that a video needs; a sequence takes output, size and frames of it.
// False, with `failure` set, when it cannot be opened or would write several frames under one name.
bool openSink(FrameSink& sink, const VideoJob& job);

// Writes the next frame and the sound up to its end. The picture is opaque whatever its alpha, as the
// window shows it. False when no more frames are taken: `failure` is set, or ffmpeg was told to stop here.
bool writeFrame(FrameSink& sink, const RecordedFrame& frame, const std::atomic<bool>& cancelled);

// Closes the output. A video gets its name now, and only if all went well and it was not cancelled; else
// nothing of it stays, unless its name alone cannot be had. False when something was not written.
bool closeSink(FrameSink& sink, const std::atomic<bool>& cancelled);

// The path of frame `number`: the pattern's "%d" or "%0Nd" replaced, "%%" as "%". False for any other "%"
// and for more than one number.
bool framePath(const std::string& pattern, long long number, std::string& path, bool& hasNumber);
