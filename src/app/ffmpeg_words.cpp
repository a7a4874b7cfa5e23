#include "app/ffmpeg_words.h"

#include "foundation/text.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int kLines = 3;

bool isConsequence(const std::string& line) {
    constexpr const char* kConsequences[] = {
        "Conversion failed!",
        "Could not open encoder before EOF",
        "Error initializing output stream ",
        "Error opening output file ",
        "Error opening output files: ",
        "Error selecting an encoder",
        "Error sending frames to consumers: ",
        "Error while opening encoder",
        "Nothing was written into output file",
        "Task finished with error code: ",
        "Terminating thread with return code ",
    };
    return std::any_of(std::begin(kConsequences), std::end(kConsequences),
                       [&](const char* words) { return containsText(line, words); });
}

std::string lastLines(const std::string& text, bool withConsequences) {
    std::string joined, previous;
    size_t end = text.size();
    for (int lines = 0; end > 0 && lines < kLines;) {
        const size_t newline = text.find_last_of("\r\n", end - 1);
        const size_t begin = newline == std::string::npos ? 0 : newline + 1;
        const std::string line = text.substr(begin, end - begin);
        end = begin > 0 ? begin - 1 : 0;
        if (line.find_first_not_of(" \t") == std::string::npos || line == previous) continue;
        if (!withConsequences && isConsequence(line)) continue;
        previous = line;
        if (!joined.empty()) joined.insert(0, "; ");
        joined.insert(0, line);
        ++lines;
    }
    return joined;
}

} // namespace

std::string ffmpegWords(const std::string& said) {
    const std::string causes = lastLines(said, false);
    return causes.empty() ? lastLines(said, true) : causes;
}
