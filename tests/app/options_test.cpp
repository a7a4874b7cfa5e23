#include "app/options.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

bool parse(const std::vector<const char*>& arguments, Options& options, std::string& error) {
    return parseOptions(static_cast<int>(arguments.size()), arguments.data(), options, error);
}

// What differs from the defaults.
std::string describe(const Options& o) {
    std::ostringstream text;
    text << o.configPath << (o.help ? " help" : "") << (o.version ? " version" : "");
    if (o.headless) text << " headless";
    if (o.fullscreen) text << (*o.fullscreen ? " fullscreen" : " windowed");
    if (o.width || o.height) text << ' ' << o.width << 'x' << o.height;
    if (o.start) text << " start=" << *o.start;
    if (o.end) text << " end=" << *o.end;
    if (o.length) text << " length=" << *o.length;
    if (o.fps != 60.0) text << " fps=" << o.fps << " rate=" << o.rate.numerator << '/' << o.rate.denominator;
    if (o.audio) text << (*o.audio ? " audio" : " no-audio");
    for (const std::string& argument : o.ffmpegArguments) text << " [" << argument << "]";
    if (!o.output.empty()) text << " to " << o.output;
    for (const double still : o.stills) text << " still=" << still;
    for (const ScriptedKey& key : o.keys) text << ' ' << "lrude"[static_cast<int>(key.key)] << '=' << key.time;
    return text.str();
}

TEST(Options, ReadWhatIsGiven) {
    const std::pair<std::vector<const char*>, const char*> cases[] = {
        {{"--headless", "--", "--"}, "-- headless"},
        {{"--help", "--version", "a b"}, "a b help version"},
        {{"--fs", "--windowed", "--audio", "--no-audio"}, "config.json windowed no-audio"}, // the last counts
        {{"--fullscreen", "--size", "640x480", "--audio", "show"}, "show fullscreen 640x480 audio"},
        {{"--size=16384X1"}, "config.json 16384x1"},
        {{"--start", "1:02:03.5", "--end=1000000", "--length=.5", "a"}, "a start=3723.5 end=1e+06 length=0.5"},
        {{"--start", "100:00:00", "--end=01:05.5", "a"}, "a start=360000 end=65.5"},
        {{"-o", "f-%d.PNG", "--fps", "23.976"}, "config.json headless fps=23.976 rate=2997/125 to f-%d.PNG"},
        {{"--fps", "30000/1001", "-o", "a.MKV"}, "config.json headless fps=29.97 rate=30000/1001 to a.MKV"},
        {{"-o", "a.gif"}, "config.json headless fps=50 rate=50/1 to a.gif"}, // faster ones play slowly
        {{"-o", "a.mp4", "--ffmpeg-args", " -crf  30 '' \"a \\\" b\"'c \\'\\ d ''"},
         "config.json headless [-crf] [30] [] [a \" bc \\ d] [] to a.mp4"},
        {{"-o=a=b.rgba", "show"}, "show headless to a=b.rgba"},
        {{"--o=-", "--still", "3,1:00,0.5"}, "config.json headless to - still=3 still=60 still=0.5"},
        {{"--press", "2:Up", "--press", "1:30:Left", "--press=0.5:ESCAPE", "--press=2:right", "--press=2:Down"},
         "config.json e=0.5 u=2 r=2 d=2 l=90"}, // by time, else as given
    };
    for (const auto& [arguments, wanted] : cases) {
        Options options;
        std::string error;
        EXPECT_TRUE(parse(arguments, options, error)) << error;
        EXPECT_EQ(describe(options), wanted);
    }
}

TEST(Options, RefuseInOneLineThatNamesTheOption) {
    const std::pair<const char*, std::vector<const char*>> bad[] = {
        {"--start", {"--fs", "-1",      "",       ".",       "+1",   " 1",        "1s",
                     "1e3",  "0x10",    "nan",    "1.2.3",   "1,5",  ":30",       "1:",
                     "1:60", "1:60:00", "1.5:30", "1:2:3:4", "1::2", "1000000.5", "999999999999999999999999"}},
        {"--size", {"640", "0x480", "9x9x1", "16385x1", "16384x16384", "9x9 ", "4294967297x1"}},
        {"--fps", {"0", "nan", "1000000000", "1/0", "3.5/2", "9000000000/9000000"}},
        {"--press", {"Right", ":Right", "1:Enter"}},
        {"--still", {"1,,2", "1,"}},
        {"--ffmpeg-args", {"'a"}},
        {"--o", {""}},
    };
    std::vector<std::pair<std::vector<const char*>, std::string>> cases = {
        {{"--nothing"}, "'--nothing'"},
        {{"--headless=1"}, "'--headless=1'"},
        {{"a.json", "b.json"}, "'a.json' and 'b.json'"},
        {{"--start"}, "--start needs a value"},
        {{"--still", "1"}, "--still"},
        {{"--still", "1", "-o", "a.mp4"}, "--still"},
        {{"-o", "film.avi"}, "'film.avi'"},
        {{"--ffmpeg-args", "-an", "-o", "a.png"}, "--ffmpeg-args"},
    };
    for (const auto& [name, values] : bad) {
        for (const char* value : values) {
            cases.push_back({{name, value}, "'" + std::string(value) + "' for option " + name});
        }
    }
    for (const auto& [arguments, named] : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        Options options;
        std::string error;
        EXPECT_FALSE(parse(arguments, options, error));
        EXPECT_NE(error.find(named), std::string::npos) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    }
}

} // namespace
