// The effect engine: every number draws, every pass ends on the new picture, the classes
// reveal part of it half way, the pass masks share the pixels out, the fills.
#include "slideshow/effect_image.h"
#include "slideshow/effects.h"

#include <QPainter>
#include <gtest/gtest.h>

using namespace tw::slides;

namespace {

QImage solid(QSize s, QColor c)
{
    QImage i(s, QImage::Format_RGB32);
    i.fill(c);
    return i;
}

// Runs a whole pass from Before to Source; returns the surface after Stop steps (all when -1).
QImage runPass(int effect, int grain, const QImage &before, const QImage &source, int stop = -1)
{
    QImage surface = before;
    EffectPass pass(effect, grain, source.size());
    QPainter p(&surface);
    const int last = stop < 0 ? pass.steps() : stop;
    for (int k = 1; k <= last; ++k) pass.drawStep(p, k, source, before, 0, Qt::yellow);
    return surface;
}

double share(const QImage &img, QColor c)
{
    int n = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) n += img.pixelColor(x, y) == c;
    return double(n) / (img.width() * img.height());
}

}  // namespace

TEST(Effects, NumbersOutsideTheClassesDrawThePlainWipe)
{
    EXPECT_EQ(drawnEffect(0), 2000);
    EXPECT_EQ(drawnEffect(-5), 2000);
    EXPECT_EQ(drawnEffect(1001), NoEffect);
    EXPECT_EQ(drawnEffect(1000), NoEffect);
    EXPECT_EQ(drawnEffect(2555), 2000);
    EXPECT_EQ(drawnEffect(17000), 2000);
    EXPECT_EQ(drawnEffect(13001), 13001);
    EXPECT_EQ(effectClassOf(16035), 15);
    EXPECT_EQ(effectClassOf(3006), -1);
    EXPECT_EQ(effectName(13001), "B-T then B-T");
}

TEST(Effects, EveryNumberOfEveryClassEndsOnTheNewPicture)
{
    const QSize size(48, 36);
    const QImage before = solid(size, Qt::black), source = solid(size, Qt::red);
    for (const EffectClass &c : effectClasses()) {
        for (int e = c.first; e <= c.last; ++e) {
            const QImage out = runPass(e, 6, before, source);
            ASSERT_EQ(share(out, Qt::red), 1.0) << e;
        }
    }
}

TEST(Effects, HalfWayEachClassShowsPartOfTheNewPicture)
{
    const QSize size(160, 120);
    const QImage before = solid(size, Qt::black), source = solid(size, Qt::green);
    for (const EffectClass &c : effectClasses()) {
        if (c.first == 1000) continue;
        for (int e : {c.first, (c.first + c.last) / 2, c.last}) {
            EffectPass pass(e, 4, size);
            const QImage half = runPass(e, 4, before, source, pass.steps() / 2);
            const double s = share(half, Qt::green);
            EXPECT_GT(s, 0.02) << e;
            EXPECT_LT(s, 0.98) << e;
        }
    }
}

TEST(Effects, LeftToRightWipeRevealsTheLeftFirst)
{
    const QSize size(100, 10);
    const QImage half = runPass(2000, 10, solid(size, Qt::black), solid(size, Qt::blue), 5);
    EXPECT_EQ(half.pixelColor(10, 5), QColor(Qt::blue));
    EXPECT_EQ(half.pixelColor(90, 5), QColor(Qt::black));
    const QImage rl = runPass(2001, 10, solid(size, Qt::black), solid(size, Qt::blue), 5);
    EXPECT_EQ(rl.pixelColor(10, 5), QColor(Qt::black));
    EXPECT_EQ(rl.pixelColor(90, 5), QColor(Qt::blue));
}

TEST(Effects, StepsAreTheDistanceOverTheGrain)
{
    EXPECT_EQ(EffectPass(2000, 5, QSize(100, 50)).steps(), 20);
    EXPECT_EQ(EffectPass(2000, 1, QSize(100, 50)).steps(), 100);
    EXPECT_EQ(EffectPass(2000, 0, QSize(100, 50)).steps(), 100);  // grain below 1 counts as 1
    EXPECT_EQ(EffectPass(1000, 5, QSize(100, 50)).steps(), 1);
}

TEST(Effects, PassMasksShareEveryPixelOnce)
{
    for (int passes : {1, 2, 3, 7, 25}) {
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x) {
                int n = 0;
                for (int p = 1; p <= passes; ++p) n += inPass(x, y, p, passes);
                ASSERT_EQ(n, 1) << passes << " " << x << "," << y;
            }
    }
}

TEST(Effects, PassesBlendAndCompleteThePicture)
{
    const QSize size(32, 32);
    const QImage before = solid(size, Qt::black), source = solid(size, Qt::white);
    QImage surface = before;
    for (int p = 1; p <= 4; ++p) {
        const QImage layer = passLayer(source, p, 4, false, 0, QRect());
        QPainter pt(&surface);
        EffectPass::drawFinal(pt, layer);
        pt.end();
        if (p == 2) {
            const double s = share(surface, Qt::white);
            EXPECT_NEAR(s, 0.5, 0.05);
        }
    }
    EXPECT_EQ(share(surface, Qt::white), 1.0);
}

TEST(Effects, TransparentColourIsNotPainted)
{
    QImage source = solid(QSize(10, 10), Qt::red);
    source.setPixelColor(3, 3, QColor(0, 0, 255));
    const QImage layer = passLayer(source, 1, 1, true, QColor(0, 0, 255).rgb(), QRect(0, 0, 10, 10));
    QImage surface = solid(QSize(10, 10), Qt::green);
    QPainter p(&surface);
    EffectPass::drawFinal(p, layer);
    p.end();
    EXPECT_EQ(surface.pixelColor(3, 3), QColor(Qt::green));
    EXPECT_EQ(surface.pixelColor(4, 3), QColor(Qt::red));
}

TEST(Effects, FillsPaintTheirColours)
{
    FillSpec f;
    f.kind = 1;
    f.colors[0] = Qt::black;
    f.colors[1] = Qt::white;
    f.fillValue = 1000;  // linear left to right
    f.steps = 4;
    const QImage g = renderFill(f, QSize(100, 10));
    EXPECT_EQ(g.pixelColor(0, 5), QColor(Qt::black));
    EXPECT_EQ(g.pixelColor(99, 5), QColor(Qt::white));
    QSet<QRgb> tones;
    for (int x = 0; x < 100; ++x) tones.insert(g.pixel(x, 5));
    EXPECT_EQ(tones.size(), 4);  // quantised to the step count
    for (int s : {1000, 1007, 1008, 1015, 2000, 2007, 3000, 3001, 4000, 4001, 5000, 5007}) {
        f.fillValue = s;
        f.steps = 256;
        const QImage i = renderFill(f, QSize(40, 30));
        QSet<QRgb> t;
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x) t.insert(i.pixel(x, y));
        EXPECT_GT(t.size(), 5) << s;
    }
    FillSpec pat;
    pat.kind = 2;
    pat.gradientValue = 2;  // horizontal lines
    pat.colors[2] = Qt::red;
    pat.colors[3] = Qt::blue;
    const QImage h = renderFill(pat, QSize(20, 20));
    EXPECT_GT(share(h, Qt::red), 0.05);
    EXPECT_GT(share(h, Qt::blue), 0.5);
    pat.gradientValue = 0;  // solid
    EXPECT_EQ(share(renderFill(pat, QSize(8, 8)), Qt::red), 1.0);
}

TEST(Effects, ImageNotifiesAtThePointsOfEachPass)
{
    SlideClock::setManual(true);
    EffectImage img;
    img.resize(60, 40);
    img.setPicture(solid(QSize(60, 40), Qt::red));
    img.setAutoRepaint(false);
    img.TransitionEffect = 2000;
    img.FillKind = 1;
    img.PaintEffect = 3001;
    img.PassCount = 3;
    img.PassIndex = 1;
    img.Grain = 10;
    QStringList seen;
    img.onNotify = [&](int pass, int kind) { seen << QStringLiteral("%1,%2").arg(pass).arg(kind); };
    bool done = false;
    img.onPainted = [&] { done = true; };
    img.setAutoRepaint(true);
    EXPECT_TRUE(done);
    EXPECT_EQ(seen, (QStringList{"0,0", "1,0", "0,1", "1,1", "2,1", "3,1"}));
    EXPECT_EQ(img.playLog(), (QStringList{"T2000", "P3001/1", "P3001/2", "P3001/3"}));
    EXPECT_EQ(img.surface().pixelColor(30, 20), QColor(Qt::red));

    // A handler may cut the passes short between passes.
    seen.clear();
    img.onNotify = [&](int pass, int kind) {
        seen << QStringLiteral("%1,%2").arg(pass).arg(kind);
        if (kind == 1 && pass == 1) img.PassCount = 1;
    };
    img.TransitionEffect = 1000;
    img.setAutoRepaint(false);
    img.setAutoRepaint(true);
    EXPECT_EQ(seen, (QStringList{"0,1", "1,1"}));
    SlideClock::setManual(false);
}

TEST(Effects, DamagedSettingsStayBounded)
{
    SlideClock::setManual(true);
    EffectImage img;
    img.resize(40, 30);
    img.setPicture(solid(QSize(40, 30), Qt::blue));
    img.setAutoRepaint(false);
    img.PaintEffect = 2147483647;
    img.PassCount = 100000;
    img.Grain = -50;
    img.Delay = 2000000000;
    int notes = 0;
    img.onNotify = [&](int, int) { ++notes; };
    img.setAutoRepaint(true);
    EXPECT_EQ(notes, 1 + EffectImage::MaxPasses);
    EXPECT_EQ(img.surface().pixelColor(20, 15), QColor(Qt::blue));
    SlideClock::setManual(false);
}
