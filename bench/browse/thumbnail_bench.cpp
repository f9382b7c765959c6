// Timed run of the thumbnail load: 100 JPEG photographs of 4000 x 3000 pixels made here,
// loaded into the grid with a cold cache and again with a warm one, against vipsthumbnail
// -s 128 over the same files with one thread, in the same run. Then a folder of legacy
// pictures (PCX, Targa, Photoshop, SGI of 1600 x 1200, made with ImageMagick's convert), whose
// thumbnails the decoder helpers make: the producer's workers against the same files made one
// after the other on the interface thread. Prints the times and ratios.
//
//   build/bin/thumbnail_bench [count] [legacy count]
#include "browse/thumbnail_grid.h"
#include "browse/thumbnail_producer.h"
#include "pictures/decoder_pool.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdio>
#include <sys/resource.h>

using namespace tw::browse;

namespace {

// A photograph-like picture: smooth gradients with grain, so that JPEG has real work.
QImage photo(int w, int h, int seed)
{
    QImage img(w, h, QImage::Format_RGB32);
    QRandomGenerator rng(seed);
    for (int y = 0; y < h; ++y) {
        auto *line = reinterpret_cast<QRgb *>(img.scanLine(y));
        for (int x = 0; x < w; ++x) {
            const int n = int(rng.bounded(24));
            line[x] =
                qRgb((x * 255 / w + n + seed * 40) & 255, (y * 255 / h + n) & 255, ((x + y) / 32 + n) & 255);
        }
    }
    return img;
}

qint64 cpuMs(int who = RUSAGE_SELF)
{
    rusage u{};
    getrusage(who, &u);
    return (u.ru_utime.tv_sec + u.ru_stime.tv_sec) * 1000LL
        + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1000;
}

struct Load {
    qint64 firstCellMs = -1, allCellsMs = 0, cpuMs = 0;
    int cells = 0;
};

Load loadInto(ThumbnailGrid &grid, const QString &folder, const QString &cacheRoot,
              const QString &mask = QStringLiteral("*.JPG"))
{
    grid.clear();
    ThumbnailProducer p;
    p.setCacheRoot(cacheRoot);
    p.thumbWidth = p.thumbHeight = 105;
    p.bitsPerPixel = 16;
    p.fileMask = mask;
    Load r;
    QElapsedTimer t;
    p.onEvent = [&](const ThumbEvent &ev) {
        if (ev.status == ThumbOk) {
            const QString name = ev.path.mid(ev.path.lastIndexOf(u'/') + 1);
            grid.addCell(r.cells++, ev.picture, name, ev.path);
            if (r.firstCellMs < 0) {
                grid.repaint();
                r.firstCellMs = t.elapsed();
            }
        }
        QCoreApplication::processEvents();
        return true;
    };
    BrowseError err;
    const qint64 cpu0 = cpuMs();
    t.start();
    p.browse(folder, &err);
    QCoreApplication::processEvents();
    r.allCellsMs = t.elapsed();
    r.cpuMs = cpuMs() - cpu0;
    return r;
}

}  // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 100;
    QTemporaryDir tmp;
    const QString pics = tmp.path() + QStringLiteral("/pics");
    QDir().mkpath(pics);

    // Four distinct photographs, copied under 100 names (the cache keys on the name).
    std::printf("making %d JPEGs of 4000 x 3000 ...\n", count);
    QStringList seeds;
    for (int s = 0; s < 4; ++s) {
        const QString f = tmp.path() + QStringLiteral("/seed%1.jpg").arg(s);
        photo(4000, 3000, s).save(f, "JPEG", 90);
        seeds << f;
    }
    QStringList files;
    for (int i = 0; i < count; ++i) {
        const QString f = pics + QStringLiteral("/photo%1.jpg").arg(i, 3, 10, QLatin1Char('0'));
        QFile::copy(seeds[i % 4], f);
        files << f;
    }
    std::printf("file size %lld bytes\n", QFileInfo(files[0]).size());

    // The reference: vipsthumbnail over the same files, one thread.
    qint64 vipsMs = -1;
    const QString vips = QStandardPaths::findExecutable(QStringLiteral("vipsthumbnail"));
    if (!vips.isEmpty()) {
        const QString out = tmp.path() + QStringLiteral("/vips");
        QDir().mkpath(out);
        QProcess proc;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("VIPS_CONCURRENCY"), QStringLiteral("1"));
        proc.setProcessEnvironment(env);
        QStringList args{QStringLiteral("-s"), QStringLiteral("128"), QStringLiteral("-o"),
                         out + QStringLiteral("/%s.png")};
        args += files;
        const qint64 cpu0 = cpuMs(RUSAGE_CHILDREN);
        QElapsedTimer t;
        t.start();
        proc.start(vips, args);
        proc.waitForFinished(-1);
        vipsMs = t.elapsed();
        std::printf("vipsthumbnail -s 128, serial: %lld ms (%lld ms of processor time, exit %d)\n", vipsMs,
                    cpuMs(RUSAGE_CHILDREN) - cpu0, proc.exitCode());
    } else {
        std::printf("vipsthumbnail not found: no reference\n");
    }

    ThumbnailGrid grid;
    grid.setCellSize(115, 115);
    grid.resize(800, 600);
    grid.show();
    const QString cache = tmp.path() + QStringLiteral("/cache/thumbnails");
    const Load cold = loadInto(grid, pics, cache);
    const Load warm = loadInto(grid, pics, cache);
    std::printf("cold cache: %d cells in %lld ms (%lld ms of processor time), first cell after %lld ms\n",
                cold.cells, cold.allCellsMs, cold.cpuMs, cold.firstCellMs);
    std::printf("warm cache: %d cells in %lld ms, first cell after %lld ms\n", warm.cells, warm.allCellsMs,
                warm.firstCellMs);
    if (vipsMs > 0)
        std::printf("cold throughput / vipsthumbnail serial: %.2f\n", double(vipsMs) / cold.allCellsMs);
    std::printf("warm / cold speed-up: %.1f\n", double(cold.allCellsMs) / qMax<qint64>(1, warm.allCellsMs));

    // Legacy formats through the decoder helpers.
    const int legacyCount = argc > 2 ? QByteArray(argv[2]).toInt() : 40;
    int legacyCells = legacyCount;
    if (legacyCount > 0) {
        const QString legacy = tmp.path() + QStringLiteral("/legacy");
        QDir().mkpath(legacy);
        const QStringList kinds{QStringLiteral("pcx"), QStringLiteral("tga"), QStringLiteral("psd"),
                                QStringLiteral("sgi")};
        QStringList legacySeeds;
        bool made = true;
        for (int k = 0; k < kinds.size() && made; ++k) {
            const QString f = tmp.path() + QStringLiteral("/seed.") + kinds[k];
            made = QProcess::execute(
                       QStringLiteral("convert"),
                       {seeds[k % seeds.size()], QStringLiteral("-resize"), QStringLiteral("1600x1200"), f})
                == 0;
            legacySeeds << f;
        }
        if (!made) {
            std::printf("ImageMagick's convert not found: no legacy folder\n");
            return cold.cells == count && warm.cells == count ? 0 : 1;
        }
        QStringList legacyFiles;
        for (int i = 0; i < legacyCount; ++i) {
            const QString f =
                legacy + QStringLiteral("/pic%1.").arg(i, 3, 10, QLatin1Char('0')) + kinds[i % 4];
            QFile::copy(legacySeeds[i % 4], f);
            legacyFiles << f;
        }
        std::printf("%d legacy pictures of 1600 x 1200 (PCX, TGA, PSD, SGI)\n", legacyCount);
        tw::decoding::warmUp();
        // One after the other on the interface thread, no cache.
        QElapsedTimer t;
        t.start();
        int serialOk = 0;
        for (const QString &f : legacyFiles)
            serialOk +=
                makeThumbnailWithPictureDecoder(f, 105, 105, 16, nullptr, 16384LL * 16384).status == ThumbOk;
        const qint64 serialMs = t.elapsed();
        const QString legacyCache = tmp.path() + QStringLiteral("/legacy-cache/thumbnails");
        const Load lc = loadInto(grid, legacy, legacyCache, QStringLiteral("*.PCX;*.TGA;*.PSD;*.SGI"));
        const Load lw = loadInto(grid, legacy, legacyCache, QStringLiteral("*.PCX;*.TGA;*.PSD;*.SGI"));
        std::printf("legacy, one after the other on the interface thread: %d made in %lld ms\n", serialOk,
                    serialMs);
        std::printf("legacy, the grid, cold cache: %d cells in %lld ms, first cell after %lld ms\n", lc.cells,
                    lc.allCellsMs, lc.firstCellMs);
        std::printf("legacy, the grid, warm cache: %d cells in %lld ms\n", lw.cells, lw.allCellsMs);
        std::printf("legacy cold throughput / one after the other: %.2f\n",
                    double(serialMs) / qMax<qint64>(1, lc.allCellsMs));
        legacyCells = qMin(lc.cells, lw.cells);
    }
    return cold.cells == count && warm.cells == count && legacyCells == legacyCount ? 0 : 1;
}
