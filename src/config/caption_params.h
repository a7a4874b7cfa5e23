// What a show says of a caption: one block of settings for the lower third and the credit roll.
#pragma once

#include "config/blend_mode.h"

#include <string>
#include <vector>

// Bounds of what a show may ask for; what lies beyond is left out, and the log says so
// when the caption is made.
constexpr size_t kMaxCaptionTextBytes = 4096; // of one text
constexpr size_t kMaxCreditEntries = 8192;
constexpr size_t kMaxCreditBytes = 1 << 18; // of all entries' texts together

struct CaptionColor {
    float r = 1.0f, g = 1.0f, b = 1.0f, a = 1.0f; // 0..1
};

enum class CaptionEnter { slideLeft, slideRight, slideUp, fade, wipe };
enum class CaptionSide { left, center, right };
enum class CreditMode { scroll, blocks };
enum class CreditAlign { columns, center };

struct CreditEntry {
    std::string role, name, subtitle; // each may have several lines
};

// Lengths are pixels of an output 1080 pixels high and grow and shrink with the output. A text at scale 1
// has capital letters of kCaptionCapPixels; line spacings count kCaptionLinePitch times the capitals' height.
constexpr float kCaptionCapPixels = 22.0f;
constexpr float kCaptionLinePitch = 1.75f;

struct CaptionParams {
    bool isCreditRoll = false;
    std::string fontPath = "assets/fonts/color/demo_neon_32.json";
    BlendMode blendMode = BlendMode::alpha;
    float alpha = 1.0f; // 0..1
    CaptionSide side = CaptionSide::left;
    bool atTop = false;    // lower third: in an upper corner
    float padding = 30.0f; // 0..400, from the panel's edge to what stands in it
    CaptionColor panelColor = {0.027f, 0.035f, 0.067f, 0.86f};
    CaptionColor accentColor = {1.0f, 0.31f, 0.15f, 1.0f};
    CaptionColor lineColor = {0.44f, 0.65f, 0.78f, 0.55f};
    CaptionColor textTint;

    // Lower third.
    std::string title = "SIGNAL OPERATOR";
    std::string subtitle = "NODE 07 / UNSTABLE CHANNEL";
    std::string label = "LIVE";
    float titleScale = 2.0f; // scales: 0.25..16
    float subtitleScale = 1.05f;
    float subtitleLineSpacing = 1.0f; // 0.5..4
    float labelScale = 0.9f;
    float accentWidth = 10.0f;  // 0..200
    float enterDuration = 0.8f; // seconds, 0..30
    CaptionEnter enter = CaptionEnter::slideLeft;
    bool showLine = true;
    CaptionColor labelColor = {1.0f, 0.31f, 0.15f, 1.0f};

    // Credit roll.
    CreditMode mode = CreditMode::scroll;
    CreditAlign align = CreditAlign::columns;
    std::string header = "CREDITS";
    bool showPanel = true;
    bool showHeader = true;
    bool showLines = true;
    float headerScale = 2.4f;
    float roleScale = 1.0f;
    float nameScale = 1.3f;
    float lineSpacing = 1.0f;     // 0.5..4, within an entry
    float rowSpacing = 30.0f;     // 0..1000, between entries
    float roleColumnWidth = 0.5f; // up to 1 a share of the roll's width, else pixels
    float scrollSpeed = 0.0f;     // pixels a second, up to 20000; 0: as fast as the entry's duration asks for
    float blockDuration = 0.0f;   // seconds, up to 3600; 0: the entry's duration shared by all groups
    float fadeDuration = 0.6f;    // seconds, 0..60
    CaptionColor headerTint;
    CaptionColor roleTint = {0.56f, 0.74f, 0.86f, 1.0f};
    CaptionColor nameTint;
    CaptionColor subtitleTint = {0.72f, 0.74f, 0.78f, 1.0f};
    std::vector<CreditEntry> entries;

    // Whether a text, or the list of entries with their texts, was longer than the bounds allow.
    bool textsCut = false;
    bool entriesCut = false;
};

// Reads an entry's "params", whatever its kind. Never fails: what is missing, of the wrong kind or not
// finite takes its default, the rest is brought into range. Texts that are too long are cut.
CaptionParams readCaptionParams(const JsonValue& params, bool isCreditRoll, const Reading& at = {});
