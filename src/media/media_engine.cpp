#include "media/media_engine.h"

#include "core/modules.h"

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
        const MediaEngineTable *t =
            moduleTable<MediaEngineTable>(QStringLiteral("libtw_mediaengine.so"), MediaEngineSymbol);
        if (t && t->version == MediaEngineVersion) g_table = t;
    });
    return g_table.load();
}

bool mediaEngineLoaded() { return g_table.load() != nullptr; }

}  // namespace tw
