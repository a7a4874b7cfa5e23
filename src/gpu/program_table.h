// Programs by their sources: each pair is linked once and shared by all that draw with it, and stays until the
// device goes, so that nothing is compiled twice.
#pragma once

#include "gpu/program.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

struct ProgramEntry {
    ProgramBuild build; // until it has been asked for
    bool isFinished = false;
    Program program; // handle 0: failed
    ProgramFailure failure;
};

struct ProgramTable {
    std::unordered_map<std::string, std::unique_ptr<ProgramEntry>> bySources; // programs stay where they are
    uint64_t writers = 0;                                                     // numbers given out so far
};

// Hands the sources to the driver unless it has had them, so that it can work on many at once. Empty sources are
// left out.
void requestProgram(ProgramTable& table, const ShaderPair& sources);

// The program of two sources; null when one is empty, or when they do not build: the log then says so under `label`,
// each time that it is asked for.
Program* findProgram(ProgramTable& table, const ShaderPair& sources, const std::string& label);

// Deletes every program: when nothing draws any more.
void deletePrograms(ProgramTable& table);
