#include "platform/linux/images/decoders.h"

#include <png.h>

#include <csetjmp>
#include <cstring>

namespace {

struct Source {
    std::string_view rest; // of the file
    std::string& reason;
};

void readBytes(png_structp png, png_bytep target, size_t count) {
    std::string_view& rest = static_cast<Source*>(png_get_io_ptr(png))->rest;
    if (count > rest.size()) png_error(png, "cut short");
    std::memcpy(target, rest.data(), count);
    rest.remove_prefix(count);
}

[[noreturn]] void fail(png_structp png, png_const_charp words) {
    static_cast<Source*>(png_get_error_ptr(png))->reason.assign("broken: ").append(words);
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

// Rows as R, G, B, A of 8 bits, whatever the file holds. Colours are taken as they are: gamma and profiles
// count for nothing.
int askForRgba(png_structp png, png_infop info) {
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 255, PNG_FILLER_AFTER);
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    return passes;
}

bool readRows(png_structp png, png_infop info, DecodedImage& image, std::string& reason) {
    // Only what makes the picture is looked at: texts and profiles may unfold to any size.
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_read_info(png, info);
    if (!makePicture(png_get_image_width(png, info), png_get_image_height(png, info), image, reason)) return false;
    for (int passes = askForRgba(png, info); passes > 0; --passes) {
        for (int y = 0; y < image.height; ++y) png_read_row(png, rowFromTop(image, y), nullptr);
    }
    return true;
}

// libpng's errors come back here; nothing between has a destructor.
bool readOrFail(png_structp png, png_infop info, DecodedImage& image, std::string& reason) {
    if (setjmp(png_jmpbuf(png))) return false;
    return readRows(png, info, image, reason);
}

} // namespace

bool decodePng(std::string_view bytes, DecodedImage& image, std::string& reason) {
    Source source{bytes, reason};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &source, fail, ignoreWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (info) png_set_read_fn(png, &source, readBytes);
    const bool decoded = info && readOrFail(png, info, image, reason);
    png_destroy_read_struct(&png, &info, nullptr);
    return decoded;
}
