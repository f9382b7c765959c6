// IntFavorites1, "Favorite Web Sites and Web Pages": the Internet favorites as a tree of
// folders and shortcuts read from the Favorites folder; a click opens a shortcut in the
// Internet tab or, while adding, saves the current page into the folder clicked.
#pragma once

#include <QDialog>
#include <QString>

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace tw {

class InternetPage;
class PageHost;

class IntFavorites1 : public QDialog {
    Q_OBJECT
public:
    IntFavorites1(InternetPage &web, PageHost &host, QWidget *parent);
    ~IntFavorites1() override;

    // Fills the tree again from the folder.
    void fillTree();
    // The window's tip follows the mode (adding or going).
    void refreshToolTip();
    bool AddCurrentPage();
    // Every node as its text path from the top ("Favorites/News/Page"), depth first.
    QStringList nodePaths() const;

    QString FavoritesBase;  // the folder that contains "Favorites"
    QString CurrentFolder = QStringLiteral("/Favorites");  // the folder to add to

    QTreeWidget *TreeView1 = nullptr;
    QPushButton *ToggleBtn = nullptr;
    QPushButton *ExitBtn = nullptr;

protected:
    void closeEvent(QCloseEvent *e) override;
    void done(int r) override;
    bool eventFilter(QObject *o, QEvent *e) override;

private:
    void nodeClicked(QTreeWidgetItem *item);
    void deleteNode(QTreeWidgetItem *item);
    QString shortcutPath(const QTreeWidgetItem *item) const;
    void closing();

    InternetPage &web_;
    PageHost &host_;
    bool closed_ = false;
};

}  // namespace tw
