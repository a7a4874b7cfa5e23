#include "platform/library.h"

#include <windows.h>

void* openLibrary(const char* path) {
    // A file that is no library must not bring up a message box that waits for somebody.
    DWORD before = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before);
    const HMODULE library = LoadLibraryA(path);
    SetThreadErrorMode(before, nullptr);
    return library;
}

void* librarySymbol(void* library, const char* name) {
    // A null handle would search the program itself.
    return library ? reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name)) : nullptr;
}

void closeLibrary(void* library) {
    if (library) FreeLibrary(static_cast<HMODULE>(library));
}
