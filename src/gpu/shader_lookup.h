// Where the shader sources of an entry are: from its type or its glitch style to file paths.
//
// Two roots are tried in order below the show's directory: DemoSceneResources/assets/shaders, then
// assets/shaders. The shader pack answers before the disk.
#pragma once

#include "config/timeline_entry.h"

#include <string>

// The directory of an effect's shaders, empty when neither root has it. `name` ignores letter case; one
// that is not built in is its own (lower-case) directory name, which may have either slash in it.
std::string builtinShaderDir(const std::string& baseDir, const std::string& name);

// File name of a built-in effect's stage (".vert" or ".frag"); empty for other names and stages.
std::string builtinShaderFileName(const std::string& name, const std::string& stage);

// Base name of the files of a glitch style (any letter case); "Glitch" for a style that is not known.
std::string glitchShaderName(const std::string& style);

// For entries of type "glitch": the style's fragment shader with its own vertex shader or the family's.
// Paths stay as they were when no root has the fragment shader.
void resolveGlitchShaders(TimelineEntry& entry, const std::string& baseDir);

// Sources of a vertex and a fragment shader that belong together.
struct ShaderPair {
    std::string vertex;
    std::string fragment;
};

// Reads `name`.vert and `name`.frag from the first root whose `directory` has both; false when no root has
// them or one is empty.
bool readShaderPair(const std::string& baseDir, const std::string& directory, const std::string& name,
                    ShaderPair& sources);

// Fills vertPath, fragPath and bufferPath. What is not found stays empty; nothing is logged.
void resolveShaderSources(TimelineEntry& entry);
