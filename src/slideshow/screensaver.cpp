#include "slideshow/screensaver.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace tw::slides {

namespace {
const QString Service = QStringLiteral("org.freedesktop.ScreenSaver");
const QString Path = QStringLiteral("/org/freedesktop/ScreenSaver");
}  // namespace

bool ScreenSaverInhibitor::inhibit(const QString &application, const QString &reason)
{
    if (active_) return true;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return false;
    QDBusConnectionInterface *names = bus.interface();
    if (!names || !names->isServiceRegistered(Service).value()) return false;
    QDBusMessage m = QDBusMessage::createMethodCall(Service, Path, Service, QStringLiteral("Inhibit"));
    m << application << reason;
    const QDBusReply<uint> reply = bus.call(m, QDBus::Block, 1000);
    if (!reply.isValid()) return false;
    cookie_ = reply.value();
    active_ = true;
    return true;
}

void ScreenSaverInhibitor::release()
{
    if (!active_) return;
    active_ = false;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    QDBusMessage m = QDBusMessage::createMethodCall(Service, Path, Service, QStringLiteral("UnInhibit"));
    m << cookie_;
    bus.call(m, QDBus::Block, 1000);
}

}  // namespace tw::slides
