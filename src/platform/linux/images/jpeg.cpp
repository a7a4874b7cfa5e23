#include "platform/linux/images/decoders.h"

#include <csetjmp>
#include <cstdio> // jpeglib.h needs it before

#include <jpeglib.h>

namespace {

struct ErrorExit {
    jpeg_error_mgr manager; // first: libjpeg hands on its address
    std::jmp_buf back;
    std::string* reason;
};

[[noreturn]] void fail(j_common_ptr jpeg) {
    auto* exit = reinterpret_cast<ErrorExit*>(jpeg->err);
    char words[JMSG_LENGTH_MAX] = "";
    jpeg->err->format_message(jpeg, words);
    exit->reason->assign("broken: ").append(words);
    std::longjmp(exit->back, 1);
}

void ignoreMessage(j_common_ptr, int) {}

// Four components come as their C, M, Y, K bytes stand in the file: inverted, 255 for no ink, the way that
// such files are written in practice.
void inksToRgba(uint8_t* row, int pixels) {
    for (int x = 0; x < pixels; ++x, row += 4) {
        for (int i = 0; i < 3; ++i) row[i] = scaled(row[i], row[3], 255);
        row[3] = 255;
    }
}

bool readRows(jpeg_decompress_struct& jpeg, std::string_view bytes, DecodedImage& image, std::string& reason) {
    constexpr long kMemory = 32 << 20, kPixelMemory = 20; // bytes: four components of a progressive picture take 8
    jpeg_create_decompress(&jpeg);
    jpeg_mem_src(&jpeg, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    jpeg_read_header(&jpeg, TRUE);
    if (!makePicture(jpeg.image_width, jpeg.image_height, image, reason)) return false;
    jpeg.mem->max_memory_to_use = kMemory + kPixelMemory * image.width * image.height;
    jpeg.out_color_space = jpeg.num_components == 4 ? JCS_CMYK : JCS_EXT_RGBA;
    jpeg_start_decompress(&jpeg);
    while (jpeg.output_scanline < jpeg.output_height) {
        uint8_t* row = rowFromTop(image, static_cast<int>(jpeg.output_scanline));
        jpeg_read_scanlines(&jpeg, &row, 1);
        if (jpeg.out_color_space == JCS_CMYK) inksToRgba(row, image.width);
    }
    return true;
}

// libjpeg's errors come back here; nothing between has a destructor.
bool readOrFail(jpeg_decompress_struct& jpeg, ErrorExit& exit, std::string_view bytes, DecodedImage& image) {
    if (setjmp(exit.back)) return false;
    return readRows(jpeg, bytes, image, *exit.reason);
}

} // namespace

bool decodeJpeg(std::string_view bytes, DecodedImage& image, std::string& reason) {
    ErrorExit exit = {};
    jpeg_decompress_struct jpeg = {};
    jpeg.err = jpeg_std_error(&exit.manager);
    exit.manager.error_exit = fail;
    exit.manager.emit_message = ignoreMessage;
    exit.reason = &reason;
    const bool decoded = readOrFail(jpeg, exit, bytes, image);
    jpeg_destroy_decompress(&jpeg);
    return decoded;
}
