#include "config/runtime_config.h"
#include "support/log_capture.h"
#include "support/temp_show.h"

#include <sstream>

namespace {

RuntimeConfig load(const TempShow& show, const std::string& json, const ShaderLookup& shaders = {}) {
    return loadRuntimeConfig(show.write("config.json", json), shaders);
}

std::string idsOf(const std::vector<TimelineEntry>& entries) {
    std::string ids;
    for (const TimelineEntry& entry : entries) ids += entry.id;
    return ids;
}

// Every plain field in one line, so that a table can state it.
std::string describe(const TimelineEntry& e) {
    std::ostringstream text;
    text << e.id << '|' << e.type << '|' << e.scene << ' ' << e.start << '+' << e.delay << " for " << e.duration
         << (e.overlay ? " overlay" : "") << (e.enabled ? "" : " disabled") << " layer " << e.layer << " alpha "
         << e.alpha << " scale " << e.timeScale << ' ' << e.blendMode;
    return text.str();
}

constexpr const char* kDefaultEntry = "|| 0+0 for 5 layer 0 alpha 1 scale 1 alpha";

TimelineEntry parseEntry(const std::string& json, const ShaderLookup& shaders = {}) {
    RuntimeConfig config;
    config.fallbackImagePath = nativePath("/show/fallback.png");
    config.assets = std::make_shared<AssetMap>(AssetMap{{"t", "D:\\t.png"}});
    config.shaders = shaders;
    return parseTimelineEntry(parseJson(json), config, nativePath("/show"));
}

TEST(Config, TakesEveryDefaultFromWhatIsMissingOrOfTheWrongKind) {
    const TempShow show;
    for (const char* json :
         {"{}", R"({"globals":{"width":"640","height":true,"fullscreen":1,"loop":0},"entries":{},"fallbackImage":7})",
          R"({"globals":{"width":nan,"Height":1},"audio":"music.mp3","schemaVersion":["native-runtime/v1"]})",
          R"({"audio":{"path":3,"volume":"1","startOffset":true},"schemaVersion":"native-runtime/v2"})",
          R"({"assets":["a","b"],"scenes":{"id":"a"},"transitions":[{"type":"wipe"}],"imagePath":[]})",
          R"({"scenes":[3,null,"x",[],{}],"transitions":{}})"}) {
        SCOPED_TRACE(json);
        const LogCapture log;
        const RuntimeConfig config = load(show, json);
        EXPECT_EQ(log.text(), "[CONFIG] baseDir = " + show.baseDir +
                                  "\n[CONFIG] 0 scenes, 0 timeline entries, 1280x720 windowed loop\n");
        EXPECT_FALSE(config.nativeRuntime);
        EXPECT_EQ(config.audioPath, "");
        EXPECT_EQ(config.volume, 1.0f);
        EXPECT_EQ(config.startOffset, 0.0f);
        EXPECT_EQ(config.fallbackImagePath, show.path("assets/images/Logo.png"));
    }
}

TEST(Config, ReadsTheShowsOwnSettings) {
    const TempShow show;
    const LogCapture log;
    const ShaderLookup shaders = {[](const std::string& baseDir) { logLine("pack below %s\n", baseDir.c_str()); },
                                  [](TimelineEntry& entry) { logLine("look up %s\n", entry.type.c_str()); }};
    const RuntimeConfig config = load(show,
                                      "\xEF\xBB\xBF"
                                      R"({
        "transitions": {"a": {"type": "wipe"}, "b": {"type": "dots", "duration": 1.5, "params": {"x": 3}}, "a": {}},
        "entries": [{"type": "flat"}, {"type": "off", "enabled": false}],
        "scenes": [{"id": "one", "entries": [{"type": "listed"}, {}]}],
        "audio": {"path": "@music", "volume": 0.25, "startOffset": -2},
        "assets": {"music": "old.mp3", "music": "audio/track.mp3"}, "fallbackImage": "", "imagePath": "@music",
        "globals": {"width": 1e12, "height": -3.9, "fullscreen": true, "loop": false},
        "schemaVersion": "native-runtime/v1"})",
                                      shaders);
    EXPECT_EQ(log.text(), "[CONFIG] baseDir = " + show.baseDir + "\npack below " + show.baseDir +
                              "\n[CONFIG] native runtime schema: native-runtime/v1\n"
                              "look up listed\nlook up \nlook up flat\nlook up off\n"
                              "[CONFIG] 2 transitions\n"
                              "[CONFIG] 1 scenes, 1 timeline entries, 2147483647x-3 fullscreen\n");
    EXPECT_EQ(config.audioPath, show.path("audio/track.mp3"));
    EXPECT_EQ(config.fallbackImagePath, config.audioPath);
    EXPECT_EQ(config.volume, 0.25f);
    EXPECT_EQ(config.startOffset, 0.0f);                // at least 0
    EXPECT_EQ(config.transitions.at("a").type, "fade"); // the later one of a name replaces the earlier as a whole
    EXPECT_EQ(config.transitions.at("b").type, "dots");
    EXPECT_EQ(config.transitions.at("b").duration, 1.5f);
    EXPECT_EQ(getNumber(find(config.transitions.at("b").params, "x"), 0.0f), 3.0f);
}

TEST(Config, NamesScenesAndTheirTransitionsAlike) {
    const TempShow show;
    const LogCapture quiet;
    for (const std::string& name : {std::string("a\tb"), std::string(2000, 'x')}) {
        const RuntimeConfig config = load(
            show, R"({"transitions": {")" + name + R"(": {"type": "wipe"}}, "entries": [{"scene": ")" + name + "\"}]}");
        EXPECT_TRUE(config.transitions.contains(config.entries[0].scene)) << name;
    }
}

TEST(Config, InfiniteVolumesTakeTheEndsOfTheirRange) {
    const TempShow show;
    const LogCapture quiet;
    const std::pair<const char*, float> cases[] = {{"-1e999", 0.0f}, {"1e999", 1.0f}, {"nan", 1.0f}};
    for (const auto& [volume, wanted] : cases) {
        EXPECT_EQ(load(show, std::string(R"({"audio": {"volume": )") + volume + "}}").volume, wanted) << volume;
    }
}

TEST(Config, ResolvesPathsOfShows) {
    const AssetMap assets = {{"music", "audio\\track.mp3"}, {"drive", "C:/x/y.png"}, {"chain", "@music"}};
    const std::pair<const char*, const char*> cases[] = {
        {"a/b\\c.png", "/show/a/b/c.png"},   {"", "/show/"},
        {"@music", "/show/audio/track.mp3"}, {"@drive", "C:/x/y.png"},
        {"@chain", "/show/@music"},          {"@music/more", "/show/@music/more"}, // aliases do not chain
        {"@Music", "/show/@Music"},          {"a@music", "/show/a@music"},
        {"C:\\x/y.png", "C:/x/y.png"},       {"\\srv\\x.png", "/show//srv/x.png"},
    };
    for (const auto& [path, resolved] : cases) {
        EXPECT_EQ(resolveAssetPath(path, assets, nativePath("/show")), nativePath(resolved)) << path;
    }
    const TempShow there;
    for (const std::string& path : {there.baseDir, there.write("x.png", "")}) {
        EXPECT_EQ(resolveAssetPath(path, {}, nativePath("/show")), path);
    }
}

TEST(Config, TheRootIsADirectoryToo) {
    const std::pair<const char*, const char*> cases[] = {
        {"/shows/a/config.json", "/shows/a"}, {"/config.json", "/"}, {"config.json", "."}};
    for (const auto& [path, directory] : cases) {
        EXPECT_EQ(directoryOfFile(nativePath(path)), nativePath(directory)) << path;
    }
}

TEST(Config, SortsTheFlatTimelineAndKeepsScenesThatPlaySomething) {
    const TempShow show;
    const LogCapture quiet;
    // At one time the base comes before overlays whatever the layers; layers order what is left.
    const RuntimeConfig flat = load(show, R"({"entries": [
        {"id": "f", "start": 2}, {"id": "c", "overlay": true, "layer": 1}, {"id": "x", "enabled": false},
        {"id": "e", "start": 1, "layer": 9}, {"id": "b", "layer": 5},
        {"id": "a", "start": -1, "overlay": true, "layer": 9}, {"id": "d", "overlay": true, "layer": 2}]})");
    EXPECT_EQ(idsOf(flat.entries), "abcdef");
    EXPECT_TRUE(load(show, R"({"entries": []})").nativeRuntime);

    const RuntimeConfig list = load(show, R"({"scenes": [
        {"id": "z", "entries": [{"id": "b", "start": 5}, {"id": "off", "enabled": false}, {"id": "a"}]},
        {"id": "off", "enabled": false, "entries": [{}]}, {"id": "none", "entries": [{"enabled": false}]},
        {"id": 5, "enabled": "no", "entries": [{}]}]})");
    ASSERT_EQ(list.scenes.size(), 2u);
    EXPECT_EQ(list.scenes[0].id, "z"); // document order, and so are the entries
    EXPECT_EQ(idsOf(list.scenes[0].entries), "ba");
    EXPECT_EQ(list.scenes[1].id, "");
    EXPECT_FALSE(list.nativeRuntime);
}

// A small file must not grow into gigabytes by long paths that every entry repeats, nor by its entries.
TEST(Config, LongPathsAndManyEntriesDoNotMultiply) {
    const TempShow show;
    const LogCapture log;
    const std::string path(32 * 1024, 'x');
    std::string json = "{\"fallbackImage\":\"" + path + "\",\"assets\":{\"x\":\"" + path + "\"},\"entries\":[{}";
    for (int i = 0; i < 20000; ++i) json += ",{\"params\":{\"image\":\"@x\"}}";
    size_t held = 0; // bytes
    for (const TimelineEntry& e : load(show, json + "]}").entries) {
        held += sizeof e + e.fallbackImage.size() + e.imagePath.size() + e.channels[0].size();
    }
    EXPECT_LT(held, 40u << 20);
    EXPECT_NE(log.text().find("[WARN] More than 16384 entries; the rest is left out\n"), std::string::npos);
}

TEST(TimelineEntry, ReadsItsKeys) {
    const std::pair<const char*, const char*> cases[] = {
        {"[1]", kDefaultEntry},
        {R"({"id":"i","type":"T","scene":"s","start":1.5,"delay":2,"duration":3,"overlay":true,"enabled":false,"layer":4,
             "params":{"alpha":0.5,"timeScale":-2,"blendMode":"additive"}})",
         "i|T|s 1.5+2 for 3 overlay disabled layer 4 alpha 0.5 scale -2 additive"},
        {R"({"id":1,"type":true,"scene":[],"start":"1","delay":{},"duration":"3","overlay":1,"enabled":0,"layer":"4",
             "params":{"alpha":"1","timeScale":true,"blendMode":2}})",
         kDefaultEntry},
        {R"({"start":1e999,"delay":-inf,"duration":nan,"layer":nan,"params":{"alpha":1e39,"timeScale":infinity}})",
         kDefaultEntry},
        {R"({"params":[{"alpha":0.5,"image":"x"}]})", kDefaultEntry},
        {R"({"layer":-1e10,"start":-0.5,"duration":-3})", "|| -0.5+0 for -3 layer -2147483648 alpha 1 scale 1 alpha"},
    };
    for (const auto& [json, fields] : cases) {
        SCOPED_TRACE(json);
        const TimelineEntry entry = parseEntry(json);
        EXPECT_EQ(describe(entry), fields);
        EXPECT_EQ(entry.channels, (decltype(entry.channels){}));
        EXPECT_EQ(entry.fallbackImage, nativePath("/show/fallback.png"));
    }
    EXPECT_EQ(parseEntry(R"({"params":[1,2]})").params.items.size(), 2u); // kept whole, whatever its kind
}

TEST(TimelineEntry, BindsAChannelToTheFirstKeyThatIsAString) {
    const std::vector<std::string> keysOf[] = {
        {"image", "imagePath", "texture", "channel0", "iChannel0", "uTex", "uTexture", "uBackground", "uTexA"},
        {"channel1", "iChannel1", "uTexB"},
        {"channel2", "iChannel2"},
        {"channel3", "iChannel3"}};
    for (size_t channel = 0; channel < std::size(keysOf); ++channel) {
        std::string params = "\"last\":0"; // after the keys in the wrong order
        for (const std::string& key : keysOf[channel]) params.insert(0, "\"" + key + "\":\"" + key + ".png\",");
        for (const std::string& key : keysOf[channel]) {
            const TimelineEntry entry = parseEntry("{\"params\":{" + params + "}}");
            EXPECT_EQ(entry.channels[channel], nativePath("/show/" + key + ".png"));
            params.insert(0, "\"" + key + "\":3,"); // of two the first counts
        }
    }
    TimelineEntry entry = parseEntry(R"({"params":{"texture":"@t","channel1":"a","post":"b"}})");
    for (const int index : {-1, 1, 4}) bindChannelFromKeys(entry, index, {"post"}); // out of range, or bound already
    bindChannelFromKeys(entry, 2, {"missing", "post"});
    EXPECT_EQ(entry.channels,
              (decltype(entry.channels){nativePath("D:/t.png"), nativePath("/show/a"), nativePath("/show/b"), ""}));
    EXPECT_EQ(entry.imagePath, entry.channels[0]);
}

TEST(TimelineEntry, ChildrenKeepTheParentsPlaceInTime) {
    const TimelineEntry parent = parseEntry(
        R"({"id":"p","type":"composite","scene":"s","start":3,"delay":1,"duration":7,"overlay":true,"layer":2,
            "params":{"alpha":0.5,"blendMode":"additive","image":"parent.png"}})",
        {nullptr, [](TimelineEntry& entry) { entry.fragPath = entry.type + ".frag"; }});
    const TimelineEntry child = deriveChildEntry(
        parseJson(R"({"id":"c","type":"plasma","scene":"x","start":9,"delay":9,"duration":9,"overlay":true,
                      "enabled":false,"layer":9,"params":{"timeScale":2,"channel1":"@t"}})"),
        parent, "post");
    EXPECT_EQ(describe(child), "p_post|plasma|s 3+0 for 7 layer 2 alpha 1 scale 2 alpha");
    EXPECT_EQ(child.channels, (decltype(child.channels){"", nativePath("D:/t.png"), "", ""}));
    EXPECT_EQ(child.fallbackImage, nativePath("/show/fallback.png"));
    EXPECT_EQ(child.fragPath, "plasma.frag");
    EXPECT_EQ(describe(deriveChildEntry({}, child, "0")), "p_post_0||s 3+0 for 7 layer 2 alpha 1 scale 1 alpha");
}

} // namespace
