#include "slideshow/show_file.h"

#include "core/catalogue.h"
#include "core/text_rules.h"

#include <QFile>
#include <QSaveFile>
#include <cmath>

namespace tw::slides {

namespace {

int32_t toInt32(double v)
{
    if (!std::isfinite(v)) return 0;
    const double r = std::nearbyint(v);
    if (r >= 2147483647.0) return 2147483647;
    if (r <= -2147483648.0) return int32_t(-2147483647 - 1);
    return int32_t(r);
}

uint32_t toColour(double v)
{
    if (!std::isfinite(v)) return 0;
    const double r = std::nearbyint(v);
    if (r >= 4294967295.0) return 0xFFFFFFFFu;
    if (r <= -2147483648.0) return 0x80000000u;
    return uint32_t(int64_t(r));
}

// A number as the writer lays it out: Str's blank in front when not negative, one behind.
QByteArray writtenNumber(int64_t v) { return (Str(double(v)) + u' ').toLatin1(); }

bool readNumbers(DelimitedReader &r, ShowSettings *s)
{
    for (int i = 0; i < ShowSettings::FieldCount; ++i) {
        const auto v = r.readNumber();
        if (!v) return false;
        s->setField(i, *v);
    }
    return true;
}

}  // namespace

const char *ShowSettings::fieldName(int i)
{
    static const char *const names[FieldCount] = {"SlidePasses",
                                                  "PaintEffect",
                                                  "PaintGrain",
                                                  "PaintDelay",
                                                  "PaintWand",
                                                  "TransitionEffect",
                                                  "TransitionGrain",
                                                  "TransitionDelay",
                                                  "TransitionWand",
                                                  "TransitionStyle",
                                                  "SlideSeconds",
                                                  "GradientStyle",
                                                  "GradientFill",
                                                  "EffectOption",
                                                  "PaintTransparent",
                                                  "MultipleEffects",
                                                  "OmitFrame",
                                                  "PaintColor",
                                                  "PaintTransparentColor",
                                                  "TransitionColor",
                                                  "PatternColor1",
                                                  "PatternColor2",
                                                  "PatternColor3",
                                                  "PatternColor4",
                                                  "FrameColor",
                                                  "FrameInnerColor",
                                                  "FrameOuterColor"};
    return i >= 0 && i < FieldCount ? names[i] : "";
}

int64_t ShowSettings::field(int i) const
{
    switch (i) {
    case 0:
        return SlidePasses;
    case 1:
        return PaintEffect;
    case 2:
        return PaintGrain;
    case 3:
        return PaintDelay;
    case 4:
        return PaintWand;
    case 5:
        return TransitionEffect;
    case 6:
        return TransitionGrain;
    case 7:
        return TransitionDelay;
    case 8:
        return TransitionWand;
    case 9:
        return TransitionStyle;
    case 10:
        return SlideSeconds;
    case 11:
        return GradientStyle;
    case 12:
        return GradientFill;
    case 13:
        return EffectOption;
    case 14:
        return PaintTransparent ? 1 : 0;
    case 15:
        return MultipleEffects ? 1 : 0;
    case 16:
        return OmitFrame ? 1 : 0;
    // Colours are written as the signed 32-bit numbers they are held in.
    case 17:
        return int32_t(PaintColor);
    case 18:
        return int32_t(PaintTransparentColor);
    case 19:
        return int32_t(TransitionColor);
    case 20:
        return int32_t(PatternColor1);
    case 21:
        return int32_t(PatternColor2);
    case 22:
        return int32_t(PatternColor3);
    case 23:
        return int32_t(PatternColor4);
    case 24:
        return int32_t(FrameColor);
    case 25:
        return int32_t(FrameInnerColor);
    case 26:
        return int32_t(FrameOuterColor);
    default:
        return 0;
    }
}

void ShowSettings::setField(int i, double v)
{
    switch (i) {
    case 0:
        SlidePasses = toInt32(v);
        break;
    case 1:
        PaintEffect = toInt32(v);
        break;
    case 2:
        PaintGrain = toInt32(v);
        break;
    case 3:
        PaintDelay = toInt32(v);
        break;
    case 4:
        PaintWand = toInt32(v);
        break;
    case 5:
        TransitionEffect = toInt32(v);
        break;
    case 6:
        TransitionGrain = toInt32(v);
        break;
    case 7:
        TransitionDelay = toInt32(v);
        break;
    case 8:
        TransitionWand = toInt32(v);
        break;
    case 9:
        TransitionStyle = toInt32(v);
        break;
    case 10:
        SlideSeconds = toInt32(v);
        break;
    case 11:
        GradientStyle = toInt32(v);
        break;
    case 12:
        GradientFill = toInt32(v);
        break;
    case 13:
        EffectOption = toInt32(v);
        break;
    // A flag is true only when its field is exactly 1.
    case 14:
        PaintTransparent = toInt32(v) == 1;
        break;
    case 15:
        MultipleEffects = toInt32(v) == 1;
        break;
    case 16:
        OmitFrame = toInt32(v) == 1;
        break;
    case 17:
        PaintColor = toColour(v);
        break;
    case 18:
        PaintTransparentColor = toColour(v);
        break;
    case 19:
        TransitionColor = toColour(v);
        break;
    case 20:
        PatternColor1 = toColour(v);
        break;
    case 21:
        PatternColor2 = toColour(v);
        break;
    case 22:
        PatternColor3 = toColour(v);
        break;
    case 23:
        PatternColor4 = toColour(v);
        break;
    case 24:
        FrameColor = toColour(v);
        break;
    case 25:
        FrameInnerColor = toColour(v);
        break;
    case 26:
        FrameOuterColor = toColour(v);
        break;
    default:
        break;
    }
}

ShowSettings newShowSettings() { return ShowSettings{}; }

ShowSettings runnerDefaults()
{
    ShowSettings s;
    s.FrameOuterColor = 16711680;
    s.FrameInnerColor = 16777215;
    s.FrameColor = 255;
    s.PaintEffect = 0;
    s.TransitionEffect = 1000;
    s.SlidePasses = 1;
    s.SlideSeconds = 2;
    s.MultipleEffects = s.PaintTransparent = s.OmitFrame = false;
    return s;
}

QByteArray showFileBytes(const ShowSettings &s, const QStringList &pictures, const QStringList &music)
{
    QByteArray out;
    for (int i = 0; i < ShowSettings::Line1Count; ++i) out += writtenNumber(s.field(i));
    out += "\r\n";
    for (int i = ShowSettings::Line1Count; i < ShowSettings::FieldCount; ++i)
        out += writtenNumber(s.field(i));
    out += "\r\n";
    for (const QString &p : pictures) out += pathToBytes(p) + "\r\n";
    for (const QString &p : music) out += pathToBytes(p) + "\r\n";
    return out;
}

bool writeShowFile(const QString &path, const ShowSettings &s, const QStringList &pictures,
                   const QStringList &music)
{
    if (path.isEmpty()) return false;
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly)) return false;
    const QByteArray bytes = showFileBytes(s, pictures, music);
    if (f.write(bytes) != bytes.size()) {
        f.cancelWriting();
        return false;
    }
    return f.commit();
}

bool readBuilderShow(const QByteArray &data, ShowSettings *s, QStringList *paths)
{
    paths->clear();
    DelimitedReader r(data);
    if (!readNumbers(r, s)) return false;
    // The paths, one field at a time: a comma or a line end ends a field, so a path holding
    // a comma arrives in pieces.
    while (!r.atEnd()) {
        const auto f = r.readString();
        if (!f) break;
        paths->append(*f);
    }
    return true;
}

bool readBuilderShowFile(const QString &path, ShowSettings *s, QStringList *paths)
{
    paths->clear();
    QFile f(path);
    if (path.isEmpty() || !f.open(QIODevice::ReadOnly)) return false;
    return readBuilderShow(f.readAll(), s, paths);
}

bool readRunnerShow(const QByteArray &data, ShowSettings *s, RunnerShow *show)
{
    show->pictures.clear();
    show->music.clear();
    DelimitedReader r(data);
    if (!readNumbers(r, s)) return false;
    // The file's pass count leaves out the base effect's own pass.
    if (s->MultipleEffects) s->SlidePasses += 1;
    while (!r.atEnd()) {
        const auto f = r.readString();
        if (!f) break;
        if (isShowMusicExt(GetFileExt(*f))) {
            if (show->music.size() >= ShowMusicSlots) return false;
            show->music.append(*f);
        } else {
            if (show->pictures.size() >= ShowPictureSlots) return false;
            show->pictures.append(*f);
        }
    }
    return true;
}

bool readRunnerShowFile(const QString &path, ShowSettings *s, RunnerShow *show)
{
    show->pictures.clear();
    show->music.clear();
    QFile f(path);
    if (path.isEmpty() || !f.open(QIODevice::ReadOnly)) return false;
    return readRunnerShow(f.readAll(), s, show);
}

bool isShowMusicExt(const QString &ext)
{
    return ext == QLatin1String("MID") || ext == QLatin1String("WAV") || ext == QLatin1String("RMI")
        || ext == QLatin1String("MP3") || ext == QLatin1String("M3U");
}

int builderListFor(const QString &path)
{
    const QString ext = GetFileExt(path);
    if (ext.isEmpty()) return -1;
    if (!Cat.built()) Cat.fillExtensions();
    const int row = Cat.extRow(ext);
    if (row < 0) return -1;
    if (row <= PictureLast) return 0;
    if (row >= MediaFirst && row <= MediaLast) return 1;
    return -1;
}

QString saveSuccessText(const QString &path)
{
    return QStringLiteral("Saving Slide Show - ") + path + QStringLiteral("  Successful");
}

}  // namespace tw::slides
