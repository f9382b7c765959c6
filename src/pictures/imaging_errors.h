// The imaging status codes and the one table that turns them into words.
#pragma once

#include <QString>
#include <cstdint>

namespace tw {

// Status codes the imaging control returns; 0 is success.
enum ImagingStatus : int32_t {
    ImagingOk = 0,
    ImagingGeneralFailure = 20000,
    ImagingNoMemory = 20001,
    ImagingInvalidBitmap = 20002,
    ImagingWriteError = 20005,
    ImagingReadError = 20007,
    ImagingInvalidFilename = 20008,
    ImagingInvalidFormat = 20009,
    ImagingFileNotFound = 20010,
    ImagingInvalidSize = 20011,
    ImagingSubtypeNotSupported = 20012,
    ImagingInvalidParameter = 20013,
    ImagingCannotOpen = 20014,
    ImagingFormatNotAvailable = 20016,
    ImagingInvalidBitsPerPixel = 20027,
    ImagingEscapePressed = 20029,
    ImagingPrematureEof = 20073,
};

// The text for a status code; "" when the code has no row.
QString GetImagingErrorText(int32_t code);

// The message form the editors and the acquire commands show:
// "Error '" + code + ", " + text + "' was generated."
QString imagingErrorMessage(int32_t code);

}  // namespace tw
