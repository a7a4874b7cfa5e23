#include "config/paths.h"

#include "foundation/text.h"
#include "platform/files.h"

namespace {
constexpr size_t kMaxPathBytes = 4096; // no system opens a longer one
}

std::string joinPath(const std::string& base, const std::string& rel) {
    if (base.empty()) return rel;
    if (base.back() == '/' || base.back() == kPathSeparator) return base + rel;
    return base + kPathSeparator + rel;
}

std::string directoryOfFile(const std::string& path) {
    const char separators[] = {'/', kPathSeparator, '\0'};
    const size_t last = path.find_last_of(separators);
    if (last == std::string::npos) return ".";
    return path.substr(0, last == 0 ? 1 : last); // the root directory is nothing without its slash
}

std::string resolveAssetPath(const std::string& path, const AssetMap& assets, const std::string& baseDir) {
    std::string resolved = path;
    if (!path.empty() && path.front() == '@') {
        const auto alias = assets.find(path.substr(1));
        if (alias != assets.end()) resolved = alias->second;
    }
    // Thousands of entries may name the same path, and each keeps a copy.
    if (resolved.size() > kMaxPathBytes) resolved.clear();
    resolved = printableName(std::move(resolved));
    for (char& c : resolved) {
        if (c == '/' || c == '\\') c = kPathSeparator;
    }
    const bool begins = !resolved.empty() && resolved.front() == kPathSeparator;
    const bool standsAlone = isAbsolutePath(resolved) && (!begins || isRegularFile(resolved) || isDirectory(resolved));
    return standsAlone ? resolved : joinPath(baseDir, resolved);
}
