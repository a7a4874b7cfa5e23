// Pictures that the shipped shaders draw, in a target of any size.
#pragma once

#include "support/gl_test.h"

#include "gpu/shader_pack.h"

class PictureTest : public GlTest {
protected:
    // `shaders`: a pair below the gallery's shaders, without extension.
    explicit PictureTest(const char* shaders) : stem(GALLERY_PATH "/DemoSceneResources/assets/shaders/") {
        stem += shaders;
    }

    void SetUp() override {
        GlTest::SetUp();
        program = linkProgram(readTextFile(stem + ".vert"), readTextFile(stem + ".frag"), stem);
        ASSERT_NE(program, 0u);
    }

    void TearDown() override {
        deleteTarget(target);
        deleteProgram(program);
        GlTest::TearDown();
    }

    // Binds a new target, black.
    void startPicture(int width, int height) {
        deleteTarget(target);
        target = createRenderTarget(width, height);
        bindTarget(target);
        clear(0, 0, 0, 1);
    }

    // Counted from the top left, as texts are laid out.
    Pixel at(double x, double y) const { return pixel(static_cast<int>(x), target.height - 1 - static_cast<int>(y)); }

    std::string stem;
    GLuint program = 0;
    RenderTarget target;
};
