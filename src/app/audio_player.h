// The show's music: one file, played through an audio library that is found at run time. Music is optional,
// every failure here is one line in the log and a show without sound.
#pragma once

#include "platform/audio_functions.h"

#include <string>

struct AudioPlayer {
    void* library = nullptr; // null for the built-in playback too
    AudioFunctions functions;
    uint32_t stream = 0;
    float volume = 1.0f;      // 0 to 1
    float startOffset = 0.0f; // seconds into the music at timeline time 0
    float duration = 0.0f;    // seconds; 0 when unknown
    bool ready = false;       // the stream is open; everything else here only counts then
};

// Opens the music without starting it. Volume and start offset are brought into their ranges.
bool openAudio(AudioPlayer& player, const std::string& path, float volume, float startOffset);

// Lets the music sound from a timeline time on, whatever it did before. After a failure it is silent.
bool playFrom(AudioPlayer& player, double seconds);

// Ends the music and unloads the library; nothing when the player is not ready.
void closeAudio(AudioPlayer& player);
