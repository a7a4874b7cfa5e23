// The shader pack ("shaders.pak"): text assets in one file that shadow files of the same name on disk.
//
// Layout, little-endian: magic "DSPAK01", one reserved byte, u32 entry count; then per entry u32 name
// length, u32 data length, scrambled name (relative to a shader root), scrambled data. No padding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Loads the pack of a show once per process, from the first of DemoSceneResources/runtime, runtime and
// the base directory itself that has a "shaders.pak". Without one nothing is said and every look-up goes
// to the disk. Entries before a fault in the file stay loaded.
void loadShaderPack(const std::string& baseDir);

// Whether `path` lies under one of the two shader roots; `key` is then its lower-case rest with forward
// slashes. A plain prefix test: "<root>s/x" gives "s/x".
bool packRelativeKey(const std::string& path, std::string& key);

// Existence and whole-file reads for the whole program: the pack answers first, then the disk. An
// unreadable file reads as empty text.
bool fileExists(const std::string& path);
std::string readTextFile(const std::string& path);

// Whether the pack (the disk is not asked) holds anything below the directory.
bool packHasDirectory(const std::string& directory);

// Names of the pack's entries directly in the directory, in lower case.
std::vector<std::string> packFilesIn(const std::string& directory);

// XORs `size` bytes with the byte stream of `key`; applied twice it gives back the original.
void scrambleBytes(char* bytes, size_t size, uint32_t key);

// 32-bit FNV-1a.
uint32_t hashFnv1a(const std::string& text);
