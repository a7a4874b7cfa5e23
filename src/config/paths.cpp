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
    return isAbsolutePath(resolved) ? resolved : joinPath(baseDir, resolved);
}
