#include "platform/files.h"

#include "foundation/text.h"

#include <algorithm>

#include <windows.h>

const char kPathSeparator = '\\';

namespace {

// Files that tell no size are read from here up.
constexpr size_t kFirstReadBytes = 4096;

bool isSeparator(char c) {
    return c == '\\' || c == '/';
}

// CON, NUL and the like, in whatever directory they are named, and all else that has its full path below \\.\:
// no files, though the system tells attributes for some.
bool isDevice(const std::string& path) {
    const std::string full = fullPath(path);
    return full.size() >= 4 && isSeparator(full[0]) && isSeparator(full[1]) && (full[2] == '.' || full[2] == '?') &&
           isSeparator(full[3]);
}

// The attributes of a file or directory; INVALID_FILE_ATTRIBUTES for what is neither.
DWORD attributesOf(const std::string& path) {
    // A zero byte would end the name early for the system alone.
    if (path.empty() || path.size() >= MAX_PATH || path.find('\0') != std::string::npos || isDevice(path)) {
        return INVALID_FILE_ATTRIBUTES;
    }
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DEVICE ? INVALID_FILE_ATTRIBUTES
                                                                                       : attributes;
}

// The file's bytes to its end, however large it claims to be.
bool readAll(HANDLE file, long long claimedSize, std::string& bytes) {
    // One byte more than the claim shows the end of the file without growing.
    const size_t most = static_cast<size_t>(kMaxFileBytes) + 1;
    bytes.resize(claimedSize > 0 ? static_cast<size_t>(claimedSize) + 1 : kFirstReadBytes);
    size_t size = 0;
    for (;;) {
        if (size == bytes.size()) {
            if (size == most) return false;
            bytes.resize(std::min(size * 2, most));
        }
        DWORD count = 0;
        if (!ReadFile(file, bytes.data() + size, static_cast<DWORD>(bytes.size() - size), &count, nullptr)) return false;
        if (count == 0) break;
        size += count;
    }
    bytes.resize(size);
    return true;
}

} // namespace

bool isAbsolutePath(const std::string& path) {
    return path.size() >= 2 && path[1] == ':';
}

std::string fullPath(const std::string& path) {
    char buffer[MAX_PATH] = {}; // stays empty for a path that has no room in it
    GetFullPathNameA(path.c_str(), MAX_PATH, buffer, nullptr);
    return buffer;
}

// The system ignores case by itself.
void keepListings(bool) {}

bool isRegularFile(const std::string& path) {
    const DWORD attributes = attributesOf(path);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool isDirectory(const std::string& path) {
    const DWORD attributes = attributesOf(path);
    return attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY;
}

bool readFile(const std::string& path, std::string& bytes) {
    bytes.clear();
    if (!isRegularFile(path)) return false;
    const DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    LARGE_INTEGER size = {};
    // A name on another machine may still be a pipe.
    const bool fits = GetFileType(file) == FILE_TYPE_DISK && GetFileSizeEx(file, &size) && size.QuadPart <= kMaxFileBytes;
    const bool whole = fits && readAll(file, size.QuadPart, bytes);
    CloseHandle(file);
    if (!whole) std::string().swap(bytes);
    return whole;
}

std::vector<std::string> listFiles(const std::string& directory) {
    std::vector<std::string> names;
    if (!isDirectory(directory)) return names;
    const std::string pattern = directory + (isSeparator(directory.back()) ? "*" : "\\*");
    WIN32_FIND_DATAA entry = {};
    const HANDLE search = FindFirstFileA(pattern.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        if (!(entry.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE))) names.emplace_back(entry.cFileName);
    } while (FindNextFileA(search, &entry));
    FindClose(search);
    return names;
}

std::string locateFile(const std::string& path) {
    return path;
}

std::string executableDirectory() {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH - 1);
    const std::string program = path;
    const size_t last = program.find_last_of("\\/");
    return last == std::string::npos ? "." : program.substr(0, last);
}
