// A tab of the main window as a page behind one interface. The main window only hosts the
// pages: it keeps them in tab order and loops over them on a tab change, a command, a
// colour change and at shutdown. A subsystem brings its page with one registration line
// (TW_REGISTER_PAGE) in its own folder; a tab whose subsystem is not in the build is a
// plain page with its caption and nothing on it.
#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class QLabel;
class QListWidget;
class QMainWindow;
class QWidget;

namespace tw {

class FileLoaders;
class ToolManager;
class TabPage;

// The tab keys, captions and tool tips, index 1..8.
constexpr int TabCount = 8;
QString tabKey(int index);
QString tabCaption(int index);
QString tabToolTip(int index);
int tabIndexOfKey(const QString &key);  // 0 when the key names no tab

// The main window's own state that the pages read.
struct WindowState {
    bool StartingUp = true;
    double ScreenRatioX = 1, ScreenRatioY = 1, ThumbScaleX = 761.964, ThumbScaleY = 710.374;
    int16_t ScreenWidthTwips = 9600;
    int16_t PreviousTab = 0;
    bool FileCommandsOn = false;
};

// What the explorer panes offer to the window and the other pages.
class ExplorerSide {
public:
    virtual ~ExplorerSide() = default;
    virtual QString listFolder() const = 0;
    virtual void setListFolder(const QString &path) = 0;
    virtual void setListPattern(const QString &pattern) = 0;
    virtual QString focusedItemPath() const = 0;
    virtual QStringList listItemPaths() const = 0;  // display order
    // The first selected item of the list, "" when none is.
    virtual QString selectedItemPath() const { return focusedItemPath(); }
    // Reads the list's folder again at once (a file was added, renamed or removed).
    virtual void refreshList() {}
    // Selects and focuses the item of that path and scrolls it into view; false when absent.
    virtual bool markListItem(const QString &path)
    {
        (void)path;
        return false;
    }
};

// What the picture side offers to the window and the other pages.
class PictureSide {
public:
    virtual ~PictureSide() = default;
    // True while the picture on show has changes not saved.
    virtual bool pictureChanged() const = 0;
    // The save question: when the picture has changes, asks whether to save it and saves on Yes.
    virtual void offerToSavePicture() = 0;
    // The pictures of the explorer's folder into the picture history, the first one shown.
    virtual void LoadFolderPictures() = 0;
    // The picture control, while it is on show (the toggle button's drop target).
    virtual QWidget *pictureWidget() const = 0;
    // The save of a file under a name the user gives (the document tab's text save too).
    virtual bool SaveFileAs(const QString &path)
    {
        (void)path;
        return false;
    }
    // The remote file list's removal of an address that the fetch watchdog gave up on.
    virtual void setRemoveRemoteAddress(std::function<void(const QString &address)> fn) { (void)fn; }
};

// What a page may ask of the main window that hosts it.
class PageHost {
public:
    virtual ~PageHost() = default;
    virtual QMainWindow *window() = 0;  // parent of boxes and dialogs, the window's geometry
    virtual ToolManager &tools() = 0;
    virtual WindowState &state() = 0;

    virtual void setTitle(const QString &title) = 0;
    virtual QString title() const = 0;
    virtual int selectedTab() const = 0;
    virtual void selectTab(int index) = 0;
    virtual void BackToPreviousTab() = 0;
    virtual TabPage *page(int index) = 0;
    // A page has just made its controls: the window paints them as the store says.
    virtual void pageBuilt(TabPage *page) = 0;

    // The window's routines that every side calls.
    virtual void DisplayFile(const QString &path) = 0;
    // The dispatcher's call into the picture loader (recorded as the last loader used).
    virtual void LoadImage(const QString &path) = 0;
    // The dispatcher's call into the media loader (a media address typed on the Internet tab).
    virtual void LoadMediaFile(const QString &path) = 0;
    virtual void ShowExplorerItem() = 0;
    virtual bool FileMissing(const QString &path) const = 0;
    virtual void SetFileCommands(bool on) = 0;
    virtual void AddViewMenuItem(const QString &path) = 0;
    virtual void ApplyColors() = 0;
    virtual void OnToolClick(const QString &id) = 0;
    virtual void showHelpTopic(const QString &topic) = 0;
    // Shows CurrentUrl in WebBrowser2 (the Internet tab's page answers when it is in the build).
    virtual void LoadInternetPage(const QString &url) { (void)url; }

    // The sides that a page of another subsystem may lend; null when not in the build.
    virtual ExplorerSide *explorer() = 0;
    virtual PictureSide *pictures() = 0;
};

class TabPage {
public:
    TabPage(PageHost &host, int index) : host_(host), index_(index) {}
    virtual ~TabPage();
    TabPage(const TabPage &) = delete;
    TabPage &operator=(const TabPage &) = delete;

    int index() const { return index_; }
    QString key() const { return tabKey(index_); }
    QString caption() const { return tabCaption(index_); }
    QString toolTip() const { return tabToolTip(index_); }

    // The tab's panel (TabPanel1..8); the page fills it on first need.
    void setPanel(QWidget *panel) { panel_ = panel; }
    QWidget *panel() const { return panel_; }
    void ensureBuilt();
    bool built() const { return built_; }

    // During the window's load, after the settings are read: what must be in place before
    // the first activation (no controls of a page not shown are made here).
    virtual void startUp() {}
    // The session's reset of the main window.
    virtual void reset() {}
    // OnTabLeaving's step for this page as the new tab: its toolbars and tools.
    virtual void entering() {}
    // OnTabLeaving's last steps, whichever tab is left or entered (stored lists).
    virtual void tabChanging() {}
    // OnTabEntered: the window's title for this tab, then the focus.
    virtual QString tabTitle() const;
    virtual void entered() {}
    // The layout routine of the window, run on a resize and on entry.
    virtual void layout() {}
    // The tools this page makes work, and their commands; true when the identifier was one.
    virtual QStringList handledTools() const { return {}; }
    virtual bool toolClick(const QString &id)
    {
        (void)id;
        return false;
    }
    virtual void applyColors() {}
    // The date and time of Timer1, for a page that shows them itself while it is selected
    // (the labels given to setClockLabels).
    bool showsClock() const { return clock_[0] != nullptr; }
    void showClock(const QString &date, const QString &time);
    // The file commands were turned on or off.
    virtual void fileCommandsChanged(bool on) { (void)on; }
    // Shutdown: before the settings are written (a changed picture, the list folder).
    virtual void shutDown() {}
    virtual void addLoaders(FileLoaders &loaders) { (void)loaders; }
    // A page that shows web pages shows this address; false when the page shows none.
    virtual bool showAddress(const QString &url)
    {
        (void)url;
        return false;
    }
    // The page's list of files seen (the View menu's history), or null.
    virtual QListWidget *history() { return nullptr; }
    // Text form of a variable of this page for the scenario runner; false if unknown. The
    // clock's variable ("true" while both labels show text) is answered here.
    virtual bool variableText(const QString &name, QString *out) const;

protected:
    // The page shows the date and time in these labels; ClockVariable names that fact.
    void setClockLabels(QLabel *date, QLabel *time, const QString &clockVariable);
    // Makes the page's controls inside its panel; runs once.
    virtual void build(QWidget *panel) { (void)panel; }
    PageHost &host_;

private:
    int index_;
    QWidget *panel_ = nullptr;
    bool built_ = false;
    QLabel *clock_[2] = {};
    QString clockVariable_;
};

// The commands of a subsystem that has no tab of its own (the small dialogs, the favorite
// lists): the window asks it after the pages, and greys the tools that nobody answers.
class CommandSet {
public:
    explicit CommandSet(PageHost &host) : host_(host) {}
    virtual ~CommandSet();
    CommandSet(const CommandSet &) = delete;
    CommandSet &operator=(const CommandSet &) = delete;

    virtual QStringList handledTools() const = 0;
    virtual bool toolClick(const QString &id) = 0;
    // During the window's load, after the settings are read.
    virtual void startUp() {}
    // Every activation of the main window, the first one included, after its own steps.
    virtual void activated() {}
    // Shutdown: what is open goes before the settings are written.
    virtual void shutDown() {}
    // The window's DisplayFile has taken a file of a known type (the session's list of files).
    virtual void fileDisplayed(const QString &path) { (void)path; }
    // The colours changed: the set paints the windows it keeps.
    virtual void applyColors() {}
    virtual bool variableText(const QString &name, QString *out) const
    {
        (void)name;
        (void)out;
        return false;
    }

protected:
    PageHost &host_;
};

using CommandSetFactory = std::function<std::unique_ptr<CommandSet>(PageHost &)>;
struct CommandSetRegistration {
    explicit CommandSetRegistration(CommandSetFactory make);
};
// Every command set registered, in the order the program linked them.
const std::vector<CommandSetFactory> &commandSetFactories();

// The registry of pages. Each subsystem's library registers its page by tab index.
using PageFactory = std::function<std::unique_ptr<TabPage>(PageHost &)>;
struct PageRegistration {
    PageRegistration(int index, PageFactory make);
};
// The factory registered for a tab, or an empty one.
PageFactory pageFactory(int index);

#define TW_PAGE_CAT2(a, b) a##b
#define TW_PAGE_CAT(a, b) TW_PAGE_CAT2(a, b)
// Pulls the page files of the subsystems in the build into the program (made by the build
// from the folders present, so the window names none of them).
void linkPages();

// One line in a subsystem's page file puts its page on the tab of that index. The folder's
// CMakeLists.txt names the page with tw_add_page(Type) so that the program links it.
#define TW_REGISTER_PAGE(index, Type)                                                                        \
    extern "C" void twLinkPage_##Type() {}                                                                   \
    static const ::tw::PageRegistration TW_PAGE_CAT(twPageRegistration_, __LINE__)(                          \
        index,                                                                                               \
        [](::tw::PageHost &host) -> std::unique_ptr<::tw::TabPage> { return std::make_unique<Type>(host); })

// One line in a subsystem's file puts its command set in the window; the folder's
// CMakeLists.txt names it with tw_add_page(Type) as for a page.
#define TW_REGISTER_COMMANDS(Type)                                                                           \
    extern "C" void twLinkPage_##Type() {}                                                                   \
    static const ::tw::CommandSetRegistration TW_PAGE_CAT(twCommandRegistration_, __LINE__)(                 \
        [](::tw::PageHost &host) -> std::unique_ptr<::tw::CommandSet> {                                      \
            return std::make_unique<Type>(host);                                                             \
        })

}  // namespace tw
