#include "catalogue.h"

#include <QRegularExpression>
#include <QHash>

namespace tw {

Catalogue Cat;

const std::array<QString, FilterRows> &filterNameLiterals()
{
    static const std::array<QString, FilterRows> t = {
        "JPEG and LEAD Compressed (JPG and CMP)",
        "TIFF Formats",
        "BMP Formats",
        "Icons and Cursors",
        "PCX Formats",
        "Kodak Formats (PCD And FPX)",
        "Microsoft Fax Format (AWD)",
        "Exif Formats (TIFF And JPG)",
        "Windows MetaFile Formats (WMF and EMF)",
        "Raw Fax Format (FAX)",
        "XPicMap (XPM)",
        "Interchange Format (IFF)",
        "Portable Bitmap Utilities (PBM)",
        "Dr.Halo (CUT)",
        "Photoshop 3.0 Format (PSD)",
        "Portable Network Graphics Format (PNG)",
        "Truevision TARGA Format (TGA)",
        "Encapsulated PostScript (EPS)",
        "SUN Raster Format (RAS)",
        "WorkPerfect Format (WPG)",
        "Macintosh Pict Format (PCT)",
        "Microsoft Windows Clipboard (CLP)",
        "X Window Dump (XWD)",
        "Flic Animation (FLC)",
        "Windows Animated Cursor (ANI)",
        "Silicon Graphics Image (SGI)",
        "Wave Files (WAV)",
        "MIDI Files (MID, RMI)",
        "Audio-Video (AVI, MPG, MPEG, MOV,WMV)",
        "Music Files (MP3,WMA)",
        "Miscellaneous 1 bit (MAC,IMG,MSP,ICA,CAL) ",
        "All Picture Files",
        "CD Player Files",
        "All MultiMedia Files",
        "Text Files (TXT,RTF,INI,WRI,LST,HTM,HTML)",
        "All Files (*.*)",
    };
    return t;
}

const std::array<QString, FilterRows> &filterPatternLiterals()
{
    static const std::array<QString, FilterRows> t = {
        "*.JPG;*.JPE;*.JPEG;*.CMP",
        "*.TIFF;*.TIF;*.MPT",
        "*.BMP",
        "*.ICO;*.CUR",
        "*.PCX;*.DCX",
        "*.PCD;*.FPX",
        "*.AWD",
        "*.TIFF;*.TIF;*.JPG",
        "*.WMF;*.EMF",
        "*.FAX",
        "*.XPM",
        "*.IFF",
        "*.PBM",
        "*.CUT",
        "*.PSD",
        "*.PNG",
        "*.TGA",
        "*.EPS",
        "*.RAS",
        "*.WPG",
        "*.PCT",
        "*.CLP",
        "*.XWD",
        "*.FLC",
        "*.ANI",
        "*.SGI",
        "*.WAV",
        "*.MID;*.RMI",
        "*.AVI;*.MPG;*.MPEG;*.MOV;*.MP2;*.ASF;*.ASX;*.WMV",
        "*.MID;*.RMI;*.MP3;*.M3U;*.WMA",
        "*.MAC;*.IMG;*.MSP;*.ICA;*.CAL",
        "*.JPG;*.JPE;*.JPEG;*.CMP;*.TIFF;*.TIF;*.MPT;*.BMP;*.ICO;*.CUR;*.PCX;*.DCX;*.PCD;*.FPX;"
        "*.DIC;*.WMF;*.EMF;*.FAX;*.AWD;*.XPM;*.IFF;*.PBM;*.CUT;*.PSD;*.PNG;*.TGA;*.EPS;*.JBG;"
        "*.RAS;*.WPG;*.PCT;*.CLP;*.XWP;*.FLC;*.ANI;*.SGI;*.MAC;*.IMG;*.MSP;*.ICA;*.CAL",
        "*.CDA;*.DAT",
        "*.JPG;*.JPE;*.JPEG;*.CMP;*.TIFF;*.TIF;*.MPT;*.BMP;*.ICO;*.CUR;*.PCX;*.DCX;*.PCD;*.FPX;"
        "*.DIC;*.WMF;*.EMF;*.FAX;*.AWD;*.XPM;*.IFF;*.PBM;*.CUT;*.PSD;*.PNG;*.TGA;*.EPS;*.JBG;"
        "*.RAS;*.WPG;*.PCT;*.CLP;*.XWP;*.FLC;*.ANI;*.SGI;*.WAV;*.MID;*.RMI;*.AVI;*.MPG;*.MPEG;"
        "*.MOV;*.MP2;*.ASF;*.ASX;*.MP3;*.M3U;*.MAC;*.IMG;*.MSP;*.ICA;*.CAL",
        "*.TXT;*.RTF;*.INI;*.LOG;*.BAT;*.BAK;*.DOS;*.SYS;*.DOC;*.WPS;*.WDB;*.WRI;*.LST;*.HTM;"
        "*.HTML;*.SHTM;*.SHTML;*.ASP;*.URL;*.MSG;*.PHP;*.PDF",
        "*.*",
    };
    return t;
}

const QString MediaFilterExtraLiteral =
    QStringLiteral("*.JPG;*.JPE;*.CMP;*.TIFF;*.TIF;*.MPT;*.BMP;*.ICO;*.CUR;*.PCX;*.DCX;*.PCD;*.FPX;*.DIC;"
                   "*.WMF;*.EMF;*.FAX;*.AWD;*.XPM;*.IFF;*.PBM;*.CUT;*.PSD;*.PNG;*.TGA;*.EPS;*.JBG;*.RAS;"
                   "*.WPG;*.PCT;*.CLP;*.XWP;*.FLC;*.ANI;*.SGI;*.WAV;*.MID;*.RMI;*.MP3;*.M3U");

const QString SaveFormatTable =
    QStringLiteral("JPeg and Lead Compressed|*.JPG;*.JPE;*.JPEG;*.CMP|TIFF Formats|*.TIFF;*.TIF;*.MPT|"
                   "Bitmap Files|*.BMP|Icons and Cursor FIles|*.ICO;*.CUR|PCX Formats|*.PCX;*.DCX|"
                   "Kodak Formats|*.PCD;*.FPX|Microsoft Fax |*.AWD|Meta Files|*.WMF;*.EMF|"
                   "Raw Fax Format|*.FAX|XPicMap|*.XPM|Interchange File Format|*.IFF|"
                   "Portable Bitmap Utilities|*.PBM|Dr. Halo|*.CUT|Photoshop 3.0 Format|*.PSD|"
                   "Portable Network Graphics Format|*.PNG|TrueVision TARGA Format|*.TGA|"
                   "Encapsulated PostScript|*.EPS|JBIG Format|*.JBG|Sun Raster Format|*.RAS|"
                   "WordPerfect Format|*.WPG|Macintosh Pict Format|*.PCT|Microsoft Windows ClipBoard|*.CLP|"
                   "X Window Dump|*.XWD|Flic Animation|*.FLC|Windows Animated Cursor|*.ANI|"
                   "Silicon Graphics Image|*.SGI|Miscellaneous 1-Bit Formats|*.MAC;*.IMG;*.MSP;*.ICA;*.CAL");

const std::array<QString, FileExtCount> &fileExtLiterals()
{
    static const std::array<QString, FileExtCount> t = {
        // 0..39 pictures
        "JPG",
        "JPE",
        "JPEG",
        "CMP",
        "TIFF",
        "TIF",
        "MPT",
        "BMP",
        "ICO",
        "CUR",
        "PCX",
        "DCX",
        "PCD",
        "FPX",
        "AWD",
        "WMF",
        "EMF",
        "FAX",
        "XPM",
        "IFF",
        "PBM",
        "CUT",
        "PSD",
        "PNG",
        "TGA",
        "EPS",
        "JBG",
        "RAS",
        "WPG",
        "PCT",
        "CLP",
        "XWD",
        "FLC",
        "ANI",
        "SGI",
        "ICA",
        "CAL",
        "MAC",
        "IMG",
        "MSP",
        // 40..48 sound
        "WAV",
        "SND",
        "AU",
        "AIF",
        "AIFC",
        "AIFF",
        "MID",
        "RMI",
        "MP3",
        // 49..61 video and what plays with a picture frame
        "M3U",
        "AVI",
        "MPG",
        "MPEG",
        "MOV",
        "ASX",
        "ASF",
        "QT",
        "WMA",
        "WMV",
        "MPE",
        "M1V",
        "MP2",
        // 62..83 documents
        "TXT",
        "RTF",
        "INI",
        "LOG",
        "BAT",
        "BAK",
        "DOS",
        "SYS",
        "DOC",
        "WPS",
        "WDB",
        "WRI",
        "LST",
        "HTM",
        "HTML",
        "SHTM",
        "SHTML",
        "URL",
        "MSG",
        "ASP",
        "PHP",
        "PDF",
        // 84..85 CD audio
        "DAT",
        "CDA",
    };
    return t;
}

const std::array<QString, FilterRows> &favListFilterNames()
{
    static const std::array<QString, FilterRows> t = [] {
        std::array<QString, FilterRows> a = filterNameLiterals();
        a[0] = "JPEG and LEAD Compressed (JPG, JPEG and CMP)";
        a[28] = "Audio-Video (AVI, MPG, MPEG, MOV)";
        a[29] = "Music Files (MP3)";
        return a;
    }();
    return t;
}

const std::array<QString, FilterRows> &favListFilterPatterns()
{
    static const std::array<QString, FilterRows> t = [] {
        std::array<QString, FilterRows> a = filterPatternLiterals();
        a[28] = "*.AVI;*.MPG;*.MPEG;*.MOV;*.MP2;*.ASF;*.ASX";
        a[29] = "*.MID;*.RMI;*.MP3;*.M3U";
        QString r31 = a[31];
        r31.replace(QLatin1String("*.JPEG;"), QString());
        a[31] = r31;
        a[34] = "*.TXT;*.RTF;*.INI;*.LOG;*.BAT;*.BAK;*.DOS;*.SYS;*.DOC;*.WPS;*.WDB;*.WRI;*.LST;"
                "*.HTM;*.HTML;*.SHTM;*.SHTML;*.ASP;*.URL;*.MSG;*.PDF;*.PHP";
        return a;
    }();
    return t;
}

QString favListOpeningPattern()
{
    return QStringLiteral("*.WAV;*.MID;*.RMI;*.AVI;*.MPG;*.MPEG;*.MOV;*.MP3")
        + QStringLiteral("*.XPM;*.IFF;*.PBM;*.CUT;*.PSD;*.PNG;*.TGA;*.EPS;*.JBG;*.RAS;*.WPG;"
                         "*.PCT;*.CLP;*.XWD;*.FLC;*.ANI;*.SGI;")
        + QStringLiteral("*.JPG;*.JPE;*.CMP;*.TIF;*.TIF;*.MPT;*.BMP;*.ICO;*.CUR;*.PCX;*.DCX;"
                         "*.PCD;*.FPX;*.AWD;*.WMF;*.EMF;*.FAX;");
}

void Catalogue::fillFilters()
{
    for (int i = 0; i < FilterRows; ++i) {
        FilterNames[i] = filterNameLiterals()[i];
        FilterPatterns[i] = filterPatternLiterals()[i].leftJustified(FilterPatternWidth, u' ', true);
    }
}

void Catalogue::fillExtensions() { FileExtTable = fileExtLiterals(); }

int Catalogue::extRow(const QString &ext) const
{
    const auto &t = built() ? FileExtTable : fileExtLiterals();
    for (int i = 0; i < FileExtCount; ++i)
        if (t[i] == ext) return i;
    return -1;
}

QString GetFileExt(const QString &path)
{
    const int dot = path.lastIndexOf(u'.');
    if (dot < 0) return QString();
    const int start = dot + 2;  // 1-based position behind the dot
    if (path.size() - start > 7) return QString();
    return path.mid(dot + 1).toUpper();
}

int16_t GetFileFilterType(const QString &pattern)
{
    const QString table = SaveFormatTable.toUpper();
    const int pos = pattern.isEmpty() ? -1 : table.indexOf(pattern);  // 0-based
    const QString front = pos < 0 ? QString() : table.left(pos + 1);
    int count = 1;
    for (int i = 0; i < front.size() - 1; ++i)
        if (front[i] == u'|') ++count;
    return static_cast<int16_t>(static_cast<int>(count / 2.0 + 0.5));
}

static bool inRows(const QString &ext, int first, int last)
{
    if (ext.isEmpty()) return false;
    const int r = Cat.extRow(ext);
    return r >= first && r <= last;
}

bool IsMediaFile(const QString &path)
{
    const QString e = GetFileExt(path);
    return inRows(e, MediaFirst, MediaLast) || inRows(e, CdFirst, CdLast);
}

bool IsVideoFile(const QString &path) { return inRows(GetFileExt(path), VideoFirst, VideoLast); }

bool IsPictureExt(const QString &ext) { return inRows(ext, PictureFirst, PictureLast); }

bool IsViewerDocumentExt(const QString &ext, bool includePhpPdf)
{
    static const QStringList base = {"DOC", "HTM", "HTML", "SHTM", "SHTML", "WPS", "ASP"};
    if (base.contains(ext)) return true;
    return includePhpPdf && (ext == QLatin1String("PHP") || ext == QLatin1String("PDF"));
}

bool matchesPatternList(const QString &fileName, const QString &patternList)
{
    static QHash<QString, QList<QRegularExpression>> cache;
    auto it = cache.find(patternList);
    if (it == cache.end()) {
        QList<QRegularExpression> res;
        for (const QString &p : patternList.split(u';', Qt::SkipEmptyParts)) {
            const QString t = p.trimmed();
            if (t.isEmpty()) continue;
            // "*.*" matches every name, with or without a dot, as the shell list does.
            const QString glob = (t == QLatin1String("*.*")) ? QStringLiteral("*") : t;
            QString rx;
            for (const QChar ch : glob) {
                if (ch == u'*') rx += QStringLiteral(".*");
                else if (ch == u'?') rx += u'.';
                else rx += QRegularExpression::escape(QString(ch));
            }
            res << QRegularExpression(QRegularExpression::anchoredPattern(rx),
                                      QRegularExpression::CaseInsensitiveOption);
        }
        if (cache.size() > 256) cache.clear();
        it = cache.insert(patternList, res);
    }
    for (const auto &re : *it)
        if (re.match(fileName).hasMatch()) return true;
    return false;
}

}  // namespace tw
