// The print module: Qt's print support behind the program's printing table.
#include "core/printing.h"

#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace {

using tw::printing::Job;

class PrinterJob final : public Job {
public:
    PrinterJob() : printer_(QPrinter::HighResolution) {}
    QPagedPaintDevice *device() override { return &printer_; }
    QPrinter *printer() override { return &printer_; }
    void setPdfFile(const QString &path) override
    {
        printer_.setOutputFormat(QPrinter::PdfFormat);
        printer_.setOutputFileName(path);
    }

private:
    QPrinter printer_;
};

Job *newJob() { return new PrinterJob; }

bool hasPrinters() { return !QPrinterInfo::availablePrinters().isEmpty(); }

bool hasDefaultPrinter() { return !QPrinterInfo::defaultPrinter().isNull(); }

bool askUser(Job *job, QWidget *parent)
{
    QPrintDialog dlg(job->printer(), parent);
    dlg.setOption(QAbstractPrintDialog::PrintToFile, true);
    return dlg.exec() == QDialog::Accepted;
}

void pageSetup(QWidget *parent)
{
    QPrinter printer;
    QPageSetupDialog dlg(&printer, parent);
    dlg.exec();
}

void preview(QWidget *parent, const std::function<void(QPagedPaintDevice *)> &paint)
{
    QPrinter printer(QPrinter::HighResolution);
    QPrintPreviewDialog dlg(&printer, parent);
    QObject::connect(&dlg, &QPrintPreviewDialog::paintRequested, &dlg, [&paint](QPrinter *p) { paint(p); });
    dlg.exec();
}

const tw::printing::Table g_table = {
    tw::printing::TableVersion, newJob, hasPrinters, hasDefaultPrinter, askUser, pageSetup, preview,
};

}  // namespace

extern "C" __attribute__((visibility("default"))) const tw::printing::Table *twPrintTable()
{
    return &g_table;
}
