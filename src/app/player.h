// One run of the player: what start-up made and what the main loop keeps from frame to frame.
#pragma once

#include "app/audio_player.h"
#include "app/options.h"
#include "app/recorder.h"
#include "app/run_clock.h"
#include "config/runtime_config.h"
#include "platform/window.h"
#include "timeline/frame.h"

#include <limits>

// The time that the entries of the flat timeline cover, in seconds.
struct VisualRange {
    float start = 0.0f;
    float end = 0.0f;
    float duration = 0.0f; // 0: nothing ends by itself
};

struct Player {
    Options options;
    RuntimeConfig config;
    Surface* surface = nullptr;
    AudioPlayer audio;
    RunClock clock;
    Stage stage;
    std::vector<Timeline> timelines; // one for each part of the stage
    size_t part = 0;                 // the one that plays: 0, or the scene of a list
    Clocks clocks;                   // of its entries
    PlayScratch scratch;
    Moment moment; // of the current frame
    PlayLog log;
    std::vector<int> scenes;                                   // scratch: indices of active scenes
    size_t nextKey = 0;                                        // of the scripted keys
    double passesTime = 0.0;                                   // seconds of the passes or scenes before the current one
    double stopTime = std::numeric_limits<double>::infinity(); // show time, passes included
    Recorder recorder;
};

// Start-up, the main loop of the show's mode, shutdown. The process's exit code: 0 after a normal run,
// 1 when start-up cannot go on or a picture could not be written.
int runPlayer(const Options& options);
