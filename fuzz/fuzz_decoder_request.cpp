// The decoder helper's side of its socket: any bytes as a request.
#include "pictures/decoder_protocol.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    tw::decoding::Request r;
    const QByteArray in(reinterpret_cast<const char *>(data), qsizetype(size));
    if (tw::decoding::decodeRequest(in, &r)) {
        // What it accepted it can say again, the same.
        tw::decoding::Request again;
        if (!tw::decoding::decodeRequest(tw::decoding::encodeRequest(r), &again)) __builtin_trap();
        if (again.path != r.path || again.blob != r.blob || again.page != r.page) __builtin_trap();
    }
    return 0;
}
