#include "config/runtime_config.h"
#include "support/log_capture.h"
#include "support/temp_show.h"
#include "system.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
    char text[256];
    std::snprintf(text, sizeof text, "%s|%s|%s %g+%g for %g%s%s layer %d alpha %g scale %g %s", e.id.c_str(),
                  e.type.c_str(), e.scene.c_str(), static_cast<double>(e.start), static_cast<double>(e.delay),
                  static_cast<double>(e.duration), e.overlay ? " overlay" : "", e.enabled ? "" : " disabled", e.layer,
                  static_cast<double>(e.alpha), static_cast<double>(e.timeScale), e.blendMode.c_str());
    return text;
}

const std::string kShow = nativePath("/show");

constexpr const char* kDefaultEntry = "|| 0+0 for 5 layer 0 alpha 1 scale 1 alpha";

TimelineEntry parseEntry(const std::string& json, const AssetMap& assets = {}) {
    RuntimeConfig config;
    config.fallbackImagePath = nativePath("/show/fallback.png");
    config.assets = std::make_shared<AssetMap>(assets);
    return parseTimelineEntry(parseJson(json), config, kShow);
}

TEST(Config, TakesEveryDefaultFromWhatIsMissingOrOfTheWrongKind) {
    const TempShow show;
    for (const char* json : {
             "\xEF\xBB\xBF{}",
             "no json at all",
             R"({"globals":{"width":"640","height":true,"fullscreen":1,"loop":0}})",
             R"({"globals":{"width":nan,"Height":1}, "audio":"music.mp3"})",
             R"({"audio":{"path":3,"volume":"1","startOffset":true}})",
             R"({"assets":["a","b"],"scenes":{"id":"a"},"entries":{},"transitions":[{"type":"wipe"}]})",
             R"({"scenes":[3,null,"x",[],{}],"transitions":{},"schemaVersion":["native-runtime/v1"]})",
             R"({"schemaVersion":"native-runtime/v2","fallbackImage":7,"imagePath":[]})"}) {
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
    const RuntimeConfig config = load(show, R"({
        "transitions": {"a": {"type": "wipe", "duration": 1}, "b": {"type": "wipe", "duration": 1.5, "params": {"angle": 30}}, "a": {}},
        "entries": [{"type": "flat"}, {"type": "off", "enabled": false}],
        "scenes": [{"id": "one", "entries": [{"type": "listed"}, {}]}],
        "audio": {"path": "@music", "volume": 0.25, "startOffset": -2},
        "assets": {"music": "old.mp3", "number": 3, "music": "audio/track.mp3"},
        "globals": {"width": 1e12, "height": -3.9, "fullscreen": true, "loop": false},
        "schemaVersion": "native-runtime/v1"})", shaders);
    EXPECT_EQ(log.text(), "[CONFIG] baseDir = " + show.baseDir + "\npack below " + show.baseDir +
                              "\n[CONFIG] native runtime schema: native-runtime/v1\n"
                              "look up listed\nlook up \nlook up flat\nlook up off\n"
                              "[CONFIG] 2 transitions\n"
                              "[CONFIG] 1 scenes, 1 timeline entries, 2147483647x-3 fullscreen\n");
    EXPECT_EQ(config.audioPath, show.path("audio/track.mp3"));
    EXPECT_EQ(config.volume, 0.25f);
    EXPECT_EQ(config.startOffset, -2.0f);
    EXPECT_EQ(config.assets->count("number"), 0u);
    EXPECT_EQ(config.transitions.at("a").type, "fade"); // the later preset of a name replaces the earlier one as a whole
    EXPECT_EQ(config.transitions.at("b").type, "wipe");
    EXPECT_EQ(config.transitions.at("b").duration, 1.5f);
    EXPECT_EQ(getNumber(find(config.transitions.at("b").params, "angle"), 0.0f), 30.0f);
}

TEST(Config, ResolvesPathsOfShows) {
    const AssetMap assets = {{"music", "audio\\track.mp3"}, {"drive", "C:/x/y.png"}, {"chain", "@music"}};
    const std::pair<const char*, const char*> cases[] = {
        {"a/b\\c.png", "/show/a/b/c.png"},  {"", "/show/"},
        {"@music", "/show/audio/track.mp3"}, {"@drive", "C:/x/y.png"},
        {"@chain", "/show/@music"}, // aliases do not chain
        {"@Music", "/show/@Music"},          {"@music/more", "/show/@music/more"},
        {"a@music", "/show/a@music"},        {"C:\\x/y.png", "C:/x/y.png"},
        {"\\srv\\x.png", kRootIsAbsolute ? "/srv/x.png" : "/show//srv/x.png"}, {"../x.png", "/show/../x.png"},
    };
    for (const auto& [path, resolved] : cases) EXPECT_EQ(resolveAssetPath(path, assets, kShow), nativePath(resolved)) << path;

    const std::pair<const char*, const char*> fallbacks[] = {
        {R"({"fallbackImage": "a.png", "imagePath": "b.png"})", "a.png"},
        {R"({"fallbackImage": "", "imagePath": "b.png"})", "b.png"},
        {R"({"fallbackImage": 1, "imagePath": "@b", "assets": {"b": "pics\\b.png"}})", "pics/b.png"},
    };
    const TempShow show;
    const LogCapture quiet;
    for (const auto& [json, path] : fallbacks) EXPECT_EQ(load(show, json).fallbackImagePath, show.path(path)) << json;
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
        {"id": "off", "enabled": false, "entries": [{}]},
        {"id": "empty", "entries": []},
        {"id": "all off", "entries": [{"enabled": false}]},
        {"id": 5, "enabled": "no", "entries": [{}]}]})");
    ASSERT_EQ(list.scenes.size(), 2u);
    EXPECT_EQ(list.scenes[0].id, "z"); // document order, and so are the entries
    EXPECT_EQ(idsOf(list.scenes[0].entries), "ba");
    EXPECT_EQ(list.scenes[1].id, "");
    EXPECT_FALSE(list.nativeRuntime);
}

// A file of a few kilobytes must not grow into gigabytes by a long path that every entry repeats.
TEST(Config, LongPathsDoNotMultiply) {
    const std::string path(32 * 1024, 'x');
    const std::string heads[] = {"{\"fallbackImage\":\"" + path, "{\"assets\":{\"x\":\"" + path + "\"},\"id\":\""};
    for (const std::string& head : heads) {
        SCOPED_TRACE(head.substr(0, 16));
        const TempShow show;
        const LogCapture log;
        std::string json = head + "\",\"entries\":[{}";
        for (int i = 1; i < 2000; ++i) json += ",{\"params\":{\"image\":\"@x\"}}";
        const RuntimeConfig config = load(show, json + "]}");
        ASSERT_EQ(config.entries.size(), 2000u);
        size_t held = 0; // bytes
        for (const TimelineEntry& e : config.entries) {
            held += e.fallbackImage.size() + e.imagePath.size() + e.channels[0].size();
        }
        EXPECT_LT(held, 20u << 20);
    }
}

TEST(TimelineEntry, ReadsItsKeys) {
    const std::pair<const char*, const char*> cases[] = {
        {"{}", kDefaultEntry},
        {"[1]", kDefaultEntry},
        {R"({"id":"i","type":"T","scene":"s","start":1.5,"delay":2,"duration":3,"overlay":true,"enabled":false,"layer":4,
             "params":{"alpha":0.5,"timeScale":-2,"blendMode":"additive"}})",
         "i|T|s 1.5+2 for 3 overlay disabled layer 4 alpha 0.5 scale -2 additive"},
        {R"({"id":1,"type":true,"scene":[],"start":"1","delay":{},"duration":"3","overlay":1,"enabled":0,"layer":"4",
             "params":{"alpha":"1","timeScale":true,"blendMode":2}})", kDefaultEntry},
        {R"({"start":1e999,"delay":-inf,"duration":nan,"layer":nan,"params":{"alpha":1e39,"timeScale":infinity}})",
         kDefaultEntry},
        {R"({"params":[{"alpha":0.5,"image":"x"}]})", kDefaultEntry},
        {R"({"layer":2.9,"duration":0})", "|| 0+0 for 0 layer 2 alpha 1 scale 1 alpha"},
        {R"({"layer":-1.5,"duration":-3})", "|| 0+0 for -3 layer -1 alpha 1 scale 1 alpha"},
        {R"({"layer":-1e10,"start":-0.5})", "|| -0.5+0 for 5 layer -2147483648 alpha 1 scale 1 alpha"},
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
    const std::vector<std::vector<std::string>> keysOf = {
        {"image", "imagePath", "texture", "channel0", "iChannel0", "uTex", "uTexture", "uBackground", "uTexA"},
        {"channel1", "iChannel1", "uTexB"}, {"channel2", "iChannel2"}, {"channel3", "iChannel3"}};
    for (size_t channel = 0; channel < keysOf.size(); ++channel) {
        // The document names the keys in the wrong order, and the better ones hold no string.
        std::string worse;
        for (size_t i = keysOf[channel].size(); i-- > 0;) {
            const std::string& key = keysOf[channel][i];
            SCOPED_TRACE(key);
            worse += "\"" + key + "\":\"" + key + ".png\",";
            std::string params = worse;
            for (size_t better = 0; better < i; ++better) params += "\"" + keysOf[channel][better] + "\":3,";
            EXPECT_EQ(parseEntry("{\"params\":{" + params + "\"last\":0}}").channels[channel], nativePath("/show/" + key + ".png"));
        }
    }
    EXPECT_EQ(parseEntry(R"({"params":{"texture":"@t"}})", {{"t", "D:\\t.png"}}).imagePath, nativePath("D:/t.png"));

    TimelineEntry entry = parseEntry(R"({"params":{"channel1":"a","post":"b"}})");
    for (const int index : {-1, 1, 4}) bindChannelFromKeys(entry, index, {"post"}); // out of range, or bound already
    bindChannelFromKeys(entry, 2, {"missing", "post"});
    EXPECT_EQ(entry.channels, (decltype(entry.channels){"", nativePath("/show/a"), nativePath("/show/b"), ""}));
}

TEST(TimelineEntry, ChildrenKeepTheParentsPlaceInTime) {
    RuntimeConfig config;
    config.fallbackImagePath = nativePath("/show/f.png");
    config.assets = std::make_shared<AssetMap>(AssetMap{{"t", "tile.png"}});
    config.shaders.resolve = [](TimelineEntry& entry) { entry.fragPath = entry.type + ".frag"; };
    const TimelineEntry parent = parseTimelineEntry(
        parseJson(R"({"id":"p","type":"composite","scene":"s","start":3,"delay":1,"duration":7,"overlay":true,"layer":2,
                      "params":{"alpha":0.5,"blendMode":"additive","image":"parent.png"}})"), config, kShow);
    const TimelineEntry child = deriveChildEntry(
        parseJson(R"({"id":"c","type":"plasma","scene":"x","start":9,"delay":9,"duration":9,"overlay":true,
                      "enabled":false,"layer":9,"params":{"timeScale":2,"channel1":"@t"}})"), parent, "post");
    EXPECT_EQ(describe(child), "p_post|plasma|s 3+0 for 7 layer 2 alpha 1 scale 2 alpha");
    EXPECT_EQ(child.channels, (decltype(child.channels){"", nativePath("/show/tile.png"), "", ""}));
    EXPECT_EQ(child.imagePath, "");
    EXPECT_EQ(child.fallbackImage, nativePath("/show/f.png"));
    EXPECT_EQ(child.fragPath, "plasma.frag");
    EXPECT_EQ(describe(deriveChildEntry({}, child, "0")), "p_post_0||s 3+0 for 7 layer 2 alpha 1 scale 1 alpha");
}

} // namespace
