// The .SLS slide-show file: 17 numbers on the first line, 10 on the second, then one path a
// line, pictures first, music after. The builder and the runner each read it their own way:
// the builder sorts the paths by the catalogue, the runner by a short list of music
// extensions, into fixed arrays.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstdint>

namespace tw::slides {

struct ShowSettings {
    // Line 1
    int32_t SlidePasses = 1;
    int32_t PaintEffect = 0;
    int32_t PaintGrain = 5;
    int32_t PaintDelay = 10;
    int32_t PaintWand = 10;
    int32_t TransitionEffect = 1000;
    int32_t TransitionGrain = 5;
    int32_t TransitionDelay = 10;
    int32_t TransitionWand = 10;
    int32_t TransitionStyle = 0;
    int32_t SlideSeconds = 2;
    int32_t GradientStyle = 1;
    int32_t GradientFill = 4000;
    int32_t EffectOption = 256;
    bool PaintTransparent = false;
    bool MultipleEffects = false;
    bool OmitFrame = false;
    // Line 2: colours, 0xBBGGRR
    uint32_t PaintColor = 65280;
    uint32_t PaintTransparentColor = 0;
    uint32_t TransitionColor = 0;
    uint32_t PatternColor1 = 255;
    uint32_t PatternColor2 = 16711680;
    uint32_t PatternColor3 = 255;
    uint32_t PatternColor4 = 16711680;
    uint32_t FrameColor = 255;
    uint32_t FrameInnerColor = 65280;
    uint32_t FrameOuterColor = 16711680;

    static constexpr int Line1Count = 17;
    static constexpr int Line2Count = 10;
    static constexpr int FieldCount = Line1Count + Line2Count;
    // Field i (0-based, file order) as the number the file holds, and back.
    int64_t field(int i) const;
    // The name of a field, as scenarios read it ("SlidePasses" ... "FrameOuterColor").
    static const char *fieldName(int i);
    void setField(int i, double v);

    bool operator==(const ShowSettings &) const = default;
};

// The values of a new show in the builder.
ShowSettings newShowSettings();
// The runner's values before a read, and those of a run on a folder.
ShowSettings runnerDefaults();

// The bytes the builder writes: the two lines of numbers (each number with a blank in front
// when not negative and one behind), then the pictures and the music, one path a line, CR LF.
QByteArray showFileBytes(const ShowSettings &s, const QStringList &pictures, const QStringList &music);
// Writes the file atomically (a temporary file renamed over it); false when it failed.
bool writeShowFile(const QString &path, const ShowSettings &s, const QStringList &pictures,
                   const QStringList &music);

// The builder's read: the 27 numbers into S (each stored as read, so a failure leaves what
// came before it) and every later field, one at a time, for AddFile. False when the file
// could not be opened or a number could not be read; Paths then holds nothing.
bool readBuilderShow(const QByteArray &data, ShowSettings *s, QStringList *paths);
bool readBuilderShowFile(const QString &path, ShowSettings *s, QStringList *paths);

// The runner's arrays: slots 0..1500 for pictures, 0..300 for music.
constexpr int ShowPictureSlots = 1501;
constexpr int ShowMusicSlots = 301;
struct RunnerShow {
    QStringList pictures;  // ShowPictures[0..LastPicture]
    QStringList music;  // ShowMusic[0..]
    int lastPicture() const { return int(pictures.size()) - 1; }
    int lastMusic() const { return int(music.size()) - 1; }
};
// The runner's read into S (already at runnerDefaults()) and Show. With MultipleEffects the
// pass count gains one (the base effect's own pass). A path whose extension is MID, WAV, RMI,
// MP3 or M3U goes to the music, anything else to the pictures; an array that is full ends the
// read there. False when the read failed somewhere; what was read stays.
bool readRunnerShow(const QByteArray &data, ShowSettings *s, RunnerShow *show);
bool readRunnerShowFile(const QString &path, ShowSettings *s, RunnerShow *show);

// The music extensions of the runner and of the builder's file list.
bool isShowMusicExt(const QString &ext);
// The list AddFile files a path in by the catalogue: 0 pictures, 1 music, -1 dropped.
int builderListFor(const QString &path);

// "Saving Slide Show - <path>  Successful"
QString saveSuccessText(const QString &path);

}  // namespace tw::slides
