#include "effects/composite.h"

#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/program.h"

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

std::unique_ptr<Effect> createChild(const Materials& materials, const JsonValue& json, const TimelineEntry& parent,
                                    const std::string& suffix) {
    auto child = std::make_unique<Effect>();
    if (parent.depth >= kMaxNesting) {
        logLine("    [WARN] %s_%s is nested deeper than %d effects and left out\n", parent.id.c_str(), suffix.c_str(),
                kMaxNesting);
        return child;
    }
    const bool isMissing = json.kind != JsonKind::object;
    *child = createEffect(materials, isMissing ? deriveChildEntry(fallbackChild(parent.fallbackImage), parent, suffix)
                                               : deriveChildEntry(json, parent, suffix));
    return child;
}

std::string childType(const JsonValue& json) {
    const std::string type = keptName(getString(find(json, "type"), ""));
    return orNone(type);
}

bool createBlit(Device& device, Effect& effect) {
    effect.blit.program = findProgram(device.programs, {kQuadVertexSource, kQuadFragmentSource}, "chain_blit_image");
    if (!effect.blit.program) return false;
    effect.blit.values = makeUniformValues(device.programs, *effect.blit.program);
    return true;
}

Draw childDraw(const Effect& child, const Draw& parent, double parentTime) {
    Draw draw = parent;
    draw.time = parentTime * static_cast<double>(child.timeScale);
    draw.opacity = child.alpha;
    return draw;
}

void renderChild(Device& device, Effect& child, RenderTarget& target, const Draw& parent, double parentTime) {
    renderChild(device, child, target, parent.width, parent.height, parent, parentTime);
}

void renderChild(Device& device, Effect& child, RenderTarget& target, int width, int height, const Draw& parent,
                 double parentTime) {
    beginTarget(device.textures, target, width, height);
    drawEffect(device, child, drawInto(target, childDraw(child, parent, parentTime)));
}

void drawPicture(const Device& device, const Effect& effect, GLuint texture, float alpha) {
    const UniformTable& uniforms = effect.blit.program->uniforms;
    useProgram(*effect.blit.program, effect.blit.values);
    setUniformFloat(standardUniform(uniforms, StandardUniform::uAlpha), alpha);
    setUniformVec2(standardUniform(uniforms, StandardUniform::uUvScale), 1.0f, 1.0f);
    setUniformVec2(standardUniform(uniforms, StandardUniform::uUvOffset), 0.0f, 0.0f);
    bindChannel(uniforms, 0, texture);
    drawQuad(device.quad);
}
