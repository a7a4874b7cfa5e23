// Uniforms by name and declared type, the standard values that every effect gets, and input channels.
//
// A value is written only when the program declares the name, converted to the declared type. The program
// must be in use when a setter is called.
#pragma once

#include "config/timeline_entry.h"
#include "platform/gl.h"

#include <array>
#include <string>
#include <unordered_map>

struct UniformInfo {
    GLint location = -1; // negative: not declared
    GLenum type = 0;
    GLint size = 0; // array elements
};

constexpr int kBufferUnit = kChannelCount; // texture unit of the buffer pass's picture, behind the channels

// Uniforms that the player writes itself, resolved when the table is built: a steady frame looks up no name.
enum class StandardUniform {
    iResolution,
    uResolution,
    iTime,
    uTime,
    iFrame,
    uAlpha,
    iMouse,
    iChannel0, // from here to uBufferA: samplers
    iChannel1,
    iChannel2,
    iChannel3,
    uTex,
    uTexture,
    uBackground,
    uTexA,
    uInputTex,
    uTexB,
    uBufferA,
    uUvScale,
    uUvOffset,
    count
};

struct UniformTable {
    std::unordered_map<std::string, UniformInfo> byName; // arrays under their bare name
    std::array<UniformInfo, static_cast<size_t>(StandardUniform::count)> standard;
    std::array<GLint, kChannelCount> channelResolution = {-1, -1, -1, -1}; // element locations
    bool channelResolutionIsVec2 = true;
};

struct ChannelBinding {
    GLuint texture = 0; // 0: nothing bound
    int width = 0;      // pixels
    int height = 0;
    std::string path; // where the image came from
};

using Channels = std::array<ChannelBinding, kChannelCount>;

// The picture of another effect, handed to a draw in place of one channel.
struct InputTexture {
    GLuint texture = 0; // 0: none
    int width = 0;      // pixels; not positive takes the draw's size
    int height = 0;
    int channel = 0; // clamped to 0..3
};

// Built on first request and kept until the program is deleted.
const UniformTable& uniformTable(GLuint program);
void forgetProgramUniforms(GLuint program); // 0 is ignored

// Null when the program does not declare the name.
const UniformInfo* findUniform(GLuint program, const std::string& name);

// The same by value; with location -1 when it is not declared. For those who write it every frame.
UniformInfo uniformNamed(GLuint program, const std::string& name);

// True for a name that the player writes itself, so that a show cannot.
bool isStandardUniform(const std::string& name);

// Whether the program samples channel 0 under any of its names.
bool samplesChannel0(GLuint program);

// Setters by resolved uniform; true when something was written. Floats go to int-like uniforms (int, bool,
// samplers, integer samplers) rounded to nearest, halves away from zero. A vector is cut or filled up with
// (.., 0, 1) to the declared size.
bool setUniformFloat(const UniformInfo& uniform, float value);
bool setUniformInt(const UniformInfo& uniform, int value);
bool setUniformVec2(const UniformInfo& uniform, float x, float y);
bool setUniformVec3(const UniformInfo& uniform, float x, float y, float z);
bool setUniformVec4(const UniformInfo& uniform, float x, float y, float z, float w);

// The same by name.
bool setUniformFloat(GLuint program, const std::string& name, float value);
bool setUniformInt(GLuint program, const std::string& name, int value);
bool setUniformVec2(GLuint program, const std::string& name, float x, float y);
bool setUniformVec3(GLuint program, const std::string& name, float x, float y, float z);
bool setUniformVec4(GLuint program, const std::string& name, float x, float y, float z, float w);

// Resolution in pixels, time in seconds, alpha 0..1, under both families of names.
void setStandardUniforms(GLuint program, float time, int frame, float alpha, int width, int height);

// A standard uniform of a program, with location -1 when it is not declared.
const UniformInfo& standardUniform(GLuint program, StandardUniform name);

// Binds a texture to unit `channel` (0 to 3) and points the channel's samplers there. Texture 0 changes
// nothing: the unit keeps what it had.
void bindChannel(GLuint program, int channel, GLuint texture);

// Points every sampler of the channels and of the buffer pass's picture at unit 0, where linking leaves them: in a
// program that was lent before they are where its last effect had them.
void resetSamplers(GLuint program);

// All channels, then `input` (may be null) over its channel, then their resolutions.
void bindChannels(GLuint program, const Channels& channels, int defaultWidth, int defaultHeight,
                  const InputTexture* input);

// iChannelResolution: each channel's size in pixels, the default size where it has no texture.
void setChannelResolutions(GLuint program, const Channels& channels, int defaultWidth, int defaultHeight,
                           const InputTexture* input);

// Binds the buffer pass's picture as uBufferA, on a unit of its own; texture 0 changes nothing.
void bindBufferTexture(GLuint program, GLuint texture);
