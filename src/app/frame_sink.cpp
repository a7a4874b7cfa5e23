#include "app/frame_sink.h"

#include "app/ffmpeg_words.h"
#include "app/options.h"
#include "foundation/text.h"
#include "platform/files.h"
#include "platform/image.h"
#include "platform/output.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>

namespace {

constexpr int kMaxDigits = 9; // of a padded frame number
// While ffmpeg opens its inputs, one after the other, it takes up to half a second of sound and no picture. Where the
// sound only comes with the pictures, silence goes before it.
constexpr int kSoundLead = kMusicRate;
constexpr size_t kBandBytes = 1 << 16; // stays in the processor's cache between turning and writing

bool fail(FrameSink& sink, const std::string& path, const std::string& reason) {
    if (sink.failure.empty()) sink.failure = path + ": " + reason;
    return false;
}

std::string outputName(const FrameSink& sink) {
    return sink.output == "-" ? "standard output" : sink.output;
}

bool openPictures(FrameSink& sink, long long frames) {
    std::string path;
    bool hasNumber = false;
    if (!framePath(sink.output, 0, path, hasNumber)) {
        return fail(sink, sink.output, "the pattern may hold one %d (or %04d), and %% for a per cent sign");
    }
    return hasNumber || frames == 1 || fail(sink, sink.output, "several frames need a %d in the name");
}

bool openRaw(FrameSink& sink) {
    std::string reason;
    sink.raw = openOutput(sink.output, reason);
    return sink.raw || fail(sink, outputName(sink), reason);
}

size_t nextSound(void* soundtrack, char* bytes, size_t size) {
    return nextSoundBytes(*static_cast<Soundtrack*>(soundtrack), bytes, size);
}

bool openVideo(FrameSink& sink, const VideoJob& job) {
    // What would only come out when everything is rendered.
    if (isDirectory(sink.output)) return fail(sink, sink.output, "it is a directory");
    sink.planar = !isAnimation(sink.output);
    sink.partPath = sink.output + ".part";
    VideoJob whole = job;
    whole.path = sink.partPath;
    whole.width = sink.planar ? evenSide(sink.width) : sink.width;
    whole.height = sink.planar ? evenSide(sink.height) : sink.height;
    whole.hasSoundtrack = sink.sound.track.frames > 0;
    sink.rate = job.rate;
    sink.soundByFrame = whole.hasSoundtrack && job.frames == 0;
    if (sink.soundByFrame) {
        whole.soundLead = kSoundLead;
        appendSpan(sink.sound, {sink.sound.track.frames, static_cast<uint64_t>(kSoundLead)});
    } else {
        appendSpan(sink.sound, {sink.sound.start, soundBefore(job.frames, job.rate)});
    }
    std::string reason;
    sink.encoder = startProcess(videoCommand(whole), reason,
                                whole.hasSoundtrack ? SecondInput{nextSound, &sink.sound} : SecondInput{});
    return sink.encoder || fail(sink, sink.output, "the program ffmpeg cannot be started: " + reason);
}

bool writeBytes(FrameSink& sink, const uint8_t* bytes, size_t size, const std::atomic<bool>& cancelled) {
    if (sink.encoder) return feedProcess(sink.encoder, bytes, size, cancelled);
    if (std::fwrite(bytes, 1, size, sink.raw) == size) return true;
    return fail(sink, outputName(sink), std::strerror(errno));
}

// Copies B, G, R, A pixels as opaque R, G, B, A; in whole words, of which the compiler makes vectors.
void copyOpaque(uint8_t* __restrict target, const uint8_t* __restrict source, size_t pixels) {
    constexpr bool kLittle = std::endian::native == std::endian::little;
    constexpr uint32_t kAlpha = kLittle ? 0xFF000000u : 0x000000FFu, kGreen = kLittle ? 0x0000FF00u : 0x00FF0000u;
    for (size_t i = 0; i < 4 * pixels; i += 4) {
        uint32_t pixel = 0;
        std::memcpy(&pixel, source + i, sizeof pixel);
        const uint32_t outer = pixel & ~(kAlpha | kGreen);
        pixel = (pixel & kGreen) | outer << 16 | outer >> 16 | kAlpha;
        std::memcpy(target + i, &pixel, sizeof pixel);
    }
}

// Turns the frame upright, a few rows at a time.
bool writeRows(FrameSink& sink, const uint8_t* pixels, const std::atomic<bool>& cancelled) {
    const size_t rowBytes = static_cast<size_t>(sink.width) * 4;
    const size_t rows = static_cast<size_t>(sink.height);
    const size_t bandRows = std::clamp<size_t>(kBandBytes / rowBytes, 1, rows);
    sink.band.resize(bandRows * rowBytes);
    for (size_t first = 0; first < rows; first += bandRows) {
        const size_t count = std::min(bandRows, rows - first);
        for (size_t row = 0; row < count; ++row) {
            const uint8_t* source = pixels + (rows - 1 - first - row) * rowBytes;
            copyOpaque(sink.band.data() + row * rowBytes, source, rowBytes / 4);
        }
        if (!writeBytes(sink, sink.band.data(), count * rowBytes, cancelled)) return false;
    }
    return true;
}

bool writePicture(FrameSink& sink, const uint8_t* pixels) {
    std::string path, png, reason;
    bool hasNumber = false;
    framePath(sink.output, sink.written, path, hasNumber);
    if (!encodePng(pixels, sink.width, sink.height, false, png, {.bottomFirst = true, .blueFirst = true})) {
        return fail(sink, path, "the PNG encoder failed");
    }
    return writeFile(path, png, reason) || fail(sink, path, reason);
}

bool writePlanes(FrameSink& sink, const uint8_t* pixels, const std::atomic<bool>& cancelled) {
    convertFrame(sink.yuv, pixels, sink.width, sink.height);
    return writeBytes(sink, sink.yuv.planes.data(), sink.yuv.planes.size(), cancelled);
}

// Some versions end with exit code 0 although the disk was full, if that comes out at the end.
bool saysNotWritten(const std::string& said) {
    return containsText(said, "Error writing") || containsText(said, "Error closing file");
}

void closeVideo(FrameSink& sink, const std::atomic<bool>& cancelled) {
    std::string said, reason;
    const bool finished = finishProcess(sink.encoder, cancelled, said) && !saysNotWritten(said);
    sink.encoder = nullptr;
    if (!finished) fail(sink, sink.output, "ffmpeg: " + ffmpegWords(said));
    if (cancelled || !sink.failure.empty()) {
        removeFile(sink.partPath);
    } else if (!renameFile(sink.partPath, sink.output, reason)) {
        // Somebody may be watching the older video; hours of work are not thrown away for that.
        fail(sink, sink.output, reason + "; the new video is " + sink.partPath);
    }
}

} // namespace

bool openSink(FrameSink& sink, const VideoJob& job) {
    sink.output = job.output;
    sink.width = job.width;
    sink.height = job.height;
    if (isRawOutput(job.output)) return openRaw(sink);
    return isVideoOutput(job.output) ? openVideo(sink, job) : openPictures(sink, job.frames);
}

bool writeFrame(FrameSink& sink, const RecordedFrame& frame, const std::atomic<bool>& cancelled) {
    const uint8_t* pixels = frame.pixels;
    if (sink.soundByFrame) {
        const uint64_t end = soundBefore(sink.written + 1, sink.rate), begin = soundBefore(sink.written, sink.rate);
        appendSpan(sink.sound, {frame.music, end - begin});
    }
    const bool written = sink.planar                ? writePlanes(sink, pixels, cancelled)
                         : sink.raw || sink.encoder ? writeRows(sink, pixels, cancelled)
                                                    : writePicture(sink, pixels);
    if (written) ++sink.written;
    // An encoder that takes no more has ended: its words say why, or it has all that its arguments ask for.
    if (!written && sink.encoder) closeVideo(sink, cancelled);
    return written;
}

bool closeSink(FrameSink& sink, const std::atomic<bool>& cancelled) {
    std::string reason;
    if (sink.encoder) closeVideo(sink, cancelled);
    if (sink.raw && !closeOutput(sink.raw, reason)) fail(sink, outputName(sink), reason);
    sink.raw = nullptr;
    return sink.failure.empty();
}

bool framePath(const std::string& pattern, long long number, std::string& path, bool& hasNumber) {
    path.clear();
    hasNumber = false;
    for (size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '%') {
            path += pattern[i];
            continue;
        }
        size_t end = i + 1;
        if (end < pattern.size() && pattern[end] == '%') {
            path += '%';
            i = end;
            continue;
        }
        const bool padded = end < pattern.size() && pattern[end] == '0';
        int width = 0;
        while (end < pattern.size() && pattern[end] >= '0' && pattern[end] <= '9' && width <= kMaxDigits) {
            width = width * 10 + (pattern[end++] - '0');
        }
        const bool isNumber = end < pattern.size() && pattern[end] == 'd' && (width == 0 || padded) &&
                              width <= kMaxDigits;
        if (!isNumber || hasNumber) return false;
        hasNumber = true;
        const std::string digits = std::to_string(number);
        if (digits.size() < static_cast<size_t>(width)) path.append(static_cast<size_t>(width) - digits.size(), '0');
        path += digits;
        i = end;
    }
    return true;
}
