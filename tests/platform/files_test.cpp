#include "platform/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// A fresh directory with what the case put into it, removed afterwards.
class FilesTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "files_test.XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        root = pattern + "/";
    }
    void TearDown() override { fs::remove_all(root); }

    void put(const std::string& path, const std::string& text) {
        fs::create_directories(fs::path(root + path).parent_path());
        std::ofstream(root + path, std::ios::binary) << text;
    }
    // The file's text, "(none)" when it is not read.
    std::string get(const std::string& path) {
        std::string bytes = "left over";
        if (readFile(root + path, bytes)) return bytes;
        EXPECT_EQ(bytes, "");
        return "(none)";
    }

    std::string root;
};

TEST(Paths, AbsoluteWithDriveOrRoot) {
    const std::pair<const char*, bool> cases[] = {
        {"/a", true}, {"C:\\a", true}, {"c:", true}, {"", false},     {"a", false},
        {":", false}, {"1:/a", false}, {"./a", false}, {"\\a", false}, {"ab:", false},
    };
    for (const auto& [path, absolute] : cases) EXPECT_EQ(isAbsolutePath(path), absolute) << path;
}

TEST(Paths, FullPathFoldsWithoutLookingAtTheDisk) {
    const std::string here = fs::current_path().string();
    const std::pair<std::string, std::string> cases[] = {
        {"", here},
        {".", here},
        {"no such/../b.json", here + "/b.json"},
        {"a//./b/", here + "/a/b"},
        {"C:/x", here + "/C:/x"}, // no drives here: an ordinary name
        {"..", fs::current_path().parent_path().string()},
        {"/a/./b/../../c//d", "/c/d"},
        {"/../../x", "/x"},
        {"//", "/"},
        {"/...", "/..."},
    };
    for (const auto& [path, expected] : cases) {
        SCOPED_TRACE(path);
        EXPECT_EQ(fullPath(path), expected);
    }
}

TEST_F(FilesTest, ExactNameWinsThenByteOrder) {
    put("logo.png", "exact");
    put("Logo.png", "other");
    put("b.TXT", "lower b");
    put("B.txt", "upper B");
    EXPECT_EQ(get("logo.png"), "exact");
    EXPECT_EQ(get("LOGO.PNG"), "other"); // "Logo.png" stands before "logo.png"
    EXPECT_EQ(get("b.txt"), "upper B");
    EXPECT_EQ(locateFile(root + "LOGO.png"), root + "Logo.png");
    EXPECT_EQ(locateFile(root + "nothing"), root + "nothing");
}

TEST_F(FilesTest, DirectoryThatLacksTheFileHidesNone) {
    put("Data/Pics/other.png", "x");
    put("Data/PICS/second.png", "x");
    put("data/pics/Logo.PNG", "found");
    EXPECT_EQ(get("Data/Pics/logo.png"), "found");
    EXPECT_EQ(get("./DATA//Pics/./../pICS/LOGO.png"), "found");
    EXPECT_EQ(get("Data/Pics/missing.png"), "(none)");
    EXPECT_EQ(locateFile(root + "dATA/piCS"), root + "Data/PICS");
}

TEST_F(FilesTest, NeitherKindSatisfiesALookUpForTheOther) {
    put("Track.ogg/inner.txt", "x");
    put("track.OGG", "music");
    EXPECT_EQ(get("Track.ogg"), "music");
    EXPECT_TRUE(isDirectory(root + "track.OGG"));
    EXPECT_TRUE(isRegularFile(root + "Track.ogg"));
    EXPECT_FALSE(isRegularFile(root + "Track.ogg/"));
    EXPECT_FALSE(isRegularFile(root));
    EXPECT_TRUE(isDirectory(root));
    EXPECT_FALSE(isDirectory(root + "track.OGG/x"));
}

TEST_F(FilesTest, UnusualNames) {
    put("  two blanks .txt", "blanks");
    put("Ätna\n1.txt", "fire");
    put("plain", "plain");
    EXPECT_EQ(get("  TWO blanks .txt"), "blanks");
    EXPECT_EQ(get("two blanks .txt"), "(none)");
    EXPECT_EQ(get("Ätna\n1.TXT"), "fire");
    EXPECT_EQ(get("ätna\n1.txt"), "(none)"); // letters beyond ASCII keep their case
    EXPECT_EQ(get(std::string("plain\0.png", 10)), "(none)");
    EXPECT_EQ(get(std::string(5000, 'a')), "(none)");
    EXPECT_FALSE(isRegularFile(""));
    EXPECT_FALSE(isDirectory(""));
    EXPECT_TRUE(listFiles("").empty());
}

// Every level offers two ways to the same directory: without a bound 2^36 of them would be walked.
TEST_F(FilesTest, LinksThatMultiplyTheWaysEndTheLookUp) {
    fs::create_directory_symlink(".", root + "a");
    fs::create_directory_symlink(".", root + "A");
    std::string path = root;
    for (int i = 0; i < 36; ++i) path += "a/";
    EXPECT_FALSE(isRegularFile(path + "missing"));
    EXPECT_FALSE(isDirectory(path + "missing"));
}

TEST_F(FilesTest, PipesDevicesAndBrokenFilesAreNotRead) {
    ASSERT_EQ(mkfifo((root + "pipe").c_str(), 0600), 0);
    EXPECT_EQ(get("pipe"), "(none)"); // would wait for a writer
    put("PIPE", "a file beside it");
    EXPECT_EQ(get("pipe"), "a file beside it");

    std::string bytes;
    EXPECT_FALSE(readFile("/dev/zero", bytes));
    EXPECT_FALSE(readFile("/proc/self/mem", bytes)); // regular, but its first byte cannot be read
    EXPECT_TRUE(readFile("/proc/self/status", bytes)); // claims to be empty
    EXPECT_GT(bytes.size(), 100u);
}

TEST_F(FilesTest, SizesFromEmptyToOverTheLimit) {
    put("empty", "");
    EXPECT_EQ(get("empty"), "");
    put("zeros", std::string(100000, '\0'));
    EXPECT_EQ(get("zeros"), std::string(100000, '\0'));
    put("huge", "");
    fs::resize_file(root + "huge", static_cast<uintmax_t>(kMaxFileBytes) + 1); // sparse
    EXPECT_EQ(get("huge"), "(none)");
}

TEST_F(FilesTest, ListsRegularFilesAlone) {
    put("Sub/one.frag", "1");
    put("Sub/two.frag", "2");
    put("Sub/deeper/three.frag", "3");
    ASSERT_EQ(mkfifo((root + "Sub/pipe").c_str(), 0600), 0);
    fs::create_symlink("one.frag", root + "Sub/link.frag");
    fs::create_symlink("nowhere", root + "Sub/dangling.frag");
    std::vector<std::string> names = listFiles(root + "sub");
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"link.frag", "one.frag", "two.frag"}));
    EXPECT_TRUE(listFiles(root + "Sub/one.frag").empty());
}

TEST(Program, DirectoryHoldsTheProgram) {
    EXPECT_TRUE(isRegularFile(executableDirectory() + "/" + program_invocation_short_name));
}

} // namespace
