// The picture editors on 16000 x 16000 pictures: in memory, the sliders stay live on the
// preview copy and the full picture's work never stops the window; from a file, the editor
// opens it or says why not, quickly. Kept apart from editors_test for their time.
#include "pictures/image_effects.h"
#include "pictures/picture_editors.h"

#include <QApplication>
#include <QDataStream>
#include <QElapsedTimer>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <zlib.h>

using namespace tw;

class EditorsHugeTest : public QObject {
    Q_OBJECT
private slots:
    void hugePictureStaysLive()
    {
        // 16000 x 16000: the editor opens it, a slider shows its result on the preview copy
        // at once, and the full picture's work leaves the window running (a timer keeps
        // firing) until Apply takes its result.
        QImage huge(16000, 16000, QImage::Format_RGB32);
        if (huge.isNull()) QSKIP("no memory for a 16000 x 16000 picture");
        huge.fill(qRgb(120, 60, 30));
        QImage applied;
        EditorLink link;
        link.setMainPicture = [&](const QImage &img) { applied = img; };
        auto *ed = new ColourEditor(link);
        ed->loadPicture(huge);
        ed->FirstActivation = false;
        QCOMPARE(std::max(ed->originalPreview().width(), ed->originalPreview().height()),
                 PictureEditor::PreviewSide);
        QElapsedTimer clock;
        qint64 lastTick = 0, longestGap = 0;
        int ticks = 0;
        QTimer timer;
        timer.setInterval(10);
        connect(&timer, &QTimer::timeout, [&] {
            ++ticks;
            longestGap = std::max(longestGap, clock.elapsed() - lastTick);
            lastTick = clock.elapsed();
        });
        bool previewShown = false;
        qint64 previewAt = -1;
        connect(ed->Image2, &EditorPicture::pictureSet, ed, [&] {
            if (!previewShown) previewAt = clock.elapsed();
            previewShown = true;
        });
        clock.start();
        timer.start();
        ed->SCBrightness->setValue(200);
        QTRY_VERIFY_WITH_TIMEOUT(previewShown, 5000);
        QVERIFY(ed->working());  // the full picture's work goes on
        QTRY_VERIFY_WITH_TIMEOUT(!ed->working(), 60000);
        const qint64 fullAt = clock.elapsed();
        qInfo("preview painted after %lld ms, full picture done after %lld ms, longest pause of the "
              "window %lld ms",
              previewAt, fullAt, longestGap);
        QVERIFY2(ticks >= 5, qPrintable(QString::number(ticks)));
        QVERIFY2(longestGap < 1000, qPrintable(QString::number(longestGap)));
        ed->ApplyBtn->click();
        QCOMPARE(applied.size(), QSize(16000, 16000));
        QCOMPARE(applied.pixel(15999, 15999), effects::brightness(huge.copy(0, 0, 1, 1), 200).pixel(0, 0));
        applied = QImage();
        // A change while the full work runs, then the window closed: the stale work ends on
        // its own and nothing reaches the closed editor.
        ed->SCBrightness->setValue(300);
        ed->SCContrast->setValue(300);
        QTRY_VERIFY_WITH_TIMEOUT(previewAt >= 0 && ed->Image2->image() != ed->originalPreview(), 5000);
        delete ed;
        QTest::qWait(50);
        QVERIFY(applied.isNull());

        // The effects editor: each move builds on the last; a drag while the full picture is
        // being worked out leaves the window running, and Apply takes the whole chain.
        EffectsEditor fx(link);
        fx.loadPicture(huge);
        lastTick = clock.elapsed();
        longestGap = 0;
        fx.SCPosterize->setValue(8);
        QTRY_VERIFY_WITH_TIMEOUT(fx.Image2->image() != fx.originalPreview(), 5000);
        QVERIFY(fx.working());
        QTest::qWait(20);
        fx.SCPosterize->setValue(5);
        QTRY_VERIFY_WITH_TIMEOUT(!fx.working(), 60000);
        QVERIFY2(longestGap < 1000, qPrintable(QString::number(longestGap)));
        QCOMPARE(fx.operationCount(), 2);
        fx.ApplyBtn->click();
        const QRgb one = huge.pixel(0, 0);
        QImage expected(1, 1, QImage::Format_RGB32);
        expected.setPixel(0, 0, one);
        for (int v : {8, 5}) expected = effects::posterize(expected, v);
        QCOMPARE(applied.pixel(8000, 8000), expected.pixel(0, 0));
    }

    void hugeFileOpensOrSaysSo()
    {
        // A 16000 x 16000 PNG file (one colour, so the file is small): the editor opens it
        // or refuses it with the imaging error in the box, quickly either way.
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("huge.png"));
        {
            const int side = 16000;
            QByteArray row(1 + side * 3, '\0');
            for (int x = 0; x < side; ++x) {
                row[1 + 3 * x] = char(0x30);
                row[2 + 3 * x] = char(0x60);
                row[3 + 3 * x] = char(0x90);
            }
            z_stream z{};
            QVERIFY(deflateInit(&z, 1) == Z_OK);
            QByteArray idat;
            QByteArray buffer(1 << 16, '\0');
            for (int y = 0; y <= side; ++y) {
                const bool last = y == side;
                z.next_in = reinterpret_cast<Bytef *>(last ? nullptr : row.data());
                z.avail_in = last ? 0 : uInt(row.size());
                do {
                    z.next_out = reinterpret_cast<Bytef *>(buffer.data());
                    z.avail_out = uInt(buffer.size());
                    deflate(&z, last ? Z_FINISH : Z_NO_FLUSH);
                    idat.append(buffer.constData(), buffer.size() - int(z.avail_out));
                } while (z.avail_out == 0);
            }
            deflateEnd(&z);
            auto chunk = [](const char *type, const QByteArray &data) {
                QByteArray out;
                QDataStream s(&out, QIODevice::WriteOnly);
                s << quint32(data.size());
                const QByteArray body = QByteArray(type, 4) + data;
                out += body;
                QByteArray crc;
                QDataStream c(&crc, QIODevice::WriteOnly);
                c << quint32(crc32(0, reinterpret_cast<const Bytef *>(body.constData()), uInt(body.size())));
                return out + crc;
            };
            QByteArray header;
            QDataStream h(&header, QIODevice::WriteOnly);
            h << quint32(side) << quint32(side) << quint8(8) << quint8(2) << quint8(0) << quint8(0)
              << quint8(0);
            QFile f(path);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk("IHDR", header) + chunk("IDAT", idat)
                    + chunk("IEND", QByteArray()));
        }
        QString said;
        QTimer::singleShot(0, [&] {
            for (QWidget *w : QApplication::topLevelWidgets())
                if (auto *box = qobject_cast<QMessageBox *>(w)) {
                    said = box->text();
                    box->accept();
                }
        });
        QElapsedTimer t;
        t.start();
        ColourEditor ed({});
        const bool opened = ed.LoadEditorImages(path);
        QVERIFY2(t.elapsed() < 10000, qPrintable(QString::number(t.elapsed())));
        if (opened) {
            QCOMPARE(ed.originalPicture().size(), QSize(16000, 16000));
            QCOMPARE(ed.originalPreview().width(), PictureEditor::PreviewSide);
        } else {
            QVERIFY2(said.startsWith(QStringLiteral("Error - ")), qPrintable(said));
            QVERIFY(ed.originalPicture().isNull());
        }
        qInfo("%s after %lld ms", opened ? "opened" : qPrintable(said), t.elapsed());
    }
};

QTEST_MAIN(EditorsHugeTest)
#include "editors_huge_test.moc"
