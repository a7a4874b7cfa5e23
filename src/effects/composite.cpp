#include "effects/composite.h"

#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/gl_functions.h"
#include "gpu/program.h"
#include "gpu/program_pool.h"
#include "gpu/quad.h"

namespace {

// Stands in for a child that is missing: no type, the fallback image on channel 0.
JsonValue fallbackChild(const std::string& image) {
    JsonValue path, params, child;
    path.kind = JsonKind::string;
    path.text = image;
    params.kind = JsonKind::object;
    params.members.push_back({"image", std::move(path)});
    child.kind = JsonKind::object;
    child.members.push_back({"params", std::move(params)});
    return child;
}

} // namespace

std::unique_ptr<Effect> createChild(const JsonValue& json, const TimelineEntry& parent, const std::string& suffix) {
    auto child = std::make_unique<Effect>();
    if (parent.depth >= kMaxNesting) {
        logLine("    [WARN] %s_%s is nested deeper than %d effects and left out\n", parent.id.c_str(), suffix.c_str(),
                kMaxNesting);
        return child;
    }
    const bool isMissing = json.kind != JsonKind::object;
    *child = createEffect(isMissing ? deriveChildEntry(fallbackChild(parent.fallbackImage), parent, suffix)
                                    : deriveChildEntry(json, parent, suffix));
    return child;
}

std::string childType(const JsonValue& json) {
    const std::string type = keptName(getString(find(json, "type"), ""));
    return orNone(type);
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
