#include "platform/files.h"

#include "foundation/text.h"
#include "platform/read_to_end.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unordered_map>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

const char kPathSeparator = '/';

namespace {

// Directory entries that are remembered at a time, some tens of megabytes.
constexpr size_t kMostKeptNames = 1 << 18;

enum class Wanted { regularFile, directory };

// One look-up ignoring case. The two budgets end it where directories that link to each other would
// multiply the ways to walk; an honest show needs a few dozen of either.
struct LookUp {
    Wanted wanted = Wanted::regularFile;
    std::vector<std::string_view> components; // without "." and empty ones
    int pathsLeft = 4096;                     // paths asked about, directories opened
    int entriesLeft = 65536;                  // directory entries read
};

bool hasKind(const std::string& path, Wanted wanted) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return false;
    return wanted == Wanted::directory ? S_ISDIR(status.st_mode) : S_ISREG(status.st_mode);
}

std::vector<std::string_view> splitPath(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const size_t end = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, end);
        if (!part.empty() && part != ".") parts.push_back(part);
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return parts;
}

std::string joinPath(const std::string& directory, std::string_view name) {
    std::string path = directory;
    if (!path.empty() && path.back() != '/') path += '/';
    return path += name;
}

// A directory's entries: by the name in lower case its spellings, in byte order, so that the same one wins on every
// run and file system.
using Listing = std::unordered_map<std::string, std::vector<std::string>>;

struct KeptListings {
    bool keeping = false;
    size_t namesLeft = 0;
    std::unordered_map<std::string, Listing> byDirectory;
};
KeptListings kept;

// False when the budget ended before the directory did.
bool readListing(LookUp& lookUp, const std::string& directory, Listing& listing) {
    DIR* stream = opendir(directory.empty() ? "." : directory.c_str());
    if (!stream) return true;
    const dirent* entry = nullptr;
    while (lookUp.entriesLeft > 0 && (entry = readdir(stream))) {
        --lookUp.entriesLeft;
        listing[toLower(std::string_view(entry->d_name))].emplace_back(entry->d_name);
    }
    closedir(stream);
    for (auto& [name, spellings] : listing) std::sort(spellings.begin(), spellings.end());
    return lookUp.entriesLeft > 0;
}

// Entries of a directory that differ from `name` in letter case alone.
std::vector<std::string> caseVariants(LookUp& lookUp, const std::string& directory, std::string_view name) {
    Listing read;
    const auto known = kept.byDirectory.find(directory);
    const bool isKnown = known != kept.byDirectory.end();
    const bool isWhole = isKnown || readListing(lookUp, directory, read);
    const Listing& listing = isKnown ? known->second : read;
    const auto found = listing.find(toLower(name));
    std::vector<std::string> variants;
    if (found != listing.end()) variants = found->second;
    std::erase(variants, name);
    if (!isKnown && isWhole && kept.keeping && read.size() < kept.namesLeft) {
        kept.namesLeft -= read.size() + 1;
        kept.byDirectory.emplace(directory, std::move(read));
    }
    return variants;
}

// Continues below `base`, which has been found, with the component at `index`: first as written, then
// under its other spellings. A directory that lacks the rest of the path hides none that has it.
bool walk(LookUp& lookUp, const std::string& base, size_t index, std::string& found) {
    if (lookUp.pathsLeft <= 0) return false;
    const std::string_view name = lookUp.components[index];
    const bool last = index + 1 == lookUp.components.size();
    const auto enter = [&](std::string_view spelling) {
        std::string path = joinPath(base, spelling);
        --lookUp.pathsLeft;
        if (!hasKind(path, last ? lookUp.wanted : Wanted::directory)) return false;
        if (!last) return walk(lookUp, path, index + 1, found);
        found = std::move(path);
        return true;
    };
    if (enter(name)) return true;
    if (name == "..") return false;
    --lookUp.pathsLeft;
    for (const std::string& variant : caseVariants(lookUp, base, name)) {
        if (lookUp.pathsLeft <= 0) return false;
        if (enter(variant)) return true;
    }
    return false;
}

// Where the path leads: as written when it exists so (one question to the system), else ignoring case.
bool locate(const std::string& path, Wanted wanted, std::string& found) {
    // A zero byte would end the name early for the system alone.
    if (path.size() >= PATH_MAX || path.find('\0') != std::string::npos) return false;
    if (hasKind(path, wanted)) {
        found = path;
        return true;
    }
    const bool namesDirectory = path.ends_with('/') || path.ends_with("/.");
    if (namesDirectory && wanted == Wanted::regularFile) return false;
    LookUp lookUp{wanted, splitPath(path)};
    if (lookUp.components.empty()) return false;
    return walk(lookUp, path.starts_with('/') ? "/" : "", 0, found);
}

// read(2), begun anew after a signal.
ssize_t readSome(int descriptor, char* buffer, size_t size) {
    ssize_t count = 0;
    do {
        count = read(descriptor, buffer, size);
    } while (count < 0 && errno == EINTR);
    return count;
}

bool isLinkToDirectory(const std::string& path) {
    std::string found;
    struct stat status = {};
    return locate(path, Wanted::directory, found) && lstat(found.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

// The path with the current directory in front, and "." and ".." folded; with `heedsLinks` no ".." behind a link.
std::string foldPath(const std::string& path, bool heedsLinks) {
    std::string folded = "/";
    if (!path.starts_with('/')) {
        std::error_code error;
        folded = std::filesystem::current_path(error).string();
        if (error) return path; // the directory was removed under us
    }
    for (const std::string_view part : splitPath(path)) {
        const bool stays = part != ".." || folded.ends_with("/..") || (heedsLinks && isLinkToDirectory(folded));
        if (stays) folded = joinPath(folded, part);
        else folded.resize(std::max<size_t>(folded.rfind('/'), 1));
    }
    return folded;
}

bool isRegularEntry(DIR* stream, const dirent& entry) {
    if (entry.d_type == DT_REG) return true;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
    struct stat status = {};
    return fstatat(dirfd(stream), entry.d_name, &status, 0) == 0 && S_ISREG(status.st_mode);
}

} // namespace

void acceptMissingMedia() {
    // The system asks nobody.
}

bool isAbsolutePath(const std::string& path) {
    if (path.starts_with('/')) return true;
    if (path.size() < 2 || path[1] != ':') return false;
    const char letter = toLower(path[0]);
    return letter >= 'a' && letter <= 'z';
}

std::string fullPath(const std::string& path) {
    return foldPath(path, false);
}

std::string fullFilePath(const std::string& path) {
    return foldPath(path, true);
}

void keepListings(bool keeping) {
    kept = KeptListings{keeping, kMostKeptNames, {}};
}

bool isRegularFile(const std::string& path) {
    std::string found;
    return locate(path, Wanted::regularFile, found);
}

bool isDirectory(const std::string& path) {
    std::string found;
    return locate(path, Wanted::directory, found);
}

bool readFile(const std::string& path, std::string& bytes) {
    bytes.clear();
    std::string found;
    if (!locate(path, Wanted::regularFile, found)) return false;
    // The kind is asked again once the file is open: it may have been exchanged for a pipe meanwhile,
    // which without O_NONBLOCK would already wait in open.
    const int descriptor = open(found.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) return false;
    struct stat status = {};
    const bool fits = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size <= kMaxFileBytes;
    const bool whole = fits && readToEnd(bytes, status.st_size,
                                         [&](char* buffer, size_t size) { return readSome(descriptor, buffer, size); });
    close(descriptor);
    if (!whole) std::string().swap(bytes);
    return whole;
}

std::vector<std::string> listFiles(const std::string& directory) {
    std::vector<std::string> names;
    std::string found;
    if (!locate(directory, Wanted::directory, found)) return names;
    DIR* stream = opendir(found.c_str());
    if (!stream) return names;
    while (const dirent* entry = readdir(stream)) {
        if (isRegularEntry(stream, *entry)) names.emplace_back(entry->d_name);
    }
    closedir(stream);
    return names;
}

std::string locateFile(const std::string& path) {
    std::string found;
    if (locate(path, Wanted::regularFile, found) || locate(path, Wanted::directory, found)) return found;
    return path;
}

std::string executableDirectory() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error || !program.has_parent_path() ? "." : program.parent_path().string();
}
