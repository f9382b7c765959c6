// Start-up probe: shows the real main window, and at its first paint prints the resident
// memory and exits. The driver measures the time from starting the process to that line.
#include "first_paint.h"

#include "app/tarnwick1.h"

#include <QApplication>
#include <clocale>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    FirstPaint probe;
    QApplication::setApplicationName(QStringLiteral("tarnwick"));
    tw::Tarnwick1 w{QString()};
    w.installEventFilter(&probe);
    w.show();
    return app.exec();
}
