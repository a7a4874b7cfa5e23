#include "support/gl_test.h"
#include "support/log_capture.h"

#include "gpu/program_pool.h"

#include <cstring>

namespace {

using ProgramTest = GlTest;

constexpr const char* kBroken = "#version 330 core\nvoid main() { this is no shader }\n";
constexpr const char* kRed = "#version 330 core\nout vec4 c; void main() { c = vec4(1, 0, 0, 1); }\n";

TEST_F(ProgramTest, ReportsWhatFailsOnceAndUnderItsLabel) {
    const char* const unfit = "#version 330 core\nin vec3 vUV; out vec4 c; void main() { c = vec4(vUV, 1); }\n";
    const struct { const char* vertex; const char* fragment; const char* opening; } cases[] = {
        {kBroken, kRed, "[SHADER ERROR] beacon:\n"},
        {kQuadVertexSource, kBroken, "[SHADER ERROR] beacon:\n"},
        {kQuadVertexSource, unfit, "[LINK ERROR] beacon:\n"},
    };
    for (const auto& c : cases) {
        const LogCapture log;
        EXPECT_EQ(linkProgram(c.vertex, c.fragment, "beacon"), 0u);
        EXPECT_TRUE(log.text().starts_with(c.opening)) << log.text();
        EXPECT_EQ(log.text().find("ERROR]", 9), std::string::npos) << log.text();
        EXPECT_GT(log.text().size(), std::strlen(c.opening) + 1) << "the driver's words are missing";
    }
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
    deletePooledPrograms();
}

TEST_F(ProgramTest, TargetsAreKeptWhileTheirSizeStands) {
    RenderTarget target;
    EXPECT_TRUE(ensureTarget(target, 6, 3));
    EXPECT_FALSE(ensureTarget(target, 6, 3));

    const DrawBinding window = saveBinding();
    bindTarget(target);
    clear(0.2f, 0.4f, 0.6f, 0.8f);
    EXPECT_PIXEL(pixel(5, 2), Pixel{51, 102, 153, 204});
    restoreBinding(window);
    EXPECT_PIXEL(pixel(), Pixel{0, 0, 0, 255});

    EXPECT_TRUE(ensureTarget(target, 0, -5)) << "a minimised window must not make an incomplete target";
    bindTarget(target);
    EXPECT_EQ(gl.CheckFramebufferStatus(GL_FRAMEBUFFER), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    restoreBinding(window);
    deleteTarget(target);
}

} // namespace
