#include "web/text_loading.h"

#include "core/busy.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QPointer>
#include <QProgressDialog>
#include <QTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QStringDecoder>
#include <csignal>
#include <unistd.h>

namespace tw {

QString decodeText(const QByteArray &bytes)
{
    QString text;
    {
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        text = utf8.decode(bytes);
        if (utf8.hasError()) {
            QStringDecoder cp1252("windows-1252");
            text = cp1252.isValid() ? QString(cp1252.decode(bytes)) : QString::fromLatin1(bytes);
        }
    }
    if (text.startsWith(QChar(0xFEFF))) text.remove(0, 1);
    // One pass: CR LF and a lone CR become LF; NUL becomes the replacement character.
    QString out;
    out.reserve(text.size());
    const QChar *p = text.constData(), *end = p + text.size();
    for (; p < end; ++p) {
        const char16_t c = p->unicode();
        if (c == u'\r') {
            out += u'\n';
            if (p + 1 < end && p[1] == u'\n') ++p;
        } else if (c == 0) {
            out += QChar(QChar::ReplacementCharacter);
        } else {
            out += *p;
        }
    }
    return out;
}

namespace {
// Stops a converter and whatever it started: LibreOffice's soffice is a script that runs the
// office in a process of its own, which would live on after the script alone was killed.
void stopConverter(QProcess &p)
{
    if (const qint64 pid = p.processId(); pid > 0) ::kill(-pid_t(pid), SIGKILL);
    p.kill();
    p.waitForFinished(2000);
}

QPointer<QWidget> &progressWindow()
{
    static QPointer<QWidget> w;
    return w;
}
}  // namespace

void setConverterProgressWindow(QWidget *window) { progressWindow() = window; }

std::optional<QByteArray> runConverter(const QString &program, const QStringList &args, int timeoutMs)
{
    const QString exe = QStandardPaths::findExecutable(program);
    if (exe.isEmpty()) return std::nullopt;
    QProcess p;
    p.setProcessChannelMode(QProcess::SeparateChannels);
    p.setStandardInputFile(QProcess::nullDevice());
    // A process group of its own, so that a stop reaches the converter's own children too.
    p.setChildProcessModifier([] { ::setpgid(0, 0); });
    p.start(exe, args);
    if (!p.waitForStarted(5000)) return std::nullopt;
    if (QWidget *parent = progressWindow()) {
        bool stopped = false;
        QEventLoop loop;
        QObject::connect(&p, &QProcess::finished, &loop, &QEventLoop::quit);
        QTimer limit;
        limit.setSingleShot(true);
        QObject::connect(&limit, &QTimer::timeout, &loop, [&] {
            stopped = true;
            loop.quit();
        });
        limit.start(timeoutMs);
        BusyScope busy;
        QProgressDialog progress(QStringLiteral("Converting Document - ") + args.value(args.size() - 1),
                                 QStringLiteral("Cancel"), 0, 0, parent);
        progress.setObjectName(QStringLiteral("DocumentProgress"));
        progress.setWindowModality(Qt::WindowModal);
        progress.setMinimumDuration(400);
        QObject::connect(&progress, &QProgressDialog::canceled, &loop, [&] {
            stopped = true;
            loop.quit();
        });
        if (p.state() != QProcess::NotRunning) loop.exec();
        if (stopped) {
            stopConverter(p);
            return std::nullopt;
        }
    } else if (!p.waitForFinished(timeoutMs)) {
        stopConverter(p);
        return std::nullopt;
    }
    if (p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0) return std::nullopt;
    return p.readAllStandardOutput();
}

std::optional<QString> rtfToHtml(const QString &path)
{
    auto out = runConverter(QStringLiteral("unrtf"), {QStringLiteral("--html"), path}, 30000);
    if (!out || out->trimmed().isEmpty()) return std::nullopt;
    return QString::fromUtf8(*out);
}

std::optional<QString> wordText(const QString &path)
{
    const QString ext = QFileInfo(path).suffix().toUpper();
    if (ext == QLatin1String("DOC")) {
        // antiword reads Word documents; it refuses anything else, which catdoc then reads.
        if (auto out = runConverter(QStringLiteral("antiword"),
                                    {QStringLiteral("-m"), QStringLiteral("UTF-8.txt"), path}, 30000))
            return decodeText(*out);
    }
    if (auto out = runConverter(QStringLiteral("catdoc"),
                                {QStringLiteral("-d"), QStringLiteral("utf-8"), path}, 30000))
        return decodeText(*out);
    return std::nullopt;
}

bool officeInstalled() { return !QStandardPaths::findExecutable(QStringLiteral("soffice")).isEmpty(); }

std::optional<QString> officeToHtml(const QString &path, const QString &outDir)
{
    if (!officeInstalled()) return std::nullopt;
    auto out = runConverter(QStringLiteral("soffice"),
                            {QStringLiteral("--headless"), QStringLiteral("--convert-to"),
                             QStringLiteral("html"), QStringLiteral("--outdir"), outDir, path},
                            120000);
    if (!out) return std::nullopt;
    const QString html = outDir + u'/' + QFileInfo(path).completeBaseName() + QStringLiteral(".html");
    if (!QFileInfo::exists(html)) return std::nullopt;
    return html;
}

bool isWordProcessorExt(const QString &ext)
{
    return ext == QLatin1String("DOC") || ext == QLatin1String("WPS") || ext == QLatin1String("WRI");
}

}  // namespace tw
