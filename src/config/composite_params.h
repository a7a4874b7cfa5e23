// What a show says of the effects that build one picture from others. Those others are the entry's children.
#pragma once

#include "config/transition_look.h"

// When a blend mixes, on its own clock, and how.
struct BlendParams {
    float startTime = 0.0f;     // seconds, at least 0
    float blendDuration = 5.0f; // seconds, at least 0.01
    TransitionLook look;
};

// When a child of a timeline blend plays, on the blend's clock.
struct BlendStep {
    float start = 0.0f;    // seconds, at least 0
    float duration = 1.0f; // seconds, at least 0.001
    int child = -1;        // index into the entry's children; -1: the step describes no effect
};

struct TimelineBlendParams {
    bool hasSteps = false;        // whether there is a list of steps, be it an empty one
    std::vector<BlendStep> steps; // every element of the list
    bool loop = true;
    TransitionLook look;
};

struct SplitParams {
    int mode = 0; // 0 vertical edge, 1 horizontal, 2 diagonal, 3 wave
    float speed = 1.0f;
    float amplitude = 0.2f; // 0..1
    float position = 0.5f;  // 0..1
    float feather = 0.03f;  // 0.0001..0.5
    float angle = 45.0f;    // degrees
    float waveFrequency = 5.0f;
    bool invert = false;
};

enum class PipCorner { bottomRight, bottomLeft, topRight, topLeft };

struct PipParams {
    float scale = 0.25f; // of the output, 0.05..1
    int margin = 16;     // pixels, at least 0
    float alpha = 1.0f;  // 0..1
    float delay = 0.0f;  // seconds, at least 0
    float fadeIn = 0.0f; // seconds, at least 0
    PipCorner corner = PipCorner::bottomRight;
    bool insetIsImage = false; // else a child
    std::string image;         // resolved; empty: the show's fallback image
};

// `duration` is the entry's, in seconds: where nothing is said the mix goes on to its end.
BlendParams readBlend(const JsonValue& params, float duration, const Reading& at = {});

// Without the steps.
TimelineBlendParams readTimelineBlend(const JsonValue& params, const Reading& at = {});

BlendStep readBlendStep(const JsonValue& step, const Reading& at = {});

// Code of a mode's name, letter case, "-" and "_" aside: 1 horizontal, 2 diagonal, 3 wave, else 0, vertical.
int splitModeCode(std::string_view name);

SplitParams readSplit(const JsonValue& params, const Reading& at = {});

PipParams readPip(const JsonValue& params, bool insetIsImage, const Reading& at = {});
