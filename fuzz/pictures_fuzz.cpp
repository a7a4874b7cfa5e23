// A picture file of any kind, as decodeImage takes it: whatever the bytes, within the promised memory and time.
#include "platform/image_limits.h"
#include "platform/linux/images/decoders.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <sanitizer/allocator_interface.h>
#include <zlib.h>

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

// Bytes that are allocated beyond those at the start of a decoding, and the most there were. Everything runs on one
// thread.
int64_t taken = 0;
int64_t mostTaken = 0;

void countMalloc(const volatile void* block, size_t) {
    taken += static_cast<int64_t>(__sanitizer_get_allocated_size(const_cast<const void*>(block)));
    mostTaken = std::max(mostTaken, taken);
}

void countFree(const volatile void* block) {
    taken -= static_cast<int64_t>(__sanitizer_get_allocated_size(const_cast<const void*>(block)));
}

const int kCounting = __sanitizer_install_malloc_and_free_hooks(countMalloc, countFree);

double processorSeconds() {
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

void require(bool held, const char* words) {
    if (held) return;
    std::fprintf(stderr, "pictures_fuzz: %s\n", words);
    std::abort();
}

uint32_t bigEndian(const uint8_t* at) {
    return uint32_t{at[0]} << 24 | at[1] << 16 | at[2] << 8 | at[3];
}

// Gives every chunk of a PNG the checksum that it asks for; without, the decoder would look at hardly any.
void mendChecksums(uint8_t* data, size_t size) {
    for (size_t at = 8; at + 12 <= size;) {
        const size_t length = bigEndian(data + at);
        if (length > size - at - 12) return;
        const uLong checksum = crc32(0, data + at + 4, static_cast<uInt>(length + 4));
        for (int i = 0; i < 4; ++i) data[at + 8 + length + i] = static_cast<uint8_t>(checksum >> (24 - 8 * i));
        at += 12 + length;
    }
}

// Large pictures take long and show nothing that small ones do not: the limits grow with the picture.
std::string refuseLarge(int width, int height) {
    constexpr int64_t kMostPixels = 1 << 17;
    return int64_t{width} * height > kMostPixels ? "large" : "";
}

} // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed) {
    constexpr unsigned kOneInSoManyKeepsItsChecksums = 16;
    const size_t mutated = LLVMFuzzerMutate(data, size, maxSize);
    if (seed % kOneInSoManyKeepsItsChecksums && mutated > 1 && data[0] == 0x89) mendChecksums(data, mutated);
    return mutated;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const ImageSize claimed = readImageSize(bytes);
    const bool fits = fitsImageLimits(claimed.width, claimed.height);
    const int64_t claimedPixels = fits ? claimed.width * claimed.height : 0;
    taken = mostTaken = 0;
    const double start = processorSeconds();
    DecodedImage image;
    std::string reason;
    const bool decoded = decodePicture(bytes, image, reason, refuseLarge);
    require(decoded == reason.empty() && decoded == !image.pixels.empty(), "a picture or a reason, not both");
    const int64_t pixels = decoded ? int64_t{image.width} * image.height : claimedPixels;
    require(pixels <= claimedPixels, "larger than the file claims");
    require(mostTaken <= (64 << 20) + 32 * pixels, "more memory than 32 bytes a pixel and 64 MB");
    require(processorSeconds() - start <= 1.0 + 2e-6 * static_cast<double>(pixels), "over 2 s a megapixel and 1 s");
    return 0;
}
