// Reading a file to its end, whatever size it claims.
#pragma once

#include "platform/files.h"

#include <algorithm>
#include <cstddef>

// `readSome(buffer, size)` gives how many bytes it read: 0 at the end, negative on failure. `claimedSize` is 0 for
// files that tell none. False when reading fails or goes beyond kMaxFileBytes.
template <class ReadSome>
bool readToEnd(std::string& bytes, long long claimedSize, ReadSome readSome) {
    constexpr size_t kFirstBytes = 4096;
    constexpr size_t kMost = static_cast<size_t>(kMaxFileBytes) + 1;
    // One byte more than the claim shows the end of the file without growing.
    bytes.resize(claimedSize > 0 ? static_cast<size_t>(claimedSize) + 1 : kFirstBytes);
    size_t size = 0;
    for (;;) {
        if (size == bytes.size()) {
            if (size == kMost) return false;
            bytes.resize(std::min(size * 2, kMost));
        }
        const ptrdiff_t count = readSome(bytes.data() + size, bytes.size() - size);
        if (count < 0) return false;
        if (count == 0) break;
        size += static_cast<size_t>(count);
    }
    bytes.resize(size);
    return true;
}
