#include "media/media_lists.h"
#include "media/midi_render.h"
#include "media/open_file_dialog.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tw;

namespace {
// A standard MIDI file of one track: a few piano notes, then the end of the track.
QByteArray smallMidi()
{
    QByteArray track;
    auto ev = [&](std::initializer_list<int> b) {
        for (int x : b) track.append(char(x));
    };
    for (int note : {60, 64, 67}) {
        ev({0x00, 0x90, note, 100});  // note on
        ev({0x60, 0x80, note, 0});  // note off after 96 ticks
    }
    ev({0x00, 0xFF, 0x2F, 0x00});
    QByteArray f("MThd\0\0\0\6\0\0\0\1\0\x60", 14);
    f += "MTrk";
    const int n = int(track.size());
    f.append(char(n >> 24)).append(char(n >> 16)).append(char(n >> 8)).append(char(n));
    return f + track;
}
}  // namespace

TEST(MediaLists, AsxEntriesAbsoluteRelativeAndAddresses)
{
    const QByteArray xml = "<ASX version=\"3.0\"><Entry><Ref HREF=\"one.wav\"/></Entry>"
                           "<entry><ref href=\"/abs/two.mp3\"/></entry>"
                           "<entry><ref href=\"http://host/three.mp3\"/></entry></ASX>";
    EXPECT_EQ(asxEntries(xml, QStringLiteral("/lists")),
              (QStringList{QStringLiteral("/lists/one.wav"), QStringLiteral("/abs/two.mp3"),
                           QStringLiteral("http://host/three.mp3")}));
    EXPECT_TRUE(asxEntries("<asx><broken", QStringLiteral("/")).isEmpty());
    EXPECT_TRUE(playListEntries(QStringLiteral("/no/such.asx")).isEmpty());
    EXPECT_TRUE(playListEntries(QStringLiteral("/x/a.m3u")).isEmpty());
}

TEST(MidiRender, ASmallFileBecomesAWaveFile)
{
    if (soundFontPath().isEmpty()) GTEST_SKIP() << "no General MIDI sound font";
    QTemporaryDir d;
    const QString mid = d.filePath(QStringLiteral("t.mid"));
    QFile f(mid);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(smallMidi());
    f.close();
    const QString wav = renderMidi(mid);
    ASSERT_FALSE(wav.isEmpty());
    QFile w(wav);
    ASSERT_TRUE(w.open(QIODevice::ReadOnly));
    const QByteArray b = w.readAll();
    EXPECT_TRUE(b.startsWith("RIFF"));
    EXPECT_EQ(b.mid(8, 8), QByteArray("WAVEfmt "));
    // Three notes of half a second at 120 beats a minute, plus the tail: a second or more.
    EXPECT_GT(b.size(), 44100 * 4);
    // Once made, the same rendering is used again.
    EXPECT_EQ(renderMidi(mid), wav);
}

TEST(MidiRender, RmiDataAndBadInput)
{
    const QByteArray smf = smallMidi();
    QByteArray rmi("RIFF\0\0\0\0RMIDdata", 16);
    const int n = int(smf.size());
    rmi.append(char(n)).append(char(n >> 8)).append(char(n >> 16)).append(char(n >> 24));
    rmi += smf;
    EXPECT_EQ(midiData(rmi), smf);
    EXPECT_EQ(midiData(smf), smf);
    QTemporaryDir d;
    const QString bad = d.filePath(QStringLiteral("bad.mid"));
    QFile f(bad);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("MThd but nothing else");
    f.close();
    EXPECT_TRUE(renderMidi(bad).isEmpty());
    EXPECT_TRUE(renderMidi(d.filePath(QStringLiteral("gone.mid"))).isEmpty());
}

TEST(OpenFileDialog, OldFiltersBecomeNameFiltersOfBothCases)
{
    EXPECT_EQ(qtNameFilters(QStringLiteral("AVI Files|*.AVI|MPG Files|*.MPG;*.MPEG")),
              (QStringList{QStringLiteral("AVI Files (*.AVI *.avi)"),
                           QStringLiteral("MPG Files (*.MPG *.mpg *.MPEG *.mpeg)")}));
    EXPECT_TRUE(qtNameFilters(QString()).isEmpty());
}
