// Pictures of a size that the test chooses, drawn by the gallery's shaders out of a show in a temporary folder.
#pragma once

#include "support/gl_test.h"
#include "support/temp_show.h"

#include "gpu/draw.h"
#include "gpu/shader_pack.h"
#include "gpu/uniform_values.h"
#include "text/bitmap_font.h"
#include "text/fonts.h"

class PictureTest : public GlTest {
protected:
    // `shaders`: a pair below the gallery's shaders, without extension. The picture's size is in pixels.
    PictureTest(const char* shaders, int pictureWidth, int pictureHeight)
        : stem(std::string(GALLERY_PATH "/DemoSceneResources/assets/shaders/") + shaders), width(pictureWidth),
          height(pictureHeight) {}

    void SetUp() override {
        GlTest::SetUp();
        program = linkProgram(readTextFile(stem + ".vert"), readTextFile(stem + ".frag"), stem);
        ASSERT_NE(program.handle, 0u);
        values = makeUniformValues(device.programs, program);
        startPicture(width, height);
    }

    // The next test finds nothing loaded.
    void TearDown() override {
        deleteTarget(target);
        deleteProgram(program);
        deleteTextures(device.textures);
        deleteFonts(fonts);
        GlTest::TearDown();
    }

    // Goes on to another picture, black.
    void startPicture(int newWidth, int newHeight) {
        width = newWidth;
        height = newHeight;
        ensureTarget(target, width, height);
        bindTarget(target);
        clear(0, 0, 0, 1);
    }

    // A draw over the whole picture.
    Draw drawAt(float time) const {
        Draw draw;
        draw.framebuffer = target.framebuffer;
        draw.width = width;
        draw.height = height;
        draw.time = static_cast<double>(time);
        return draw;
    }

    // Counted from the top left, as texts are laid out.
    Pixel at(double x, double y) const { return pixel(static_cast<int>(x), height - 1 - static_cast<int>(y)); }

    std::string stem;
    int width = 0;
    int height = 0;
    Program program;
    UniformValues values;
    Fonts fonts;
    RenderTarget target;
    TempShow show;
};
