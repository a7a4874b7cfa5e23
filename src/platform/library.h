// Shared libraries loaded at run time.
#pragma once

// Handle of a loaded library, null when it could not be loaded.
void* openLibrary(const char* path);

// Address of an exported symbol, null when the library has none of that name.
void* librarySymbol(void* library, const char* name);

void closeLibrary(void* library); // null is ignored
