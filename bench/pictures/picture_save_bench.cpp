// Saving a 24-megapixel picture as JPEG at the stored default quality against cjpeg on the
// same pixels, and the Convert command's way (a hidden imaging control loads and saves) from
// a 24-megapixel JPEG to PNG and to TIFF against ImageMagick's convert on the same file, all
// in the same run. A timed run, not a test: best of three each.
#include "pictures/imaging_control.h"
#include "bench_timing.h"
#include "pictures/picture_decoder.h"
#include "pictures/picture_saving.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <functional>

using namespace tw;
using twbench::bestOf3;
using twbench::runTool;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    QTemporaryDir dir;
    const QString convert = QStringLiteral("/usr/bin/convert");
    const QString src = dir.filePath(QStringLiteral("big.jpg"));
    runTool(convert,
            {QStringLiteral("-size"), QStringLiteral("6000x4000"), QStringLiteral("gradient:navy-orange"),
             QStringLiteral("-attenuate"), QStringLiteral("0.4"), QStringLiteral("+noise"),
             QStringLiteral("Gaussian"), QStringLiteral("-quality"), QStringLiteral("90"),
             QStringLiteral("JPEG:") + src});
    if (!QFile::exists(src)) {
        out << "could not make the sample picture\n";
        return 1;
    }
    out << "file: 6000x4000 JPEG, " << QFileInfo(src).size() / 1024 << " KiB\n";

    // 1. JPEG at the default quality (9 stored, 91 %), from pixels in memory.
    Picture pic;
    if (decodePictureFile(src, 1, false, &pic) != 0) return 1;
    const QString ppm = dir.filePath(QStringLiteral("same.ppm"));
    pic.frames.first().convertToFormat(QImage::Format_RGB888).save(ppm, "PPM");
    const int percent = jpegPercentOfQuality(9);
    const double cjpeg = bestOf3([&] {
        runTool(QStringLiteral("cjpeg"),
                {QStringLiteral("-quality"), QString::number(percent), QStringLiteral("-outfile"),
                 dir.filePath(QStringLiteral("cjpeg.jpg")), ppm});
    });
    const double ours = bestOf3(
        [&] { writePictureFile(pic.frames, dir.filePath(QStringLiteral("ours.jpg")), 10, 24, 9, src); });
    out << "JPEG save, quality " << percent << ": cjpeg " << cjpeg << " ms, Save As " << ours << " ms, ratio "
        << ours / cjpeg << "\n";

    // Where the Convert command's time goes: the decode, and the TIFF written from memory.
    const double decode = bestOf3([&] {
        Picture p;
        decodePictureFile(src, 1, false, &p);
    });
    const double tiffWrite = bestOf3(
        [&] { writePictureFile(pic.frames, dir.filePath(QStringLiteral("mem.tif")), 3, 24, 9, QString()); });
    out << "decode alone " << decode << " ms; TIFF written from memory (with the flush to disk) " << tiffWrite
        << " ms\n";

    // 2. Convert JPEG to PNG and to TIFF.
    for (const QString &ext : {QStringLiteral("png"), QStringLiteral("tif")}) {
        const QString coder = ext == QLatin1String("png") ? QStringLiteral("PNG") : QStringLiteral("TIFF");
        const double im = bestOf3([&] {
            runTool(convert, {src, coder + u':' + dir.filePath(QStringLiteral("im.") + ext)});
        });
        const double conv = bestOf3([&] {
            ImagingControl image3;
            image3.clearPicture();
            if (image3.load(src, 0, 1, 1) == 0)
                image3.save(dir.filePath(QStringLiteral("ours.") + ext), GetFormatCode(ext.toUpper()),
                            image3.bitsPerPixel(), 9, 0);
        });
        out << "Convert to " << coder << ": convert " << im << " ms ("
            << QFileInfo(dir.filePath("im." + ext)).size() / 1024 << " KiB), Convert " << conv << " ms ("
            << QFileInfo(dir.filePath("ours." + ext)).size() / 1024 << " KiB), ratio " << conv / im << "\n";
    }
    return 0;
}
