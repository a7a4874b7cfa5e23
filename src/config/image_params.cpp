#include "config/image_params.h"

namespace {

constexpr NamedValue<FitMode> kFitNames[] = {
    {"stretch", FitMode::stretch}, {"fit", FitMode::contain}, {"contain", FitMode::contain},
    {"fill", FitMode::cover},      {"cover", FitMode::cover},
};
constexpr auto kFits = wordsOf(Spelling::anyCase, kFitNames);

constexpr KeyOf<ImageParams> kKeys[] = {key<&ImageParams::fit>("fit", kFits, FitMode::stretch)};

} // namespace

ImageParams readImageParams(const JsonValue& json, const Reading& at) {
    ImageParams params;
    readKeys(json, kKeys, params, at);
    return params;
}
