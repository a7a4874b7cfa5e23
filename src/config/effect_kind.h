// The kinds of effect, and the types of entries that select them.
#pragma once

#include "config/keys.h"

enum class EffectKind {
    none,          // draws nothing
    image,         // the built-in image shader
    shader,        // a full-screen shader, with or without a buffer pass
    bitmapText,    // text out of the bitmap font, drawn by its shader
    kineticText,   // moving text of a colour font
    lowerThird,    // a caption that names what is on screen
    creditRoll,    // captions that scroll by
    shapeText,     // a vector logo
    blend,         // two children, one mixed into the other
    timelineBlend, // children one after the other, mixed where they overlap
    chain,         // a child's picture handed to another child
    dynamicSplit,  // two children on either side of a moving edge
    pip,           // a child with an inset image or child
};

// Every other type is a shader effect.
constexpr NamedValue<EffectKind> kEffectTypeNames[] = {
    {"blend", EffectKind::blend},
    {"timeline_blend", EffectKind::timelineBlend},
    {"chain", EffectKind::chain},
    {"dynamicsplit", EffectKind::dynamicSplit},
    {"piptexture", EffectKind::pip},
    {"pip", EffectKind::pip},
    {"image", EffectKind::image},
    {"bitmaptext", EffectKind::bitmapText},
    {"kinetictext", EffectKind::kineticText},
    {"lowerthird", EffectKind::lowerThird},
    {"creditroll", EffectKind::creditRoll},
    {"shapetext", EffectKind::shapeText},
};
constexpr auto kEffectTypes = wordsOf(Spelling::anyCase, kEffectTypeNames);
