// The Find tab's side of the main window: the folder tree PTxShTree1, the file list
// PTxShList1, the search walk and the Find dialog.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QSplitter;

namespace tw {

class Tarnwick1;
class ShellTree;
class ShellList;

class BrowseModule : public QObject {
    Q_OBJECT
public:
    // Creates PTxShTree1 and PTxShList1 as the two panes of Splitter1 and links them.
    BrowseModule(Tarnwick1 &w, QSplitter *splitter1);
    ~BrowseModule() override;

    // Tools this module owns; true when the identifier was one of them.
    bool onToolClick(const QString &id);
    static QStringList ownedTools();
    void applyColors();

    // What the main window needs of the list.
    QString listFolder() const;
    void setListFolder(const QString &path);
    void setListPattern(const QString &pattern);
    void setListViewMode(int mode);  // 0 large icons, 1 small icons, 2 list, 3 details
    QString focusedItemPath() const;
    QStringList listItemPaths() const;  // display order

    ShellTree *PTxShTree1 = nullptr;
    ShellList *PTxShList1 = nullptr;

private:
    Tarnwick1 &w_;
};

}  // namespace tw
