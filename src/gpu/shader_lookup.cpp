#include "gpu/shader_lookup.h"

#include "config/paths.h"
#include "foundation/text.h"
#include "gpu/shader_pack.h"
#include "platform/files.h"

#include <algorithm>
#include <array>
#include <vector>

namespace {

struct BuiltinShader {
    const char* name;
    const char* directory;
    const char* vertexFile;
    const char* fragmentFile;
};

constexpr BuiltinShader kBuiltinShaders[] = {
    {"overlayer", "starfields", "Overlayer.vert", "Overlayer.frag"},
    {"rotozoom", "rotozoom", "OldSchoolRotozoom.vert", "OldSchoolRotozoom.frag"},
    {"rotozoombasic", "rotozoom", "BasiclRotozoom.vert", "BasiclRotozoom.frag"},
    {"lowerthird", "Text", "LowerThird.vert", "LowerThird.frag"},
    {"creditroll", "Text", "LowerThird.vert", "LowerThird.frag"},
    {"shapetext", "Text", "ShapeText.vert", "ShapeText.frag"},
};

const BuiltinShader* findBuiltin(const std::string& name) {
    const std::string lower = toLower(name);
    for (const BuiltinShader& shader : kBuiltinShaders) {
        if (lower == shader.name) return &shader;
    }
    return nullptr;
}

std::array<std::string, 2> shaderRoots(const std::string& baseDir) {
    const std::string resources = joinPath(baseDir, "DemoSceneResources");
    return {joinPath(joinPath(resources, "assets"), "shaders"), joinPath(joinPath(baseDir, "assets"), "shaders")};
}

// Files of a directory in pack and on disk, sorted ignoring case, each once.
std::vector<std::string> shaderFilesIn(const std::string& directory) {
    std::vector<std::string> names = packFilesIn(directory);
    for (std::string& name : listFiles(directory)) names.push_back(std::move(name));
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return equalsIgnoringCase(a, b) ? a < b : lessIgnoringCase(a, b);
    });
    names.erase(std::unique(names.begin(), names.end(), equalsIgnoringCase), names.end());
    return names;
}

void useIfThere(std::string& path, const std::string& directory, const std::string& file) {
    const std::string candidate = joinPath(directory, file);
    if (fileExists(candidate)) path = candidate;
}

ShaderPaths findBuiltinFiles(const std::string& baseDir, const BuiltinShader& shader) {
    ShaderPaths paths;
    const std::string directory = builtinShaderDir(baseDir, shader.name);
    if (directory.empty()) return paths;
    useIfThere(paths.vertex, directory, shader.vertexFile);
    useIfThere(paths.fragment, directory, shader.fragmentFile);
    return paths;
}

// The directory is named like the type, so a file named like either is one and the same rule.
ShaderPaths findFilesOfType(const std::string& baseDir, const std::string& typeAsWritten) {
    ShaderPaths paths;
    const std::string directory = builtinShaderDir(baseDir, typeAsWritten);
    if (directory.empty()) return paths;
    const std::string type = toLower(typeAsWritten);
    std::string vertex, fragment, buffer;
    bool vertexIsNamed = false, fragmentIsNamed = false;
    const std::vector<std::string> files = shaderFilesIn(directory);
    for (const std::string& file : files) {
        const std::string name = toLower(file);
        if (endsWith(name, ".vert") && !vertexIsNamed) {
            vertexIsNamed = name == type + ".vert";
            if (vertex.empty() || vertexIsNamed) vertex = file;
        }
        if (endsWith(name, ".frag") && !fragmentIsNamed) {
            fragmentIsNamed = name == type + ".frag";
            if (fragmentIsNamed || (fragment.empty() && !containsText(name, "buffer"))) fragment = file;
        }
    }
    for (const std::string& file : files) {
        const std::string name = toLower(file);
        if (buffer.empty() && file != fragment && endsWith(name, ".frag") && containsText(name, "buffera"))
            buffer = file;
    }
    if (!vertex.empty()) paths.vertex = joinPath(directory, vertex);
    if (!fragment.empty()) paths.fragment = joinPath(directory, fragment);
    if (!buffer.empty()) paths.buffer = joinPath(directory, buffer);
    return paths;
}

} // namespace

std::string builtinShaderDir(const std::string& baseDir, const std::string& name) {
    const BuiltinShader* builtin = findBuiltin(name);
    std::string subdirectory = builtin ? builtin->directory : toLower(name);
    std::replace(subdirectory.begin(), subdirectory.end(), '\\', kPathSeparator);
    for (const std::string& root : shaderRoots(baseDir)) {
        std::string directory = joinPath(root, subdirectory);
        if (packHasDirectory(directory) || isDirectory(directory)) return directory;
    }
    return "";
}

ShaderPaths resolveGlitchShaders(const std::string& name, const std::string& baseDir) {
    ShaderPaths paths;
    for (const std::string& root : shaderRoots(baseDir)) {
        const std::string directory = joinPath(root, "glitch");
        const std::string fragment = joinPath(directory, name + ".frag");
        if (!fileExists(fragment)) continue;
        paths.fragment = fragment;
        useIfThere(paths.vertex, directory, "Glitch.vert");
        useIfThere(paths.vertex, directory, name + ".vert");
        break;
    }
    return paths;
}

bool readShaderPair(const std::string& baseDir, const std::string& directory, const std::string& name,
                    ShaderPair& sources) {
    for (const std::string& root : shaderRoots(baseDir)) {
        const std::string stem = joinPath(joinPath(root, directory), name);
        if (!fileExists(stem + ".vert") || !fileExists(stem + ".frag")) continue;
        sources = {readTextFile(stem + ".vert"), readTextFile(stem + ".frag")};
        return !sources.vertex.empty() && !sources.fragment.empty();
    }
    return false;
}

ShaderPaths resolveShaderSources(const std::string& type, const std::string& baseDir) {
    if (type.empty()) return {};
    const BuiltinShader* builtin = findBuiltin(type);
    return builtin ? findBuiltinFiles(baseDir, *builtin) : findFilesOfType(baseDir, type);
}
