// Tables of a library's functions, found at run time: whoever has no music needs none of the decoders.
//
//   #define FUNCTIONS(USE) USE(mpg123_new) USE(mpg123_read)
//   struct Library { FUNCTIONS(LIBRARY_POINTER) };
//   const bool whole = handle FUNCTIONS(LIBRARY_RESOLVE);   // into `library`
#pragma once

#include "platform/library.h"

// The names as headers give them, some of which are macros for others.
#define LIBRARY_NAME(function) #function
#define LIBRARY_POINTER(function) decltype(&::function) function = nullptr;
#define LIBRARY_RESOLVE(function) &&resolveSymbol(handle, LIBRARY_NAME(function), library.function)

// Defines bool loadLibrary(Library&, std::string& reason). A library is not closed again: some keep threads and
// hooks of their own.
#define LIBRARY_LOADER(Library, FUNCTIONS, fileName)                                                                   \
    bool loadLibrary(Library& library, std::string& reason) {                                                          \
        void* handle = openLibrary(fileName);                                                                          \
        if (handle FUNCTIONS(LIBRARY_RESOLVE)) return true;                                                            \
        reason = std::string("the library ") + fileName + " is not installed";                                         \
        return false;                                                                                                  \
    }
