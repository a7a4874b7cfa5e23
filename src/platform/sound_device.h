// The system's default sound device, played on a thread of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

struct SoundDevice;

// Called on the device's thread for the next frames, all of which it fills.
using FillSound = void (*)(int16_t* samples, size_t frames);

// Opens the device for interleaved samples and lets it play; whatever it runs at itself is the system's affair. Null,
// with the system's words in `reason`, when there is none.
SoundDevice* openSoundDevice(int rate, int channels, FillSound fill, std::string& reason);

// When it returns, no call of the function is under way any more.
void closeSoundDevice(SoundDevice* device); // null is ignored
