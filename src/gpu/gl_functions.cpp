#include "gpu/gl_functions.h"

GlFunctions gl;

bool loadGlFunctions(GlLookup lookup) {
    gl = {};
#define LOAD_GL_FUNCTION(Type, Name)                                                                                   \
    gl.Name = reinterpret_cast<Type>(lookup("gl" #Name));                                                              \
    if (!gl.Name) return false;
    FOR_EACH_GL_FUNCTION(LOAD_GL_FUNCTION)
#undef LOAD_GL_FUNCTION
#define LOAD_OPTIONAL_GL_FUNCTION(Type, Name) gl.Name = reinterpret_cast<Type>(lookup("gl" #Name));
    FOR_EACH_OPTIONAL_GL_FUNCTION(LOAD_OPTIONAL_GL_FUNCTION)
#undef LOAD_OPTIONAL_GL_FUNCTION
    return true;
}

void clearGlErrors() {
    constexpr int kErrorKinds = 8; // GL keeps one flag a kind; a lost context reports for ever
    for (int i = 0; i < kErrorKinds && glGetError() != GL_NO_ERROR; ++i) {
    }
}
