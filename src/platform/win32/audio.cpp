#include "platform/audio_functions.h"

const char* const kAudioLibraryName = "bass.dll";
