#include "effects/image_effect.h"

#include <algorithm>

namespace {

float aspectOf(int width, int height) {
    return height > 0 ? static_cast<float>(width) / static_cast<float>(height) : 1.0f;
}

// Scales one axis about the middle of the picture.
void scaleAxis(float& scale, float& offset, float factor) {
    scale = factor;
    offset = (1.0f - factor) * 0.5f;
}

} // namespace

ImageFit fitImage(FitMode mode, int imageWidth, int imageHeight, int targetWidth, int targetHeight) {
    constexpr float kLeastRatio = 0.0001f;
    const float image = aspectOf(imageWidth, imageHeight);
    const float target = aspectOf(targetWidth, targetHeight);
    const bool wider = image > target;
    ImageFit fit;
    switch (mode) {
    case FitMode::stretch: break;
    case FitMode::contain:
        if (wider) {
            scaleAxis(fit.scaleY, fit.offsetY, 1.0f / std::max(target / image, kLeastRatio));
        } else {
            scaleAxis(fit.scaleX, fit.offsetX, 1.0f / std::max(image / target, kLeastRatio));
        }
        break;
    case FitMode::cover:
        if (wider) {
            scaleAxis(fit.scaleX, fit.offsetX, target / image);
        } else {
            scaleAxis(fit.scaleY, fit.offsetY, image / target);
        }
        break;
    }
    return fit;
}

void drawImageEffect(const Device& device, const Effect& effect, const Draw& draw) {
    const ChannelBinding& image = effect.channels[0];
    const bool handed = draw.input && draw.input->texture;
    if (!handed && !image.texture) return;
    beginDraw(draw);
    useProgram(*effect.main.program, effect.main.values);
    const UniformTable& uniforms = effect.main.program->uniforms;
    setStandardUniforms(uniforms, draw);
    const ImageFit fit = handed ? fitImage(effect.fit, draw.input->width, draw.input->height, draw.width, draw.height)
                                : fitImage(effect.fit, image.width, image.height, draw.width, draw.height);
    setUniformVec2(standardUniform(uniforms, StandardUniform::uUvScale), fit.scaleX, fit.scaleY);
    setUniformVec2(standardUniform(uniforms, StandardUniform::uUvOffset), fit.offsetX, fit.offsetY);
    bindChannel(uniforms, 0, handed ? draw.input->texture : image.texture);
    drawQuad(device.quad);
}
