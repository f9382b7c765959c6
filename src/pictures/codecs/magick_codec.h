// The program's door to ImageMagick: decoding, encoding, file facts and the pixel
// operations that ImageMagick does better than Qt. Only this small library sees the
// Magick++ headers, so their compile flags (OpenMP, quantum defines) stay here.
#pragma once

#include <QImage>
#include <QList>
#include <QString>
#include <cstdint>

namespace tw::magick {

// Starts ImageMagick once per process: loads its coders and lets the PostScript family
// through again (Debian's policy file refuses them; Ghostscript does the work).
void initialise();

// What ImageMagick says about a file without decoding its pixels.
struct Facts {
    QString coder;  // ImageMagick's coder name ("PCX", "SUN", ...)
    int width = 0, height = 0;
    int bitsPerPixel = 0;  // as stored
    int64_t colors = 0;  // distinct colours the file can hold (2^bits, or the palette)
    double xResolution = 0, yResolution = 0;
    int pages = 0;
};

struct Decoded {
    QList<QImage> frames;  // Format_ARGB32, one per page or frame
    QList<int> delaysMs;  // per frame; 0 when the file gives none
    Facts facts;
};

enum class Status {
    Ok,
    NoSuchFile,
    NotAPicture,  // no coder takes it, or the coder refuses the contents
    Corrupt,  // the coder started but the data are damaged or cut short
    TooLarge,  // a resource limit (area, width, height, memory) stopped it
    NoCoder,  // the format exists but has no reader or writer here
    BadPage,
    WriteFailed,
    Stopped,  // the decoder process crashed, passed a limit or took too long
    Abandoned,  // the user gave up waiting (Escape), or the program is closing
};

// Decodes page `page` (1-based) of `path`; with `allPages` every page or frame.
// `coderHint` names a coder explicitly ("FAX", "CALS") for files without magic bytes.
Status read(const QString &path, int page, bool allPages, Decoded *out, QString *message,
            const QString &coderHint = QString());
// Decodes an in-memory file (an icon frame of an animated cursor, a fetched body).
Status readBlob(const QByteArray &data, const QString &coderHint, Decoded *out, QString *message);
// Header facts of one page without decoding the pixels.
Status ping(const QString &path, int page, Facts *out, QString *message);

// Pictures are written through encodeWithProfiles (magick_write.h), into memory first.
// True when ImageMagick here can write that coder.
bool canWrite(const QString &coder);
bool canRead(const QString &coder);

// Resampled resize with a Lanczos filter.
QImage resample(const QImage &src, int width, int height);
// Brightness and contrast in percent, -100..100 each, as ImageMagick's operator does.
QImage brightnessContrast(const QImage &src, double brightness, double contrast);

// Where the pixels of decoded frames are put: by default ordinary memory; the decoder
// helper puts them in the memory it hands to the program. The allocator returns memory for
// `bytes` (null when there is none) and the function that frees it, with its argument.
using PixelAllocator = uchar *(*)(qsizetype bytes, QImageCleanupFunction *release, void **releaseInfo);
void setPixelAllocator(PixelAllocator allocator);

// ImageMagick's resource caps in force: pixels of one picture, and one side.
int64_t areaLimit();
int64_t sideLimit();

}  // namespace tw::magick
