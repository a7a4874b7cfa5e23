#include "platform/image.h"

#include "platform/gl.h"
#include "platform/image_size.h"
#include "platform/shell_state.h"
#include "platform/window.h"
#include "support/temp_show.h"
#include "system.h"

#include <csignal>
#include <string_view>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

using Pixels = std::vector<uint8_t>;

std::string little(uint32_t value, int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> 8 * i & 0xFF);
    return bytes;
}

std::string big(uint32_t value, int count) {
    const std::string bytes = little(value, count);
    return {bytes.rbegin(), bytes.rend()};
}

std::string number(bool bigEndian, uint32_t value, int count) {
    return bigEndian ? big(value, count) : little(value, count);
}

// 24 bits a pixel; rows are padded to four bytes.
std::string bmp(int32_t width, int32_t height, std::string_view rows) {
    return "BM" + std::string(8, '\0') + little(54, 4) + little(40, 4) +
           little(static_cast<uint32_t>(width), 4) + little(static_cast<uint32_t>(height), 4) +
           little(1, 2) + little(24, 2) + std::string(24, '\0') + std::string(rows);
}

std::string coreBmp(uint32_t width, uint32_t height, std::string_view rows) {
    return "BM" + std::string(8, '\0') + little(26, 4) + little(12, 4) + little(width, 2) + little(height, 2) +
           little(1, 2) + little(24, 2) + std::string(rows);
}

// A screen with a palette of two blacks of which the first is transparent, a comment, and a frame.
std::string gif(uint32_t screenWidth, uint32_t screenHeight, uint32_t frameWidth, uint32_t frameHeight) {
    return "GIF89a" + little(screenWidth, 2) + little(screenHeight, 2) + "\x80\0\0\0\0\0\0\0\0"s +
           "!\xF9\x04\x01\0\0\0\0"s + "!\xFE\x03hey\0"s + ",\0\0\0\0"s + little(frameWidth, 2) +
           little(frameHeight, 2) + "\0\x02\x02\x44\x0A\0;"s; // indices 0, 1
}

// One grey component whose only block is flat: both Huffman tables know the code 0 alone.
std::string jpeg(uint32_t width, uint32_t height) {
    const std::string oneCode = "\1"s + std::string(16, '\0');
    return "\xFF\xD8\xFF\xFE\0\4hi"s + "\xFF\xFF\xDB\0\x43\0"s + std::string(64, '\1') + // padded marker
           "\xFF\xC0\0\x0B\x08"s + big(height, 2) + big(width, 2) + "\1\1\x11\0"s +
           "\xFF\xC4\0\x14\0"s + oneCode + "\xFF\xC4\0\x14\x10"s + oneCode +
           "\xFF\xDA\0\x08\1\1\0\0\x3F\0\x3F\xFF\xD9"s;
}

// Uncompressed RGB with unassociated alpha, 8 bits each, in one strip.
std::string tiff(bool bigEndian, uint32_t width, uint32_t height, std::string_view rgba) {
    const auto entry = [&](uint32_t tag, uint32_t count, uint32_t value) {
        return number(bigEndian, tag, 2) + number(bigEndian, 4, 2) + number(bigEndian, count, 4) +
               number(bigEndian, value, 4);
    };
    constexpr uint32_t kData = 8 + 2 + 11 * 12 + 4;
    const auto bits = number(bigEndian, 8, 4);
    const uint32_t size = static_cast<uint32_t>(rgba.size());
    return (bigEndian ? "MM\0*"s : "II*\0"s) + number(bigEndian, 8, 4) + number(bigEndian, 11, 2) +
           entry(256, 1, width) + entry(257, 1, height) + entry(258, 4, kData + size) + entry(259, 1, 1) +
           entry(262, 1, 2) + entry(273, 1, kData) + entry(277, 1, 4) + entry(278, 1, height) +
           entry(279, 1, size) + entry(284, 1, 1) + entry(338, 1, 2) + number(bigEndian, 0, 4) +
           std::string(rgba) + bits + bits + bits + bits;
}

std::string webp(const std::string& chunk, const std::string& data) {
    return "RIFF" + little(static_cast<uint32_t>(12 + data.size()), 4) + "WEBP" + chunk +
           little(static_cast<uint32_t>(data.size()), 4) + data;
}

std::string png(uint32_t width, uint32_t height) {
    return "\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s + big(width, 4) + big(height, 4) + "\x08\6\0\0\0"s + big(0, 4);
}

// Row by row from the top, two pixels each: half-clear (0x10, 0x20, 0x30), red.
constexpr std::string_view kRgba = "\x10\x20\x30\x40\xFF\0\0\xFF"sv;
const std::string kWebp =
    webp("VP8L", "/\1\0\0\x10\x0F\x30\x20\x8F\xF8\x1F\x98\x07\xFD\x87\x16\x32\xA2\xFF\1"s);

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

struct Sample {
    const char* name;
    std::string bytes;
    int width, height;
    Pixels pixels; // bottom row first
};

std::vector<Sample> samples() {
    const Pixels upright = {255, 0, 0, 255, 0, 0, 255, 255}; // bottom red, top blue
    const std::string redThenBlue = "\0\0\xFF\0\xFF\0\0\0"s; // as B, G, R, padding
    const std::string blueThenRed = "\xFF\0\0\0\0\0\xFF\0"s;
    const Pixels grey = {128, 128, 128, 255, 128, 128, 128, 255};
    const Pixels halfClear = {0x10, 0x20, 0x30, 0x40, 255, 0, 0, 255};
    std::string encoded;
    EXPECT_TRUE(encodePng(halfClear.data(), 2, 1, true, encoded));
    std::vector<Sample> all = {
        {"BMP from the bottom", bmp(1, 2, redThenBlue), 1, 2, upright},
        {"BMP from the top", bmp(1, -2, blueThenRed), 1, 2, upright},
        {"BMP with the old header", coreBmp(1, 2, redThenBlue), 1, 2, upright},
        {"GIF with two blacks", gif(2, 1, 2, 1), 2, 1, {0, 0, 0, 0, 0, 0, 0, 255}},
        {"JPEG", jpeg(2, 1), 2, 1, grey},
        {"TIFF little-endian", tiff(false, 2, 1, kRgba), 2, 1, halfClear},
        {"TIFF big-endian", tiff(true, 2, 1, kRgba), 2, 1, halfClear},
        {"PNG", encoded, 2, 1, halfClear},
    };
    if (kDecodesWebP) all.push_back({"WebP", kWebp, 2, 1, halfClear});
    return all;
}

TEST(Image, EachKindInStraightAlphaFromTheBottomRow) {
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        const Decoded image = decode(sample.bytes);
        EXPECT_EQ(image.reason, "");
        EXPECT_EQ(image.width, sample.width);
        EXPECT_EQ(image.height, sample.height);
        EXPECT_EQ(image.pixels, sample.pixels);
    }
}

TEST(Image, EncodedPngWithoutAlphaIsOpaque) {
    const Pixels rows = {1, 2, 3, 4, 5, 6, 7, 8, 200, 201, 202, 203, 0, 0, 0, 0};
    std::string bytes;
    ASSERT_TRUE(encodePng(rows.data(), 2, 2, false, bytes));
    EXPECT_EQ(bytes[25], 2); // colour type: RGB
    EXPECT_EQ(decode(bytes).pixels, (Pixels{200, 201, 202, 255, 0, 0, 0, 255, 1, 2, 3, 255, 5, 6, 7, 255}));
    EXPECT_FALSE(encodePng(rows.data(), 0, 2, true, bytes));
}

// What is missing at the end may leave a picture (decoders fill it in) but never one of another size.
TEST(Image, CutShortAtEveryByte) {
    for (const Sample& sample : samples()) {
        for (size_t length = 0; length < sample.bytes.size(); ++length) {
            SCOPED_TRACE(sample.name + " cut at "s + std::to_string(length));
            const Decoded image = decode(sample.bytes.substr(0, length));
            EXPECT_EQ(image.pixels.size(), image.decoded ? static_cast<size_t>(sample.width * sample.height * 4) : 0);
            EXPECT_EQ(image.reason.empty(), image.decoded);
        }
    }
}

TEST(Image, SizeIsRefusedBeforeDecoding) {
    const std::string canvas = little(0, 4) + little(59999, 3) + little(59999, 3);
    for (const std::string& bytes : {png(60000, 60000), jpeg(60000, 60000), bmp(60000, -60000, ""),
                                     coreBmp(60000, 60000, ""), gif(60000, 60000, 1, 1), gif(1, 1, 60000, 60000),
                                     tiff(true, 60000, 60000, kRgba), webp("VP8X", canvas)}) {
        EXPECT_EQ(decode(bytes).reason, "60000 x 60000 pixels is too large") << bytes.substr(0, 8);
    }
}

TEST(Image, HeadersThatDecodersReadDifferently) {
    std::string twoWidths = tiff(false, 2, 1, kRgba);
    twoWidths.replace(22, 2, little(256, 2)); // its height becomes a second width
    std::string strayWidthType = tiff(false, 2, 1, kRgba);
    strayWidthType.replace(12, 2, little(16, 2)); // 64 bits, kept elsewhere in the file
    std::string farDirectory = tiff(false, 2, 1, kRgba);
    farDirectory.replace(4, 4, little(0xFFFFFFF0, 4));
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
        {"JPEG with junk before its frame",
         "\xFF\xD8\xFF\xE0\0\2junk\xFF\0\xFF\xC2\0\x0B\x08\0\7\0\x09"s, ImageKind::jpeg, 9, 7},
        {"JPEG without frame", "\xFF\xD8\xFF\xDA\xFF\xC0\0\x0B\x08\0\7\0\x09"s, ImageKind::jpeg, 0, 0},
        {"TIFF without height", twoWidths, ImageKind::tiff, 0, 0},
        {"TIFF with a width of 64 bits", strayWidthType, ImageKind::tiff, 0, 0},
        {"TIFF directory outside", farDirectory, ImageKind::tiff, 0, 0},
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
    const std::string endlessText = png(2, 2).replace(29, 4, "\x72\xB6\x0D\x24") +
                                    "\0\0\0\3tEXta\0b\xDC\x49\xA2\x3B"s;
    std::string manyScans = jpeg(16384, 8192);
    manyScans.resize(manyScans.size() - 2);
    for (int i = 0; i < 100; ++i) manyScans += "\xFF\xDA\0\x08\1\1\0\1\x3F\0\x3F"s;
    std::string manySamples = tiff(false, 2, 1, kRgba);
    manySamples.replace(8 + 2 + 6 * 12 + 8, 2, little(9, 2));
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
        {show.write("text", "a picture of a kind"), "not a picture of a known kind"},
    };
    for (const auto& [path, expected] : cases) {
        DecodedImage image{1, 1, Pixels(4)};
        std::string reason;
        EXPECT_FALSE(decodeImage(path, image, reason));
        EXPECT_EQ(reason, expected) << path;
        EXPECT_TRUE(image.width == 0 && image.pixels.empty());
    }
}

TEST(HeadlessSurface, HasTheSizeAskedForAndEndsOnASignal) {
    Surface* surface = createHeadlessSurface(33, 17);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(shellState().clientWidth, 33);
    EXPECT_EQ(shellState().clientHeight, 17);
    glClearColor(0.2f, 0.4f, 0.6f, 0.8f);
    glClear(GL_COLOR_BUFFER_BIT);
    Pixels corner(4);
    glReadPixels(32, 16, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, corner.data());
    EXPECT_EQ(corner, (Pixels{51, 102, 153, 204}));
    std::raise(SIGTERM);
    pumpMessages(surface);
    EXPECT_FALSE(shellState().running);
    EXPECT_EQ(shellState().exitReason, "WM_QUIT");
    destroySurface(surface);
    shellState() = ShellState();
    EXPECT_EQ(createHeadlessSurface(1 << 20, 1 << 20), nullptr); // no driver draws that
}

} // namespace
