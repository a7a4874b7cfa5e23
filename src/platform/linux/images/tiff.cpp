#include "platform/linux/images/decoders.h"

#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>

namespace {

struct Source {
    std::string_view bytes;
    uint64_t at = 0;
    std::string& reason; // what the library said first
};

Source& sourceOf(thandle_t handle) {
    return *static_cast<Source*>(handle);
}

tmsize_t readBytes(thandle_t handle, void* target, tmsize_t count) {
    Source& source = sourceOf(handle);
    const uint64_t at = std::min<uint64_t>(source.at, source.bytes.size());
    const uint64_t given = std::min<uint64_t>(source.bytes.size() - at, static_cast<uint64_t>(count));
    std::memcpy(target, source.bytes.data() + at, given);
    source.at = at + given;
    return static_cast<tmsize_t>(given);
}

tmsize_t writeNothing(thandle_t, void*, tmsize_t) {
    return 0;
}

toff_t seek(thandle_t handle, toff_t offset, int from) {
    Source& source = sourceOf(handle);
    if (from == SEEK_SET) source.at = offset;
    if (from == SEEK_CUR) source.at += offset;
    if (from == SEEK_END) source.at = source.bytes.size() + offset;
    return source.at;
}

int close(thandle_t) {
    return 0;
}

toff_t sizeOf(thandle_t handle) {
    return sourceOf(handle).bytes.size();
}

int map(thandle_t handle, void** base, toff_t* size) {
    *base = const_cast<char*>(sourceOf(handle).bytes.data()); // only read
    *size = sourceOf(handle).bytes.size();
    return 1;
}

void unmap(thandle_t, void*, toff_t) {}

int keepFirstError(TIFF*, void* reason, const char*, const char* format, va_list arguments) {
    auto& kept = *static_cast<std::string*>(reason);
    char words[200] = "";
    std::vsnprintf(words, sizeof words, format, arguments);
    if (kept.empty()) kept = std::string("broken: ") + words;
    return 1; // the process's own handler is not called as well
}

int ignoreWarning(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

// Puts pixels with alpha into the picture: libtiff's own functions multiply colours by an alpha that the file keeps
// apart from them, and lose that of 16-bit grey. `planes` are where the colours' and alpha's samples begin, `step`
// samples apart from pixel to pixel.
template <typename Sample>
void putSamples(const TIFFRGBAImage& source, uint32_t* to, uint32_t width, uint32_t height, ptrdiff_t skip,
                ptrdiff_t toSkip, const unsigned char* (&planes)[4], ptrdiff_t step) {
    constexpr uint32_t kWhite = static_cast<Sample>(-1);
    const uint32_t flip = source.photometric == PHOTOMETRIC_MINISWHITE ? kWhite : 0;
    const bool multiplied = source.alpha == EXTRASAMPLE_ASSOCALPHA;
    for (; height > 0; --height, to += toSkip) {
        for (uint32_t x = 0; x < width; ++x) {
            Sample samples[4];
            for (int i = 0; i < 4; ++i) {
                std::memcpy(&samples[i], planes[i], sizeof(Sample));
                planes[i] += step * static_cast<ptrdiff_t>(sizeof(Sample));
            }
            const uint32_t alpha = samples[3];
            uint8_t rgba[4];
            for (int i = 0; i < 3; ++i)
                rgba[i] = scaled(samples[i] ^ flip, 255, multiplied && alpha > 0 ? alpha : kWhite);
            rgba[3] = scaled(alpha, 255, kWhite);
            std::memcpy(to++, rgba, sizeof rgba);
        }
        for (const unsigned char*& plane : planes) plane += skip * step * static_cast<ptrdiff_t>(sizeof(Sample));
    }
}

void putPlanes(TIFFRGBAImage* source, uint32_t* to, uint32_t, uint32_t, uint32_t width, uint32_t height, int32_t skip,
               int32_t toSkip, unsigned char* red, unsigned char* green, unsigned char* blue, unsigned char* alpha) {
    const unsigned char* planes[4] = {red, green, blue, alpha};
    if (source->bitspersample == 8) putSamples<uint8_t>(*source, to, width, height, skip, toSkip, planes, 1);
    else putSamples<uint16_t>(*source, to, width, height, skip, toSkip, planes, 1);
}

void putPixels(TIFFRGBAImage* source, uint32_t* to, uint32_t, uint32_t, uint32_t width, uint32_t height, int32_t skip,
               int32_t toSkip, unsigned char* from) {
    const ptrdiff_t bytes = source->bitspersample / 8;
    const bool grey = source->photometric != PHOTOMETRIC_RGB;
    const unsigned char* planes[4] = {from, from + (grey ? 0 : bytes), from + (grey ? 0 : 2 * bytes),
                                      from + (grey ? 1 : 3) * bytes};
    const ptrdiff_t step = source->samplesperpixel;
    if (bytes == 1) putSamples<uint8_t>(*source, to, width, height, skip, toSkip, planes, step);
    else putSamples<uint16_t>(*source, to, width, height, skip, toSkip, planes, step);
}

// The sample after the colours is alpha, also where the file does not say what it is; colours are multiplied by it
// only where the file says that.
void useOwnAlpha(TIFFRGBAImage& source) {
    const bool grey = source.photometric == PHOTOMETRIC_MINISBLACK || source.photometric == PHOTOMETRIC_MINISWHITE;
    const bool known = grey || source.photometric == PHOTOMETRIC_RGB;
    const bool whole = source.bitspersample == 8 || source.bitspersample == 16;
    if (!known || !whole || source.samplesperpixel <= (grey ? 1 : 3)) return;
    uint16_t count = 0;
    uint16_t* kinds = nullptr;
    TIFFGetFieldDefaulted(source.tif, TIFFTAG_EXTRASAMPLES, &count, &kinds);
    const bool multiplied = count > 0 && kinds[0] == EXTRASAMPLE_ASSOCALPHA;
    source.alpha = multiplied ? EXTRASAMPLE_ASSOCALPHA : EXTRASAMPLE_UNASSALPHA;
    if (source.isContig) source.put.contig = putPixels;
    else source.put.separate = putPlanes;
}

// The ways to pack that pictures come in. Others are rare, known to few programs, and some take as much memory as
// their data ask for.
bool isCommonPacking(TIFF* tiff) {
    uint16_t packing = COMPRESSION_NONE;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &packing);
    switch (packing) {
    case COMPRESSION_NONE:
    case COMPRESSION_CCITTRLE:
    case COMPRESSION_CCITTFAX3:
    case COMPRESSION_CCITTFAX4:
    case COMPRESSION_CCITTRLEW:
    case COMPRESSION_LZW:
    case COMPRESSION_PACKBITS:
    case COMPRESSION_JPEG:
    case COMPRESSION_ADOBE_DEFLATE:
    case COMPRESSION_DEFLATE: return true;
    default: return false;
    }
}

TIFF* openTiff(Source& source) {
    constexpr tmsize_t kMemory = 64 << 20; // bytes, beside what readImageSize allows
    TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
    if (!options) return nullptr;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, kMemory + 16 * kMaxImagePixels);
    TIFFOpenOptionsSetErrorHandlerExtR(options, keepFirstError, &source.reason);
    TIFFOpenOptionsSetWarningHandlerExtR(options, ignoreWarning, nullptr);
    TIFF* tiff = TIFFClientOpenExt("picture", "r", &source, readBytes, writeNothing, seek, close, sizeOf, map, unmap,
                                   options);
    TIFFOpenOptionsFree(options);
    return tiff;
}

// Strips and tiles that are broken stay black.
bool readTiff(TIFF* tiff, DecodedImage& image, std::string& reason) {
    char words[1024] = "";
    TIFFRGBAImage source = {};
    if (!isCommonPacking(tiff)) {
        reason = "compressed in an uncommon way";
        return false;
    }
    if (!TIFFRGBAImageOK(tiff, words) || !TIFFRGBAImageBegin(&source, tiff, 0, words)) {
        reason = std::string("broken: ") + words;
        return false;
    }
    useOwnAlpha(source);
    // The first row is the top one, whatever the file says: elsewhere, too, a picture is shown as it is stored.
    source.orientation = ORIENTATION_TOPLEFT;
    source.req_orientation = ORIENTATION_BOTLEFT;
    bool decoded = makePicture(source.width, source.height, image, reason);
    decoded = decoded &&
              TIFFRGBAImageGet(&source, reinterpret_cast<uint32_t*>(image.pixels.data()), source.width, source.height);
    TIFFRGBAImageEnd(&source);
    return decoded;
}

} // namespace

bool decodeTiff(std::string_view bytes, DecodedImage& image, std::string& reason) {
    std::string said;
    Source source{bytes, 0, said};
    TIFF* tiff = openTiff(source);
    const bool decoded = tiff && readTiff(tiff, image, reason);
    if (tiff) TIFFClose(tiff);
    if (!decoded && reason.empty()) reason = said;
    return decoded;
}
