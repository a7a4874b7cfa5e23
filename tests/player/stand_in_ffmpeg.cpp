// A stand-in for ffmpeg where there is none: writes its arguments, one a line, and all that comes in, into the
// file that the last argument names. STAND_IN_FFMPEG makes it die half-way ("dies") or take nothing ("hangs").
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <io.h>

int main(int count, char** arguments) {
    const std::string output = arguments[count - 1];
    const char* setting = std::getenv("STAND_IN_FFMPEG");
    const std::string behaviour = setting ? setting : "";
    if (output == "-") return 0; // asked whether it can read the music
    _setmode(_fileno(stdin), _O_BINARY);
    std::FILE* file = std::fopen(output.substr(output.find(':') + 1).c_str(), "wb");
    for (int i = 1; i < count; ++i) std::fprintf(file, "%s\n", arguments[i]);
    std::fputs("\n", file);
    if (behaviour == "hangs") std::this_thread::sleep_for(std::chrono::hours(1));
    std::vector<char> buffer(100'000);
    long long left = behaviour == "dies" ? 3'000'000 : 1LL << 40;
    while (left > 0) {
        const size_t size = std::fread(buffer.data(), 1, buffer.size(), stdin);
        if (size == 0) break;
        std::fwrite(buffer.data(), 1, size, file);
        left -= static_cast<long long>(size);
    }
    std::fclose(file);
    if (behaviour == "dies") std::fputs("said before\r\nsome; last words\r\n", stderr);
    return behaviour == "dies" ? 3 : 0;
}
