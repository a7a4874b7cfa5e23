// The first frame of a GIF, read here: libraries either unfold all frames, or take a whole table's time for every
// clear code, of which a short file holds thousands.
#include "platform/linux/images/decoders.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>

namespace {

struct Color {
    uint8_t r = 0, g = 0, b = 0, a = 255;
};

using Palette = std::array<Color, 256>; // indices that the file has no colour for are black

// The file's bytes from `at` on; 0 behind its end.
struct Reader {
    std::string_view bytes;
    size_t at = 0;

    bool atEnd() const { return at >= bytes.size(); }
    uint8_t byte() { return atEnd() ? uint8_t{0} : static_cast<uint8_t>(bytes[at++]); }
    int two() {
        const int low = byte();
        return low | byte() << 8;
    }
};

void readPalette(Reader& in, int flags, Palette& palette) {
    if (!(flags & 0x80)) return;
    for (int i = 0; i < 2 << (flags & 7); ++i) {
        Color& color = palette[static_cast<size_t>(i)];
        color.r = in.byte();
        color.g = in.byte();
        color.b = in.byte();
    }
}

// Passes over an extension; a graphics control may name the index that is transparent.
void readExtension(Reader& in, int& transparent) {
    constexpr int kGraphicsControl = 0xF9;
    const int label = in.byte();
    bool first = true;
    while (const size_t length = in.byte()) {
        const size_t start = in.at;
        if (label == kGraphicsControl && first && length >= 4 && in.byte() & 1) {
            in.at = start + 3;
            transparent = in.byte();
        }
        first = false;
        in.at = std::min(start + length, in.bytes.size());
    }
}

// The codes of a frame's data, from the lowest bits up, in blocks that each begin with their length.
struct Codes {
    Reader& in;
    uint32_t bits = 0;
    int count = 0;        // of `bits`
    size_t blockRest = 0; // bytes

    // -1 behind the last.
    int next(int size) {
        for (; count < size; count += 8) {
            if (blockRest == 0) blockRest = in.byte();
            if (blockRest == 0 || in.atEnd()) return -1;
            --blockRest;
            bits |= static_cast<uint32_t>(in.byte()) << count;
        }
        const int code = static_cast<int>(bits & ((1u << size) - 1));
        bits >>= size;
        count -= size;
        return code;
    }
};

constexpr int kMostCodeBits = 12;

// A string of indices is another one and an index behind it.
struct Strings {
    struct Entry {
        uint16_t before;
        uint16_t length;
        uint8_t first, last;
    };
    std::array<Entry, 1 << kMostCodeBits> entries;

    // Writes a string of at most `room` indices to `to`; what has no room is left out.
    size_t write(int code, uint8_t* to, size_t room) const {
        const size_t length = entries[static_cast<size_t>(code)].length;
        for (size_t i = length; i-- > 0;) {
            const Entry& entry = entries[static_cast<size_t>(code)];
            if (i < room) to[i] = entry.last;
            code = entry.before;
        }
        return std::min(length, room);
    }
};

// Unpacks indices until `indices` is full or the data end or make no sense; the rest stays as it is.
void unpack(Reader& in, std::vector<uint8_t>& indices) {
    const int rootBits = in.byte();
    if (rootBits < 1 || rootBits >= kMostCodeBits) return;
    const int clear = 1 << rootBits;
    const auto strings = std::make_unique<Strings>();
    for (int i = 0; i < clear; ++i) {
        const auto index = static_cast<uint8_t>(i);
        strings->entries[static_cast<size_t>(i)] = {0, 1, index, index};
    }
    Codes codes{in};
    int size = rootBits + 1, next = clear + 2, before = -1;
    for (size_t at = 0; at < indices.size();) {
        const int code = codes.next(size);
        if (code < 0 || code == clear + 1) return;
        if (code == clear) {
            size = rootBits + 1;
            next = clear + 2;
            before = -1;
            continue;
        }
        if (before < 0 ? code > clear : code > next) return;
        if (before >= 0 && next < 1 << kMostCodeBits) {
            const Strings::Entry& old = strings->entries[static_cast<size_t>(before)];
            const uint8_t last = strings->entries[static_cast<size_t>(code == next ? before : code)].first;
            strings->entries[static_cast<size_t>(next)] = {static_cast<uint16_t>(before),
                                                           static_cast<uint16_t>(old.length + 1), old.first, last};
            if (++next == 1 << size && size < kMostCodeBits) ++size;
        } else if (code >= next) {
            return;
        }
        at += strings->write(code, indices.data() + at, indices.size() - at);
        before = code;
    }
}

// Which row comes after `y` in an interlaced picture: every eighth from 0, from 4, every fourth from 2, every second
// from 1.
int nextInterlaced(int y, int height, int& pass) {
    constexpr int kStart[] = {0, 4, 2, 1}, kStep[] = {8, 8, 4, 2};
    y += kStep[pass];
    while (y >= height && pass < 3) y = kStart[++pass];
    return y;
}

// Goes to the first frame, past bytes that begin no block. False when there is none.
bool findFrame(Reader& in, int& transparent) {
    while (!in.atEnd()) {
        const uint8_t block = in.byte();
        if (block == ',') return true;
        if (block == ';') return false;
        if (block == '!') readExtension(in, transparent);
    }
    return false;
}

} // namespace

bool decodeGif(std::string_view bytes, DecodedImage& image, std::string& reason) {
    constexpr size_t kScreenFlags = 10;
    Reader in{bytes, kScreenFlags};
    Palette palette;
    const int screenFlags = in.byte();
    in.at += 2; // the background and the pixels' aspect count for nothing
    readPalette(in, screenFlags, palette);
    int transparent = -1;
    if (!findFrame(in, transparent)) return false;
    in.at += 4; // where on the screen it stands: the frame alone is the picture
    const int width = in.two(), height = in.two(), flags = in.byte();
    readPalette(in, flags, palette);
    if (transparent >= 0) palette[static_cast<size_t>(transparent)].a = 0;
    if (in.atEnd() || !makePicture(width, height, image, reason)) return false;

    // What a cut or broken file lacks is of the first colour.
    std::vector<uint8_t> indices(static_cast<size_t>(width) * static_cast<size_t>(height));
    unpack(in, indices);
    const bool interlaced = flags & 0x40;
    const uint8_t* index = indices.data();
    for (int row = 0, y = 0, pass = 0; row < height; ++row) {
        uint8_t* to = rowFromTop(image, y);
        for (int x = 0; x < width; ++x, to += 4) std::memcpy(to, &palette[*index++], 4);
        y = interlaced ? nextInterlaced(y, height, pass) : y + 1;
    }
    return true;
}
