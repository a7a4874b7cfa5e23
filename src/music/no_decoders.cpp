// For systems where nothing is built in: no file is one that is known here.
#include "music/built_in_audio.h"
#include "music/decoder.h"

bool builtInAudio(AudioFunctions&) {
    return false;
}

bool openDecoder(Decoder& decoder, const std::string&, std::string& reason) {
    decoder = {};
    reason = "no decoder is built in";
    return false;
}

size_t readDecoder(Decoder&, int16_t*, size_t) {
    return 0;
}

void closeDecoder(Decoder&) {}
