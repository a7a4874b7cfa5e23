#include "gpu/uniforms.h"

#include "gpu/gl_functions.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

// In the order of StandardUniform.
constexpr const char* kStandardNames[] = {
    "iResolution", "uResolution", "iTime",     "uTime",     "iFrame",   "uAlpha",    "iMouse",
    "iChannel0",   "iChannel1",   "iChannel2", "iChannel3", "uTex",     "uTexture",  "uBackground",
    "uTexA",       "uInputTex",   "uTexB",     "uBufferA",  "uUvScale", "uUvOffset",
};
static_assert(std::size(kStandardNames) == static_cast<size_t>(StandardUniform::count));

// The names under which each channel is sampled.
constexpr StandardUniform kChannel0Names[] = {
    StandardUniform::iChannel0,   StandardUniform::uTex,  StandardUniform::uTexture,
    StandardUniform::uBackground, StandardUniform::uTexA, StandardUniform::uInputTex,
};

std::unordered_map<GLuint, UniformTable>& tables() {
    static std::unordered_map<GLuint, UniformTable> instance;
    return instance;
}

bool isIntLike(GLenum type) {
    switch (type) {
    case GL_INT:
    case GL_BOOL:
    case GL_SAMPLER_1D:
    case GL_SAMPLER_2D:
    case GL_INT_SAMPLER_1D:
    case GL_UNSIGNED_INT_SAMPLER_1D: return true;
    default: return false;
    }
}

GLint roundToInt(float value) {
    if (std::isnan(value)) return 0;
    const float limit = 2147483520.0f; // the largest float below 2^31
    return static_cast<GLint>(std::round(std::clamp(value, -limit, limit)));
}

void resolveChannelResolutions(GLuint program, UniformTable& table) {
    const auto found = table.byName.find("iChannelResolution");
    const UniformInfo* array = found == table.byName.end() ? nullptr : &found->second;
    if (array) table.channelResolutionIsVec2 = array->type == GL_FLOAT_VEC2;
    for (int i = 0; i < kChannelCount; ++i) {
        if (array && i < array->size) {
            table.channelResolution[i] = array->location + i;
        } else {
            const std::string element = "iChannelResolution[" + std::to_string(i) + "]";
            table.channelResolution[i] = gl.GetUniformLocation(program, element.c_str());
        }
    }
}

UniformTable buildTable(GLuint program) {
    UniformTable table;
    GLint count = 0, maxLength = 0;
    gl.GetProgramiv(program, GL_ACTIVE_UNIFORMS, &count);
    gl.GetProgramiv(program, GL_ACTIVE_UNIFORM_MAX_LENGTH, &maxLength);
    std::vector<char> buffer(static_cast<size_t>(std::max(maxLength, 0)) + 1);
    for (GLint i = 0; i < count; ++i) {
        UniformInfo info;
        gl.GetActiveUniform(program, static_cast<GLuint>(i), static_cast<GLsizei>(buffer.size()), nullptr, &info.size,
                            &info.type, buffer.data());
        if (char* bracket = std::strstr(buffer.data(), "[0]")) *bracket = '\0';
        info.location = gl.GetUniformLocation(program, buffer.data());
        if (info.location >= 0) table.byName.emplace(buffer.data(), info);
    }
    for (size_t i = 0; i < table.standard.size(); ++i) {
        const auto found = table.byName.find(kStandardNames[i]);
        if (found != table.byName.end()) table.standard[i] = found->second;
    }
    resolveChannelResolutions(program, table);
    return table;
}

const UniformInfo& standardOf(const UniformTable& table, StandardUniform name) {
    return table.standard[static_cast<size_t>(name)];
}

void bindTextureUnit(int unit, GLuint texture) {
    gl.ActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
    glBindTexture(GL_TEXTURE_2D, texture);
}

void bindChannel(const UniformTable& table, int channel, GLuint texture) {
    if (!texture || channel < 0 || channel >= kChannelCount) return;
    bindTextureUnit(channel, texture);
    const int iChannel = static_cast<int>(StandardUniform::iChannel0) + channel;
    setUniformInt(standardOf(table, static_cast<StandardUniform>(iChannel)), channel);
    if (channel == 0) {
        for (const StandardUniform name : kChannel0Names) setUniformInt(standardOf(table, name), 0);
    }
    if (channel == 1) setUniformInt(standardOf(table, StandardUniform::uTexB), 1);
}

int inputChannel(const InputTexture& input) {
    return std::clamp(input.channel, 0, kChannelCount - 1);
}

void setChannelResolutions(const UniformTable& table, const Channels& channels, int defaultWidth, int defaultHeight,
                           const InputTexture* input) {
    for (int i = 0; i < kChannelCount; ++i) {
        if (table.channelResolution[i] < 0) continue;
        int width = channels[i].texture ? channels[i].width : defaultWidth;
        int height = channels[i].texture ? channels[i].height : defaultHeight;
        if (input && input->texture && inputChannel(*input) == i) {
            width = input->width > 0 ? input->width : defaultWidth;
            height = input->height > 0 ? input->height : defaultHeight;
        }
        gl.Uniform2f(table.channelResolution[i], static_cast<float>(width), static_cast<float>(height));
        // Elements declared as another type make GL raise an error, which must not be taken for
        // anybody else's later on.
        if (!table.channelResolutionIsVec2) glGetError();
    }
}

} // namespace

const UniformTable& uniformTable(GLuint program) {
    const auto found = tables().find(program);
    if (found != tables().end()) return found->second;
    return tables().emplace(program, buildTable(program)).first->second;
}

void forgetProgramUniforms(GLuint program) {
    if (program) tables().erase(program);
}

const UniformInfo* findUniform(GLuint program, const std::string& name) {
    const UniformTable& table = uniformTable(program);
    const auto found = table.byName.find(name);
    return found == table.byName.end() ? nullptr : &found->second;
}

UniformInfo uniformNamed(GLuint program, const std::string& name) {
    const UniformInfo* uniform = findUniform(program, name);
    return uniform ? *uniform : UniformInfo{};
}

bool isStandardUniform(const std::string& name) {
    return name == "iChannelResolution" ||
           std::find(std::begin(kStandardNames), std::end(kStandardNames), name) != std::end(kStandardNames);
}

bool samplesChannel0(GLuint program) {
    if (!program) return false;
    const UniformTable& table = uniformTable(program);
    return std::any_of(std::begin(kChannel0Names), std::end(kChannel0Names),
                       [&](StandardUniform name) { return standardOf(table, name).type == GL_SAMPLER_2D; });
}

bool setUniformFloat(const UniformInfo& uniform, float value) {
    if (uniform.location < 0) return false;
    if (uniform.type == GL_FLOAT) {
        gl.Uniform1f(uniform.location, value);
    } else if (isIntLike(uniform.type)) {
        gl.Uniform1i(uniform.location, roundToInt(value));
    } else {
        return false;
    }
    return true;
}

bool setUniformInt(const UniformInfo& uniform, int value) {
    if (uniform.location < 0) return false;
    if (isIntLike(uniform.type)) {
        gl.Uniform1i(uniform.location, value);
    } else if (uniform.type == GL_FLOAT) {
        gl.Uniform1f(uniform.location, static_cast<float>(value));
    } else {
        return false;
    }
    return true;
}

bool setUniformVec4(const UniformInfo& uniform, float x, float y, float z, float w) {
    if (uniform.location < 0) return false;
    switch (uniform.type) {
    case GL_FLOAT_VEC2: gl.Uniform2f(uniform.location, x, y); return true;
    case GL_FLOAT_VEC3: gl.Uniform3f(uniform.location, x, y, z); return true;
    case GL_FLOAT_VEC4: gl.Uniform4f(uniform.location, x, y, z, w); return true;
    default: return false;
    }
}

bool setUniformVec3(const UniformInfo& uniform, float x, float y, float z) {
    return setUniformVec4(uniform, x, y, z, 1.0f);
}

bool setUniformVec2(const UniformInfo& uniform, float x, float y) {
    return setUniformVec4(uniform, x, y, 0.0f, 1.0f);
}

bool setUniformFloat(GLuint program, const std::string& name, float value) {
    return setUniformFloat(uniformNamed(program, name), value);
}

bool setUniformInt(GLuint program, const std::string& name, int value) {
    return setUniformInt(uniformNamed(program, name), value);
}

bool setUniformVec2(GLuint program, const std::string& name, float x, float y) {
    return setUniformVec2(uniformNamed(program, name), x, y);
}

bool setUniformVec3(GLuint program, const std::string& name, float x, float y, float z) {
    return setUniformVec3(uniformNamed(program, name), x, y, z);
}

bool setUniformVec4(GLuint program, const std::string& name, float x, float y, float z, float w) {
    return setUniformVec4(uniformNamed(program, name), x, y, z, w);
}

void setStandardUniforms(GLuint program, float time, int frame, float alpha, int width, int height) {
    const UniformTable& table = uniformTable(program);
    const float w = static_cast<float>(width), h = static_cast<float>(height);
    setUniformVec3(standardOf(table, StandardUniform::iResolution), w, h, 1.0f);
    setUniformVec3(standardOf(table, StandardUniform::uResolution), w, h, 1.0f);
    setUniformFloat(standardOf(table, StandardUniform::iTime), time);
    setUniformFloat(standardOf(table, StandardUniform::uTime), time);
    setUniformInt(standardOf(table, StandardUniform::iFrame), frame);
    setUniformFloat(standardOf(table, StandardUniform::uAlpha), alpha);
    setUniformVec2(standardOf(table, StandardUniform::iMouse), 0.0f, 0.0f);
}

const UniformInfo& standardUniform(GLuint program, StandardUniform name) {
    return standardOf(uniformTable(program), name);
}

void bindChannel(GLuint program, int channel, GLuint texture) {
    bindChannel(uniformTable(program), channel, texture);
}

void resetSamplers(GLuint program) {
    gl.UseProgram(program);
    const UniformTable& table = uniformTable(program);
    const auto first = static_cast<size_t>(StandardUniform::iChannel0);
    const auto last = static_cast<size_t>(StandardUniform::uBufferA);
    for (size_t i = first; i <= last; ++i) {
        if (table.standard[i].type == GL_SAMPLER_2D) setUniformInt(table.standard[i], 0);
    }
}

void bindChannels(GLuint program, const Channels& channels, int defaultWidth, int defaultHeight,
                  const InputTexture* input) {
    const UniformTable& table = uniformTable(program);
    for (int i = 0; i < kChannelCount; ++i) bindChannel(table, i, channels[i].texture);
    if (input && input->texture) bindChannel(table, inputChannel(*input), input->texture);
    setChannelResolutions(table, channels, defaultWidth, defaultHeight, input);
}

void setChannelResolutions(GLuint program, const Channels& channels, int defaultWidth, int defaultHeight,
                           const InputTexture* input) {
    setChannelResolutions(uniformTable(program), channels, defaultWidth, defaultHeight, input);
}

void bindBufferTexture(GLuint program, GLuint texture) {
    if (!texture) return;
    bindTextureUnit(kBufferUnit, texture);
    setUniformInt(standardUniform(program, StandardUniform::uBufferA), kBufferUnit);
}
