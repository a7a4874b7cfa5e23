#include "gpu/readback.h"

#include "gpu/gl_functions.h"

namespace {

// Mapping is what only this file needs, so it stands beside the table and not in it.
PFNGLMAPBUFFERRANGEPROC mapBufferRange = nullptr;
PFNGLUNMAPBUFFERPROC unmapBuffer = nullptr;

GLsizeiptr frameBytes(const Readback& readback) {
    return static_cast<GLsizeiptr>(readback.width) * readback.height * 4;
}

GLuint slotBuffer(const Readback& readback, long long frame) {
    return readback.buffers[static_cast<size_t>(frame % Readback::kSlots)];
}

} // namespace

bool createReadback(Readback& readback, GlLookup lookup, int width, int height) {
    mapBufferRange = reinterpret_cast<PFNGLMAPBUFFERRANGEPROC>(lookup("glMapBufferRange"));
    unmapBuffer = reinterpret_cast<PFNGLUNMAPBUFFERPROC>(lookup("glUnmapBuffer"));
    if (!mapBufferRange || !unmapBuffer) return false;
    readback.width = width;
    readback.height = height;
    gl.GenBuffers(Readback::kSlots, readback.buffers.data());
    for (const GLuint buffer : readback.buffers) {
        gl.BindBuffer(GL_PIXEL_PACK_BUFFER, buffer);
        gl.BufferData(GL_PIXEL_PACK_BUFFER, frameBytes(readback), nullptr, GL_STREAM_READ);
    }
    gl.BindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    return true;
}

void requestFrame(Readback& readback) {
    gl.BindBuffer(GL_PIXEL_PACK_BUFFER, slotBuffer(readback, readback.requested));
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    // Drivers keep blue first: software OpenGL hands such pixels over in a tenth of the time.
    glReadPixels(0, 0, readback.width, readback.height, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
    gl.BindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    glFlush();
    ++readback.requested;
}

const unsigned char* mapFrame(Readback& readback) {
    gl.BindBuffer(GL_PIXEL_PACK_BUFFER, slotBuffer(readback, readback.mapped));
    const void* pixels = mapBufferRange(GL_PIXEL_PACK_BUFFER, 0, frameBytes(readback), GL_MAP_READ_BIT);
    gl.BindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    ++readback.mapped;
    return static_cast<const unsigned char*>(pixels);
}

void releaseFrame(Readback& readback) {
    gl.BindBuffer(GL_PIXEL_PACK_BUFFER, slotBuffer(readback, readback.released));
    unmapBuffer(GL_PIXEL_PACK_BUFFER);
    gl.BindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    ++readback.released;
}

void deleteReadback(Readback& readback) {
    // Deleting a buffer unmaps it.
    if (readback.buffers[0]) gl.DeleteBuffers(Readback::kSlots, readback.buffers.data());
    readback = {};
}
