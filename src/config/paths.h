// Paths as a show writes them, turned into paths of this system.
#pragma once

#include <string>
#include <unordered_map>

// Alias (without its "@") to path as written.
using AssetMap = std::unordered_map<std::string, std::string>;

// `base` and `rel` with one separator between them, none added when `base` is empty or ends in one.
std::string joinPath(const std::string& base, const std::string& rel);

// A path from a show's description: a leading "@" names an entry of `assets` (an unknown alias stays as
// written), both kinds of slash become the system's separator, and what is not absolute then is joined to
// `baseDir`. The empty path gives `baseDir` with a separator behind it,
// and so does one that no system could open for its length.
std::string resolveAssetPath(const std::string& path, const AssetMap& assets, const std::string& baseDir);
