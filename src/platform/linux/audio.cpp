#include "platform/audio_functions.h"
#include "platform/sound_device.h"

#include <SDL.h>

const char* const kAudioLibraryName = "libbass.so";

struct SoundDevice {
    SDL_AudioDeviceID id = 0;
    FillSound fill = nullptr;
    size_t frameBytes = 0;
};

namespace {

constexpr Uint16 kBufferFrames = 1024; // 23 ms at 44,100 Hz

void fillBuffer(void* device, Uint8* bytes, int size) {
    const SoundDevice& sound = *static_cast<SoundDevice*>(device);
    sound.fill(reinterpret_cast<int16_t*>(bytes), static_cast<size_t>(size) / sound.frameBytes);
}

} // namespace

SoundDevice* openSoundDevice(int rate, int channels, FillSound fill, std::string& reason) {
    SoundDevice* device = new SoundDevice();
    device->fill = fill;
    device->frameBytes = static_cast<size_t>(channels) * sizeof(int16_t);
    SDL_AudioSpec form = {};
    form.freq = rate;
    form.format = AUDIO_S16SYS;
    form.channels = static_cast<Uint8>(channels);
    form.samples = kBufferFrames;
    form.callback = fillBuffer;
    form.userdata = device;
    const bool ready = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
    if (ready) device->id = SDL_OpenAudioDevice(nullptr, 0, &form, nullptr, 0);
    if (!device->id) {
        reason = SDL_GetError();
        if (ready) SDL_QuitSubSystem(SDL_INIT_AUDIO);
        delete device;
        return nullptr;
    }
    SDL_PauseAudioDevice(device->id, 0);
    return device;
}

void closeSoundDevice(SoundDevice* device) {
    if (!device) return;
    SDL_CloseAudioDevice(device->id);
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
    delete device;
}
