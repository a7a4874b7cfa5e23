#include "platform/image.h"

#include "platform/image_limits.h"

#include <cstddef>
#include <cstring>

#include <windows.h>

#include <objbase.h>

#include <gdiplus.h>

namespace gdi = Gdiplus::DllExports;

namespace {

constexpr size_t kPixelBytes = 4;
constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

ULONG_PTR session = 0; // of GDI+; 0 while it is not started

// From the B, G, R, A of GDI+ to R, G, B, A.
void copyExchanged(const uint8_t* from, uint8_t* to, size_t pixels) {
    for (size_t i = 0; i < pixels; ++i, from += kPixelBytes, to += kPixelBytes) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
        to[3] = from[3];
    }
}

const char* statusWords(Gdiplus::GpStatus status) {
    switch (status) {
    case Gdiplus::OutOfMemory: return "cut short, or too large for the memory";
    case Gdiplus::GdiplusNotInitialized: return "GDI+ is not started";
    default: return "the decoder gave up";
    }
}

std::wstring toWide(const std::string& path) {
    const int size = static_cast<int>(path.size());
    std::wstring wide(path.size(), L'\0'); // never more units than bytes
    const int length = MultiByteToWideChar(CP_ACP, 0, path.data(), size, wide.data(), size);
    wide.resize(static_cast<size_t>(length));
    return wide;
}

// Row k of the picture is the row height - 1 - k of the bitmap.
Gdiplus::GpStatus copyRowsBottomUp(Gdiplus::GpBitmap* bitmap, DecodedImage& image) {
    const Gdiplus::Rect whole(0, 0, image.width, image.height);
    Gdiplus::BitmapData data = {};
    const auto status = gdi::GdipBitmapLockBits(bitmap, &whole, Gdiplus::ImageLockModeRead, PixelFormat32bppARGB,
                                                &data);
    if (status != Gdiplus::Ok) return status;
    const size_t rowBytes = static_cast<size_t>(image.width) * kPixelBytes;
    image.pixels.resize(rowBytes * static_cast<size_t>(image.height));
    const uint8_t* source = static_cast<const uint8_t*>(data.Scan0);
    for (int k = 0; k < image.height; ++k) {
        const uint8_t* row = source + static_cast<ptrdiff_t>(image.height - 1 - k) * data.Stride;
        copyExchanged(row, image.pixels.data() + static_cast<size_t>(k) * rowBytes, static_cast<size_t>(image.width));
    }
    return gdi::GdipBitmapUnlockBits(bitmap, &data);
}

bool readBitmap(Gdiplus::GpBitmap* bitmap, DecodedImage& image, std::string& reason) {
    UINT width = 0;
    UINT height = 0;
    gdi::GdipGetImageWidth(bitmap, &width);
    gdi::GdipGetImageHeight(bitmap, &height);
    if (!fitsImageLimits(width, height)) {
        reason = imageTooLarge(width, height);
        return false;
    }
    image.width = static_cast<int>(width);
    image.height = static_cast<int>(height);
    const auto status = copyRowsBottomUp(bitmap, image);
    if (status == Gdiplus::Ok) return true;
    reason = std::string("broken: ") + statusWords(status);
    image = DecodedImage();
    return false;
}

// A picture as GDI+ takes it: top row first, B, G, R and A or not, rows of whole words.
struct Rows {
    std::vector<uint8_t> bytes;
    size_t stride = 0; // bytes
};

Rows rowsFor(const uint8_t* pixels, int width, int height, bool withAlpha, PixelLayout layout) {
    const size_t columns = static_cast<size_t>(width), count = static_cast<size_t>(height);
    const size_t pixelBytes = withAlpha ? 4 : 3;
    const size_t blue = layout.blueFirst ? 0 : 2;
    Rows rows;
    rows.stride = (columns * pixelBytes + 3) / 4 * 4;
    rows.bytes.resize(rows.stride * count);
    for (size_t y = 0; y < count; ++y) {
        const uint8_t* from = pixels + (layout.bottomFirst ? count - 1 - y : y) * columns * kPixelBytes;
        uint8_t* to = rows.bytes.data() + y * rows.stride;
        for (size_t x = 0; x < columns; ++x, from += kPixelBytes, to += pixelBytes) {
            to[0] = from[blue];
            to[1] = from[1];
            to[2] = from[2 - blue];
            if (withAlpha) to[3] = from[3];
        }
    }
    return rows;
}

// The bytes of an encoded picture.
bool readStream(IStream* stream, std::string& bytes) {
    STATSTG facts = {};
    HGLOBAL memory = nullptr;
    if (FAILED(stream->Stat(&facts, STATFLAG_NONAME)) || FAILED(GetHGlobalFromStream(stream, &memory))) return false;
    const void* content = GlobalLock(memory);
    if (!content) return false;
    bytes.assign(static_cast<const char*>(content), static_cast<size_t>(facts.cbSize.QuadPart));
    GlobalUnlock(memory);
    return true;
}

bool saveAsPng(Gdiplus::GpBitmap* bitmap, std::string& bytes) {
    IStream* stream = nullptr;
    if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, &stream))) return false;
    const bool saved = gdi::GdipSaveImageToStream(bitmap, stream, &kPngEncoder, nullptr) == Gdiplus::Ok &&
                       readStream(stream, bytes);
    stream->Release();
    return saved;
}

} // namespace

void startImageDecoding() {
    const Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&session, &input, nullptr);
}

void stopImageDecoding() {
    if (session) Gdiplus::GdiplusShutdown(session);
    session = 0;
}

bool decodeImage(const std::string& path, DecodedImage& image, std::string& reason, const ImageObjection& objection) {
    image = DecodedImage();
    std::string bytes;
    ImageKind kind = ImageKind::unknown;
    if (!readPicture(path, objection, bytes, kind, reason)) return false;
    if (kind == ImageKind::webp) {
        reason = "a WebP picture, which GDI+ does not decode";
        return false;
    }
    std::string().swap(bytes);
    Gdiplus::GpBitmap* bitmap = nullptr;
    const auto status = gdi::GdipCreateBitmapFromFile(toWide(path).c_str(), &bitmap);
    if (status != Gdiplus::Ok) {
        reason = std::string("broken: ") + statusWords(status);
        return false;
    }
    const bool decoded = readBitmap(bitmap, image, reason);
    gdi::GdipDisposeImage(bitmap);
    return decoded;
}

bool encodePng(const uint8_t* pixels, int width, int height, bool withAlpha, std::string& bytes, PixelLayout layout) {
    bytes.clear();
    if (!fitsImageLimits(width, height)) return false;
    Rows rows = rowsFor(pixels, width, height, withAlpha, layout);
    Gdiplus::GpBitmap* bitmap = nullptr;
    const Gdiplus::PixelFormat format = withAlpha ? PixelFormat32bppARGB : PixelFormat24bppRGB;
    const int stride = static_cast<int>(rows.stride);
    const auto status = gdi::GdipCreateBitmapFromScan0(width, height, stride, format, rows.bytes.data(), &bitmap);
    if (status != Gdiplus::Ok) return false;
    const bool encoded = saveAsPng(bitmap, bytes);
    gdi::GdipDisposeImage(bitmap);
    if (!encoded) bytes.clear();
    return encoded;
}
