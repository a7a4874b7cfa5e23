#include "gpu/program_table.h"

namespace {

ProgramEntry& entryFor(ProgramTable& table, const ShaderPair& sources) {
    // Sources end at their first NUL, so a NUL separates them beyond doubt.
    std::unique_ptr<ProgramEntry>& entry = table.bySources[sources.vertex + '\0' + sources.fragment];
    if (!entry) {
        entry = std::make_unique<ProgramEntry>();
        entry->build = startProgram(sources);
    }
    return *entry;
}

bool areEmpty(const ShaderPair& sources) {
    return sources.vertex.empty() || sources.fragment.empty();
}

} // namespace

void requestProgram(ProgramTable& table, const ShaderPair& sources) {
    if (!areEmpty(sources)) entryFor(table, sources);
}

Program* findProgram(ProgramTable& table, const ShaderPair& sources, const std::string& label) {
    if (areEmpty(sources)) return nullptr;
    ProgramEntry& entry = entryFor(table, sources);
    if (!entry.isFinished) finishProgram(entry.build, entry.program, entry.failure);
    entry.isFinished = true;
    if (entry.program.handle) return &entry.program;
    logProgramFailure(entry.failure, label);
    return nullptr;
}

void deletePrograms(ProgramTable& table) {
    for (const auto& [sources, entry] : table.bySources) {
        ProgramFailure unused;
        if (!entry->isFinished) finishProgram(entry->build, entry->program, unused);
        deleteProgram(entry->program);
    }
    table = {};
}
