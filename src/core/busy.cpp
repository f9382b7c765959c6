#include "busy.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>

namespace tw {

namespace {
int g_depth = 0;
}

int busyDepth() { return g_depth; }
BusyScope::BusyScope() { ++g_depth; }
BusyScope::~BusyScope() { --g_depth; }

void yieldEvents() { QCoreApplication::processEvents(QEventLoop::AllEvents); }

void showHourglass()
{
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
}

void hideHourglass()
{
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance())
        && QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
}

}  // namespace tw
