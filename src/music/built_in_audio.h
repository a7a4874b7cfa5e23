// Playback for systems without the audio library: the same entry points, supplied by the player.
#pragma once

#include "platform/audio_functions.h"

// Fills the table; false where nothing is built in.
// Plays MP3, Ogg Vorbis, FLAC, Opus, WAV and tracker modules. A track is decoded whole when its stream is made, so
// that every position is exact to the sample and no later call decodes anything.
bool builtInAudio(AudioFunctions& functions);
