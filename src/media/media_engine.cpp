#include "media/media_engine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <atomic>
#include <mutex>

namespace tw {

namespace {
// Loaded on the window's thread or, ahead of need, on a worker: read from both.
std::atomic<const MediaEngineTable *> g_table{nullptr};
std::once_flag g_once;
}  // namespace

const MediaEngineTable *mediaEngine()
{
    std::call_once(g_once, [] {
        const QString exe = QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QString();
        if (exe.isEmpty()) return;
        // Beside the program: the build's lib/ folder, or where the installation put it.
        for (const QString &path :
             {exe + QStringLiteral("/../lib/libtw_mediaengine.so"),
              exe + QStringLiteral("/" TW_MEDIA_MODULE_FROM_BIN "/libtw_mediaengine.so")}) {
            if (!QFileInfo::exists(path)) continue;
            QLibrary lib(QDir::cleanPath(path));
            lib.setLoadHints(QLibrary::PreventUnloadHint);
            using Entry = const MediaEngineTable *(*)();
            auto entry = reinterpret_cast<Entry>(lib.resolve(MediaEngineSymbol));
            if (!entry) continue;
            const MediaEngineTable *t = entry();
            if (t && t->version == MediaEngineVersion) {
                g_table = t;
                return;
            }
        }
    });
    return g_table.load();
}

bool mediaEngineLoaded() { return g_table.load() != nullptr; }

}  // namespace tw
