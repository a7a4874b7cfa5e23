#include "app/options.h"

#include "foundation/text.h"
#include "platform/image.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>
#include <string_view>

namespace {

constexpr int kMaxSide = 16384;        // pixels
constexpr double kMaxFps = 1000.0;     // frames a second
constexpr double kMaxDivisor = 1e6;    // of a rate; with the most frames a second it still fits an int
constexpr double kMaxTime = 1000000.0; // seconds

// The rest of the command line, read front to back.
struct Arguments {
    int count = 0;
    const char* const* values = nullptr;
    int next = 0;
};

// Digits with an optional decimal part: no sign, exponent or other notation.
bool parseDecimal(std::string_view text, double& value) {
    if (text.empty() || text.find_first_not_of("0123456789.") != std::string_view::npos) return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

bool parseSize(std::string_view text, Options& options) {
    const size_t cross = text.find_first_of("xX");
    if (cross == std::string_view::npos) return false;
    double sides[2] = {};
    const std::string_view parts[2] = {text.substr(0, cross), text.substr(cross + 1)};
    for (int i = 0; i < 2; ++i) {
        if (parts[i].find('.') != std::string_view::npos || !parseDecimal(parts[i], sides[i])) return false;
        if (sides[i] < 1 || sides[i] > kMaxSide) return false;
    }
    if (sides[0] * sides[1] > static_cast<double>(kMaxImagePixels)) return false;
    options.width = static_cast<int>(sides[0]);
    options.height = static_cast<int>(sides[1]);
    return true;
}

bool parseOptionalTime(const std::string& text, std::optional<double>& time) {
    double seconds = 0.0;
    if (!parseTime(text, seconds)) return false;
    time = seconds;
    return true;
}

// A decimal, or a fraction of whole numbers like 30000/1001.
bool parseFps(const std::string& text, Options& options) {
    const size_t slash = text.find('/');
    double value = 0.0, divisor = 1.0;
    if (!parseDecimal(text.substr(0, slash), value)) return false;
    if (slash != std::string::npos && !parseDecimal(text.substr(slash + 1), divisor)) return false;
    const bool isWhole = slash == std::string::npos || (text.find('.') == std::string::npos && divisor <= kMaxDivisor);
    if (!isWhole || divisor <= 0.0 || value / divisor <= 0.0 || value / divisor > kMaxFps) return false;
    options.fps = value / divisor;
    if (slash == std::string::npos) {
        value = std::max(1.0, std::round(value * kMaxDivisor));
        divisor = kMaxDivisor;
    }
    const int numerator = static_cast<int>(value), denominator = static_cast<int>(divisor);
    const int common = std::gcd(numerator, denominator);
    options.rate = {numerator / common, denominator / common};
    return true;
}

bool parseStills(const std::string& text, std::vector<double>& stills) {
    size_t begin = 0;
    while (true) {
        const size_t comma = std::min(text.find(',', begin), text.size());
        double time = 0.0;
        if (!parseTime(text.substr(begin, comma - begin), time)) return false;
        stills.push_back(time);
        if (comma == text.size()) return true;
        begin = comma + 1;
    }
}

bool parseKey(const std::string& text, std::vector<ScriptedKey>& keys) {
    struct KeyName {
        const char* name;
        PlayerKey key;
    };
    constexpr KeyName kKeyNames[] = {{"left", PlayerKey::left},
                                     {"right", PlayerKey::right},
                                     {"up", PlayerKey::up},
                                     {"down", PlayerKey::down},
                                     {"escape", PlayerKey::escape}};
    const size_t colon = text.rfind(':'); // the time may hold colons of its own
    if (colon == std::string::npos) return false;
    ScriptedKey scripted;
    if (!parseTime(text.substr(0, colon), scripted.time)) return false;
    for (const KeyName& named : kKeyNames) {
        if (!equalsIgnoringCase(text.substr(colon + 1), named.name)) continue;
        scripted.key = named.key;
        keys.push_back(scripted);
        return true;
    }
    return false;
}

// Options without a value; false when `name` is none of them.
bool readFlag(const std::string& name, Options& options) {
    if (name == "--help" || name == "-h") {
        options.help = true;
    } else if (name == "--version") {
        options.version = true;
    } else if (name == "--headless") {
        options.headless = true;
    } else if (name == "--audio") {
        options.audio = true;
    } else if (name == "--no-audio") {
        options.audio = false;
    } else if (name == "--fullscreen" || name == "--fs") {
        options.fullscreen = true;
    } else if (name == "--windowed") {
        options.fullscreen = false;
    } else {
        return false;
    }
    return true;
}

bool takesValue(const std::string& name) {
    constexpr const char* kNames[] = {"--size", "--start", "--end",   "--length", "--fps",
                                      "--o",    "-o",      "--still", "--press",  "--ffmpeg-args"};
    return std::any_of(std::begin(kNames), std::end(kNames), [&](const char* known) { return name == known; });
}

bool readValue(const std::string& name, const std::string& value, Options& options) {
    if (name == "--size") return parseSize(value, options);
    if (name == "--start") return parseOptionalTime(value, options.start);
    if (name == "--end") return parseOptionalTime(value, options.end);
    if (name == "--length") return parseOptionalTime(value, options.length);
    if (name == "--fps") return parseFps(value, options);
    if (name == "--still") return parseStills(value, options.stills);
    if (name == "--ffmpeg-args") return splitArguments(value, options.ffmpegArguments);
    if (name == "--press") return parseKey(value, options.keys);
    options.output = value;
    return !value.empty();
}

bool readOption(const std::string& argument, Arguments& rest, Options& options, std::string& error) {
    const size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    if (equals == std::string::npos && readFlag(name, options)) return true;
    if (!takesValue(name)) {
        error = "unknown option '" + argument + "'; --help lists them";
        return false;
    }
    std::string value;
    if (equals != std::string::npos) {
        value = argument.substr(equals + 1);
    } else if (rest.next < rest.count) {
        value = rest.values[rest.next++];
    } else {
        error = "option " + name + " needs a value; --help shows its form";
        return false;
    }
    if (readValue(name, value, options)) return true;
    error = "bad value '" + value + "' for option " + name + "; --help shows its form";
    return false;
}

bool checkOutput(const Options& options, std::string& error) {
    const bool isVideo = isVideoOutput(options.output);
    const bool isPicture = endsWith(toLower(options.output), ".png");
    if (options.output.empty()) {
        if (!options.stills.empty()) error = "option --still needs -o FILE for its pictures";
    } else if (!isPicture && !isVideo && !isRawOutput(options.output)) {
        error = "output '" + options.output +
                "' has no known ending; use .mp4, .mkv, .webm, .mov, .gif, .png with a %d "
                "pattern, .rgba, or -";
    } else if (isVideo && !options.stills.empty()) {
        error = "option --still makes pictures, no video like '" + options.output + "'";
    }
    if (error.empty() && !isVideo && !options.ffmpegArguments.empty())
        error = "option --ffmpeg-args needs a video as -o FILE";
    return error.empty();
}

} // namespace

const char* const kUsage =
    "Usage: quillon-player [options] [SHOW]\n"
    "\n"
    "Plays the show that SHOW (default: config.json) describes.\n"
    "\n"
    "  --help               show this text\n"
    "  --version            show the version\n"
    "  --fullscreen, --fs   full screen, whatever the show says\n"
    "  --windowed           in a window, whatever the show says\n"
    "  --size WxH           size of the picture in pixels\n"
    "  --headless           play without a window or display, and without music\n"
    "  --audio, --no-audio  play the show's music, or do not, with or without a window\n"
    "  --start S            begin at S seconds; all times may be written [hh:]mm:ss\n"
    "  --end S              stop before the frame that reaches S\n"
    "  --length S           stop S seconds after the start\n"
    "  --press T:KEY        press Left, Right, Up, Down or Escape T seconds into the run (repeatable)\n"
    "\n"
    "Rendering, frame by frame, without a display:\n"
    "  -o FILE, --o=FILE    one pass of the show: a video with its music (.mp4, .mkv, .webm, .mov, .gif,\n"
    "                       made by ffmpeg), a picture sequence (frame-%04d.png), raw RGBA frames\n"
    "                       (show.rgba), or raw frames to standard output (-)\n"
    "  --fps N              frames a second (default 60, of a .gif 50); also N/D, and in play without a display\n"
    "  --ffmpeg-args \"...\"  more arguments for ffmpeg, behind the player's own\n"
    "  --still T[,T...]     only the pictures at these times\n"
    "\n"
    "Keys: Right/Left next/previous scene, Up/Down 10 seconds forward/back, Escape ends.\n";

bool parseTime(const std::string& text, double& seconds) {
    double total = 0.0;
    size_t begin = 0;
    for (int part = 0; part < 3; ++part) {
        const size_t colon = text.find(':', begin);
        const bool isLast = colon == std::string::npos;
        const std::string field = text.substr(begin, isLast ? std::string::npos : colon - begin);
        double value = 0.0;
        if (!parseDecimal(field, value)) return false;
        if (!isLast && field.find('.') != std::string::npos) return false;
        if (part > 0 && value >= 60.0) return false;
        total = total * 60.0 + value;
        if (isLast) {
            seconds = total;
            return total <= kMaxTime;
        }
        begin = colon + 1;
    }
    return false;
}

bool isRawOutput(const std::string& output) {
    return output == "-" || endsWith(toLower(output), ".rgba");
}

bool parseOptions(int count, const char* const* arguments, Options& options, std::string& error) {
    Arguments rest{count, arguments, 0};
    bool hasShow = false, optionsEnded = false;
    while (rest.next < rest.count) {
        const std::string argument = rest.values[rest.next++];
        if (!optionsEnded && argument == "--") {
            optionsEnded = true;
        } else if (!optionsEnded && argument.size() > 1 && argument[0] == '-') {
            if (!readOption(argument, rest, options, error)) return false;
        } else if (hasShow) {
            error = "more than one show: '" + options.configPath + "' and '" + argument + "'";
            return false;
        } else {
            options.configPath = argument;
            hasShow = true;
        }
    }
    if (!checkOutput(options, error)) return false;
    if (options.rate.numerator == 0) {
        // Animations count hundredths of a second, and viewers take less than two of them for ten.
        options.rate = {isAnimation(options.output) ? 50 : 60, 1};
        options.fps = options.rate.numerator;
    }
    options.headless |= !options.output.empty();
    std::stable_sort(options.keys.begin(), options.keys.end(),
                     [](const ScriptedKey& a, const ScriptedKey& b) { return a.time < b.time; });
    return true;
}
