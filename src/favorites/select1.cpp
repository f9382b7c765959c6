#include "favorites/select1.h"

#include "browse/dir_scan.h"
#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/internal_drag.h"
#include "core/prompt.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {
// The selection list's rows leave as "SelectTag" drags: no list of the program takes them, a
// file manager takes them as files.
class SelectList : public QListWidget {
public:
    using QListWidget::QListWidget;

protected:
    QStringList mimeTypes() const override
    {
        return {QLatin1String(DragSourceMime), QLatin1String(DragFilesMime), QStringLiteral("text/uri-list")};
    }
    QMimeData *mimeData(const QList<QListWidgetItem *> &items) const override
    {
        return makeRowsDrag(QStringLiteral("SelectTag"), items);
    }
};
}  // namespace

Select1::Select1(QWidget *parent) : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("Select1"));
    setWindowTitle(QStringLiteral("Select Files to View or Play"));
    setHelpTopic(this, QStringLiteral("Select1"));
    auto *outer = new QVBoxLayout(this);
    Frame1 = new QFrame(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    Frame1->setAcceptDrops(true);
    Frame1->installEventFilter(this);
    outer->addWidget(Frame1);
    auto *lay = new QGridLayout(Frame1);
    auto *label = new QLabel(QStringLiteral("Files Selected to View or Play"), Frame1);
    label->setObjectName(QStringLiteral("Label1"));
    List1 = new SelectList(Frame1);
    List1->setDragEnabled(true);
    List1->setDragDropMode(QAbstractItemView::DragDrop);
    List1->setDefaultDropAction(Qt::CopyAction);
    List1->setObjectName(QStringLiteral("List1"));
    List1->setToolTip(QStringLiteral("Files you have selected to View or Play"));
    List1->setAcceptDrops(true);
    List1->viewport()->setAcceptDrops(true);
    List1->viewport()->installEventFilter(this);
    struct B {
        const char *name, *text, *tip;
    };
    const B buttons[] = {
        {"OKBtn", "View", "View or Play the Highlighted File"},
        {"DeleteBtn", "Delete", "Delete Highlighted Selection from the Selection List"},
        {"ClearBtn", "Clear", "Clear All Selections from the Selection List"},
        {"FavoriteBtn", "Favorites",
         "View and Add Favorite Pictures and Multimedia Files to the Selection List"},
        {"SlideShowBtn", "Slide Show", "Add all Selections to the current Slide Show"},
        {"CancelBtn", "Close", "Close and Exit the Selection Window"},
        {"HelpBtn", "Help", "Help with the Selection Window"},
    };
    QPushButton *b[7];
    auto *row = new QHBoxLayout;
    for (int i = 0; i < 7; ++i) {
        b[i] = new QPushButton(QLatin1String(buttons[i].text), Frame1);
        b[i]->setObjectName(QLatin1String(buttons[i].name));
        b[i]->setToolTip(QLatin1String(buttons[i].tip));
        row->addWidget(b[i]);
    }
    lay->addWidget(label, 0, 0);
    lay->addWidget(List1, 1, 0);
    lay->addLayout(row, 2, 0);
    resize(520, 360);

    // Every picture and media extension of the catalogue's first forty cells as a pattern.
    const auto &cells = Cat.built() ? Cat.FileExtTable : fileExtLiterals();
    QStringList parts;
    for (int i = PictureFirst; i <= PictureLast; ++i) parts << (QStringLiteral("*.") + cells[i]).trimmed();
    FolderPattern = parts.join(QLatin1Char(';')).trimmed();
    G.FavBrowserFromSelection = false;
    G.Select1Loaded = true;

    connect(b[0], &QPushButton::clicked, this, &Select1::okBtn);
    connect(List1, &QListWidget::itemDoubleClicked, this, [this] { okBtn(); });
    connect(b[1], &QPushButton::clicked, this, &Select1::deleteBtn);
    connect(b[2], &QPushButton::clicked, this, &Select1::clearBtn);
    connect(b[3], &QPushButton::clicked, this, [this] {
        G.FavBrowserFromSelection = true;
        if (openFavorites) openFavorites();
    });
    connect(b[4], &QPushButton::clicked, this, &Select1::slideShowBtn);
    connect(b[5], &QPushButton::clicked, this, &QWidget::close);
    connect(b[6], &QPushButton::clicked, this, [this] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
        QCoreApplication::sendEvent(this, &press);
    });
}

Select1::~Select1()
{
    G.Select1Loaded = false;
    G.Select1Visible = false;
}

void Select1::showEvent(QShowEvent *e)
{
    G.Select1Visible = true;
    QWidget::showEvent(e);
}

void Select1::hideEvent(QHideEvent *e)
{
    G.Select1Visible = false;
    QWidget::hideEvent(e);
}

void Select1::closeEvent(QCloseEvent *e)
{
    G.Select1Visible = false;
    emit closed();
    QWidget::closeEvent(e);
}

void Select1::okBtn()
{
    const int row = List1->currentRow();
    if (List1->count() == 0 || row < 0) return;
    const QString path = List1->item(row)->text();
    if (row < List1->count() - 1) List1->setCurrentRow(row + 1);
    if (displayFile) displayFile(path);
}

void Select1::deleteBtn()
{
    const int row = List1->currentRow();
    if (row < 0) return;
    delete List1->takeItem(row);
    if (List1->count() == 0) List1->setCurrentRow(-1);
    else List1->setCurrentRow(std::min(row, List1->count() - 1));
}

void Select1::clearBtn()
{
    if (!askYesNo(QStringLiteral("Do you want to Clear all History of Pictures Viewed this Session?"),
                  AppTitle, this))
        return;
    if (clearHistory) clearHistory();
    List1->clear();
}

void Select1::slideShowBtn()
{
    if (!addToSlideShow) return;
    for (int i = 0; i < List1->count(); ++i) addToSlideShow(List1->item(i)->text());
}

void Select1::dropFiles(const QStringList &paths)
{
    for (const QString &p : paths) {
        if (GetFileExt(p).isEmpty()) AddFolderFiles(p);
        else List1->addItem(p);
    }
}

void Select1::AddFolderFiles(const QString &folder)
{
    if (!askYesNo(folder + QStringLiteral(" - ") + QStringLiteral("Do you want to Add Folder"), AppTitle,
                  this))
        return;
    // A name that is no folder ends here with the list unchanged.
    if (!QFileInfo(folder).isDir()) return;
    const browse::PatternSet set(FolderPattern);
    // The separator goes in whatever the folder ends with, as the file list joins them.
    for (const QString &n : QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase))
        if (set.matches(n)) List1->addItem(folder + QLatin1Char('/') + n);
}

void Select1::dropInternal(const QString &tag, const QStringList &files)
{
    if (tag == QLatin1String("Thumbs")) {
        // The grid drags only while it shows thumbnails; the drag carries SelectedFile.
        const QString f = files.value(0);
        if (!f.isEmpty()) List1->addItem(f);
        return;
    }
    if (!G.SelFavorites1Loaded) return;
    if (tag == QLatin1String("SelList1")) {
        if (files.isEmpty()) return;
        List1->addItem(files.first());
        List1->setCurrentRow(List1->count() - 1);
    } else if (tag == QLatin1String("SelList2")) {
        for (const QString &f : files) List1->addItem(f);
    }
}

bool Select1::eventFilter(QObject *o, QEvent *e)
{
    if (!List1 || (o != List1->viewport() && o != Frame1)) return false;
    if (e->type() == QEvent::DragEnter || e->type() == QEvent::DragMove) {
        auto *de = static_cast<QDropEvent *>(e);
        if (canReadDrop(de->mimeData())) {
            de->acceptProposedAction();
            return true;
        }
    } else if (e->type() == QEvent::Drop) {
        auto *de = static_cast<QDropEvent *>(e);
        const ListDrop d = readDrop(de->mimeData());
        if (d.internal()) {
            // The program's own drags land on the list only.
            if (o == List1->viewport()) dropInternal(d.tag, d.files);
        } else {
            dropFiles(d.files);
        }
        de->acceptProposedAction();
        return true;
    }
    return false;
}

}  // namespace tw
