// The floor of the start-up benchmark: a bare Qt program showing one empty QMainWindow,
// reporting its first paint the same way as the probe of the main window.
#include "first_paint.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    FirstPaint probe;
    QMainWindow w;
    w.resize(700, 533);
    w.installEventFilter(&probe);
    w.show();
    return app.exec();
}
