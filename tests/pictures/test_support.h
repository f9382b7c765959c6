// Helpers shared by the picture tests: a scratch folder, ImageMagick's command line to
// make sample files, and the folder of real-world samples.
#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace twtest {

// Runs a program; true when it exits with 0.
inline bool run(const QString &program, const QStringList &args, const QString &stdoutFile = QString(),
                const QString &stdinFile = QString())
{
    QProcess p;
    if (!stdoutFile.isEmpty()) p.setStandardOutputFile(stdoutFile);
    if (!stdinFile.isEmpty()) p.setStandardInputFile(stdinFile);
    p.start(program, args);
    if (!p.waitForFinished(60000)) {
        p.kill();
        return false;
    }
    return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

// ImageMagick's convert writes `target` ("CODER:path") from the arguments before it.
inline bool magickConvert(const QStringList &args)
{
    const QString exe = QFile::exists(QStringLiteral("/usr/bin/convert")) ? QStringLiteral("/usr/bin/convert")
                                                                          : QStringLiteral("convert");
    return run(exe, args);
}

inline QString corpusDir()
{
    const QString env = qEnvironmentVariable("TW_CORPUS");
    if (!env.isEmpty()) return env;
    return QStringLiteral(TW_CORPUS_DIR);
}

inline bool haveCorpus() { return QDir(corpusDir()).exists(); }

inline QString corpus(const QString &rel) { return corpusDir() + QLatin1Char('/') + rel; }

}  // namespace twtest
