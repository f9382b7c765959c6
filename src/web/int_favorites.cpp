#include "web/int_favorites.h"

#include "core/context_help.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/scenario_access.h"
#include "core/tab_page.h"
#include "web/internet_page.h"
#include "web/url_file.h"
#include "web/web_view.h"

#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <functional>

namespace tw {

namespace {

enum Role { RelPathRole = Qt::UserRole, IsFileRole };

// Folders first, then the shortcuts, each in name order; the scan goes all the way down.
void addFolder(QTreeWidgetItem *node, const QString &dir, const QString &rel)
{
    QDir d(dir);
    for (const QFileInfo &sub :
         d.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase)) {
        auto *child = new QTreeWidgetItem(node, {sub.fileName()});
        const QString r = rel.isEmpty() ? sub.fileName() : rel + u'/' + sub.fileName();
        child->setData(0, RelPathRole, r);
        child->setData(0, IsFileRole, false);
        addFolder(child, sub.filePath(), r);
    }
    for (const QFileInfo &f : d.entryInfoList(QDir::Files, QDir::Name | QDir::IgnoreCase)) {
        if (f.suffix().toUpper() != QLatin1String("URL")) continue;
        auto *child = new QTreeWidgetItem(node, {f.completeBaseName()});
        child->setData(0, RelPathRole, rel.isEmpty() ? f.fileName() : rel + u'/' + f.fileName());
        child->setData(0, IsFileRole, true);
    }
}

}  // namespace

IntFavorites1::IntFavorites1(InternetPage &web, PageHost &host, QWidget *parent)
    : QDialog(parent), web_(web), host_(host)
{
    setObjectName(QStringLiteral("IntFavorites1"));
    setWindowTitle(QStringLiteral("Favorite Web Sites and Web Pages"));
    setHelpTopic(this, QStringLiteral("internet"));
    auto *lay = new QVBoxLayout(this);
    TreeView1 = new QTreeWidget(this);
    TreeView1->setObjectName(QStringLiteral("TreeView1"));
    TreeView1->setHeaderHidden(true);
    TreeView1->viewport()->installEventFilter(this);
    lay->addWidget(TreeView1, 1);
    auto *row = new QHBoxLayout;
    ToggleBtn = new QPushButton(QStringLiteral("Toggle"), this);
    ToggleBtn->setObjectName(QStringLiteral("ToggleBtn"));
    ToggleBtn->setToolTip(QStringLiteral("Toggle between Favorites and Browser"));
    ToggleBtn->setAutoDefault(false);
    ExitBtn = new QPushButton(QStringLiteral("Exit"), this);
    ExitBtn->setObjectName(QStringLiteral("ExitBtn"));
    ExitBtn->setToolTip(QStringLiteral("Close Favorite Window"));
    ExitBtn->setAutoDefault(false);
    row->addWidget(ToggleBtn);
    row->addStretch(1);
    row->addWidget(ExitBtn);
    lay->addLayout(row);
    resize(420, 460);

    FavoritesBase = FindFavoritesFolder(QDir::homePath(), systemUserName(), G.ProgramDir);
    fillTree();
    refreshToolTip();
    web_.FavoritesOpen = true;
    G.IntFavorites1Loaded = true;

    connect(TreeView1, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *it) { nodeClicked(it); });
    connect(ExitBtn, &QPushButton::clicked, this, [this] { close(); });
    connect(ToggleBtn, &QPushButton::clicked, this, [this] {
        QMainWindow *w = host_.window();
        if (isActiveWindow()) {
            w->raise();
            w->activateWindow();
        } else {
            raise();
            activateWindow();
        }
    });
}

IntFavorites1::~IntFavorites1() { closing(); }

void IntFavorites1::fillTree()
{
    TreeView1->clear();
    const QString root = FavoritesBase + QStringLiteral("/Favorites");
    auto *top = new QTreeWidgetItem(TreeView1, {QStringLiteral("Favorites")});
    top->setData(0, RelPathRole, QString());
    top->setData(0, IsFileRole, false);
    addFolder(top, root, QString());
    TreeView1->expandAll();
}

QStringList IntFavorites1::nodePaths() const
{
    QStringList out;
    std::function<void(const QTreeWidgetItem *, const QString &)> walk = [&](const QTreeWidgetItem *it,
                                                                             const QString &above) {
        const QString path = above.isEmpty() ? it->text(0) : above + u'/' + it->text(0);
        out << path;
        for (int i = 0; i < it->childCount(); ++i) walk(it->child(i), path);
    };
    for (int i = 0; i < TreeView1->topLevelItemCount(); ++i) walk(TreeView1->topLevelItem(i), QString());
    return out;
}

void IntFavorites1::refreshToolTip()
{
    setToolTip(web_.FavoriteMode.isEmpty()
                   ? QStringLiteral(" Click on a Favorite to go to Web Page")
                   : QStringLiteral("Click on Favorite Window to Add to Open Favorite Folder"));
}

QString IntFavorites1::shortcutPath(const QTreeWidgetItem *item) const
{
    return FavoritesBase + QStringLiteral("/Favorites/") + item->data(0, RelPathRole).toString();
}

void IntFavorites1::nodeClicked(QTreeWidgetItem *item)
{
    if (!item) return;
    const bool isFile = item->data(0, IsFileRole).toBool();
    if (web_.FavoriteMode == QLatin1String("A")) {
        // The folder of the node clicked takes the new shortcut.
        QString rel = item->data(0, RelPathRole).toString();
        if (isFile) rel = rel.contains(u'/') ? rel.left(rel.lastIndexOf(u'/')) : QString();
        CurrentFolder = rel.isEmpty() ? QStringLiteral("/Favorites") : QStringLiteral("/Favorites/") + rel;
        AddCurrentPage();
        web_.FavoriteMode.clear();
        refreshToolTip();
        TreeView1->setFocus();
        return;
    }
    if (!isFile) return;
    const UrlFileResult r = readUrlFile(shortcutPath(item));
    web_.CurrentUrl = r.url;
    web_.CurrentUrlName = r.name;
    if (G.SwitchToFileTab) host_.selectTab(7);
    web_.navigate(web_.CurrentUrl);
    if (!web_.CurrentUrl.trimmed().isEmpty()) web_.AddVisited(web_.CurrentUrl);
}

bool IntFavorites1::AddCurrentPage()
{
    const QString folder = CurrentFolder == QLatin1String("/Favorites")
        ? FavoritesBase + QStringLiteral("/Favorites/")
        : FavoritesBase + CurrentFolder + u'/';
    if (writeUrlFile(folder, web_.PageTitle, web_.PageUrl)) {
        fillTree();
        inform(QStringLiteral("Web Site Page Successfully Saved to Favorites"), QString(), this);
        return true;
    }
    inform(QStringLiteral("Web Site Page was Not Successfully Saved to Favorites"), QString(), this);
    return false;
}

void IntFavorites1::deleteNode(QTreeWidgetItem *item)
{
    if (!item || !item->data(0, IsFileRole).toBool()) return;
    if (!askYesNo(QStringLiteral("Do you want to Delete - ") + item->text(0), AppTitle, this)) return;
    // The system's delete: the file goes to the trash.
    if (!QFile::moveToTrash(shortcutPath(item))) return;
    delete item;
    CurrentFolder = QStringLiteral("/Favorites");
}

bool IntFavorites1::eventFilter(QObject *o, QEvent *e)
{
    if (o == TreeView1->viewport() && e->type() == QEvent::MouseButtonPress) {
        auto *me = static_cast<QMouseEvent *>(e);
        if (me->button() == Qt::RightButton) {
            QTreeWidgetItem *it = TreeView1->itemAt(me->position().toPoint());
            if (it) {
                TreeView1->setCurrentItem(it);
                deleteNode(it);
            }
            return true;
        }
    }
    return QDialog::eventFilter(o, e);
}

void IntFavorites1::closing()
{
    if (closed_) return;
    closed_ = true;
    web_.FavoritesOpen = false;
    G.IntFavorites1Loaded = false;
}

void IntFavorites1::closeEvent(QCloseEvent *e)
{
    closing();
    QDialog::closeEvent(e);
}

void IntFavorites1::done(int r)
{
    closing();
    QDialog::done(r);
}

}  // namespace tw
