#include "effects/composite.h"

#include "foundation/log.h"
#include "gpu/gl_functions.h"
#include "gpu/program.h"
#include "gpu/program_pool.h"
#include "gpu/quad.h"

std::unique_ptr<Effect> createChild(const TimelineEntry& child, const RuntimeConfig& show) {
    auto effect = std::make_unique<Effect>();
    if (child.presence == Presence::tooDeep) {
        logLine("    [WARN] %s is nested deeper than %d effects and left out\n", child.id.c_str(), kMaxNesting);
        return effect;
    }
    *effect = createEffect(child, show);
    return effect;
}

GLuint borrowBlitProgram() {
    return borrowProgram(kQuadVertexSource, kQuadFragmentSource, "", "chain_blit_image");
}

void propagateClock(const Effect& parent, Effect& child, float parentTime) {
    child.localTime = parentTime * child.timeScale;
    child.frameCounter = parent.frameCounter;
}

void renderToTarget(Effect& effect, RenderTarget& target, int width, int height, const InputTexture* input) {
    const DrawBinding output = saveBinding();
    beginTarget(target, width, height);
    glDisable(GL_BLEND);
    drawEffectPasses(effect, target.width, target.height, input);
    restoreBinding(output);
}

void drawPicture(GLuint program, GLuint texture, float alpha) {
    gl.UseProgram(program);
    setUniformFloat(standardUniform(program, StandardUniform::uAlpha), alpha);
    setUniformVec2(standardUniform(program, StandardUniform::uUvScale), 1.0f, 1.0f);
    setUniformVec2(standardUniform(program, StandardUniform::uUvOffset), 0.0f, 0.0f);
    bindChannel(program, 0, texture);
    drawQuad();
}
