// The program's side of the decoder helper's socket: any bytes as a reply, the way the
// program reads it (a helper that read a hostile file is not trusted), and the frames laid
// over pixels of the size the reply claims, each one read to its last pixel.
#include "pictures/decoder_protocol.h"

#include <cstdint>
#include <cstdlib>

namespace {
void release(void *p) { std::free(p); }
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    tw::decoding::Reply r;
    const QByteArray in(reinterpret_cast<const char *>(data), qsizetype(size));
    if (!tw::decoding::decodeReply(in, &r)) return 0;
    if (r.pixelBytes > (int64_t(64) << 20)) return 0;  // the fuzzer's memory, not a fault
    auto *pixels = static_cast<uchar *>(std::calloc(size_t(std::max<int64_t>(r.pixelBytes, 1)), 1));
    const QList<QImage> frames = tw::decoding::framesOver(pixels, r, release, pixels);
    uint32_t sum = 0;
    for (const QImage &f : frames) {
        const uchar *last = f.constScanLine(f.height() - 1);
        sum += last[f.width() * 4 - 1];
        sum += f.constScanLine(0)[0];
    }
    return int(sum & 0);
}
