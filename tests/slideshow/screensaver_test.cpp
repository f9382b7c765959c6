// The screensaver inhibit against a ScreenSaver service of the test's own on a private
// session bus (the test runs under dbus-run-session), and its silence without a service.
#include "slideshow/screensaver.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QObject>
#include <gtest/gtest.h>

using namespace tw::slides;

class FakeScreenSaver : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")
public:
    QStringList calls;
public slots:
    Q_SCRIPTABLE uint Inhibit(const QString &app, const QString &reason)
    {
        calls << QStringLiteral("Inhibit %1 %2").arg(app, reason);
        return 42;
    }
    Q_SCRIPTABLE void UnInhibit(uint cookie) { calls << QStringLiteral("UnInhibit %1").arg(cookie); }
};

TEST(ScreenSaver, SilentWithoutAService)
{
    ScreenSaverInhibitor s;
    EXPECT_FALSE(s.inhibit("Tarnwick 2.0", "Slide show"));
    EXPECT_FALSE(s.active());
    s.release();
}

TEST(ScreenSaver, InhibitsAndReleases)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) GTEST_SKIP() << "no session bus";
    FakeScreenSaver fake;
    ASSERT_TRUE(bus.registerService("org.freedesktop.ScreenSaver"));
    ASSERT_TRUE(
        bus.registerObject("/org/freedesktop/ScreenSaver", &fake, QDBusConnection::ExportScriptableSlots));
    {
        ScreenSaverInhibitor s;
        EXPECT_TRUE(s.inhibit("Tarnwick 2.0", "Slide show"));
        EXPECT_TRUE(s.active());
        EXPECT_TRUE(s.inhibit("Tarnwick 2.0", "Slide show"));  // once is enough
    }
    EXPECT_EQ(fake.calls, (QStringList{"Inhibit Tarnwick 2.0 Slide show", "UnInhibit 42"}));
    bus.unregisterObject("/org/freedesktop/ScreenSaver");
    bus.unregisterService("org.freedesktop.ScreenSaver");
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "screensaver_test.moc"
