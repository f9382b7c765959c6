#include "core/printing.h"

#include "core/modules.h"
#include "core/print_target.h"

#include <mutex>

namespace tw::printing {

namespace {
const Table *g_table = nullptr;
QString g_error;

const Table *table()
{
    static std::once_flag once;
    std::call_once(once, [] {
        const Table *t = moduleTable<Table>(QStringLiteral("libtw_print.so"), TableSymbol, &g_error);
        if (t && t->version == TableVersion) g_table = t;
        else if (t) g_error = QStringLiteral("the print module libtw_print.so is of another version");
    });
    return g_table;
}
}  // namespace

std::unique_ptr<Job> newJob()
{
    const Table *t = table();
    return std::unique_ptr<Job>(t ? t->newJob() : nullptr);
}

QString error()
{
    table();
    return g_error;
}

bool hasPrinters()
{
    const Table *t = table();
    return t && t->hasPrinters();
}

bool hasDefaultPrinter()
{
    const Table *t = table();
    return t && t->hasDefaultPrinter();
}

bool askUser(Job &job, QWidget *parent)
{
    const Table *t = table();
    return t && t->askUser(&job, parent);
}

void pageSetup(QWidget *parent)
{
    if (const Table *t = table()) t->pageSetup(parent);
}

void preview(QWidget *parent, const std::function<void(QPagedPaintDevice *)> &paint)
{
    if (const Table *t = table()) t->preview(parent, paint);
}

std::unique_ptr<Job> prepare(bool askUserFirst, QWidget *parent)
{
    std::unique_ptr<Job> job = newJob();
    if (!job) return nullptr;
    if (!printOutputFile().isEmpty()) {
        job->setPdfFile(printOutputFile());
        return job;
    }
    if (askUserFirst) return askUser(*job, parent) ? std::move(job) : nullptr;
    // The default printer; none set up means nothing to print on.
    return hasDefaultPrinter() ? std::move(job) : nullptr;
}

}  // namespace tw::printing
