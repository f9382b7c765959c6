// Colors.INI and Options.INI: reading and writing the stored colours and options.
// The outcome is returned as the message the user is to see, so the window decides
// how to show it.
#pragma once

#include "globals.h"

#include <QString>

namespace tw {

struct StoreResult {
    bool ok = true;
    QString message;  // empty when nothing is to be shown
    int error = 0;  // error number of a failed write
};

void SetDefaultColors(ColorSettings &c);
void SetDefaultOptions(OptionSettings &o, const QString &programDir);

// Overlay the stored values on the defaults already in place.
StoreResult LoadColors(ColorSettings &c, const QString &programDir);
StoreResult LoadOptions(OptionSettings &o, const QString &programDir);
StoreResult SaveColors(const ColorSettings &c, const QString &programDir);
StoreResult SaveOptions(const OptionSettings &o, const QString &programDir);

// A colour value as the file holds it: a 32-bit signed number.
QString colorFileText(uint32_t c);

}  // namespace tw
