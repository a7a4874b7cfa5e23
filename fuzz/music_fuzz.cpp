// A music file of any kind, as a show's "audio" has it decoded.
#include "music/decoder.h"

#include <algorithm>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kFrames = 8192; // decoded of each, at most
    static int16_t samples[kFrames * kMusicChannels];
    if (size == 0) return 0; // no file can be made of nothing
    Decoder decoder;
    std::string reason;
    std::FILE* file = fmemopen(const_cast<uint8_t*>(data), size, "rb");
    const bool opened = openDecoder(decoder, file, reason);
    if (opened != reason.empty() || opened != (decoder.file != nullptr)) std::abort();
    if (opened) readDecoder(decoder, samples, kFrames);
    closeDecoder(decoder);
    return 0;
}
