#include "app/ffmpeg_words.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

// As versions 5 and 7 say it, first what they say of the same failure.
TEST(FfmpegWords, NameTheCauseWhateverFollowsFromIt) {
    const std::pair<const char*, const char*> cases[] = {
        {"Unknown encoder 'nonsense'\n", "Unknown encoder 'nonsense'"},
        {"[vost#0:0 @ 0x5581d0a3c2c0] Unknown encoder 'nonsense'\n"
         "[vost#0:0 @ 0x5581d0a3c2c0] Error selecting an encoder\n"
         "Error opening output file file:a.mp4.part.\n"
         "Error opening output files: Encoder not found\n",
         "[vost#0:0 @ 0x5581d0a3c2c0] Unknown encoder 'nonsense'"},
        {"file:gone/a.mp4.part: No such file or directory\n", "file:gone/a.mp4.part: No such file or directory"},
        {"[out#0/mp4 @ 0x55c8] Error opening output file:gone/a.mp4.part: No such file or directory\n"
         "Error opening output file file:gone/a.mp4.part.\n"
         "Error opening output files: No such file or directory\n",
         "[out#0/mp4 @ 0x55c8] Error opening output file:gone/a.mp4.part: No such file or directory"},
        {"[libx264 @ 0x5604] height not divisible by 2 (64x35)\n"
         "Error initializing output stream 0:0 -- Error while opening encoder for output stream #0:0 - maybe incorrect "
         "parameters such as bit_rate, rate, width or height\n"
         "Conversion failed!\n",
         "[libx264 @ 0x5604] height not divisible by 2 (64x35)"},
        {"[libx264 @ 0x5604] height not divisible by 2 (64x35)\n"
         "[vost#0:0/libx264 @ 0x5601] Error while opening encoder - maybe incorrect parameters such as bit_rate, rate, "
         "width or height.\n"
         "[vf#0:0 @ 0x5602] Error sending frames to consumers: Generic error in an external library\n"
         "[vf#0:0 @ 0x5602] Task finished with error code: -542398533 (Generic error in an external library)\n"
         "[vf#0:0 @ 0x5602] Terminating thread with return code -542398533 (Generic error in an external library)\n"
         "[vost#0:0/libx264 @ 0x5601] Could not open encoder before EOF\n"
         "[out#0/mp4 @ 0x5603] Nothing was written into output file, because at least one of its streams received no "
         "packets.\n"
         "Conversion failed!\n",
         "[libx264 @ 0x5604] height not divisible by 2 (64x35)"},
        {"Conversion failed!\n", "Conversion failed!"}, // better than nothing
        {"one\r\ntwo\r\n\r\n  \nthree\nfour\nfour\nfour", "two; three; four"},
        {"", ""},
    };
    for (const auto& [said, words] : cases) EXPECT_EQ(ffmpegWords(said), words);
}

} // namespace
