#include "config/bitmap_text_params.h"

namespace {

using Params = BitmapTextParams;

constexpr KeyOf<Params> kKeys[] = {
    key<&Params::text>("text"),
    key<&Params::textColor>("textColor").whole(),
    key<&Params::bgColor>("bgColor").whole(),
    key<&Params::textPosX>("textPosX"),
    key<&Params::textPosY>("textPosY"),
    key<&Params::scale>("scale"),
    key<&Params::spacing>("spacing"),
    key<&Params::lineSpacing>("lineSpacing"),
    key<&Params::alpha>("alpha", {0.0f, 1.0f}),
};

} // namespace

BitmapTextParams parseBitmapTextParams(const JsonValue& json, const Reading& at) {
    BitmapTextParams params;
    readKeys(json, kKeys, params, at);
    return params;
}
