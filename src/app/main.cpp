// Tarnwick 2.0: one optional file path on the command line, nothing else.
#include "app/tarnwick1.h"
#include "core/session.h"

#include <QApplication>
#include <clocale>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tarnwick"));
    QApplication::setApplicationDisplayName(QString());
    // Ties the window to the installed desktop entry (its name and icon) under Wayland.
    QGuiApplication::setDesktopFileName(QStringLiteral("tarnwick"));
    // The media engine refuses a numeric locale other than C.
    std::setlocale(LC_NUMERIC, "C");
    QStringList args = QCoreApplication::arguments();
    args.removeFirst();
    tw::Tarnwick1 w(tw::rawCommandLine(args));
    w.show();
    w.activateWindow();
    return app.exec();
}
