// The main window: owns the session, the tabs, the lists and the routines that every
// other window calls (DisplayFile, the loaders, SaveFileAs, ResetPicture).
#pragma once

#include "core/catalogue.h"
#include "core/globals.h"
#include "core/loaders.h"
#include "core/session.h"

#include <QMainWindow>
#include <QPointer>
#include <QString>

#include "core/toggle_drag.h"

class QComboBox;
class QFrame;
class QLabel;
class QListWidget;
class QSplitter;
class QTabWidget;
class QTimer;
class QPushButton;
class QTextEdit;

namespace tw {

class ToolManager;
class ToolsTab;
class Select1;
class PicturesModule;
class BrowseModule;
class HelpViewer;

class Tarnwick1 : public QMainWindow {
    Q_OBJECT
public:
    // Loads the window: the start-up steps, with the raw command line of the process.
    explicit Tarnwick1(const QString &rawCommandLine, QWidget *parent = nullptr);
    ~Tarnwick1() override;

    static Tarnwick1 *instance();

    // --- The routines other windows call ---
    void DisplayFile(const QString &path);
    bool FileMissing(const QString &path) const;
    void OpenWithShell();
    void AddDocumentHistory(const QString &path);
    void ShowExplorerItem();
    void AddViewMenuItem(const QString &path);
    void SetFileCommands(bool on);
    void ResetSession();
    bool SaveFileAs(const QString &path);  // picture saving; false when not saved
    // The save guard shared by the picture commands: asks, and saves on Yes.
    void offerToSaveChangedPicture();

    // The loaders of the four kinds, each handed in by its subsystem.
    FileLoaders Loaders;
    // The dispatcher's calls into them.
    void LoadImage(const QString &path);
    void LoadMediaFile(const QString &path);
    void LoadDocument(const QString &path);
    void LoadText(const QString &path);

    // Folder load of the first activation: the pictures of PTxShList1 into List3.
    void LoadFolderPictures();

    // Tabs (index 1..8, keys "Find" .. "Tools").
    int selectedTab() const;
    QString selectedTabKey() const;
    void selectTab(int index);
    void selectTabByKey(const QString &key);
    static QString tabKey(int index);
    static int tabIndex(const QString &key);
    void BackToPreviousTab();

    // Title bar.
    void setTitle(const QString &title);
    QString title() const;

    // Commands.
    void OnToolClick(const QString &id);
    void chooseFilter(const QString &name);
    void chooseViewListFile(const QString &id);

    // Colours and options.
    void ApplyColors();
    void runTimer();  // Timer1's routine

    // The first activation, and every one after it.
    void activated();
    void OnToolDropDown(const QString &id);
    void AddFilterMenuItem(const QString &name);
    // The help window on one topic ("finding", "pictures", ...).
    void showHelpTopic(const QString &topic);
    bool loadPlayList(const QString &file, QListWidget *entries);
    bool savePlayList(const QString &file, QListWidget *entries);
    void placeSplitter();
    // The button over the picture is being dragged (held longer than a click).
    bool togglingDrag() const { return toggleDrag_.dragging(); }

    // Text form of a per-window variable for the scenario runner.
    bool windowVariableText(const QString &name, QString *out) const;

    // --- Per-window state ---
    CommandLine Args;
    QString CommandArg1() const { return Args.CommandArg[0]; }
    bool StartingUp = true;
    double ScreenRatioX = 1, ScreenRatioY = 1, ThumbScaleX = 761.964, ThumbScaleY = 710.374;
    int16_t ScreenWidthTwips = 9600;
    bool PictureChanged = false;
    bool FileCommandsOn = false;
    int16_t PreviousTab = 0;
    bool PictureResized = false;
    bool IsDocumentFile = false;
    bool InternetFirstEntry = true;
    int Activations = 0;
    QString LastLoader;  // the loader DisplayFile handed the last file to
    QString VideoListPath, MusicListPath;
    bool MediaPlayer1AutoStart = true, MediaPlayer2AutoStart = false;
    QString MediaPlayer1Name, MediaPlayer2Name;
    QString SlideShowName, WebPageName;
    QString Text1Document, WebBrowser1Document;

    // --- Controls ---
    ToolManager *ToolBarComp1 = nullptr;
    QTabWidget *TabStrip1 = nullptr;
    QWidget *TabPanel[9] = {};     // 1..8
    QSplitter *Splitter1 = nullptr;  // Find tab: tree | list
    QFrame *Frame1[9] = {};          // Frame1(0) is the picture panel, 5 and 8 the full panels
    QListWidget *List3 = nullptr;    // pictures seen, walk order
    QListWidget *List4[2] = {};      // video play lists: names, entries
    QListWidget *List5[2] = {};      // music play lists: names, entries
    QListWidget *List6 = nullptr;    // documents seen
    QListWidget *List7 = nullptr;
    QComboBox *CMBFILTER = nullptr;
    QPushButton *ToggleBtn = nullptr;
    QPushButton *ListToggleBtn = nullptr;
    QTextEdit *Text1 = nullptr;      // text documents
    QLabel *Text6 = nullptr;         // the document panel's caption
    QLabel *SlideClock[2] = {};      // Label2(8), Label2(9)
    QTimer *Timer1 = nullptr;
    ToolsTab *Tools = nullptr;
    Select1 *SelectWin = nullptr;
    PicturesModule *Pictures = nullptr;
    BrowseModule *Browse = nullptr;

protected:
    void closeEvent(QCloseEvent *e) override;
    void changeEvent(QEvent *e) override;
    void showEvent(QShowEvent *e) override;
    void resizeEvent(QResizeEvent *e) override;
    bool eventFilter(QObject *o, QEvent *e) override;

private:
    void startUp(const QString &raw);
    void registerRoutines();
    void buildControls();
    void FirstActivation();
    void OnTabLeaving(int newTab, int oldTab);
    void OnTabEntered(int newTab, int oldTab);
    void walkHistory(QListWidget *list, int step, bool picture);
    void layoutMain();
    void shutDown();
    void listPlayLists(const QString &folder, QListWidget *list);
public:
    void GetThisComputerName();
    void SetComputerName();

private:
    bool shellOpen(const QString &path);
    QString playListFile(const QString &name, const QString &folder) const;
    void contextHelp(const QString &id);
    void showHelp(bool search);

    bool shutDownDone_ = false;
    bool hourglassUp_ = false;
    bool programDirWritable_ = true;
    bool filterMenuErrorShown_ = false;
    bool splitterPlaced_ = false;
    QString helpFile_;
    HelpViewer *help_ = nullptr;
    ToggleDrag toggleDrag_;
    int tabBeforeChange_ = 1;
    bool inTabChange_ = false;
};

}  // namespace tw
