// Videos: what each ending means, and the command line that has ffmpeg make one.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Frames a second as the fraction that it was written as.
struct FrameRate {
    int numerator = 60;
    int denominator = 1;
};

// Music that goes with the pictures and that ffmpeg decodes itself.
struct VideoMusic {
    std::string path;      // empty: none
    double position = 0.0; // seconds into the music at the first frame
    double volume = 1.0;   // 0 to 1
};

struct VideoJob {
    std::string output; // the name in the end; its ending says what kind of video
    std::string path;   // the file that is written meanwhile
    int width = 0;      // pixels of the frames that ffmpeg is fed
    int height = 0;
    FrameRate rate;
    long long frames = 0; // 0 when it cannot be told
    VideoMusic music;
    bool hasSoundtrack = false;         // the player's own sound comes in on the second input, as a WAVE file
    int soundLead = 0;                  // frames of silence before that sound, to be left out
    std::vector<std::string> arguments; // the user's own, behind ours
};

// True when a name ends like a video: .mp4, .mkv, .webm, .mov or .gif.
bool isVideoOutput(const std::string& output);

// The one kind that has pictures of a palette, no sound, and takes RGBA frames instead of Y'CbCr 4:2:0.
bool isAnimation(const std::string& output);

// ffmpeg and its arguments. Frames come in on standard input, top row first.
std::vector<std::string> videoCommand(const VideoJob& job);

// True unless ffmpeg says that it cannot decode the music; `reason` then holds its words.
bool canDecodeMusic(const std::string& path, std::string& reason);

// Splits a line as a shell does: at blanks; quotes and backslashes keep them. False for an open quote.
bool splitArguments(const std::string& line, std::vector<std::string>& arguments);
