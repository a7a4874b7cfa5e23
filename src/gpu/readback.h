// Reads finished frames back from framebuffer 0 while the next ones are drawn.
#pragma once

#include "platform/gl.h"
#include "platform/window.h"

#include <array>
#include <cstddef>

// A ring of pixel buffers, each holding one frame on its way.
struct Readback {
    static constexpr int kSlots = 2;
    std::array<GLuint, kSlots> buffers = {};
    int width = 0; // pixels
    int height = 0;
    long long requested = 0; // frames so far
    long long taken = 0;
    const void* mapped = nullptr;
};

// False when the context has no means to map buffers.
bool createReadback(Readback& readback, GlLookup lookup, int width, int height);

// Starts the transfer of the frame in framebuffer 0. At most kSlots frames may be on their way.
void requestFrame(Readback& readback);

int framesOnTheWay(const Readback& readback);

// The oldest frame on its way: width * height RGBA bytes, bottom row first, valid until releaseFrame. Null
// when the driver cannot map it.
const unsigned char* takeFrame(Readback& readback);
void releaseFrame(Readback& readback);

void deleteReadback(Readback& readback);
