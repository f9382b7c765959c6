#include "tarnwick1.h"

#include "browse/browse_module.h"
#include "core/busy.h"
#include "core/colors.h"
#include "core/errors.h"
#include "core/options_store.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "core/text_rules.h"
#include "core/toggle_drag.h"
#include "pictures/imaging_control.h"
#include "pictures/pictures_module.h"
#include "computer_name.h"
#include "help_viewer.h"
#include "resources_install.h"
#include "select1.h"
#include "tool_manager.h"
#include "tools_tab.h"

#include <QAction>
#include <functional>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace tw {

namespace {
Tarnwick1 *s_instance = nullptr;

const char *kTabKeys[9] = {"", "Find", "Pictures", "Videos", "Music", "Slide", "Documents",
                           "Internet", "Tools"};
const char *kTabCaptions[9] = {"", "Find and Open", "Pictures", "Videos", "Music",
                               "Slide Show", "Documents", "Internet", "Tools"};
const char *kTabTips[9] = {"", "Find and Open Files", "View Selected Pictures",
                           "Play Selected Videos", "Play Selected Music Files",
                           "Set up and Run Slide Show", "View Selected Text and Documents",
                           "Surf the Internet", "Set up Program Options and Colors"};

// Seconds since midnight, as the program's clock counts them.
double clockSeconds()
{
    const QTime t = QTime::currentTime();
    return t.msecsSinceStartOfDay() / 1000.0;
}

// The tools of features this build does not have yet. They are present and stay grey.
const QStringList kUnbuiltTools = {
    "ID_mnuOpenFile", "ID_mnuOpenFilelnterent", "ID_mnuCloseFile", "ID_mnuSelectFiles",
    "ID_mnuSelectFavoriteList", "ID_mnuCreateFavoriteList", "ID_mnuTwainAcquirePicture",
    "ID_mnuTwainSelectSource", "ID_mnuSaveFileAs", "ID_mnuRenameFile", "ID_mnuConvertFiles",
    "ID_mnuProperties", "ID_mnuPrintFiles", "ID_mnuSetUpPrinter",
    "ID_mnuCreateandChangeFavoriteLists", "ID_mnuRunSlideShow",
    "ID_mnuRunSlideShowonCurrentFolder", "ID_mnuViewQuickTips", "ID_mnuHelpAbout", "ID_Select",
    "ID_Print", "ID_ThumbNails", "ID_Stop", "ID_EditImage", "ID_EditColors", "ID_PrintImage",
    "ID_SaveImage", "ID_PicFavorites", "ID_PlayBtn", "ID_Pause", "ID_StopVideo", "ID_Sound",
    "ID_Tracker", "ID_ListToggle", "ID_Status", "ID_TxtPrint", "ID_TxtSave", "ID_TxtProperties",
    "ID_IntBack", "ID_IntForward", "ID_IntHome", "ID_IntStop", "ID_IntRefresh", "ID_IntPrint",
    "ID_IntSave", "ID_IntProperties", "ID_IntFavorites", "ID_IntAddFavorite", "ID_IntVisited",
    "ID_IntURLEnter", "ID_IntGo", "ID_mnuFileCreateNewFolder", "ID_mnuDeleteFile",
};
}  // namespace

Tarnwick1 *Tarnwick1::instance() { return s_instance; }

QString Tarnwick1::tabKey(int index)
{
    return index >= 1 && index <= 8 ? QString::fromLatin1(kTabKeys[index]) : QString();
}

int Tarnwick1::tabIndex(const QString &key)
{
    for (int i = 1; i <= 8; ++i)
        if (key == QLatin1String(kTabKeys[i])) return i;
    return 0;
}

Tarnwick1::Tarnwick1(const QString &rawCommandLine, QWidget *parent) : QMainWindow(parent)
{
    s_instance = this;
    G = Globals{};
    Cat = Catalogue{};
    setObjectName(QStringLiteral("Tarnwick1"));
    setWindowTitle(AppTitle);
    setPromptParent(this);
    buildControls();
    registerRoutines();
    startUp(rawCommandLine);
}

// The public routines of the main window, reachable by name (the scenario runner's "call").
void Tarnwick1::registerRoutines()
{
    // A routine without arguments, and one that takes a path (or a name) as its argument.
    auto none = [](const QString &name, std::function<void()> fn) {
        registerScenarioRoutine(name, [fn](const QStringList &) {
            fn();
            return QString();
        });
    };
    auto withPath = [](const QString &name, std::function<void(const QString &)> fn) {
        registerScenarioRoutine(name, [fn](const QStringList &a) {
            fn(a.value(0));
            return QString();
        });
    };
    auto one = [](const QStringList &a) { return a.value(0); };
    auto flag = [](const QStringList &a) {
        const QString v = a.value(0).toLower();
        return v == QLatin1String("true") || v == QLatin1String("1");
    };
    withPath(QStringLiteral("DisplayFile"), [this](const QString &p) { DisplayFile(p); });
    none(QStringLiteral("ResetSession"), [this] { ResetSession(); });
    none(QStringLiteral("ShowExplorerItem"), [this] { ShowExplorerItem(); });
    none(QStringLiteral("BackToPreviousTab"), [this] { BackToPreviousTab(); });
    registerScenarioRoutine(QStringLiteral("SetFileCommands"), [this, flag](const QStringList &a) {
        SetFileCommands(flag(a));
        return QString();
    });
    withPath(QStringLiteral("AddViewMenuItem"), [this](const QString &p) { AddViewMenuItem(p); });
    withPath(QStringLiteral("AddDocumentHistory"), [this](const QString &p) { AddDocumentHistory(p); });
    none(QStringLiteral("LoadFolderPictures"), [this] { LoadFolderPictures(); });
    none(QStringLiteral("OpenWithShell"), [this] { OpenWithShell(); });
    none(QStringLiteral("Timer1"), [this] { runTimer(); });
    none(QStringLiteral("ApplyColors"), [this] { ApplyColors(); });
    none(QStringLiteral("GetThisComputerName"), [this] { GetThisComputerName(); });
    registerScenarioRoutine(QStringLiteral("SelectTab"), [this, one](const QStringList &a) {
        const int i = tabIndex(one(a)) ? tabIndex(one(a)) : one(a).toInt();
        selectTab(i);
        return QString();
    });
    // The option store's routines, for scenarios that edit the settings behind the window.
    registerScenarioRoutine(QStringLiteral("SaveOptions"), [this](const QStringList &) {
        const StoreResult r = tw::SaveOptions(G.Options, G.ProgramDir);
        if (!r.ok) inform(r.message, AppTitle, this);
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("SaveColors"), [this](const QStringList &) {
        const StoreResult r = tw::SaveColors(G.Colors, G.ProgramDir);
        if (!r.ok) inform(r.message, AppTitle, this);
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("LoadOptions"), [this](const QStringList &) {
        const StoreResult r = tw::LoadOptions(G.Options, G.ProgramDir);
        if (!r.message.isEmpty()) inform(r.message, AppTitle, this);
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("LoadColors"), [this](const QStringList &) {
        const StoreResult r = tw::LoadColors(G.Colors, G.ProgramDir);
        if (!r.message.isEmpty()) inform(r.message, AppTitle, this);
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("SetDefaultOptions"), [](const QStringList &) {
        tw::SetDefaultOptions(G.Options, G.ProgramDir);
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("SetDefaultColors"), [](const QStringList &) {
        tw::SetDefaultColors(G.Colors);
        return QString();
    });
    none(QStringLiteral("ShowColors"), [this] { Tools->ShowColors(); });
    none(QStringLiteral("ShowOptions"), [this] { Tools->ShowOptions(); });
    none(QStringLiteral("ReadColors"), [this] { Tools->ReadColors(); });
    none(QStringLiteral("ReadOptions"), [this] { Tools->ReadOptions(); });
    none(QStringLiteral("ValidateOptions"), [this] { Tools->ValidateOptions(); });
    none(QStringLiteral("SetComputerName"), [this] { SetComputerName(); });
    withPath(QStringLiteral("OnToolClick"), [this](const QString &p) { OnToolClick(p); });
    withPath(QStringLiteral("LoadImage"), [this](const QString &p) { LoadImage(p); });
    withPath(QStringLiteral("LoadMediaFile"), [this](const QString &p) { LoadMediaFile(p); });
    withPath(QStringLiteral("LoadDocument"), [this](const QString &p) { LoadDocument(p); });
    withPath(QStringLiteral("LoadText"), [this](const QString &p) { LoadText(p); });
    withPath(QStringLiteral("AddFilterMenuItem"), [this](const QString &p) { AddFilterMenuItem(p); });
    registerScenarioRoutine(QStringLiteral("SetVariable"), [](const QStringList &a) {
        // Sets a flag of the shared state, as another window of the program would.
        const QString n = a.value(0);
        const bool v = a.value(1).toLower() == QLatin1String("true");
        if (n == QLatin1String("SwitchToFileTab")) G.SwitchToFileTab = v;
        else if (n == QLatin1String("FromInternet")) G.FromInternet = v;
        else if (n == QLatin1String("VideoListChanged")) G.VideoListChanged = v;
        else if (n == QLatin1String("MusicListChanged")) G.MusicListChanged = v;
        else if (n == QLatin1String("DocumentsAsSource")) G.Options.DocumentsAsSource = v;
        else if (n == QLatin1String("SaveLastFolder")) G.Options.SaveLastFolder = v;
        else return QStringLiteral("no settable variable ") + n;
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("Activate"), [this](const QStringList &) {
        activated();
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("SetPictureChanged"), [this, flag](const QStringList &a) {
        PictureChanged = flag(a);
        return QString();
    });
}

Tarnwick1::~Tarnwick1()
{
    if (s_instance == this) s_instance = nullptr;
    delete SelectWin;
    SelectWin = nullptr;
}

// ---------------------------------------------------------------- controls

void Tarnwick1::buildControls()
{
    ToolBarComp1 = new ToolManager(this);
    // The tool images are read from the program folder; it is filled before the tools.
    G.ProgramDir = FindProgramDir();
    installProgramResources(G.ProgramDir);
    ToolBarComp1->build(G.ProgramDir + QStringLiteral("/BMPS"));
    connect(ToolBarComp1, &ToolManager::toolClicked, this, &Tarnwick1::OnToolClick);
    for (const QString &id : {QStringLiteral("ID_FilterBtn"), QStringLiteral("ID_ViewBtn"),
                              QStringLiteral("ID_ViewImage")}) {
        if (QToolBar *tb = ToolBarComp1->toolbar(id == QLatin1String("ID_ViewImage") ? 3 : 2))
            if (QWidget *btn = tb->widgetForAction(ToolBarComp1->action(id)))
                btn->setProperty("twDropDown", true);
    }

    auto *central = new QWidget(this);
    central->setObjectName(QStringLiteral("Central"));
    auto *lay = new QVBoxLayout(central);
    lay->setContentsMargins(2, 2, 2, 2);
    TabStrip1 = new QTabWidget(central);
    TabStrip1->setObjectName(QStringLiteral("TabStrip1"));
    lay->addWidget(TabStrip1);
    setCentralWidget(central);

    for (int i = 1; i <= 8; ++i) {
        TabPanel[i] = new QWidget;
        TabPanel[i]->setObjectName(QStringLiteral("TabPanel%1").arg(i));
        TabPanel[i]->setAutoFillBackground(true);
        TabStrip1->addTab(TabPanel[i], QString::fromLatin1(kTabCaptions[i]));
        TabStrip1->setTabToolTip(i - 1, QString::fromLatin1(kTabTips[i]));
    }
    TabStrip1->tabBar()->installEventFilter(this);
    TabStrip1->installEventFilter(this);
    connect(TabStrip1, &QTabWidget::currentChanged, this, [this](int idx) {
        if (inTabChange_) return;
        // A change that did not come through selectTab (the keyboard of the tab bar):
        // run the two routines around it all the same.
        const int oldTab = tabBeforeChange_, newTab = idx + 1;
        inTabChange_ = true;
        TabStrip1->setCurrentIndex(oldTab - 1);
        inTabChange_ = false;
        selectTab(newTab);
    });

    // Tab 1: the folder tree and the file list, with the filter combo above.
    auto *p1 = new QVBoxLayout(TabPanel[1]);
    p1->setContentsMargins(2, 2, 2, 2);
    CMBFILTER = new QComboBox(TabPanel[1]);
    CMBFILTER->setObjectName(QStringLiteral("CMBFILTER"));
    CMBFILTER->hide();  // the filter is chosen from the Filter drop-down
    Splitter1 = new QSplitter(Qt::Horizontal, TabPanel[1]);
    Splitter1->setObjectName(QStringLiteral("Splitter1"));
    p1->addWidget(Splitter1);
    Browse = new BrowseModule(*this, Splitter1);

    // Tab 2: the picture panel.
    auto *p2 = new QVBoxLayout(TabPanel[2]);
    p2->setContentsMargins(0, 0, 0, 0);
    Frame1[0] = new QFrame(TabPanel[2]);
    Frame1[0]->setObjectName(QStringLiteral("Frame1_0"));
    Frame1[0]->setAutoFillBackground(true);
    p2->addWidget(Frame1[0]);
    List3 = new QListWidget(TabPanel[2]);
    List3->setObjectName(QStringLiteral("List3"));
    List3->hide();
    Pictures = new PicturesModule(*this, Frame1[0]);
    Loaders.set(LoaderKind::Image, [this](const QString &p) { Pictures->LoadImage(p); });
    ToggleBtn = new QPushButton(Frame1[0]);
    ToggleBtn->setObjectName(QStringLiteral("ToggleBtn"));
    ToggleBtn->setToolTip(QStringLiteral("Go Back to Previous Tab"));
    ToggleBtn->setIcon(QIcon(G.ProgramDir + QStringLiteral("/BMPS/ThumbToggle.Bmp")));
    ToggleBtn->setFixedSize(24, 24);
    ToggleBtn->move(4, 4);
    ToggleBtn->installEventFilter(this);
    ToggleBtn->raise();
    connect(ToggleBtn, &QPushButton::clicked, this, [this] { BackToPreviousTab(); });

    // Tabs 3 and 4: the play-list pairs of the two players.
    auto makeListPair = [&](int tab, QListWidget **pair, const char *name, const char *frameName,
                            const char *hint) {
        auto *lay = new QHBoxLayout(TabPanel[tab]);
        auto *frame = new QFrame(TabPanel[tab]);
        frame->setObjectName(QString::fromLatin1(frameName));
        frame->setFrameShape(QFrame::StyledPanel);
        auto *fl = new QVBoxLayout(frame);
        auto *h = new QLabel(QString::fromLatin1(hint), frame);
        h->setWordWrap(true);
        fl->addWidget(h);
        for (int i = 0; i < 2; ++i) {
            pair[i] = new QListWidget(frame);
            pair[i]->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(i));
            fl->addWidget(pair[i], i == 0 ? 1 : 3);
        }
        lay->addWidget(frame, 1);
        auto *screen = new QFrame(TabPanel[tab]);
        screen->setObjectName(tab == 3 ? QStringLiteral("VideoFrame") : QStringLiteral("MusicFrame"));
        screen->setFrameShape(QFrame::StyledPanel);
        screen->setAutoFillBackground(true);
        auto *sl = new QVBoxLayout(screen);
        const QStringList labels = tab == 3 ? QStringList{QStringLiteral("VideoLabel1")}
                                            : QStringList{QStringLiteral("Label3"), QStringLiteral("MusicLabel1")};
        for (const QString &name : labels) {
            auto *lab = new QLabel(screen);
            lab->setObjectName(name);
            lab->setAlignment(Qt::AlignCenter);
            sl->addWidget(lab);
        }
        lay->addWidget(screen, 3);
    };
    makeListPair(3, List4, "List4", "VideoPlayListFrame",
                 "Click Play List or Double Click Video File to Play");
    makeListPair(4, List5, "List5", "MusicPlayListFrame",
                 "Click Play List to Display Music Files or Double Click Music File to Play");
    for (QListWidget *names : {List4[0], List5[0]}) {
        QListWidget *entries = names == List4[0] ? List4[1] : List5[1];
        const bool video = names == List4[0];
        connect(names, &QListWidget::currentRowChanged, this, [this, names, entries, video](int row) {
            if (row < 0) return;
            const QString folder = G.ProgramDir
                                   + (video ? QStringLiteral("/VideoPlayList/")
                                            : QStringLiteral("/MusicPlayList/"));
            const QString path = folder + names->item(row)->text();
            loadPlayList(path + QStringLiteral(".PLST"), entries);
            (video ? VideoListPath : MusicListPath) = path;
            (video ? G.VideoListName : G.MusicListName) = path;
        });
    }

    // Tab 5: the slide-show panel keeps the date and time while no toolbar shows.
    Frame1[5] = new QFrame(TabPanel[5]);
    Frame1[5]->setObjectName(QStringLiteral("Frame1_5"));
    auto *p5 = new QVBoxLayout(TabPanel[5]);
    p5->addWidget(Frame1[5]);
    auto *f5 = new QVBoxLayout(Frame1[5]);
    auto *clock5 = new QHBoxLayout;
    for (int i = 8; i <= 9; ++i) {
        SlideClock[i - 8] = new QLabel(Frame1[5]);
        SlideClock[i - 8]->setObjectName(QStringLiteral("Label2_%1").arg(i));
        clock5->addWidget(SlideClock[i - 8]);
    }
    clock5->addStretch(1);
    f5->addLayout(clock5);
    f5->addStretch(1);

    // Tab 6: documents and text.
    auto *p6 = new QVBoxLayout(TabPanel[6]);
    Text6 = new QLabel(TabPanel[6]);
    Text6->setObjectName(QStringLiteral("Text6"));
    Text6->setAutoFillBackground(true);
    p6->addWidget(Text6);
    Text1 = new QTextEdit(TabPanel[6]);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setReadOnly(true);
    Text1->hide();
    p6->addWidget(Text1, 1);
    List6 = new QListWidget(TabPanel[6]);
    List6->setObjectName(QStringLiteral("List6"));
    List6->hide();
    p6->addStretch(1);

    // Tab 7: the browser panel.
    auto *p7 = new QVBoxLayout(TabPanel[7]);
    auto *web = new QFrame(TabPanel[7]);
    web->setObjectName(QStringLiteral("WebBrowser2"));
    web->setFrameShape(QFrame::StyledPanel);
    p7->addWidget(web, 1);

    // Tab 8: colours and options.
    Frame1[8] = new QFrame(TabPanel[8]);
    Frame1[8]->setObjectName(QStringLiteral("Frame1_8"));
    auto *p8 = new QVBoxLayout(TabPanel[8]);
    p8->setContentsMargins(0, 0, 0, 0);
    p8->addWidget(Frame1[8]);
    auto *f8 = new QVBoxLayout(Frame1[8]);
    f8->setContentsMargins(0, 0, 0, 0);
    Tools = new ToolsTab(*this, Frame1[8]);
    f8->addWidget(Tools);

    List7 = new QListWidget(this);
    List7->setObjectName(QStringLiteral("List7"));
    List7->hide();

    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(900);
    connect(Timer1, &QTimer::timeout, this, &Tarnwick1::runTimer);

    for (const QString &id : kUnbuiltTools) ToolBarComp1->markUnbuilt({id});
}

// ---------------------------------------------------------------- start-up

void Tarnwick1::startUp(const QString &raw)
{
    // 1. Screen measures, the hourglass, the clock.
    const QScreen *scr = QGuiApplication::primaryScreen();
    const QRect sg = scr ? scr->geometry() : QRect(0, 0, 640, 480);
    ScreenWidthTwips = static_cast<int16_t>(qMin(32767, sg.width() * 15));
    ScreenRatioX = ScreenWidthTwips / 9600.0;
    ScreenRatioY = (sg.height() * 15) / 7200.0;
    ThumbScaleX = 1.4 * 544.26 * ScreenRatioX;
    ThumbScaleY = 1.4 * 507.41 * ScreenRatioY;
    StartingUp = true;
    showHourglass();
    hourglassUp_ = true;
    runTimer();

    // 2.-3. The command line and the program folder.
    Args = GetCommandLine(raw);
    if (!QDir().mkpath(G.ProgramDir)) programDirWritable_ = false;

    // 4. Default colours.
    SetDefaultColors(G.Colors);
    // 5. The tree drives the list (linked when the panes were made).
    // 6. Toolbars 3 to 6 hidden; Paste grey for the whole session.
    for (int p = 3; p <= 6; ++p) ToolBarComp1->setToolbarVisible(p, false);
    ToolBarComp1->setToolbarVisible(2, true);
    ToolBarComp1->setEnabled(QStringLiteral("ID_mnuPaste"), false);

    // 7. Colours and options.
    G.CurrentExt.clear();
    {
        const StoreResult r = LoadColors(G.Colors, G.ProgramDir);
        if (!r.message.isEmpty()) inform(r.message, AppTitle, this);
    }
    Tools->ShowColors();
    SetDefaultOptions(G.Options, G.ProgramDir);
    {
        const StoreResult r = LoadOptions(G.Options, G.ProgramDir);
        if (!r.message.isEmpty()) inform(r.message, AppTitle, this);
    }
    Tools->ShowOptions();

    // 8. The filter and extension tables.
    G.SuppressToolCommand = true;
    Cat.fillFilters();
    for (int row = 0; row < FilterRows; ++row) {
        AddFilterMenuItem(Cat.FilterNames[row]);
        CMBFILTER->addItem(Cat.FilterNames[row]);
        if (row == 33) Cat.MediaFilterExtra = MediaFilterExtraLiteral;
    }
    CMBFILTER->setCurrentIndex(33);
    Cat.fillExtensions();
    G.SuppressToolCommand = false;

    // 9. The stop tool shows only while thumbnails load.
    ToolBarComp1->setVisible(QStringLiteral("ID_Stop"), false);

    // 10. Saved geometry made sane.
    OptionSettings &o = G.Options;
    if (o.WindowHeight <= 500) o.WindowHeight = 7000;
    if (o.WindowWidth <= 2500) o.WindowWidth = 10500;
    if (o.WindowLeft > 8800) o.WindowLeft = 8800;
    if (o.WindowLeft < 0) o.WindowLeft = 800;
    if (o.WindowTop > 6600) o.WindowTop = 6600;
    if (o.WindowTop < 0) o.WindowTop = 600;
    move(int(o.WindowLeft / 15), int(o.WindowTop / 15));
    resize(int(o.WindowWidth / 15), int(o.WindowHeight / 15));

    // 11. The splitter of the Find tab.
    placeSplitter();

    // 12. The computer name.
    GetThisComputerName();

    // 13. The help file.
    helpFile_ = G.ProgramDir + QStringLiteral("/Help/Ostrel.Hlp");

    // 14.-15. The play-list folders.
    listPlayLists(G.ProgramDir + QStringLiteral("/VideoPlayList/"), List4[0]);
    listPlayLists(G.ProgramDir + QStringLiteral("/MusicPlayList/"), List5[0]);

    // 16. Reset, file commands off, colours on.
    ResetSession();
    SetFileCommands(false);
    ApplyColors();

    // 17. The list's view and its tool.
    Browse->setListViewMode(int(o.ListViewMode));
    {
        static const char *viewTools[4] = {"ID_LargeIcons", "ID_SmallIcons", "ID_ListIcons",
                                           "ID_Details"};
        const int m = int(o.ListViewMode);
        G.SuppressToolCommand = true;
        if (m >= 0 && m <= 3) ToolBarComp1->press(QString::fromLatin1(viewTools[m]));
        G.SuppressToolCommand = false;
    }

    // 18. The address bar shows only on the Internet tab.
    ToolBarComp1->setToolbarVisible(7, false);

    // 19. The video player starts files on its own; the music player does not.
    MediaPlayer1AutoStart = true;
    MediaPlayer2AutoStart = false;

    // 20. Quick tips.
    if (o.ShowQuickTips) G.QuickTipsOpen = true;

    Timer1->start();
}

void Tarnwick1::placeSplitter()
{
    const int total = qMax(1, Splitter1->width() > 50 ? Splitter1->width() : width() - 8);
    const int first = total * G.Options.SplitterPercent / 100;
    Splitter1->setSizes({first, qMax(0, total - first)});
}

void Tarnwick1::AddFilterMenuItem(const QString &name)
{
    Tool *t = ToolBarComp1->addDynamicTool(name, QStringLiteral("FilterList"),
                                           QStringLiteral("ID_mnuFileFilterDropDown"),
                                           G.ProgramDir + QStringLiteral("/BMPS/Check.BMP"));
    if (!t && !filterMenuErrorShown_) {
        filterMenuErrorShown_ = true;
        inform(unexpectedErrorText(5), AppTitle, this);
    }
}

void Tarnwick1::listPlayLists(const QString &folder, QListWidget *list)
{
    QDir d(folder);
    if (!d.exists() && !QDir().mkpath(folder)) return;  // the list stays empty
    QStringList files;
    for (const QFileInfo &fi : d.entryInfoList(QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase))
        if (matchesPatternList(fi.fileName(), QStringLiteral("*.PLST"))) files << fi.fileName();
    bool first = true;
    for (const QString &f : files) {
        const int dot = f.lastIndexOf(u'.');
        const QString name = dot > 0 ? f.left(dot) : f;
        list->addItem(name);
        if (first) {
            (list == List4[0] ? VideoListPath : MusicListPath) = name;
            first = false;
        }
    }
    if (list->count() > 0) list->setCurrentRow(0);
}

bool Tarnwick1::loadPlayList(const QString &file, QListWidget *entries)
{
    QFile f(file);
    if (f.open(QIODevice::ReadOnly)) {
        entries->clear();
        DelimitedReader in(f.readAll());
        while (auto v = in.readString()) entries->addItem(*v);
    }
    if (entries == List4[1]) G.VideoListChanged = false;
    else G.MusicListChanged = false;
    return true;
}

bool Tarnwick1::savePlayList(const QString &file, QListWidget *entries)
{
    QFile f(file);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        for (int i = 0; i < entries->count(); ++i)
            f.write(pathToBytes(entries->item(i)->text()) + "\r\n");
    }
    if (entries == List4[1]) G.VideoListChanged = false;
    else G.MusicListChanged = false;
    return true;
}

void Tarnwick1::GetThisComputerName()
{
    if (!G.Options.ComputerNameUnset) return;
    const QString name = systemComputerName();
    if (name.isEmpty()) return;
    G.Options.LocalComputerName = name;
    G.Options.ComputerNameUnset = false;
}

void Tarnwick1::SetComputerName()
{
    G.Options.ComputerNameUnset = true;
    const QString answer = askComputerName(this);
    G.Options.LocalComputerName = cutComputerNameAnswer(answer);
    G.Options.ComputerNameUnset = false;
}

void Tarnwick1::ResetSession()
{
    G.CurrentPlayer = QStringLiteral("0");
    G.SelectedFile.clear();
    G.CurrentFile.clear();
    SlideShowName.clear();
    WebPageName.clear();
    G.CurrentFilterRow = 35;
    G.Select1Visible = false;
    G.FromInternet = false;
    G.InternetPictureLoaded = false;
    G.SwitchToFileTab = true;
    Text1->hide();
}

// ---------------------------------------------------------------- activation

void Tarnwick1::activated()
{
    ++Activations;
    if (StartingUp) FirstActivation();
    if (G.QuickTipsOpen && G.Options.ShowQuickTips) {
        // The quick tips window arrives with its own feature.
    }
}

void Tarnwick1::FirstActivation()
{
    const OptionSettings &o = G.Options;
    if (!o.LastFolder.trimmed().isEmpty() && o.SaveLastFolder) {
        Browse->setListFolder(o.LastFolder);
        LoadFolderPictures();
    }
    if (!Args.CommandArg[0].trimmed().isEmpty()) {
        const QString path = JoinCommandLine(Args);
        const int slash = path.lastIndexOf(u'/');
        if (slash + 1 >= 3) Browse->setListFolder(path.left(slash));
        DisplayFile(path);
        setTitle(path + QStringLiteral(" - ") + AppTitle);
        Args.CommandArg[0].clear();
    }
    if (hourglassUp_) {
        hideHourglass();
        hourglassUp_ = false;
    }
    setTitle(AppTitle);
    if (ScreenWidthTwips != 9600) {
        ToolBarComp1->setCaption(QStringLiteral("ID_FilterName"), Cat.FilterNames[33].trimmed());
    } else {
        ToolBarComp1->setVisible(QStringLiteral("ID_FilterName"), false);
    }
    StartingUp = false;
    unsetCursor();
}

void Tarnwick1::LoadFolderPictures()
{
    if (List3->count() != 0) return;
    for (const QString &p : Browse->listItemPaths()) {
        if (p.trimmed().isEmpty() || FileMissing(p)) continue;
        if (IsPictureExt(GetFileExt(p))) List3->addItem(p);
    }
    if (List3->count() > 0) {
        List3->setCurrentRow(0);
        LoadImage(List3->item(0)->text());
    }
}

void Tarnwick1::changeEvent(QEvent *e)
{
    if (e->type() == QEvent::ActivationChange && isActiveWindow()) activated();
    QMainWindow::changeEvent(e);
}

void Tarnwick1::showEvent(QShowEvent *e)
{
    QMainWindow::showEvent(e);
    if (!splitterPlaced_) {
        splitterPlaced_ = true;
        placeSplitter();
    }
}

void Tarnwick1::resizeEvent(QResizeEvent *e)
{
    QMainWindow::resizeEvent(e);
    layoutMain();
}

void Tarnwick1::layoutMain()
{
    if (Pictures && selectedTab() == 2) Pictures->ResizeImage();
}

// ---------------------------------------------------------------- dispatcher

void Tarnwick1::DisplayFile(const QString &path)
{
    G.CurrentExt = GetFileExt(path);
    if (G.CurrentExt.trimmed().isEmpty()) {
        G.SelectedFile.clear();
        return;
    }
    showHourglass();
    int row = -1;
    for (int i = 0; i < FileExtCount; ++i) {
        if (Cat.FileExtTable[i] == G.CurrentExt) {
            row = i;
            break;
        }
    }
    if (row >= DocumentFirst && row <= DocumentLast) IsDocumentFile = true;
    unsetCursor();
    if (row < 0) {
        if (askYesNo(QStringLiteral("File Type is not Supported by this Software. Do you want to "
                                    "Open the File with another Program?"),
                     AppTitle, this))
            OpenWithShell();
        G.SelectedFile.clear();
        hideHourglass();
        return;
    }
    setTitle(path + QStringLiteral(" - ") + AppTitle);
    if (!SelectWin) SelectWin = new Select1(this);
    bool found = false;
    const QString key = path.trimmed().toUpper();
    for (int i = 0; i < SelectWin->List1->count(); ++i) {
        if (SelectWin->List1->item(i)->text().trimmed().toUpper() == key) {
            found = true;
            break;
        }
    }
    if (!found && !path.trimmed().isEmpty()) SelectWin->List1->addItem(path);

    if (IsMediaFile(path)) {
        LoadMediaFile(path);
    } else if (!IsDocumentFile) {
        LoadImage(path);
        if (!FileCommandsOn) {
            SetFileCommands(true);
            FileCommandsOn = true;
        }
    } else {
        AddDocumentHistory(path);
        if (G.Options.DocumentsAsSource) LoadText(path);
        else if (IsViewerDocumentExt(G.CurrentExt, true)) LoadDocument(path);
        else LoadText(path);
        IsDocumentFile = false;
        if (G.SwitchToFileTab) selectTab(6);
    }
    hideHourglass();
}

bool Tarnwick1::FileMissing(const QString &path) const
{
    if (path.trimmed().isEmpty()) return true;
    if (path.contains(u'*') || path.contains(u'?')) {
        // The listing reads the path as a pattern.
        const QFileInfo fi(path);
        QDir d(fi.absolutePath());
        for (const QFileInfo &f : d.entryInfoList(QDir::Files))
            if (matchesPatternList(f.fileName(), fi.fileName())) return false;
        return true;
    }
    // A listing of normal files only: folders and hidden files count as missing.
    const QFileInfo fi(path);
    return !(fi.exists() && !fi.isDir() && !fi.isHidden());
}

void Tarnwick1::OpenWithShell()
{
    showHourglass();
    const QString item = Browse->focusedItemPath();
    bool ok = !item.isEmpty() && QFileInfo::exists(item);
    if (ok) ok = shellOpen(item);
    hideHourglass();
    if (!ok)
        inform(QStringLiteral("Error Loading File Type - Check Explorer Options to set up Program "
                              "for this File Type - ")
                   + G.CurrentExt,
               AppTitle, this);
}

bool Tarnwick1::shellOpen(const QString &path)
{
    if (qEnvironmentVariableIsSet("TW_SHELL_OPEN_LOG")) {
        // Test runs record the request instead of starting another program.
        QFile log(qEnvironmentVariable("TW_SHELL_OPEN_LOG"));
        if (!log.open(QIODevice::Append)) return false;
        log.write(pathToBytes(path) + "\n");
        return true;
    }
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void Tarnwick1::AddDocumentHistory(const QString &path)
{
    int found = -1;
    for (int i = 0; i < List6->count(); ++i) {
        if (List6->item(i)->text() == path) {
            found = i;
            break;
        }
    }
    if (found < 0) {
        List6->addItem(path);
        List6->setCurrentRow(List6->count() - 1);
    }
    const QString sel = List6->currentItem() ? List6->currentItem()->text() : path;
    AddViewMenuItem(sel);
    G.SuppressToolCommand = true;
    ToolBarComp1->press(sel);
    G.SuppressToolCommand = false;
}

void Tarnwick1::ShowExplorerItem()
{
    const QString path = Browse->focusedItemPath();
    G.FromInternet = false;
    if (!FileMissing(path)) DisplayFile(path);
    if (G.SelectedFile.trimmed().isEmpty()) setTitle(AppTitle);
    else setTitle(path + QStringLiteral(" - ") + AppTitle);
}

void Tarnwick1::AddViewMenuItem(const QString &path)
{
    ToolBarComp1->addDynamicTool(path, QStringLiteral("MenuViewList"), QStringLiteral("ID_mnuView"),
                                 G.ProgramDir + QStringLiteral("/BMPS/Check.BMP"));
}

void Tarnwick1::walkHistory(QListWidget *list, int step, bool picture)
{
    const int n = list->count();
    if (n == 0 || list->currentRow() < 0) return;
    const int row = (list->currentRow() + step + n) % n;
    list->setCurrentRow(row);
    if (picture) G.FromInternet = false;
    DisplayFile(list->item(row)->text());
}

void Tarnwick1::LoadImage(const QString &path)
{
    Loaders.load(LoaderKind::Image, path);
    LastLoader = FileLoaders::name(LoaderKind::Image);
}

void Tarnwick1::LoadMediaFile(const QString &path)
{
    Loaders.load(LoaderKind::Media, path);
    LastLoader = FileLoaders::name(LoaderKind::Media);
}

void Tarnwick1::LoadDocument(const QString &path)
{
    Loaders.load(LoaderKind::Document, path);
    LastLoader = FileLoaders::name(LoaderKind::Document);
}

void Tarnwick1::LoadText(const QString &path)
{
    Loaders.load(LoaderKind::Text, path);
    LastLoader = FileLoaders::name(LoaderKind::Text);
}

bool Tarnwick1::SaveFileAs(const QString &path)
{
    // Picture saving arrives with its own feature.
    Q_UNUSED(path);
    return false;
}

void Tarnwick1::offerToSaveChangedPicture()
{
    if (!PictureChanged) return;
    if (askYesNo(QStringLiteral("Do you want to Save the Current Picture - ") + G.CurrentFile
                     + QStringLiteral(" ? "),
                 AppTitle, this))
        SaveFileAs(G.CurrentFile);
}

// ---------------------------------------------------------------- file commands

void Tarnwick1::SetFileCommands(bool on)
{
    for (const char *id : {"ID_mnuCloseFile", "ID_mnuSaveFileAs", "ID_mnuRenameFile",
                           "ID_mnuDeleteFile", "ID_mnuConvertFiles", "ID_mnuProperties",
                           "ID_mnuPrintFiles", "ID_Print", "ID_mnuOpenOLE"})
        ToolBarComp1->setEnabled(QString::fromLatin1(id), on);
    if (List4[0]->count() >= 1) {
        ToolBarComp1->setEnabled(QStringLiteral("ID_ListToggle"), on);
        if (ListToggleBtn) ListToggleBtn->setEnabled(on);
    }
}

// ---------------------------------------------------------------- tabs

int Tarnwick1::selectedTab() const { return TabStrip1->currentIndex() + 1; }
QString Tarnwick1::selectedTabKey() const { return tabKey(selectedTab()); }

void Tarnwick1::selectTab(int index)
{
    if (index < 1 || index > 8) return;
    const int oldTab = selectedTab();
    if (index == oldTab) return;
    OnTabLeaving(index, oldTab);
    inTabChange_ = true;
    TabStrip1->setCurrentIndex(index - 1);
    inTabChange_ = false;
    tabBeforeChange_ = index;
    OnTabEntered(index, oldTab);
}

void Tarnwick1::selectTabByKey(const QString &key) { selectTab(tabIndex(key)); }

void Tarnwick1::BackToPreviousTab() { selectTab(PreviousTab); }

void Tarnwick1::OnTabLeaving(int newTab, int oldTab)
{
    Q_UNUSED(oldTab);
    G.SuppressToolCommand = true;
    G.CurrentPlayer = QStringLiteral("0");
    ToolBarComp1->setAllEnabled(false);
    ToolBarComp1->setToolbarVisible(7, false);
    for (int p = 2; p <= 6; ++p)
        if (ToolBarComp1->toolbarVisible(p)) ToolBarComp1->setToolbarVisible(p, false);

    const QString key = tabKey(newTab);
    bool areaHidden = false;
    if (key == QLatin1String("Find")) {
        ToolBarComp1->setToolbarVisible(2, true);
    } else if (key == QLatin1String("Pictures")) {
        Pictures->onEnterPicturesTab();
        if (!G.CurrentFile.trimmed().isEmpty()) G.SelectedFile = G.CurrentFile;
        ToolBarComp1->setToolbarVisible(3, true);
        if (List3->currentRow() >= 0) ToolBarComp1->press(List3->currentItem()->text());
        // Last: a remote picture still owed its verdict.
        Pictures->CheckInternetPicture();
    } else if (key == QLatin1String("Videos")) {
        G.CurrentPlayer = QStringLiteral("0");
        ToolBarComp1->setCaption(QStringLiteral("ID_StopVideo"), QStringLiteral("Stop Video"));
        ToolBarComp1->setCaption(QStringLiteral("ID_PlayBtn"), QStringLiteral("Play Video"));
        ToolBarComp1->setToolbarVisible(4, true);
    } else if (key == QLatin1String("Music")) {
        G.CurrentPlayer = QStringLiteral("1");
        ToolBarComp1->setCaption(QStringLiteral("ID_StopVideo"), QStringLiteral("Stop Music"));
        ToolBarComp1->setCaption(QStringLiteral("ID_PlayBtn"), QStringLiteral("Play Music"));
        ToolBarComp1->setToolbarVisible(4, true);
    } else if (key == QLatin1String("Documents")) {
        ToolBarComp1->setToolbarVisible(5, true);
        if (List6->currentRow() >= 0) ToolBarComp1->press(List6->currentItem()->text());
    } else if (key == QLatin1String("Internet")) {
        ToolBarComp1->setToolbarVisible(6, true);
        ToolBarComp1->setToolbarVisible(7, true);
        if (InternetFirstEntry) {
            ToolBarComp1->setToolTip(QStringLiteral("ID_IntURLEnter"),
                                     QStringLiteral("Enter Web Site Page Location or Select Visited Page"));
            InternetFirstEntry = false;
        }
    } else if (key == QLatin1String("Slide") || key == QLatin1String("Tools")) {
        ToolBarComp1->setToolAreaVisible(false);
        areaHidden = true;
    }
    if (!areaHidden && !ToolBarComp1->toolAreaVisible()) ToolBarComp1->setToolAreaVisible(true);
    ToolBarComp1->setAllEnabled(true);
    const QString videoDir = G.ProgramDir + QStringLiteral("/VideoPlayList/");
    const QString musicDir = G.ProgramDir + QStringLiteral("/MusicPlayList/");
    if (G.VideoListChanged) savePlayList(playListFile(G.VideoListName, videoDir), List4[1]);
    if (G.MusicListChanged) savePlayList(playListFile(G.MusicListName, musicDir), List5[1]);
    G.SuppressToolCommand = false;
    PreviousTab = static_cast<int16_t>(selectedTab());
}

QString Tarnwick1::playListFile(const QString &name, const QString &folder) const
{
    const QString base = name.startsWith(u'/') ? name : folder + name;
    return base + QStringLiteral(".PLST");
}

void Tarnwick1::OnTabEntered(int newTab, int oldTab)
{
    Q_UNUSED(oldTab);
    const QString key = tabKey(newTab);
    if (key != QLatin1String("Tools") && key != QLatin1String("Slide")) layoutMain();
    if (key == QLatin1String("Tools")) Tools->layoutTab();
    const QString tail = QStringLiteral(" - ") + AppTitle;
    if (key == QLatin1String("Find")) {
        const QString f = Browse->focusedItemPath();
        setTitle(f.isEmpty() ? AppTitle : f + tail);
        if (QWidget *l = findChild<QWidget *>(QStringLiteral("PTxShList1"))) l->setFocus();
    } else if (key == QLatin1String("Pictures")) {
        setTitle(G.SelectedFile + tail);
        if (Pictures->Image1 && static_cast<QWidget *>(Pictures->Image1)->isVisible())
            static_cast<QWidget *>(Pictures->Image1)->setFocus();
    } else if (key == QLatin1String("Videos")) {
        setTitle(MediaPlayer1Name + tail);
    } else if (key == QLatin1String("Music")) {
        setTitle(MediaPlayer2Name + tail);
    } else if (key == QLatin1String("Documents")) {
        setTitle((Text1->isVisible() ? Text1Document : WebBrowser1Document) + tail);
    } else if (key == QLatin1String("Internet")) {
        setTitle(WebPageName + tail);
    } else if (key == QLatin1String("Slide")) {
        setTitle(AppTitle + QStringLiteral(" - Set Picture Slide Show with Music"));
    } else if (key == QLatin1String("Tools")) {
        setTitle(AppTitle + QStringLiteral(" - Set Window and Program Colors and Options"));
    }
}

// ---------------------------------------------------------------- title, timer

void Tarnwick1::setTitle(const QString &title) { setWindowTitle(title); }
QString Tarnwick1::title() const { return windowTitle(); }

void Tarnwick1::runTimer()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QString date = QLocale::c().toString(now.date(), QStringLiteral("M/d/yyyy"));
    const QString time = QLocale::c().toString(now.time(), QStringLiteral("h:mm:ss AP"));
    const int tab = TabStrip1 ? selectedTab() : 1;
    if (tab != 6 && tab != 8) {
        ToolBarComp1->setCaption(QStringLiteral("ID_Date"), date);
        ToolBarComp1->setCaption(QStringLiteral("ID_Time"), time);
    }
    if (tab == 8) {
        Tools->Label2[6]->setText(date);
        Tools->Label2[7]->setText(time);
    }
    if (tab == 5) {
        SlideClock[0]->setText(date);
        SlideClock[1]->setText(time);
    }
}

// ---------------------------------------------------------------- commands

void Tarnwick1::OnToolClick(const QString &id)
{
    if (G.SuppressToolCommand) return;
    showHourglass();
    bool keepHourglass = false;
    if (Pictures->onToolClick(id) || Browse->onToolClick(id)) {
        // handled by the picture or the explorer side
    } else if (id == QLatin1String("ID_mnuExit")) {
        hideHourglass();
        keepHourglass = true;
        close();
    } else if (id == QLatin1String("ID_mnuOpenOLE")) {
        OpenWithShell();
    } else if (id == QLatin1String("ID_mnuFileBackPrevious")) {
        BackToPreviousTab();
    } else if (id == QLatin1String("ID_mnuSetColorsforTarnwick")
               || id == QLatin1String("ID_mnuSetTarnwickOptions")) {
        selectTab(8);
    } else if (id == QLatin1String("ID_mnuCreateSlideShow")) {
        selectTab(5);
    } else if (id == QLatin1String("ID_mnuUtilitiesSetComputer")) {
        G.Options.ComputerNameUnset = true;
        SetComputerName();
    } else if (id == QLatin1String("ID_Back")) {
        walkHistory(List3, -1, true);
    } else if (id == QLatin1String("ID_Forward")) {
        walkHistory(List3, +1, true);
    } else if (id == QLatin1String("ID_TxtBack")) {
        walkHistory(List6, -1, false);
    } else if (id == QLatin1String("ID_TxtForward")) {
        walkHistory(List6, +1, false);
    } else if (id == QLatin1String("ID_mnuCopy")) {
        if (selectedTab() == 6 && Text1->isVisible() && !Text1->toPlainText().isEmpty())
            Text1->selectAll(), Text1->copy();
    } else if (id == QLatin1String("ID_mnuHelpTableofContents")
               || id == QLatin1String("ID_HelpOpen")) {
        showHelp(false);
    } else if (id == QLatin1String("ID_mnuHelpSearch")) {
        showHelp(true);
    } else if (id == QLatin1String("ID_HelpImage") || id == QLatin1String("ID_PlayHelp")
               || id == QLatin1String("ID_TxtHelp") || id == QLatin1String("ID_IntHelp")) {
        contextHelp(id);
    } else if (id == QLatin1String("ID_EditImage") || id == QLatin1String("ID_EditColors")
               || id == QLatin1String("ID_PrintImage")) {
        // The save prompt comes first, then the file under edit is the picture list's row;
        // the editors and the print window open from here when they are part of the build.
        offerToSaveChangedPicture();
        if (List3->currentItem()) G.EditedFile = List3->currentItem()->text();
    } else if (id == QLatin1String("ID_FilterBtn") || id == QLatin1String("ID_ViewBtn")
               || id == QLatin1String("ID_ViewImage")) {
        OnToolDropDown(id);
    } else if (ToolBarComp1->category(id) == QLatin1String("FilterList")) {
        chooseFilter(id);
    } else if (ToolBarComp1->category(id) == QLatin1String("MenuViewList")) {
        chooseViewListFile(id);
    }
    if (!keepHourglass) hideHourglass();
}

void Tarnwick1::OnToolDropDown(const QString &id)
{
    if (id == QLatin1String("ID_FilterBtn") || id == QLatin1String("ID_ViewBtn")
        || id == QLatin1String("ID_ViewImage"))
        ToolBarComp1->dropDown(id);
}

void Tarnwick1::chooseFilter(const QString &name)
{
    G.SuppressToolCommand = true;
    for (int row = 0; row < FilterRows; ++row) {
        if (Cat.FilterNames[row] != name) continue;
        Cat.FilterPatterns[row] = Cat.FilterPatterns[row].trimmed();
        Browse->setListPattern(Cat.FilterPatterns[row]);
        G.CurrentFilterRow = static_cast<int16_t>(row);
        const QString trimmed = Cat.FilterNames[row].trimmed();
        ToolBarComp1->setVisible(QStringLiteral("ID_Separator2"), trimmed.size() <= 20);
        if (ScreenWidthTwips != 9600) {
            ToolBarComp1->setCaption(QStringLiteral("ID_FilterName"), trimmed);
        } else {
            ToolBarComp1->setVisible(QStringLiteral("ID_FilterName"), false);
        }
        break;
    }
    G.SuppressToolCommand = false;
}

void Tarnwick1::chooseViewListFile(const QString &id)
{
    G.SuppressToolCommand = true;
    const int n3 = List3->count(), n6 = List6->count();
    const QString key = id.trimmed();
    for (int i = 0; i < qMax(n3, n6); ++i) {
        if (i < n3 && List3->item(i)->text().trimmed() == key) {
            List3->setCurrentRow(i);
            G.FromInternet = false;
            DisplayFile(List3->item(i)->text());
            break;
        }
        if (i < n6 && List6->item(i)->text().trimmed() == key) {
            List6->setCurrentRow(i);
            DisplayFile(List6->item(i)->text());
            break;
        }
    }
    G.SuppressToolCommand = false;
}

void Tarnwick1::contextHelp(const QString &id)
{
    G.SuppressToolCommand = true;
    ToolBarComp1->setEnabled(QStringLiteral("ID_mnuHelpTableofContents"), false);
    ToolBarComp1->setEnabled(QStringLiteral("ID_mnuHelpSearch"), false);
    QString topic;
    if (id == QLatin1String("ID_HelpImage")) topic = QStringLiteral("pictures");
    else if (id == QLatin1String("ID_PlayHelp")) topic = QStringLiteral("players");
    else if (id == QLatin1String("ID_TxtHelp")) topic = QStringLiteral("documents");
    else topic = QStringLiteral("internet");
    showHelpTopic(topic);
    ToolBarComp1->setEnabled(QStringLiteral("ID_mnuHelpTableofContents"), true);
    ToolBarComp1->setEnabled(QStringLiteral("ID_mnuHelpSearch"), true);
    G.SuppressToolCommand = false;
}

void Tarnwick1::showHelp(bool search)
{
    if (!help_) help_ = new HelpViewer(G.ProgramDir + QStringLiteral("/Help"), this);
    help_->showContents(search);
}

void Tarnwick1::showHelpTopic(const QString &topic)
{
    if (!help_) help_ = new HelpViewer(G.ProgramDir + QStringLiteral("/Help"), this);
    help_->showTopic(topic);
}

// ---------------------------------------------------------------- colours

void Tarnwick1::ApplyColors()
{
    const ColorSettings &c = G.Colors;
    auto paint = [](QWidget *w, uint32_t back, uint32_t text) {
        if (!w) return;
        QPalette p = w->palette();
        paintPalette(p, back, text);
        w->setPalette(p);
        w->setAutoFillBackground(true);
    };
    // Menus and toolbars
    paint(menuBar(), c.MenuBack, c.MenuText);
    for (int p = 2; p <= 7; ++p) paint(ToolBarComp1->toolbar(p), c.MenuBack, c.MenuText);
    // Tabs
    paint(TabStrip1->tabBar(), c.TabBack, c.TabText);
    // Service panels
    for (int i = 1; i <= 8; ++i) paint(TabPanel[i], c.ServiceBack, c.ServiceText);
    paint(Frame1[5], c.ServiceBack, c.ServiceText);
    paint(Frame1[8], c.ServiceBack, c.ServiceText);
    // Lists
    for (QWidget *w : {static_cast<QWidget *>(List3), static_cast<QWidget *>(List4[0]),
                       static_cast<QWidget *>(List4[1]), static_cast<QWidget *>(List5[0]),
                       static_cast<QWidget *>(List5[1]), static_cast<QWidget *>(List6),
                       static_cast<QWidget *>(List7), static_cast<QWidget *>(Splitter1)})
        paint(w, c.ListBack, c.ListText);
    if (SelectWin) paint(SelectWin->List1, c.ListBack, c.ListText);
    Browse->applyColors();
    // Entries
    for (QWidget *w : Tools->Text4) paint(w, c.EntryBack, c.EntryText);
    // Picture
    Pictures->applyColors();
    // Music, video and documents
    paint(findChild<QWidget *>(QStringLiteral("MusicFrame")), c.MusicBack, c.MusicText);
    paint(findChild<QWidget *>(QStringLiteral("VideoFrame")), c.VideoBack, c.VideoText);
    paint(Text6, c.DocumentBack, c.DocumentText);
    paint(Text1, c.DocumentBack, c.DocumentText);
    paint(findChild<QWidget *>(QStringLiteral("WebBrowser2")), c.InternetBack, c.InternetText);
    // Check boxes and option buttons take the service colours; buttons their own.
    for (QWidget *w : findChildren<QWidget *>()) {
        const QString cls = QString::fromLatin1(w->metaObject()->className());
        if (cls == QLatin1String("QCheckBox") || cls == QLatin1String("QRadioButton"))
            paint(w, c.ServiceBack, c.ServiceText);
        else if (cls == QLatin1String("QPushButton"))
            paint(w, c.ButtonBack, c.ButtonText);
    }
    // Bold fonts on lists, combos, check boxes and buttons.
    for (QWidget *w : findChildren<QWidget *>()) {
        const QString cls = QString::fromLatin1(w->metaObject()->className());
        if (cls == QLatin1String("QListWidget") || cls == QLatin1String("QComboBox")
            || cls == QLatin1String("QCheckBox") || cls == QLatin1String("QPushButton")
            || w->inherits("QAbstractItemView")) {
            QFont f = w->font();
            f.setBold(G.Options.BoldFonts);
            w->setFont(f);
        }
    }
    Tools->repaintEntries();
}

// ---------------------------------------------------------------- events

bool Tarnwick1::eventFilter(QObject *o, QEvent *e)
{
    if (TabStrip1 && o == TabStrip1->tabBar()) {
        if (e->type() == QEvent::MouseButtonPress) {
            auto *me = static_cast<QMouseEvent *>(e);
            if (me->button() == Qt::LeftButton) {
                const int idx = TabStrip1->tabBar()->tabAt(me->position().toPoint());
                if (idx >= 0) selectTab(idx + 1);
                return true;
            }
        }
    }
    if (o == ToggleBtn) {
        switch (e->type()) {
        case QEvent::MouseButtonPress:
            if (static_cast<QMouseEvent *>(e)->button() == Qt::LeftButton)
                toggleDrag_.mouseDown(clockSeconds());
            break;
        case QEvent::MouseMove:
            if (toggleDrag_.dragging()) {
                const QPoint at = ToggleBtn->mapToParent(static_cast<QMouseEvent *>(e)->position().toPoint());
                Q_UNUSED(at);
                return true;
            }
            if (toggleDrag_.mouseMove(clockSeconds())) {
                ToggleBtn->setCursor(Qt::ClosedHandCursor);
                return true;
            }
            break;
        case QEvent::MouseButtonRelease:
            if (toggleDrag_.dragging()) {
                auto *me = static_cast<QMouseEvent *>(e);
                const QPoint global = ToggleBtn->mapToGlobal(me->position().toPoint());
                QWidget *img = Pictures->Image1 ? static_cast<QWidget *>(Pictures->Image1) : nullptr;
                const bool over = img && img->isVisible()
                                  && img->rect().contains(img->mapFromGlobal(global));
                const QPoint inFrame = Frame1[0]->mapFromGlobal(global);
                if (toggleDrag_.drop(over)) ToggleBtn->move(inFrame);
                ToggleBtn->unsetCursor();
                ToggleBtn->setDown(false);
                return true;  // a drag is no click
            }
            toggleDrag_.mouseUp();
            break;
        default:
            break;
        }
    }
    return QMainWindow::eventFilter(o, e);
}

// ---------------------------------------------------------------- shutdown

void Tarnwick1::closeEvent(QCloseEvent *e)
{
    if (!shutDownDone_) shutDown();
    e->accept();
}

void Tarnwick1::shutDown()
{
    shutDownDone_ = true;
    // 1. The sound device stops with the players' feature.
    // 2. A changed picture is offered for saving.
    if (PictureChanged) {
        if (askYesNo(QStringLiteral("Do you want to Save the Current Picture - ") + G.CurrentFile
                         + QStringLiteral(" ? "),
                     AppTitle, this))
            SaveFileAs(G.CurrentFile);
    }
    // 3. Geometry in twips.
    const QRect g = geometry();
    G.Options.WindowLeft = frameGeometry().x() * 15;
    G.Options.WindowTop = frameGeometry().y() * 15;
    G.Options.WindowHeight = g.height() * 15;
    G.Options.WindowWidth = g.width() * 15;
    // 4. The folder of the list.
    if (G.Options.SaveLastFolder) G.Options.LastFolder = Browse->listFolder();
    // 5. Options.INI.
    const StoreResult r = SaveOptions(G.Options, G.ProgramDir);
    if (!r.ok) inform(r.message, AppTitle, this);
    // 6. Open dialogs go with the main window.
    if (G.Select1Loaded && SelectWin) {
        delete SelectWin;
        SelectWin = nullptr;
    }
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w != this && w->parentWidget() == this && w->isVisible()) w->close();
    // 7. The help window.
    if (help_) help_->close();
    Timer1->stop();
}

bool Tarnwick1::windowVariableText(const QString &name, QString *out) const
{
    auto b = [](bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); };
    if (name == QLatin1String("StartingUp")) *out = b(StartingUp);
    else if (name == QLatin1String("PictureChanged")) *out = b(PictureChanged);
    else if (name == QLatin1String("FileCommandsOn")) *out = b(FileCommandsOn);
    else if (name == QLatin1String("PictureResized")) *out = b(PictureResized);
    else if (name == QLatin1String("PreviousTab")) *out = QString::number(PreviousTab);
    else if (name == QLatin1String("ScreenWidthTwips")) *out = QString::number(ScreenWidthTwips);
    else if (name == QLatin1String("ScreenRatioX")) *out = QString::number(ScreenRatioX, 'g', 15);
    else if (name == QLatin1String("ScreenRatioY")) *out = QString::number(ScreenRatioY, 'g', 15);
    else if (name == QLatin1String("ThumbScaleX")) *out = QString::number(ThumbScaleX, 'g', 15);
    else if (name == QLatin1String("ThumbScaleY")) *out = QString::number(ThumbScaleY, 'g', 15);
    else if (name == QLatin1String("IsDocumentFile")) *out = b(IsDocumentFile);
    else if (name == QLatin1String("LastLoader")) *out = LastLoader;
    else if (name == QLatin1String("Activations")) *out = QString::number(Activations);
    else if (name == QLatin1String("VideoListPath")) *out = VideoListPath;
    else if (name == QLatin1String("MusicListPath")) *out = MusicListPath;
    else if (name == QLatin1String("MediaFilterExtra")) *out = Cat.MediaFilterExtra;
    else if (name.startsWith(QLatin1String("CommandArg")) && name.size() == 11) {
        const int i = name.at(10).digitValue();
        if (i < 1 || i > 6) return false;
        *out = Args.CommandArg[i - 1];
    } else if (name == QLatin1String("LocalComputerName")) *out = G.Options.LocalComputerName;
    else if (name == QLatin1String("ToggleBtnLeft")) *out = QString::number(ToggleBtn->x());
    else if (name == QLatin1String("ToggleBtnTop")) *out = QString::number(ToggleBtn->y());
    else if (name == QLatin1String("HelpPage")) *out = help_ ? help_->currentPage() : QString();
    else if (name == QLatin1String("HelpTitle")) *out = help_ ? help_->currentTitle() : QString();
    else if (name == QLatin1String("ClockOnTools"))
        *out = b(!Tools->Label2[6]->text().isEmpty() && !Tools->Label2[7]->text().isEmpty());
    else if (name == QLatin1String("ClockOnSlide"))
        *out = b(!SlideClock[0]->text().isEmpty() && !SlideClock[1]->text().isEmpty());
    else if (name == QLatin1String("MenuOrder")) {
        QStringList ids;
        for (QAction *a : menuBar()->actions()) ids << a->objectName();
        *out = ids.join(u' ');
    } else if (name.endsWith(QLatin1String("Menu"))) {
        // The tools of one menu in order, "|" for a separator.
        const QString id = QStringLiteral("ID_mnu") + name.left(name.size() - 4);
        QMenu *m = ToolBarComp1->menu(id);
        if (!m) return false;
        QStringList ids;
        for (QAction *a : m->actions())
            ids << (a->isSeparator() ? QStringLiteral("|") : a->objectName());
        *out = ids.join(u' ');
    }
    else return false;
    return true;
}

}  // namespace tw
