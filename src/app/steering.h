// Steering on the flat timeline: scene steps and seeks.
#pragma once

#include "app/player.h"

struct SceneStep {
    std::string scene; // empty when there is no named scene
    float time = 0.0f; // seconds
};

// Where Right (+1) or Left (-1) leads from time t: the next scene, but never past the last; the start of
// the current scene when more than a second of it has played, else the scene before.
SceneStep stepScene(const Timeline& timeline, float t, int step);

// A time kept between the range's start and just before its end.
float clampToRange(const VisualRange& range, float t);

// The last time that still shows a picture of the range.
float lastVisibleTime(const VisualRange& range);

// Sets every entry's clock as if it had played since its start.
void seekClocks(Clocks& clocks, const Timeline& timeline, float t);

// Moves the show to time t (clamped): clock, effects, and a fresh log of what plays.
void seekTo(Player& player, const VisualRange& range, float t);

// Carries out pending steps and seeks, the step first.
void applyControls(Player& player, const VisualRange& range);

// Delivers the scripted keys whose time has come.
void pressScriptedKeys(Player& player);
