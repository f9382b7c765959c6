// The Documents tab (the text box Text1 and the document history List6) and the Internet
// tab (the browser panel WebBrowser2 and its address bar).
#include "core/context_help.h"
#include "core/globals.h"
#include "core/looks.h"
#include "core/tab_page.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"

#include <QFrame>
#include <QLabel>
#include <QListWidget>
#include <QTextEdit>
#include <QVBoxLayout>

namespace tw {

class DocumentsPage : public TabPage {
public:
    explicit DocumentsPage(PageHost &host) : TabPage(host, 6) {}

    void reset() override
    {
        if (Text1) Text1->hide();
    }
    void entering() override
    {
        host_.tools().setToolbarVisible(5, true);
        // The View menu's check mark follows the selected document.
        if (List6->currentRow() >= 0) host_.tools().press(List6->currentItem()->text());
    }
    QString tabTitle() const override
    {
        return (Text1 && Text1->isVisible() ? Text1Document : WebBrowser1Document) + QStringLiteral(" - ")
            + AppTitle;
    }
    QStringList handledTools() const override { return {tool::mnuCopy}; }
    bool toolClick(const QString &id) override
    {
        if (id != tool::mnuCopy || !built()) return false;
        // The text half of Copy: the whole text of the document on show.
        if (host_.selectedTab() != 6 || !Text1->isVisible() || Text1->toPlainText().isEmpty()) return false;
        Text1->selectAll();
        Text1->copy();
        return true;
    }
    void applyColors() override
    {
        if (!built()) return;
        const ColorSettings &c = G.Colors;
        paintWidget(Text6, c.DocumentBack, c.DocumentText);
        paintWidget(Text1, c.DocumentBack, c.DocumentText);
        paintWidget(List6, c.ListBack, c.ListText);
    }
    QListWidget *history() override { return List6; }

    QString Text1Document, WebBrowser1Document;

protected:
    void build(QWidget *panel) override
    {
        setHelpTopic(panel, QStringLiteral("documents"));
        auto *p6 = new QVBoxLayout(panel);
        Text6 = new QLabel(panel);
        Text6->setObjectName(QStringLiteral("Text6"));
        Text6->setAutoFillBackground(true);
        p6->addWidget(Text6);
        Text1 = new QTextEdit(panel);
        Text1->setObjectName(QStringLiteral("Text1"));
        Text1->setReadOnly(true);
        Text1->hide();
        p6->addWidget(Text1, 1);
        List6 = new QListWidget(panel);
        List6->setObjectName(QStringLiteral("List6"));
        List6->hide();
        p6->addStretch(1);
    }

private:
    QLabel *Text6 = nullptr;  // the document panel's caption
    QTextEdit *Text1 = nullptr;
    QListWidget *List6 = nullptr;  // documents seen
};

class InternetPage : public TabPage {
public:
    explicit InternetPage(PageHost &host) : TabPage(host, 7) {}

    void reset() override { WebPageName.clear(); }
    void entering() override
    {
        ToolManager &t = host_.tools();
        t.setToolbarVisible(6, true);
        t.setToolbarVisible(7, true);
        if (InternetFirstEntry) {
            t.setToolTip(tool::IntURLEnter,
                         QStringLiteral("Enter Web Site Page Location or Select Visited Page"));
            InternetFirstEntry = false;
        }
    }
    QString tabTitle() const override { return WebPageName + QStringLiteral(" - ") + AppTitle; }
    void applyColors() override
    {
        if (built()) paintWidget(WebBrowser2, G.Colors.InternetBack, G.Colors.InternetText);
    }

    QString WebPageName;
    bool InternetFirstEntry = true;

protected:
    void build(QWidget *panel) override
    {
        setHelpTopic(panel, QStringLiteral("internet"));
        auto *p7 = new QVBoxLayout(panel);
        WebBrowser2 = new QFrame(panel);
        WebBrowser2->setObjectName(QStringLiteral("WebBrowser2"));
        WebBrowser2->setFrameShape(QFrame::StyledPanel);
        p7->addWidget(WebBrowser2, 1);
    }

private:
    QFrame *WebBrowser2 = nullptr;
};

TW_REGISTER_PAGE(6, DocumentsPage);
TW_REGISTER_PAGE(7, InternetPage);

}  // namespace tw
