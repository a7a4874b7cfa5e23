// The running log: one message a line, each opened by a bracketed tag.
#pragma once

#include <cstdio>

#if defined(__clang__)
#define LOG_FORMAT(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#elif defined(__GNUC__)
#define LOG_FORMAT(formatIndex, firstArgument) __attribute__((format(gnu_printf, formatIndex, firstArgument)))
#else
#define LOG_FORMAT(formatIndex, firstArgument)
#endif

// Where the log goes from now on; standard output at first, standard error when frames take its place.
// Null means standard output again.
void setLogStream(FILE* stream);

// A held log keeps its messages in memory until it is released, which writes them in their order. Standard error does
// not wait.
void holdLog();
void releaseLog();

// printf-style; the message carries its own newline and is flushed at once, so that a log that is piped
// or cut short by a crash still ends with the last thing that happened. Control characters other than
// newline and tab (in UTF-8 also those from U+0080 to U+009F) print as "?": shows come from strangers, and
// terminals obey escape sequences.
void logLine(const char* format, ...) LOG_FORMAT(1, 2);

// The same on standard error: what ends the run, and reasons beyond the log's fixed lines.
void printError(const char* format, ...) LOG_FORMAT(1, 2);
