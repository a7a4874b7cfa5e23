#include "platform/output.h"

#include "platform/files.h"

#include <cerrno>
#include <cstring>

bool closeOutput(std::FILE* file, std::string& reason) {
    // What only comes out at the end may be lost on some systems' way to fclose's result.
    const bool flushed = std::fflush(file) == 0;
    if (!flushed) reason = std::strerror(errno);
    const bool closed = file == stdout || std::fclose(file) == 0;
    if (flushed && !closed) reason = std::strerror(errno);
    return flushed && closed;
}

bool writeFile(const std::string& path, const std::string& bytes, std::string& reason) {
    std::FILE* file = openOutput(path, reason);
    if (!file) return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    if (!written) reason = std::strerror(errno);
    const bool whole = closeOutput(file, reason) && written;
    if (!whole && isRegularFile(path)) removeFile(path); // devices and pipes stay
    return whole;
}
