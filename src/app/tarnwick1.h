// The main window: owns the session and hosts the eight tab pages. It keeps the routines
// that every other window calls (DisplayFile, FileMissing, the history walks, the filter
// choice) and loops over its pages for a tab change, a command, the colours and shutdown.
#pragma once

#include "core/catalogue.h"
#include "core/globals.h"
#include "core/loaders.h"
#include "core/session.h"
#include "core/tab_page.h"

#include <QMainWindow>
#include <QString>
#include <array>
#include <functional>
#include <memory>
#include <vector>

class QComboBox;
class QListWidget;
class QTabWidget;
class QTimer;

namespace tw {

class ToolManager;
class HelpWindow;

class Tarnwick1 : public QMainWindow, public PageHost {
    Q_OBJECT
public:
    // Loads the window: the start-up steps, with the raw command line of the process.
    explicit Tarnwick1(const QString &rawCommandLine, QWidget *parent = nullptr);
    ~Tarnwick1() override;

    static Tarnwick1 *instance();

    // --- The host of the pages ---
    QMainWindow *window() override { return this; }
    using QWidget::window;
    ToolManager &tools() override { return *ToolBarComp1; }
    WindowState &state() override { return State; }
    TabPage *page(int index) override;
    ExplorerSide *explorer() override;
    PictureSide *pictures() override;
    void pageBuilt(TabPage *p) override;
    // Every page makes its controls now (the scenario runner's look-up of a control that a
    // page not yet entered holds).
    void buildAllPages();

    // --- The routines other windows call ---
    void DisplayFile(const QString &path) override;
    bool FileMissing(const QString &path) const override;
    void OpenWithShell();
    void AddDocumentHistory(const QString &path);
    void ShowExplorerItem() override;
    void LoadInternetPage(const QString &url) override;
    void AddViewMenuItem(const QString &path) override;
    void SetFileCommands(bool on) override;
    void ResetSession();

    // The loaders of the four kinds, each handed in by its page.
    FileLoaders Loaders;
    // The dispatcher's calls into them.
    void LoadImage(const QString &path) override;
    void LoadMediaFile(const QString &path) override;
    void LoadDocument(const QString &path);
    void LoadText(const QString &path);

    // Tabs (index 1..8, keys "Find" .. "Tools").
    int selectedTab() const override;
    QString selectedTabKey() const;
    void selectTab(int index) override;
    void selectTabByKey(const QString &key);
    static QString tabKey(int index) { return tw::tabKey(index); }
    static int tabIndex(const QString &key) { return tabIndexOfKey(key); }
    void BackToPreviousTab() override;

    // Title bar.
    void setTitle(const QString &title) override;
    QString title() const override;

    // Commands.
    void OnToolClick(const QString &id) override;
    void chooseFilter(const QString &name);
    void chooseViewListFile(const QString &id);

    // Colours and options.
    void ApplyColors() override;
    void runTimer();  // Timer1's routine

    // Activation: the first one opens the saved folder and the command-line file.
    void activated();
    void OnToolDropDown(const QString &id);
    void AddFilterMenuItem(const QString &name);
    // The help window on one topic ("finding", "pictures", ...).
    void showHelpTopic(const QString &topic) override;

    // The tools the window's own routines answer (the rest belong to the pages).
    static QStringList windowTools();
    // Handled tool identifiers that the tool table does not know (empty when all is well).
    QStringList unknownHandledTools() const;

    // Text form of a per-window variable for the scenario runner.
    bool windowVariableText(const QString &name, QString *out) const;

    // How the shell's "Open" is asked for; the scenario runner puts its recorder here.
    static std::function<bool(const QString &path)> &shellOpener();

    // --- Per-window state ---
    CommandLine Args;
    QString CommandArg1() const { return Args.CommandArg[0]; }
    WindowState State;
    bool IsDocumentFile = false;
    int Activations = 0;
    QString LastLoader;  // the loader DisplayFile handed the last file to

    // --- Controls ---
    ToolManager *ToolBarComp1 = nullptr;
    QTabWidget *TabStrip1 = nullptr;
    QWidget *TabPanel[TabCount + 1] = {};  // 1..8
    QListWidget *List7 = nullptr;
    QComboBox *CMBFILTER = nullptr;
    QTimer *Timer1 = nullptr;

protected:
    void closeEvent(QCloseEvent *e) override;
    bool event(QEvent *e) override;
    void resizeEvent(QResizeEvent *e) override;
    bool eventFilter(QObject *o, QEvent *e) override;

private:
    void startUp(const QString &raw);
    void registerRoutines();
    void buildControls();
    void makePages();
    void greyUnhandledTools();
    void FirstActivation();
    void OnTabLeaving(int newTab, int oldTab);
    void OnTabEntered(int newTab, int oldTab);
    void walkHistory(QListWidget *list, int step, bool picture);
    QListWidget *historyOf(int tab);
    void layoutMain();
    void shutDown();
    void contextHelp(const QString &id);
    void showHelp(bool search);
    bool openHelpWindow();
    void showFocusedControlHelp();

public:
    void GetThisComputerName();
    void SetComputerName();

private:
    bool painted_ = false;  // the window has painted once
    std::array<std::unique_ptr<TabPage>, TabCount + 1> pages_;
    std::vector<std::unique_ptr<CommandSet>> commandSets_;
    bool shutDownDone_ = false;
    bool firstActivationDone_ = false;
    bool hourglassUp_ = false;
    bool programDirWritable_ = true;
    bool filterMenuErrorShown_ = false;
    QString helpFile_;
    HelpWindow *help_ = nullptr;
    int helpTopicsShown_ = 0;  // how often the help opened on a topic
    int tabBeforeChange_ = 1;
    bool inTabChange_ = false;
};

}  // namespace tw
