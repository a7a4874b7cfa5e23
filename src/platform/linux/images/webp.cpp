#include "platform/linux/images/decoders.h"

#include <webp/decode.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>

namespace {

// A frame of an animation: its data with their chunk headers, and its place on the canvas.
struct Frame {
    std::string_view data;
    int64_t left = 0, top = 0, canvasWidth = 0, canvasHeight = 0;
};

uint32_t number(std::string_view bytes, size_t at, size_t count) {
    uint32_t value = 0;
    for (size_t i = count; i-- > 0;) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
    return value;
}

// The first frame of an animation, whose bytes begin with the header of an extended file.
bool findFrame(std::string_view bytes, Frame& frame) {
    constexpr size_t kExtended = 12, kChunkHeader = 8, kFrameHeader = 16;
    if (bytes.size() < kExtended + kChunkHeader + 10) return false;
    frame.canvasWidth = number(bytes, kExtended + 12, 3) + 1;
    frame.canvasHeight = number(bytes, kExtended + 15, 3) + 1;
    for (size_t at = kExtended; bytes.size() - at >= kChunkHeader;) {
        const size_t length = number(bytes, at + 4, 4);
        const size_t rest = bytes.size() - at - kChunkHeader;
        if (length > rest) return false;
        if (bytes.substr(at, 4) == "ANMF") {
            if (length < kFrameHeader) return false;
            frame.left = int64_t{2} * number(bytes, at + kChunkHeader, 3);
            frame.top = int64_t{2} * number(bytes, at + kChunkHeader + 3, 3);
            frame.data = bytes.substr(at + kChunkHeader + kFrameHeader, length - kFrameHeader);
            return true;
        }
        at += kChunkHeader + std::min(length + (length & 1), rest);
    }
    return false;
}

const uint8_t* start(std::string_view bytes) {
    return reinterpret_cast<const uint8_t*>(bytes.data());
}

const char* words(VP8StatusCode status) {
    switch (status) {
    case VP8_STATUS_OUT_OF_MEMORY: return "no memory for it";
    case VP8_STATUS_NOT_ENOUGH_DATA: return "cut short";
    case VP8_STATUS_UNSUPPORTED_FEATURE: return "of an unknown kind";
    default: return "the decoder gave up";
    }
}

// Decodes `data` and copies it to its place. The library's own memory is not touched before there are pixels, so that
// a broken file costs little, whatever size it claims.
VP8StatusCode decodeInto(const Frame& frame, DecodedImage& image, std::string& reason) {
    int width = 0, height = 0;
    const std::unique_ptr<uint8_t, decltype(&WebPFree)> pixels(
        WebPDecodeRGBA(start(frame.data), frame.data.size(), &width, &height), WebPFree);
    if (!pixels) return VP8_STATUS_BITSTREAM_ERROR;
    if (!makePicture(frame.canvasWidth, frame.canvasHeight, image, reason)) return VP8_STATUS_USER_ABORT;
    const size_t rowBytes = static_cast<size_t>(width) * 4;
    for (int y = 0; y < height; ++y) {
        uint8_t* row = rowFromTop(image, static_cast<int>(frame.top) + y) + frame.left * 4;
        std::memcpy(row, pixels.get() + static_cast<size_t>(y) * rowBytes, rowBytes);
    }
    return VP8_STATUS_OK;
}

} // namespace

bool decodeWebp(std::string_view bytes, DecodedImage& image, std::string& reason) {
    WebPBitstreamFeatures features = {};
    VP8StatusCode status = WebPGetFeatures(start(bytes), bytes.size(), &features);
    Frame frame{bytes, 0, 0, features.width, features.height};
    if (status == VP8_STATUS_OK && features.has_animation) {
        status = findFrame(bytes, frame) ? WebPGetFeatures(start(frame.data), frame.data.size(), &features)
                                         : VP8_STATUS_NOT_ENOUGH_DATA;
    }
    if (status == VP8_STATUS_OK &&
        (frame.left + features.width > frame.canvasWidth || frame.top + features.height > frame.canvasHeight)) {
        status = VP8_STATUS_BITSTREAM_ERROR;
    }
    if (status == VP8_STATUS_OK) status = decodeInto(frame, image, reason);
    if (status != VP8_STATUS_OK && reason.empty()) reason = std::string("broken: ") + words(status);
    return status == VP8_STATUS_OK;
}
