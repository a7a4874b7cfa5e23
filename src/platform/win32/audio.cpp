#include "platform/built_in_audio.h"

const char* const kAudioLibraryName = "bass.dll";

// Music comes from the library alone here; that it is missing the log has said.
bool builtInAudio(AudioFunctions&) {
    return false;
}
