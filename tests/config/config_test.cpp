#include "config/runtime_config.h"
#include "support/log_capture.h"
#include "support/temp_show.h"

#include "foundation/json.h"

#include <sstream>

namespace {

RuntimeConfig load(const TempShow& show, const std::string& json) {
    return loadRuntimeConfig(show.write("config.json", json));
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
         << e.alpha << " scale " << e.timeScale << (e.blendMode == BlendMode::additive ? " additive" : " alpha");
    return text.str();
}

constexpr const char* kDefaultEntry = "|| 0+0 for 5 layer 0 alpha 1 scale 1 alpha";

// Of a show in /show.
const AssetMap kAliases = {{"t", "D:\\t.png"}};
const std::string kBaseDir = nativePath("/show");
const Reading kShow = {&kAliases, &kBaseDir};

TimelineEntry parseEntry(const std::string& json) {
    return parseTimelineEntry(parseJson(json), kShow);
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
    const std::string path = show.write("config.json", "\xEF\xBB\xBF"
                                                       R"({
        "transitions": {"a": {"type": "wipe"}, "b": {"type": "dots", "duration": 1.5, "params": {"bands": 3}}, "a": {}},
        "entries": [{"type": "flat"}, {"type": "off", "enabled": false}],
        "scenes": [{"id": "one", "entries": [{"type": "listed"}, {}]}],
        "audio": {"path": "@music", "volume": 0.25, "startOffset": -2},
        "assets": {"music": "old.mp3", "music": "audio/track.mp3"}, "fallbackImage": "", "imagePath": "@music",
        "globals": {"width": 1e12, "height": -3.9, "fullscreen": true, "loop": false},
        "schemaVersion": "native-runtime/v1"})");
    const RuntimeConfig config = loadRuntimeConfig(
        path, [](const std::string& baseDir) { logLine("pack below %s\n", baseDir.c_str()); });
    EXPECT_EQ(log.text(), "[CONFIG] baseDir = " + show.baseDir + "\npack below " + show.baseDir +
                              "\n[CONFIG] native runtime schema: native-runtime/v1\n"
                              "[CONFIG] 2 transitions\n"
                              "[CONFIG] 1 scenes, 1 timeline entries, 2147483647x-3 fullscreen\n");
    EXPECT_EQ(config.audioPath, show.path("audio/track.mp3"));
    EXPECT_EQ(config.fallbackImagePath, config.audioPath);
    EXPECT_EQ(config.volume, 0.25f);
    EXPECT_EQ(config.startOffset, 0.0f);                    // at least 0
    EXPECT_EQ(config.transitions.at("a").look.effectId, 0); // the later one of a name replaces the earlier as a whole
    EXPECT_EQ(config.transitions.at("b").look.effectId, 14);
    EXPECT_EQ(config.transitions.at("b").duration, 1.5f);
    EXPECT_EQ(config.transitions.at("b").look.bands, 3);
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
        held += sizeof e + e.channels[0].size();
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
    }
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
    EXPECT_EQ(parseEntry(R"({"params":{"texture":"@t","channel1":""}})").channels,
              (std::array<std::string, 4>{nativePath("D:/t.png"), nativePath("/show/"), "", ""}));
}

TEST(TimelineEntry, ChildrenKeepTheParentsPlaceInTime) {
    const TimelineEntry parent = parseEntry(
        R"({"id":"p","type":"DynamicSplit","scene":"s","start":3,"delay":1,"duration":7,"overlay":true,"layer":2,
            "params":{"alpha":0.5,"blendMode":"additive","image":"parent.png",
                "a":{"id":"c","type":"plasma","scene":"x","start":9,"delay":9,"duration":9,"overlay":true,
                     "enabled":false,"layer":9,"params":{"timeScale":2,"channel1":"@t"}}}})");
    ASSERT_EQ(parent.children.size(), 2u);
    const TimelineEntry& child = parent.children[0];
    EXPECT_EQ(describe(child), "p_a|plasma|s 3+0 for 7 layer 2 alpha 1 scale 2 alpha");
    EXPECT_EQ(child.channels, (decltype(child.channels){"", nativePath("D:/t.png"), "", ""}));
    EXPECT_EQ(describe(parent.children[1]), "p_b||s 3+0 for 7 layer 2 alpha 1 scale 1 alpha");
    EXPECT_EQ(parent.children[1].presence, Presence::missing);
}

// Kind, children and values for shaders of an entry, for a table.
std::string outline(const TimelineEntry& entry) {
    std::string text = entry.id + ":" + std::to_string(static_cast<int>(entry.kind));
    for (const ShaderParam& param : entry.shaderParams) text += " " + param.name + "*" + std::to_string(param.count);
    for (const TimelineEntry& child : entry.children) text += " (" + outline(child) + ")";
    return text;
}

TEST(TimelineEntry, HoldsItsKindWithAllThatItsParamsSay) {
    const auto kind = [](EffectKind value) { return std::to_string(static_cast<int>(value)); };
    const std::string shader = kind(EffectKind::shader), image = kind(EffectKind::image);
    const std::pair<std::string, std::string> cases[] = {
        {R"({"type":"plasma","params":{"speed":2,"on":true,"pair":[1,2],"text":"x","five":[1,2,3,4,5],"one":[1],"off":nan,
             "wrong":[1,"x"],"speed":[1,2,3],"alpha":1,"timeScale":2}})",
         ":" + shader + " speed*1 on*1 pair*2"},
        {R"({"params":{"image":"x.png"}})", ":" + image},
        {R"({"type":"Image","params":{"fit":"COVER"}})", ":" + image},
        {R"({"id":"b","type":"BLEND","params":{"source":{},"target":{"type":"pip","params":{"speed":1}}}})",
         "b:" + kind(EffectKind::blend) + " (b_source:" + shader + ") (b_target:" + kind(EffectKind::pip) +
             " (b_target_main:" + image + ") (b_target_pip:" + image + "))"},
        {R"({"type":"chain","params":{"source":{}}})", ":" + kind(EffectKind::chain)},
        {R"({"type":"chain","params":{"source":{},"postProcess":{"type":"glitch"}}})",
         ":" + kind(EffectKind::chain) + " (_source:" + shader + ") (_post:" + shader + ")"},
        {R"({"type":"timeline_blend","params":{"steps":[1,{"effect":{"type":"kinetictext"}}]}})",
         ":" + kind(EffectKind::timelineBlend) + " (_step1:" + kind(EffectKind::kineticText) + ")"},
        {R"({"type":"piptexture","params":[]})", ":" + kind(EffectKind::pip)},
    };
    for (const auto& [json, wanted] : cases) EXPECT_EQ(outline(parseEntry(json)), wanted) << json;

    EXPECT_EQ(paramsOf<ImageParams>(parseEntry(R"({"type":"image","params":{"fit":"COVER"}})")).fit, FitMode::cover);
    EXPECT_EQ(paramsOf<BlendParams>(parseEntry(R"({"type":"blend","duration":5,"params":{"startTime":4.995}})"))
                  .blendDuration,
              0.01f);
    const auto steps = parseEntry(
        R"({"type":"timeline_blend","params":{"steps":[{"startTime":2},{"start":3,"startTime":1}]}})");
    EXPECT_EQ(paramsOf<TimelineBlendParams>(steps).steps[0].start, 2.0f);
    EXPECT_EQ(paramsOf<TimelineBlendParams>(steps).steps[1].start, 3.0f);
    EXPECT_EQ(paramsOf<PipParams>(parseEntry(R"({"type":"piptexture","params":{"image":5,"iChannel0":"@t"}})")).image,
              nativePath("D:/t.png"));

    std::string nested = "{}";
    for (int i = 0; i < 20; ++i) nested = R"({"type":"chain","params":{"source":{},"postProcess":)" + nested + "}}";
    const TimelineEntry outermost = parseEntry(nested);
    const TimelineEntry* deepest = &outermost;
    for (; !deepest->children.empty(); deepest = &deepest->children[1]) {
    }
    EXPECT_TRUE(deepest->depth == kMaxNesting + 1 && deepest->presence == Presence::tooDeep);
    EXPECT_EQ(deepest->type, "chain"); // for whoever reports it
}

TEST(Show, NotesWhatIsOddWithItsPlace) {
    const RuntimeConfig show = readShow(R"({"globals": {"width": "wide", "height": 1e12},
        "assets": {"a": 5}, "transitions": {"one": {"type": "wipes", "params": {"softness": nan}}},
        "scenes": [{"id": 3, "entries": [{"layer": "top"}]}],
        "entries": [{}, {"type": "blend", "params": {"alpha": "x", "source": {"type": "bitmaptext", "params":
            {"alpha": 1.5, "textColor": [1, 1, 1], "bgColor": [0, 0, "x", 0], "scale": null}}, "target": {}}},
            {"type": "timeline_blend", "params": {"steps": [{"start": -1}], "mixMode": "Fade", "alpha": 0.5}},
            {"type": "creditroll", "params": {"alpha": true, "entries": [{"role": 1}]}}]})",
                                        "/show");
    std::string odd;
    for (const Oddity& oddity : show.oddities) {
        odd += oddity.place + " " + std::to_string(static_cast<int>(oddity.kind)) + "\n";
    }
    EXPECT_EQ(odd, "globals.width 0\nglobals.height 2\nassets.a 0\nscenes[0].id 0\n"
                   "scenes[0].entries[0].layer 0\nentries[1].params.alpha 0\n"
                   "entries[1].params.source.params.textColor 0\n"
                   "entries[1].params.source.params.bgColor[2] 0\n"
                   "entries[1].params.source.params.alpha 2\n"
                   "entries[2].params.steps[0].start 2\nentries[2].params.steps[0].effect 6\n"
                   "entries[3].params.alpha 0\nentries[3].params.entries[0].role 0\n"
                   "transitions.one.type 3\ntransitions.one.params.softness 1\n");

    std::string many = R"({"entries": [)";
    for (int i = 0; i < 5000; ++i) many += R"({"start": "now"}, )";
    EXPECT_EQ(readShow(many, "").oddities.size(), kMaxOddities);
}

} // namespace
