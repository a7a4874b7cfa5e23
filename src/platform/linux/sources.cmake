# The platform on Linux: SDL2 and EGL.
find_package(PkgConfig REQUIRED)
pkg_check_modules(SDL2 REQUIRED IMPORTED_TARGET sdl2)
pkg_check_modules(SDL2_IMAGE REQUIRED IMPORTED_TARGET SDL2_image)
# Loaded at run time, by the shows that have music; of these only the headers are needed.
pkg_check_modules(SDL2_MIXER REQUIRED SDL2_mixer)
pkg_check_modules(MODPLUG REQUIRED libmodplug)
find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL)

add_layer(platform
  ${PLATFORM_SOURCES}
  platform/linux/built_in_audio.cpp
  platform/linux/clock.cpp
  platform/linux/files.cpp
  platform/linux/headless.cpp
  platform/linux/image.cpp
  platform/linux/library.cpp
  platform/linux/output.cpp
  platform/linux/png_encoder.cpp
  platform/linux/process.cpp
  platform/linux/surface.cpp
  platform/linux/track.cpp
  platform/linux/window.cpp
)
target_link_libraries(platform PUBLIC foundation OpenGL::OpenGL
  PRIVATE PkgConfig::SDL2 PkgConfig::SDL2_IMAGE OpenGL::EGL ${CMAKE_DL_LIBS})
target_include_directories(platform PRIVATE ${SDL2_MIXER_INCLUDE_DIRS} ${MODPLUG_INCLUDE_DIRS})

function(add_program_resources program)
  # Nothing goes into a program here.
endfunction()
