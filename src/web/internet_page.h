// The Internet tab ("Surf the Internet"): the browser WebBrowser2, the address box
// ID_IntURLEnter with its visited list, and the browser commands of ToolInternet.
#pragma once

#include "core/globals.h"
#include "core/tab_page.h"

#include <QPointer>
#include <QString>

class QComboBox;
class QLabel;

namespace tw {

class WebView;
class IntFavorites1;

class InternetPage : public TabPage {
public:
    explicit InternetPage(PageHost &host);
    ~InternetPage() override;

    void startUp() override;
    void reset() override;
    void entering() override;
    void tabChanging() override;
    QString tabTitle() const override;
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    void applyColors() override;
    bool variableText(const QString &name, QString *out) const override;

    // From the dispatcher and the open-on-Internet command: "Http://" + Url.
    void LoadInternetPage(const QString &url);
    bool showAddress(const QString &url) override
    {
        ensureBuilt();
        LoadInternetPage(url);
        return true;
    }
    // Navigates the browser to an address as typed (no scheme: the web's).
    void navigate(const QString &address);
    void AddVisited(const QString &url);
    // The address box's commands.
    void Go();
    void DirectNavigate();
    // The favorites window, adding (mode "A") or not.
    void showFavorites(const QString &mode);

    WebView *browser();  // WebBrowser2, its engine made on first use
    QComboBox *addressBox() const { return URLEnter_; }

    // Shared state of the Internet side.
    QString WebPageName;  // location name of the page on show
    // The page asked for and its name are the program's shared ones.
    QString &CurrentUrl = G.CurrentUrl, &CurrentUrlName = G.CurrentUrlName;
    QString PageUrl, PageTitle, FavoriteMode, StatusText;
    bool LoadingDone = false;
    bool FavoritesOpen = false;
    bool InternetFirstEntry = true;

protected:
    void build(QWidget *panel) override;

private:
    void makeAddressBox();
    void onBeforeNavigate(const QString &address);
    void onNavigateComplete(const QString &address);
    void onTitleChange(const QString &title);
    void savePage();
    void showProperties();
    void printPage();

    WebView *WebBrowser2 = nullptr;
    QComboBox *URLEnter_ = nullptr;
    QLabel *URLLabel_ = nullptr;
    QPointer<IntFavorites1> favorites_;
    bool enteringNow_ = false;
};

}  // namespace tw
