#include "app/recorder.h"

#include "app/options.h"
#include "foundation/log.h"
#include "gpu/gl_functions.h"
#include "platform/clock.h"
#include "platform/image.h"
#include "platform/output.h"

#include <cerrno>
#include <cstring>

namespace {

constexpr double kReportSeconds = 0.25;
constexpr int kMaxDigits = 9; // of a padded frame number

bool fail(Recorder& recorder, const std::string& path, const std::string& reason) {
    if (!recorder.failed) printError("Cannot write %s: %s\n", path.c_str(), reason.c_str());
    recorder.failed = true;
    return false;
}

std::string outputName(const Recorder& recorder) {
    return recorder.output == "-" ? "standard output" : recorder.output;
}

// Turns the frame upright. The window shows a picture without alpha, so the file has none either.
void copyPicture(Recorder& recorder, const unsigned char* pixels) {
    const size_t rowBytes = static_cast<size_t>(recorder.readback.width) * 4;
    const size_t rows = static_cast<size_t>(recorder.readback.height);
    for (size_t row = 0; row < rows; ++row) {
        uint8_t* target = recorder.picture.data() + row * rowBytes;
        std::memcpy(target, pixels + (rows - 1 - row) * rowBytes, rowBytes);
        for (size_t x = 3; x < rowBytes; x += 4) target[x] = 255;
    }
}

bool writePicture(Recorder& recorder) {
    std::string reason;
    if (recorder.raw) {
        if (std::fwrite(recorder.picture.data(), 1, recorder.picture.size(), recorder.raw) == recorder.picture.size()) return true;
        return fail(recorder, outputName(recorder), std::strerror(errno));
    }
    std::string path, png;
    bool hasNumber = false;
    framePath(recorder.output, recorder.written, path, hasNumber);
    if (!encodePng(recorder.picture.data(), recorder.readback.width, recorder.readback.height, false, png)) {
        return fail(recorder, path, "the PNG encoder failed");
    }
    return writeFile(path, png, reason) || fail(recorder, path, reason);
}

void reportProgress(Recorder& recorder, bool last) {
    if (!recorder.showProgress) return;
    const int64_t now = clockCounter();
    const double frequency = static_cast<double>(clockFrequency());
    if (!last && static_cast<double>(now - recorder.lastReport) < kReportSeconds * frequency) return;
    recorder.lastReport = now;
    const double passed = static_cast<double>(now - recorder.startCounter) / frequency;
    const double rate = static_cast<double>(recorder.written) / (passed > 0.0 ? passed : 1.0);
    if (recorder.expected > 0 && rate > 0.0) {
        const double left = static_cast<double>(recorder.expected - recorder.written) / rate;
        std::fprintf(stderr, "\r%lld of %lld frames, %3.0f%%, %.1f frames/s, %.0f s left   ", recorder.written,
                     recorder.expected, 100.0 * static_cast<double>(recorder.written) / static_cast<double>(recorder.expected),
                     rate, left);
    } else {
        std::fprintf(stderr, "\r%lld frames, %.1f frames/s   ", recorder.written, rate);
    }
    if (last) std::fputc('\n', stderr);
    std::fflush(stderr);
}

bool writeOldestFrame(Recorder& recorder) {
    const unsigned char* pixels = takeFrame(recorder.readback);
    if (pixels) copyPicture(recorder, pixels);
    releaseFrame(recorder.readback);
    if (!pixels) return fail(recorder, outputName(recorder), "the driver does not hand the frame over");
    if (recorder.failed || !writePicture(recorder)) return false;
    ++recorder.written;
    reportProgress(recorder, false);
    return true;
}

} // namespace

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
        const bool isNumber = end < pattern.size() && pattern[end] == 'd' && (width == 0 || padded) && width <= kMaxDigits;
        if (!isNumber || hasNumber) return false;
        hasNumber = true;
        const std::string digits = std::to_string(number);
        if (digits.size() < static_cast<size_t>(width)) path.append(static_cast<size_t>(width) - digits.size(), '0');
        path += digits;
        i = end;
    }
    return true;
}

bool openRecorder(Recorder& recorder, const std::string& output, GlLookup lookup, int width, int height,
                  long long expectedFrames) {
    recorder.output = output;
    recorder.expected = expectedFrames;
    if (isRawOutput(output)) {
        std::string reason;
        recorder.raw = openOutput(output, reason);
        if (!recorder.raw) return fail(recorder, outputName(recorder), reason);
    } else {
        std::string path;
        bool hasNumber = false;
        if (!framePath(output, 0, path, hasNumber)) {
            return fail(recorder, output, "the pattern may hold one %d (or %04d), and %% for a per cent sign");
        }
        if (!hasNumber && expectedFrames != 1) {
            return fail(recorder, output, "several frames need a %d in the name");
        }
    }
    if (!createReadback(recorder.readback, lookup, width, height)) {
        return fail(recorder, outputName(recorder), "the driver cannot map pixel buffers");
    }
    recorder.picture.resize(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
    recorder.showProgress = isTerminal(stderr);
    recorder.startCounter = clockCounter();
    recorder.active = true;
    return true;
}

bool recordFrame(Recorder& recorder) {
    if (recorder.failed) return false;
    requestFrame(recorder.readback);
    return framesOnTheWay(recorder.readback) < Readback::kSlots || writeOldestFrame(recorder);
}

bool closeRecorder(Recorder& recorder) {
    while (recorder.active && framesOnTheWay(recorder.readback) > 0) writeOldestFrame(recorder);
    if (recorder.active) reportProgress(recorder, true);
    std::string reason;
    if (recorder.raw && !closeOutput(recorder.raw, reason)) fail(recorder, outputName(recorder), reason);
    recorder.raw = nullptr;
    deleteReadback(recorder.readback);
    recorder.active = false;
    return !recorder.failed;
}
