// Printing. Qt's print support (the printer, its dialogs, the preview) lives in the print
// module libtw_print.so, loaded with the first print command, so that the program does not
// load it at start. The program paints on a job's device like on any paged paint device.
#pragma once

#include <QString>
#include <functional>
#include <memory>

class QPagedPaintDevice;
class QPrinter;
class QWidget;

namespace tw::printing {

// One print job: a printer at high resolution, or the PDF file it is sent to.
class Job {
public:
    virtual ~Job() = default;
    // What to paint on.
    virtual QPagedPaintDevice *device() = 0;
    // The printer itself, for renderers that print through it (the web engine).
    virtual QPrinter *printer() = 0;
    // Prints to a PDF file at path instead, as the print dialog's "Print to File".
    virtual void setPdfFile(const QString &path) = 0;
};

// A new job on the default printer, or nullptr when the print module cannot be loaded
// (error() says why).
std::unique_ptr<Job> newJob();
QString error();

// Whether any printer is set up, and whether one of them is the default.
bool hasPrinters();
bool hasDefaultPrinter();

// The system's print dialog for the job; true when the user chose to print.
bool askUser(Job &job, QWidget *parent);
// The page set-up dialog.
void pageSetup(QWidget *parent);
// The print preview; paint draws the pages on the device it is given.
void preview(QWidget *parent, const std::function<void(QPagedPaintDevice *)> &paint);

// A job ready to print on, as the print commands want it: with a print-to-file path set
// (printOutputFile(), test runs) a PDF there with no dialog; else the print dialog when
// askUserFirst, or the default printer. nullptr when there is nothing to print on or the
// user cancelled.
std::unique_ptr<Job> prepare(bool askUserFirst, QWidget *parent);

// What the module hands out.
struct Table {
    int version;
    Job *(*newJob)();
    bool (*hasPrinters)();
    bool (*hasDefaultPrinter)();
    bool (*askUser)(Job *job, QWidget *parent);
    void (*pageSetup)(QWidget *parent);
    void (*preview)(QWidget *parent, const std::function<void(QPagedPaintDevice *)> &paint);
};
inline constexpr int TableVersion = 1;
inline constexpr char TableSymbol[] = "twPrintTable";

}  // namespace tw::printing
