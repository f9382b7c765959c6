// DisplayFile on a music file until the player has played its first audio frame (mpv's
// playback time above 0), with the media engine made fresh each time as at the first file of
// a session, against mpv from the command line playing the first moment of the same file,
// in the same run. A timed run, not a test. Run offscreen: the player then has no audio
// output, like the command line's --ao=null.
#include "app/tarnwick1.h"
#include "core/options_store.h"
#include "media/media_pages.h"
#include "media/media_player.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <string>
#include <vector>

using namespace tw;

namespace {
double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

double mpvCommandLine(const QString &file)
{
    QElapsedTimer t;
    t.start();
    QProcess p;
    p.start(QStringLiteral("mpv"),
            {QStringLiteral("--no-config"), QStringLiteral("--ao=null"), QStringLiteral("--vo=null"),
             QStringLiteral("--really-quiet"), QStringLiteral("--length=0.01"), file});
    p.waitForFinished(-1);
    return t.nsecsElapsed() / 1e6;
}

double displayFileToFirstFrame(const QString &file)
{
    Tarnwick1 w{QString()};
    w.resize(1024, 700);
    w.show();
    w.activated();
    QApplication::processEvents();
    auto *music = static_cast<PlayListPage *>(w.page(4));
    music->ensureBuilt();
    QElapsedTimer t;
    t.start();
    w.DisplayFile(file);
    while (music->Player->playbackTime() <= 0 && t.elapsed() < 10000)
        QApplication::processEvents(QEventLoop::AllEvents, 1);
    return t.nsecsElapsed() / 1e6;
}
}  // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    QTemporaryDir dir;
    const QString data = dir.filePath(QStringLiteral("data"));
    qputenv("XDG_DATA_HOME", data.toLocal8Bit());
    const QString prog = data + QStringLiteral("/tarnwick");
    QDir().mkpath(prog);
    SaveColors(ColorSettings{}, prog);
    OptionSettings os;
    SetDefaultOptions(os, prog);
    os.SaveLastFolder = false;
    os.ShowQuickTips = false;
    SaveOptions(os, prog);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 9;
    for (const char *kind : {"mp3", "wav"}) {
        const QString file = dir.filePath(QStringLiteral("tone.") + QLatin1String(kind));
        QProcess gen;
        gen.start(QStringLiteral("ffmpeg"),
                  {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y"), QStringLiteral("-f"),
                   QStringLiteral("lavfi"), QStringLiteral("-i"),
                   QStringLiteral("sine=frequency=440:duration=5"), file});
        gen.waitForFinished(-1);
        if (!QFile::exists(file)) {
            out << "could not make the sample sound\n";
            return 1;
        }
        std::vector<double> ours, cli;
        for (int i = 0; i < runs; ++i) {
            // Alternating, so both meet the machine in the same state.
            cli.push_back(mpvCommandLine(file));
            ours.push_back(displayFileToFirstFrame(file));
        }
        // The very first run also loads the media engine module.
        if (std::string(kind) == "mp3")
            out << "first file of the process (engine module loaded): " << ours[0] << " ms\n";
        const double o = median(ours), c = median(cli);
        out << kind << ": DisplayFile to first audio frame " << o
            << " ms, mpv --ao=null from the command line " << c << " ms, ratio " << o / c << " (medians of "
            << runs << ")\n";
        out.flush();
    }
    return 0;
}
