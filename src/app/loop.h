// The main loop's two modes, and the steps of a frame that they share.
#pragma once

#include "app/player.h"

// The range of the configuration's flat entries, those that fail to load included.
VisualRange visualRange(const RuntimeConfig& config);

// The show's length in seconds from timeline time 0; 0 when it has no end of its own.
double showEnd(const RuntimeConfig& config);

// Plays the flat timeline, or the list of scenes, until the user stops it, it ends, or the stop time is
// reached. Offline one pass, every frame recorded.
void playTimeline(Player& player);
void playScenes(Player& player);

// Records one picture for each of the options' still times, as after a seek to it and with delta 0.
void renderTimelineStills(Player& player);
void renderSceneStills(Player& player);

// Steps of a frame.
bool isOffline(const Player& player);
float showTime(const Player& player);                   // of the current pass or scene, in seconds
RunClock startClock(const Player& player, double time); // of the run's kind, at a show time
bool beginFrame(Player& player);                        // pumps messages, takes the delta; false when the run is over
bool stopTimeReached(const Player& player);
bool hasReached(const Player& player, double time, double end); // seconds; offline to a thousandth of a frame
double wrapTime(const VisualRange& range, double time);         // from the end or later to where it begins anew
void clearFrame();                                              // opaque black
void finishFrame(Player& player);                               // shows or records it; may wait for the next
const Timeline& playingTimeline(const Player& player);
void beginPart(Player& player, size_t part);        // says its load and begins it anew: clocks at 0, no feedback
void drawPlayerMoment(Player& player, float delta); // runs the clocks and draws
