// Offline rendering's output: takes every finished frame and has it written on a thread of its own.
#pragma once

#include "app/frame_sink.h"
#include "gpu/readback.h"

#include <array>
#include <condition_variable>
#include <mutex>
#include <thread>

struct Recorder {
    bool active = false;
    bool failed = false;      // some frame was not written; the reason has been said
    bool interrupted = false; // by a stop request while it waited for the writer
    Surface* surface = nullptr;
    Readback readback;
    FrameSink sink; // the writer's alone while it runs

    // Frames go to the writer as mapped buffers and come back in the same order.
    std::thread writer;
    std::thread watcher;                 // for a second stop request
    std::atomic<bool> cancelled = false; // a video is given up
    std::mutex mutex;                    // for all that follows
    std::condition_variable toWriter;
    std::condition_variable toDrawer;
    std::condition_variable toWatcher;
    std::array<RecordedFrame, Readback::kSlots> frames = {};
    long long handedOver = 0;
    long long done = 0; // of those handed over, written or not
    long long written = 0;
    bool takesFrames = true; // false once writing has failed, or ffmpeg has all that it was told to take
    bool ended = false;      // nothing more will be handed over
    bool closed = false;     // the output is

    // Where the music last jumped to, and at which frame.
    FrameRate rate;
    uint64_t jumpPosition = 0;
    long long jumpFrame = 0;
    std::array<uint64_t, Readback::kSlots> music = {}; // positions at the frames that are not handed over yet

    // For the progress line.
    long long expected = 0; // frames; 0 when it cannot be told
    bool showProgress = false;
    int64_t startCounter = 0;
    int64_t lastReport = 0;
};

// Opens the output for frames of the surface's framebuffer 0. `job.frames` may be 0. False, with one line
// on standard error, when it cannot be opened.
// `sound` is the video's, where that is the player's own.
bool openRecorder(Recorder& recorder, const VideoJob& job, Soundtrack sound, Surface* surface);

// Lets the music go on from a position of its track in the next frame.
void jumpMusic(Recorder& recorder, uint64_t position);

// Takes the frame in framebuffer 0; the ones before it are read back and written meanwhile. Waits only
// while the writer has all buffers. False once no more frames are taken.
bool recordFrame(Recorder& recorder);

// Writes what is on its way and closes the output; an interrupted video is given up. False, with one line on
// standard error, when anything is missing.
bool closeRecorder(Recorder& recorder, bool interrupted);
