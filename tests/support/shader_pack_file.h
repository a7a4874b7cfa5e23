// Writes shader packs for tests.
#pragma once

#include "gpu/shader_pack.h"

#include <optional>
#include <string>
#include <vector>

struct PackFile {
    std::string name;
    std::string text;
};

inline std::string u32Bytes(uint32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

// A pack of the files that claims to hold `count` of them, by default as many as it does.
inline std::string packBytes(const std::vector<PackFile>& files, std::optional<uint32_t> count = {}) {
    std::string bytes = "DSPAK01" + std::string(1, '\0') +
                        u32Bytes(count.value_or(static_cast<uint32_t>(files.size())));
    uint32_t number = 0;
    for (PackFile file : files) {
        std::string key;
        for (const char c : file.name) key += c == '\\' ? '/' : c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
        scrambleBytes(file.name.data(), file.name.size(), number++ ^ 0x9A2D4F68);
        scrambleBytes(file.text.data(), file.text.size(), hashFnv1a(key) ^ 0x3B7E19C5);
        bytes += u32Bytes(static_cast<uint32_t>(file.name.size())) + u32Bytes(static_cast<uint32_t>(file.text.size()));
        bytes += file.name + file.text;
    }
    return bytes;
}
