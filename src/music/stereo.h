// Sound of any rate and number of channels brought to two channels at kMusicRate.
#pragma once

#include "music/decoder.h"

// One for each stream; pieces may change their form on the way.
StereoConverter* createConverter();

// Appends the piece to `converted`: as it is, where its form is right already. False, with the reason, for a form that
// cannot be converted.
bool convertPiece(StereoConverter& converter, const SoundPiece& piece, std::vector<float>& converted,
                  std::string& reason);

// Appends what the last pieces still have to come.
void finishConversion(StereoConverter& converter, std::vector<float>& converted);

void releaseConverter(StereoConverter* converter); // null is ignored
