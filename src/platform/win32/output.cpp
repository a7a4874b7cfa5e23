#include "platform/output.h"

#include "platform/win32/error_words.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

// The C library would take * and ? in an argument for names of files; they stand as they were written.
extern "C" int _CRT_glob;
int _CRT_glob = 0;

void openStandardStreams() {
    std::FILE* const streams[] = {stdin, stdout, stderr};
    const char* const modes[] = {"r", "w", "w"};
    for (int i = 0; i < 3; ++i) {
        if (_fileno(streams[i]) < 0) std::freopen("NUL", modes[i], streams[i]);
    }
    // The code page of the texts, as long as the program runs; 0 where no console is.
    static const UINT before = GetConsoleOutputCP();
    if (before && SetConsoleOutputCP(CP_UTF8)) std::atexit([] { SetConsoleOutputCP(before); });
}

std::FILE* openOutput(const std::string& path, std::string& reason) {
    if (path == "-") {
        std::fflush(stdout);
        _setmode(_fileno(stdout), _O_BINARY); // a byte 10 of a picture is no end of a line
        return stdout;
    }
    std::FILE* file = std::fopen(path.c_str(), "wbN"); // N: no program that the player starts inherits it
    if (!file) reason = std::strerror(errno);
    return file;
}

bool renameFile(const std::string& from, const std::string& to, std::string& reason) {
    const bool renamed = MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING);
    if (!renamed) reason = lastErrorWords();
    return renamed;
}

void removeFile(const std::string& path) {
    DeleteFileA(path.c_str());
}

bool isTerminal(std::FILE* stream) {
    DWORD mode = 0; // the C library takes NUL for a terminal too
    return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream))), &mode);
}
