#include "web/internet_page.h"

#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/printing.h"
#include "core/looks.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"
#include "web/engine/engine_api.h"
#include "web/int_favorites.h"
#include "web/web_view.h"

#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QToolBar>
#include <QVBoxLayout>

namespace tw {

namespace {

// Enter in the address box navigates straight to the address; Escape only ends the
// toolbar's menu state. Both keys stop there.
class AddressKeys : public QObject {
public:
    AddressKeys(InternetPage *page, QObject *parent) : QObject(parent), page_(page) {}

protected:
    bool eventFilter(QObject *o, QEvent *e) override
    {
        if (e->type() == QEvent::KeyPress) {
            const int k = static_cast<QKeyEvent *>(e)->key();
            if (k == Qt::Key_Return || k == Qt::Key_Enter) {
                page_->DirectNavigate();
                return true;
            }
            if (k == Qt::Key_Escape) return true;
        }
        return QObject::eventFilter(o, e);
    }

private:
    InternetPage *page_;
};

}  // namespace

InternetPage::InternetPage(PageHost &host) : TabPage(host, 7)
{
    registerScenarioRoutine(QStringLiteral("LoadInternetPage"), [this](const QStringList &a) {
        LoadInternetPage(a.value(0));
        return QString();
    });
}

InternetPage::~InternetPage() = default;

void InternetPage::startUp()
{
    // The address box is made with the page, on the tab's first entry or first need.
    if (QAction *a = host_.tools().action(tool::IntVisited)) a->setCheckable(true);
    // The window is up: from now on the browser's notifications count.
    LoadingDone = true;
}

void InternetPage::makeAddressBox()
{
    if (URLEnter_) return;
    ToolManager &t = host_.tools();
    QToolBar *bar = t.toolbar(7);
    QAction *tool = t.action(tool::IntURLEnter);
    if (!bar || !tool) return;
    URLLabel_ = new QLabel(QStringLiteral("Enter Web Site Page Location (URL):"), bar);
    URLEnter_ = new QComboBox(bar);
    URLEnter_->setObjectName(QStringLiteral("ID_IntURLEnter"));
    URLEnter_->setEditable(true);
    URLEnter_->setInsertPolicy(QComboBox::NoInsert);
    URLEnter_->setMinimumContentsLength(40);
    URLEnter_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    URLEnter_->setToolTip(tool->toolTip());
    auto *keys = new AddressKeys(this, URLEnter_);
    URLEnter_->installEventFilter(keys);
    URLEnter_->lineEdit()->installEventFilter(keys);
    bar->insertWidget(tool, URLLabel_);
    bar->insertWidget(tool, URLEnter_);
    // The box stands for the tool (whose own button goes): its prompt follows the tool's tip.
    bar->removeAction(tool);
    QObject::connect(tool, &QAction::changed, URLEnter_,
                     [this, tool] { URLEnter_->setToolTip(tool->toolTip()); });
    // A pick from the visited list goes straight to the address.
    QObject::connect(URLEnter_, &QComboBox::activated, URLEnter_, [this](int) { DirectNavigate(); });
}

void InternetPage::reset()
{
    WebPageName.clear();
    if (WebBrowser2) {
        WebBrowser2->show();
        WebBrowser2->setSilent(true);
    }
}

void InternetPage::entering()
{
    // The Internet tab is where pages are shown: the web engine module is loaded now, off the
    // window's thread, while the address is being typed, so the first page does not wait for it.
    preloadEngineTable();
    ToolManager &t = host_.tools();
    t.setToolbarVisible(6, true);
    enteringNow_ = true;
    if (InternetFirstEntry) {
        t.setToolbarVisible(7, true);
        t.setToolTip(tool::IntURLEnter,
                     QStringLiteral("Enter Web Site Page Location or Select Visited Page"));
        InternetFirstEntry = false;
        t.setChecked(tool::IntVisited, true);
        // The address box takes the browser's width, less the label and the Go button.
        if (URLEnter_ && WebBrowser2)
            URLEnter_->setMinimumWidth(qMax(240, WebBrowser2->width() - URLLabel_->sizeHint().width() - 120));
    } else {
        // Later entries show the address box through the visited button.
        t.setChecked(tool::IntVisited, true);
        t.setToolbarVisible(7, true);
    }
}

void InternetPage::tabChanging()
{
    // Entering another tab releases the visited button.
    if (!enteringNow_) host_.tools().setChecked(tool::IntVisited, false);
    enteringNow_ = false;
}

QString InternetPage::tabTitle() const { return WebPageName + QStringLiteral(" - ") + AppTitle; }

QStringList InternetPage::handledTools() const
{
    return {tool::IntURLEnter,   tool::IntGo,        tool::IntVisited,    tool::IntBack,  tool::IntForward,
            tool::IntHome,       tool::IntStop,      tool::IntRefresh,    tool::IntPrint, tool::IntSave,
            tool::IntProperties, tool::IntFavorites, tool::IntAddFavorite};
}

bool InternetPage::toolClick(const QString &id)
{
    if (id == tool::IntGo || id == tool::IntURLEnter) {
        Go();
    } else if (id == tool::IntVisited) {
        SuppressTools quiet;
        host_.tools().setToolbarVisible(7, host_.tools().isChecked(tool::IntVisited));
    } else if (id == tool::IntBack) {
        browser()->back();
    } else if (id == tool::IntForward) {
        browser()->forward();
    } else if (id == tool::IntHome) {
        browser()->home();
    } else if (id == tool::IntStop) {
        browser()->stop();
        if (QMainWindow *w = host_.window()) w->unsetCursor();
    } else if (id == tool::IntRefresh) {
        browser()->refresh();
    } else if (id == tool::IntPrint) {
        printPage();
    } else if (id == tool::IntSave) {
        savePage();
    } else if (id == tool::IntProperties) {
        showProperties();
    } else if (id == tool::IntFavorites) {
        showFavorites(QString());
    } else if (id == tool::IntAddFavorite) {
        WebView *b = browser();
        PageUrl = b->address();
        // A page without a title of its own goes by its address.
        PageTitle = b->documentTitle().isEmpty() ? b->address() : b->documentTitle();
        // An address for a title means no title: the main window's caption stands instead.
        if (PageTitle.left(5).toUpper() == QLatin1String("HTTP:")) PageTitle = host_.title();
        showFavorites(QStringLiteral("A"));
    } else {
        return false;
    }
    return true;
}

void InternetPage::applyColors()
{
    if (built()) paintWidget(WebBrowser2, G.Colors.InternetBack, G.Colors.InternetText);
}

bool InternetPage::variableText(const QString &name, QString *out) const
{
    const QString *s = nullptr;
    if (name == QLatin1String("CurrentUrl")) s = &CurrentUrl;
    else if (name == QLatin1String("CurrentUrlName")) s = &CurrentUrlName;
    else if (name == QLatin1String("PageUrl")) s = &PageUrl;
    else if (name == QLatin1String("PageTitle")) s = &PageTitle;
    else if (name == QLatin1String("FavoriteMode")) s = &FavoriteMode;
    else if (name == QLatin1String("WebPageName")) s = &WebPageName;
    else if (name == QLatin1String("StatusText")) s = &StatusText;
    if (s) {
        *out = *s;
        return true;
    }
    auto b = [out](bool v) {
        *out = v ? QStringLiteral("true") : QStringLiteral("false");
        return true;
    };
    if (name == QLatin1String("FavoritesOpen")) return b(FavoritesOpen);
    if (name == QLatin1String("LoadingDone")) return b(LoadingDone);
    if (name == QLatin1String("WebEngineMade")) return b(WebBrowser2 && WebBrowser2->engineMade());
    if (name == QLatin1String("BrowserOffline")) return b(WebBrowser2 && WebBrowser2->offline());
    if (name == QLatin1String("FavoriteNodes")) {
        *out = favorites_ ? favorites_->nodePaths().join(u'|') : QString();
        return true;
    }
    if (name == QLatin1String("BrowserAddress")) {
        *out = WebBrowser2 ? WebBrowser2->address() : QString();
        return true;
    }
    return false;
}

void InternetPage::build(QWidget *panel)
{
    makeAddressBox();
    setHelpTopic(panel, QStringLiteral("internet"));
    auto *p7 = new QVBoxLayout(panel);
    WebBrowser2 = new WebView(panel);
    WebBrowser2->setObjectName(QStringLiteral("WebBrowser2"));
    WebBrowser2->setFocusPolicy(Qt::StrongFocus);
    setHelpTopic(WebBrowser2, QStringLiteral("internet"));
    p7->addWidget(WebBrowser2, 1);
    QObject::connect(WebBrowser2, &WebView::beforeNavigate, WebBrowser2,
                     [this](const QString &a) { onBeforeNavigate(a); });
    QObject::connect(WebBrowser2, &WebView::navigateComplete, WebBrowser2,
                     [this](const QString &a, bool) { onNavigateComplete(a); });
    QObject::connect(WebBrowser2, &WebView::titleChanged, WebBrowser2,
                     [this](const QString &t) { onTitleChange(t); });
    QObject::connect(WebBrowser2, &WebView::statusTextChanged, WebBrowser2, [this](const QString &t) {
        if (LoadingDone) StatusText = t;
    });
}

WebView *InternetPage::browser()
{
    ensureBuilt();
    return WebBrowser2;
}

// ---------------------------------------------------------------- loading

void InternetPage::LoadInternetPage(const QString &url)
{
    WebView *b = browser();
    b->setOffline(true);
    // The prefix is written exactly so: a full address gets it a second time.
    b->navigate(QUrl(QStringLiteral("Http://") + url));
    if (G.SwitchToFileTab) host_.selectTab(7);
}

void InternetPage::navigate(const QString &address)
{
    const QUrl url = QUrl::fromUserInput(address);
    if (!url.isValid()) return;
    browser()->navigate(url);
}

void InternetPage::AddVisited(const QString &url)
{
    makeAddressBox();
    if (!URLEnter_) return;
    const QString key = url.trimmed();
    for (int i = 0; i < URLEnter_->count(); ++i)
        if (URLEnter_->itemText(i).trimmed() == key) return;
    const QString typed = URLEnter_->currentText();
    URLEnter_->addItem(url);
    URLEnter_->setEditText(typed);
}

void InternetPage::Go()
{
    if (!URLEnter_) return;
    const QString address = URLEnter_->currentText().trimmed();
    if (address.isEmpty()) return;
    CurrentUrl = address;
    // A media address plays in the player, not in the browser.
    if (IsMediaFile(CurrentUrl)) host_.LoadMediaFile(CurrentUrl);
    else navigate(CurrentUrl);
    AddVisited(CurrentUrl);
}

void InternetPage::DirectNavigate()
{
    if (!URLEnter_) return;
    const QString address = URLEnter_->currentText().trimmed();
    if (address.isEmpty()) return;
    CurrentUrl = address;
    navigate(CurrentUrl);
}

void InternetPage::onBeforeNavigate(const QString &address)
{
    if (!LoadingDone || host_.selectedTab() != 7) return;
    host_.window()->setCursor(Qt::WaitCursor);
    CurrentUrl = address;
    if (URLEnter_) URLEnter_->setEditText(address);
}

void InternetPage::onNavigateComplete(const QString &address)
{
    AddVisited(address);
    host_.window()->unsetCursor();
}

void InternetPage::onTitleChange(const QString &title)
{
    if (!LoadingDone) return;
    const QString address = WebBrowser2->address();
    const bool none = title.isEmpty();
    WebPageName = none ? address : title;
    if (host_.selectedTab() != 7) return;
    if (!none) host_.setTitle(title);
    if (WebBrowser2->isHidden()) WebBrowser2->show();
}

// ---------------------------------------------------------------- browser commands

void InternetPage::printPage()
{
    WebView *b = browser();
    if (!b->engineMade()) return;
    std::shared_ptr<printing::Job> job = printing::prepare(true, host_.window());
    if (!job) return;
    b->print(job->printer(), [job](bool) {});
}

void InternetPage::savePage()
{
    WebView *b = browser();
    QFileDialog dlg(host_.window(), QStringLiteral("Save Web Page"));
    dlg.setOption(QFileDialog::DontUseNativeDialog, true);
    dlg.setAcceptMode(QFileDialog::AcceptSave);
    dlg.setNameFilter(QStringLiteral("Web Page (*.htm *.html)"));
    dlg.setDefaultSuffix(QStringLiteral("htm"));
    if (dlg.exec() != QDialog::Accepted || dlg.selectedFiles().isEmpty()) return;
    b->saveHtml(dlg.selectedFiles().constFirst(), nullptr);
}

void InternetPage::showProperties()
{
    WebView *b = browser();
    if (!b->engineMade()) return;
    const QUrl url = b->url();
    const QString text = QStringLiteral("Name: ") + b->title() + u'\n' + QStringLiteral("Address: ")
        + url.toString() + u'\n' + QStringLiteral("Protocol: ") + url.scheme().toUpper();
    inform(text, QStringLiteral("Properties"), host_.window());
}

void InternetPage::showFavorites(const QString &mode)
{
    FavoriteMode = mode;
    if (FavoritesOpen && favorites_) {
        favorites_->refreshToolTip();
        favorites_->raise();
        favorites_->activateWindow();
        return;
    }
    auto *dlg = new IntFavorites1(*this, host_, host_.window());
    favorites_ = dlg;
    dlg->exec();
    delete dlg;
}

TW_REGISTER_PAGE(7, InternetPage);

}  // namespace tw
