// Reading folders for the panes and the search walk: one plain directory read per call,
// the folder identity that breaks symbolic-link loops, the pattern lists of the list and
// of the hidden count, and the name order of a file manager.
#pragma once

#include <QString>
#include <QStringView>
#include <cstdint>
#include <functional>
#include <sys/types.h>
#include <vector>

namespace tw::browse {

// The identity of a folder on disk: two paths that reach the same folder (a symbolic link,
// a bind mount) give the same identity.
struct FolderId {
    dev_t dev = 0;
    ino_t ino = 0;
    bool valid = false;
    bool operator==(const FolderId &o) const { return valid && o.valid && dev == o.dev && ino == o.ino; }
};
struct FolderIdHash {
    size_t operator()(const FolderId &f) const
    {
        return std::hash<uint64_t>()(uint64_t(f.dev) * 1000003u ^ uint64_t(f.ino));
    }
};

// The error number of a failed folder read: a folder that is not there is "Path not found"
// (76), a device that does not answer "Device unavailable" (68), the rest as the core maps it.
int folderErrorNumber(int err);

// Identity of the folder at Path (symbolic links followed); invalid when it cannot be read.
FolderId folderIdOf(const QString &path);

// The sub-folders of a folder, hidden ones (leading dot) left out, with their identities.
struct SubFolder {
    QString name;
    FolderId id;
};
// Returns 0 or the error number of the failure.
int readSubFolders(const QString &path, std::vector<SubFolder> &out);

// One entry of a folder as the file list shows it.
struct ListEntry {
    QString name;
    bool isDir = false;
    qint64 size = 0;
    qint64 mtimeMs = 0;
};
// Every visible entry (no leading dot); files only when they match Patterns (folders always).
int readListEntries(const QString &path, const class PatternSet &patterns, std::vector<ListEntry> &out);

// A compiled list of semicolon-separated file patterns ("*.JPG;*.JPE"), matched ignoring
// case; "*.*" matches every name. The same rules as the catalogue's pattern matcher, compiled
// once so that a walk over many thousand files pays for a byte comparison only.
class PatternSet {
public:
    PatternSet() = default;
    explicit PatternSet(const QString &patternList) { set(patternList); }
    void set(const QString &patternList);
    const QString &text() const { return text_; }
    bool matches(const QString &name) const;
    // Name in the file system's bytes (UTF-8).
    bool matchesBytes(const char *name, size_t len) const;

private:
    struct Glob {
        QString text;  // the pattern, as given (trimmed)
        QByteArray lower;  // ASCII-lowered UTF-8, for the byte matcher
        bool all = false;  // "*" or "*.*"
        bool ascii = true;
        bool hasQuestion = false;
    };
    QString text_;
    std::vector<Glob> globs_;
};

// The hidden list File1 of the walk: a pattern-filtered count of a folder's plain files.
// Setting a path that cannot be read gives an error number and keeps the earlier folder
// and count, as a file list control that refuses a bad path does.
class FileCounter {
public:
    void setPattern(const QString &pattern)
    {
        patterns_.set(pattern);
        pattern_ = pattern;
    }
    const QString &pattern() const { return pattern_; }
    // Returns 0 or the error number; on success Path and ListCount change.
    int setPath(const QString &path);
    const QString &path() const { return path_; }
    int listCount() const { return count_; }

private:
    QString pattern_ = QStringLiteral("*.*");
    PatternSet patterns_{QStringLiteral("*.*")};
    QString path_;
    int count_ = 0;
};

// File manager order of names: ignoring case, runs of digits by their value.
int naturalCompare(QStringView a, QStringView b);
inline bool naturalLess(const QString &a, const QString &b) { return naturalCompare(a, b) < 0; }

// Test hook: a function that makes the reader fail on chosen folders with an errno value
// (0 lets the read go on). Unit tests use it to reach failures that root cannot meet.
void setReadFaultHook(std::function<int(const QString &)> hook);

}  // namespace tw::browse
