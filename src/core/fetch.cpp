#include "core/fetch.h"

#include "core/modules.h"

#include <mutex>

namespace tw::fetch {

std::unique_ptr<Transfer> get(const QUrl &url, std::function<void(const Result &)> done, QString *error)
{
    static const Table *table = nullptr;
    static QString why;
    static std::once_flag once;
    std::call_once(once, [] {
        const Table *t = moduleTable<Table>(QStringLiteral("libtw_fetch.so"), TableSymbol, &why);
        if (t && t->version == TableVersion) table = t;
        else if (t) why = QStringLiteral("the fetch module libtw_fetch.so is of another version");
    });
    if (!table) {
        if (error) *error = why;
        return nullptr;
    }
    return std::unique_ptr<Transfer>(table->get(url, std::move(done)));
}

}  // namespace tw::fetch
