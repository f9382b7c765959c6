#include "media/media_pages.h"

#include "core/internal_drag.h"
#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/loaders.h"
#include "core/looks.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "core/text_rules.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"
#include "media/media_engine.h"
#include "media/media_player.h"
#include "media/mpris.h"
#include "media/open_file_dialog.h"
#include "media/playlist_file.h"
#include "media/set_play_new.h"

#include <QApplication>
#include <QCheckBox>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QThreadPool>
#include <QToolButton>
#include <QVBoxLayout>

namespace tw {

namespace {
MediaShared s_shared;

// A list row shows at most the first characters of its text: no file path is longer, and a
// list file read from something that is no list (one line of megabytes) stays quick to show.
class ShortRows : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *o, const QModelIndex &i) const override
    {
        QStyledItemDelegate::initStyleOption(o, i);
        if (o->text.size() > 1024) o->text.truncate(1024);
    }
};

int px(int twips) { return qRound(twips / 15.0); }
int twips(int pixels) { return pixels * 15; }
QString b(bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); }
}  // namespace

MediaShared &mediaShared() { return s_shared; }

PlayListPage *PlayListPage::videoPage()
{
    PlayListPage *p = s_shared.pages[0];
    if (p) p->ensureBuilt();
    return p;
}

PlayListPage *PlayListPage::musicPage()
{
    PlayListPage *p = s_shared.pages[1];
    if (p) p->ensureBuilt();
    return p;
}

PlayListPage::PlayListPage(PageHost &host, const Kind &kind) : TabPage(host, kind.tab), kind_(kind)
{
    setObjectName(kind.video ? QStringLiteral("VideosPage") : QStringLiteral("MusicPage"));
    if (kind.video) {
        // A new main window starts the shared state afresh.
        s_shared.ListEditGuard = false;
        s_shared.VideoUseFile = s_shared.VideoListMinimised = false;
        s_shared.VideoToggleBusy = s_shared.VideoMinimiseBusy = false;
        s_shared.MusicListMinimised = s_shared.PlayControlsMinimised = false;
        s_shared.MciActive = false;
        s_shared.MMControl1.command(QStringLiteral("Close"));
        s_shared.MMControl1.log.clear();
        s_shared.MMControl1.deviceType.clear();
        MediaPlayer::setHeadless(QGuiApplication::platformName() == QLatin1String("offscreen")
                                 || QGuiApplication::platformName() == QLatin1String("minimal"));
    }
    s_shared.pages[kind.video ? 0 : 1] = this;
}

PlayListPage::~PlayListPage()
{
    if (s_shared.pages[kind_.video ? 0 : 1] == this) s_shared.pages[kind_.video ? 0 : 1] = nullptr;
}

QString PlayListPage::folderPath() const { return G.ProgramDir + QLatin1String(kind_.folder); }
bool &PlayListPage::dirty() const { return kind_.video ? G.VideoListChanged : G.MusicListChanged; }
QString &PlayListPage::listPath() const { return kind_.video ? G.VideoListName : G.MusicListName; }
QString PlayListPage::bmp(const char *name) const
{
    return G.ProgramDir + QStringLiteral("/BMPS/") + QLatin1String(name);
}

// ---------------------------------------------------------------- start-up and the tab

void PlayListPage::startUp()
{
    // The folder is made now, so it stands from the start; the boxes fill when the tab is made.
    if (kind_.video) {
        // The preset of the start-on-load switches: on for video, off for music until a play
        // command turns it on.
        s_shared.VideoUseFile = false;
    }
    (void)playListNames(folderPath());
}

void PlayListPage::reset()
{
    // The players are put into their stopped state.
    if (Player) Player->stop();
    if (kind_.video && !G.Options.VideoListAtStart) {
        // The video frame opens without its list: the minimise button is pressed.
        ensureBuilt();
        MinListCommand();
    }
}

void PlayListPage::entering()
{
    // A player tab is where media are played: the engine module is loaded now, off the
    // window's thread, so the first file does not wait for it.
    if (!mediaEngineLoaded()) QThreadPool::globalInstance()->start([] { mediaEngine(); });
    ToolManager &t = host_.tools();
    G.CurrentPlayer = kind_.video ? QStringLiteral("0") : QStringLiteral("1");
    t.setCaption(tool::StopVideo, kind_.video ? QStringLiteral("Stop Video") : QStringLiteral("Stop Music"));
    t.setCaption(tool::PlayBtn, kind_.video ? QStringLiteral("Play Video") : QStringLiteral("Play Music"));
    t.setToolbarVisible(4, true);
}

QString PlayListPage::tabTitle() const
{
    return (Player ? Player->fileName() : QString()) + QStringLiteral(" - ") + AppTitle;
}

void PlayListPage::tabChanging()
{
    // A changed list is stored at every tab change, whichever tab is left or entered.
    if (!dirty()) return;
    ensureBuilt();
    savePlayList(listPath() + QStringLiteral(".PLST"));
}

void PlayListPage::applyColors()
{
    if (!built()) return;
    const ColorSettings &c = G.Colors;
    for (QListWidget *l : Lists) paintWidget(l, c.ListBack, c.ListText);
    if (kind_.video) paintWidget(panel(), c.VideoBack, c.VideoText);
    else paintWidget(panel(), c.MusicBack, c.MusicText);
    // The loop presets of the options set the loop boxes when they are applied.
    CHKLOOP->setChecked(kind_.video ? G.Options.VideoLoopDefault : G.Options.MusicLoopDefault);
}

void PlayListPage::fileCommandsChanged(bool on)
{
    // The list toggle follows the file commands while the video play list has a row.
    if (!kind_.video) return;
    const int rows = built() ? Lists[0]->count() : int(playListNames(folderPath()).size());
    if (rows < 1) return;
    host_.tools().setEnabled(tool::ListToggle, on);
    if (ListToggleBtn) ListToggleBtn->setEnabled(on);
}

QStringList PlayListPage::handledTools() const
{
    if (!kind_.video) return {};
    return {tool::PlayBtn, tool::Pause,  tool::StopVideo, tool::Sound,
            tool::Tracker, tool::Status, tool::ListToggle};
}

bool PlayListPage::toolClick(const QString &id)
{
    if (!kind_.video) return false;
    const int index = int(Val(G.CurrentPlayer));
    if (id == tool::PlayBtn) PlayCommand(index);
    else if (id == tool::Pause) PauseCommand(index);
    else if (id == tool::StopVideo) StopCommand(index);
    else if (id == tool::Sound) SoundRefresh();
    else if (id == tool::Tracker) TrackerRefresh();
    else if (id == tool::Status) StatusCommand(index);
    else if (id == tool::ListToggle) VideoToggle();
    else return false;
    return true;
}

void PlayListPage::addLoaders(FileLoaders &loaders)
{
    if (kind_.video) loaders.set(LoaderKind::Media, [](const QString &p) { LoadMediaFile(p); });
}

// ---------------------------------------------------------------- the controls

QFrame *PlayListPage::buildListFrame(QWidget *panel)
{
    const bool v = kind_.video;
    auto *frame = new QFrame(panel);
    frame->setObjectName(v ? QStringLiteral("Frame3_0") : QStringLiteral("Frame3_1"));
    frame->setProperty("Tag",
                       v ? QStringLiteral("VideoPlayListFrame") : QStringLiteral("MusicPlayListFrame"));
    frame->setToolTip(
        QStringLiteral("You can Drag and Drop this Control Frame to another place on this Window Tab"));
    frame->setFrameShape(QFrame::StyledPanel);
    frame->installEventFilter(this);
    auto *fl = new QVBoxLayout(frame);
    fl->setContentsMargins(8, 8, 4, 4);
    auto *top = new QHBoxLayout;
    auto *h = new QLabel(QLatin1String(kind_.hint), frame);
    h->setWordWrap(true);
    top->addWidget(h, 1);
    MinListBtn = new QToolButton(frame);
    MinListBtn->setObjectName(v ? QStringLiteral("MinVideoBtn") : QStringLiteral("MinMusicBtn"));
    top->addWidget(MinListBtn, 0, Qt::AlignTop);
    fl->addLayout(top);
    listBody_ = new QWidget(frame);
    listBody_->setObjectName(v ? QStringLiteral("ListBody_0") : QStringLiteral("ListBody_1"));
    auto *bl = new QVBoxLayout(listBody_);
    bl->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 2; ++i) {
        Lists[i] = new QListWidget(listBody_);
        Lists[i]->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(kind_.listName)).arg(i));
        Lists[i]->setItemDelegate(new ShortRows(Lists[i]));
        Lists[i]->setAcceptDrops(true);
        Lists[i]->viewport()->setAcceptDrops(true);
        Lists[i]->viewport()->installEventFilter(this);
        bl->addWidget(Lists[i], i == 0 ? 1 : 3);
    }
    auto *row = new QHBoxLayout;
    auto button = [&](QPushButton *&btn, const char *video, const char *music, const char *caption,
                      const char *tip) {
        btn = new QPushButton(QLatin1String(caption), listBody_);
        btn->setObjectName(QLatin1String(v ? video : music));
        btn->setToolTip(QLatin1String(tip));
        row->addWidget(btn);
    };
    button(AddBtn, "AddVideoListBtn", "AddMusicListBtn", "New", "Create a New Play List");
    button(OpenBtn, "OpenVideoBtn", "OpenMusicBtn", "Open",
           v ? "Find and Add Video File to the Play List" : "Find and Add Music File to the Play List");
    button(AddToBtn, "AddToVideoListBtn", "AddToMusicListBtn", "Add",
           v ? "Add Selected File to Video Play List" : "Add Selected File to Music Play List");
    button(DeleteBtn, "DeleteVideoBtn", "DeleteMusicBtn", "Delete",
           v ? "Delete Video File from the Play List" : "Delete Music File from the Play List");
    button(UpBtn, "UpVideoBtn", "UpMusicBtn", "Up",
           v ? "Move Highlighted Video File Up one Position" : "Move Highlighted Music File Up one Position");
    button(DownBtn, "DownVideoBtn", "DownMusicBtn", "Down",
           v ? "Move Highlighted Video File Down one Position"
             : "Move Highlighted Music File Down one Position");
    bl->addLayout(row);
    fl->addWidget(listBody_, 1);

    connect(AddBtn, &QPushButton::clicked, this, &PlayListPage::NewList);
    connect(OpenBtn, &QPushButton::clicked, this, &PlayListPage::AddByDialog);
    connect(AddToBtn, &QPushButton::clicked, this, &PlayListPage::AddSelected);
    connect(DeleteBtn, &QPushButton::clicked, this, &PlayListPage::DeleteCommand);
    connect(UpBtn, &QPushButton::clicked, this, &PlayListPage::MoveUp);
    connect(DownBtn, &QPushButton::clicked, this, &PlayListPage::MoveDown);
    connect(MinListBtn, &QToolButton::clicked, this, &PlayListPage::MinListCommand);

    // A click runs the click handling once: on a change of row through the row change, on
    // the row already current through the click itself.
    for (int i = 0; i < 2; ++i) {
        connect(Lists[i], &QListWidget::currentRowChanged, this, [this, i](int) {
            if (programSelect_) return;
            if (i == 0) namesClick(false);
            else entriesClick(false);
        });
        connect(Lists[i], &QListWidget::clicked, this, [this, i](const QModelIndex &idx) {
            if (idx.row() != pressRow_[i]) return;
            if (i == 0) namesClick(false);
            else entriesClick(false);
        });
        connect(Lists[i], &QListWidget::doubleClicked, this, [this, i](const QModelIndex &) {
            if (i == 0) namesClick(true);
            else entriesClick(true);
        });
    }
    return frame;
}

void PlayListPage::buildTransport(QWidget *parent, int index)
{
    auto *row = new QHBoxLayout;
    auto button = [&](QPushButton *&btn, const char *name, const char *caption) {
        btn = new QPushButton(QLatin1String(caption), parent);
        btn->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(index));
        row->addWidget(btn);
    };
    button(PlayBtn, "PlayBtn", "Play");
    button(PauseBtn, "PauseBtn", "Pause");
    button(StopBtn, "StopBtn", "Stop");
    button(SoundBtn, "SoundBtn", "Sound");
    button(TrackerBtn, "TrackerBtn", "Tracker");
    PlayBtn->setToolTip(QStringLiteral("Play Video or Music - Ctrl Q"));
    PauseBtn->setToolTip(QStringLiteral("Pause Video or Music from Playing - Ctrl U"));
    StopBtn->setToolTip(QStringLiteral("Stop Video or Music from Playing - Ctrl Z"));
    SoundBtn->setToolTip(QStringLiteral("Control Sound Volume Display for Video or Music Player - Ctrl F10"));
    TrackerBtn->setToolTip(QStringLiteral("Video or Music File Position Control - Ctrl F11"));
    connect(PlayBtn, &QPushButton::clicked, this, [index] { PlayCommand(index); });
    connect(PauseBtn, &QPushButton::clicked, this, [index] { PauseCommand(index); });
    connect(StopBtn, &QPushButton::clicked, this, [index] { StopCommand(index); });
    connect(SoundBtn, &QPushButton::clicked, this, [index] { SoundBtnClick(index); });
    connect(TrackerBtn, &QPushButton::clicked, this, [index] { TrackerBtnClick(index); });
    static_cast<QVBoxLayout *>(parent->layout())->addLayout(row);
}

void PlayListPage::buildVideo(QWidget *panel)
{
    Player = new MediaPlayer(true, panel);
    Player->setObjectName(QStringLiteral("MediaPlayer1"));
    Player->setAutoStart(true);
    Player->setGeometry(8, 8, 320, 240);
    auto *controls = new QFrame(panel);
    controls->setObjectName(QStringLiteral("VideoControls"));
    auto *cl = new QVBoxLayout(controls);
    cl->setContentsMargins(0, 0, 0, 0);
    auto *checks = new QHBoxLayout;
    CHKLOOP = new QCheckBox(QStringLiteral("Play Continous Loop"), controls);
    CHKLOOP->setObjectName(QStringLiteral("CHKVIDEOLOOP"));
    CHKLOOP->setToolTip(QStringLiteral("Replay current Video or if Playing Entire Play List then restart at "
                                       "beginning of Play List when finished"));
    CHKPLAYLIST = new QCheckBox(QStringLiteral("Play Entire Play List"), controls);
    CHKPLAYLIST->setObjectName(QStringLiteral("CHKVIDEOPLAYLIST"));
    CHKPLAYLIST->setToolTip(QStringLiteral("Play all Videos on the Entire Play List in Order"));
    checks->addWidget(CHKLOOP);
    checks->addWidget(CHKPLAYLIST);
    checks->addStretch(1);
    cl->addLayout(checks);
    buildTransport(controls, 0);
    controls->setGeometry(8, 8 + 240 + 4, 420, 64);
    screen_ = controls;

    Frame3 = buildListFrame(panel);
    ListToggleBtn = new QToolButton(listBody_);
    ListToggleBtn->setObjectName(QStringLiteral("ListToggleBtn"));
    ListToggleBtn->setToolTip(QStringLiteral("Toggle between Play List and other Video Files"));
    static_cast<QVBoxLayout *>(listBody_->layout())->insertWidget(0, ListToggleBtn, 0, Qt::AlignRight);
    connect(ListToggleBtn, &QToolButton::clicked, this, [] { VideoToggle(); });
    connect(Player, &MediaPlayer::naturalSizeKnown, this, [this] {
        if (Player->playState() == MediaPlayer::Playing)
            PlayerStateChanged(MediaPlayer::Playing, MediaPlayer::Playing);
    });
}

void PlayListPage::buildMusic(QWidget *panel)
{
    Frame3 = buildListFrame(panel);

    Frame2 = new QFrame(panel);
    Frame2->setObjectName(QStringLiteral("Frame2"));
    Frame2->setProperty("Tag", QStringLiteral("MusicPlayFrame"));
    Frame2->setToolTip(
        QStringLiteral("You can Drag and Drop this Control Frame to another place on this Window Tab"));
    Frame2->setFrameShape(QFrame::StyledPanel);
    Frame2->setMouseTracking(true);
    Frame2->installEventFilter(this);
    auto *fl = new QVBoxLayout(Frame2);
    fl->setContentsMargins(8, 8, 4, 4);
    auto *top = new QHBoxLayout;
    top->addStretch(1);
    MinPlayBtn = new QToolButton(Frame2);
    MinPlayBtn->setObjectName(QStringLiteral("MinPlayBtn"));
    top->addWidget(MinPlayBtn);
    fl->addLayout(top);
    auto *checks = new QHBoxLayout;
    CHKLOOP = new QCheckBox(QStringLiteral("Play Continous Loop"), Frame2);
    CHKLOOP->setObjectName(QStringLiteral("CHKMUSICLOOP"));
    CHKLOOP->setToolTip(
        QStringLiteral("Replay current Music File or if Playing Entire Play List then restart at "
                       "beginning of Play List when finished"));
    CHKPLAYLIST = new QCheckBox(QStringLiteral("Play Entire Play List"), Frame2);
    CHKPLAYLIST->setObjectName(QStringLiteral("CHKMUSICPLAYLIST"));
    CHKPLAYLIST->setToolTip(QStringLiteral("Play all Music Files on the Entire Play List in Order"));
    checks->addWidget(CHKLOOP);
    checks->addWidget(CHKPLAYLIST);
    fl->addLayout(checks);
    buildTransport(Frame2, 1);
    connect(MinPlayBtn, &QToolButton::clicked, this, &PlayListPage::MinPlayCommand);

    auto *screen = new QFrame(panel);
    screen->setObjectName(QStringLiteral("MusicFrame"));
    auto *sl = new QVBoxLayout(screen);
    label3_ = new QLabel(screen);
    label3_->setObjectName(QStringLiteral("Label3"));
    label3_->setAlignment(Qt::AlignCenter);
    MusicLabel1 = new QLabel(screen);
    MusicLabel1->setObjectName(QStringLiteral("MusicLabel1"));
    MusicLabel1->setAlignment(Qt::AlignCenter);
    MusicLabel1->setWordWrap(true);
    MusicLabel1->hide();
    sl->addWidget(label3_);
    sl->addWidget(MusicLabel1);
    screen_ = screen;

    // The slit: the player stands in it with a negative top, so only its bottom strip shows.
    Frame4 = new QFrame(panel);
    Frame4->setObjectName(QStringLiteral("Frame4"));
    Player = new MediaPlayer(false, Frame4);
    Player->setObjectName(QStringLiteral("MediaPlayer2"));
    Player->setAutoStart(false);
    Player->setGeometry(0, px(-3475), px(4800), px(3475 + 445));
    Frame4->setGeometry(px(4400), px(4300), px(4800), px(445));
    Frame4->hide();
}

void PlayListPage::build(QWidget *panel)
{
    setHelpTopic(panel, QStringLiteral("players"));
    panel->setAcceptDrops(true);
    panel->installEventFilter(this);
    if (kind_.video) buildVideo(panel);
    else buildMusic(panel);
    connect(Player, &MediaPlayer::endOfStream, this, [this](int) { EndOfStream(); });
    connect(Player, &MediaPlayer::stateChanged, this, &PlayListPage::PlayerStateChanged);
    setPictures();
    CHKLOOP->setChecked(kind_.video ? G.Options.VideoLoopDefault : G.Options.MusicLoopDefault);
    if (!mpris_) mpris_ = MprisPlayer::attach(this, kind_.video ? 0 : 1);
    layout();

    // The folder listing: the first list is selected, which opens it.
    loadPlayListNames();
    if (kind_.video && Lists[0]->count() > 0)
        ListToggleBtn->setEnabled(host_.tools().isEnabled(tool::ListToggle));
}

void PlayListPage::setPictures()
{
    auto set = [this](QAbstractButton *btn, const char *file, const char *tip) {
        if (!btn) return;
        const QString path = bmp(file);
        btn->setIcon(QIcon(path));
        btn->setProperty("picture", QStringLiteral("\\Bmps\\") + QLatin1String(file));
        btn->setToolTip(QLatin1String(tip));
    };
    if (kind_.video) {
        // The pictures tell the frame's size as it stands.
        if (listSmall_) set(MinListBtn, "Trisize.bmp", "Enlarge Video Play List on Screen");
        else set(MinListBtn, "Exit.bmp", "Minimize Video Play List on Screen");
    } else {
        if (listSmall_) set(MinListBtn, "Trisize.bmp", "Enlarge Music Play List on Screen");
        else set(MinListBtn, "Exit.bmp", "Minimize Music Play List on Screen");
        if (s_shared.PlayControlsMinimised)
            set(MinPlayBtn, "Trisize2.bmp", "Enlarge Player Controls on Screen");
        else set(MinPlayBtn, "Exit.bmp", "Minimize Player Controls on Screen");
    }
}

void PlayListPage::placeListFrame()
{
    QWidget *panel = this->panel();
    const bool small = kind_.video ? s_shared.VideoListMinimised : s_shared.MusicListMinimised;
    listSmall_ = small;
    listBody_->setVisible(!small);
    const int w = small ? px(1800) : px(4400);
    const int h = small ? px(600) : px(5400);
    if (kind_.video) {
        // Its full size sits 800 from the window's right edge.
        const int winRight = panel->mapFrom(host_.window(), QPoint(host_.window()->width(), 0)).x();
        const int right = qMin(panel->width(), winRight);
        Frame3->setGeometry(qMax(0, right - px(800) - w), px(120), w, h);
    } else {
        Frame3->setGeometry(Frame3->x() ? Frame3->x() : px(120), Frame3->y() ? Frame3->y() : px(120), w, h);
    }
}

void PlayListPage::layout()
{
    if (!built() || placed_) return;
    placed_ = true;
    placeListFrame();
    if (!kind_.video) {
        Frame3->move(px(120), px(120));
        Frame2->setGeometry(px(4400), px(120), px(4800), px(1400));
        screen_->setGeometry(px(4400), px(1600), px(4800), px(2500));
    }
}

// ---------------------------------------------------------------- the lists

void PlayListPage::loadPlayListNames()
{
    Lists[0]->clear();
    const QStringList names = playListNames(folderPath());
    for (const QString &n : names) Lists[0]->addItem(n);
    // Until the first selection the path holds the first list's bare name.
    if (!names.isEmpty()) listPath() = names.first();
    if (Lists[0]->count() > 0) selectRow(0, 0);
}

bool PlayListPage::loadPlayList(const QString &file)
{
    QStringList entries;
    if (readPlayListFile(file, &entries)) {
        Lists[1]->clear();
        Lists[1]->addItems(entries);
    }
    // A list that cannot be read leaves the former entries on view, now clean.
    dirty() = false;
    return true;
}

bool PlayListPage::savePlayList(const QString &file)
{
    QStringList entries;
    for (int i = 0; i < Lists[1]->count(); ++i) entries << Lists[1]->item(i)->text();
    if (writePlayListFile(file, entries)) dirty() = false;
    return true;
}

void PlayListPage::selectRow(int element, int row)
{
    programSelect_ = true;
    Lists[element]->setCurrentRow(row);
    programSelect_ = false;
    if (element == 0) namesClick(false);
    else entriesClick(false);
}

void PlayListPage::namesClick(bool doubleClick)
{
    QListWidget *names = Lists[0];
    const int row = names->currentRow();
    if (row < 0) return;
    if (dirty()) savePlayList(listPath() + QStringLiteral(".PLST"));
    const QString name = names->item(row)->text();
    listPath() = folderPath() + name;
    loadPlayList(listPath() + QStringLiteral(".PLST"));
    if (kind_.video && !doubleClick) names->setToolTip(name);
    ListPos = 0;
    ListFocus = 0;
}

void PlayListPage::entriesClick(bool doubleClick)
{
    QListWidget *entries = Lists[1];
    const int row = entries->currentRow();
    if (entries->count() == 0 || row < 0) return;
    CurrentFile = entries->item(row)->text();
    Player->setFileName(CurrentFile);
    if (kind_.video && !doubleClick) entries->setToolTip(CurrentFile);
    ListFocus = 1;
    if (doubleClick) PlayCommand(int(Val(G.CurrentPlayer)));
}

void PlayListPage::NewList()
{
    SetPlayNew1 dlg(host_.window());
    dlg.exec();
    NewPlayListName = dlg.NewPlayListName;
    NewPlayListCancelled = dlg.NewPlayListCancelled;
    if (NewPlayListName.trimmed().isEmpty() || NewPlayListCancelled) return;
    Lists[0]->addItem(NewPlayListName);
    listPath() = folderPath() + NewPlayListName;
    // The click saves a changed former list under the new name, then loads the new list,
    // which has no file yet and so leaves the entries on view.
    selectRow(0, Lists[0]->count() - 1);
    Lists[1]->clear();
    dirty() = true;
}

void PlayListPage::AddSelected()
{
    const QString f = G.SelectedFile;
    if (f.trimmed().isEmpty() || !familyAdmits(kind_.video, f)) return;
    Lists[1]->addItem(f);
    dirty() = true;
}

void PlayListPage::AddByDialog()
{
    const bool v = kind_.video;
    if (OpenFolder.isEmpty()) OpenFolder = G.ProgramDir;
    const QString path = openFileDialog(
        host_.window(),
        v ? QStringLiteral("Open Video File for Video Play List")
          : QStringLiteral("Open Music or Wave File for Music Play List"),
        OpenFolder,
        v ? QStringLiteral(
            "AVI Files|*.AVI|MOV Files|*.MOV|MPG Files|*.MPG;*.MPEG;*.MP2|ASF Files|*.ASF;*.ASX|"
            "All Video Files|*.AVI;*.MP2;*.MP3;*.MOV;*.ASF;*.ASX")
          : QStringLiteral(
              "Wave Files|*.WAV|MIDI Files|*.MID|RMI Files|*.RMI|MP3 Files|*.MP3|M3U Files|*.M3U|"
              "All Music Files|*.WAV;*.MID;*.RMI;*.MP3;*.M3U"),
        v ? QStringLiteral("MPG") : QStringLiteral("MP3"));
    if (path.isEmpty()) return;
    const int slash = path.lastIndexOf(u'/');
    if (slash > 0) OpenFolder = path.left(slash);
    Lists[1]->addItem(path);
    dirty() = true;
}

void PlayListPage::DeleteCommand()
{
    s_shared.ListEditGuard = true;
    if (!kind_.video) Player->setAutoStart(false);
    QListWidget *names = Lists[0], *entries = Lists[1];
    const int nameRow = names->currentRow();
    if (names->count() > 0 && nameRow >= 0) {
        if (ListFocus == 0) {
            const QString name = names->item(nameRow)->text();
            if (askYesNo(QStringLiteral("Do you want to Delete - ") + name, AppTitle, host_.window())) {
                QFile::remove(folderPath() + name + QStringLiteral(".PLST"));
                programSelect_ = true;
                delete names->takeItem(nameRow);
                entries->clear();
                programSelect_ = false;
                // The dirty flag is left as it is: a changed list is stored again, empty,
                // by the click that follows.
                if (nameRow > 0) selectRow(0, nameRow - 1);
                else if (names->count() > 0) selectRow(0, 0);
            }
        } else {
            const int row = entries->currentRow();
            if (entries->count() > 0 && row >= 0) {
                programSelect_ = true;
                delete entries->takeItem(row);
                programSelect_ = false;
                if (row > 0) selectRow(1, row - 1);
                else if (entries->count() > 0) selectRow(1, 0);
                savePlayList(listPath() + QStringLiteral(".PLST"));
                dirty() = false;
            }
        }
    }
    s_shared.ListEditGuard = false;
}

void PlayListPage::MoveUp()
{
    QListWidget *entries = Lists[1];
    if (!kind_.video) {
        // The music moves set the guard on entry and leave it set.
        s_shared.ListEditGuard = true;
        Player->setAutoStart(false);
    }
    const int cur = entries->currentRow();
    if (cur > 0) {
        const QString a = entries->item(cur)->text();
        entries->item(cur)->setText(entries->item(cur - 1)->text());
        entries->item(cur - 1)->setText(a);
        s_shared.ListEditGuard = true;
        selectRow(1, cur - 1);
        if (kind_.video) s_shared.ListEditGuard = false;
        dirty() = true;
    }
}

void PlayListPage::MoveDown()
{
    QListWidget *entries = Lists[1];
    if (!kind_.video) {
        s_shared.ListEditGuard = true;
        Player->setAutoStart(false);
    }
    const int cur = entries->currentRow();
    if (cur >= 0 && cur < entries->count() - 1) {
        const QString a = entries->item(cur)->text();
        entries->item(cur)->setText(entries->item(cur + 1)->text());
        entries->item(cur + 1)->setText(a);
        s_shared.ListEditGuard = true;
        selectRow(1, cur + 1);
        if (kind_.video) s_shared.ListEditGuard = false;
        dirty() = true;
    }
}

void PlayListPage::DropOnList(const QString &tag, const QString &path, const QStringList &rows)
{
    // Taken only while the favorite list browser is open; the dirty flag stays as it is.
    if (!G.SelFavorites1Loaded) return;
    if (tag == QLatin1String("SelList1")) {
        if (familyAdmits(kind_.video, path)) Lists[1]->addItem(path);
    } else if (tag == QLatin1String("SelList2")) {
        for (const QString &r : rows)
            if (familyAdmits(kind_.video, r)) Lists[1]->addItem(r);
    }
}

// ---------------------------------------------------------------- the players

void PlayListPage::hideParts(PlayListPage *p)
{
    MediaPlayer *m = p->Player;
    m->setShowControls(false);
    m->setShowAudioControls(false);
    m->setShowDisplay(false);
    m->setShowPositionControls(false);
    m->setShowStatusBar(false);
    SuppressTools quiet;
    p->host_.tools().setChecked(tool::Sound, false);
    p->host_.tools().setChecked(tool::Tracker, false);
    if (!p->kind_.video) p->Frame4->hide();
}

void PlayListPage::mciStart(const QString &ext)
{
    MciDevice &d = s_shared.MMControl1;
    s_shared.MciActive = true;
    d.command(QStringLiteral("Close"));
    d.notify = false;
    d.wait = true;
    d.shareable = false;
    d.command(QStringLiteral("Close"));
    if (ext == QLatin1String("DAT")) {
        // The play is given before the device type, and no file name reaches the device.
        d.command(QStringLiteral("Play"));
        d.deviceType = QStringLiteral("DAT");
    } else {
        d.deviceType = QStringLiteral("CDAudio");
        // The track is the row of the focused item of the explorer's list.
        int track = 0;
        if (PlayListPage *v = s_shared.pages[0]) {
            if (ExplorerSide *e = v->host_.explorer())
                track = qMax(0, e->listItemPaths().indexOf(e->focusedItemPath()));
        }
        d.command(QStringLiteral("Open"));
        for (int i = 0; i < track; ++i) d.command(QStringLiteral("Next"));
        d.command(QStringLiteral("Play"));
    }
}

void PlayListPage::mciStop()
{
    s_shared.MMControl1.command(QStringLiteral("Stop"));
    s_shared.MMControl1.command(QStringLiteral("Close"));
    s_shared.MciActive = false;
}

void PlayListPage::LoadMediaFile(const QString &path)
{
    PlayListPage *v = videoPage(), *m = musicPage();
    if (!v || !m) return;
    if (IsVideoFile(path)) {
        if (G.Options.AutoPlayVideo) {
            s_shared.VideoToggleBusy = true;
            v->MinListCommand();
            hideParts(v);
            v->host_.selectTab(v->index());
            v->Player->setFileName(path);
            PlayCommand(int(Val(G.CurrentPlayer)));
            s_shared.VideoToggleBusy = false;
        }
        if (s_shared.VideoUseFile) v->CurrentFile = path;
    } else {
        hideParts(m);
        mciStop();
        const QString ext = GetFileExt(path).toUpper();
        if (ext == QLatin1String("DAT") || ext == QLatin1String("CDA")) mciStart(ext);
        G.CurrentPlayer = QStringLiteral("1");
        m->Player->setFileName(path);
        if (G.Options.AutoPlayMusic) {
            m->Player->setFileName(path);
            PlayCommand(1);
            m->host_.selectTab(m->index());
        }
    }
}

void PlayListPage::PlayCommand(int index)
{
    if (s_shared.ListEditGuard) return;
    PlayListPage *p = index == 0 ? videoPage() : musicPage();
    if (!p) return;
    if (p->Lists[0]->currentRow() >= 0 && p->CHKPLAYLIST->isChecked() && p->Lists[1]->count() > 0
        && p->ListPos == 0)
        p->selectRow(1, 0);
    if (index == 0) {
        p->host_.setTitle(p->Player->fileName() + QStringLiteral(" - ") + AppTitle);
        p->Player->setShowDisplay(true);
        p->Player->play();
    } else {
        p->MusicLabel1->setText(p->Player->fileName());
        p->MusicLabel1->show();
        p->Player->setAutoStart(true);
        p->host_.setTitle(p->Player->fileName() + QStringLiteral(" - ") + AppTitle);
        p->Player->play();
        p->MusicLabel1->repaint();
    }
    if (p->mpris_) p->mpris_->changed();
}

void PlayListPage::PauseCommand(int index)
{
    PlayListPage *p = index == 0 ? videoPage() : musicPage();
    if (!p) return;
    if (index == 1) p->Player->setAutoStart(true);
    p->Player->pause();
    if (index == 1 && s_shared.MciActive) mciStop();
}

void PlayListPage::StopCommand(int index)
{
    PlayListPage *p = index == 0 ? videoPage() : musicPage();
    if (!p) return;
    if (index == 1) {
        if (s_shared.MciActive) mciStop();
        p->Player->setAutoStart(true);
    }
    p->Player->stop();
}

void PlayListPage::EndOfStream()
{
    if (!kind_.video) MusicLabel1->hide();
    const int index = kind_.video ? 0 : 1;
    if (CHKPLAYLIST->isChecked()) {
        const int last = Lists[1]->count() - 1;
        QString next;
        bool taken = false;
        if (ListPos < last) {
            ++ListPos;
            selectRow(1, ListPos);
            next = Lists[1]->item(ListPos)->text();
            taken = true;
        } else if (CHKLOOP->isChecked() && last >= 0) {
            ListPos = 0;
            selectRow(1, 0);
            next = Lists[1]->item(0)->text();
            taken = true;
        }
        if (taken) {
            Player->setFileName(next);
            PlayCommand(index);
        }
    } else if (CHKLOOP->isChecked()) {
        PlayCommand(index);
    }
}

void PlayListPage::PlayerStateChanged(int, int newState)
{
    if (mpris_) mpris_->changed();
    if (!kind_.video) {
        if (newState == MediaPlayer::Playing) {
            MusicLabel1->setText(Player->fileName());
            MusicLabel1->show();
        }
        return;
    }
    QWidget *panel = this->panel();
    // The playing notification of a video counts once its size is known: the player has then
    // taken the video's natural size (a file of sound alone never has one).
    const QSize n = Player->naturalSize();
    const bool sized = n.width() > 0 && n.height() > 0;
    if (newState == MediaPlayer::Playing && !s_shared.VideoUseFile && sized) {
        {
            const int extra =
                Player->height() - (Player->findChild<QWidget *>(QStringLiteral("VideoSurface"))->height());
            Player->resize(n.width(), n.height() + qMax(0, extra));
        }
        if (Player->x() + Player->width() > Frame3->x()) {
            MinListCommand();
        } else {
            Frame3->move(px(twips(Player->x() + Player->width()) + 185), Frame3->y());
            CHKPLAYLIST->setVisible(Frame3->geometry().right() <= panel->width());
        }
        const int dw = Player->width() - panel->width(), dh = Player->height() - panel->height();
        if (dw > 0 || dh > 0) {
            QWidget *w = host_.window();
            w->resize(w->width() + qMax(0, dw), w->height() + qMax(0, dh));
        }
    }
    // The switches show only when they fit below the player.
    screen_->move(Player->x(), Player->geometry().bottom() + 4);
    const bool fits = screen_->geometry().bottom() <= panel->height() || panel->height() < 50;
    CHKLOOP->setVisible(fits);
    CHKPLAYLIST->setVisible(fits);
}

void PlayListPage::SoundBtnClick(int index)
{
    if (index != 1) return;
    PlayListPage *v = videoPage();
    if (!v) return;
    {
        SuppressTools quiet;
        v->host_.tools().setChecked(tool::Sound, !v->host_.tools().isChecked(tool::Sound));
    }
    SoundRefresh();
}

void PlayListPage::TrackerBtnClick(int index)
{
    if (index != 1) return;
    PlayListPage *v = videoPage();
    if (!v) return;
    {
        SuppressTools quiet;
        v->host_.tools().setChecked(tool::Tracker, !v->host_.tools().isChecked(tool::Tracker));
    }
    TrackerRefresh();
}

// The music player's panel on the video tab: the sound controls alone (short), or with the
// position controls of the tracker (tall); the player is moved so its controls show in it.
static void placeMusicControls(PlayListPage *m, bool tall)
{
    m->Frame4->setGeometry(m->Frame4->x(), px(tall ? 4100 : 4300), m->Frame4->width(), px(tall ? 735 : 445));
    m->Player->move(0, px(tall ? -3200 : -3475));
}

void PlayListPage::SoundRefresh()
{
    PlayListPage *v = videoPage(), *m = musicPage();
    if (!v || !m) return;
    const bool sound = v->host_.tools().isChecked(tool::Sound);
    const bool tracker = v->host_.tools().isChecked(tool::Tracker);
    if (sound) {
        v->Player->setShowControls(true);
        v->Player->setShowAudioControls(true);
        if (!tracker) {
            placeMusicControls(m, false);
        } else {
            placeMusicControls(m, true);
        }
        m->Frame4->show();
        m->Player->show();
        m->Player->setShowControls(true);
    } else {
        if (!tracker) {
            v->Player->setShowControls(false);
            m->Frame4->hide();
            m->Player->hide();
        }
        v->Player->setShowAudioControls(false);
    }
    m->Player->setShowAudioControls(sound);
}

void PlayListPage::TrackerRefresh()
{
    PlayListPage *v = videoPage(), *m = musicPage();
    if (!v || !m) return;
    const bool sound = v->host_.tools().isChecked(tool::Sound);
    const bool tracker = v->host_.tools().isChecked(tool::Tracker);
    if (tracker) {
        v->Player->setShowControls(true);
        v->Player->setShowPositionControls(true);
        placeMusicControls(m, true);
        m->Frame4->show();
        m->Player->show();
        m->Player->setShowControls(true);
    } else {
        if (!sound) {
            v->Player->setShowControls(false);
            m->Player->hide();
            m->Frame4->hide();
        } else {
            placeMusicControls(m, false);
        }
        v->Player->setShowPositionControls(false);
    }
    m->Player->setShowPositionControls(tracker);
}

void PlayListPage::StatusCommand(int index)
{
    PlayListPage *v = videoPage(), *m = musicPage();
    if (!v || !m) return;
    {
        SuppressTools quiet;
        const bool pressed = v->host_.tools().isChecked(tool::Status);
        if (index == 0) {
            MediaPlayer *p = v->Player;
            p->setShowControls(false);
            p->setShowDisplay(true);
            p->setShowStatusBar(pressed);
            QWidget *panel = v->panel();
            const int below = p->geometry().bottom() + px(50);
            if (pressed) {
                v->CHKLOOP->setVisible(below + v->CHKLOOP->height() <= panel->height());
                v->CHKPLAYLIST->setVisible(below + v->CHKPLAYLIST->height() <= panel->height());
            }
        } else {
            m->Player->setShowControls(false);
            if (!pressed) {
                m->Player->setShowDisplay(false);
                m->Player->setShowStatusBar(false);
            }
        }
    }
    SoundRefresh();
    TrackerRefresh();
}

void PlayListPage::VideoToggle()
{
    PlayListPage *v = videoPage();
    if (!v) return;
    s_shared.VideoToggleBusy = true;
    ToolManager &t = v->host_.tools();
    if (!s_shared.VideoUseFile) {
        v->ListToggleBtn->setIcon(QIcon(v->bmp("Bulboff.bmp")));
        v->ListToggleBtn->setProperty("picture", QStringLiteral("\\Bmps\\Bulboff.bmp"));
        {
            SuppressTools quiet;
            t.setChecked(tool::ListToggle, true);
            t.setToolTip(tool::ListToggle, QStringLiteral("Use Play List"));
        }
        s_shared.VideoListMinimised = false;
        if (!s_shared.VideoMinimiseBusy) v->MinListCommand();
        s_shared.VideoUseFile = true;
    } else {
        v->ListToggleBtn->setIcon(QIcon(v->bmp("Bulbon.bmp")));
        v->ListToggleBtn->setProperty("picture", QStringLiteral("\\Bmps\\Bulbon.bmp"));
        {
            SuppressTools quiet;
            t.setChecked(tool::ListToggle, false);
            t.setToolTip(tool::ListToggle, QStringLiteral("Use File"));
        }
        s_shared.VideoListMinimised = true;
        if (!s_shared.VideoMinimiseBusy) v->MinListCommand();
        s_shared.VideoUseFile = false;
    }
    v->setPictures();
    SoundRefresh();
    TrackerRefresh();
    s_shared.VideoToggleBusy = false;
}

void PlayListPage::MinListCommand()
{
    if (kind_.video) {
        s_shared.VideoMinimiseBusy = true;
        if (s_shared.VideoListMinimised) {
            s_shared.VideoListMinimised = false;
            placeListFrame();
            if (!s_shared.VideoToggleBusy) {
                s_shared.VideoUseFile = true;
                VideoToggle();
            }
        } else {
            s_shared.VideoListMinimised = true;
            placeListFrame();
            if (!s_shared.VideoToggleBusy) {
                s_shared.VideoUseFile = false;
                VideoToggle();
            }
        }
        s_shared.VideoMinimiseBusy = false;
    } else {
        s_shared.MusicListMinimised = !s_shared.MusicListMinimised;
        placeListFrame();
    }
    setPictures();
}

void PlayListPage::MinPlayCommand()
{
    s_shared.PlayControlsMinimised = !s_shared.PlayControlsMinimised;
    for (QWidget *w : Frame2->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        if (w != MinPlayBtn) w->setVisible(!s_shared.PlayControlsMinimised);
    Frame2->resize(s_shared.PlayControlsMinimised ? px(1200) : px(4800),
                   s_shared.PlayControlsMinimised ? px(500) : px(1400));
    setPictures();
}

// ---------------------------------------------------------------- mouse, drops, panels

bool PlayListPage::eventFilter(QObject *o, QEvent *e)
{
    // The row under a press, so a click on the row already current runs the click handling.
    for (int i = 0; i < 2; ++i) {
        if (Lists[i] && o == Lists[i]->viewport()) {
            if (e->type() == QEvent::MouseButtonPress) {
                pressRow_[i] = Lists[i]->currentRow();
                pressAt_ = static_cast<QMouseEvent *>(e)->position().toPoint();
            }
            if (i == 1 && e->type() == QEvent::MouseMove) {
                // The entries leave as files, for a file manager or another program; no list
                // of this program takes rows of this tag.
                auto *me = static_cast<QMouseEvent *>(e);
                const QList<QListWidgetItem *> rows = Lists[1]->selectedItems();
                if ((me->buttons() & Qt::LeftButton) && !rows.isEmpty()
                    && (me->position().toPoint() - pressAt_).manhattanLength()
                        >= QApplication::startDragDistance()) {
                    auto *drag = new QDrag(Lists[1]);
                    drag->setMimeData(makeRowsDrag(QStringLiteral("PlayTag"), rows));
                    drag->exec(Qt::CopyAction);
                    return true;
                }
            }
            if (e->type() == QEvent::DragEnter || e->type() == QEvent::DragMove) {
                auto *de = static_cast<QDropEvent *>(e);
                if (canReadDrop(de->mimeData())) {
                    de->acceptProposedAction();
                    return true;
                }
            }
            if (e->type() == QEvent::Drop) {
                auto *de = static_cast<QDropEvent *>(e);
                if (canReadDrop(de->mimeData())) {
                    const ListDrop d = readDrop(de->mimeData());
                    const QString &tag = d.tag;
                    const QStringList &rows = d.files;
                    if (d.internal()) {
                        DropOnList(tag, rows.value(0), rows);
                    } else {
                        // Files of another program come in as the file list's adds do: the
                        // family's kinds only, and the list is changed.
                        for (const QString &f : rows)
                            if (familyAdmits(kind_.video, f)) {
                                Lists[1]->addItem(f);
                                dirty() = true;
                            }
                    }
                    de->acceptProposedAction();
                    return true;
                }
            }
        }
    }
    // The panels are dragged by their grab corner: a press there begins the drag, and letting
    // go over the tab's background (or over the panel itself) puts the panel's corner there.
    auto *w = qobject_cast<QWidget *>(o);
    if (w && (w == Frame2 || w == Frame3)) {
        auto *me = static_cast<QMouseEvent *>(e);
        if (e->type() == QEvent::MouseButtonPress && me->button() == Qt::LeftButton) {
            const QPoint p = me->position().toPoint();
            if (twips(p.x()) < 100 && twips(p.y()) < 100) {
                dragging_ = w;
                return true;
            }
        } else if (e->type() == QEvent::MouseButtonRelease && dragging_ == w) {
            dragging_ = nullptr;
            const QPoint at = w->mapTo(panel(), me->position().toPoint());
            QWidget *under = panel()->childAt(at);
            while (under && under->parentWidget() != panel()) under = under->parentWidget();
            if (!under || under == w) dropPanel(panel(), w->property("Tag").toString(), at);
            return true;
        } else if (e->type() == QEvent::MouseMove && w == Frame2 && !dragging_) {
            const QPoint p = me->position().toPoint();
            const bool corner = twips(p.x()) < 100 && twips(p.y()) < 100;
            Frame2->setCursor(corner ? Qt::SizeAllCursor : Qt::ArrowCursor);
        }
    }
    return QObject::eventFilter(o, e);
}

void PlayListPage::dropPanel(QWidget *, const QString &tag, QPoint pos)
{
    // Each tab takes its own panels: the music tab its control panel and its list panel,
    // the video tab its list panel. Any other pairing moves nothing.
    QWidget *moved = nullptr;
    if (kind_.video && tag == QLatin1String("VideoPlayListFrame")) moved = Frame3;
    else if (!kind_.video && tag == QLatin1String("MusicPlayFrame")) moved = Frame2;
    else if (!kind_.video && tag == QLatin1String("MusicPlayListFrame")) moved = Frame3;
    if (moved) moved->move(pos);
}

// ---------------------------------------------------------------- what the scenarios read

bool PlayListPage::variableText(const QString &name, QString *out) const
{
    const bool v = kind_.video;
    const QString pre = v ? QStringLiteral("Video") : QStringLiteral("Music");
    const QString player = v ? QStringLiteral("MediaPlayer1_") : QStringLiteral("MediaPlayer2_");
    if (name == pre + QStringLiteral("ListPath")) *out = listPath();
    else if (name == pre + QStringLiteral("ListDirty")) *out = b(dirty());
    else if (name == pre + QStringLiteral("ListFocus")) *out = QString::number(ListFocus);
    else if (name == pre + QStringLiteral("ListPos")) *out = QString::number(ListPos);
    else if (name == QStringLiteral("Current") + pre + QStringLiteral("File")) *out = CurrentFile;
    else if (name == pre + QStringLiteral("OpenFolder")) *out = OpenFolder;
    else if (v && name == QLatin1String("ListEditGuard")) *out = b(s_shared.ListEditGuard);
    else if (v && name == QLatin1String("VideoUseFile")) *out = b(s_shared.VideoUseFile);
    else if (v && name == QLatin1String("VideoListMinimised")) *out = b(s_shared.VideoListMinimised);
    else if (v && name == QLatin1String("MciActive")) *out = b(s_shared.MciActive);
    else if (v && name == QLatin1String("MediaEngineLoaded")) *out = b(mediaEngineLoaded());
    else if (v && name == QLatin1String("MainWindowSize"))
        *out = QStringLiteral("%1x%2").arg(host_.window()->width()).arg(host_.window()->height());
    else if (v && name == QLatin1String("MMControl1_Log")) *out = s_shared.MMControl1.log.join(u' ');
    else if (v && name == QLatin1String("MMControl1_DeviceType")) *out = s_shared.MMControl1.deviceType;
    else if (name == pre + QStringLiteral("NewPlayListName")) *out = NewPlayListName;
    else if (name == QStringLiteral("Min") + pre + QStringLiteral("Btn_Picture"))
        *out = MinListBtn ? MinListBtn->property("picture").toString() : QString();
    else if (!v && name == QLatin1String("MinPlayBtn_Picture"))
        *out = MinPlayBtn ? MinPlayBtn->property("picture").toString() : QString();
    else if (v && name == QLatin1String("ListToggleBtn_Picture"))
        *out = ListToggleBtn ? ListToggleBtn->property("picture").toString() : QString();
    else if (!Player && name.startsWith(player))
        *out = name.endsWith(QLatin1String("EngineMade")) ? b(false) : QString();
    else if (name == player + QStringLiteral("FileName")) *out = Player->fileName();
    else if (name == player + QStringLiteral("PlayState")) *out = QString::number(Player->playState());
    else if (name == player + QStringLiteral("AutoStart")) *out = b(Player->autoStart());
    else if (name == player + QStringLiteral("ShowControls")) *out = b(Player->showControls());
    else if (name == player + QStringLiteral("ShowAudioControls")) *out = b(Player->showAudioControls());
    else if (name == player + QStringLiteral("ShowPositionControls"))
        *out = b(Player->showPositionControls());
    else if (name == player + QStringLiteral("ShowDisplay")) *out = b(Player->showDisplay());
    else if (name == player + QStringLiteral("ShowStatusBar")) *out = b(Player->showStatusBar());
    else if (name == player + QStringLiteral("EndCount")) *out = QString::number(Player->endCount());
    else if (name == player + QStringLiteral("EngineMade")) *out = b(Player->engineMade());
    else if (name == player + QStringLiteral("FilesOpened")) *out = QString::number(Player->filesOpened());
    else if (name == player + QStringLiteral("Played")) *out = b(Player->playbackTime() > 0);
    else if (name == player + QStringLiteral("NaturalSize"))
        *out = QStringLiteral("%1x%2").arg(Player->naturalSize().width()).arg(Player->naturalSize().height());
    else if (name == player + QStringLiteral("OpenedFile")) *out = Player->openedFile();
    else return false;
    return true;
}

namespace {
const PlayListPage::Kind kVideos{3, true, "List4", "Click Play List or Double Click Video File to Play",
                                 "/VideoPlayList/"};
const PlayListPage::Kind kMusic{4, false, "List5",
                                "Click Play List to Display Music Files or Double Click Music File to Play",
                                "/MusicPlayList/"};
}  // namespace

VideosPage::VideosPage(PageHost &host) : PlayListPage(host, kVideos)
{
    // The drops of the favorite list browser, reachable by name for the scenarios until the
    // browser itself drags them.
    registerScenarioRoutine(QStringLiteral("DropOnPlayList"), [](const QStringList &a) {
        // a: "video"|"music", tag, then the dragged row or rows
        PlayListPage *p = a.value(0) == QLatin1String("video") ? videoPage() : musicPage();
        if (!p) return QStringLiteral("no play-list page");
        p->DropOnList(a.value(1), a.value(2), a.mid(2));
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("SetFavoritesOpen"), [](const QStringList &a) {
        G.SelFavorites1Loaded = a.value(0) == QLatin1String("true");
        return QString();
    });
}

MusicPage::MusicPage(PageHost &host) : PlayListPage(host, kMusic) {}

TW_REGISTER_PAGE(3, VideosPage);
TW_REGISTER_PAGE(4, MusicPage);

}  // namespace tw
