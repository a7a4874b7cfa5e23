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

bool renameFile(const std::string& from, const std::string& to, std::string& reason) {
    const bool renamed = std::rename(from.c_str(), to.c_str()) == 0;
    if (!renamed) reason = std::strerror(errno);
    return renamed;
}

void removeFile(const std::string& path) {
    unlink(path.c_str());
}

bool isTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) == 1;
}
