// The formats' own decoders, each in a file of its own. What they have in common: open gives null, with the reason,
// when the file is not what it claims to be or the library is not installed; next puts the following samples into
// the piece, at least one and at most some ten thousand frames, and is false at the end of what can be decoded.
#pragma once

#include "music/decoder.h"

Mp3Stream* openMp3(std::FILE* file, std::string& reason);
bool nextPiece(Mp3Stream& stream, SoundPiece& piece);
void closeStream(Mp3Stream* stream); // null is ignored, here and below

VorbisStream* openVorbis(std::FILE* file, std::string& reason);
bool nextPiece(VorbisStream& stream, SoundPiece& piece);
void closeStream(VorbisStream* stream);

// In a file of its own or in Ogg pages.
FlacStream* openFlac(std::FILE* file, bool inOgg, std::string& reason);
bool nextPiece(FlacStream& stream, SoundPiece& piece);
void closeStream(FlacStream* stream);

OpusStream* openOpus(std::FILE* file, std::string& reason);
bool nextPiece(OpusStream& stream, SoundPiece& piece);
void closeStream(OpusStream* stream);

// Uncompressed, floating point, A-law, mu-law, IMA and Microsoft ADPCM. `known` is false for other codecs.
WaveStream* openWave(std::FILE* file, bool& known, std::string& reason);
bool nextPiece(WaveStream& stream, SoundPiece& piece);
void closeStream(WaveStream* stream);

// Tracker modules end where they end, or where they jump back to what has been played.
ModuleStream* openModule(std::FILE* file, double& seconds, std::string& reason);
bool nextPiece(ModuleStream& stream, SoundPiece& piece);
void closeStream(ModuleStream* stream);
