#include "platform/image.h"

#include "platform/image_size.h"
#include "support/temp_show.h"
#include "system.h"

namespace {

using namespace std::string_literals;

using Pixels = std::vector<uint8_t>;

std::string little(int64_t value, int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> 8 * i & 0xFF);
    return bytes;
}

std::string big(int64_t value, int count) {
    const std::string bytes = little(value, count);
    return {bytes.rbegin(), bytes.rend()};
}

// 24 bits a pixel; rows are padded to four bytes.
std::string bmp(int width, int height, const std::string& rows) {
    return "BM" + std::string(8, '\0') + little(54, 4) + little(40, 4) + little(width, 4) + little(height, 4) +
           little(1, 2) + little(24, 2) + std::string(24, '\0') + rows;
}

std::string coreBmp(int width, int height, const std::string& rows) {
    return "BM" + std::string(8, '\0') + little(26, 4) + little(12, 4) + little(width, 2) + little(height, 2) +
           little(1, 2) + little(24, 2) + rows;
}

// A screen with a palette of two blacks of which the first is transparent, a comment, and a frame.
std::string gif(int screenWidth, int screenHeight, int width, int height) {
    return "GIF89a" + little(screenWidth, 2) + little(screenHeight, 2) + "\x80\0\0\0\0\0\0\0\0"s +
           "!\xF9\x04\x01\0\0\0\0"s + "!\xFE\x03hey\0"s + ",\0\0\0\0"s + little(width, 2) + little(height, 2) +
           "\0\x02\x02\x44\x0A\0;"s; // indices 0, 1
}

// One grey component whose only block is flat: both Huffman tables know the code 0 alone.
std::string jpeg(int width, int height) {
    const std::string oneCode = "\1"s + std::string(16, '\0');
    return "\xFF\xD8\xFF\xFE\0\4hi"s + "\xFF\xFF\xDB\0\x43\0"s + std::string(64, '\1') + // padded marker
           "\xFF\xC0\0\x0B\x08"s + big(height, 2) + big(width, 2) + "\1\1\x11\0"s + "\xFF\xC4\0\x14\0"s + oneCode +
           "\xFF\xC4\0\x14\x10"s + oneCode + "\xFF\xDA\0\x08\1\1\0\0\x3F\0\x3F\xFF\xD9"s;
}

std::string webp(const std::string& chunk, const std::string& data) {
    const int64_t size = static_cast<int64_t>(data.size());
    return "RIFF" + little(12 + size, 4) + "WEBP" + chunk + little(size, 4) + data;
}

// Row by row from the top, two pixels each: half-clear (0x10, 0x20, 0x30), red.
const std::string kRgba = "\x10\x20\x30\x40\xFF\0\0\xFF"s;
const std::string kWebp = webp("VP8L", "/\1\0\0\x10\x0F\x30\x20\x8F\xF8\x1F\x98\x07\xFD\x87\x16\x32\xA2\xFF\1"s);

// Uncompressed RGB with unassociated alpha, 8 bits each, in one strip; `width` and `height` are what it claims.
std::string tiff(bool bigEndian, int width, int height) {
    const auto number = bigEndian ? big : little;
    const auto entry = [&](int tag, int count, int value) {
        return number(tag, 2) + number(4, 2) + number(count, 4) + number(value, 4);
    };
    const int kData = 8 + 2 + 11 * 12 + 4, kBytes = 8;
    const std::string bits = number(8, 4);
    return (bigEndian ? "MM\0*"s : "II*\0"s) + number(8, 4) + number(11, 2) + entry(256, 1, width) +
           entry(257, 1, height) + entry(258, 4, kData + kBytes) + entry(259, 1, 1) + entry(262, 1, 2) +
           entry(273, 1, kData) + entry(277, 1, 4) + entry(278, 1, height) + entry(279, 1, kBytes) + entry(284, 1, 1) +
           entry(338, 1, 2) + number(0, 4) + kRgba + bits + bits + bits + bits;
}

std::string png(int width, int height) {
    return "\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s + big(width, 4) + big(height, 4) + "\x08\6\0\0\0"s + big(0, 4);
}

std::string encoded(const Pixels& pixels, int width, int height, bool withAlpha) {
    std::string bytes;
    EXPECT_TRUE(encodePng(pixels.data(), width, height, withAlpha, bytes));
    return bytes;
}

struct Decoded : DecodedImage {
    bool decoded = false;
    std::string reason;
};

Decoded decode(const std::string& bytes) {
    const TempShow show;
    Decoded image;
    image.decoded = decodeImage(show.write("picture", bytes), image, image.reason);
    return image;
}

// What is missing at the end may leave a picture (decoders fill it in) but never one of another size.
TEST(Image, EachKindInStraightAlphaFromTheBottomRowAndCutShort) {
    const std::string redThenBlue = "\0\0\xFF\0\xFF\0\0\0"s, blueThenRed = "\xFF\0\0\0\0\0\xFF\0"s; // B, G, R
    const Pixels upright = {255, 0, 0, 255, 0, 0, 255, 255}; // bottom red, top blue
    const Pixels halfClear(kRgba.begin(), kRgba.end());
    const struct {
        const char* name;
        std::string bytes;
        int width;
        Pixels pixels; // bottom row first
    } samples[] = {
        {"BMP from the bottom", bmp(1, 2, redThenBlue), 1, upright},
        {"BMP from the top", bmp(1, -2, blueThenRed), 1, upright},
        {"BMP with the old header", coreBmp(1, 2, redThenBlue), 1, upright},
        {"GIF with two blacks", gif(2, 1, 2, 1), 2, {0, 0, 0, 0, 0, 0, 0, 255}},
        {"JPEG", jpeg(2, 1), 2, {128, 128, 128, 255, 128, 128, 128, 255}},
        {"TIFF little-endian", tiff(false, 2, 1), 2, halfClear},
        {"TIFF big-endian", tiff(true, 2, 1), 2, halfClear},
        {"PNG", encoded(halfClear, 2, 1, true), 2, halfClear},
        {"PNG without alpha", encoded({1, 2, 3, 4, 5, 6, 7, 8}, 1, 2, false), 1, {5, 6, 7, 255, 1, 2, 3, 255}},
        {"WebP", kWebp, 2, halfClear},
    };
    for (const auto& sample : samples) {
        if (sample.bytes == kWebp && !kDecodesWebP) continue;
        for (size_t length = 0; length <= sample.bytes.size(); ++length) {
            SCOPED_TRACE(sample.name + " cut at "s + std::to_string(length));
            const Decoded image = decode(sample.bytes.substr(0, length));
            EXPECT_EQ(image.reason.empty(), image.decoded);
            EXPECT_EQ(image.pixels.size(), image.decoded ? sample.pixels.size() : 0);
            if (length < sample.bytes.size()) continue;
            EXPECT_EQ(image.width, sample.width);
            EXPECT_EQ(image.pixels, sample.pixels);
        }
    }
}

// Two grey pixels of which one colour is clear: the header's depth and what follows it.
std::string greyPng(const std::string& depth, const std::string& checksum, const std::string& rest) {
    return "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\2\0\0\0\1"s + depth + "\0\0\0\0"s + checksum + rest +
           "\0\0\0\0IEND\xAE\x42\x60\x82"s;
}

// Grey and alpha, two pixels: 8 or 16 bits a sample.
std::string greyTiff(int bits, int extraSample, int orientation, const std::string& samples) {
    const auto entry = [](int tag, int type, int value) {
        return little(tag, 2) + little(type, 2) + little(1, 4) + little(value, 4);
    };
    return "II*\0"s + little(8, 4) + little(12, 2) + entry(256, 4, 2) + entry(257, 4, 1) + entry(258, 3, bits) +
           entry(259, 3, 1) + entry(262, 3, 1) + entry(273, 4, 158) + entry(274, 3, orientation) + entry(277, 3, 2) +
           entry(278, 4, 1) + entry(279, 4, bits / 2) + entry(284, 3, 1) + entry(338, 3, extraSample) + little(0, 4) +
           samples;
}

TEST(Image, AlphaBesideGreyAndOtherOddities) {
    const Pixels greyAndClear = {0x55, 0x55, 0x55, 0xFF, 0xAA, 0xAA, 0xAA, 0};
    const struct {
        const char* name;
        std::string bytes;
        Pixels pixels;
    } cases[] = {
        {"PNG, 2 bits, one grey clear",
         greyPng(
             "\x02"s, "\x9B\xF9\x38\xF7"s,
             "\x00\x00\x00\x02\x74\x52\x4E\x53\x00\x02\x98\x9D\xAC\x14\x00\x00\x00\x0A\x49\x44\x41\x54\x78\xDA\x63\x48\x00\x00\x00\x62\x00\x61\x1C\x10\x03\x7F"s),
         greyAndClear},
        {"PNG, 8 bits",
         greyPng(
             "\x08"s, "\xD1\x49\x20\x56"s,
             "\x00\x00\x00\x02\x74\x52\x4E\x53\x00\xAA\x40\x90\x87\xCE\x00\x00\x00\x0B\x49\x44\x41\x54\x78\xDA\x63\x08\x5D\x05\x00\x01\x57\x01\x00\x0C\x6B\x43\x75"s),
         greyAndClear},
        {"PNG, 16 bits, another grey of the same high byte",
         greyPng(
             "\x10"s, "\x81\xD9\xFC\x15"s,
             "\x00\x00\x00\x02\x74\x52\x4E\x53\xAA\x01\x55\x7C\xA9\xCD\x00\x00\x00\x0D\x49\x44\x41\x54\x78\xDA\x63\x58\xC5\xB4\x8A\x11\x00\x04\x08\x01\x58\xCE\xA4\xDE\xAB"s),
         {0xAA, 0xAA, 0xAA, 0xFF, 0xAA, 0xAA, 0xAA, 0}},
        {"TIFF, alpha apart", greyTiff(8, 2, 1, "\x40\x80\xFF\0"s), {64, 64, 64, 128, 255, 255, 255, 0}},
        {"TIFF, alpha of no kind", greyTiff(8, 0, 1, "\x40\x80\xFF\0"s), {64, 64, 64, 128, 255, 255, 255, 0}},
        {"TIFF, multiplied", greyTiff(8, 1, 1, "\x20\xA0\x10\x10"s), {51, 51, 51, 160, 255, 255, 255, 16}},
        {"TIFF, turned", greyTiff(8, 2, 2, "\x40\x80\xFF\xFF"s), {64, 64, 64, 128, 255, 255, 255, 255}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Decoded image = decode(c.bytes);
        EXPECT_EQ(image.reason, "");
        EXPECT_EQ(image.pixels, c.pixels);
    }
}

TEST(Image, RoomIsAskedForBeforeDecoding) {
    const TempShow show;
    DecodedImage image;
    std::string reason;
    const ImageObjection objection = [](int width, int height) {
        return std::to_string(width) + " by " + std::to_string(height);
    };
    EXPECT_FALSE(
        decodeImage(show.write("broken behind its header", jpeg(300, 200).substr(0, 100)), image, reason, objection));
    EXPECT_EQ(reason, "300 by 200");
}

TEST(Image, SizeIsRefusedBeforeDecoding) {
    constexpr int kSide = 60000;
    const std::string canvas = little(0, 4) + little(kSide - 1, 3) + little(kSide - 1, 3);
    for (const std::string& bytes :
         {png(kSide, kSide), jpeg(kSide, kSide), bmp(kSide, -kSide, ""), coreBmp(kSide, kSide, ""),
          webp("VP8X", canvas), gif(kSide, kSide, 1, 1), gif(1, 1, kSide, kSide), tiff(true, kSide, kSide)}) {
        EXPECT_EQ(decode(bytes).reason, "60000 x 60000 pixels is too large") << bytes.substr(0, 8);
    }
}

TEST(Image, HeadersThatDecodersReadDifferently) {
    const std::string whole = tiff(false, 2, 1);
    const auto with = [](std::string bytes, size_t at, const std::string& other) {
        return bytes.replace(at, other.size(), other);
    };
    const struct {
        const char* name;
        std::string bytes;
        ImageKind kind;
        int64_t width, height;
    } cases[] = {
        {"lossy WebP", webp("VP8 ", "\0\0\0\x9D\1\x2A\x05\x40\x03\0"s), ImageKind::webp, 5, 3}, // and scales
        {"lossless WebP at its largest", webp("VP8L", "/\xFF\xFF\xFF\x0F"s), ImageKind::webp, 16384, 16384},
        {"BMP of the lowest height", bmp(1, INT32_MIN, ""), ImageKind::bmp, 1, int64_t{1} << 31},
        {"BMP of negative width", bmp(-5, 1, ""), ImageKind::bmp, -5, 1},
        {"JPEG with junk before its frame", "\xFF\xD8\xFF\xE0\0\2junk\xFF\0\xFF\xC2\0\x0B\x08\0\7\0\x09"s,
         ImageKind::jpeg, 9, 7},
        {"JPEG without frame", "\xFF\xD8\xFF\xDA\xFF\xC0\0\x0B\x08\0\7\0\x09"s, ImageKind::jpeg, 0, 0},
        {"TIFF with two widths, but no height", with(whole, 22, little(256, 2)), ImageKind::tiff, 0, 0},
        {"TIFF with a width of 64 bits", with(whole, 12, little(16, 2)), ImageKind::tiff, 0, 0},
        {"TIFF directory outside", with(whole, 4, little(0xFFFFFFF0, 4)), ImageKind::tiff, 0, 0},
        {"neither", "<svg width='90000'/>", ImageKind::unknown, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ImageSize size = readImageSize(c.bytes);
        EXPECT_EQ(size.kind, c.kind);
        EXPECT_EQ(size.width, c.width);
        EXPECT_EQ(size.height, c.height);
        EXPECT_FALSE(decode(c.bytes).decoded);
    }
}

TEST(Image, FilesThatDecodersDoNotSurvive) {
    // libpng reads the last chunk for ever: its buffers keep what the end of the file did not replace.
    const std::string endlessText = png(2, 2).replace(29, 4, "\x72\xB6\x0D\x24") + "\0\0\0\3tEXta\0b\xDC\x49\xA2\x3B"s;
    std::string manyScans = jpeg(16384, 8192);
    manyScans.resize(manyScans.size() - 2);
    for (int i = 0; i < 100; ++i) manyScans += "\xFF\xDA\0\x08\1\1\0\1\x3F\0\x3F"s;
    std::string manySamples = tiff(false, 2, 1);
    manySamples.replace(8 + 2 + 6 * 12 + 8, 2, little(9, 2)); // a pixel
    for (const std::string& bytes : {endlessText, manyScans, manySamples}) {
        EXPECT_EQ(decode(bytes).reason, "broken: cut short or misshapen");
    }
}

TEST(Image, ReasonsInAFewWords) {
    const TempShow show;
    const std::string huge = show.write("huge", "");
    std::filesystem::resize_file(huge, (1u << 28) + 1);
    const std::pair<std::string, std::string> cases[] = {
        {show.path("no such picture.png"), "no such file"},
        {show.baseDir, "no such file"},
        {huge, "cannot be read"},
        {show.write("text", "a picture of a kind"), "not a picture of a known kind"}};
    for (const auto& [path, expected] : cases) {
        DecodedImage image{1, 1, Pixels(4)};
        std::string reason;
        EXPECT_FALSE(decodeImage(path, image, reason));
        EXPECT_EQ(reason, expected) << path;
        EXPECT_TRUE(image.width == 0 && image.pixels.empty());
    }
}

} // namespace
