#include "platform/image.h"
#include "platform/image_limits.h"

#include <png.h>

#include <csetjmp>
#include <cstddef>

namespace {

struct Rows {
    const uint8_t* pixels;
    int width, height;
    bool withAlpha;
    PixelLayout layout;
};

void append(png_structp png, png_bytep data, size_t size) {
    static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<const char*>(data), size);
}

void flush(png_structp) {}

void writeRows(png_structp png, png_infop info, const Rows& rows) {
    png_set_IHDR(png, info, static_cast<png_uint_32>(rows.width), static_cast<png_uint_32>(rows.height), 8,
                 rows.withAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    if (rows.layout.blueFirst) png_set_bgr(png);
    if (!rows.withAlpha) png_set_filler(png, 0, PNG_FILLER_AFTER);
    for (int y = 0; y < rows.height; ++y) {
        const int from = rows.layout.bottomFirst ? rows.height - 1 - y : y;
        png_write_row(png, rows.pixels + static_cast<ptrdiff_t>(from) * rows.width * 4);
    }
    png_write_end(png, info);
}

// libpng's errors come back here; nothing between has a destructor.
bool writeOrFail(png_structp png, png_infop info, const Rows& rows) {
    if (setjmp(png_jmpbuf(png))) return false;
    writeRows(png, info, rows);
    return true;
}

void ignoreWarning(png_structp, png_const_charp) {}

[[noreturn]] void fail(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

} // namespace

bool encodePng(const uint8_t* pixels, int width, int height, bool withAlpha, std::string& bytes, PixelLayout layout) {
    bytes.clear();
    if (!fitsImageLimits(width, height)) return false;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignoreWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (info) png_set_write_fn(png, &bytes, append, flush);
    const bool encoded = info && writeOrFail(png, info, {pixels, width, height, withAlpha, layout});
    png_destroy_write_struct(&png, &info);
    if (!encoded) bytes.clear();
    return encoded;
}
