#include "effects/composite.h"

#include "foundation/log.h"

std::unique_ptr<Effect> createChild(const Materials& materials, const TimelineEntry& child) {
    auto effect = std::make_unique<Effect>();
    if (child.presence == Presence::tooDeep) {
        logLine("    [WARN] %s is nested deeper than %d effects and left out\n", child.id.c_str(), kMaxNesting);
        return effect;
    }
    *effect = createEffect(materials, child);
    return effect;
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
