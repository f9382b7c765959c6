// The program's side of the codec module: each call loads the module on first use and
// goes through its table. Without the module the calls fail as "no coder" with a message
// that names the file looked for.
#include "pictures/codecs/codec_table.h"
#include "pictures/decoder_pool.h"

#include "core/modules.h"

#include <mutex>

namespace tw {

namespace {
const CodecTable *g_table = nullptr;
QString g_error;
std::once_flag g_once;

const CodecTable *table()
{
    std::call_once(g_once, [] {
        // Beside the program: the build's lib/ folder, or where the installation put it.
        const CodecTable *t =
            moduleTable<CodecTable>(QStringLiteral("libtw_codecs.so"), CodecTableSymbol, &g_error);
        if (t && t->version == CodecTableVersion) {
            g_table = t;
            g_table->initialise();
        } else if (t) {
            g_error = QStringLiteral("the picture codec module libtw_codecs.so is of another version");
        } else if (g_error.isEmpty()) {
            g_error = QStringLiteral("the picture codec module libtw_codecs.so is missing");
        }
    });
    return g_table;
}
}  // namespace

bool codecModuleLoaded() { return g_table != nullptr; }

namespace magick {

// ImageMagick starts with the module, the first time a picture needs it.
void initialise() {}

// Decoding goes to a helper process (a damaged file can crash or hang ImageMagick and
// FFmpeg); writing and the pixel operations work on pictures already in memory, here.
Status read(const QString &path, int page, bool allPages, Decoded *out, QString *message,
            const QString &coderHint)
{
    if (!decoding::inProcess()) return decoding::helperRead(path, page, allPages, out, message, coderHint);
    if (const CodecTable *t = table()) return t->read(path, page, allPages, out, message, coderHint);
    if (message) *message = g_error;
    return Status::NoCoder;
}

Status readBlob(const QByteArray &data, const QString &coderHint, Decoded *out, QString *message)
{
    if (!decoding::inProcess()) return decoding::helperReadBlob(data, coderHint, out, message);
    if (const CodecTable *t = table()) return t->readBlob(data, coderHint, out, message);
    if (message) *message = g_error;
    return Status::NoCoder;
}

Status ping(const QString &path, int page, Facts *out, QString *message)
{
    if (!decoding::inProcess()) return decoding::helperPing(path, page, out, message);
    if (const CodecTable *t = table()) return t->ping(path, page, out, message);
    if (message) *message = g_error;
    return Status::NoCoder;
}

bool canWrite(const QString &coder)
{
    const CodecTable *t = table();
    return t && t->canWrite(coder);
}

bool canRead(const QString &coder)
{
    const CodecTable *t = table();
    return t && t->canRead(coder);
}

QImage resample(const QImage &src, int width, int height)
{
    if (const CodecTable *t = table()) return t->resample(src, width, height);
    return src.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage brightnessContrast(const QImage &src, double brightness, double contrast)
{
    if (const CodecTable *t = table()) return t->brightnessContrast(src, brightness, contrast);
    return src;
}

void setPixelAllocator(PixelAllocator allocator)
{
    if (const CodecTable *t = table()) t->setPixelAllocator(allocator);
}

int64_t areaLimit()
{
    const CodecTable *t = table();
    return t ? t->areaLimit() : int64_t(128) * 1000 * 1000;
}

int64_t sideLimit()
{
    const CodecTable *t = table();
    return t ? t->sideLimit() : 16000;
}

Status readProfiles(const QString &path, QByteArray *exif, QByteArray *icc)
{
    if (const CodecTable *t = table()) return t->readProfiles(path, exif, icc);
    return Status::NoCoder;
}

Status encodeWithProfiles(const QList<QImage> &frames, const QString &coder, int bitsPerPixel, int quality,
                          const QByteArray &exif, const QByteArray &icc, QByteArray *out, QString *message)
{
    if (const CodecTable *t = table())
        return t->encodeWithProfiles(frames, coder, bitsPerPixel, quality, exif, icc, out, message);
    if (message) *message = g_error;
    return Status::NoCoder;
}

Status exifFacts(const QString &path, QStringList *names, QStringList *values)
{
    if (const CodecTable *t = table()) return t->exifFacts(path, names, values);
    return Status::NoCoder;
}

}  // namespace magick

FrameDecodeStatus decodeWithAv(const QString &path, bool allFrames, int64_t maxBytes, DecodedFrames *out,
                               QString *message)
{
    if (!decoding::inProcess()) return decoding::helperAv(path, allFrames, maxBytes, out, message);
    if (const CodecTable *t = table()) return t->decodeWithAv(path, allFrames, maxBytes, out, message);
    if (message) *message = g_error;
    return FrameDecodeStatus::NotThisFormat;
}

}  // namespace tw
