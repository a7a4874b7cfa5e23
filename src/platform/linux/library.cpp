#include "platform/library.h"

#include <dlfcn.h>

void* openLibrary(const char* path) {
    return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}

void* librarySymbol(void* library, const char* name) {
    // A null handle would search the whole program.
    return library ? dlsym(library, name) : nullptr;
}

void closeLibrary(void* library) {
    if (library) dlclose(library);
}
