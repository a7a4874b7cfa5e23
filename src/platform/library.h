// Shared libraries loaded at run time.
#pragma once

// Handle of a loaded library, null when it could not be loaded.
void* openLibrary(const char* path);

// Address of an exported symbol, null when the library has none of that name.
void* librarySymbol(void* library, const char* name);

void closeLibrary(void* library); // null is ignored

// Points `function` to the symbol of its type; false when there is none.
template <typename Function>
bool resolveSymbol(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(librarySymbol(library, name));
    return function != nullptr;
}
