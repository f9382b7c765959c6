// The one delimited reader behind every list and settings file: any bytes, read as a mix of
// numbers, strings, raw fields and whole lines until the data end.
#include "core/text_rules.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0) return 0;
    // The first byte chooses the order of the reads, the rest is the file.
    const uint8_t plan = data[0];
    tw::DelimitedReader in(QByteArray(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1)));
    for (int i = 0; i < 100000 && !in.atEnd(); ++i) {
        switch ((plan >> ((i % 4) * 2)) & 3) {
        case 0:
            if (!in.readNumber()) return 0;
            break;
        case 1:
            if (!in.readString()) return 0;
            break;
        case 2:
            if (!in.readField(i & 1)) return 0;
            break;
        default:
            if (!in.readLine()) return 0;
            break;
        }
    }
    return 0;
}
