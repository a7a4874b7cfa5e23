#include "config/transition_look.h"

#include "foundation/json.h"

namespace {

using Look = TransitionLook;

constexpr auto kStyles = wordsOf<int>(Spelling::anyCase, {{"fade", 0},
                                                          {"wipe", 1},
                                                          {"vertical", 1},
                                                          {"bands", 2},
                                                          {"curtains", 3},
                                                          {"horizontal", 4},
                                                          {"dissolve", 5},
                                                          {"noise_smoke", 6},
                                                          {"noise_organic", 7},
                                                          {"noise_glitch", 8},
                                                          {"wavy", 9},
                                                          {"crosswarp", 10},
                                                          {"burning", 11},
                                                          {"pixellated", 12},
                                                          {"radialwipe", 13},
                                                          {"dots", 14}});
constexpr int kFade = 0;

constexpr KeyOf<Look> kPresetKeys[] = {key<&Look::effectId>("type", kStyles, kFade)};
constexpr KeyOf<Look> kMixKeys[] = {key<&Look::effectId>("mixMode", kStyles, kFade)};

constexpr KeyOf<Look> kLookKeys[] = {
    key<&Look::startDelay>("startDelay"),
    key<&Look::softness>("softness"),
    key<&Look::bands>("bands"),
    key<&Look::rotationDeg>("rotation"),
    key<&Look::blockSizePx>("blockSize"),
    key<&Look::noiseScale>("noiseScale"),
    key<&Look::noiseSpeed>("noiseSpeed"),
    key<&Look::noiseThreshold>("noiseThreshold"),
    key<&Look::waveAmplitude>("waveAmplitude"),
    key<&Look::dotFrequency>("dotFrequency"),
    key<&Look::dotPower>("dotPower"),
};

} // namespace

int transitionStyleCode(std::string_view name) {
    return valueOfWord(name, kStyles, kFade);
}

TransitionLook readPresetLook(const JsonValue& preset, const Reading& at) {
    TransitionLook look;
    readKeys(preset, kPresetKeys, look, at);
    readKeys(find(preset, "params"), kLookKeys, look, inside(at, "params"));
    return look;
}

TransitionLook readMixLook(const JsonValue& params, const Reading& at) {
    TransitionLook look;
    readKeys(params, kMixKeys, look, at);
    readKeys(params, kLookKeys, look, at);
    return look;
}
