// The Documents tab: the document surface WebBrowser1 and the text box Text1 in the same
// place, exactly one of them visible; the document history List6; the commands of ToolText.
#pragma once

#include "core/tab_page.h"

#include <QString>

#include <optional>

class QLabel;
class QListWidget;

namespace tw {

class DocumentBrowser;
class DocumentText;
class PlainText;

class DocumentsPage : public TabPage {
public:
    explicit DocumentsPage(PageHost &host);
    ~DocumentsPage() override;

    void reset() override;
    void entering() override;
    QString tabTitle() const override;
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    void applyColors() override;
    void addLoaders(FileLoaders &loaders) override;
    QListWidget *history() override { return List6; }
    bool variableText(const QString &name, QString *out) const override;

    // The two loaders.
    void LoadDocument(const QString &path);
    void LoadText(const QString &path);
    // The commands on the selected row of List6.
    void SaveDocument();
    void PrintDocument();
    void ShowDocumentProperties();

    QString Text1Document, WebBrowser1Document;

    QLabel *Text6 = nullptr;  // the document panel's caption, which carries the help topic
    DocumentText *Text1 = nullptr;  // plain text compactly, rich text in a rich text box
    DocumentBrowser *WebBrowser1 = nullptr;
    QListWidget *List6 = nullptr;  // documents seen

protected:
    void build(QWidget *panel) override;

private:
    QString selectedDocument() const;
    // The plain text of Path for Text1, read on a worker thread; a long read shows its
    // progress and can be stopped. Nothing when the file cannot be read or the user stopped it.
    std::optional<PlainText> readPlainText(const QString &path);
};

}  // namespace tw
