// Every picture extension of the catalogue that can open does open, on files made by
// ImageMagick (or netpbm) here and on the real-world samples; and bad input of every
// kind comes back as a failure, never as a crash, a hang or half a picture.
#include "pictures/imaging_control.h"
#include "pictures/imaging_errors.h"
#include "pictures/picture_decoder.h"
#include "test_support.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <zlib.h>

using namespace tw;

namespace {

QByteArray le32(uint32_t v)
{
    QByteArray b(4, 0);
    qToLittleEndian<uint32_t>(v, reinterpret_cast<uchar *>(b.data()));
    return b;
}

QByteArray chunk(const char *id, const QByteArray &body)
{
    QByteArray c = QByteArray(id, 4) + le32(uint32_t(body.size())) + body;
    if (body.size() & 1) c.append('\0');
    return c;
}

// An animated cursor around the given icon files, shown in `sequence` order when given.
QByteArray makeAni(const QList<QByteArray> &icons, const QList<uint32_t> &sequence = {})
{
    QByteArray anih;
    for (uint32_t v :
         {36u, uint32_t(icons.size()), uint32_t(sequence.isEmpty() ? icons.size() : sequence.size()), 0u, 0u,
          0u, 0u, 6u, 1u + (sequence.isEmpty() ? 0u : 2u)})
        anih += le32(v);
    QByteArray body = "ACON" + chunk("anih", anih);
    if (!sequence.isEmpty()) {
        QByteArray seq;
        for (uint32_t s : sequence) seq += le32(s);
        body += chunk("seq ", seq);
    }
    QByteArray fram = "fram";
    for (const QByteArray &i : icons) fram += chunk("icon", i);
    body += chunk("LIST", fram);
    return "RIFF" + le32(uint32_t(body.size())) + body;
}

// A Dr. Halo CUT file: header of width, height and a reserved word, then each row as a
// byte count and run-length bytes (a run byte with the top bit set repeats the next byte).
QByteArray makeCut(int w, int h)
{
    QByteArray out = le32(0).left(0);
    auto le16 = [](int v) {
        QByteArray b(2, 0);
        qToLittleEndian<uint16_t>(uint16_t(v), reinterpret_cast<uchar *>(b.data()));
        return b;
    };
    out += le16(w) + le16(h) + le16(0);
    for (int y = 0; y < h; ++y) {
        QByteArray row;
        row.append(char(0x80 | (w / 2)));
        row.append(char(y * 4));
        row.append(char(0x80 | (w - w / 2)));
        row.append(char(200));
        row.append('\0');
        out += le16(int(row.size())) + row;
    }
    return out;
}

bool writeFile(const QString &path, const QByteArray &data)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(data) == data.size();
}

QByteArray readFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// A real, complete PNG of w x h one-bit grey pixels, all zero: small on disk, gigabytes
// once decoded.
bool writeHugePng(const QString &path, uint32_t w, uint32_t h)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly)) return false;
    auto be32 = [](uint32_t v) {
        QByteArray b(4, 0);
        qToBigEndian<uint32_t>(v, reinterpret_cast<uchar *>(b.data()));
        return b;
    };
    auto writeChunk = [&](const char *type, const QByteArray &data) {
        QByteArray td = QByteArray(type, 4) + data;
        f.write(be32(uint32_t(data.size())));
        f.write(td);
        f.write(be32(uint32_t(crc32(0, reinterpret_cast<const Bytef *>(td.constData()), uInt(td.size())))));
    };
    f.write("\x89PNG\r\n\x1a\n", 8);
    writeChunk("IHDR", be32(w) + be32(h) + QByteArray("\x01\x00\x00\x00\x00", 5));
    z_stream z{};
    deflateInit(&z, 9);
    const QByteArray row(int(1 + (w + 7) / 8), '\0');
    QByteArray out(1 << 20, '\0');
    QByteArray idat;
    for (uint32_t y = 0; y < h; ++y) {
        z.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(row.constData()));
        z.avail_in = uInt(row.size());
        const int flush = y + 1 == h ? Z_FINISH : Z_NO_FLUSH;
        do {
            z.next_out = reinterpret_cast<Bytef *>(out.data());
            z.avail_out = uInt(out.size());
            deflate(&z, flush);
            idat.append(out.constData(), out.size() - int(z.avail_out));
        } while (z.avail_out == 0);
    }
    deflateEnd(&z);
    writeChunk("IDAT", idat);
    writeChunk("IEND", QByteArray());
    return true;
}

}  // namespace

class DecodeTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    QString tmp(const QString &name) const { return dir_.filePath(name); }

    // Makes a sample of the extension; "" when this machine has no writer for it.
    QString makeSample(const QString &ext)
    {
        const QString path = tmp(QStringLiteral("sample.") + ext.toLower());
        QFile::remove(path);
        const QString grad = QStringLiteral("gradient:red-blue");
        auto im = [&](const QString &coder, const QStringList &extra = {}) {
            QStringList a{QStringLiteral("-size"), QStringLiteral("64x48"), grad};
            a += extra;
            a << coder + QLatin1Char(':') + path;
            return twtest::magickConvert(a) ? path : QString();
        };
        auto pbm = [&]() {
            const QString p = tmp(QStringLiteral("src.pbm"));
            twtest::magickConvert({QStringLiteral("-size"), QStringLiteral("64x48"), grad,
                                   QStringLiteral("-monochrome"), QStringLiteral("PBM:") + p});
            return p;
        };
        const QString e = ext.toUpper();
        if (e == "JPG" || e == "JPE" || e == "JPEG") return im(QStringLiteral("JPEG"));
        if (e == "TIFF" || e == "TIF") return im(QStringLiteral("TIFF"));
        if (e == "MPT") {
            const QStringList a{
                QStringLiteral("-size"),       QStringLiteral("64x48"), grad,
                QStringLiteral("-size"),       QStringLiteral("32x24"), QStringLiteral("xc:green"),
                QStringLiteral("TIFF:") + path};
            return twtest::magickConvert(a) ? path : QString();
        }
        if (e == "BMP") return im(QStringLiteral("BMP3"));
        if (e == "ICO") return im(QStringLiteral("ICO"));
        if (e == "CUR") return im(QStringLiteral("CUR"));
        if (e == "PCX") return im(QStringLiteral("PCX"));
        if (e == "DCX") return im(QStringLiteral("DCX"));
        if (e == "PCD") return im(QStringLiteral("PCD"));
        if (e == "FAX") return im(QStringLiteral("FAX"), {QStringLiteral("-monochrome")});
        if (e == "XPM") return im(QStringLiteral("XPM"));
        if (e == "PBM") return im(QStringLiteral("PBM"), {QStringLiteral("-monochrome")});
        if (e == "PSD") return im(QStringLiteral("PSD"));
        if (e == "PNG") return im(QStringLiteral("PNG"));
        if (e == "TGA") return im(QStringLiteral("TGA"));
        if (e == "JBG") return im(QStringLiteral("JBIG"), {QStringLiteral("-monochrome")});
        if (e == "RAS") return im(QStringLiteral("SUN"));
        if (e == "PCT") return im(QStringLiteral("PICT"));
        if (e == "XWD") return im(QStringLiteral("XWD"));
        if (e == "SGI") return im(QStringLiteral("SGI"));
        if (e == "CAL") return im(QStringLiteral("CALS"), {QStringLiteral("-monochrome")});
        if (e == "IFF") {
            const QString ppm = tmp(QStringLiteral("src.ppm"));
            twtest::magickConvert(
                {QStringLiteral("-size"), QStringLiteral("64x48"), grad, QStringLiteral("PPM:") + ppm});
            return twtest::run(QStringLiteral("ppmtoilbm"), {ppm}, path) ? path : QString();
        }
        if (e == "MAC") return twtest::run(QStringLiteral("pbmtomacp"), {pbm()}, path) ? path : QString();
        if (e == "IMG") return twtest::run(QStringLiteral("pbmtogem"), {pbm()}, path) ? path : QString();
        if (e == "CUT") return writeFile(path, makeCut(41, 30)) ? path : QString();
        if (e == "EPS") {
            // ImageMagick's command line refuses PostScript under Debian's policy; the
            // control's own writer (which lifts that refusal in-process) makes the file.
            ImagingControl c;
            QImage img(64, 48, QImage::Format_RGB32);
            img.fill(Qt::darkCyan);
            c.setImage(img);
            return c.save(path, 16, 0, 0, 0) == 0 ? path : QString();
        }
        if (e == "ANI") {
            QList<QByteArray> icons;
            for (const char *colour : {"xc:red", "xc:lime", "xc:blue"}) {
                const QString ico = tmp(QStringLiteral("frame.ico"));
                if (!twtest::magickConvert({QStringLiteral("-size"), QStringLiteral("32x32"),
                                            QString::fromLatin1(colour), QStringLiteral("ICO:") + ico}))
                    return QString();
                icons << readFile(ico);
            }
            return writeFile(path, makeAni(icons, {0, 1, 2, 1})) ? path : QString();
        }
        return QString();
    }

private slots:
    void initTestCase() { QVERIFY(dir_.isValid()); }

    // The extensions that open, each on a file made here.
    void generatedOpens_data()
    {
        QTest::addColumn<QString>("ext");
        QTest::addColumn<int>("frames");
        for (const char *e : {"JPG", "JPE", "JPEG", "TIFF", "TIF", "MPT", "BMP", "ICO", "CUR", "PCX",
                              "DCX", "PCD", "FAX",  "XPM",  "IFF", "PBM", "CUT", "PSD", "PNG", "TGA",
                              "EPS", "JBG", "RAS",  "PCT",  "XWD", "ANI", "SGI", "CAL", "MAC", "IMG"})
            QTest::newRow(e) << QString::fromLatin1(e) << (QByteArray(e) == "ANI" ? 4 : 1);
    }
    void generatedOpens()
    {
        QFETCH(QString, ext);
        QFETCH(int, frames);
        const QString path = makeSample(ext);
        QVERIFY2(!path.isEmpty() && QFileInfo(path).size() > 0, "the sample could not be made");
        Picture pic;
        QString detail;
        const int status = decodePictureFile(path, 1, frames > 1, &pic, &detail);
        QVERIFY2(status == 0, qPrintable(QString::number(status) + QLatin1Char(' ') + detail));
        QCOMPARE(pic.frames.size(), frames);
        QVERIFY(pic.frames.first().width() > 0 && pic.frames.first().height() > 0);
        QVERIFY(pic.bitsPerPixel > 0);
        FileFacts facts;
        QCOMPARE(readPictureFacts(path, 1, &facts, &detail), 0);
        QCOMPARE(facts.width, pic.frames.first().width());
        QCOMPARE(facts.height, pic.frames.first().height());
        QVERIFY(facts.format != 0);
        QVERIFY(facts.formatName != QLatin1String("Unknown format"));
    }

    // The pictures of a multi-page file open at the page asked for.
    void multiPage()
    {
        const QString path = makeSample(QStringLiteral("MPT"));
        Picture p1, p2, all;
        QCOMPARE(decodePictureFile(path, 1, false, &p1), 0);
        QCOMPARE(decodePictureFile(path, 2, false, &p2), 0);
        QCOMPARE(p1.frames.first().size(), QSize(64, 48));
        QCOMPARE(p2.frames.first().size(), QSize(32, 24));
        QCOMPARE(QColor(p2.frames.first().pixel(5, 5)), QColor(0, 128, 0));
        QCOMPARE(decodePictureFile(path, 1, true, &all), 0);
        QCOMPARE(all.frames.size(), 2);
        Picture none;
        QCOMPARE(decodePictureFile(path, 3, false, &none), int(ImagingInvalidParameter));
        FileFacts facts;
        QCOMPARE(readPictureFacts(path, 1, &facts), 0);
        QCOMPARE(facts.totalPages, 2);
    }

    // The animated cursor's frames come in the order of its sequence chunk.
    void animatedCursorOrder()
    {
        const QString path = makeSample(QStringLiteral("ANI"));
        Picture pic;
        QCOMPARE(decodePictureFile(path, 1, true, &pic), 0);
        QCOMPARE(pic.frames.size(), 4);
        QCOMPARE(QColor(pic.frames[0].pixel(10, 10)), QColor(Qt::red));
        QCOMPARE(QColor(pic.frames[1].pixel(10, 10)), QColor(Qt::green));
        QCOMPARE(QColor(pic.frames[2].pixel(10, 10)), QColor(Qt::blue));
        QCOMPARE(QColor(pic.frames[3].pixel(10, 10)), QColor(Qt::green));
        QCOMPARE(pic.delaysMs[0], 100);
    }

    // Real-world samples of every extension that opens.
    void corpusOpens_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("animation");
        const QList<QPair<const char *, bool>> files{{"jpg/hopper.jpg", false},
                                                     {"jpg/pil_sample_cmyk.jpg", false},
                                                     {"jpg/hopper_gray.jpg", false},
                                                     {"tiff/hopper_lzw.tif", false},
                                                     {"tiff/g4-multi.tiff", false},
                                                     {"tiff/tiff_strip_cmyk_jpeg.tif", false},
                                                     {"tiff/input_gray_16bit.tiff", false},
                                                     {"bmp/pal4rle.bmp", false},
                                                     {"bmp/rgba32.bmp", false},
                                                     {"bmp/pal8os2.bmp", false},
                                                     {"ico/python.ico", false},
                                                     {"ico/hopper_256x256.ico", false},
                                                     {"cur/deerstalker.cur", false},
                                                     {"cur/fixture.cur", false},
                                                     {"pcx/input.pcx", false},
                                                     {"pcx/pil184.pcx", false},
                                                     {"dcx/hopper.dcx", false},
                                                     {"pcd/hopper.pcd", false},
                                                     {"wmf/clock.wmf", false},
                                                     {"wmf/drawing.wmf", false},
                                                     {"fax/test.g3", false},
                                                     {"xpm/hopper.xpm", false},
                                                     {"iff/test.ilbm", false},
                                                     {"pnm/input_p4.pbm", false},
                                                     {"pnm/input_p1.pbm", false},
                                                     {"psd/hopper.psd", false},
                                                     {"png/input_16.png", false},
                                                     {"png/input_256.png", false},
                                                     {"tga/200x32_rgb_bl_rle.tga", false},
                                                     {"tga/test-tga-cmap.tga", false},
                                                     {"eps/input.eps", false},
                                                     {"jbg/input.jbg", false},
                                                     {"ras/hopper.ras", false},
                                                     {"ras/input_im1.ras", false},
                                                     {"wpg/input.wpg", false},
                                                     {"xwd/input.xwd", false},
                                                     {"flc/2422.flc", true},
                                                     {"flc/trafficlights.flc", true},
                                                     {"fli/a.fli", true},
                                                     {"ani/jc-win.ani", true},
                                                     {"sgi/hopper.sgi", false},
                                                     {"sgi/hopper.bw", false},
                                                     {"mac/header.mac", false},
                                                     {"mac/noheader.mac", false},
                                                     {"msp/hopper.msp", false}};
        for (const auto &f : files) QTest::newRow(f.first) << QString::fromLatin1(f.first) << f.second;
    }
    void corpusOpens()
    {
        if (!twtest::haveCorpus()) QSKIP("the real-world samples are not on this machine");
        QFETCH(QString, file);
        QFETCH(bool, animation);
        const QString path = twtest::corpus(file);
        if (!QFile::exists(path)) QSKIP("sample missing");
        Picture pic;
        QString detail;
        const int status = decodePictureFile(path, 1, animation, &pic, &detail);
        QVERIFY2(status == 0, qPrintable(QString::number(status) + QLatin1Char(' ') + detail));
        QVERIFY(!pic.isNull());
        if (animation) QVERIFY2(pic.frames.size() > 1, "an animation has more than one frame");
    }

    // Bad input of every kind takes the failure path.
    void badInput_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("expected");
        const QByteArray text("This is a letter, not a picture.\r\nSecond line.\r\n");
        for (const char *e : {"jpg", "png", "bmp", "tif", "pcx", "tga", "pct", "ras", "psd", "iff", "img",
                              "msp", "mac", "fax", "cut", "wmf", "eps", "ani", "flc", "ico", "sgi", "xpm"})
            QTest::newRow(qPrintable(QStringLiteral("text.") + QLatin1String(e)))
                << QStringLiteral("text.") + QLatin1String(e) << text << -1;
        for (const char *e : {"jpg", "png", "bmp", "ani", "flc", "pcx"})
            QTest::newRow(qPrintable(QStringLiteral("empty.") + QLatin1String(e)))
                << QStringLiteral("empty.") + QLatin1String(e) << QByteArray() << int(ImagingInvalidFormat);
        QTest::newRow("riff header only.ani") << QStringLiteral("short.ani")
                                              << QByteArray("RIFF\xff\xff\xff\x7f"
                                                            "ACON",
                                                            12)
                                              << -1;
    }
    void badInput()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(int, expected);
        const QString path = tmp(name);
        QVERIFY(writeFile(path, content));
        Picture pic;
        const int status = decodePictureFile(path, 1, true, &pic);
        QVERIFY2(status != 0, "bad input decoded as a picture");
        if (expected > 0) QCOMPARE(status, expected);
        QVERIFY(pic.isNull());
    }

    void missingFile()
    {
        Picture pic;
        QCOMPARE(decodePictureFile(tmp(QStringLiteral("nothing-here.jpg")), 1, false, &pic),
                 int(ImagingFileNotFound));
        QCOMPARE(decodePictureFile(dir_.path(), 1, false, &pic), int(ImagingFileNotFound));
    }

    void truncatedJpeg()
    {
        const QString full = tmp(QStringLiteral("full.jpg"));
        QVERIFY(twtest::magickConvert({QStringLiteral("-size"), QStringLiteral("400x300"),
                                       QStringLiteral("plasma:"), QStringLiteral("JPEG:") + full}));
        Picture pic;
        QCOMPARE(decodePictureFile(full, 1, false, &pic), 0);
        const QByteArray data = readFile(full);
        for (double part : {0.2, 0.5, 0.9}) {
            const QString cut = tmp(QStringLiteral("cut.jpg"));
            QVERIFY(writeFile(cut, data.left(int(data.size() * part))));
            Picture p;
            QVERIFY2(decodePictureFile(cut, 1, false, &p) != 0, "a truncated JPEG must fail");
            QVERIFY(p.isNull());
        }
        QVERIFY(writeFile(tmp(QStringLiteral("head.jpg")), data.left(100)));
        Picture p;
        QVERIFY(decodePictureFile(tmp(QStringLiteral("head.jpg")), 1, false, &p) != 0);
    }

    void truncatedPng()
    {
        const QString full = tmp(QStringLiteral("full.png"));
        QVERIFY(twtest::magickConvert({QStringLiteral("-size"), QStringLiteral("300x200"),
                                       QStringLiteral("plasma:"), QStringLiteral("PNG:") + full}));
        const QByteArray data = readFile(full);
        for (double part : {0.1, 0.5, 0.95}) {
            const QString cut = tmp(QStringLiteral("cut.png"));
            QVERIFY(writeFile(cut, data.left(int(data.size() * part))));
            Picture p;
            QVERIFY2(decodePictureFile(cut, 1, false, &p) != 0, "a truncated PNG must fail");
        }
    }

    // 65535 x 65535 pixels need 16 GiB decoded: refused by the area limit, at once.
    void hugePng()
    {
        const QString path = tmp(QStringLiteral("huge.png"));
        QVERIFY(writeHugePng(path, 65535, 65535));
        QElapsedTimer t;
        t.start();
        Picture pic;
        QString detail;
        QCOMPARE(decodePictureFile(path, 1, false, &pic, &detail), int(ImagingNoMemory));
        QVERIFY(t.elapsed() < 5000);
        QVERIFY(pictureAreaLimit() > 0 && pictureAreaLimit() < int64_t(65535) * 65535);
        // The same picture through ImageMagick (a format Qt does not read) is refused too.
        const QString sgi = tmp(QStringLiteral("huge.sgi"));
        QByteArray header(512, '\0');
        header[0] = char(0x01);
        header[1] = char(0xDA);  // magic
        header[2] = 0;
        header[3] = 1;  // verbatim, 1 byte a channel
        header[4] = 0;
        header[5] = 2;  // two dimensions
        header[6] = char(0xFF);
        header[7] = char(0xFF);  // width 65535
        header[8] = char(0xFF);
        header[9] = char(0xFF);  // height 65535
        header[10] = 0;
        header[11] = 1;  // one channel
        header[19] = char(0xFF);  // max pixel value 255
        QVERIFY(writeFile(sgi, header + QByteArray(4096, '\0')));
        Picture p2;
        QVERIFY(decodePictureFile(sgi, 1, false, &p2) != 0);
        QVERIFY(p2.isNull());
    }

    void corruptMultiPageTiff()
    {
        const QString full = tmp(QStringLiteral("three.tif"));
        QVERIFY(twtest::magickConvert(
            {QStringLiteral("-size"), QStringLiteral("200x150"), QStringLiteral("plasma:"),
             QStringLiteral("-size"), QStringLiteral("200x150"), QStringLiteral("plasma:"),
             QStringLiteral("-size"), QStringLiteral("200x150"), QStringLiteral("plasma:"),
             QStringLiteral("-compress"), QStringLiteral("LZW"), QStringLiteral("TIFF:") + full}));
        QByteArray data = readFile(full);
        // Scribble over the second half: the later pages' strips and directories break.
        for (int i = data.size() / 2; i < data.size(); i += 7) data[i] = char(0xA5 ^ i);
        const QString bad = tmp(QStringLiteral("bad.mpt"));
        QVERIFY(writeFile(bad, data));
        for (int page : {2, 3}) {
            Picture p;
            QVERIFY2(decodePictureFile(bad, page, false, &p) != 0, "a damaged page must fail");
        }
        // Cut short inside the first page: nothing to show at all.
        QVERIFY(writeFile(bad, readFile(full).left(3000)));
        Picture p;
        QVERIFY(decodePictureFile(bad, 1, false, &p) != 0);
    }

    void animatedCursorBadFrame()
    {
        const QString ico = tmp(QStringLiteral("good.ico"));
        QVERIFY(twtest::magickConvert({QStringLiteral("-size"), QStringLiteral("32x32"),
                                       QStringLiteral("xc:red"), QStringLiteral("ICO:") + ico}));
        const QByteArray good = readFile(ico);
        QByteArray broken = good;
        broken.truncate(30);
        const QString path = tmp(QStringLiteral("badframe.ani"));
        QVERIFY(writeFile(path, makeAni({good, QByteArray("not an icon at all, just words"), good})));
        Picture p;
        QVERIFY(decodePictureFile(path, 1, true, &p) != 0);
        QVERIFY(writeFile(path, makeAni({good, broken})));
        QVERIFY(decodePictureFile(path, 1, true, &p) != 0);
        // A sequence naming a frame that is not there.
        QVERIFY(writeFile(path, makeAni({good}, {0, 5})));
        QVERIFY(decodePictureFile(path, 1, true, &p) != 0);
        // A chunk whose size runs past the end of the file.
        QByteArray cut = makeAni({good, good});
        cut.truncate(cut.size() - 40);
        QVERIFY(writeFile(path, cut));
        QVERIFY(decodePictureFile(path, 1, true, &p) != 0);
        QVERIFY(p.isNull());
    }

    void truncatedFlic()
    {
        if (!twtest::haveCorpus()) QSKIP("the real-world samples are not on this machine");
        const QByteArray data = readFile(twtest::corpus(QStringLiteral("flc/2422.flc")));
        QVERIFY(!data.isEmpty());
        const QString path = tmp(QStringLiteral("cut.flc"));
        QVERIFY(writeFile(path, data.left(200)));
        Picture p;
        QVERIFY(decodePictureFile(path, 1, true, &p) != 0);
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    DecodeTest t;
    return QTest::qExec(&t, argc, argv);
}

#include "decode_test.moc"
