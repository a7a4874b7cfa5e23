// What ffmpeg says of a failure, in one line.
#pragma once

#include <string>

// The last three lines that tell something of their own, with "; " between. It may say the same for every frame that
// it cannot write; once is enough. Behind the cause its newer versions list what failed because of it, up to eight
// lines; those are given only where nothing else is said.
std::string ffmpegWords(const std::string& said);
