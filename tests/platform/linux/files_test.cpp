#include "platform/files.h"
#include "support/temp_show.h"

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

class FilesTest : public testing::Test {
protected:
    // The file's text, "(none)" when it is not read.
    std::string get(const std::string& path) {
        std::string bytes = "left over";
        if (readFile(show.path(path), bytes)) return bytes;
        EXPECT_EQ(bytes, "");
        return "(none)";
    }

    TempShow show;
    std::string root = show.baseDir + "/";
};

TEST(Paths, AbsoluteWithDriveOrRoot) {
    for (const char* path : {"/a", "C:\\a", "c:"}) EXPECT_TRUE(isAbsolutePath(path)) << path;
    for (const char* path : {"", "a", ":", "1:/a", "./a", "\\a", "ab:"}) EXPECT_FALSE(isAbsolutePath(path)) << path;
}

TEST(Paths, FullPathFoldsWithoutLookingAtTheDisk) {
    const std::string here = fs::current_path().string();
    const std::pair<std::string, std::string> cases[] = {
        {"", here}, {"no such/../b.json", here + "/b.json"}, {"a//./b/", here + "/a/b"},
        {"C:/x", here + "/C:/x"}, // no drives here: an ordinary name
        {"/a/./b/../../c//d", "/c/d"}, {"/../../x", "/x"}, {"//", "/"}, {"/...", "/..."},
    };
    for (const auto& [path, expected] : cases) EXPECT_EQ(fullPath(path), expected) << path;
}

TEST_F(FilesTest, LettersCountOnlyWhereTheNameItselfIsThere) {
    for (const char* path : {"logo.png", "Logo.png", "b.TXT", "B.txt", "Data/Pics/other.png", "data/pics/Deep.PNG",
                             "Data/PICS/second.png", "  two blanks .txt", "\xC3\x84tna\n1.txt"}) {
        show.write(path, path);
    }
    const std::pair<std::string, const char*> cases[] = {
        {"logo.png", "logo.png"},
        {"LOGO.PNG", "Logo.png"}, // else in byte order
        {"b.txt", "B.txt"},
        {"Data/Pics/deep.png", "data/pics/Deep.PNG"}, // a directory that lacks the file hides none
        {"./DATA//Pics/./../pICS/DEEP.png", "data/pics/Deep.PNG"},
        {"Data/Pics/missing.png", "(none)"},
        {"  TWO blanks .txt", "  two blanks .txt"},
        {"two blanks .txt", "(none)"},
        {"\xC3\x84tna\n1.TXT", "\xC3\x84tna\n1.txt"},
        {"\xC3\xA4tna\n1.txt", "(none)"}, // letters beyond ASCII keep their case
        {std::string("logo.png\0.png", 13), "(none)"},
        {std::string(5000, 'a'), "(none)"},
    };
    for (const auto& [path, text] : cases) EXPECT_EQ(get(path), text) << path;
    EXPECT_EQ(locateFile(root + "LOGO.png"), root + "Logo.png");
    EXPECT_EQ(locateFile(root + "nothing"), root + "nothing");
    EXPECT_EQ(locateFile(root + "dATA/piCS"), root + "Data/PICS");
    EXPECT_FALSE(isRegularFile("") || isDirectory("") || !listFiles("").empty());
}

TEST_F(FilesTest, NeitherKindSatisfiesALookUpForTheOther) {
    show.write("Track.ogg/inner.txt", "x");
    show.write("track.OGG", "music");
    EXPECT_EQ(get("Track.ogg"), "music");
    EXPECT_TRUE(isDirectory(root + "track.OGG"));
    EXPECT_TRUE(isRegularFile(root + "Track.ogg"));
    EXPECT_FALSE(isRegularFile(root + "Track.ogg/"));
    EXPECT_FALSE(isDirectory(root + "track.OGG/x"));
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

TEST_F(FilesTest, PipesDevicesAndOverlongFilesAreNotRead) {
    ASSERT_EQ(mkfifo((root + "pipe").c_str(), 0600), 0);
    EXPECT_EQ(get("pipe"), "(none)"); // would wait for a writer
    show.write("PIPE", "a file beside it");
    EXPECT_EQ(get("pipe"), "a file beside it");
    show.write("empty", "");
    EXPECT_EQ(get("empty"), "");
    fs::resize_file(show.write("huge", ""), static_cast<uintmax_t>(kMaxFileBytes) + 1); // sparse
    EXPECT_EQ(get("huge"), "(none)");

    std::string bytes;
    EXPECT_FALSE(readFile("/dev/zero", bytes));
    EXPECT_FALSE(readFile("/proc/self/mem", bytes)); // regular, but its first byte cannot be read
    EXPECT_TRUE(readFile("/proc/self/status", bytes)); // claims to be empty
    EXPECT_GT(bytes.size(), 100u);
}

TEST_F(FilesTest, ListsRegularFilesAlone) {
    for (const char* path : {"Sub/one.frag", "Sub/two.frag", "Sub/deeper/three.frag"}) show.write(path, "x");
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
