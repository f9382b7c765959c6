// The text rules that the program's files and prompts rely on: the number forms of
// Str and Val, and the delimited reader shared by every file read value by value.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace tw {

// A number as Str gives it: a blank in front of a non-negative number.
QString Str(double v);
// Leading number of a text: blanks dropped, an optional sign, digits with one point and
// an exponent; stops at the first other character ("1,000" is 1, "abc" is 0).
double Val(const QString &s);
// Plain decimal form of a number as the files hold it (no leading blank).
QString plainNumber(double v);

// Reads values one after another from sequential text. A comma or a line end ends a
// value; for numbers a blank ends it too. Leading blanks are dropped. A value that
// begins with a double quote runs to the closing quote. The text of a path is handed
// over byte for byte (UTF-8 when valid, else each byte kept through a lossless form).
class DelimitedReader {
public:
    explicit DelimitedReader(QByteArray data) : d_(std::move(data)) {}

    // Next value read as a string; nullopt at the end of the data ("Input past end of file").
    std::optional<QString> readString();
    // Next value read as a number; nullopt at the end or when the value is no number.
    std::optional<double> readNumber();
    // Raw bytes of the next string value.
    std::optional<QByteArray> readField(bool numeric);
    bool atEnd();
    // Reads the rest of the current line as it stands (a whole-line read).
    std::optional<QByteArray> readLine();

private:
    void skipBlanks();
    void endField();
    QByteArray d_;
    qsizetype p_ = 0;
};

// Bytes of a file path as stored in the program's files, and back. Names that are not
// valid UTF-8 survive because Qt maps their bytes through the local 8-bit codec.
QByteArray pathToBytes(const QString &path);
QString pathFromBytes(const QByteArray &bytes);

}  // namespace tw
