#include "support/gl_test.h"
#include "support/log_capture.h"

#include "gpu/program_table.h"

namespace {

using ProgramTest = GlTest;

constexpr const char* kRed = "#version 330 core\nout vec4 c; void main() { c = vec4(1, 0, 0, 1); }\n";

TEST_F(ProgramTest, ReportsWhatFailsOnceAndUnderItsLabel) {
    const char* const broken = "#version 330 core\nvoid main() { this is no shader }\n";
    const char* const unfit = "#version 330 core\nin vec3 vUV; out vec4 c; void main() { c = vec4(vUV, 1); }\n";
    const struct {
        const char* vertex;
        const char* fragment;
        const char* opening;
    } cases[] = {
        {broken, kRed, "[SHADER ERROR] beacon:\n"},
        {kQuadVertexSource, broken, "[SHADER ERROR] beacon:\n"},
        {kQuadVertexSource, unfit, "[LINK ERROR] beacon:\n"},
    };
    for (const auto& c : cases) {
        const LogCapture log;
        EXPECT_EQ(linkProgram(c.vertex, c.fragment, "beacon").handle, 0u);
        EXPECT_TRUE(log.text().starts_with(c.opening)) << log.text();
        EXPECT_EQ(log.text().find("ERROR]", 9), std::string::npos) << log.text();
        EXPECT_GT(log.text().size(), std::string(c.opening).size() + 1) << "the driver's words are missing";
    }
}

TEST_F(ProgramTest, FailuresAreKeptAndSaidEachTime) {
    ProgramTable table;
    for (const char* label : {"a", "b"}) {
        const LogCapture log;
        requestProgram(table, {kQuadVertexSource, "no shader"});
        EXPECT_EQ(findProgram(table, {kQuadVertexSource, "no shader"}, label), nullptr);
        EXPECT_TRUE(log.text().starts_with("[SHADER ERROR] " + std::string(label) + ":\n")) << log.text();
    }
    EXPECT_EQ(table.bySources.size(), 1u);
    deletePrograms(table);
}

TEST_F(ProgramTest, TargetsAreKeptWhileTheirSizeStands) {
    RenderTarget target;
    for (const bool isNew : {true, false}) EXPECT_EQ(ensureTarget(target, 6, 3), isNew);
    EXPECT_TRUE(ensureTarget(target, 0, -5)) << "a minimised window must not make an incomplete target";
    bindTarget(target);
    EXPECT_EQ(gl.CheckFramebufferStatus(GL_FRAMEBUFFER), static_cast<GLenum>(GL_FRAMEBUFFER_COMPLETE));
    gl.BindFramebuffer(GL_FRAMEBUFFER, 0);
    deleteTarget(target);
}

} // namespace
