#include "text_rules.h"

#include <QFile>
#include <cmath>

namespace tw {

QString plainNumber(double v)
{
    if (std::isfinite(v) && v == std::floor(v) && std::fabs(v) < 1e15)
        return QString::number(static_cast<long long>(v));
    return QString::number(v, 'g', 15);
}

QString Str(double v)
{
    const QString n = plainNumber(v);
    return v >= 0 ? QStringLiteral(" ") + n : n;
}

double Val(const QString &s)
{
    QString t;
    int i = 0;
    const int n = s.size();
    auto skip = [&] {
        while (i < n && (s[i] == u' ' || s[i] == u'\t' || s[i] == u'\n' || s[i] == u'\r')) ++i;
    };
    skip();
    if (i < n && (s[i] == u'-' || s[i] == u'+')) t += s[i++];
    bool point = false, digits = false;
    for (; i < n; ++i) {
        const QChar c = s[i];
        if (c == u' ' || c == u'\t') continue;
        if (c.isDigit() && c.unicode() < 128) {
            t += c;
            digits = true;
        } else if (c == u'.' && !point) {
            t += c;
            point = true;
        } else {
            break;
        }
    }
    if (digits && i < n && (s[i] == u'E' || s[i] == u'e' || s[i] == u'D' || s[i] == u'd')) {
        QString e = QStringLiteral("e");
        int j = i + 1;
        if (j < n && (s[j] == u'-' || s[j] == u'+')) e += s[j++];
        bool ed = false;
        while (j < n && s[j].isDigit() && s[j].unicode() < 128) {
            e += s[j++];
            ed = true;
        }
        if (ed) t += e;
    }
    if (!digits) return 0;
    bool ok = false;
    const double v = t.toDouble(&ok);
    return ok ? v : 0;
}

void DelimitedReader::skipBlanks()
{
    while (p_ < d_.size() && (d_[p_] == ' ' || d_[p_] == '\t')) ++p_;
}

bool DelimitedReader::atEnd()
{
    qsizetype q = p_;
    while (q < d_.size()
           && (d_[q] == ' ' || d_[q] == '\t' || d_[q] == '\r' || d_[q] == '\n' || d_[q] == '\x1a'))
        ++q;
    return q >= d_.size();
}

// After a value: blanks, then one comma or one line end belong to it.
void DelimitedReader::endField()
{
    skipBlanks();
    if (p_ >= d_.size()) return;
    if (d_[p_] == ',') {
        ++p_;
        return;
    }
    if (d_[p_] == '\r') {
        ++p_;
        if (p_ < d_.size() && d_[p_] == '\n') ++p_;
        return;
    }
    if (d_[p_] == '\n') ++p_;
}

std::optional<QByteArray> DelimitedReader::readField(bool numeric)
{
    // Leading blanks are passed over; a line end straight away ends an empty value.
    skipBlanks();
    if (p_ >= d_.size() || d_[p_] == '\x1a') return std::nullopt;
    if (d_[p_] == '\r' || d_[p_] == '\n') {
        endField();
        return QByteArray();
    }
    QByteArray v;
    if (d_[p_] == '"') {
        ++p_;
        while (p_ < d_.size() && d_[p_] != '"' && d_[p_] != '\r' && d_[p_] != '\n') v += d_[p_++];
        if (p_ < d_.size() && d_[p_] == '"') ++p_;
        // Anything after the closing quote up to the delimiter is dropped.
        while (p_ < d_.size() && d_[p_] != ',' && d_[p_] != '\r' && d_[p_] != '\n') ++p_;
        endField();
        return v;
    }
    while (p_ < d_.size()) {
        const char c = d_[p_];
        if (c == ',' || c == '\r' || c == '\n') break;
        if (numeric && (c == ' ' || c == '\t')) break;
        v += c;
        ++p_;
    }
    if (!numeric) {
        while (!v.isEmpty() && (v.back() == ' ' || v.back() == '\t')) v.chop(1);
    }
    endField();
    return v;
}

std::optional<QString> DelimitedReader::readString()
{
    auto f = readField(false);
    if (!f) return std::nullopt;
    return pathFromBytes(*f);
}

std::optional<double> DelimitedReader::readNumber()
{
    auto f = readField(true);
    if (!f) return std::nullopt;
    const QString t = QString::fromLatin1(*f).trimmed();
    if (t.isEmpty()) return 0.0;
    bool ok = false;
    double v = t.toDouble(&ok);
    if (!ok) {
        // Hexadecimal and octal forms the old runtime accepted.
        if (t.startsWith(QLatin1String("&H"), Qt::CaseInsensitive)) {
            const qlonglong h = t.mid(2).toLongLong(&ok, 16);
            v = static_cast<double>(static_cast<int32_t>(static_cast<uint32_t>(h)));
        }
    }
    if (!ok) return std::nullopt;
    return v;
}

std::optional<QByteArray> DelimitedReader::readLine()
{
    if (p_ >= d_.size()) return std::nullopt;
    QByteArray v;
    while (p_ < d_.size() && d_[p_] != '\r' && d_[p_] != '\n') v += d_[p_++];
    if (p_ < d_.size() && d_[p_] == '\r') ++p_;
    if (p_ < d_.size() && d_[p_] == '\n') ++p_;
    return v;
}

// Bytes that are no valid UTF-8 are carried as the lone code units U+DC80..U+DCFF, so a
// name read from a file goes back to the file byte for byte.
QByteArray pathToBytes(const QString &path)
{
    QByteArray out;
    out.reserve(path.size());
    QString run;
    auto flush = [&] {
        if (!run.isEmpty()) out += run.toUtf8();
        run.clear();
    };
    for (int i = 0; i < path.size(); ++i) {
        const char16_t u = path[i].unicode();
        const bool lone = u >= 0xDC80 && u <= 0xDCFF && !(i > 0 && path[i - 1].isHighSurrogate());
        if (lone) {
            flush();
            out += char(u - 0xDC00);
        } else {
            run += path[i];
        }
    }
    flush();
    return out;
}

QString pathFromBytes(const QByteArray &bytes)
{
    QString out;
    const int n = bytes.size();
    int i = 0;
    while (i < n) {
        const unsigned char c = bytes[i];
        int len = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 0;
        bool valid = len > 0 && i + len <= n;
        for (int k = 1; valid && k < len; ++k)
            valid = (static_cast<unsigned char>(bytes[i + k]) & 0xC0) == 0x80;
        if (valid && len > 1) {
            const QString s = QString::fromUtf8(bytes.constData() + i, len);
            valid = s.size() >= 1 && s[0] != QChar::ReplacementCharacter && s.toUtf8() == bytes.mid(i, len);
            if (valid) out += s;
        } else if (valid) {
            out += QChar(c);
        }
        if (!valid) {
            out += QChar(char16_t(0xDC00 + c));
            len = 1;
        }
        i += len;
    }
    return out;
}

}  // namespace tw
