# The decoders and the built-in playback. The libraries are loaded at run time, by the shows that have music: the headers
# are needed here, and the names under which the system keeps the versions that go with them.
set(MUSIC_SOURCES
  music/built_in_audio.cpp
  music/decoder.cpp
  music/flac.cpp
  music/module.cpp
  music/mp3.cpp
  music/opus.cpp
  music/stereo.cpp
  music/vorbis.cpp
  music/wave.cpp
)

# add_music_library(NAME PACKAGE) for libNAME.so, whose name at run time becomes the macro LIB<NAME>_NAME.
macro(add_music_library name package)
  string(TOUPPER LIB${name} prefix)
  pkg_check_modules(${prefix} REQUIRED ${package})
  find_library(${prefix}_FILE ${name} HINTS ${${prefix}_LIBRARY_DIRS} REQUIRED)
  execute_process(COMMAND ${CMAKE_OBJDUMP} -p ${${prefix}_FILE} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  if(NOT headers MATCHES "SONAME +([^ \n]+)")
    message(FATAL_ERROR "${${prefix}_FILE} is no shared library")
  endif()
  list(APPEND MUSIC_LIBRARY_NAMES ${prefix}_NAME="${CMAKE_MATCH_1}")
  list(APPEND MUSIC_INCLUDE_DIRS ${${prefix}_INCLUDE_DIRS})
  set_property(GLOBAL APPEND PROPERTY QUILLON_MUSIC_LIBRARIES ${CMAKE_MATCH_1}) # the package names them
endmacro()

add_music_library(mpg123 libmpg123)
add_music_library(vorbisfile vorbisfile)
add_music_library(FLAC flac)
add_music_library(opusfile opusfile)
add_music_library(openmpt libopenmpt)
add_music_library(speexdsp speexdsp)
