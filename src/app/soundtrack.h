// The sound of a video: the player's own samples of the music, at the volume and in the order in which play has them.
#pragma once

#include "app/video.h"
#include "music/track.h"

#include <deque>

// A stretch of the music.
struct MusicSpan {
    uint64_t position = 0; // frames into the track
    uint64_t frames = 0;
};

struct Soundtrack {
    Track track; // none: the video has no sound from here
    float volume = 1.0f;
    uint64_t start = 0;          // position at the first picture
    std::deque<MusicSpan> spans; // still to be handed on
    bool begun = false;          // the header has been handed on
};

// The frame of the music at a time of the show, where play would begin.
uint64_t musicFrame(double startOffset, double showSeconds);

// Frames of sound before picture `number`: pictures and sound stay together however long the video is.
uint64_t soundBefore(long long number, const FrameRate& rate);

void appendSpan(Soundtrack& soundtrack, MusicSpan span);

// Fills in the next bytes of a WAVE file of unknown length: a header, then what has been appended. Returns how many;
// 0 when nothing more has been.
size_t nextSoundBytes(Soundtrack& soundtrack, char* bytes, size_t size);
