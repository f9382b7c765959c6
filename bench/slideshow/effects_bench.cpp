// Frames per second of each effect class on a 1920×1080 surface, painted in software: every
// step of a pass is one frame. For each class a few numbers of the class are played whole
// (first, quarter, middle, three quarters, last) with the grain of a new show (5) and the frames counted; the
// transition fill and the pass masks are timed alongside. A timed run, not a test.
#include "slideshow/effects.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <cstdio>

using namespace tw::slides;

namespace {

QImage picture(QSize s, int seed)
{
    QImage img(s, QImage::Format_RGB32);
    QPainter p(&img);
    QLinearGradient g(0, 0, s.width(), s.height());
    g.setColorAt(0, QColor::fromHsv((seed * 70) % 360, 200, 220));
    g.setColorAt(1, QColor::fromHsv((seed * 70 + 180) % 360, 200, 120));
    p.fillRect(img.rect(), g);
    return img;
}

}  // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QSize size(1920, 1080);
    const QImage before = picture(size, 1), source = picture(size, 2);
    // With --shots <folder>: a picture of each class half way through, to look at.
    if (argc == 3 && QByteArray(argv[1]) == "--shots") {
        const QSize small(480, 270);
        const QImage b = picture(small, 1), s = picture(small, 2);
        for (const EffectClass &c : effectClasses()) {
            for (int e : {c.first, (c.first + c.last) / 2}) {
                QImage surface = b;
                EffectPass pass(e, 3, small);
                QPainter p(&surface);
                for (int k = 1; k <= pass.steps() / 2; ++k) pass.drawStep(p, k, s, b, 2, Qt::yellow);
                p.end();
                surface.save(QStringLiteral("%1/%2.png").arg(QString::fromLocal8Bit(argv[2])).arg(e));
            }
        }
        return 0;
    }
    std::printf("| class | numbers played | frames | frames per second | slowest number played "
                "|\n|---|---|---|---|---|\n");
    for (const EffectClass &c : effectClasses()) {
        if (c.first == NoEffect) continue;
        const int picks[] = {c.first, c.first + (c.last - c.first) / 4, (c.first + c.last) / 2,
                             c.first + 3 * (c.last - c.first) / 4, c.last};
        long frames = 0;
        QElapsedTimer t;
        qint64 ns = 0;
        QString played;
        double slowest = 1e18;
        int slowestNumber = 0;
        for (int e : picks) {
            QImage surface = before;
            EffectPass pass(e, 5, size);
            QPainter p(&surface);
            t.start();
            for (int k = 1; k <= pass.steps(); ++k) pass.drawStep(p, k, source, before, 2, Qt::yellow);
            const qint64 one = t.nsecsElapsed();
            ns += one;
            frames += pass.steps();
            const double fps = pass.steps() / (one / 1e9);
            if (fps < slowest) slowest = fps, slowestNumber = e;
            played += (played.isEmpty() ? QString() : QStringLiteral(", ")) + QString::number(e);
        }
        std::printf("| %s | %s | %ld | %.0f | %d: %.0f |\n", qPrintable(c.name), qPrintable(played), frames,
                    frames / (ns / 1e9), slowestNumber, slowest);
    }
    // The transition's fill and one pass layer of a 3-pass picture, once per slide.
    FillSpec f;
    f.kind = 1;
    f.colors[0] = Qt::red;
    f.colors[1] = Qt::blue;
    QElapsedTimer t;
    for (int s : {1000, 4000, 5000}) {
        f.fillValue = s;
        t.start();
        renderFill(f, size);
        std::printf("fill %d: %.1f ms\n", s, t.nsecsElapsed() / 1e6);
    }
    t.start();
    passLayer(source, 2, 3, true, qRgb(1, 2, 3), QRect(QPoint(0, 0), size));
    std::printf("pass layer (pass 2 of 3, transparent colour): %.1f ms\n", t.nsecsElapsed() / 1e6);
    return 0;
}
