// Format numbers of the imaging control: what a loaded file is called, and which encoder
// a save with a format number uses.
#pragma once

#include <QString>

namespace tw {

// The control's format number for a decoder's name ("JPEG", "TIFF", "FLIC", ...); 0 when
// the format has no number.
int formatNumberOfCoder(const QString &coder, const QString &extension = QString());
// The encoder behind a format number, as ImageMagick names it; "" when none.
QString coderOfFormatNumber(int format);
// The name of a format number; "Unknown format" for numbers without a row.
QString GetImageFormatName(int format);

}  // namespace tw
