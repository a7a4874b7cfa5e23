// A folder whose files are read and listed as the player does.
#pragma once

#include "platform/files.h"
#include "support/temp_show.h"

#include <algorithm>

class FilesTest : public testing::Test {
protected:
    // The file's text, "(none)" when it is not read.
    static std::string get(const std::string& path) {
        std::string bytes = "left over";
        if (readFile(path, bytes)) return bytes;
        EXPECT_EQ(bytes, "");
        return "(none)";
    }

    static std::vector<std::string> sortedFiles(const std::string& directory) {
        std::vector<std::string> names = listFiles(directory);
        std::sort(names.begin(), names.end());
        return names;
    }

    TempShow show;
    std::string root = show.baseDir + kPathSeparator;
};
