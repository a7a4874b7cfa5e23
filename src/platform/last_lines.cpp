#include "platform/last_lines.h"

namespace {
constexpr int kLines = 3;
}

std::string lastLines(const std::string& text) {
    std::string joined, previous;
    size_t end = text.size();
    for (int lines = 0; end > 0 && lines < kLines;) {
        const size_t newline = text.find_last_of("\r\n", end - 1);
        const size_t begin = newline == std::string::npos ? 0 : newline + 1;
        const std::string line = text.substr(begin, end - begin);
        end = begin > 0 ? begin - 1 : 0;
        if (line.find_first_not_of(" \t") == std::string::npos || line == previous) continue;
        previous = line;
        joined = joined.empty() ? line : line + "; " + joined;
        ++lines;
    }
    return joined;
}
