// Paths as a show writes them, turned into paths of this system.
#pragma once

#include <string>
#include <unordered_map>

// Alias (without its "@") to path as written.
using AssetMap = std::unordered_map<std::string, std::string>;

// `base` and `rel` with one separator between them, none added when `base` is empty or ends in one.
std::string joinPath(const std::string& base, const std::string& rel);

// The directory that a file with this full path lies in; "." where none is named.
std::string directoryOfFile(const std::string& path);

// A path from a show's description: a leading "@" names an entry of `assets` (an unknown alias stays as
// written), both kinds of slash become the system's separator, and what is not absolute then is joined to
// `baseDir`. So is a path that only begins with a slash, unless it leads somewhere as it is: shows also write
// it for their own folder. The empty path gives `baseDir` with a separator behind it, and so does one that no
// system could open for its length.
std::string resolveAssetPath(const std::string& path, const AssetMap& assets, const std::string& baseDir);
