// Loads the web engine module beside the program the first time a page or a PDF is shown.
#include "web/engine/engine_api.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QThreadPool>
#include <atomic>
#include <mutex>

namespace tw {

namespace {
// A web engine loaded after the application has started needs the shared graphics context,
// which is asked for before the application object is made: at the program's static start.
const bool sharedContexts = [] {
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    return true;
}();

std::atomic<bool> &loadDone()
{
    static std::atomic<bool> done{false};
    return done;
}
}  // namespace

bool engineTableLoaded() { return loadDone().load(); }

void preloadEngineTable()
{
    if (!engineTableLoaded()) QThreadPool::globalInstance()->start([] { engineTable(); });
}

const EngineTable *engineTable()
{
    static const EngineTable *table = nullptr;
    static std::once_flag once;
    (void)sharedContexts;
    std::call_once(once, [] {
        struct Done {
            ~Done() { loadDone() = true; }
        } done;
        if (!QCoreApplication::instance()) return;
        const QString exe = QCoreApplication::applicationDirPath();
        // The build's lib/ folder, or where the installation put it.
        for (const QString &path :
             {exe + QStringLiteral("/../lib/libtw_webengine.so"),
              exe + QStringLiteral("/" TW_WEBENGINE_MODULE_FROM_BIN "/libtw_webengine.so")}) {
            if (!QFileInfo::exists(path)) continue;
            QLibrary lib(QDir::cleanPath(path));
            lib.setLoadHints(QLibrary::PreventUnloadHint);
            using Entry = const EngineTable *(*)();
            auto entry = reinterpret_cast<Entry>(lib.resolve(EngineTableSymbol));
            if (!entry) {
                qWarning("web engine module: %s", qPrintable(lib.errorString()));
                continue;
            }
            const EngineTable *t = entry();
            if (t && t->version == EngineTableVersion) {
                table = t;
                return;
            }
        }
        qWarning("web engine module libtw_webengine.so is missing: pages and PDFs stay blank");
    });
    return table;
}

}  // namespace tw
