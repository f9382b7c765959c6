#include "options_store.h"

#include "errors.h"
#include "text_rules.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <cerrno>
#include <cmath>
#include <cstdio>

namespace tw {

namespace {
const QString ColorsFile = QStringLiteral("/Colors.INI");
const QString OptionsFile = QStringLiteral("/Options.INI");

// Reads a file whole; nullopt-like failure is reported through ok.
QByteArray readAll(const QString &path, bool *ok)
{
    QFile f(path);
    *ok = f.open(QIODevice::ReadOnly);
    if (!*ok) return {};
    QByteArray d = f.readAll();
    if (f.error() != QFileDevice::NoError) *ok = false;
    return d;
}

// Settings files that could not be read since they were last written. The first write
// over such a file keeps the old one beside it as <name>.bak, so that a file the program
// could not read, and replaces with what it read plus defaults, is not lost to the user.
QSet<QString> &unreadFiles()
{
    static QSet<QString> s;
    return s;
}

void keepUnreadCopy(const QString &path)
{
    if (!unreadFiles().remove(path)) return;
    QFileInfo fi(path);
    if (!fi.exists() || fi.isDir()) return;
    const QString bak = path + QStringLiteral(".bak");
    QFile::remove(bak);
    QFile::copy(path, bak);
}

bool exists(const QString &path)
{
    QFileInfo fi(path);
    return fi.exists() && !fi.isDir();
}

StoreResult writeFile(const QString &path, const QByteArray &data)
{
    StoreResult r;
    FILE *f = std::fopen(QFile::encodeName(path).constData(), "wb");
    if (!f) {
        const int err = errno;
        r.ok = false;
        r.error = errorNumberFromErrno(err);
        // A folder that is not there is a path not found, not a file not found.
        if (err == ENOENT && !QFileInfo(QFileInfo(path).absolutePath()).isDir()) r.error = ErrPathNotFound;
        r.message = QStringLiteral("Error: ") + QString::number(r.error) + QStringLiteral(" - ")
            + errorDescription(r.error);
        return r;
    }
    const size_t n = std::fwrite(data.constData(), 1, data.size(), f);
    const int werr = (n != static_cast<size_t>(data.size())) ? errno : 0;
    const int cerr = std::fclose(f) != 0 ? errno : 0;
    if (werr || cerr) {
        r.ok = false;
        r.error = errorNumberFromErrno(werr ? werr : cerr);
        r.message = QStringLiteral("Error: ") + QString::number(r.error) + QStringLiteral(" - ")
            + errorDescription(r.error);
    }
    return r;
}

uint32_t toColor(double v)
{
    if (!std::isfinite(v)) return 0;
    // The low 32 bits of the whole number, for any size of number (a cast of one beyond
    // 64 bits would be undefined).
    const long long l = static_cast<long long>(std::fmod(std::trunc(v), 4294967296.0));
    return static_cast<uint32_t>(l);
}
}  // namespace

QString colorFileText(uint32_t c) { return QString::number(static_cast<int32_t>(c)); }

void SetDefaultColors(ColorSettings &c) { c = ColorSettings{}; }

void SetDefaultOptions(OptionSettings &o, const QString &programDir)
{
    o = OptionSettings{};
    o.LastFolder = programDir;
}

StoreResult LoadColors(ColorSettings &c, const QString &programDir)
{
    const QString path = programDir + ColorsFile;
    StoreResult r;
    if (!exists(path)) {
        r.ok = false;
        r.message = QStringLiteral("Use the Utility Menu Option - Set Window Colors");
        return r;
    }
    bool ok = false;
    DelimitedReader in(readAll(path, &ok));
    if (ok) {
        for (int i = 0; i < ColorSettings::Count; ++i) {
            auto v = in.readNumber();
            if (!v) {
                ok = false;
                break;
            }
            c.field(i) = toColor(*v);
        }
    }
    if (!ok) {
        r.ok = false;
        r.message = QStringLiteral("Error Loading Application Window Colors");
        unreadFiles().insert(path);
    }
    return r;
}

StoreResult SaveColors(const ColorSettings &c, const QString &programDir)
{
    QByteArray line;
    for (int i = 0; i < ColorSettings::Count; ++i) {
        if (i) line += ' ';
        line += colorFileText(c.field(i)).toLatin1();
    }
    line += "\r\n";
    keepUnreadCopy(programDir + ColorsFile);
    return writeFile(programDir + ColorsFile, line);
}

StoreResult LoadOptions(OptionSettings &o, const QString &programDir)
{
    const QString path = programDir + OptionsFile;
    StoreResult r;
    if (!exists(path)) {
        r.ok = false;
        r.message = QStringLiteral("Use the Utility Menu Option - Set Program Options");
        return r;
    }
    bool ok = false;
    DelimitedReader in(readAll(path, &ok));
    auto num = [&](auto &field) {
        if (!ok) return;
        auto v = in.readNumber();
        if (!v) {
            ok = false;
            return;
        }
        using T = std::decay_t<decltype(field)>;
        if constexpr (std::is_integral_v<T>) {
            // Whole-number fields round as the old runtime's conversion does; out-of-range
            // values cannot be read.
            const double rv = std::nearbyint(*v);
            if (rv < static_cast<double>(std::numeric_limits<T>::min())
                || rv > static_cast<double>(std::numeric_limits<T>::max())) {
                ok = false;
                return;
            }
            field = static_cast<T>(rv);
        } else {
            field = *v;
        }
    };
    auto str = [&](QString &field) {
        if (!ok) return;
        auto v = in.readString();
        if (!v) {
            ok = false;
            return;
        }
        field = *v;
    };
    num(o.WindowLeft);
    num(o.WindowTop);
    num(o.WindowHeight);
    num(o.WindowWidth);
    num(o.MenuFontType);
    num(o.MenuStyle);
    num(o.LabelTextStyle);
    num(o.ThumbCellHeight);
    num(o.ThumbCellWidth);
    num(o.ThumbResolution);
    num(o.SplitterPercent);
    num(o.ListViewMode);
    num(o.InitialSearchLimit);
    num(o.NextSearchLimit);
    num(o.JpegQuality);
    str(o.LocalComputerName);
    str(o.LastFolder);
    if (ok) {
        QString flags[OptionSettings::FlagCount];
        for (int i = 0; i < OptionSettings::FlagCount && ok; ++i) {
            // A flag ends at a blank like a number; text that is no number reads as false.
            auto v = in.readField(true);
            if (!v) ok = false;
            else flags[i] = QString::fromLatin1(*v);
        }
        if (ok) {
            // All flags go false first; exactly 1 makes a flag true.
            for (int i = 0; i < OptionSettings::FlagCount; ++i) {
                bool isNum = false;
                const double fv = flags[i].trimmed().toDouble(&isNum);
                o.flag(i) = isNum && fv == 1.0;
            }
        }
    }
    if (!ok) {
        r.ok = false;
        r.message = QStringLiteral("Error Loading Application Options");
        unreadFiles().insert(path);
    }
    return r;
}

StoreResult SaveOptions(const OptionSettings &o, const QString &programDir)
{
    QByteArray d;
    const double line1[15] = {o.WindowLeft,
                              o.WindowTop,
                              o.WindowHeight,
                              o.WindowWidth,
                              o.MenuFontType,
                              o.MenuStyle,
                              double(o.LabelTextStyle),
                              o.ThumbCellHeight,
                              o.ThumbCellWidth,
                              o.ThumbResolution,
                              double(o.SplitterPercent),
                              o.ListViewMode,
                              o.InitialSearchLimit,
                              double(o.NextSearchLimit),
                              o.JpegQuality};
    for (int i = 0; i < 15; ++i) {
        if (i) d += ' ';
        d += plainNumber(line1[i]).toLatin1();
    }
    d += "\r\n";
    d += pathToBytes(o.LocalComputerName) + "\r\n";
    d += pathToBytes(o.LastFolder) + "\r\n";
    OptionSettings &m = const_cast<OptionSettings &>(o);
    for (int i = 0; i < OptionSettings::FlagCount; ++i) {
        if (i) d += ' ';
        d += m.flag(i) ? '1' : '0';
    }
    d += "\r\n";
    keepUnreadCopy(programDir + OptionsFile);
    return writeFile(programDir + OptionsFile, d);
}

}  // namespace tw
