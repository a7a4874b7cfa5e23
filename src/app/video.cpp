#include "app/video.h"

#include "app/ffmpeg_words.h"
#include "foundation/text.h"
#include "platform/process.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

using Arguments = std::vector<std::string>;

constexpr long long kSampleRate = 48000;

struct VideoKind {
    const char* ending;
    const char* muxer; // named, because the file has another ending while it is written
    Arguments picture;
    Arguments sound; // empty: none
};

const VideoKind& videoKind(const std::string& output) {
    static const Arguments kH264 = {"-c:v", "libx264", "-preset", "medium", "-crf", "18"};
    static const Arguments kAac = {"-c:a", "aac", "-b:a", "192k"};
    // In Matroska the start that AAC and Opus need would make the picture begin late; FLAC needs none.
    static const Arguments kFlac = {"-c:a", "flac"};
    static const Arguments kOpus = {"-c:a", "libopus", "-b:a", "160k", "-avoid_negative_ts", "disabled"};
    static const VideoKind kKinds[] = {
        {".mp4", "mp4", {"-c:v", "libx264", "-preset", "medium", "-crf", "18", "-movflags", "+faststart"}, kAac},
        {".mov", "mov", kH264, kAac},
        {".mkv", "matroska", kH264, kFlac},
        {".webm",
         "webm",
         {"-c:v", "libvpx-vp9", "-crf", "24", "-b:v", "0", "-deadline", "realtime", "-cpu-used", "5", "-row-mt", "1"},
         kOpus},
        // A palette a frame: one for the whole film would have to wait for its last frame, all others in memory.
        {".gif",
         "gif",
         {"-vf", "split[a][b];[a]palettegen=stats_mode=single[p];[b][p]paletteuse=new=1:dither=bayer:bayer_scale=4"},
         {}},
    };
    static const VideoKind kNone = {"", "", {}, {}};
    const std::string name = toLower(output);
    const auto found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [&](const VideoKind& kind) { return endsWith(name, kind.ending); });
    return found == std::end(kKinds) ? kNone : *found;
}

void append(Arguments& command, const Arguments& more) {
    command.insert(command.end(), more.begin(), more.end());
}

// Names of any kind, those that begin with "-" or look like a protocol too.
std::string fileName(const std::string& path) {
    return "file:" + path;
}

// Shows come from strangers, and their music with them: only sound itself is read, no play lists that name
// other files or hosts.
const Arguments kMusicInput = {"-protocol_whitelist", "file", "-format_whitelist",
                               "mp3,ogg,flac,wav,w64,aiff,aac,mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,"
                               "libopenmpt,libmodplug,tta,wv,ape,ac3,amr,au"};

// Counted in samples, for seconds would be cut to what the container's packets hold, and the times that a broken file
// tells jump. What comes before the position is decoded and dropped: seeking is exact in few kinds of files.
std::string soundFilter(const VideoJob& job) {
    const double most = 1e15; // samples; as good as never
    const double first = std::min(std::round(job.music.position * static_cast<double>(kSampleRate)), most);
    char text[320];
    int length = std::snprintf(text, sizeof text,
                               "volume=%.6f,aresample=%lld,aformat=channel_layouts=stereo,atrim=start_sample=%.0f,"
                               "asetpts=N/SR/TB,apad",
                               job.music.volume, kSampleRate, first);
    if (job.frames > 0) {
        const double seconds = static_cast<double>(job.frames) * job.rate.denominator / job.rate.numerator;
        const double samples = std::min(std::round(seconds * static_cast<double>(kSampleRate)), most);
        std::snprintf(text + length, sizeof text - static_cast<size_t>(length), ",atrim=end_sample=%.0f", samples);
    }
    return text;
}

Arguments colorTags() {
    return {"-color_range", "tv", "-colorspace", "bt709", "-color_primaries", "bt709", "-color_trc", "bt709"};
}

} // namespace

bool isVideoOutput(const std::string& output) {
    return *videoKind(output).ending != '\0';
}

bool isAnimation(const std::string& output) {
    return isVideoOutput(output) && videoKind(output).sound.empty();
}

std::vector<std::string> videoCommand(const VideoJob& job) {
    const VideoKind& kind = videoKind(job.output);
    const bool animation = isAnimation(job.output);
    const bool ownSound = !animation && job.hasSoundtrack;
    const bool hasSound = ownSound || (!animation && !job.music.path.empty());
    Arguments command = {"ffmpeg", "-hide_banner", "-nostdin", "-loglevel", "repeat+error", "-y", "-f", "rawvideo"};
    append(command, {"-pixel_format", animation ? "rgba" : "yuv420p"});
    append(command, {"-video_size", std::to_string(job.width) + "x" + std::to_string(job.height)});
    append(command, {"-framerate", std::to_string(job.rate.numerator) + "/" + std::to_string(job.rate.denominator)});
    if (!animation) append(command, colorTags());
    append(command, {"-i", "pipe:0"});
    if (ownSound) {
        // Small packets: whoever decides by the sound that comes next must not wait for that of pictures that it has
        // not taken yet.
        append(command, {"-f", "wav", "-ignore_length", "1", "-max_size", "1024", "-i", kSecondInputName});
    } else if (hasSound) {
        append(command, kMusicInput);
        append(command, {"-i", fileName(job.music.path)});
    }
    append(command, {"-map", "0:v:0"});
    append(command, kind.picture);
    if (!animation) append(command, colorTags());
    if (hasSound) {
        append(command, {"-map", "1:a:0"});
        const std::string lead = std::to_string(job.soundLead);
        if (!ownSound) append(command, {"-filter:a", soundFilter(job)});
        else if (job.soundLead > 0) append(command, {"-filter:a", "atrim=start_sample=" + lead + ",asetpts=N/SR/TB"});
        append(command, kind.sound);
        // Sound that comes with the pictures ends with them, unless the user's arguments end these before.
        if (job.frames == 0 && (!ownSound || !job.arguments.empty())) command.push_back("-shortest");
    }
    append(command, job.arguments);
    append(command, {"-f", kind.muxer, fileName(job.path)});
    return command;
}

bool canDecodeMusic(const std::string& path, std::string& reason) {
    Arguments command = {"ffmpeg", "-hide_banner", "-nostdin", "-loglevel", "error"};
    append(command, kMusicInput);
    append(command, {"-i", fileName(path), "-map", "0:a:0", "-t", "0.1", "-f", "null", "-"});
    // Where there is no ffmpeg the video says so.
    Process* process = startProcess(command, reason);
    const std::atomic<bool> cancelled = false;
    if (!process || finishProcess(process, cancelled, reason)) return true;
    reason = ffmpegWords(reason);
    return false;
}

bool splitArguments(const std::string& line, std::vector<std::string>& arguments) {
    std::string word;
    bool inWord = false; // quotes make a word of nothing
    char quote = '\0';
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        const bool escapes = quote == '"' ? i + 1 < line.size() && (line[i + 1] == '"' || line[i + 1] == '\\')
                                          : quote == '\0' && i + 1 < line.size();
        if (c == '\\' && escapes) {
            word += line[++i];
            inWord = true;
        } else if (quote ? c == quote : c == '"' || c == '\'') {
            quote = quote ? '\0' : c;
            inWord = true;
        } else if (!quote && (c == ' ' || c == '\t' || c == '\n')) {
            if (inWord) arguments.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inWord) arguments.push_back(word);
    return quote == '\0';
}
