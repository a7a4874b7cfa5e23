#include "platform/files.h"

#include "foundation/text.h"
#include "platform/read_to_end.h"

#include <windows.h>

const char kPathSeparator = '\\';

namespace {

// The system counts its limit in UTF-16 units; each takes up to three bytes of narrow text.
constexpr DWORD kMostPathBytes = 3 * MAX_PATH;

bool hasRoom(const std::string& path) {
    const int units = MultiByteToWideChar(CP_ACP, 0, path.data(), static_cast<int>(path.size()), nullptr, 0);
    return path.size() < kMostPathBytes && units < MAX_PATH;
}

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
    if (path.empty() || !hasRoom(path) || path.find('\0') != std::string::npos || isDevice(path)) {
        return INVALID_FILE_ATTRIBUTES;
    }
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DEVICE ? INVALID_FILE_ATTRIBUTES
                                                                                       : attributes;
}

ptrdiff_t readSome(HANDLE file, char* buffer, size_t size) {
    DWORD count = 0;
    return ReadFile(file, buffer, static_cast<DWORD>(size), &count, nullptr) ? static_cast<ptrdiff_t>(count) : -1;
}

} // namespace

void acceptMissingMedia() {
    SetErrorMode(GetErrorMode() | SEM_FAILCRITICALERRORS);
}

bool isAbsolutePath(const std::string& path) {
    return path.size() >= 2 && path[1] == ':';
}

std::string fullPath(const std::string& path) {
    char buffer[kMostPathBytes] = {};
    const DWORD length = GetFullPathNameA(path.c_str(), kMostPathBytes, buffer, nullptr);
    const std::string full(buffer, length < kMostPathBytes ? length : 0);
    return hasRoom(full) ? full : "";
}

// The system folds ".." before it looks at links.
std::string fullFilePath(const std::string& path) {
    return fullPath(path);
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
    const bool isFile = GetFileType(file) == FILE_TYPE_DISK && GetFileSizeEx(file, &size);
    const bool fits = isFile && size.QuadPart <= kMaxFileBytes;
    const bool whole = fits && readToEnd(bytes, size.QuadPart,
                                         [&](char* buffer, size_t room) { return readSome(file, buffer, room); });
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
        const DWORD noFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE;
        if (!(entry.dwFileAttributes & noFile)) names.emplace_back(entry.cFileName);
    } while (FindNextFileA(search, &entry));
    FindClose(search);
    return names;
}

std::string locateFile(const std::string& path) {
    return path;
}

std::string executableDirectory() {
    char path[kMostPathBytes] = {};
    const std::string program(path, GetModuleFileNameA(nullptr, path, kMostPathBytes - 1));
    const size_t last = program.find_last_of("\\/");
    return last == std::string::npos ? "." : program.substr(0, last);
}
