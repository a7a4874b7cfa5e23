#include "platform/linux/images/decoders.h"

#include <png.h>

#include <csetjmp>

namespace {

struct Target {
    DecodedImage& image;
    std::string& reason;
    int passes = 0; // over the rows; more than one where the file is interlaced
    bool whole = false;
};

Target& targetOf(png_structp png) {
    return *static_cast<Target*>(png_get_progressive_ptr(png));
}

[[noreturn]] void fail(png_structp png, png_const_charp words) {
    std::string& reason = *static_cast<std::string*>(png_get_error_ptr(png));
    if (reason.empty()) reason.append("broken: ").append(words);
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

// Rows are wanted as R, G, B, A of 8 bits, whatever the file holds. Colours are taken as they are: gamma and
// profiles count for nothing.
void startPicture(png_structp png, png_infop info) {
    Target& target = targetOf(png);
    if (!makePicture(png_get_image_width(png, info), png_get_image_height(png, info), target.image, target.reason)) {
        png_error(png, "too large");
    }
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 255, PNG_FILLER_AFTER);
    target.passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
}

void takeRow(png_structp png, png_bytep row, png_uint_32 y, int pass) {
    Target& target = targetOf(png);
    const int line = static_cast<int>(y);
    png_progressive_combine_row(png, rowFromTop(target.image, line), row);
    if (pass == target.passes - 1 && line == target.image.height - 1) target.whole = true;
}

// libpng's errors come back here; nothing between has a destructor.
bool readOrFail(png_structp png, png_infop info, std::string_view bytes) {
    if (setjmp(png_jmpbuf(png))) return false;
    // Only what makes the picture is looked at: texts and profiles may unfold to any size.
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    // Handed over instead of asked for: data behind the last row are then passed over packed as they are.
    png_process_data(png, info, reinterpret_cast<png_bytep>(const_cast<char*>(bytes.data())), bytes.size());
    return true;
}

} // namespace

bool decodePng(std::string_view bytes, DecodedImage& image, std::string& reason) {
    Target target{image, reason};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &reason, fail, ignoreWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (info) png_set_progressive_read_fn(png, &target, startPicture, takeRow, nullptr);
    const bool read = info && readOrFail(png, info, bytes);
    png_destroy_read_struct(&png, &info, nullptr);
    if (read && !target.whole) reason = "broken: cut short";
    return read && target.whole;
}
