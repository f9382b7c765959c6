// Colours as the program stores them (0xBBGGRR, top bit = a system colour) turned into
// what Qt paints with.
#pragma once

#include <QColor>
#include <QPalette>
#include <cstdint>

namespace tw {

inline bool isSystemColor(uint32_t c) { return (c & 0x80000000u) != 0; }

// A system colour maps onto the palette role standing for it; any other onto its RGB.
QColor toQColor(uint32_t c, const QPalette &pal = QPalette());
// The stored form of a plain colour.
inline uint32_t fromQColor(const QColor &q)
{
    return static_cast<uint32_t>(q.red()) | (static_cast<uint32_t>(q.green()) << 8)
        | (static_cast<uint32_t>(q.blue()) << 16);
}
// A palette with Window/Base/Button backgrounds and their texts in the given colours.
void paintPalette(QPalette &pal, uint32_t back, uint32_t text);

}  // namespace tw
