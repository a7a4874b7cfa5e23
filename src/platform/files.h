// Files and paths as the system sees them. Every path here is narrow text: UTF-8 on both systems.
//
// Where the file system tells letter case apart, a path that does not exist as written is found
// ignoring ASCII case, component by component, the exact name first: shows are made on systems that
// do not tell them apart.
#pragma once

#include <string>
#include <vector>

// The separator that paths are built with: '\' on Windows, '/' elsewhere.
extern const char kPathSeparator;

// The most that readFile takes into memory.
constexpr long long kMaxFileBytes = 1LL << 28;

// A drive without a medium then is one where nothing lies, while some systems would first ask the user for the medium.
// Before the first file is looked for.
void acceptMissingMedia();

// True for a path that stands on its own: a drive letter ("C:...") everywhere; a leading '/' on Linux.
bool isAbsolutePath(const std::string& path);

// The absolute form of a path without looking at the disk: the current directory is put in front, "."
// and ".." are folded. Symbolic links are left alone. Empty where the system has no room for so long a path.
std::string fullPath(const std::string& path);

// The absolute form under which an existing file can be opened: as above, but where the system resolves a symbolic
// link before the ".." behind it, as it does on Linux, both stay.
std::string fullFilePath(const std::string& path);

// Between keepListings(true) and keepListings(false) what look-ups ignoring case have read of directories is
// remembered: while a show loads, whose missing files would otherwise have the same directories read again each. For
// one thread.
void keepListings(bool keeping);

// A readable kind of file: exists, is not a directory and not a device or pipe (a show that names
// /dev/zero or a pipe must not stall the player).
bool isRegularFile(const std::string& path);
bool isDirectory(const std::string& path);

// The whole file into `bytes`. False, with `bytes` empty, when it is not a regular file, cannot be
// read, or is larger than kMaxFileBytes. Says nothing.
bool readFile(const std::string& path, std::string& bytes);

// Names (no paths) of the regular files directly in a directory, in no particular order.
std::vector<std::string> listFiles(const std::string& directory);

// The path under which the system really finds the file or directory, for libraries that open files
// themselves; the path as given when nothing is found.
std::string locateFile(const std::string& path);

// The directory of the running program, without a trailing separator; "." when it cannot be told.
std::string executableDirectory();
