// The Videos and Music tabs: each a pair of play-list boxes (the names of the lists and the
// entries of the open one), the editing buttons of the list, and a player. The two pages
// share one logic and differ in their folder, their names and a few required details (the
// video toggle, the music moves that leave the edit guard set). What both players share
// (the edit guard, the video mode, the CD device) lives in MediaShared.
#pragma once

#include "core/tab_page.h"
#include "media/mci_device.h"

#include <QObject>
#include <QPoint>
#include <QStringList>

class QCheckBox;
class QFrame;
class QLabel;
class QListWidget;
class QPushButton;
class QToolButton;

namespace tw {

class MediaPlayer;
class MprisPlayer;
class PlayListPage;

// The state that both tabs read and write.
struct MediaShared {
    bool ListEditGuard = false;
    bool VideoUseFile = false, VideoListMinimised = false, VideoToggleBusy = false, VideoMinimiseBusy = false;
    bool MusicListMinimised = false, PlayControlsMinimised = false;
    bool MciActive = false;
    MciDevice MMControl1;
    PlayListPage *pages[2] = {};  // video, music
};
MediaShared &mediaShared();

class PlayListPage : public QObject, public TabPage {
    Q_OBJECT
public:
    struct Kind {
        int tab;
        bool video;
        const char *listName;  // "List4" or "List5"
        const char *hint;  // the caption above the boxes
        const char *folder;  // under the program folder
    };
    PlayListPage(PageHost &host, const Kind &kind);
    ~PlayListPage() override;

    void startUp() override;
    void reset() override;
    void entering() override;
    QString tabTitle() const override;
    void tabChanging() override;
    void layout() override;
    void applyColors() override;
    void fileCommandsChanged(bool on) override;
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    void addLoaders(FileLoaders &loaders) override;
    bool variableText(const QString &name, QString *out) const override;

    // The folder listing, the load and the save of a list (always true, as the callers want).
    void loadPlayListNames();
    bool loadPlayList(const QString &file);
    bool savePlayList(const QString &file);

    // Clicks on the two boxes, as the user's and as a selection made by the program.
    void namesClick(bool doubleClick);
    void entriesClick(bool doubleClick);
    // Selects a row by program: the click handling runs at once, as for the user's click.
    void selectRow(int element, int row);

    // The list commands.
    void NewList();
    void AddSelected();
    void AddByDialog();
    void DeleteCommand();
    void MoveUp();
    void MoveDown();
    // A drop from the favorite list browser: Tag is the drag source's, Path its dragged row,
    // Rows the entries of its open list.
    void DropOnList(const QString &tag, const QString &path, const QStringList &rows);

    // The player commands; Index is 0 (video) or 1 (music).
    static void PlayCommand(int index);
    static void PauseCommand(int index);
    static void StopCommand(int index);
    static void SoundBtnClick(int index);
    static void TrackerBtnClick(int index);
    static void StatusCommand(int index);
    static void SoundRefresh();
    static void TrackerRefresh();
    static void VideoToggle();
    static void LoadMediaFile(const QString &path);
    void MinListCommand();
    void MinPlayCommand();
    void setPictures();
    void EndOfStream();
    void PlayerStateChanged(int oldState, int newState);

    // The two pages, made on first need.
    static PlayListPage *videoPage();
    static PlayListPage *musicPage();

    QListWidget *Lists[2] = {};  // names, entries
    MediaPlayer *Player = nullptr;
    QCheckBox *CHKLOOP = nullptr, *CHKPLAYLIST = nullptr;
    QFrame *Frame3 = nullptr;  // the list panel
    QFrame *Frame2 = nullptr, *Frame4 = nullptr;  // music: the control panel and the slit
    QLabel *MusicLabel1 = nullptr;
    QToolButton *MinListBtn = nullptr, *MinPlayBtn = nullptr, *ListToggleBtn = nullptr;
    QPushButton *PlayBtn = nullptr, *PauseBtn = nullptr, *StopBtn = nullptr, *SoundBtn = nullptr,
                *TrackerBtn = nullptr;
    int ListFocus = 0;  // VideoListFocus / MusicListFocus
    int ListPos = 0;  // VideoListPos / MusicListPos
    QString CurrentFile;  // CurrentVideoFile / CurrentMusicFile
    QString OpenFolder;  // VideoOpenFolder / MusicOpenFolder
    QString NewPlayListName;
    bool NewPlayListCancelled = false;

protected:
    void build(QWidget *panel) override;
    bool eventFilter(QObject *o, QEvent *e) override;

private:
    QString folderPath() const;
    bool &dirty() const;
    QString &listPath() const;
    void buildVideo(QWidget *panel);
    void buildMusic(QWidget *panel);
    QFrame *buildListFrame(QWidget *panel);
    void buildTransport(QWidget *parent, int index);
    void placeListFrame();
    void dropPanel(QWidget *target, const QString &tag, QPoint pos);
    static void hideParts(PlayListPage *p);
    static void mciStart(const QString &ext);
    static void mciStop();
    QString bmp(const char *name) const;

    Kind kind_;
    QPushButton *AddBtn = nullptr, *OpenBtn = nullptr, *AddToBtn = nullptr, *DeleteBtn = nullptr,
                *UpBtn = nullptr, *DownBtn = nullptr;
    QWidget *listBody_ = nullptr;
    QWidget *screen_ = nullptr;
    QLabel *label3_ = nullptr;
    int pressRow_[2] = {-1, -1};
    QPoint pressAt_;  // where the left button went down on the entries, for a drag out
    bool programSelect_ = false;
    bool placed_ = false;
    bool listSmall_ = false;  // the list frame in its small form
    QWidget *dragging_ = nullptr;  // the panel being dragged by its corner
    MprisPlayer *mpris_ = nullptr;
};

class VideosPage : public PlayListPage {
public:
    explicit VideosPage(PageHost &host);
};

class MusicPage : public PlayListPage {
public:
    explicit MusicPage(PageHost &host);
};

}  // namespace tw
