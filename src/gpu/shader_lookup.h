// Where the shader sources of an effect are: from its type or its glitch style to file paths.
//
// Two roots are tried in order below the show's directory: DemoSceneResources/assets/shaders, then
// assets/shaders. The shader pack answers before the disk.
#pragma once

#include "gpu/program.h"

#include <string>

// The directory of an effect's shaders, empty when neither root has it. `name` ignores letter case; one
// that is not built in is its own (lower-case) directory name, which may have either slash in it.
std::string builtinShaderDir(const std::string& baseDir, const std::string& name);

// Files of an effect's shaders; what is not found stays empty.
struct ShaderPaths {
    std::string vertex;
    std::string fragment;
    std::string buffer;
};

// The files of a type that is no glitch. Nothing is logged.
ShaderPaths resolveShaderSources(const std::string& type, const std::string& baseDir);

// The files of a glitch style, given by their base name: the style's fragment shader with its own vertex shader or
// the family's; none when no root has the fragment shader.
ShaderPaths resolveGlitchShaders(const std::string& name, const std::string& baseDir);

// Reads `name`.vert and `name`.frag from the first root whose `directory` has both; false when no root has
// them or one is empty.
bool readShaderPair(const std::string& baseDir, const std::string& directory, const std::string& name,
                    ShaderPair& sources);
