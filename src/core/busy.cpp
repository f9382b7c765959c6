#include "busy.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QPointer>
#include <QWidget>

namespace tw {

namespace {
int g_depth = 0;
int g_hourglass = 0;
QPointer<QWidget> g_window;
}  // namespace

int busyDepth() { return g_depth; }
BusyScope::BusyScope() { ++g_depth; }
BusyScope::~BusyScope() { --g_depth; }

void yieldEvents() { QCoreApplication::processEvents(QEventLoop::AllEvents); }

void setHourglassWindow(QWidget *w)
{
    g_window = w;
    g_hourglass = 0;
}

void showHourglass()
{
    if (!g_window) return;
    if (g_hourglass++ == 0) g_window->setCursor(Qt::WaitCursor);
}

void hideHourglass()
{
    if (!g_window || g_hourglass == 0) return;
    if (--g_hourglass == 0) g_window->unsetCursor();
}

}  // namespace tw
