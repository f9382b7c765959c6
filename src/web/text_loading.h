// Turning document files into what the document tab shows: plain text in its own encoding,
// RTF as formatted text through unrtf, DOC/WPS/WRI rendered by LibreOffice's headless
// converter when it is installed, else their text through antiword or catdoc.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

class QWidget;

namespace tw {

// Text of a file's bytes: UTF-8 when the bytes are valid UTF-8 (a byte-order mark dropped),
// else the 8-bit code page (Windows-1252). CR LF, LF and CR all end a line; NUL bytes of a
// binary file show as the replacement character.
QString decodeText(const QByteArray &bytes);

// Runs a converter program and gives its standard output; nullopt when the program is not
// installed, fails, runs past the time limit or is stopped (it is then killed). With a
// progress window set, the wait keeps the program painting and, past 0.4 s, shows a box
// whose Cancel stops the converter.
std::optional<QByteArray> runConverter(const QString &program, const QStringList &args, int timeoutMs);
void setConverterProgressWindow(QWidget *window);

// An RTF file as HTML that keeps its fonts, sizes, styles, colours and paragraphs.
std::optional<QString> rtfToHtml(const QString &path);
// The text of a DOC, WPS or WRI file through the installed extractors.
std::optional<QString> wordText(const QString &path);
// A DOC, WPS or WRI file rendered to HTML by LibreOffice into OutDir; the HTML file's path.
std::optional<QString> officeToHtml(const QString &path, const QString &outDir);
bool officeInstalled();

// The extensions of the Word-processor family handed to the converters.
bool isWordProcessorExt(const QString &ext);

}  // namespace tw
