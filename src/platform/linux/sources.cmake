# The platform on Linux: SDL2 and EGL.
find_package(PkgConfig REQUIRED)
pkg_check_modules(SDL2 REQUIRED IMPORTED_TARGET sdl2)
pkg_check_modules(SDL2_IMAGE REQUIRED IMPORTED_TARGET SDL2_image)
find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL)

add_layer(platform
  ${PLATFORM_SOURCES}
  platform/linux/audio.cpp
  platform/linux/clock.cpp
  platform/linux/files.cpp
  platform/linux/headless.cpp
  platform/linux/image.cpp
  platform/linux/library.cpp
  platform/linux/output.cpp
  platform/linux/png_encoder.cpp
  platform/linux/process.cpp
  platform/linux/surface.cpp
  platform/linux/window.cpp
)
target_link_libraries(platform PUBLIC foundation OpenGL::OpenGL
  PRIVATE PkgConfig::SDL2 PkgConfig::SDL2_IMAGE OpenGL::EGL ${CMAKE_DL_LIBS})

function(add_program_resources program)
  # Nothing goes into a program here.
endfunction()
