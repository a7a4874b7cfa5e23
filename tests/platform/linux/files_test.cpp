#include "platform/files_fixture.h"

#include <cerrno>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

TEST(Paths, AbsoluteWithDriveOrRoot) {
    for (const char* path : {"/a", "C:\\a", "c:"}) EXPECT_TRUE(isAbsolutePath(path)) << path;
    for (const char* path : {"", "a", ":", "1:/a", "./a", "\\a", "ab:"}) EXPECT_FALSE(isAbsolutePath(path)) << path;
}

TEST(Paths, FullPathFoldsWithoutLookingAtTheDisk) {
    const std::string here = fs::current_path().string();
    const std::pair<std::string, std::string> cases[] = {
        {"", here},
        {"no such/../b.json", here + "/b.json"},
        {"a//./b/", here + "/a/b"},
        {"C:/x", here + "/C:/x"},
        {"/a/./b/../../c//d", "/c/d"},
        {"/../../x", "/x"},
        {"//", "/"},
        {"/...", "/..."},
    };
    for (const auto& [path, expected] : cases) EXPECT_EQ(fullPath(path), expected) << path;
}

// What is opened under the full path is what was there under the one as written.
TEST_F(FilesTest, ParentsOfLinkedDirectoriesAreTheirOwn) {
    show.write("show.json", "here");
    show.write("other/show.json", "there");
    show.write("other/inner/x", "");
    fs::create_directory_symlink("other/inner", root + "link");
    const std::pair<const char*, const char*> cases[] = {
        {"link/../show.json", "link/../show.json"},          {"LINK/.././show.json", "LINK/../show.json"},
        {"link/../../show.json", "link/../../show.json"},    {"other/inner/../../show.json", "show.json"},
        {"link/../inner/../show.json", "link/../show.json"},
    };
    for (const auto& [path, full] : cases) {
        EXPECT_EQ(fullFilePath(root + path), root + full);
        EXPECT_EQ(get(fullFilePath(root + path)), get(root + path)) << path;
    }
}

TEST_F(FilesTest, LettersCountOnlyWhereTheNameItselfIsThere) {
    const char* const files[] = {"logo.png",
                                 "Logo.png",
                                 "b.TXT",
                                 "B.txt",
                                 "Data/Pics/other.png",
                                 "Data/PICS/second.png",
                                 "data/pics/Deep.PNG",
                                 "  two blanks .txt",
                                 "\xC3\x84tna\n1.txt"};
    for (const char* path : files) show.write(path, path);
    const std::pair<std::string, const char*> cases[] = {
        {"logo.png", "logo.png"},
        {"b.txt", "B.txt"},
        {"LOGO.PNG", "Logo.png"},                     // else in byte order
        {"Data/Pics/deep.png", "data/pics/Deep.PNG"}, // a directory that lacks the file hides none
        {"./DATA//Pics/./../pICS/DEEP.png", "data/pics/Deep.PNG"},
        {"Data/Pics/missing.png", "(none)"},
        {"  TWO blanks .txt", "  two blanks .txt"},
        {"two blanks .txt", "(none)"},
        {"\xC3\x84tna\n1.TXT", "\xC3\x84tna\n1.txt"},
        {"\xC3\xA4tna\n1.txt", "(none)"}, // no ASCII
        {std::string("logo.png\0.png", 13), "(none)"},
        {std::string(5000, 'a'), "(none)"},
    };
    for (const auto& [path, text] : cases) EXPECT_EQ(get(root + path), text) << path;
    EXPECT_EQ(locateFile(root + "LOGO.png"), root + "Logo.png");
    EXPECT_EQ(locateFile(root + "nothing"), root + "nothing");
    EXPECT_EQ(locateFile(root + "dATA/piCS"), root + "Data/PICS");
    EXPECT_FALSE(isRegularFile("") || isDirectory("") || !listFiles("").empty());
}

TEST_F(FilesTest, NeitherKindSatisfiesALookUpForTheOther) {
    show.write("Track.ogg/inner.txt", "x");
    show.write("track.OGG", "music");
    EXPECT_EQ(get(root + "Track.ogg"), "music");
    EXPECT_TRUE(isDirectory(root + "track.OGG") && isRegularFile(root + "Track.ogg"));
    EXPECT_FALSE(isRegularFile(root + "Track.ogg/") || isDirectory(root + "track.OGG/x"));
}

// Every level offers two ways to the same directory: without a bound 2^36 of them would be walked.
TEST_F(FilesTest, LinksThatMultiplyTheWaysEndTheLookUp) {
    fs::create_directory_symlink(".", root + "a");
    fs::create_directory_symlink(".", root + "A");
    std::string path = root;
    for (int i = 0; i < 36; ++i) path += "a/";
    EXPECT_FALSE(isRegularFile(path + "missing") || isDirectory(path + "missing"));
}

TEST_F(FilesTest, PipesDevicesAndOverlongFilesAreNotRead) {
    ASSERT_EQ(mkfifo((root + "pipe").c_str(), 0600), 0);
    EXPECT_EQ(get(root + "pipe"), "(none)"); // would wait for a writer
    show.write("PIPE", "a file beside it");
    EXPECT_EQ(get(root + "pipe"), "a file beside it");
    EXPECT_EQ(get(show.write("empty", "")), "");
    const std::string huge = show.write("huge", "");
    fs::resize_file(huge, static_cast<uintmax_t>(kMaxFileBytes) + 1); // sparse
    EXPECT_EQ(get(huge), "(none)");
    std::string bytes;
    EXPECT_FALSE(readFile("/dev/zero", bytes) || readFile("/proc/self/mem", bytes)); // the second is regular
    EXPECT_TRUE(readFile("/proc/self/status", bytes));                               // claims to be empty
    EXPECT_GT(bytes.size(), 100u);
}

TEST_F(FilesTest, ListsRegularFilesAlone) {
    for (const char* path : {"Sub/one.frag", "Sub/two.frag", "Sub/deeper/three.frag"}) show.write(path, "x");
    ASSERT_EQ(mkfifo((root + "Sub/pipe").c_str(), 0600), 0);
    fs::create_symlink("one.frag", root + "Sub/link.frag");
    fs::create_symlink("nowhere", root + "Sub/dangling.frag");
    EXPECT_EQ(sortedFiles(root + "sub"), (std::vector<std::string>{"link.frag", "one.frag", "two.frag"}));
    EXPECT_TRUE(listFiles(root + "Sub/one.frag").empty());
}

TEST(Program, DirectoryHoldsTheProgram) {
    EXPECT_TRUE(isRegularFile(executableDirectory() + "/" + program_invocation_short_name));
}

} // namespace
