// Loads the web engine module beside the program the first time a page or a PDF is shown.
#include "web/engine/engine_api.h"

#include "core/modules.h"

#include <QCoreApplication>
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
        QString why;
        const EngineTable *t =
            moduleTable<EngineTable>(QStringLiteral("libtw_webengine.so"), EngineTableSymbol, &why);
        if (t && t->version == EngineTableVersion) {
            table = t;
            return;
        }
        qWarning("web engine module: %s: pages and PDFs stay blank",
                 qPrintable(t ? QStringLiteral("of another version") : why));
    });
    return table;
}

}  // namespace tw
