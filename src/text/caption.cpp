#include "text/caption.h"

#include "foundation/log.h"
#include "gpu/gl_functions.h"

#include <algorithm>

namespace {

void logCuts(const CaptionParams& params) {
    if (params.entriesCut) {
        logLine("    [WARN] Credit roll cut: %d entries of at most %d, texts of at most %d bytes, together %d\n",
                static_cast<int>(params.entries.size()), static_cast<int>(kMaxCreditEntries),
                static_cast<int>(kMaxCaptionTextBytes), static_cast<int>(kMaxCreditBytes));
    }
    if (params.textsCut) {
        logLine("    [WARN] Caption text cut to %d bytes\n", static_cast<int>(kMaxCaptionTextBytes));
    }
}

void layout(Caption& caption, int width, int height) {
    if (caption.layoutWidth == width && caption.layoutHeight == height) return;
    caption.layoutWidth = width;
    caption.layoutHeight = height;
    size_t most = kCaptionQuadFloats;
    if (caption.params.isCreditRoll) {
        caption.creditRoll = layoutCreditRoll(caption.params, *caption.letters, width, height);
        most = std::max(most, caption.creditRoll.mostFloats);
    } else {
        caption.lowerThird = layoutLowerThird(caption.params, *caption.letters, width, height);
        most = std::max(most, maxLowerThirdFloats(caption.lowerThird));
    }
    caption.vertices.reserve(most);
}

} // namespace

bool createCaption(Fonts& fonts, Caption& caption, const CaptionParams& params, float duration,
                   const std::string& baseDir, const Program& program, int width, int height) {
    logCuts(params);
    caption.params = params;
    caption.duration = duration;
    if (!loadColorFont(fonts, baseDir, caption.params.fontPath, caption.font)) return false;
    caption.letters = &fonts.colorFonts.find(caption.font.jsonPath)->second.letters;
    caption.fontTexture = uniformNamed(program.uniforms, "uFontTexture");
    caption.atlasSize = uniformNamed(program.uniforms, "uAtlasSize");
    caption.cellSize = uniformNamed(program.uniforms, "uCellSize");
    caption.stream = createVertexStream({2, 2, 1, 4, 1});
    layout(caption, width, height);
    return true;
}

void buildCaption(Caption& caption, float time, int width, int height) {
    layout(caption, width, height);
    caption.vertices.clear();
    if (caption.params.isCreditRoll) {
        appendCreditRoll(caption.vertices, caption.creditRoll, caption.params, *caption.letters, time,
                         caption.duration);
    } else {
        appendLowerThird(caption.vertices, caption.lowerThird, caption.params, *caption.letters, time,
                         caption.duration);
    }
    // Drivers compile at the first draw, which must not wait for the first letter.
    if (caption.vertices.empty()) appendNothing(caption.vertices);
}

void drawCaption(Caption& caption, Program& program, const UniformValues& values, const Draw& draw) {
    if (!caption.font.texture) return;
    buildCaption(caption, static_cast<float>(draw.time), draw.width, draw.height);
    Draw own = draw;
    own.blending = caption.params.blendMode;
    own.opacity = caption.params.alpha;
    beginDraw(own);
    useProgram(program, values);
    setStandardUniforms(program.uniforms, own);
    setUniformInt(caption.fontTexture, 0);
    setUniformVec2(caption.atlasSize, static_cast<float>(caption.font.textureWidth),
                   static_cast<float>(caption.font.textureHeight));
    setUniformVec2(caption.cellSize, caption.letters->cellWidth, caption.letters->cellHeight);
    gl.ActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, caption.font.texture);
    drawVertexStream(caption.stream, caption.vertices);
}

void releaseCaption(Caption& caption) {
    deleteVertexStream(caption.stream);
    releaseColorFont(caption.font);
    caption = {};
}
