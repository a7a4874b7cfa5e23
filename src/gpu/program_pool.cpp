#include "gpu/program_pool.h"

#include "gpu/program.h"

#include <vector>

namespace {

struct PooledProgram {
    std::string key;
    GLuint program = 0;
    bool lent = false;
    uint32_t warmStates = 0;
};

std::vector<PooledProgram>& pool() {
    static std::vector<PooledProgram> programs;
    return programs;
}

PooledProgram* findPooled(GLuint program) {
    for (PooledProgram& pooled : pool()) {
        if (pooled.program == program) return &pooled;
    }
    return nullptr;
}

} // namespace

GLuint borrowProgram(const std::string& vertexSource, const std::string& fragmentSource, const std::string& settings,
                     const std::string& label) {
    // Sources end at their first NUL, so a NUL separates them beyond doubt.
    std::string key = vertexSource + '\0' + fragmentSource + '\0' + settings;
    for (PooledProgram& pooled : pool()) {
        if (pooled.lent || pooled.key != key) continue;
        pooled.lent = true;
        return pooled.program;
    }
    const GLuint program = linkProgram(vertexSource, fragmentSource, label);
    if (program) pool().push_back({std::move(key), program, true, 0});
    return program;
}

void returnProgram(GLuint program) {
    if (PooledProgram* pooled = findPooled(program)) pooled->lent = false;
}

bool markWarm(GLuint program, uint32_t state) {
    PooledProgram* pooled = findPooled(program);
    if (!pooled || (pooled->warmStates & state) == state) return false;
    pooled->warmStates |= state;
    return true;
}

void deletePooledPrograms() {
    for (const PooledProgram& pooled : pool()) deleteProgram(pooled.program);
    pool().clear();
}
