#include "support/gl_test.h"
#include "support/log_capture.h"

#include "gpu/program_pool.h"
#include "gpu/readback.h"

#include <cstring>

namespace {

using ProgramTest = GlTest;

constexpr const char* kBroken = "#version 330 core\nvoid main() { this is no shader }\n";
constexpr const char* kRed = "#version 330 core\nout vec4 c; void main() { c = vec4(1, 0, 0, 1); }\n";

int countOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST_F(ProgramTest, ReportsWhatFailsOnceAndUnderItsLabel) {
    const char* const unfit = "#version 330 core\nin vec3 vUV; out vec4 c; void main() { c = vec4(vUV, 1); }\n";
    const struct {
        const char* vertex;
        const char* fragment;
        const char* opening; // of the log
    } cases[] = {
        {"", kRed, ""},
        {kQuadVertexSource, "", ""},
        {kBroken, kRed, "[SHADER ERROR] beacon:\n"},
        {kQuadVertexSource, kBroken, "[SHADER ERROR] beacon:\n"},
        {kQuadVertexSource, unfit, "[LINK ERROR] beacon:\n"},
    };
    for (const auto& c : cases) {
        LogCapture log;
        EXPECT_EQ(linkProgram(c.vertex, c.fragment, "beacon"), 0u);
        const std::string text = log.text();
        EXPECT_EQ(countOf(text, "ERROR]"), *c.opening ? 1 : 0) << text;
        EXPECT_TRUE(text.starts_with(c.opening)) << text;
        EXPECT_EQ(text.size() > std::strlen(c.opening) + 1, *c.opening != 0) << "the driver's words are missing";
    }
}

TEST_F(ProgramTest, FunctionTableFailsAsAWholeWhenTheDriverLacksOne) {
    const GlFunctions whole = gl;
    // A driver without an entry point that stands late in the table.
    const auto lookup = [](const char* name) -> GlAddress {
        return std::string(name) == "glCheckFramebufferStatus" ? nullptr : reinterpret_cast<GlAddress>(&std::abort);
    };
    EXPECT_FALSE(loadGlFunctions(lookup));
    EXPECT_NE(gl.FramebufferTexture2D, nullptr);
    EXPECT_EQ(gl.ActiveTexture, nullptr) << "the fields behind the missing one stay empty";
    gl = whole;
}

TEST_F(ProgramTest, PoolLendsAProgramToOneEffectAtATime) {
    const GLuint first = borrowProgram(kQuadVertexSource, kRed, "speed=1", "a");
    const GLuint second = borrowProgram(kQuadVertexSource, kRed, "speed=1", "b");
    EXPECT_NE(first, 0u);
    EXPECT_NE(first, second);
    returnProgram(first);
    EXPECT_NE(borrowProgram(kQuadVertexSource, kRed, "speed=2", "c"), first) << "its uniforms hold other values";
    EXPECT_EQ(borrowProgram(kQuadVertexSource, kRed, "speed=1", "d"), first);

    EXPECT_TRUE(markWarm(first, 1));
    EXPECT_FALSE(markWarm(first, 1));
    EXPECT_TRUE(markWarm(first, 2)) << "another draw state is cold";
    EXPECT_TRUE(markWarm(second, 1));

    for (int attempt = 0; attempt < 2; ++attempt) {
        LogCapture log;
        EXPECT_EQ(borrowProgram(kQuadVertexSource, kBroken, "", "broken"), 0u);
        EXPECT_EQ(countOf(log.text(), "[SHADER ERROR] broken:\n"), 1) << "a failure reports each time";
    }
    deletePooledPrograms();
}

TEST_F(ProgramTest, TargetsAreKeptWhileTheirSizeStands) {
    RenderTarget target;
    EXPECT_TRUE(ensureTarget(target, 6, 3));
    const GLuint texture = target.texture;
    EXPECT_FALSE(ensureTarget(target, 6, 3));
    EXPECT_EQ(target.texture, texture);

    const DrawBinding window = saveBinding();
    bindTarget(target);
    EXPECT_EQ(gl.CheckFramebufferStatus(GL_FRAMEBUFFER), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    clear(0.2f, 0.4f, 0.6f, 0.8f);
    EXPECT_PIXEL(pixel(5, 2), Pixel{51, 102, 153, 204});
    restoreBinding(window);
    EXPECT_PIXEL(pixel(), Pixel{0, 0, 0, 255});

    EXPECT_TRUE(ensureTarget(target, 0, -5)) << "a minimised window must not make an incomplete target";
    EXPECT_EQ(target.width, 1);
    EXPECT_EQ(target.height, 1);
    deleteTarget(target);
    deleteTarget(target);
    EXPECT_EQ(target.texture, 0u);
}

TEST_F(ProgramTest, ReadbackHandsFramesOverInOrder) {
    Readback readback;
    ASSERT_TRUE(createReadback(readback, glLookup(surface()), kWidth, kHeight));
    int taken = 0;
    const auto takeOne = [&] {
        const unsigned char* bytes = mapFrame(readback);
        ASSERT_NE(bytes, nullptr);
        const unsigned char* last = bytes + (kWidth * kHeight - 1) * 4;
        EXPECT_EQ(last[2], taken * 51) << "red of frame " << taken;
        releaseFrame(readback);
        ++taken;
    };
    for (int frame = 0; frame < 5; ++frame) {
        clear(static_cast<float>(frame) / 5.0f, 0, 0, 1);
        requestFrame(readback);
        if (readback.requested - readback.released == Readback::kSlots) takeOne();
    }
    while (readback.requested > readback.released) takeOne();
    EXPECT_EQ(taken, 5);
    deleteReadback(readback);
}

} // namespace
