#include "gpu/shader_pack.h"

#include "config/paths.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "platform/files.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace {

constexpr std::string_view kMagic = "DSPAK01";
constexpr size_t kHeaderSize = 12;
constexpr uint32_t kPackMask = 0x3B7E19C5;
constexpr uint32_t kNameMask = 0x9A2D4F68;

struct ShaderPack {
    bool loaded = false;
    std::vector<std::string> shaderRoots; // normalised, in the order of look-up
    std::unordered_map<std::string, std::string> entries;
};

ShaderPack& pack() {
    static ShaderPack instance;
    return instance;
}

std::string normaliseKey(std::string text) {
    for (char& c : text) c = c == '\\' ? '/' : toLower(c);
    return text;
}

std::string joinAll(std::string path, std::initializer_list<const char*> pieces) {
    for (const char* piece : pieces) path = joinPath(path, piece);
    return path;
}

std::string findPackFile(const std::string& baseDir) {
    const std::string candidates[] = {
        joinAll(baseDir, {"DemoSceneResources", "runtime", "shaders.pak"}),
        joinAll(baseDir, {"runtime", "shaders.pak"}),
        joinPath(baseDir, "shaders.pak"),
    };
    for (const std::string& path : candidates) {
        if (isRegularFile(path)) return path;
    }
    return "";
}

uint32_t readU32(const std::string& bytes, size_t at) {
    if (at + 4 > bytes.size()) return 0;
    uint32_t value = 0;
    for (int i = 3; i >= 0; --i) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
    return value;
}

// Positions are 64-bit, lengths at most 2^32 each: the sums below cannot wrap.
void readEntries(const std::string& bytes, std::unordered_map<std::string, std::string>& entries) {
    const uint32_t count = readU32(bytes, 8);
    uint64_t at = kHeaderSize;
    for (uint32_t number = 0; number < count && at + 8 <= bytes.size(); ++number) {
        const uint64_t nameLength = readU32(bytes, at);
        const uint64_t dataLength = readU32(bytes, at + 4);
        at += 8;
        if (nameLength == 0 || at + nameLength + dataLength > bytes.size()) return;

        std::string name = bytes.substr(at, nameLength);
        scrambleBytes(name.data(), name.size(), number ^ kNameMask);
        std::string key = normaliseKey(std::move(name));

        std::string data = bytes.substr(at + nameLength, dataLength);
        scrambleBytes(data.data(), data.size(), hashFnv1a(key) ^ kPackMask);
        entries[std::move(key)] = std::move(data);
        at += nameLength + dataLength;
    }
}

// The pack's text for a path, null when the pack has none.
const std::string* packText(const std::string& path) {
    if (pack().entries.empty()) return nullptr; // saves making the path absolute
    std::string key;
    if (!packRelativeKey(path, key)) return nullptr;
    const auto found = pack().entries.find(key);
    return found == pack().entries.end() ? nullptr : &found->second;
}

// The key under which the pack's files of a directory begin; false when it lies under no shader root.
bool directoryPrefix(const std::string& directory, std::string& prefix) {
    if (!packRelativeKey(directory, prefix)) return false;
    if (!prefix.empty() && prefix.back() != '/') prefix += '/';
    return true;
}

} // namespace

void loadShaderPack(const std::string& baseDir) {
    if (pack().loaded) return;
    pack().loaded = true;
    pack().shaderRoots = {
        normaliseKey(fullPath(joinAll(baseDir, {"DemoSceneResources", "assets", "shaders", ""}))),
        normaliseKey(fullPath(joinAll(baseDir, {"assets", "shaders", ""}))),
    };

    const std::string path = findPackFile(baseDir);
    if (path.empty()) return;
    std::string bytes;
    if (!readFile(path, bytes) || bytes.size() < kHeaderSize || bytes.compare(0, kMagic.size(), kMagic) != 0) {
        logLine("[SHADERPACK] Invalid pack: %s\n", path.c_str());
        return;
    }
    readEntries(bytes, pack().entries);
    logLine("[SHADERPACK] Loaded %d shaders from %s\n", static_cast<int>(pack().entries.size()), path.c_str());
}

bool packRelativeKey(const std::string& path, std::string& key) {
    if (pack().shaderRoots.empty()) return false;
    const std::string normalised = normaliseKey(fullPath(path));
    for (const std::string& root : pack().shaderRoots) {
        const size_t length = root.find_last_not_of('/') + 1;
        if (normalised.compare(0, length, root, 0, length) != 0) continue;
        const size_t rest = normalised.find_first_not_of('/', length);
        key = rest == std::string::npos ? "" : normalised.substr(rest);
        return true;
    }
    return false;
}

bool fileExists(const std::string& path) {
    return packText(path) != nullptr || isRegularFile(path);
}

std::string readTextFile(const std::string& path) {
    if (const std::string* text = packText(path)) return *text;
    std::string bytes;
    readFile(path, bytes);
    return bytes;
}

bool packHasDirectory(const std::string& directory) {
    std::string prefix;
    if (!directoryPrefix(directory, prefix)) return false;
    return std::any_of(pack().entries.begin(), pack().entries.end(),
                       [&](const auto& entry) { return entry.first.starts_with(prefix); });
}

std::vector<std::string> packFilesIn(const std::string& directory) {
    std::vector<std::string> names;
    std::string prefix;
    if (!directoryPrefix(directory, prefix)) return names;
    for (const auto& [key, text] : pack().entries) {
        if (key.size() > prefix.size() && key.starts_with(prefix) &&
            key.find('/', prefix.size()) == std::string::npos) {
            names.push_back(key.substr(prefix.size()));
        }
    }
    return names;
}

void scrambleBytes(char* bytes, size_t size, uint32_t key) {
    uint32_t counter = 0;
    for (size_t i = 0; i < size; ++i, counter += 0x9E3779B9) {
        const uint32_t v = counter ^ key ^ kPackMask;
        const uint32_t t = v ^ (v << 13);
        const uint32_t c = ((t >> 17) ^ t) & 0xFF;
        const uint32_t m = ((c << 5) ^ c) & 0xFF;
        bytes[i] = static_cast<char>(static_cast<uint8_t>(bytes[i]) ^ m);
    }
}

uint32_t hashFnv1a(const std::string& text) {
    uint32_t hash = 0x811C9DC5;
    for (const char c : text) hash = (hash ^ static_cast<uint8_t>(c)) * 16777619u;
    return hash;
}
