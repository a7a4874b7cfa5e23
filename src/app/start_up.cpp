#include "app/player.h"

#include "app/loop.h"
#include "app/steering.h"
#include "foundation/log.h"
#include "gpu/gl_functions.h"
#include "gpu/shader_pack.h"
#include "platform/files.h"
#include "platform/image.h"
#include "platform/shell_state.h"
#include "text/bitmap_font.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kFailed = 1; // exit code

bool loadShow(Player& player) {
    const std::string& path = player.options.configPath;
    if (!isRegularFile(path)) {
        logLine("[ERROR] Config not found: %s\n", path.c_str());
        return false;
    }
    logLine("=== Quillon DemoScene - Native Player ===\n");
    logLine("[LOAD] %s\n", path.c_str());
    keepListings(true);
    player.config = loadRuntimeConfig(path, loadShaderPack);
    keepListings(false);
    if (player.config.scenes.empty() && player.config.entries.empty()) {
        logLine("[ERROR] No scenes or timeline entries found.\n");
        return false;
    }
    return true;
}

bool openSurface(Player& player) {
    const Options& options = player.options;
    const int width = options.width ? options.width : std::max(1, player.config.width);
    const int height = options.height ? options.height : std::max(1, player.config.height);
    const bool fullscreen = options.fullscreen.value_or(player.config.fullscreen);
    player.surface = options.headless ? createHeadlessSurface(width, height)
                                      : createPlayerWindow(width, height, fullscreen);
    if (player.surface && loadGlFunctions(glLookup(player.surface))) return true;
    logLine("[ERROR] Failed to load OpenGL 3.3 functions.\n");
    return false;
}

bool wantsMusic(const Options& options) {
    return options.output.empty() && options.audio.value_or(!options.headless);
}

void openMusic(Player& player) {
    const RuntimeConfig& config = player.config;
    if (!wantsMusic(player.options) || config.audioPath.empty()) return;
    if (!isRegularFile(config.audioPath)) {
        logLine("[AUDIO] File not found: %s\n", config.audioPath.c_str());
        return;
    }
    openAudio(player.audio, config.audioPath, config.volume, config.startOffset);
}

// Show time of the first frame: the option's, kept inside the show, else the show's own.
double firstTime(const Player& player) {
    const double start = player.options.start.value_or(0.0);
    if (!player.config.nativeRuntime) return start;
    const VisualRange range = visualRange(player.config);
    const bool given = player.options.start.has_value();
    return static_cast<double>(given ? clampToRange(range, static_cast<float>(start)) : range.start);
}

// Where the run stops, whatever the show says: the earlier of the end and the start plus the length.
void setStopTime(Player& player) {
    const Options& options = player.options;
    if (options.end) player.stopTime = *options.end;
    if (options.length) player.stopTime = std::min(player.stopTime, firstTime(player) + *options.length);
}

// Frames that offline rendering will write; 0 when nothing ends it, negative when it would write none.
long long expectedFrames(const Player& player) {
    if (!player.options.stills.empty()) return static_cast<long long>(player.options.stills.size());
    const double ownEnd = showEnd(player.config);
    const double end = ownEnd > 0.0 ? std::min(ownEnd, player.stopTime) : player.stopTime;
    constexpr double kMostFrames = 1e12; // a thousand years are as good as no end
    constexpr double kRounding = 1e-3;   // frames; times pass through floats
    const double frames = std::ceil((end - firstTime(player)) * player.options.fps - kRounding);
    if (frames <= 0.0) return -1;
    return frames < kMostFrames ? static_cast<long long>(frames) : 0;
}

// A number that counts: what is none is 0, as for play.
double finite(float value) {
    return std::isfinite(value) ? static_cast<double>(value) : 0.0;
}

// Keys that move a flat timeline.
bool hasSeeks(const Player& player) {
    const std::vector<ScriptedKey>& keys = player.options.keys;
    return player.config.nativeRuntime &&
           std::any_of(keys.begin(), keys.end(), [](const ScriptedKey& key) { return key.key != PlayerKey::escape; });
}

// The show's music from where the rendering begins: the player's own samples or, of files that only ffmpeg reads,
// ffmpeg's. None where there is none to be heard. False when the video cannot have what play would sound like.
bool prepareMusic(const Player& player, VideoMusic& music, Soundtrack& sound) {
    const RuntimeConfig& config = player.config;
    const std::string& output = player.options.output;
    const bool wanted = isVideoOutput(output) && !isAnimation(output) && player.options.audio.value_or(true);
    if (!wanted || config.audioPath.empty()) return true;
    if (!isRegularFile(config.audioPath)) {
        logLine("[AUDIO] File not found: %s\n", config.audioPath.c_str());
        return true;
    }
    const std::string path = locateFile(config.audioPath);
    std::string reason;
    sound.volume = std::clamp(static_cast<float>(finite(config.volume)), 0.0f, 1.0f);
    sound.start = musicFrame(finite(config.startOffset), firstTime(player));
    switch (decodeTrack(path, sound.track, reason)) {
    case TrackState::Decoded: return true;
    case TrackState::Unreadable:
        logLine("[AUDIO] Rendering without music; cannot read %s: %s\n", path.c_str(), reason.c_str());
        return true;
    case TrackState::Unknown: break;
    }
    if (!canDecodeMusic(path, reason)) {
        logLine("[AUDIO] Rendering without music; ffmpeg cannot read %s: %s\n", path.c_str(), reason.c_str());
        return true;
    }
    if (hasSeeks(player)) {
        printError("%s: this music cannot follow the jumps of --press in a video; --no-audio leaves it out\n",
                   path.c_str());
        return false;
    }
    music.path = path;
    music.volume = static_cast<double>(sound.volume);
    music.position = std::max(0.0, std::max(0.0, finite(config.startOffset)) + firstTime(player));
    return true;
}

bool openOffline(Player& player) {
    if (player.options.output.empty()) return true;
    const long long frames = expectedFrames(player);
    if (frames == 0) {
        printError("%s has no end; give --end or --length to render it\n", player.options.configPath.c_str());
        return false;
    }
    if (frames < 0) {
        printError("%s has no picture between the start and the end that were given\n",
                   player.options.configPath.c_str());
        return false;
    }
    const Options& options = player.options;
    VideoJob job;
    job.output = options.output;
    job.width = shellState().clientWidth;
    job.height = shellState().clientHeight;
    job.rate = options.rate;
    // Keys may make the show longer or shorter.
    job.frames = isVideoOutput(options.output) && !options.keys.empty() ? 0 : frames;
    job.arguments = options.ffmpegArguments;
    Soundtrack sound;
    return prepareMusic(player, job.music, sound) &&
           openRecorder(player.recorder, job, std::move(sound), player.surface);
}

void play(Player& player) {
    const bool stills = !player.options.stills.empty();
    if (player.config.nativeRuntime) {
        stills ? renderTimelineStills(player) : playTimeline(player);
    } else {
        stills ? renderSceneStills(player) : playScenes(player);
    }
}

// Closes the pictures; false when some are missing.
bool closeOffline(Player& player) {
    return closeRecorder(player.recorder, shellState().exitReason == "WM_QUIT");
}

void shutDown(Player& player) {
    closeAudio(player.audio);
    recordExitReason("main loop finished");
    logLine("[EXIT] %s\n", shellState().exitReason.c_str());
    releaseStage(player.stage);
    destroySurface(player.surface);
    stopImageDecoding();
    logLine("[DONE]\n");
}

} // namespace

int runPlayer(const Options& options) {
    if (isRawOutput(options.output)) setLogStream(stderr);
    Player player;
    player.options = options;
    announceDpiAwareness();
    if (!loadShow(player)) return kFailed;

    startImageDecoding();
    shellState().running = true;
    shellState().exitReason.clear();
    if (!openSurface(player)) {
        destroySurface(player.surface);
        stopImageDecoding();
        return kFailed;
    }
    logLine("[GL] %s\n", reinterpret_cast<const char*>(glGetString(GL_RENDERER)));
    logLine("[GL] OpenGL %s\n", reinterpret_cast<const char*>(glGetString(GL_VERSION)));
    player.stage.device = createDevice();
    loadBitmapFont(player.stage.fonts, player.config.baseDir);
    openMusic(player);

    setStopTime(player);
    const bool ready = openOffline(player);
    if (ready) play(player);
    const bool recorded = closeOffline(player);
    shutDown(player);
    return ready && recorded ? 0 : kFailed;
}
