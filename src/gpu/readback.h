// Reads finished frames back from framebuffer 0 while the next ones are drawn.
#pragma once

#include "platform/gl.h"
#include "platform/window.h"

#include <array>
#include <cstddef>

// A ring of pixel buffers, each holding one frame: requested first, then mapped for others to read, then
// released. At most kSlots frames may be between request and release.
struct Readback {
    static constexpr int kSlots = 3; // one on its way, one being written, one waiting
    std::array<GLuint, kSlots> buffers = {};
    int width = 0; // pixels
    int height = 0;
    long long requested = 0; // frames so far
    long long mapped = 0;
    long long released = 0;
};

// False when the context has no means to map buffers.
bool createReadback(Readback& readback, GlLookup lookup, int width, int height);

// Starts the transfer of the frame in framebuffer 0.
void requestFrame(Readback& readback);

// The oldest frame that is not mapped yet: width * height pixels of B, G, R, A bytes, bottom row first, for
// any thread to read until it is released. Null when the driver cannot map it; it must be released all the same.
const unsigned char* mapFrame(Readback& readback);

// Gives the oldest mapped frame's buffer back.
void releaseFrame(Readback& readback);

void deleteReadback(Readback& readback); // mapped frames too
