// The command line.
#pragma once

#include "app/video.h"
#include "platform/shell_state.h"

#include <optional>
#include <string>
#include <vector>

// A key that arrives by itself.
struct ScriptedKey {
    double time = 0.0; // seconds of the run
    PlayerKey key = PlayerKey::escape;
};

struct Options {
    std::string configPath = "config.json";
    bool help = false;
    bool version = false;
    bool headless = false;
    std::optional<bool> fullscreen; // unset: as the show says
    int width = 0;                  // pixels; 0: as the show says
    int height = 0;
    std::optional<double> start;              // seconds
    std::optional<double> end;                // seconds
    std::optional<double> length;             // seconds
    double fps = 60.0;                        // frames a second, offline and headless
    FrameRate rate = {0, 1};                  // the same as a fraction; 0 until the command line has been read
    std::optional<bool> audio;                // unset: music in a window and in a video
    std::vector<std::string> ffmpegArguments; // the user's own
    std::string output;                       // empty: no offline rendering
    std::vector<double> stills;               // seconds
    std::vector<ScriptedKey> keys;            // by time
};

// Reads the arguments behind the program's name. False with one line in `error` that names the option.
bool parseOptions(int count, const char* const* arguments, Options& options, std::string& error);

// Seconds of "S", "mm:ss" or "hh:mm:ss", each with decimals behind the seconds; false for anything else.
bool parseTime(const std::string& text, double& seconds);

// True when the offline pictures are raw frames, on a stream of their own.
bool isRawOutput(const std::string& output);

extern const char* const kUsage;
