#include "tarnwick1.h"

#include "computer_name.h"
#include "core/busy.h"
#include "core/colors.h"
#include "core/context_help.h"
#include "core/file_icons.h"
#include "core/looks.h"
#include "core/errors.h"
#include "core/options_store.h"
#include "core/print_target.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "core/text_rules.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"
#include "core/tool_table.h"
#include "help_window.h"
#include "resources_install.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScreen>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace tw {

namespace {
Tarnwick1 *s_instance = nullptr;

// The page of a tab whose subsystem is not part of this build: its caption and an empty panel.
class PlainPage : public TabPage {
public:
    PlainPage(PageHost &host, int index) : TabPage(host, index) {}
};
}  // namespace

Tarnwick1 *Tarnwick1::instance() { return s_instance; }

std::function<bool(const QString &)> &Tarnwick1::shellOpener()
{
    static std::function<bool(const QString &)> open = [](const QString &path) {
        return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    };
    return open;
}

Tarnwick1::Tarnwick1(const QString &rawCommandLine, QWidget *parent) : QMainWindow(parent)
{
    s_instance = this;
    G = Globals{};
    Cat = Catalogue{};
    setObjectName(QStringLiteral("Tarnwick1"));
    setWindowTitle(AppTitle);
    setPromptParent(this);
    setHourglassWindow(this);
    buildControls();
    // The file icons' theme is named after the menus and toolbars are made: they take the
    // style's own pictures, and a named theme would be searched for each of them first.
    useIconThemeWithFileIcons();
    FileIcons::gate().holdFor(this);
    linkPages();
    makePages();
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
    // A routine that reports a store's failure in a box, as the window does.
    auto store = [this](const QString &name, std::function<StoreResult()> fn, bool always) {
        registerScenarioRoutine(name, [this, fn, always](const QStringList &) {
            const StoreResult r = fn();
            if ((always || !r.ok) && !r.message.isEmpty()) inform(r.message, AppTitle, this);
            return QString();
        });
    };
    withPath(QStringLiteral("DisplayFile"), [this](const QString &p) { DisplayFile(p); });
    none(QStringLiteral("ResetSession"), [this] { ResetSession(); });
    none(QStringLiteral("ShowExplorerItem"), [this] { ShowExplorerItem(); });
    none(QStringLiteral("BackToPreviousTab"), [this] { BackToPreviousTab(); });
    withPath(QStringLiteral("SetFileCommands"), [this](const QString &a) {
        const QString v = a.toLower();
        SetFileCommands(v == QLatin1String("true") || v == QLatin1String("1"));
    });
    withPath(QStringLiteral("AddViewMenuItem"), [this](const QString &p) { AddViewMenuItem(p); });
    withPath(QStringLiteral("AddDocumentHistory"), [this](const QString &p) { AddDocumentHistory(p); });
    none(QStringLiteral("LoadFolderPictures"), [this] {
        if (PictureSide *p = pictures()) p->LoadFolderPictures();
    });
    none(QStringLiteral("OpenWithShell"), [this] { OpenWithShell(); });
    none(QStringLiteral("Timer1"), [this] { runTimer(); });
    none(QStringLiteral("ApplyColors"), [this] { ApplyColors(); });
    none(QStringLiteral("GetThisComputerName"), [this] { GetThisComputerName(); });
    none(QStringLiteral("SetComputerName"), [this] { SetComputerName(); });
    withPath(QStringLiteral("SelectTab"),
             [this](const QString &a) { selectTab(tabIndex(a) ? tabIndex(a) : a.toInt()); });
    // The option store's routines, for scenarios that edit the settings behind the window.
    store(
        QStringLiteral("SaveOptions"), [] { return tw::SaveOptions(G.Options, G.ProgramDir); }, false);
    store(
        QStringLiteral("SaveColors"), [] { return tw::SaveColors(G.Colors, G.ProgramDir); }, false);
    store(
        QStringLiteral("LoadOptions"), [] { return tw::LoadOptions(G.Options, G.ProgramDir); }, true);
    store(
        QStringLiteral("LoadColors"), [] { return tw::LoadColors(G.Colors, G.ProgramDir); }, true);
    none(QStringLiteral("SetDefaultOptions"), [] { tw::SetDefaultOptions(G.Options, G.ProgramDir); });
    none(QStringLiteral("SetDefaultColors"), [] { tw::SetDefaultColors(G.Colors); });
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
    none(QStringLiteral("Activate"), [this] { activated(); });
    registerPrintTargetRoutine();
}

Tarnwick1::~Tarnwick1()
{
    if (s_instance == this) s_instance = nullptr;
    setHourglassWindow(nullptr);
    // The pages go before the controls they hold.
    for (auto &p : pages_)
        if (p) p.reset();
    commandSets_.clear();
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
    for (QLatin1String id : {tool::FilterBtn, tool::ViewBtn, tool::ViewImage}) {
        if (QToolBar *tb = ToolBarComp1->toolbar(id == tool::ViewImage ? 3 : 2))
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

    for (int i = 1; i <= TabCount; ++i) {
        TabPanel[i] = new QWidget;
        TabPanel[i]->setObjectName(QStringLiteral("TabPanel%1").arg(i));
        TabPanel[i]->setAutoFillBackground(true);
        TabStrip1->addTab(TabPanel[i], tabCaption(i));
        TabStrip1->setTabToolTip(i - 1, tabToolTip(i));
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

    // The filter is chosen from the Filter drop-down; the combo keeps the rows.
    CMBFILTER = new QComboBox(TabPanel[1]);
    CMBFILTER->setObjectName(QStringLiteral("CMBFILTER"));
    CMBFILTER->hide();

    List7 = new QListWidget(this);
    List7->setObjectName(QStringLiteral("List7"));
    List7->hide();

    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(900);
    connect(Timer1, &QTimer::timeout, this, &Tarnwick1::runTimer);

    // F1 opens the help on the topic of the control that has the focus.
    installContextHelp([this](const QString &topic) { showHelpTopic(topic); });
    setHelpTopic(this, QStringLiteral("index"));
}

void Tarnwick1::makePages()
{
    for (int i = 1; i <= TabCount; ++i) {
        if (PageFactory make = pageFactory(i)) pages_[size_t(i)] = make(*this);
        else pages_[size_t(i)] = std::make_unique<PlainPage>(*this, i);
        pages_[size_t(i)]->setPanel(TabPanel[i]);
        pages_[size_t(i)]->addLoaders(Loaders);
    }
    for (const CommandSetFactory &make : commandSetFactories()) commandSets_.push_back(make(*this));
    greyUnhandledTools();
}

TabPage *Tarnwick1::page(int index)
{
    return index >= 1 && index <= TabCount ? pages_[size_t(index)].get() : nullptr;
}

ExplorerSide *Tarnwick1::explorer()
{
    for (auto &p : pages_)
        if (auto *e = dynamic_cast<ExplorerSide *>(p.get())) return e;
    return nullptr;
}

PictureSide *Tarnwick1::pictures()
{
    for (auto &p : pages_)
        if (auto *s = dynamic_cast<PictureSide *>(p.get())) return s;
    return nullptr;
}

void Tarnwick1::buildAllPages()
{
    for (auto &p : pages_)
        if (p) p->ensureBuilt();
}

void Tarnwick1::pageBuilt(TabPage *p)
{
    // A page made after the start takes the colours and fonts as they stand.
    paintControls(p->panel());
    p->applyColors();
}

QStringList Tarnwick1::windowTools()
{
    return {tool::mnuExit,
            tool::mnuOpenOLE,
            tool::mnuFileBackPrevious,
            tool::mnuSetColorsforTarnwick,
            tool::mnuSetTarnwickOptions,
            tool::mnuCreateSlideShow,
            tool::mnuUtilitiesSetComputer,
            tool::Back,
            tool::Forward,
            tool::TxtBack,
            tool::TxtForward,
            tool::mnuCopy,
            tool::mnuHelpTableofContents,
            tool::HelpOpen,
            tool::mnuHelpSearch,
            tool::HelpImage,
            tool::PlayHelp,
            tool::TxtHelp,
            tool::IntHelp,
            tool::FilterBtn,
            tool::ViewImage,
            tool::mnuPaste,
            tool::mnuCut};
}

QStringList Tarnwick1::unknownHandledTools() const
{
    QStringList unknown;
    QStringList handled = windowTools();
    for (const auto &p : pages_)
        if (p) handled += p->handledTools();
    for (const auto &c : commandSets_) handled += c->handledTools();
    for (const QString &id : handled)
        if (!ToolBarComp1->has(id)) unknown << id;
    return unknown;
}

void Tarnwick1::greyUnhandledTools()
{
    // A command tool that neither the window nor a page answers belongs to a feature this
    // build does not have: it is present and stays grey. Menus and labels are no commands.
    QStringList handled = windowTools();
    for (const auto &p : pages_)
        if (p) handled += p->handledTools();
    for (const auto &c : commandSets_) handled += c->handledTools();
    for (const ToolDef &d : toolTable()) {
        if (d.kind == ToolKind::Menu || d.kind == ToolKind::Label) continue;
        if (!handled.contains(d.id)) ToolBarComp1->markUnbuilt({d.id});
    }
    const QStringList unknown = unknownHandledTools();
    if (!unknown.isEmpty())
        qWarning("Tarnwick1: handled tools missing from the tool table: %s", qPrintable(unknown.join(u' ')));
}

// ---------------------------------------------------------------- start-up

void Tarnwick1::startUp(const QString &raw)
{
    // 1. Screen measures, the hourglass, the clock.
    const QScreen *scr = QGuiApplication::primaryScreen();
    const QRect sg = scr ? scr->geometry() : QRect(0, 0, 640, 480);
    State.ScreenWidthTwips = static_cast<int16_t>(qMin(32767, sg.width() * 15));
    State.ScreenRatioX = State.ScreenWidthTwips / 9600.0;
    State.ScreenRatioY = (sg.height() * 15) / 7200.0;
    State.ThumbScaleX = 1.4 * 544.26 * State.ScreenRatioX;
    State.ThumbScaleY = 1.4 * 507.41 * State.ScreenRatioY;
    State.StartingUp = true;
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
    ToolBarComp1->setEnabled(tool::mnuPaste, false);

    // 7. Colours and options (the Tools tab shows them when it is first entered).
    G.CurrentExt.clear();
    {
        const StoreResult r = LoadColors(G.Colors, G.ProgramDir);
        if (!r.message.isEmpty()) inform(r.message, AppTitle, this);
    }
    SetDefaultOptions(G.Options, G.ProgramDir);
    {
        const StoreResult r = LoadOptions(G.Options, G.ProgramDir);
        if (!r.message.isEmpty()) inform(r.message, AppTitle, this);
    }

    // 8. The filter and extension tables.
    {
        SuppressTools quiet;
        Cat.fillFilters();
        for (int row = 0; row < FilterRows; ++row) {
            AddFilterMenuItem(Cat.FilterNames[row]);
            CMBFILTER->addItem(Cat.FilterNames[row]);
            if (row == 33) Cat.MediaFilterExtra = MediaFilterExtraLiteral;
        }
        CMBFILTER->setCurrentIndex(33);
        Cat.fillExtensions();
    }

    // 9. The stop tool shows only while thumbnails load.
    ToolBarComp1->setVisible(tool::Stop, false);

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

    // 12. The computer name.
    GetThisComputerName();

    // 13. The help file.
    helpFile_ = G.ProgramDir + QStringLiteral("/Help/Ostrel.Hlp");

    // 11, 14, 15: the pages' own steps (the splitter of the Find tab, the play-list folders).
    for (auto &p : pages_)
        if (p) p->startUp();
    for (auto &c : commandSets_) c->startUp();

    // 16. Reset, file commands off, colours on.
    ResetSession();
    SetFileCommands(false);
    ApplyColors();

    // 17. is the Find page's (the list's view and its tool).
    // 18. The address bar shows only on the Internet tab.
    ToolBarComp1->setToolbarVisible(7, false);

    // 20. Quick tips.
    if (o.ShowQuickTips) G.QuickTipsOpen = true;

    // The Find tab is shown at start; the other pages are made when they are first needed.
    if (TabPage *shown = page(selectedTab())) shown->ensureBuilt();
    Timer1->start();
}

void Tarnwick1::AddFilterMenuItem(const QString &name)
{
    Tool *t = ToolBarComp1->addDynamicTool(name, QStringLiteral("FilterList"), tool::mnuFileFilterDropDown,
                                           G.ProgramDir + QStringLiteral("/BMPS/Check.BMP"));
    if (!t && !filterMenuErrorShown_) {
        filterMenuErrorShown_ = true;
        inform(unexpectedErrorText(5), AppTitle, this);
    }
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
    G.CurrentFilterRow = 35;
    G.Select1Visible = false;
    G.FromInternet = false;
    G.InternetPictureLoaded = false;
    G.SwitchToFileTab = true;
    for (auto &p : pages_)
        if (p) p->reset();
}

// ---------------------------------------------------------------- activation

void Tarnwick1::activated()
{
    ++Activations;
    if (State.StartingUp && !firstActivationDone_) FirstActivation();
    // Every activation: the command sets' own steps (the quick tips window, when it is in
    // the build, opens here while QuickTipsOpen and ShowQuickTips are both on).
    for (auto &c : commandSets_) c->activated();
}

void Tarnwick1::FirstActivation()
{
    // Runs once, even when a box that it shows brings another activation before it ends.
    firstActivationDone_ = true;
    const OptionSettings &o = G.Options;
    ExplorerSide *ex = explorer();
    if (!o.LastFolder.trimmed().isEmpty() && o.SaveLastFolder && ex) {
        ex->setListFolder(o.LastFolder);
        if (PictureSide *pic = pictures()) pic->LoadFolderPictures();
    }
    if (!Args.CommandArg[0].trimmed().isEmpty()) {
        const QString path = JoinCommandLine(Args);
        const int slash = path.lastIndexOf(u'/');
        if (slash + 1 >= 3 && ex) ex->setListFolder(path.left(slash));
        DisplayFile(path);
        setTitle(path + QStringLiteral(" - ") + AppTitle);
        Args.CommandArg[0].clear();
    }
    if (hourglassUp_) {
        hideHourglass();
        hourglassUp_ = false;
    }
    setTitle(AppTitle);
    if (State.ScreenWidthTwips != 9600) {
        ToolBarComp1->setCaption(tool::FilterName, Cat.FilterNames[33].trimmed());
    } else {
        ToolBarComp1->setVisible(tool::FilterName, false);
    }
    State.StartingUp = false;
    unsetCursor();
}

bool Tarnwick1::event(QEvent *e)
{
    if (e->type() == QEvent::WindowActivate) activated();
    if (e->type() == QEvent::Paint && !painted_) {
        // On screen: the file icons held back until now come once this frame is out.
        painted_ = true;
        QTimer::singleShot(0, this, [] { FileIcons::gate().release(); });
    }
    return QMainWindow::event(e);
}

void Tarnwick1::resizeEvent(QResizeEvent *e)
{
    QMainWindow::resizeEvent(e);
    layoutMain();
}

void Tarnwick1::layoutMain()
{
    if (TabPage *p = page(selectedTab())) p->layout();
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
    // The selection list keeps every file shown in this session.
    for (auto &c : commandSets_) c->fileDisplayed(path);

    if (IsMediaFile(path)) {
        LoadMediaFile(path);
    } else if (!IsDocumentFile) {
        LoadImage(path);
        if (!State.FileCommandsOn) {
            SetFileCommands(true);
            State.FileCommandsOn = true;
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
    const QString item = explorer() ? explorer()->focusedItemPath() : QString();
    bool ok = !item.isEmpty() && QFileInfo::exists(item);
    if (ok) ok = shellOpener()(item);
    hideHourglass();
    if (!ok)
        inform(QStringLiteral("Error Loading File Type - Check Explorer Options to set up Program "
                              "for this File Type - ")
                   + G.CurrentExt,
               AppTitle, this);
}

QListWidget *Tarnwick1::historyOf(int tab)
{
    TabPage *p = page(tab);
    if (!p) return nullptr;
    p->ensureBuilt();
    return p->history();
}

void Tarnwick1::AddDocumentHistory(const QString &path)
{
    QListWidget *list6 = historyOf(6);
    if (!list6) return;
    int found = -1;
    for (int i = 0; i < list6->count(); ++i) {
        if (list6->item(i)->text() == path) {
            found = i;
            break;
        }
    }
    if (found < 0) {
        list6->addItem(path);
        list6->setCurrentRow(list6->count() - 1);
    }
    const QString sel = list6->currentItem() ? list6->currentItem()->text() : path;
    AddViewMenuItem(sel);
    SuppressTools quiet;
    ToolBarComp1->press(sel);
}

void Tarnwick1::ShowExplorerItem()
{
    const QString path = explorer() ? explorer()->focusedItemPath() : QString();
    G.FromInternet = false;
    if (!FileMissing(path)) DisplayFile(path);
    if (G.SelectedFile.trimmed().isEmpty()) setTitle(AppTitle);
    else setTitle(path + QStringLiteral(" - ") + AppTitle);
}

void Tarnwick1::LoadInternetPage(const QString &url)
{
    for (auto &p : pages_)
        if (p && p->showAddress(url)) return;
}

void Tarnwick1::AddViewMenuItem(const QString &path)
{
    ToolBarComp1->addDynamicTool(path, QStringLiteral("MenuViewList"), tool::mnuView,
                                 G.ProgramDir + QStringLiteral("/BMPS/Check.BMP"));
}

void Tarnwick1::walkHistory(QListWidget *list, int step, bool picture)
{
    if (!list) return;
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

// ---------------------------------------------------------------- file commands

void Tarnwick1::SetFileCommands(bool on)
{
    for (QLatin1String id :
         {tool::mnuCloseFile, tool::mnuSaveFileAs, tool::mnuRenameFile, tool::mnuDeleteFile,
          tool::mnuConvertFiles, tool::mnuProperties, tool::mnuPrintFiles, tool::Print, tool::mnuOpenOLE})
        ToolBarComp1->setEnabled(id, on);
    for (auto &p : pages_)
        if (p) p->fileCommandsChanged(on);
}

// ---------------------------------------------------------------- tabs

int Tarnwick1::selectedTab() const { return TabStrip1->currentIndex() + 1; }
QString Tarnwick1::selectedTabKey() const { return tabKey(selectedTab()); }

void Tarnwick1::selectTab(int index)
{
    if (index < 1 || index > TabCount) return;
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

void Tarnwick1::BackToPreviousTab() { selectTab(State.PreviousTab); }

void Tarnwick1::OnTabLeaving(int newTab, int oldTab)
{
    Q_UNUSED(oldTab);
    {
        SuppressTools quiet;
        G.CurrentPlayer = QStringLiteral("0");
        ToolBarComp1->setAllEnabled(false);
        ToolBarComp1->setToolbarVisible(7, false);
        for (int p = 2; p <= 6; ++p)
            if (ToolBarComp1->toolbarVisible(p)) ToolBarComp1->setToolbarVisible(p, false);

        TabPage *entering = page(newTab);
        entering->ensureBuilt();
        entering->entering();
        const QString key = tabKey(newTab);
        const bool areaHidden = key == QLatin1String("Slide") || key == QLatin1String("Tools");
        if (areaHidden) ToolBarComp1->setToolAreaVisible(false);
        else if (!ToolBarComp1->toolAreaVisible()) ToolBarComp1->setToolAreaVisible(true);
        ToolBarComp1->setAllEnabled(true);
        for (auto &p : pages_)
            if (p) p->tabChanging();
    }
    G.SuppressToolCommand = false;
    State.PreviousTab = static_cast<int16_t>(selectedTab());
}

void Tarnwick1::OnTabEntered(int newTab, int oldTab)
{
    Q_UNUSED(oldTab);
    TabPage *p = page(newTab);
    const QString key = p->key();
    if (key != QLatin1String("Tools") && key != QLatin1String("Slide")) layoutMain();
    if (key == QLatin1String("Tools")) p->layout();
    setTitle(p->tabTitle());
    p->entered();
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
        ToolBarComp1->setCaption(tool::Date, date);
        ToolBarComp1->setCaption(tool::Time, time);
    }
    TabPage *p = page(tab);
    if (p && p->built()) p->showClock(date, time);
}

// ---------------------------------------------------------------- commands

void Tarnwick1::OnToolClick(const QString &id)
{
    if (G.SuppressToolCommand) return;
    showHourglass();
    bool keepHourglass = false;
    bool handled = false;
    // The page on show answers first, then the others.
    if (TabPage *shown = page(selectedTab())) handled = shown->toolClick(id);
    for (int i = 1; i <= TabCount && !handled; ++i)
        if (i != selectedTab()) handled = pages_[size_t(i)]->toolClick(id);
    for (size_t i = 0; i < commandSets_.size() && !handled; ++i) handled = commandSets_[i]->toolClick(id);
    if (handled) {
        // answered by a page
    } else if (id == tool::mnuExit) {
        hideHourglass();
        keepHourglass = true;
        close();
    } else if (id == tool::mnuOpenOLE) {
        OpenWithShell();
    } else if (id == tool::mnuFileBackPrevious) {
        BackToPreviousTab();
    } else if (id == tool::mnuSetColorsforTarnwick || id == tool::mnuSetTarnwickOptions) {
        selectTab(8);
    } else if (id == tool::mnuCreateSlideShow) {
        selectTab(5);
    } else if (id == tool::mnuUtilitiesSetComputer) {
        G.Options.ComputerNameUnset = true;
        SetComputerName();
    } else if (id == tool::Back) {
        walkHistory(historyOf(2), -1, true);
    } else if (id == tool::Forward) {
        walkHistory(historyOf(2), +1, true);
    } else if (id == tool::TxtBack) {
        walkHistory(historyOf(6), -1, false);
    } else if (id == tool::TxtForward) {
        walkHistory(historyOf(6), +1, false);
    } else if (id == tool::mnuHelpTableofContents || id == tool::HelpOpen) {
        showHelp(false);
    } else if (id == tool::mnuHelpSearch) {
        showHelp(true);
    } else if (id == tool::HelpImage || id == tool::PlayHelp || id == tool::TxtHelp || id == tool::IntHelp) {
        contextHelp(id);
    } else if (id == tool::FilterBtn || id == tool::ViewBtn || id == tool::ViewImage) {
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
    if (id == tool::FilterBtn || id == tool::ViewBtn || id == tool::ViewImage) ToolBarComp1->dropDown(id);
}

void Tarnwick1::chooseFilter(const QString &name)
{
    SuppressTools quiet;
    for (int row = 0; row < FilterRows; ++row) {
        if (Cat.FilterNames[row] != name) continue;
        Cat.FilterPatterns[row] = Cat.FilterPatterns[row].trimmed();
        if (ExplorerSide *ex = explorer()) ex->setListPattern(Cat.FilterPatterns[row]);
        G.CurrentFilterRow = static_cast<int16_t>(row);
        const QString trimmed = Cat.FilterNames[row].trimmed();
        ToolBarComp1->setVisible(tool::Separator2, trimmed.size() <= 20);
        if (State.ScreenWidthTwips != 9600) {
            ToolBarComp1->setCaption(tool::FilterName, trimmed);
        } else {
            ToolBarComp1->setVisible(tool::FilterName, false);
        }
        break;
    }
}

void Tarnwick1::chooseViewListFile(const QString &id)
{
    SuppressTools quiet;
    QListWidget *list3 = historyOf(2);
    QListWidget *list6 = historyOf(6);
    const int n3 = list3 ? list3->count() : 0, n6 = list6 ? list6->count() : 0;
    const QString key = id.trimmed();
    for (int i = 0; i < qMax(n3, n6); ++i) {
        if (i < n3 && list3->item(i)->text().trimmed() == key) {
            list3->setCurrentRow(i);
            G.FromInternet = false;
            DisplayFile(list3->item(i)->text());
            break;
        }
        if (i < n6 && list6->item(i)->text().trimmed() == key) {
            list6->setCurrentRow(i);
            DisplayFile(list6->item(i)->text());
            break;
        }
    }
}

void Tarnwick1::contextHelp(const QString &id)
{
    SuppressTools quiet;
    ToolBarComp1->setEnabled(tool::mnuHelpTableofContents, false);
    ToolBarComp1->setEnabled(tool::mnuHelpSearch, false);
    QString topic;
    if (id == tool::HelpImage) topic = QStringLiteral("pictures");
    else if (id == tool::PlayHelp) topic = QStringLiteral("players");
    else if (id == tool::TxtHelp) topic = QStringLiteral("documents");
    else topic = QStringLiteral("internet");
    showHelpTopic(topic);
    ToolBarComp1->setEnabled(tool::mnuHelpTableofContents, true);
    ToolBarComp1->setEnabled(tool::mnuHelpSearch, true);
}

bool Tarnwick1::openHelpWindow()
{
    if (help_) return true;
    QString why;
    help_ = makeHelpWindow(G.ProgramDir + QStringLiteral("/Help"), this, &why);
    if (!help_) inform(QStringLiteral("Help is not available - ") + why, AppTitle, this);
    return help_ != nullptr;
}

void Tarnwick1::showHelp(bool search)
{
    if (openHelpWindow()) help_->showContents(search);
}

void Tarnwick1::showHelpTopic(const QString &topic)
{
    ++helpTopicsShown_;
    if (openHelpWindow()) help_->showTopic(topic);
}

// ---------------------------------------------------------------- colours

void Tarnwick1::ApplyColors()
{
    const ColorSettings &c = G.Colors;
    // Menus and toolbars, in the menu style and font type of the options.
    applyMenuLook(menuBar(), c.MenuBack, c.MenuText, G.Options);
    for (int p = 2; p <= 7; ++p) applyMenuLook(ToolBarComp1->toolbar(p), c.MenuBack, c.MenuText, G.Options);
    // The menus belong to the window (the menu bar only shows them), drop-down lists too.
    for (QMenu *m : findChildren<QMenu *>()) applyMenuLook(m, c.MenuBack, c.MenuText, G.Options);
    // Tabs
    paintWidget(TabStrip1->tabBar(), c.TabBack, c.TabText);
    // Service panels
    for (int i = 1; i <= TabCount; ++i) paintWidget(TabPanel[i], c.ServiceBack, c.ServiceText);
    // Lists
    paintWidget(List7, c.ListBack, c.ListText);
    for (auto &cs : commandSets_) cs->applyColors();
    for (auto &p : pages_)
        if (p && p->built()) p->applyColors();
    paintControls(this);
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
    if (PictureSide *pic = pictures()) pic->offerToSavePicture();
    // 3. Geometry in twips.
    const QRect g = geometry();
    G.Options.WindowLeft = frameGeometry().x() * 15;
    G.Options.WindowTop = frameGeometry().y() * 15;
    G.Options.WindowHeight = g.height() * 15;
    G.Options.WindowWidth = g.width() * 15;
    // 4. The folder of the list, and what else each page keeps.
    for (auto &p : pages_)
        if (p) p->shutDown();
    for (auto &c : commandSets_) c->shutDown();
    // 5. Options.INI.
    const StoreResult r = SaveOptions(G.Options, G.ProgramDir);
    if (!r.ok) inform(r.message, AppTitle, this);
    // 6. Open dialogs go with the main window.
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w != this && w->parentWidget() == this && w->isVisible()) w->close();
    // 7. The help window.
    if (help_) help_->close();
    Timer1->stop();
}

bool Tarnwick1::windowVariableText(const QString &name, QString *out) const
{
    auto b = [](bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); };
    if (name == QLatin1String("StartingUp")) *out = b(State.StartingUp);
    else if (name == QLatin1String("FileCommandsOn")) *out = b(State.FileCommandsOn);
    else if (name == QLatin1String("PreviousTab")) *out = QString::number(State.PreviousTab);
    else if (name == QLatin1String("ScreenWidthTwips")) *out = QString::number(State.ScreenWidthTwips);
    else if (name == QLatin1String("ScreenRatioX")) *out = QString::number(State.ScreenRatioX, 'g', 15);
    else if (name == QLatin1String("ScreenRatioY")) *out = QString::number(State.ScreenRatioY, 'g', 15);
    else if (name == QLatin1String("ThumbScaleX")) *out = QString::number(State.ThumbScaleX, 'g', 15);
    else if (name == QLatin1String("ThumbScaleY")) *out = QString::number(State.ThumbScaleY, 'g', 15);
    else if (name == QLatin1String("IsDocumentFile")) *out = b(IsDocumentFile);
    else if (name == QLatin1String("LastLoader")) *out = LastLoader;
    else if (name == QLatin1String("Activations")) *out = QString::number(Activations);
    else if (name == QLatin1String("MediaFilterExtra")) *out = Cat.MediaFilterExtra;
    else if (name.startsWith(QLatin1String("CommandArg")) && name.size() == 11) {
        const int i = name.at(10).digitValue();
        if (i < 1 || i > 6) return false;
        *out = Args.CommandArg[i - 1];
    } else if (name == QLatin1String("LocalComputerName")) *out = G.Options.LocalComputerName;
    else if (name == QLatin1String("HelpPage")) *out = help_ ? help_->currentPage() : QString();
    else if (name == QLatin1String("HelpTitle")) *out = help_ ? help_->currentTitle() : QString();
    else if (name == QLatin1String("HelpTopicsShown")) *out = QString::number(helpTopicsShown_);
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
        for (QAction *a : m->actions()) ids << (a->isSeparator() ? QStringLiteral("|") : a->objectName());
        *out = ids.join(u' ');
    } else {
        // A variable of one of the pages.
        for (const auto &p : pages_)
            if (p && p->variableText(name, out)) return true;
        for (const auto &c : commandSets_)
            if (c->variableText(name, out)) return true;
        return false;
    }
    return true;
}

}  // namespace tw
