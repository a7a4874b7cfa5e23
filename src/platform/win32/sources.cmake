# The platform on Windows: Win32, WGL and GDI+, all of which every system has.
enable_language(RC)

add_layer(platform
  ${PLATFORM_SOURCES}
  platform/win32/audio.cpp
  platform/win32/clock.cpp
  platform/win32/error_words.cpp
  platform/win32/files.cpp
  platform/win32/headless.cpp
  platform/win32/image.cpp
  platform/win32/library.cpp
  platform/win32/output.cpp
  platform/win32/process.cpp
  platform/win32/stop_request.cpp
  platform/win32/surface.cpp
  platform/win32/wgl.cpp
  platform/win32/window.cpp
)
target_link_libraries(platform PUBLIC foundation opengl32 PRIVATE gdiplus gdi32 ole32 user32)
# The oldest system that has all that is called by name; narrow headers, and no macros called min and max.
target_compile_definitions(platform PUBLIC _WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX)

# The manifest, without which paths would be in the code page of the country.
function(add_program_resources program)
  target_sources(${program} PRIVATE ${PROJECT_SOURCE_DIR}/src/platform/win32/program.rc)
endfunction()
