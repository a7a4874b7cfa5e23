#include "music/decoder.h"

#include "music/formats.h"
#include "music/stereo.h"
#include "platform/files.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

constexpr size_t kHeadBytes = 64; // of a file, which tell its format
constexpr size_t kTagHeadBytes = 10;

// The size of the tag that begins with these bytes; 0 when none does.
long tagBytes(std::string_view head) {
    constexpr int kSizeAt = 6;
    if (!head.starts_with("ID3") || head.size() < kTagHeadBytes) return 0;
    long size = 0;
    for (size_t i = kSizeAt; i < kTagHeadBytes; ++i) size = size << 7 | (head[i] & 0x7F);
    return size + static_cast<long>(kTagHeadBytes);
}

// Layer 0 is none, and stands in the frames of AAC.
bool isMpegFrame(std::string_view head) {
    return head.size() >= 2 && head[0] == '\xFF' && (head[1] & 0xE0) == 0xE0 && (head[1] & 0x06) != 0;
}

// The codec by the first packet of the first page.
MusicFormat oggFormat(std::string_view head, bool& flacInOgg) {
    constexpr size_t kSegmentCountAt = 26;
    if (head.size() <= kSegmentCountAt) return MusicFormat::None;
    const size_t packetAt = kSegmentCountAt + 1 + static_cast<unsigned char>(head[kSegmentCountAt]);
    const std::string_view packet = packetAt < head.size() ? head.substr(packetAt) : "";
    flacInOgg = packet.starts_with("\x7F"
                                   "FLAC");
    if (flacInOgg) return MusicFormat::Flac;
    if (packet.starts_with("\1vorbis")) return MusicFormat::Vorbis;
    return packet.starts_with("OpusHead") ? MusicFormat::Opus : MusicFormat::None;
}

// By the first bytes, of which modules have none in common: None may be one.
MusicFormat recordingFormat(std::string_view head, bool& flacInOgg) {
    if (head.starts_with("RIFF") && head.substr(std::min<size_t>(8, head.size())).starts_with("WAVE")) {
        return MusicFormat::Wave;
    }
    if (head.starts_with("OggS")) return oggFormat(head, flacInOgg);
    if (head.starts_with("fLaC")) return MusicFormat::Flac;
    return isMpegFrame(head) ? MusicFormat::Mp3 : MusicFormat::None;
}

std::string_view readHead(std::FILE* file, long from, char (&bytes)[kHeadBytes]) {
    const bool there = std::fseek(file, from, SEEK_SET) == 0;
    return {bytes, there ? std::fread(bytes, 1, sizeof bytes, file) : 0};
}

// Leaves the file at its first byte, or behind the tag where the format has none.
MusicFormat tellFormat(std::FILE* file, bool& flacInOgg) {
    char bytes[kHeadBytes];
    std::string_view head = readHead(file, 0, bytes);
    const long tag = tagBytes(head);
    if (tag > 0) head = readHead(file, tag, bytes);
    const MusicFormat format = recordingFormat(head, flacInOgg);
    std::fseek(file, tag, SEEK_SET);
    // Behind a tag stands MP3; whether what follows is a frame or some filling its decoder sees.
    if (tag > 0 && format == MusicFormat::None && !(head.size() >= 2 && head[0] == '\xFF')) return MusicFormat::Mp3;
    return format;
}

bool openStream(Decoder& decoder, bool flacInOgg, std::string& reason) {
    switch (decoder.format) {
    case MusicFormat::Mp3: return (decoder.mp3 = openMp3(decoder.file, reason));
    case MusicFormat::Vorbis: return (decoder.vorbis = openVorbis(decoder.file, reason));
    case MusicFormat::Flac: return (decoder.flac = openFlac(decoder.file, flacInOgg, reason));
    case MusicFormat::Opus: return (decoder.opus = openOpus(decoder.file, reason));
    case MusicFormat::Wave: {
        bool known = false;
        decoder.wave = openWave(decoder.file, known, reason);
        if (!known) decoder.format = MusicFormat::None;
        return decoder.wave;
    }
    case MusicFormat::None:
        decoder.module = openModule(decoder.file, decoder.seconds, reason);
        if (decoder.module) decoder.format = MusicFormat::Module;
        return decoder.module;
    case MusicFormat::Module: break; // told by its decoder alone
    }
    return false;
}

bool decodePiece(Decoder& decoder) {
    switch (decoder.format) {
    case MusicFormat::Mp3: return nextPiece(*decoder.mp3, decoder.piece);
    case MusicFormat::Vorbis: return nextPiece(*decoder.vorbis, decoder.piece);
    case MusicFormat::Flac: return nextPiece(*decoder.flac, decoder.piece);
    case MusicFormat::Opus: return nextPiece(*decoder.opus, decoder.piece);
    case MusicFormat::Wave: return nextPiece(*decoder.wave, decoder.piece);
    case MusicFormat::Module: return nextPiece(*decoder.module, decoder.piece);
    case MusicFormat::None: break;
    }
    return false;
}

// Makes `converted` hold some samples that have not been read, unless the music has ended.
void convertMore(Decoder& decoder) {
    decoder.converted.clear();
    decoder.taken = 0;
    while (decoder.converted.empty() && !decoder.ended) {
        if (!decodePiece(decoder)) {
            decoder.ended = true;
            finishConversion(*decoder.converter, decoder.converted);
        } else if (!convertPiece(*decoder.converter, decoder.piece, decoder.converted, decoder.failure)) {
            decoder.ended = true;
        }
    }
}

int16_t sixteenBits(float sample) {
    return static_cast<int16_t>(std::clamp(std::lrintf(sample * 32768.0f), -32768L, 32767L));
}

} // namespace

bool openDecoder(Decoder& decoder, const std::string& path, std::string& reason) {
    decoder = {};
    const std::string found = locateFile(path);
    std::FILE* file = isRegularFile(found) ? std::fopen(found.c_str(), "rb") : nullptr;
    if (file) return openDecoder(decoder, file, reason);
    reason = "cannot be opened";
    return false;
}

bool openDecoder(Decoder& decoder, std::FILE* file, std::string& reason) {
    decoder = {};
    decoder.file = file;
    bool flacInOgg = false;
    decoder.format = tellFormat(file, flacInOgg);
    if (openStream(decoder, flacInOgg, reason)) {
        decoder.converter = createConverter();
        return true;
    }
    const MusicFormat format = decoder.format;
    closeDecoder(decoder);
    decoder.format = format;
    return false;
}

size_t readDecoder(Decoder& decoder, int16_t* samples, size_t frames) {
    const size_t wanted = frames * kMusicChannels;
    size_t got = 0;
    while (got < wanted) {
        if (decoder.taken == decoder.converted.size()) convertMore(decoder);
        const size_t count = std::min(wanted - got, decoder.converted.size() - decoder.taken);
        if (count == 0) break;
        const float* from = decoder.converted.data() + decoder.taken;
        std::transform(from, from + count, samples + got, sixteenBits);
        decoder.taken += count;
        got += count;
    }
    return got / kMusicChannels;
}

void closeDecoder(Decoder& decoder) {
    closeStream(decoder.mp3);
    closeStream(decoder.vorbis);
    closeStream(decoder.flac);
    closeStream(decoder.opus);
    closeStream(decoder.wave);
    closeStream(decoder.module);
    releaseConverter(decoder.converter);
    if (decoder.file) std::fclose(decoder.file);
    decoder = {};
}
