#include "app/options.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

bool parse(const std::vector<const char*>& arguments, Options& options, std::string& error) {
    return parseOptions(static_cast<int>(arguments.size()), arguments.data(), options, error);
}

void append(std::string& text, const char* name, double value) {
    char part[64];
    std::snprintf(part, sizeof part, " %s=%g", name, value);
    text += part;
}

// What differs from the defaults.
std::string describe(const Options& o) {
    const char* const keyNames[] = {"left", "right", "up", "down", "escape"};
    std::string text = o.configPath;
    if (o.help) text += " help";
    if (o.version) text += " version";
    if (o.headless) text += " headless";
    if (o.fullscreen) text += *o.fullscreen ? " fullscreen" : " windowed";
    if (o.width || o.height) text += ' ' + std::to_string(o.width) + 'x' + std::to_string(o.height);
    if (o.start) append(text, "start", *o.start);
    if (o.end) append(text, "end", *o.end);
    if (o.length) append(text, "length", *o.length);
    if (o.fps != 60.0) append(text, "fps", o.fps);
    const std::string rate = std::to_string(o.rate.numerator) + "/" + std::to_string(o.rate.denominator);
    if (rate != "60/1") text += " rate=" + rate;
    if (o.audio) text += *o.audio ? " audio" : " no-audio";
    for (const std::string& argument : o.ffmpegArguments) text += " [" + argument + "]";
    if (!o.output.empty()) text += " to " + o.output;
    for (const double still : o.stills) append(text, "still", still);
    for (const ScriptedKey& key : o.keys) append(text, keyNames[static_cast<int>(key.key)], key.time);
    return text;
}

TEST(Options, ReadWhatIsGiven) {
    const std::pair<std::vector<const char*>, const char*> cases[] = {
        {{}, "config.json"},
        {{"--", "--headless"}, "--headless"},
        {{"--headless", "--", "--"}, "-- headless"},
        {{"--audio", "--headless"}, "config.json headless audio"},
        {{"--audio", "--no-audio"}, "config.json no-audio"},
        {{"-"}, "-"}, // a name like any other
        {{"--help", "--version", "a b"}, "a b help version"},
        {{"--fs", "--windowed"}, "config.json windowed"}, // the last one counts
        {{"--fullscreen", "--size", "640x480", "show"}, "show fullscreen 640x480"},
        {{"--size=16384X1"}, "config.json 16384x1"},
        {{"--start", "1:02:03.5", "--end=90", "--length", ".5"}, "config.json start=3723.5 end=90 length=0.5"},
        {{"--start=0"}, "config.json start=0"},
        {{"-o", "f-%04d.PNG", "--fps", "23.976"}, "config.json headless fps=23.976 rate=2997/125 to f-%04d.PNG"},
        {{"--fps", "30000/1001", "-o", "a.MKV", "--no-audio"},
         "config.json headless fps=29.97 rate=30000/1001 no-audio to a.MKV"},
        {{"-o", "a.gif"}, "config.json headless fps=50 rate=50/1 to a.gif"}, // faster ones play slowly
        {{"-o", "a.mp4", "--ffmpeg-args", " -crf  30 -x \"a \\\" b\"'c \\'\\ d '' "},
         "config.json headless [-crf] [30] [-x] [a \" bc \\ d] [] to a.mp4"},
        {{"--o=-"}, "config.json headless to -"},
        {{"-o=a=b.rgba", "show"}, "show headless to a=b.rgba"},
        {{"-o", "s.png", "--still", "3,1:00,0.5"}, "config.json headless to s.png still=3 still=60 still=0.5"},
        {{"--press", "2:Up", "--press", "1:30:Left", "--press=0.5:ESCAPE", "--press", "2:right", "--press", "2:Down"},
         "config.json escape=0.5 up=2 right=2 down=2 left=90"}, // by time, else as given
    };
    for (const auto& [arguments, wanted] : cases) {
        SCOPED_TRACE(wanted);
        Options options;
        std::string error;
        EXPECT_TRUE(parse(arguments, options, error)) << error;
        EXPECT_EQ(describe(options), wanted);
    }
}

TEST(Options, RefuseInOneLineThatNamesTheOption) {
    const std::pair<std::vector<const char*>, const char*> cases[] = {
        {{"--nothing"}, "'--nothing'"}, {{"-x"}, "'-x'"}, {{"--headless=1"}, "'--headless=1'"},
        {{"a.json", "b.json"}, "'a.json' and 'b.json'"}, {{"--start"}, "--start needs a value"},
        {{"--start", "--headless"}, "'--headless' for option --start"}, {{"--length="}, "'' for option --length"},
        {{"--start=-1"}, "'-1' for option --start"}, {{"--size", "640"}, "'640' for option --size"},
        {{"--size", "0x480"}, "'0x480' for option --size"}, {{"--size", "9x9x1"}, "'9x9x1' for option --size"},
        {{"--size", "16385x1"}, "'16385x1' for option --size"}, {{"--size", "9x9 "}, "'9x9 ' for option --size"},
        {{"--size", "4294967297x1"}, "'4294967297x1' for option --size"}, {{"--fps", "0"}, "'0' for option --fps"},
        {{"--fps", "nan"}, "'nan' for option --fps"}, {{"--fps", "1000000000"}, "for option --fps"},
        {{"--press", "Right"}, "'Right' for option --press"}, {{"--press", ":Right"}, "':Right' for option --press"},
        {{"--press", "1:Enter"}, "'1:Enter' for option --press"}, {{"--still", "1"}, "--still"},
        {{"--still", "1,,2", "-o", "a.png"}, "'1,,2' for option --still"}, {{"-o"}, "-o needs a value"},
        {{"--still", "1,", "-o", "a.png"}, "'1,' for option --still"}, {{"--o="}, "'' for option --o"},
        {{"-o", "film.avi"}, "'film.avi'"}, {{"-o", "folder/"}, "'folder/'"},
        {{"--fps", "1/0"}, "'1/0' for option --fps"}, {{"--fps", "3.5/2"}, "'3.5/2' for option --fps"},
        {{"--fps", "9000000000/9000000"}, "'9000000000/9000000' for option --fps"},
        {{"--ffmpeg-args", "'a"}, "''a' for option --ffmpeg-args"}, {{"--ffmpeg-args", "-an", "-o", "a.png"}, "--ffmpeg-args"},
        {{"--still", "1", "-o", "a.mp4"}, "--still"},
    };
    for (const auto& [arguments, named] : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        Options options;
        std::string error;
        EXPECT_FALSE(parse(arguments, options, error));
        EXPECT_NE(error.find(named), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    }
}

TEST(Options, ReadTimes) {
    const std::pair<const char*, double> times[] = {
        {"0", 0}, {"90", 90}, {"5.", 5}, {".25", 0.25}, {"1:30", 90}, {"01:05.5", 65.5}, {"0:00:59", 59},
        {"100:00:00", 360000}, {"1000000", 1000000},
    };
    for (const auto& [text, wanted] : times) {
        double seconds = 0;
        EXPECT_TRUE(parseTime(text, seconds)) << text;
        EXPECT_EQ(seconds, wanted) << text;
    }
    double seconds = 0;
    for (const char* text : {"", ".", "-1", "+1", " 1", "1 ", "1s", "1e3", "0x10", "nan", "1.2.3", "1,5", ":30", "1:",
                             "1:60", "1:60:00", "1.5:30", "1:2:3:4", "1::2", "1000000.5", "999999999999999999999999"}) {
        EXPECT_FALSE(parseTime(text, seconds)) << text;
    }
}

} // namespace
