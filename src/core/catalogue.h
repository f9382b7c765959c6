// The file-type vocabulary: filter rows, the extension table whose row ranges are the
// file kinds, the save format table, and the routines that read them.
#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>

namespace tw {

constexpr int FilterSlots = 41;  // rows 0..35 filled, the last five stay empty
constexpr int FilterRows = 36;
constexpr int FilterPatternWidth = 384;
constexpr int FileExtCount = 86;

// Row ranges of the extension table.
constexpr int PictureFirst = 0, PictureLast = 39;
constexpr int MediaFirst = 40, MediaLast = 61;
constexpr int VideoFirst = 49, VideoLast = 61;
constexpr int DocumentFirst = 62, DocumentLast = 83;
constexpr int CdFirst = 84, CdLast = 85;

// Literal tables, as the program was built with them.
const std::array<QString, FilterRows> &filterNameLiterals();
const std::array<QString, FilterRows> &filterPatternLiterals();
const std::array<QString, FileExtCount> &fileExtLiterals();
extern const QString MediaFilterExtraLiteral;
extern const QString SaveFormatTable;
// The favorite-list editor's own 36 rows, and its three-piece opening pattern.
const std::array<QString, FilterRows> &favListFilterNames();
const std::array<QString, FilterRows> &favListFilterPatterns();
QString favListOpeningPattern();

// The catalogue as the main window holds it after start-up.
struct Catalogue {
    std::array<QString, FilterSlots> FilterNames;
    std::array<QString, FilterSlots> FilterPatterns;  // 384 characters, blank-padded
    QString MediaFilterExtra;
    std::array<QString, FileExtCount> FileExtTable;

    void fillFilters();  // rows 0..35 of both arrays
    void fillExtensions();
    bool built() const { return !FileExtTable[0].isEmpty(); }
    // Row of the extension table equal to Ext (exact), or -1.
    int extRow(const QString &ext) const;
};

extern Catalogue Cat;

// Upper-case text behind the last dot, or "" (no dot, or more than 8 characters).
QString GetFileExt(const QString &path);
// 1-based row of the save format table that holds Pattern; 1 when it is not there.
int16_t GetFileFilterType(const QString &pattern);
bool IsMediaFile(const QString &path);
bool IsVideoFile(const QString &path);
bool IsPictureExt(const QString &ext);
// The document extensions that the document viewer shows rather than the text box.
bool IsViewerDocumentExt(const QString &ext, bool includePhpPdf);

// Semicolon-separated patterns (trimmed), matched ignoring case, as a shell list does.
bool matchesPatternList(const QString &fileName, const QString &patternList);

}  // namespace tw
