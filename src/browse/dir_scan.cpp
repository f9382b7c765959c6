#include "browse/dir_scan.h"

#include "core/errors.h"

#include <QFile>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tw::browse {

namespace {

std::function<int(const QString &)> &faultHook()
{
    static std::function<int(const QString &)> h;
    return h;
}

// Opens a folder for reading; null with errno set on failure.
DIR *openFolder(const QString &path)
{
    if (faultHook()) {
        if (const int e = faultHook()(path)) {
            errno = e;
            return nullptr;
        }
    }
    if (path.isEmpty()) {
        errno = ENOENT;
        return nullptr;
    }
    const QByteArray p = QFile::encodeName(path);
    return ::opendir(p.constData());
}

inline bool hiddenName(const char *n) { return n[0] == '.'; }

inline unsigned char asciiLower(unsigned char c) { return (c >= 'A' && c <= 'Z') ? c + 32 : c; }

// Glob on bytes: '*' any run, '?' one byte, the rest equal ignoring ASCII case. Pattern
// bytes are lower case already.
bool globBytes(const unsigned char *p, size_t pn, const unsigned char *s, size_t sn)
{
    size_t pi = 0, si = 0, starP = size_t(-1), starS = 0;
    while (si < sn) {
        if (pi < pn && (p[pi] == '?' || (p[pi] != '*' && p[pi] == asciiLower(s[si])))) {
            ++pi;
            ++si;
        } else if (pi < pn && p[pi] == '*') {
            starP = pi++;
            starS = si;
        } else if (starP != size_t(-1)) {
            pi = starP + 1;
            si = ++starS;
        } else {
            return false;
        }
    }
    while (pi < pn && p[pi] == '*') ++pi;
    return pi == pn;
}

// The same on UTF-16 text, folding case.
bool globText(QStringView p, QStringView s)
{
    qsizetype pi = 0, si = 0, starP = -1, starS = 0;
    auto eq = [](QChar a, QChar b) { return a == b || a.toCaseFolded() == b.toCaseFolded(); };
    while (si < s.size()) {
        if (pi < p.size() && (p[pi] == u'?' || (p[pi] != u'*' && eq(p[pi], s[si])))) {
            ++pi;
            ++si;
        } else if (pi < p.size() && p[pi] == u'*') {
            starP = pi++;
            starS = si;
        } else if (starP >= 0) {
            pi = starP + 1;
            si = ++starS;
        } else {
            return false;
        }
    }
    while (pi < p.size() && p[pi] == u'*') ++pi;
    return pi == p.size();
}

}  // namespace

void setReadFaultHook(std::function<int(const QString &)> hook) { faultHook() = std::move(hook); }

int folderErrorNumber(int err)
{
    switch (err) {
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
        return ErrPathNotFound;
    case ENXIO:
    case ENODEV:
    case ENOMEDIUM:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ETIMEDOUT:
    case ESTALE:
        return ErrDeviceUnavailable;
    default:
        return errorNumberFromErrno(err);
    }
}

FolderId folderIdOf(const QString &path)
{
    FolderId id;
    struct stat st;
    const QByteArray p = QFile::encodeName(path);
    if (!path.isEmpty() && ::stat(p.constData(), &st) == 0 && S_ISDIR(st.st_mode)) {
        id.dev = st.st_dev;
        id.ino = st.st_ino;
        id.valid = true;
    }
    return id;
}

int readSubFolders(const QString &path, std::vector<SubFolder> &out)
{
    out.clear();
    DIR *d = openFolder(path);
    if (!d) return folderErrorNumber(errno);
    const int fd = ::dirfd(d);
    errno = 0;
    while (dirent *e = ::readdir(d)) {
        if (hiddenName(e->d_name)) continue;
        const unsigned char t = e->d_type;
        if (t != DT_DIR && t != DT_LNK && t != DT_UNKNOWN) continue;
        struct stat st;
        if (::fstatat(fd, e->d_name, &st, 0) != 0 || !S_ISDIR(st.st_mode)) continue;
        SubFolder f;
        f.name = QFile::decodeName(e->d_name);
        f.id.dev = st.st_dev;
        f.id.ino = st.st_ino;
        f.id.valid = true;
        out.push_back(std::move(f));
    }
    ::closedir(d);
    return 0;
}

int readListEntries(const QString &path, const PatternSet &patterns, std::vector<ListEntry> &out)
{
    out.clear();
    DIR *d = openFolder(path);
    if (!d) return folderErrorNumber(errno);
    const int fd = ::dirfd(d);
    while (dirent *e = ::readdir(d)) {
        if (hiddenName(e->d_name)) continue;
        struct stat st;
        if (::fstatat(fd, e->d_name, &st, 0) != 0) {
            // A link that leads nowhere still shows, as a file of no size.
            if (::fstatat(fd, e->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0) continue;
        }
        ListEntry le;
        le.isDir = S_ISDIR(st.st_mode);
        if (!le.isDir && !patterns.matchesBytes(e->d_name, strlen(e->d_name))) continue;
        le.name = QFile::decodeName(e->d_name);
        le.size = le.isDir ? 0 : qint64(st.st_size);
        le.mtimeMs = qint64(st.st_mtim.tv_sec) * 1000 + st.st_mtim.tv_nsec / 1000000;
        out.push_back(std::move(le));
    }
    ::closedir(d);
    return 0;
}

void PatternSet::set(const QString &patternList)
{
    text_ = patternList;
    globs_.clear();
    for (const QString &part : patternList.split(u';', Qt::SkipEmptyParts)) {
        const QString t = part.trimmed();
        if (t.isEmpty()) continue;
        Glob g;
        g.text = t;
        g.all = (t == QLatin1String("*.*") || t == QLatin1String("*"));
        for (QChar c : t) {
            if (c.unicode() >= 0x80) g.ascii = false;
            if (c == u'?') g.hasQuestion = true;
        }
        if (g.ascii) {
            g.lower = t.toLatin1();
            for (char &c : g.lower) c = char(asciiLower((unsigned char)c));
        }
        globs_.push_back(std::move(g));
    }
}

bool PatternSet::matches(const QString &name) const
{
    for (const Glob &g : globs_) {
        if (g.all) return true;
        if (globText(g.text, name)) return true;
    }
    return false;
}

bool PatternSet::matchesBytes(const char *name, size_t len) const
{
    bool nonAscii = false;
    for (size_t i = 0; i < len; ++i)
        if ((unsigned char)name[i] >= 0x80) {
            nonAscii = true;
            break;
        }
    for (const Glob &g : globs_) {
        if (g.all) return true;
        if (g.ascii && !(nonAscii && g.hasQuestion)) {
            if (globBytes(reinterpret_cast<const unsigned char *>(g.lower.constData()),
                          size_t(g.lower.size()), reinterpret_cast<const unsigned char *>(name), len))
                return true;
        } else if (globText(g.text, QString::fromUtf8(name, qsizetype(len)))) {
            return true;
        }
    }
    return false;
}

int FileCounter::setPath(const QString &path)
{
    DIR *d = openFolder(path);
    if (!d) return folderErrorNumber(errno);
    const int fd = ::dirfd(d);
    int n = 0;
    while (dirent *e = ::readdir(d)) {
        if (hiddenName(e->d_name)) continue;
        const unsigned char t = e->d_type;
        if (t == DT_DIR) continue;
        if (t != DT_REG) {
            struct stat st;
            if (::fstatat(fd, e->d_name, &st, 0) != 0 || !S_ISREG(st.st_mode)) continue;
        }
        if (patterns_.matchesBytes(e->d_name, strlen(e->d_name))) ++n;
    }
    ::closedir(d);
    path_ = path;
    count_ = n;
    return 0;
}

int naturalCompare(QStringView a, QStringView b)
{
    qsizetype i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        const QChar ca = a[i], cb = b[j];
        if (ca.isDigit() && cb.isDigit()) {
            // Compare the runs of digits by value: skip leading zeros, then length, then digits.
            qsizetype si = i, sj = j;
            while (si < a.size() && a[si] == u'0') ++si;
            while (sj < b.size() && b[sj] == u'0') ++sj;
            qsizetype ei = si, ej = sj;
            while (ei < a.size() && a[ei].isDigit()) ++ei;
            while (ej < b.size() && b[ej].isDigit()) ++ej;
            if ((ei - si) != (ej - sj)) return (ei - si) < (ej - sj) ? -1 : 1;
            for (qsizetype k = 0; k < ei - si; ++k)
                if (a[si + k] != b[sj + k]) return a[si + k] < b[sj + k] ? -1 : 1;
            // Equal values: fewer leading zeros first.
            if ((si - i) != (sj - j)) return (si - i) < (sj - j) ? -1 : 1;
            i = ei;
            j = ej;
            continue;
        }
        const char16_t fa = ca.toCaseFolded().unicode(), fb = cb.toCaseFolded().unicode();
        if (fa != fb) return fa < fb ? -1 : 1;
        ++i;
        ++j;
    }
    if (a.size() - i != b.size() - j) return (a.size() - i) < (b.size() - j) ? -1 : 1;
    // Same ignoring case: a stable order by the exact text.
    return a.compare(b, Qt::CaseSensitive) < 0 ? -1 : (a == b ? 0 : 1);
}

}  // namespace tw::browse
