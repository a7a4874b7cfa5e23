#include "platform/output.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

void openStandardStreams() {
    for (int stream = 0; stream <= 2; ++stream) {
        // The lowest free descriptor is the one that open gives.
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0) return;
    }
}

std::FILE* openOutput(const std::string& path, std::string& reason) {
    std::signal(SIGPIPE, SIG_IGN);
    std::FILE* file = path == "-" ? stdout : std::fopen(path.c_str(), "wbe");
    if (!file) reason = std::strerror(errno);
    return file;
}

bool closeOutput(std::FILE* file, std::string& reason) {
    const int failed = file == stdout ? std::fflush(file) : std::fclose(file);
    if (failed) reason = std::strerror(errno);
    return !failed;
}

bool writeFile(const std::string& path, const std::string& bytes, std::string& reason) {
    std::FILE* file = openOutput(path, reason);
    if (!file) return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    if (!written) reason = std::strerror(errno);
    return closeOutput(file, reason) && written;
}

bool renameFile(const std::string& from, const std::string& to, std::string& reason) {
    const bool renamed = std::rename(from.c_str(), to.c_str()) == 0;
    if (!renamed) reason = std::strerror(errno);
    return renamed;
}

void removeFile(const std::string& path) {
    std::remove(path.c_str());
}

bool isTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) == 1;
}
