#include "app/recorder.h"

#include "foundation/log.h"
#include "platform/clock.h"
#include "platform/output.h"
#include "platform/shell_state.h"
#include "platform/stop_request.h"

#include <chrono>
#include <functional>

namespace {

constexpr double kReportSeconds = 0.25;
constexpr std::chrono::milliseconds kTick(50); // between looks for a stop request while waiting
constexpr std::chrono::seconds kPatience(3);   // with an output that cannot be closed

bool fail(Recorder& recorder, const std::string& failure) {
    if (!recorder.failed) printError("Cannot write %s\n", failure.c_str());
    recorder.failed = true;
    return false;
}

// The writer thread: every frame that is handed over, in order, then the end.
void writeFrames(Recorder& recorder) {
    std::unique_lock lock(recorder.mutex);
    while (true) {
        recorder.toWriter.wait(lock, [&] { return recorder.done < recorder.handedOver || recorder.ended; });
        if (recorder.done == recorder.handedOver) break;
        const RecordedFrame frame = recorder.frames[static_cast<size_t>(recorder.done % Readback::kSlots)];
        if (recorder.takesFrames) {
            lock.unlock();
            const bool written = writeFrame(recorder.sink, frame, recorder.cancelled);
            lock.lock();
            recorder.written += written ? 1 : 0;
            if (!written) recorder.takesFrames = false;
        }
        ++recorder.done;
        recorder.toDrawer.notify_one();
    }
    lock.unlock();
    closeSink(recorder.sink, recorder.cancelled);
    lock.lock();
    recorder.closed = true;
    recorder.toDrawer.notify_one();
    recorder.toWatcher.notify_one();
}

// Until the writer makes `ready` true, of which it must have the lock. Whoever asks the player to stop
// meanwhile does not wait for an encoder's backlog.
template <class Condition>
void waitForWriter(Recorder& recorder, std::unique_lock<std::mutex>& lock, Condition ready) {
    while (!recorder.toDrawer.wait_for(lock, kTick, ready)) {
        lock.unlock();
        pumpMessages(recorder.surface);
        if (!shellState().running) recorder.interrupted = recorder.cancelled = true;
        lock.lock();
    }
}

// Maps the oldest frame that is on its way and gives it to the writer.
bool handOver(Recorder& recorder) {
    const unsigned char* pixels = mapFrame(recorder.readback);
    if (!pixels) return fail(recorder, recorder.sink.output + ": the driver does not hand the frame over");
    const std::lock_guard lock(recorder.mutex);
    const size_t slot = static_cast<size_t>(recorder.handedOver++ % Readback::kSlots);
    recorder.frames[slot] = {pixels, recorder.music[slot]};
    recorder.toWriter.notify_one();
    return true;
}

// Takes back what the writer is done with, and waits until there is a buffer for the next frame.
bool makeRoom(Recorder& recorder) {
    Readback& readback = recorder.readback;
    std::unique_lock lock(recorder.mutex);
    waitForWriter(recorder, lock, [&] { return readback.requested - recorder.done < Readback::kSlots; });
    const long long done = recorder.done;
    const bool takesFrames = recorder.takesFrames;
    lock.unlock();
    while (readback.released < done) releaseFrame(readback);
    return takesFrames;
}

void reportProgress(Recorder& recorder, bool last) {
    if (!recorder.showProgress) return;
    const int64_t now = clockCounter();
    const double frequency = static_cast<double>(clockFrequency());
    if (!last && static_cast<double>(now - recorder.lastReport) < kReportSeconds * frequency) return;
    recorder.lastReport = now;
    std::unique_lock lock(recorder.mutex);
    const long long written = recorder.written;
    lock.unlock();
    const double passed = static_cast<double>(now - recorder.startCounter) / frequency;
    const double rate = static_cast<double>(written) / (passed > 0.0 ? passed : 1.0);
    if (recorder.expected > 0 && rate > 0.0) {
        const double left = static_cast<double>(recorder.expected - written) / rate;
        std::fprintf(stderr, "\r%lld of %lld frames, %3.0f%%, %.1f frames/s, %.0f s left   ", written,
                     recorder.expected, 100.0 * static_cast<double>(written) / static_cast<double>(recorder.expected),
                     rate, left);
    } else {
        std::fprintf(stderr, "\r%lld frames, %.1f frames/s   ", written, rate);
    }
    if (last) std::fputc('\n', stderr);
    std::fflush(stderr);
}

void announceInterruption(const Recorder& recorder) {
    const char* name = recorder.sink.output.c_str();
    std::string frames = std::to_string(recorder.written);
    if (recorder.expected > 0) frames += " of " + std::to_string(recorder.expected);
    if (isVideoOutput(recorder.sink.output)) {
        printError("Interrupted after %s frames: %s is not written\n", frames.c_str(), name);
    } else {
        printError("Interrupted: %s has %s frames\n", name, frames.c_str());
    }
}

// The watcher thread. A second stop request ends the process though the drawing thread may be in a frame that takes
// minutes, but first the output is closed: nothing half of it stays. What comes after the second changes nothing.
void watchForHaste(Recorder& recorder) {
    std::unique_lock lock(recorder.mutex);
    const auto isClosed = [&] { return recorder.closed; };
    do {
        if (recorder.toWatcher.wait_for(lock, kTick, isClosed)) return;
    } while (stopRequests() < 2);
    recorder.cancelled = true;
    recorder.takesFrames = false;
    recorder.ended = true;
    recorder.toWriter.notify_one();
    // Nobody can be told to wait for an encoder that not even the system can end, or for a disk that stands still.
    recorder.toWatcher.wait_for(lock, kPatience, isClosed);
    if (recorder.showProgress) std::fputc('\n', stderr);
    announceInterruption(recorder);
    endByStopRequest();
}

} // namespace

bool openRecorder(Recorder& recorder, const VideoJob& job, Soundtrack sound, Surface* surface) {
    recorder.surface = surface;
    recorder.expected = job.frames;
    if (!createReadback(recorder.readback, glLookup(surface), job.width, job.height)) {
        return fail(recorder, job.output + ": the driver cannot map pixel buffers");
    }
    recorder.rate = job.rate;
    recorder.sink.sound = std::move(sound);
    recorder.jumpPosition = recorder.sink.sound.start;
    holdStopRequests(true);
    if (!openSink(recorder.sink, job)) {
        holdStopRequests(false);
        return fail(recorder, recorder.sink.failure);
    }
    recorder.showProgress = isTerminal(stderr);
    recorder.startCounter = clockCounter();
    recorder.writer = std::thread(writeFrames, std::ref(recorder));
    recorder.watcher = std::thread(watchForHaste, std::ref(recorder));
    recorder.active = true;
    return true;
}

void jumpMusic(Recorder& recorder, uint64_t position) {
    recorder.jumpPosition = position;
    recorder.jumpFrame = recorder.readback.requested;
}

bool recordFrame(Recorder& recorder) {
    if (recorder.failed || !makeRoom(recorder)) return false;
    const long long frame = recorder.readback.requested;
    recorder.music[static_cast<size_t>(frame % Readback::kSlots)] = recorder.jumpPosition +
                                                                    soundBefore(frame, recorder.rate) -
                                                                    soundBefore(recorder.jumpFrame, recorder.rate);
    requestFrame(recorder.readback);
    // The newest frame is left to the driver until the next one is drawn.
    if (recorder.readback.requested - recorder.readback.mapped > 1 && !handOver(recorder)) return false;
    reportProgress(recorder, false);
    return true;
}

bool closeRecorder(Recorder& recorder, bool interrupted) {
    if (recorder.active) {
        if (interrupted) recorder.interrupted = recorder.cancelled = true;
        while (!recorder.failed && recorder.readback.mapped < recorder.readback.requested) handOver(recorder);
        shellState().running = true; // from here on only a stop request makes it false
        std::unique_lock lock(recorder.mutex);
        if (recorder.failed) recorder.cancelled = true;
        recorder.ended = true;
        recorder.toWriter.notify_one();
        waitForWriter(recorder, lock, [&] { return recorder.closed; });
        lock.unlock();
        recorder.writer.join();
        recorder.watcher.join();
        holdStopRequests(false);
        reportProgress(recorder, true);
        if (recorder.interrupted) announceInterruption(recorder);
        else if (!recorder.sink.failure.empty()) fail(recorder, recorder.sink.failure);
    }
    deleteReadback(recorder.readback);
    recorder.active = false;
    return !recorder.failed && !recorder.interrupted;
}
