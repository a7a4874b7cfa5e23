#include "config/runtime_config.h"

#include "foundation/json.h"
#include "foundation/log.h"
#include "platform/files.h"

#include <algorithm>

namespace {

using Config = RuntimeConfig;

constexpr const char* kNativeSchema = "native-runtime/v1";
constexpr size_t kMaxEntries = 16384; // each takes some kilobytes, and a shader to build
constexpr const char* kDefaultFallbackImage = "assets/images/Logo.png";

constexpr const char* kImagePath[] = {"imagePath"};

constexpr KeyOf<Config> kGlobalsKeys[] = {
    key<&Config::width>("width"),
    key<&Config::height>("height"),
    key<&Config::fullscreen>("fullscreen"),
    key<&Config::loop>("loop"),
};

constexpr KeyOf<Config> kAudioKeys[] = {
    key<&Config::audioPath>("path").as(TextForm::assetPath).unlessEmpty(),
    key<&Config::volume>("volume", {0.0f, 1.0f}),
    key<&Config::startOffset>("startOffset", atLeast(0.0f)),
};

constexpr KeyOf<Config> kRootKeys[] = {
    key<&Config::fallbackImagePath>("fallbackImage").as(TextForm::assetPath).unlessEmpty().also(kImagePath),
};

constexpr KeyOf<SceneSpec> kSceneKeys[] = {
    key<&SceneSpec::id>("id").as(TextForm::name),
    key<&SceneSpec::enabled>("enabled"),
};

constexpr KeyOf<TransitionSpec> kTransitionKeys[] = {
    key<&TransitionSpec::duration>("duration"),
};

void readAssets(Config& config, const JsonValue& assets, const Reading& at) {
    for (const auto& [alias, path] : assets.members) {
        if (path.kind == JsonKind::string) {
            config.assets[alias] = path.text;
        } else {
            noteOddity(at, alias, OddKind::wrongKind);
        }
    }
}

// `room` is what the show may still hold, in all its lists. `at` is the list's owner.
std::vector<TimelineEntry> readEntries(Config& config, const JsonValue& list, size_t& room, const Reading& at) {
    std::vector<TimelineEntry> entries;
    for (size_t i = 0; i < list.items.size(); ++i) {
        if (room == 0) {
            ++config.cutLists;
            noteOddity(at, "entries", OddKind::tooLong);
            break;
        }
        TimelineEntry entry = parseTimelineEntry(list.items[i], inside(at, "entries", static_cast<int>(i)));
        if (!entry.enabled) continue;
        entries.push_back(std::move(entry));
        --room;
    }
    return entries;
}

void readScenes(Config& config, const JsonValue& scenes, size_t& room, const Reading& root) {
    for (size_t i = 0; i < scenes.items.size(); ++i) {
        const Reading at = inside(root, "scenes", static_cast<int>(i));
        SceneSpec scene;
        readKeys(scenes.items[i], kSceneKeys, scene, at);
        scene.entries = readEntries(config, find(scenes.items[i], "entries"), room, at);
        if (scene.enabled && !scene.entries.empty()) config.scenes.push_back(std::move(scene));
    }
}

void readRootEntries(Config& config, const JsonValue& list, size_t& room, const Reading& root) {
    if (list.kind != JsonKind::array) {
        if (list.kind != JsonKind::null) noteOddity(root, "entries", OddKind::wrongKind);
        return;
    }
    config.nativeRuntime = true;
    config.entries = readEntries(config, list, room, root);
    std::stable_sort(config.entries.begin(), config.entries.end(), [](const TimelineEntry& a, const TimelineEntry& b) {
        if (a.start != b.start) return a.start < b.start;
        if (a.overlay != b.overlay) return b.overlay;
        return a.layer < b.layer;
    });
}

void readTransitions(Config& config, const JsonValue& transitions, const Reading& at) {
    for (const auto& [name, value] : transitions.members) {
        const Reading place = inside(at, name);
        TransitionSpec spec;
        readKeys(value, kTransitionKeys, spec, place);
        spec.look = readPresetLook(value, place);
        config.transitions[keptName(name)] = spec; // as the scenes' names are kept
    }
}

// Editors on Windows like to put a byte order mark in front of UTF-8.
const char* skipByteOrderMark(const std::string& bytes) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return bytes.c_str() + (std::string_view(bytes).substr(0, mark.size()) == mark ? mark.size() : 0);
}

void logShow(const Config& config) {
    if (config.nativeSchema) logLine("[CONFIG] native runtime schema: %s\n", kNativeSchema);
    for (int i = 0; i < config.cutLists; ++i) {
        logLine("[WARN] More than %d entries; the rest is left out\n", static_cast<int>(kMaxEntries));
    }
    if (!config.transitions.empty()) {
        logLine("[CONFIG] %d transitions\n", static_cast<int>(config.transitions.size()));
    }
    logLine("[CONFIG] %d scenes, %d timeline entries, %dx%d %s%s\n", static_cast<int>(config.scenes.size()),
            static_cast<int>(config.entries.size()), config.width, config.height,
            config.fullscreen ? "fullscreen" : "windowed", config.loop ? " loop" : "");
}

} // namespace

RuntimeConfig readShow(const std::string& bytes, const std::string& baseDir) {
    RuntimeConfig config;
    const JsonValue root = parseJson(skipByteOrderMark(bytes), config.leftOut);
    config.baseDir = baseDir;
    const Reading at = {&config.assets, &config.baseDir, &config.oddities, nullptr, {}, -1};
    config.nativeSchema = find(root, "schemaVersion").text == kNativeSchema;
    config.nativeRuntime = config.nativeSchema;
    readKeys(find(root, "globals"), kGlobalsKeys, config, inside(at, "globals"));
    const JsonValue& assets = find(root, "assets");
    if (isObject(assets, inside(at, "assets"))) readAssets(config, assets, inside(at, "assets"));
    readKeys(find(root, "audio"), kAudioKeys, config, inside(at, "audio"));
    config.fallbackImagePath = resolveAssetPath(kDefaultFallbackImage, config.assets, config.baseDir);
    readKeys(root, kRootKeys, config, at);
    size_t room = kMaxEntries;
    readScenes(config, find(root, "scenes"), room, at);
    readRootEntries(config, find(root, "entries"), room, at);
    readTransitions(config, find(root, "transitions"), inside(at, "transitions"));
    return config;
}

RuntimeConfig loadRuntimeConfig(const std::string& path, void (*loadPack)(const std::string& baseDir)) {
    const std::string file = fullFilePath(path);
    std::string bytes;
    if (!readFile(file, bytes) || bytes.empty()) {
        logLine("[ERROR] Cannot read %s\n", (file.empty() ? path : file).c_str());
        RuntimeConfig config;
        config.baseDir.clear();
        return config;
    }
    RuntimeConfig config = readShow(bytes, directoryOfFile(file));
    if (!config.leftOut.empty()) logLine("[WARN] %s: %s\n", file.c_str(), config.leftOut.c_str());
    // Of the root directory nothing is left before its slash.
    logLine("[CONFIG] baseDir = %s\n", config.baseDir == "/" ? "." : config.baseDir.c_str());
    if (loadPack) loadPack(config.baseDir);
    logShow(config);
    return config;
}
