// A real GL 3.3 core context without a display, and the pixels that are drawn in it.
#pragma once

#include "gpu/device.h"
#include "gpu/gl_functions.h"
#include "gpu/render_target.h"
#include "platform/shell_state.h"
#include "platform/window.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

using Pixel = std::array<int, 4>; // R, G, B, A in 0..255

class GlTest : public testing::Test {
protected:
    static constexpr int kWidth = 8; // of framebuffer 0, in pixels
    static constexpr int kHeight = 4;

    static void SetUpTestSuite() {
        ASSERT_NE(surface(), nullptr);
        ASSERT_TRUE(loadGlFunctions(glLookup(surface())));
        device = createDevice();
    }

    static void TearDownTestSuite() { deleteDevice(device); }

    void SetUp() override {
        gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
        glViewport(0, 0, kWidth, kHeight);
        glDisable(GL_BLEND);
        clear(0, 0, 0, 1);
        clearGlErrors();
    }

    // A case that leaves an error behind would hand it to whoever asks next.
    void TearDown() override { EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)); }

    // One context for all cases of the program.
    static Surface* surface() {
        static Surface* instance = createHeadlessSurface(kWidth, kHeight);
        return instance;
    }

    static void clear(float r, float g, float b, float a) {
        glClearColor(r, g, b, a);
        glClear(GL_COLOR_BUFFER_BIT);
    }

    // Lower-left origin, of the framebuffer that is bound.
    static Pixel pixel(int x = 0, int y = 0) {
        unsigned char bytes[4] = {};
        glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
        return {bytes[0], bytes[1], bytes[2], bytes[3]};
    }

    static bool isNear(const Pixel& a, const Pixel& b, int tolerance = 1) {
        for (size_t i = 0; i < a.size(); ++i) {
            if (std::abs(a[i] - b[i]) > tolerance) return false;
        }
        return true;
    }

    static void expectPixel(const Pixel& actual, const Pixel& wanted, int line) {
        EXPECT_TRUE(isNear(actual, wanted)) << "line " << line << ": " << testing::PrintToString(actual)
                                            << " instead of " << testing::PrintToString(wanted);
    }

    // Program of a fragment shader given without its version line.
    static Program link(const std::string& fragment) {
        return linkProgram(kQuadVertexSource, "#version 330 core\n" + fragment, "test");
    }

    // A texture of one colour; bytes R, G, B, A.
    static GLuint solidTexture(std::array<unsigned char, 4> colour, int width = 1, int height = 1) {
        std::vector<unsigned char> texels(static_cast<size_t>(width * height) * 4);
        for (size_t i = 0; i < texels.size(); ++i) texels[i] = colour[i % 4];
        GLuint texture = 0;
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        return texture;
    }

    static inline Device device;
};

#define EXPECT_PIXEL(actual, ...) expectPixel(actual, __VA_ARGS__, __LINE__) // braces hold commas
