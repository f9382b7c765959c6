// The .SLS file: the writer's layout, the builder's and the runner's reads.
#include "core/text_rules.h"
#include "slideshow/show_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tw;
using namespace tw::slides;

namespace {

const QByteArray NewShowNumbers = " 1  0  5  10  10  1000  5  10  10  0  2  1  4000  256  0  0  0 \r\n"
                                  " 65280  0  0  255  16711680  255  16711680  255  65280  16711680 \r\n";

QByteArray numbers(const ShowSettings &s) { return showFileBytes(s, {}, {}); }

}  // namespace

TEST(ShowFile, NewShowIsWrittenWithTwoBlanksBetweenNumbers)
{
    EXPECT_EQ(showFileBytes(newShowSettings(), {}, {}), NewShowNumbers);
}

TEST(ShowFile, NegativeNumbersHaveNoLeadingBlankAndFlagsAreZeroOrOne)
{
    ShowSettings s;
    s.PaintEffect = -3;
    s.PaintTransparent = true;
    s.OmitFrame = true;
    s.PaintColor = 0x80000004u;
    const QByteArray b = numbers(s);
    EXPECT_TRUE(b.startsWith(" 1 -3  5 "));
    EXPECT_TRUE(b.contains(" 256  1  0  1 \r\n"));
    EXPECT_TRUE(b.contains("\r\n-2147483644  0 "));
}

TEST(ShowFile, PathsFollowPicturesFirstThenMusicWithoutCount)
{
    const QByteArray b = showFileBytes(newShowSettings(), {"/p/a.jpg", "/p/b.bmp"}, {"/m/x.mp3"});
    EXPECT_EQ(b, NewShowNumbers + "/p/a.jpg\r\n/p/b.bmp\r\n/m/x.mp3\r\n");
}

TEST(ShowFile, ShowWithNoMusicEndsAfterThePictures)
{
    const QByteArray b = showFileBytes(newShowSettings(), {"/p/a.jpg"}, {});
    EXPECT_TRUE(b.endsWith("\r\n/p/a.jpg\r\n"));
    ShowSettings s = runnerDefaults();
    RunnerShow show;
    EXPECT_TRUE(readRunnerShow(b, &s, &show));
    EXPECT_EQ(show.pictures, QStringList{"/p/a.jpg"});
    EXPECT_TRUE(show.music.isEmpty());
    EXPECT_EQ(show.lastPicture(), 0);
}

TEST(ShowFile, WriteIsAtomicAndReplacesTheFile)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/show.SLS";
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("old contents that are longer than the new ones ..................................");
    }
    ASSERT_TRUE(writeShowFile(path, newShowSettings(), {"/a.jpg"}, {}));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), NewShowNumbers + "/a.jpg\r\n");
    // Only the file itself is left: the temporary file went by rename.
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"show.SLS"});
    EXPECT_FALSE(writeShowFile(dir.path() + "/no/such/folder/x.SLS", newShowSettings(), {}, {}));
    EXPECT_FALSE(writeShowFile(QString(), newShowSettings(), {}, {}));
}

TEST(ShowFile, RoundTripOfEveryField)
{
    ShowSettings s;
    for (int i = 0; i < ShowSettings::FieldCount; ++i) s.setField(i, i >= 14 && i <= 16 ? 1 : 100 + i);
    ShowSettings back = newShowSettings();
    QStringList paths;
    ASSERT_TRUE(readBuilderShow(numbers(s), &back, &paths));
    EXPECT_EQ(back, s);
    EXPECT_TRUE(paths.isEmpty());
}

TEST(ShowFile, FlagsAreTrueOnlyForOne)
{
    ShowSettings s;
    QStringList paths;
    QByteArray d = " 1 0 5 10 10 1000 5 10 10 0 2 1 4000 256 2 -1 1\r\n 1 2 3 4 5 6 7 8 9 10\r\n";
    ASSERT_TRUE(readBuilderShow(d, &s, &paths));
    EXPECT_FALSE(s.PaintTransparent);
    EXPECT_FALSE(s.MultipleEffects);
    EXPECT_TRUE(s.OmitFrame);
    EXPECT_EQ(s.FrameOuterColor, 10u);
}

TEST(ShowFile, LineStructureDoesNotMatter)
{
    // The same numbers in the same order, with other line breaks, blanks and commas.
    ShowSettings a, b;
    QStringList pa, pb;
    const QByteArray one = NewShowNumbers + "/p/a.jpg\r\n";
    QByteArray other = " 1  0  5  10  10  1000  5  10  10  0  2  1  4000\r\n 256  0  0  0  65280\r\n"
                       "0,0,255 16711680\r\n255\r\n16711680  255  65280  16711680\r\n/p/a.jpg\r\n";
    ASSERT_TRUE(readBuilderShow(one, &a, &pa));
    ASSERT_TRUE(readBuilderShow(other, &b, &pb));
    EXPECT_EQ(a, b);
    EXPECT_EQ(pa, pb);
    ShowSettings ra = runnerDefaults(), rb = runnerDefaults();
    RunnerShow sa, sb;
    ASSERT_TRUE(readRunnerShow(one, &ra, &sa));
    ASSERT_TRUE(readRunnerShow(other, &rb, &sb));
    EXPECT_EQ(ra, rb);
    EXPECT_EQ(sa.pictures, sb.pictures);
}

TEST(ShowFile, ShortFirstLineTakesItsFieldsFromTheSecond)
{
    ShowSettings s;
    QStringList paths;
    // Sixteen numbers on line 1: the 17th comes from line 2, and every later field shifts.
    const QByteArray d = " 1 0 5 10 10 1000 5 10 10 0 2 1 4000 256 0 0\r\n"
                         " 65280 0 0 255 16711680 255 16711680 255 65280 16711680\r\n 7\r\n/a.jpg\r\n";
    ASSERT_TRUE(readBuilderShow(d, &s, &paths));
    EXPECT_FALSE(s.OmitFrame);  // 65280 is no 1
    EXPECT_EQ(s.PaintColor, 0u);
    EXPECT_EQ(s.FrameInnerColor, 16711680u);
    EXPECT_EQ(s.FrameOuterColor, 7u);
    EXPECT_EQ(paths, QStringList{"/a.jpg"});
}

TEST(ShowFile, ABadNumberEndsTheReadKeepingWhatCameBefore)
{
    ShowSettings s;
    QStringList paths;
    const QByteArray d = " 3 2001 7 x 10\r\n";
    EXPECT_FALSE(readBuilderShow(d, &s, &paths));
    EXPECT_EQ(s.SlidePasses, 3);
    EXPECT_EQ(s.PaintEffect, 2001);
    EXPECT_EQ(s.PaintGrain, 7);
    EXPECT_EQ(s.PaintDelay, 10);  // not reached
    EXPECT_TRUE(paths.isEmpty());
    ShowSettings r = runnerDefaults();
    RunnerShow show;
    EXPECT_FALSE(readRunnerShow(" 1 2 3\r\n", &r, &show));
    EXPECT_FALSE(readBuilderShowFile("/no/such/file.SLS", &s, &paths));
}

TEST(ShowFile, BuilderFieldsBreakAtCommasAndQuotesOpenAField)
{
    ShowSettings s;
    QStringList paths;
    const QByteArray d = NewShowNumbers + "/p/a,b.jpg\r\n\"/p/q, r.jpg\"\r\n";
    ASSERT_TRUE(readBuilderShow(d, &s, &paths));
    EXPECT_EQ(paths, (QStringList{"/p/a", "b.jpg", "/p/q, r.jpg"}));
}

TEST(ShowFile, BuilderSortsByTheCatalogue)
{
    EXPECT_EQ(builderListFor("/p/a.jpg"), 0);
    EXPECT_EQ(builderListFor("/p/a.PCX"), 0);
    EXPECT_EQ(builderListFor("/m/a.mp3"), 1);
    EXPECT_EQ(builderListFor("/m/a.wav"), 1);
    EXPECT_EQ(builderListFor("/v/a.mov"), 1);  // a video is media: the music list
    EXPECT_EQ(builderListFor("/d/a.txt"), -1);  // a document row (above 61): dropped
    EXPECT_EQ(builderListFor("/d/a.qqq"), -1);  // outside the catalogue: dropped
    EXPECT_EQ(builderListFor("/d/noext"), -1);
    EXPECT_EQ(builderListFor("/p/a"), -1);
}

TEST(ShowFile, RunnerSortsByMusicExtensionsOnly)
{
    ShowSettings s = runnerDefaults();
    RunnerShow show;
    // A music file among the pictures goes to the music; a .MOV among the pictures, where
    // it will fail to display.
    const QByteArray d = NewShowNumbers
        + "/p/a.jpg\r\n/m/x.mp3\r\n/v/c.mov\r\n/m/y.MID\r\n/m/z.m3u\r\n/m/w.rmi\r\n/m/v.wav\r\n";
    ASSERT_TRUE(readRunnerShow(d, &s, &show));
    EXPECT_EQ(show.pictures, (QStringList{"/p/a.jpg", "/v/c.mov"}));
    EXPECT_EQ(show.music, (QStringList{"/m/x.mp3", "/m/y.MID", "/m/z.m3u", "/m/w.rmi", "/m/v.wav"}));
    EXPECT_EQ(show.lastPicture(), 1);
    EXPECT_EQ(show.lastMusic(), 4);
}

TEST(ShowFile, RunnerAddsTheBasePassForMultipleEffects)
{
    ShowSettings s = runnerDefaults();
    RunnerShow show;
    ShowSettings w;
    w.SlidePasses = 4;
    w.MultipleEffects = true;
    ASSERT_TRUE(readRunnerShow(numbers(w), &s, &show));
    EXPECT_EQ(s.SlidePasses, 5);
    ShowSettings b;
    QStringList paths;
    ASSERT_TRUE(readBuilderShow(numbers(w), &b, &paths));
    EXPECT_EQ(b.SlidePasses, 4);  // the builder keeps the file's count
}

TEST(ShowFile, RunnerArraysFillAndTheReadEndsThere)
{
    QByteArray d = NewShowNumbers;
    for (int i = 0; i < 1502; ++i) d += "/p/" + QByteArray::number(i) + ".jpg\r\n";
    d += "/m/late.mp3\r\n";
    ShowSettings s = runnerDefaults();
    RunnerShow show;
    EXPECT_FALSE(readRunnerShow(d, &s, &show));
    EXPECT_EQ(show.pictures.size(), 1501);
    EXPECT_EQ(show.lastPicture(), 1500);
    EXPECT_EQ(show.pictures.last(), "/p/1500.jpg");
    EXPECT_TRUE(show.music.isEmpty());  // after the failure nothing more is read

    QByteArray m = NewShowNumbers;
    for (int i = 0; i < 305; ++i) m += "/m/" + QByteArray::number(i) + ".mp3\r\n";
    EXPECT_FALSE(readRunnerShow(m, &s, &show));
    EXPECT_EQ(show.music.size(), 301);
    EXPECT_EQ(show.lastMusic(), 300);
}

TEST(ShowFile, RunnerDefaults)
{
    const ShowSettings r = runnerDefaults();
    EXPECT_EQ(r.FrameOuterColor, 16711680u);
    EXPECT_EQ(r.FrameInnerColor, 16777215u);
    EXPECT_EQ(r.FrameColor, 255u);
    EXPECT_EQ(r.PaintEffect, 0);
    EXPECT_EQ(r.TransitionEffect, 1000);
    EXPECT_EQ(r.SlidePasses, 1);
    EXPECT_EQ(r.SlideSeconds, 2);
    EXPECT_FALSE(r.MultipleEffects || r.PaintTransparent || r.OmitFrame);
}

TEST(ShowFile, PathBytesSurviveARoundTrip)
{
    const QString odd = pathFromBytes(QByteArray("/p/caf\xe9.jpg"));
    const QByteArray b = showFileBytes(newShowSettings(), {odd}, {});
    EXPECT_TRUE(b.endsWith(QByteArray("/p/caf\xe9.jpg\r\n")));
    ShowSettings s;
    QStringList paths;
    ASSERT_TRUE(readBuilderShow(b, &s, &paths));
    EXPECT_EQ(paths, QStringList{odd});
}

TEST(ShowFile, SaveMessageHasTwoBlanks)
{
    EXPECT_EQ(saveSuccessText("/h/a.SLS"), "Saving Slide Show - /h/a.SLS  Successful");
}
