// Where rendered pictures go: files, standard output, the terminal.
#pragma once

#include <cstdio>
#include <string>

// Makes sure that the three standard streams lead somewhere: a file that is opened while one of them is
// closed would take its place, and the log with it. First thing in the process.
void openStandardStreams();

// Opens a file for writing raw bytes; "-" is standard output. From then on a reader that goes away is a
// failed write instead of a signal. Null, with the system's words in `reason`, when it cannot be opened.
std::FILE* openOutput(const std::string& path, std::string& reason);

// Flushes and closes (standard output is only flushed); false when bytes could not be written.
bool closeOutput(std::FILE* file, std::string& reason);

// Writes a whole file; false with the system's words in `reason`, and then no part of it stays.
bool writeFile(const std::string& path, const std::string& bytes, std::string& reason);

// Gives a finished file its final name, in place of what has that name; false with the system's words.
bool renameFile(const std::string& from, const std::string& to, std::string& reason);

void removeFile(const std::string& path); // says nothing when there is none

bool isTerminal(std::FILE* stream);
