#include "platform/image_size.h"

#include "platform/image_limits.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace {

constexpr uint32_t kBmpCoreHeader = 12; // bytes: the oldest kind, with sizes of two

// Unsigned numbers out of the file's bytes; what lies outside reads as 0, which no format takes for a size.
struct Reader {
    std::string_view bytes;
    bool bigEndian = false;

    bool holds(uint64_t offset, uint64_t count) const {
        return offset <= bytes.size() && count <= bytes.size() - offset;
    }
    uint32_t number(uint64_t offset, int count) const {
        if (!holds(offset, static_cast<uint64_t>(count))) return 0;
        uint32_t value = 0;
        for (int i = 0; i < count; ++i) {
            const uint64_t at = offset + static_cast<uint64_t>(bigEndian ? i : count - 1 - i);
            value = value << 8 | static_cast<uint8_t>(bytes[at]);
        }
        return value;
    }
    uint32_t byte(uint64_t offset) const { return number(offset, 1); }
    uint32_t two(uint64_t offset) const { return number(offset, 2); }
    uint32_t four(uint64_t offset) const { return number(offset, 4); }
    bool tag(uint64_t offset, std::string_view text) const {
        return holds(offset, text.size()) && bytes.substr(offset, text.size()) == text;
    }
};

// Follows the chunks to the last one: where the bytes end before it, libpng goes on with whatever its
// buffers held before, for some files without end.
bool hasAllPngChunks(const Reader& in) {
    constexpr uint64_t kAroundData = 12; // length, name and checksum
    uint64_t at = 8;
    while (in.holds(at, kAroundData)) {
        const uint64_t chunk = kAroundData + in.four(at);
        if (!in.holds(at, chunk)) return false;
        if (in.tag(at + 4, "IEND")) return true;
        at += chunk;
    }
    return false;
}

// Bytes of which `packed` in the file can be had at most; a few megabytes are free, so that a picture that is cut is
// shown as far as it goes.
bool isPlausible(const Reader& in, uint64_t unpacked, uint64_t packed) {
    constexpr uint64_t kFreeBytes = 4 << 20;
    return unpacked <= kFreeBytes + packed * in.bytes.size();
}

uint64_t pixelsOf(const ImageSize& size) {
    return fitsImageLimits(size.width, size.height) ? static_cast<uint64_t>(size.width * size.height) : 0;
}

bool holdsPngRows(const Reader& in, const ImageSize& size) {
    constexpr uint64_t kMostDeflated = 1032;
    constexpr uint64_t kSamples[] = {1, 0, 3, 1, 2, 0, 4}; // a pixel, by the type of colour
    const uint32_t type = in.byte(25);
    if (type >= std::size(kSamples)) return true;
    return isPlausible(in, pixelsOf(size) * kSamples[type] * in.byte(24) / 8, kMostDeflated);
}

void readPng(const Reader& in, ImageSize& size) {
    if (!in.tag(12, "IHDR")) return;
    size.width = in.four(16);
    size.height = in.four(20);
    size.safe = hasAllPngChunks(in) && holdsPngRows(in, size);
}

bool startsFrame(uint32_t marker) {
    // SOF0 to SOF15 without DHT, JPG and DAC, which share their range.
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool standsAlone(uint32_t marker) {
    return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8); // TEM, RSTn, SOI
}

// Where the next marker's 0xFF stands: like decoders do, junk, padding by more of them and the data's
// own (followed by 0) are passed over. The end of the file when there is none.
uint64_t nextMarker(const Reader& in, uint64_t at) {
    for (;; ++at) {
        at = std::min<uint64_t>(in.bytes.find('\xFF', at), in.bytes.size());
        if (!in.holds(at, 2)) return in.bytes.size();
        if (in.byte(at + 1) != 0xFF && in.byte(at + 1) != 0x00) return at;
    }
}

void readJpeg(const Reader& in, ImageSize& size) {
    // A progressive picture has about ten; each passes over the whole picture however short it is.
    constexpr int kMostScans = 100;
    constexpr uint64_t kMostPixels = 1024; // a byte: a block of 64 takes a bit at least
    int scans = 0;
    for (uint64_t at = nextMarker(in, 2); at < in.bytes.size(); at = nextMarker(in, at)) {
        const uint32_t marker = in.byte(at + 1);
        at += 2;
        if (marker == 0xD9) break; // EOI
        if (marker == 0xDA) ++scans;
        if (startsFrame(marker) && scans == 0 && size.width == 0) {
            size.height = in.two(at + 3);
            size.width = in.two(at + 5);
        }
        if (!standsAlone(marker)) at += std::max<uint32_t>(in.two(at), 2);
    }
    size.safe = scans <= kMostScans && isPlausible(in, pixelsOf(size), kMostPixels);
}

bool holdsBmpRows(const Reader& in, const ImageSize& size) {
    constexpr uint32_t kRle8 = 1, kRle4 = 2;
    constexpr uint64_t kMostRun = 1024; // 128 pixels a byte and more where rows end early
    const bool core = in.four(14) == kBmpCoreHeader;
    const uint32_t packing = core ? 0 : in.four(30);
    if (packing == kRle8 || packing == kRle4) return isPlausible(in, pixelsOf(size), kMostRun);
    return isPlausible(in, pixelsOf(size) * in.two(core ? 24 : 28) / 8, 1);
}

void readBmp(const Reader& in, ImageSize& size) {
    constexpr uint32_t kInfoHeader = 40; // the later kinds begin with the same fields
    const uint32_t header = in.four(14);
    if (header == kBmpCoreHeader) {
        size.width = in.two(18);
        size.height = in.two(20);
    } else if (header >= kInfoHeader && in.holds(18, 8)) {
        size.width = static_cast<int32_t>(in.four(18));
        const int64_t height = static_cast<int32_t>(in.four(22));
        size.height = height < 0 ? -height : height; // negative: rows run from the top
    }
    size.safe = holdsBmpRows(in, size);
}

void readGif(const Reader& in, ImageSize& size) {
    const auto colorTableBytes = [](uint32_t flags) { return flags & 0x80 ? 3u << ((flags & 7) + 1) : 0u; };
    constexpr uint64_t kMostPixels = 4096; // a byte: strings are of 4095 at most, codes of 12 bits
    const int64_t screenWidth = in.two(6);
    const int64_t screenHeight = in.two(8);
    uint64_t at = 13 + colorTableBytes(in.byte(10));
    while (in.holds(at, 1)) {
        const uint32_t block = in.byte(at++);
        if (block == ';') return;
        if (block == ',') {
            size.width = std::max<int64_t>(screenWidth, in.two(at + 4));
            size.height = std::max<int64_t>(screenHeight, in.two(at + 6));
            size.safe = isPlausible(in, uint64_t{in.two(at + 4)} * in.two(at + 6), kMostPixels);
            return;
        }
        if (block != '!') continue; // decoders look on for the next block
        ++at;                       // the extension's label
        uint32_t length = in.byte(at);
        while (length > 0) {
            at += 1 + length;
            length = in.byte(at);
        }
        ++at;
    }
}

// The value of an IFD entry that holds one SHORT or LONG; -1 for other types and counts.
int64_t tiffValue(const Reader& in, uint64_t entry) {
    constexpr uint32_t kShort = 3;
    constexpr uint32_t kLong = 4;
    const uint32_t type = in.two(entry + 2);
    if (in.four(entry + 4) != 1) return -1;
    if (type == kShort) return in.two(entry + 8);
    return type == kLong ? int64_t{in.four(entry + 8)} : -1;
}

// What the first directory says of its picture; 0 where it says nothing.
struct TiffClaims {
    int64_t width = 0, height = 0, tileWidth = 0, tileHeight = 0, samples = 0, packing = 0;
    uint32_t tags = 0;
    uint64_t valueBytes = 0; // of all tags together
};

// False when the directory is cut or a size in it is no number.
bool readTiffDirectory(const Reader& in, TiffClaims& claims) {
    constexpr uint64_t kEntryBytes = 12;
    constexpr uint64_t kTypeBytes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    const uint64_t directory = in.four(4);
    if (directory < 8 || !in.holds(directory, 2)) return false;
    claims.tags = in.two(directory);
    for (uint32_t i = 0; i < claims.tags; ++i) {
        const uint64_t entry = directory + 2 + i * kEntryBytes;
        if (!in.holds(entry, kEntryBytes)) return false;
        const uint32_t type = in.two(entry + 2);
        if (type < std::size(kTypeBytes)) claims.valueBytes += in.four(entry + 4) * kTypeBytes[type];
        int64_t* field = nullptr;
        switch (in.two(entry)) {
        case 256: field = &claims.width; break;
        case 257: field = &claims.height; break;
        case 259: field = &claims.packing; break;
        case 277: field = &claims.samples; break;
        case 322: field = &claims.tileWidth; break;
        case 323: field = &claims.tileHeight; break;
        default: continue;
        }
        const int64_t value = tiffValue(in, entry);
        if (value < 0) return false;
        *field = std::max(*field, value); // decoders differ in which of two equal tags they believe
    }
    return true;
}

// Decoders hold whole tiles with all their samples, and go through all of them, whatever the picture's share in them.
bool hasFairTiles(const TiffClaims& claims) {
    constexpr int64_t kMostSamples = 8;                    // a pixel
    constexpr int64_t kLargestSide = 1 << 16;              // of a tile
    constexpr int64_t kBytes = 32 << 20, kPixelBytes = 16; // in all tiles, of samples of 16 bits
    constexpr int64_t kTiles = 1024, kTilePixels = 64;     // no more than so many, and one for so many pixels
    if (claims.samples > kMostSamples || std::max(claims.tileWidth, claims.tileHeight) > kLargestSide) return false;
    if (claims.tileWidth == 0 || claims.tileHeight == 0) return claims.tileWidth == claims.tileHeight;
    const int64_t pixels = claims.width * claims.height;
    const int64_t columns = (claims.width + claims.tileWidth - 1) / claims.tileWidth;
    const int64_t rows = (claims.height + claims.tileHeight - 1) / claims.tileHeight;
    const int64_t tileBytes = claims.tileWidth * claims.tileHeight * std::max<int64_t>(claims.samples, 1) * 2;
    return columns * rows <= kTiles + pixels / kTilePixels &&
           columns * rows <= (kBytes + kPixelBytes * pixels) / tileBytes;
}

bool holdsTiffRows(const Reader& in, const TiffClaims& claims) {
    constexpr uint64_t kMostUnpacked = 4096, kMostFaxed = 1 << 17; // pixels a byte; a fax of white takes a bit a row
    const bool fax = (claims.packing >= 2 && claims.packing <= 4) || claims.packing == 32771;
    const uint64_t samples = static_cast<uint64_t>(claims.width * claims.height * std::max<int64_t>(claims.samples, 1));
    return isPlausible(in, fax ? samples / 8 : samples, fax ? kMostFaxed / 8 : kMostUnpacked);
}

void readTiff(const Reader& in, ImageSize& size) {
    // Decoders copy the values of all tags, also of those that they do not know, and sort these at each new one.
    constexpr uint32_t kMostTags = 512;
    constexpr uint64_t kSharedBytes = 1 << 16; // values that more than one tag points at
    TiffClaims claims;
    if (!readTiffDirectory(in, claims) || claims.width == 0 || claims.height == 0) return;
    size.width = claims.width;
    size.height = claims.height;
    // Beyond these limits nothing is decoded; within them no product below is too large.
    if (!fitsImageLimits(size.width, size.height)) return;
    size.safe = claims.tags <= kMostTags && claims.valueBytes <= in.bytes.size() + kSharedBytes &&
                hasFairTiles(claims) && holdsTiffRows(in, claims);
}

void readWebp(const Reader& in, ImageSize& size) {
    constexpr uint32_t kSide = 0x3FFF; // 14 bits
    if (in.tag(12, "VP8X") && in.holds(20, 10)) {
        size.width = in.number(24, 3) + 1;
        size.height = in.number(27, 3) + 1;
    } else if (in.tag(12, "VP8L") && in.byte(20) == 0x2F && in.holds(21, 4)) {
        const uint32_t packed = in.four(21);
        size.width = (packed & kSide) + 1;
        size.height = (packed >> 14 & kSide) + 1;
    } else if (in.tag(12, "VP8 ") && in.tag(23, "\x9D\x01\x2A")) {
        size.width = in.two(26) & kSide;
        size.height = in.two(28) & kSide;
    }
}

ImageKind sniffKind(const Reader& in) {
    using namespace std::string_view_literals;
    if (in.tag(0, "\x89PNG\r\n\x1A\n"sv)) return ImageKind::png;
    if (in.tag(0, "\xFF\xD8\xFF"sv)) return ImageKind::jpeg;
    if (in.tag(0, "GIF87a"sv) || in.tag(0, "GIF89a"sv)) return ImageKind::gif;
    if (in.tag(0, "II*\0"sv) || in.tag(0, "MM\0*"sv)) return ImageKind::tiff;
    if (in.tag(0, "RIFF"sv) && in.tag(8, "WEBP"sv)) return ImageKind::webp;
    if (in.tag(0, "BM"sv)) return ImageKind::bmp;
    return ImageKind::unknown;
}

} // namespace

ImageSize readImageSize(std::string_view bytes) {
    Reader in{bytes};
    ImageSize size;
    size.kind = sniffKind(in);
    in.bigEndian = size.kind == ImageKind::png || size.kind == ImageKind::jpeg || in.tag(0, "MM");
    switch (size.kind) {
    case ImageKind::unknown: break;
    case ImageKind::png: readPng(in, size); break;
    case ImageKind::jpeg: readJpeg(in, size); break;
    case ImageKind::bmp: readBmp(in, size); break;
    case ImageKind::gif: readGif(in, size); break;
    case ImageKind::tiff: readTiff(in, size); break;
    case ImageKind::webp: readWebp(in, size); break;
    }
    return size;
}
