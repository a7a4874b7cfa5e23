# The platform on Linux: SDL2 and EGL.
find_package(PkgConfig REQUIRED)
pkg_check_modules(SDL2 REQUIRED IMPORTED_TARGET sdl2)
pkg_check_modules(PICTURES REQUIRED IMPORTED_TARGET libpng libjpeg libtiff-4 libwebp)
find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL)

add_layer(platform
  ${PLATFORM_SOURCES}
  platform/linux/audio.cpp
  platform/linux/clock.cpp
  platform/linux/files.cpp
  platform/linux/headless.cpp
  platform/linux/image.cpp
  platform/linux/images/bmp.cpp
  platform/linux/images/gif.cpp
  platform/linux/images/jpeg.cpp
  platform/linux/images/png.cpp
  platform/linux/images/png_encoder.cpp
  platform/linux/images/tiff.cpp
  platform/linux/images/webp.cpp
  platform/linux/library.cpp
  platform/linux/output.cpp
  platform/linux/process.cpp
  platform/linux/stop_request.cpp
  platform/linux/surface.cpp
  platform/linux/window.cpp
)
target_link_libraries(platform PUBLIC foundation OpenGL::OpenGL
  PRIVATE PkgConfig::SDL2 PkgConfig::PICTURES OpenGL::EGL ${CMAKE_DL_LIBS})

function(add_program_resources program)
  # Nothing goes into a program here.
endfunction()
