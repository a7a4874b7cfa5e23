// The system's words for its error numbers.
#pragma once

#include <string>

// Of a GetLastError number, without the line break that they come with.
std::string errorWords(unsigned long error);

// Of the last error of this thread.
std::string lastErrorWords();
