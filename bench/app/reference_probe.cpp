// The second reference of the start-up benchmark: a plain Qt main window with the same kinds
// of widgets the main window shows at start and nothing else. A menu bar with six menus, one
// toolbar of fifteen tools with icons, a tab widget with eight tabs, and on the first tab a
// splitter with a folder tree and a file list over QFileSystemModel. It reports its first
// paint the same way as the other probes.
#include "first_paint.h"

#include <QApplication>
#include <QDir>
#include <QFileSystemModel>
#include <QListView>
#include <QMainWindow>
#include <QMenuBar>
#include <QSplitter>
#include <QStyle>
#include <QTabWidget>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    FirstPaint probe;
    QMainWindow w;
    w.resize(700, 533);

    const char *menus[6][4] = {
        {"&File", "Open", "Save As", "Exit"},
        {"&Edit", "Cut", "Copy", "Paste"},
        {"&View", "Large Icons", "Small Icons", "Details"},
        {"&Utilities", "Rename", "Set Window Colors", "Set Program Options"},
        {"&Tools", "Find", "Slide Show", "Play List"},
        {"&Help", "Contents", "Quick Tips", "About"},
    };
    for (const auto &m : menus) {
        QMenu *menu = w.menuBar()->addMenu(QString::fromLatin1(m[0]));
        for (int i = 1; i < 4; ++i) menu->addAction(QString::fromLatin1(m[i]));
    }

    const QStyle::StandardPixmap icons[15] = {
        QStyle::SP_DirOpenIcon,        QStyle::SP_DialogSaveButton,    QStyle::SP_FileDialogBack,
        QStyle::SP_ArrowBack,          QStyle::SP_ArrowForward,        QStyle::SP_ArrowUp,
        QStyle::SP_BrowserReload,      QStyle::SP_BrowserStop,         QStyle::SP_FileDialogDetailedView,
        QStyle::SP_FileDialogListView, QStyle::SP_FileDialogNewFolder, QStyle::SP_TrashIcon,
        QStyle::SP_MediaPlay,          QStyle::SP_MediaStop,           QStyle::SP_DialogHelpButton,
    };
    QToolBar *bar = w.addToolBar(QStringLiteral("Tools"));
    for (int i = 0; i < 15; ++i)
        bar->addAction(w.style()->standardIcon(icons[i]), QStringLiteral("Tool %1").arg(i + 1));

    auto *tabs = new QTabWidget(&w);
    const char *captions[8] = {"Find",  "Pictures",  "Videos",   "Music",
                               "Slide", "Documents", "Internet", "Tools"};
    auto *first = new QWidget;
    auto *lay = new QVBoxLayout(first);
    auto *split = new QSplitter(Qt::Horizontal, first);
    lay->addWidget(split);
    auto *dirs = new QFileSystemModel(&w);
    dirs->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    dirs->setRootPath(QStringLiteral("/"));
    auto *tree = new QTreeView(split);
    tree->setModel(dirs);
    tree->setRootIndex(dirs->index(QStringLiteral("/")));
    auto *files = new QFileSystemModel(&w);
    files->setRootPath(QDir::homePath());
    auto *list = new QListView(split);
    list->setModel(files);
    list->setRootIndex(files->index(QDir::homePath()));
    split->setSizes({280, 420});
    tabs->addTab(first, QString::fromLatin1(captions[0]));
    for (int i = 1; i < 8; ++i) tabs->addTab(new QWidget, QString::fromLatin1(captions[i]));
    w.setCentralWidget(tabs);

    w.installEventFilter(&probe);
    w.show();
    return app.exec();
}
