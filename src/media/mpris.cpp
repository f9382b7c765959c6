#include "media/mpris.h"

#include "core/globals.h"
#include "core/text_rules.h"
#include "media/media_pages.h"
#include "media/media_player.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QFileInfo>
#include <QListWidget>
#include <QUrl>
#include <QWidget>

namespace tw {

namespace {
const QString ObjectPath = QStringLiteral("/org/mpris/MediaPlayer2");

PlayListPage *currentPage()
{
    const int i = int(Val(G.CurrentPlayer)) == 1 ? 1 : 0;
    return mediaShared().pages[i];
}

class RootAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ no)
    Q_PROPERTY(bool CanRaise READ yes)
    Q_PROPERTY(bool HasTrackList READ no)
    Q_PROPERTY(QString Identity READ identity)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ schemes)
    Q_PROPERTY(QStringList SupportedMimeTypes READ mimeTypes)
public:
    RootAdaptor(MprisPlayer *p) : QDBusAbstractAdaptor(p), p_(p) {}
    bool no() const { return false; }
    bool yes() const { return true; }
    QString identity() const { return AppTitle; }
    QString desktopEntry() const { return QStringLiteral("tarnwick"); }
    QStringList schemes() const { return {QStringLiteral("file")}; }
    QStringList mimeTypes() const
    {
        return {QStringLiteral("audio/mpeg"),      QStringLiteral("audio/x-wav"),
                QStringLiteral("audio/midi"),      QStringLiteral("video/mpeg"),
                QStringLiteral("video/x-msvideo"), QStringLiteral("video/quicktime")};
    }
public slots:
    void Raise() { p_->raise(); }
    void Quit() {}

private:
    MprisPlayer *p_;
};

class PlayerAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ status)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Rate READ one)
    Q_PROPERTY(double MinimumRate READ one)
    Q_PROPERTY(double MaximumRate READ one)
    Q_PROPERTY(double Volume READ one)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(bool CanGoNext READ yes)
    Q_PROPERTY(bool CanGoPrevious READ yes)
    Q_PROPERTY(bool CanPlay READ yes)
    Q_PROPERTY(bool CanPause READ yes)
    Q_PROPERTY(bool CanSeek READ no)
    Q_PROPERTY(bool CanControl READ yes)
public:
    PlayerAdaptor(MprisPlayer *p) : QDBusAbstractAdaptor(p), p_(p) {}
    QString status() const { return p_->playbackStatus(); }
    QVariantMap metadata() const { return p_->metadata(); }
    double one() const { return 1.0; }
    qlonglong position() const { return 0; }
    bool yes() const { return true; }
    bool no() const { return false; }
public slots:
    void Play() { p_->play(); }
    void Pause() { p_->pause(); }
    void PlayPause() { p_->playPause(); }
    void Stop() { p_->stop(); }
    void Next() { p_->next(); }
    void Previous() { p_->previous(); }
    void Seek(qlonglong) {}
    void SetPosition(const QDBusObjectPath &, qlonglong) {}
    void OpenUri(const QString &) {}

private:
    MprisPlayer *p_;
};

MprisPlayer *s_mpris = nullptr;
bool s_tried = false;
}  // namespace

MprisPlayer::MprisPlayer() = default;

MprisPlayer *MprisPlayer::attach(PlayListPage *, int)
{
    if (s_tried) return s_mpris;
    s_tried = true;
    // With no session bus the desktop has no media keys to give: nothing is registered.
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")
        && !QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus")))
        return nullptr;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return nullptr;
    auto *m = new MprisPlayer;
    new RootAdaptor(m);
    new PlayerAdaptor(m);
    if (!bus.registerObject(ObjectPath, m)
        || !bus.registerService(QStringLiteral("org.mpris.MediaPlayer2.tarnwick"))) {
        bus.unregisterObject(ObjectPath);
        delete m;
        return nullptr;
    }
    s_mpris = m;
    return m;
}

QString MprisPlayer::playbackStatus() const
{
    PlayListPage *p = currentPage();
    if (!p || !p->Player) return QStringLiteral("Stopped");
    switch (p->Player->playState()) {
    case MediaPlayer::Playing:
    case MediaPlayer::Waiting:
        return QStringLiteral("Playing");
    case MediaPlayer::Paused:
        return QStringLiteral("Paused");
    default:
        return QStringLiteral("Stopped");
    }
}

QVariantMap MprisPlayer::metadata() const
{
    QVariantMap m;
    PlayListPage *p = currentPage();
    const QString file = p && p->Player ? p->Player->fileName() : QString();
    m.insert(QStringLiteral("mpris:trackid"),
             QVariant::fromValue(
                 QDBusObjectPath(file.isEmpty() ? QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack")
                                                : QStringLiteral("/org/tarnwick/track/1"))));
    if (!file.isEmpty()) {
        m.insert(QStringLiteral("xesam:title"), QFileInfo(file).completeBaseName());
        m.insert(QStringLiteral("xesam:url"), QUrl::fromLocalFile(file).toString());
    }
    return m;
}

void MprisPlayer::changed()
{
    const QString status = playbackStatus();
    PlayListPage *p = currentPage();
    const QString file = p && p->Player ? p->Player->fileName() : QString();
    if (status == lastStatus_ && file == lastFile_) return;
    lastStatus_ = status;
    lastFile_ = file;
    QDBusMessage sig = QDBusMessage::createSignal(
        ObjectPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
    QVariantMap props;
    props.insert(QStringLiteral("PlaybackStatus"), status);
    props.insert(QStringLiteral("Metadata"), metadata());
    sig << QStringLiteral("org.mpris.MediaPlayer2.Player") << props << QStringList();
    QDBusConnection::sessionBus().send(sig);
}

void MprisPlayer::play() { PlayListPage::PlayCommand(int(Val(G.CurrentPlayer)) == 1 ? 1 : 0); }
void MprisPlayer::pause() { PlayListPage::PauseCommand(int(Val(G.CurrentPlayer)) == 1 ? 1 : 0); }
void MprisPlayer::stop() { PlayListPage::StopCommand(int(Val(G.CurrentPlayer)) == 1 ? 1 : 0); }

void MprisPlayer::playPause()
{
    if (playbackStatus() == QLatin1String("Playing")) pause();
    else play();
}

void MprisPlayer::next()
{
    PlayListPage *p = currentPage();
    if (!p || !p->Lists[1] || p->Lists[1]->count() == 0) return;
    const int row = qMin(p->Lists[1]->currentRow() + 1, p->Lists[1]->count() - 1);
    p->selectRow(1, row);
    play();
}

void MprisPlayer::previous()
{
    PlayListPage *p = currentPage();
    if (!p || !p->Lists[1] || p->Lists[1]->count() == 0) return;
    p->selectRow(1, qMax(0, p->Lists[1]->currentRow() - 1));
    play();
}

void MprisPlayer::raise()
{
    PlayListPage *p = currentPage();
    if (p && p->panel()) p->panel()->window()->activateWindow();
}

}  // namespace tw

#include "mpris.moc"
