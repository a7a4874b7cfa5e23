#include "platform/files_fixture.h"

#include <windows.h>

namespace {

namespace fs = std::filesystem;

std::string repeated(int times, const char* text) {
    std::string all;
    while (times-- > 0) all += text;
    return all;
}

TEST(Paths, AbsoluteWithAColonInSecondPlace) {
    for (const char* path : {"C:\\a", "c:", "1:/a", "C:a"}) EXPECT_TRUE(isAbsolutePath(path)) << path;
    for (const char* path : {"", "a", ":", "/a", "\\\\srv\\a", "ab:"}) EXPECT_FALSE(isAbsolutePath(path)) << path;
}

TEST(Paths, FullPathFoldsWithoutLookingAtTheDisk) {
    const std::string here = fs::current_path().string();
    const std::pair<std::string, std::string> cases[] = {
        {"no such/../b.json", here + "\\b.json"},
        {"a//./b/", here + "\\a\\b\\"},
        {"C:/x/y.json", "C:\\x\\y.json"},
        {"C:\\a\\.\\b\\..\\..\\c", "C:\\c"},
        {"C:\\..\\..\\x", "C:\\x"},
        {"\\\\srv\\share/x", "\\\\srv\\share\\x"},
        {"\xC3\x84tna.json", here + "\\\xC3\x84tna.json"},
        {"C:\\" + std::string(256, 'a'), "C:\\" + std::string(256, 'a')}, // with its end it just fits
        {"C:\\" + std::string(257, 'a'), ""},
        {"", ""},
        {"C:\\" + repeated(256, "\xE6\x97\xA5"), "C:\\" + repeated(256, "\xE6\x97\xA5")}, // what counts is not bytes
        {"C:\\" + repeated(257, "\xE6\x97\xA5"), ""},
    };
    for (const auto& [path, expected] : cases) EXPECT_EQ(fullPath(path), expected) << path;
}

TEST(Paths, DrivesWithoutAMediumAskNobody) {
    acceptMissingMedia();
    EXPECT_TRUE(GetErrorMode() & SEM_FAILCRITICALERRORS);
}

TEST_F(FilesTest, EitherSlashAndAnyCaseLeadToTheSameFile) {
    const char* const files[] = {"Logo.png", "Data/Pics/deep.PNG", "two  blanks.txt", "\xC3\x84tna \xE6\x97\xA5.txt"};
    for (const char* name : files) show.write(name, name);
    const std::string deep = repeated(50, "\xE6\x97\xA5") + "/" + repeated(50, "\xE6\x97\xA5"); // 300 bytes
    show.write(deep, deep);
    const std::pair<std::string, const char*> cases[] = {
        {"logo.PNG", "Logo.png"},
        {"data\\PICS/Deep.png", "Data/Pics/deep.PNG"},
        {".\\Data//Pics\\.\\../pics/deep.png", "Data/Pics/deep.PNG"},
        {"two  blanks.txt", "two  blanks.txt"},
        {"two blanks.txt", "(none)"},
        {"\xC3\x84tna \xE6\x97\xA5.txt", "\xC3\x84tna \xE6\x97\xA5.txt"}, // narrow text is UTF-8
        {deep, deep.c_str()},
        {"Data/Pics", "(none)"},
        {"*.png", "(none)"},
        {std::string("Logo.png\0.png", 13), "(none)"},
        {std::string(300, 'a'), "(none)"},
    };
    for (const auto& [path, text] : cases) EXPECT_EQ(get(root + path), text) << path;
    EXPECT_TRUE(isDirectory(root + "DATA/pics") && isDirectory(root + "data\\"));
    EXPECT_FALSE(isDirectory(root + "logo.png") || isRegularFile(root + "Data") || isRegularFile(root + "logo.png\\x"));
    EXPECT_FALSE(isRegularFile("") || isDirectory("") || !listFiles("").empty());
    EXPECT_EQ(locateFile(root + "LOGO.png"), root + "LOGO.png");
}

TEST_F(FilesTest, DevicesPipesAndOverlongFilesAreNotRead) {
    for (const char* name : {"NUL", "con", "COM1", "CONIN$", "//./nul", "\\\\.\\C:", "\\\\?\\C:\\windows"}) {
        EXPECT_FALSE(isRegularFile(name) || isDirectory(name)) << name;
        EXPECT_EQ(get(name), "(none)") << name;
    }
    EXPECT_EQ(get(root + "nul"), "(none)"); // in every directory
    const char* const pipeName = "\\\\.\\pipe\\quillon-files-test";
    const HANDLE pipe = CreateNamedPipeA(pipeName, PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 64, 64, 0, nullptr);
    ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
    EXPECT_EQ(get(pipeName), "(none)"); // would wait for a writer
    CloseHandle(pipe);

    EXPECT_EQ(get(show.write("empty", "")), "");
    const std::string huge = show.write("huge", "");
    fs::resize_file(huge, static_cast<uintmax_t>(kMaxFileBytes) + 1);
    EXPECT_EQ(get(huge), "(none)");
}

TEST_F(FilesTest, ListsRegularFilesAlone) {
    const char* const files[] = {"Sub/one.frag", "Sub/two.frag", "Sub/\xC3\xA9.frag", "Sub/in/three.frag"};
    for (const char* path : files) show.write(path, "x");
    const std::vector<std::string> names = {"one.frag", "two.frag", "\xC3\xA9.frag"};
    for (const char* path : {"sub", "SUB\\", "sub/"}) EXPECT_EQ(sortedFiles(root + path), names) << path;
    EXPECT_TRUE(listFiles(root + "Sub/one.frag").empty());
    EXPECT_TRUE(listFiles(root + "S*").empty());
}

TEST(Program, DirectoryHoldsTheProgram) {
    const fs::path program = testing::internal::GetArgvs().front();
    EXPECT_TRUE(isRegularFile(executableDirectory() + "\\" + program.filename().string()));
}

} // namespace
