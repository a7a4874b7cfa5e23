// The last words of another program.
#pragma once

#include <string>

// The last three lines of a text that say something, with "; " between. Some programs say the same for every
// frame that they cannot write; once is enough.
std::string lastLines(const std::string& text);
