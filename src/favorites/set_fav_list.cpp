#include "favorites/set_fav_list.h"

#include "browse/dir_scan.h"
#include "browse/shell_list.h"
#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/internal_drag.h"
#include "core/prompt.h"
#include "favorites/fav_file.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

QPushButton *makeButton(QWidget *parent, const char *name, const QString &text, const QString &tip)
{
    auto *b = new QPushButton(text, parent);
    b->setObjectName(QLatin1String(name));
    b->setToolTip(tip);
    b->setAutoDefault(false);
    return b;
}
}  // namespace

// ---------------------------------------------------------------- SetFavNew1

SetFavNew1::SetFavNew1(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("SetFavNew1"));
    setWindowTitle(QStringLiteral("Create New Favorite List"));
    auto *lay = new QVBoxLayout(this);
    auto *label = new QLabel(QStringLiteral("Enter New Favorite List Name"), this);
    label->setObjectName(QStringLiteral("Label1"));
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setToolTip(QStringLiteral("Enter Name of New Favorite List"));
    auto *okb = makeButton(this, "OKBtn", QStringLiteral("OK"),
                           QStringLiteral("Click OK to Create the New Favorite List"));
    okb->setDefault(true);
    auto *cancel = makeButton(this, "CancelBtn", QStringLiteral("Cancel"),
                              QStringLiteral("Click Cancel to Close the Create New Favorite List Window"));
    auto *row = new QHBoxLayout;
    row->addWidget(okb);
    row->addWidget(cancel);
    lay->addWidget(label);
    lay->addWidget(Text1);
    lay->addLayout(row);
    connect(okb, &QPushButton::clicked, this, &SetFavNew1::ok);
    connect(cancel, &QPushButton::clicked, this, [this] {
        NewFavListCancelled = true;
        reject();
    });
}

void SetFavNew1::ok()
{
    if (Text1->text().trimmed().isEmpty()) {
        inform(QStringLiteral(
                   "You must Enter the Name for the New Favorite List of Pictures or Multimedia Files"),
               AppTitle, this);
        Text1->setFocus();
        return;
    }
    NewFavListName = Text1->text();
    accept();
}

// ---------------------------------------------------------------- the entries list

FavEntryList::FavEntryList(QWidget *parent) : QListWidget(parent)
{
    setAcceptDrops(true);
    // The entries drag out as files, for a file manager; a drop back on the list itself is
    // passed over.
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::CopyAction);
}

QStringList FavEntryList::mimeTypes() const
{
    return {QLatin1String(DragSourceMime), QLatin1String(DragFilesMime), QStringLiteral("text/uri-list")};
}

QMimeData *FavEntryList::mimeData(const QList<QListWidgetItem *> &items) const
{
    return makeRowsDrag(QStringLiteral("FavEntries"), items);
}

void FavEntryList::dragEnterEvent(QDragEnterEvent *e)
{
    if (canReadDrop(e->mimeData())) e->acceptProposedAction();
}

void FavEntryList::dragMoveEvent(QDragMoveEvent *e)
{
    if (canReadDrop(e->mimeData())) e->acceptProposedAction();
}

void FavEntryList::dropEvent(QDropEvent *e)
{
    // Files from another program, and the program's own drags alike: every path carried.
    if (e->source() == this) {
        e->ignore();
        return;
    }
    const ListDrop d = readDrop(e->mimeData());
    if (onFilesDropped && !d.files.isEmpty()) onFilesDropped(d.files);
    e->acceptProposedAction();
}

// ---------------------------------------------------------------- SetFavList1

SetFavList1::SetFavList1(QWidget *parent, const QString &folder) : QDialog(parent)
{
    setObjectName(QStringLiteral("SetFavList1"));
    setWindowTitle(QStringLiteral("Create List of Preset Favorites for Quick Location"));
    setHelpTopic(this, QStringLiteral("SetFavList1"));
    auto *grid = new QGridLayout(this);

    auto *browserLabel = new QLabel(QStringLiteral("Select Files for Current List"), this);
    browserLabel->setObjectName(QStringLiteral("Label1"));
    PTxShList1 = new ShellList(this);
    PTxShList1->setObjectName(QStringLiteral("PTxShList1"));
    PTxShList1->setViewMode(3);
    CMBFILTER = new QComboBox(this);
    CMBFILTER->setObjectName(QStringLiteral("CMBFILTER"));
    CMBFILTER->setToolTip(QStringLiteral("Filter Files on Folder/File List"));
    auto *goUp =
        makeButton(this, "GoUpBtn", QStringLiteral("Up"), QStringLiteral("Move up one Folder Level"));

    auto *entriesLabel = new QLabel(QStringLiteral("List of Selected Files"), this);
    entriesLabel->setObjectName(QStringLiteral("Label2"));
    List1 = new FavEntryList(this);
    List1->setObjectName(QStringLiteral("List1"));
    List1->setToolTip(QStringLiteral("Folders and Filter Selected"));
    auto *namesLabel = new QLabel(QStringLiteral("Select Favorite List Names"), this);
    namesLabel->setObjectName(QStringLiteral("Label3"));
    List2 = new QListWidget(this);
    List2->setObjectName(QStringLiteral("List2"));

    auto *right = makeButton(this, "RightBtn", QStringLiteral(">"),
                             QStringLiteral("Select Folder to List for Quick Location"));
    auto *left = makeButton(this, "LefttBtn", QStringLiteral("<"),
                            QStringLiteral("Remove Folder from Quick Folder Location List"));
    auto *up = makeButton(this, "UpBtn", QStringLiteral("Up"),
                          QStringLiteral("Move Highlighted Folder Up one Position"));
    auto *down = makeButton(this, "DownBtn", QStringLiteral("Down"),
                            QStringLiteral("Move Highlighted Folder Down one Position"));
    auto *all = makeButton(this, "AllBtn", QStringLiteral("All"),
                           QStringLiteral("Move all Multimedia Files to Favorite List"));
    auto *clear = makeButton(this, "ClearBtn", QStringLiteral("Clear"),
                             QStringLiteral("Clear all Selected Files From Favorite List"));
    auto *newb =
        makeButton(this, "NewBtn", QStringLiteral("New"), QStringLiteral("Create a New Favorite List"));
    auto *del =
        makeButton(this, "DeleteBtn", QStringLiteral("Delete"), QStringLiteral("Delete Highlighted List"));
    auto *okb = makeButton(this, "OKBtn", QStringLiteral("OK"),
                           QStringLiteral("Click OK to Save all the Selected Favorite List"));
    auto *cancel = makeButton(this, "CancelBtn", QStringLiteral("Cancel"),
                              QStringLiteral("Click Cancel to Close the Create Favorites Window"));
    okb->setDefault(true);  // Enter in the form counts as OK
    auto *help = makeButton(this, "HelpBtn", QStringLiteral("Help"),
                            QStringLiteral("Help with the Favorite List Viewing Window Setup"));

    auto *moves = new QVBoxLayout;
    for (QPushButton *b : {right, left, up, down, all, clear}) moves->addWidget(b);
    moves->addStretch(1);
    auto *names = new QVBoxLayout;
    for (QPushButton *b : {newb, del}) names->addWidget(b);
    auto *bottom = new QHBoxLayout;
    bottom->addStretch(1);
    for (QPushButton *b : {okb, cancel, help}) bottom->addWidget(b);

    grid->addWidget(browserLabel, 0, 0);
    grid->addWidget(goUp, 0, 1);
    grid->addWidget(PTxShList1, 1, 0, 1, 2);
    grid->addWidget(CMBFILTER, 2, 0, 1, 2);
    grid->addLayout(moves, 1, 2);
    grid->addWidget(entriesLabel, 0, 3);
    grid->addWidget(List1, 1, 3, 2, 1);
    grid->addWidget(namesLabel, 0, 4);
    grid->addWidget(List2, 1, 4);
    grid->addLayout(names, 2, 4);
    grid->addLayout(bottom, 3, 0, 1, 5);
    resize(900, 480);

    // The form's pattern of multimedia files, from its three parts.
    multimediaPattern_ = (QStringLiteral("*.JPG;*.JPE;*.CMP;*.TIF;*.TIF;*.MPT;*.BMP;*.ICO;*.CUR;*.PCX;*.DCX;*"
                                         ".PCD;*.FPX;*.AWD;*.WMF;*.EMF;*.FAX;")
                          + QStringLiteral("*.XPM;*.IFF;*.PBM;*.CUT;*.PSD;*.PNG;*.TGA;*.EPS;*.JBG;*.RAS;*."
                                           "WPG;*.PCT;*.CLP;*.XWD;*.FLC;*.ANI;*.SGI;")
                          + QStringLiteral("*.WAV;*.MID;*.RMI;*.AVI;*.MPG;*.MPEG;*.MOV;*.MP3"))
                             .trimmed();
    if (!folder.isEmpty()) PTxShList1->setFolder(folder);
    QDir().mkpath(fav::listFolder());
    FavListDirty = false;
    const auto &captions = favListFilterNames();
    const auto &patterns = favListFilterPatterns();
    for (int i = 0; i < FilterRows; ++i) {
        FavFilterPatterns[i] = patterns[i];
        CMBFILTER->addItem(captions[i]);
    }
    CMBFILTER->setCurrentIndex(-1);
    ListFavListNames();
    G.SetFavList1Loaded = true;

    connect(CMBFILTER, &QComboBox::activated, this, &SetFavList1::filterChosen);
    connect(List2, &QListWidget::itemClicked, this, [this] { listNameClicked(); });
    connect(right, &QPushButton::clicked, this, &SetFavList1::rightBtn);
    connect(left, &QPushButton::clicked, this, &SetFavList1::leftBtn);
    connect(up, &QPushButton::clicked, this, [this] { moveRow(-1); });
    connect(down, &QPushButton::clicked, this, [this] { moveRow(+1); });
    connect(all, &QPushButton::clicked, this, &SetFavList1::allBtn);
    connect(clear, &QPushButton::clicked, this, [this] {
        List1->clear();
        FavListDirty = true;
    });
    connect(newb, &QPushButton::clicked, this, &SetFavList1::newBtn);
    connect(del, &QPushButton::clicked, this, &SetFavList1::deleteBtn);
    connect(goUp, &QPushButton::clicked, this, [this] { PTxShList1->upOneLevel(1); });
    connect(okb, &QPushButton::clicked, this, &SetFavList1::okBtn);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(help, &QPushButton::clicked, this, [this] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
        QCoreApplication::sendEvent(this, &press);
    });
    List1->onFilesDropped = [this](const QStringList &paths) { dropFiles(paths); };

    // The first list, if there is one, is loaded as a click on it does.
    if (List2->count() > 0) {
        List2->setCurrentRow(0);
        listNameClicked();
    }
}

SetFavList1::~SetFavList1() { G.SetFavList1Loaded = false; }

void SetFavList1::ListFavListNames()
{
    List2->clear();
    List2->addItems(fav::ListFavListNames(fav::listFolder()));
}

void SetFavList1::filterChosen(int row)
{
    if (row < 0 || row >= 41) return;
    const QString p = FavFilterPatterns[row].trimmed();
    FavFilterPatterns[row] = p;
    PTxShList1->setPattern(p);
}

void SetFavList1::listNameClicked()
{
    if (List2->count() == 0 || List2->currentRow() < 0) return;
    // A change of list saves the old one first, without asking.
    if (FavListDirty) {
        QStringList rows;
        for (int i = 0; i < List1->count(); ++i) rows << List1->item(i)->text();
        fav::SaveFavList(CurrentFavListPath + QStringLiteral(".FLST"), rows);
        FavListDirty = false;
    }
    CurrentFavListPath = fav::listBasePath(List2->currentItem()->text());
    List1->clear();
    List1->addItems(fav::LoadFavList(CurrentFavListPath + QStringLiteral(".FLST")));
    FavListDirty = false;
}

void SetFavList1::newBtn()
{
    SetFavNew1 dlg(this);
    dlg.exec();
    if (dlg.NewFavListCancelled || dlg.NewFavListName.trimmed().isEmpty()) return;
    List2->addItem(dlg.NewFavListName);
    CurrentFavListPath = fav::listBasePath(dlg.NewFavListName);
    List2->setCurrentRow(List2->count() - 1);
    List1->clear();
    FavListDirty = true;
}

void SetFavList1::deleteBtn()
{
    const int row = List2->currentRow();
    if (List2->count() == 0 || row < 0) return;
    const QString name = List2->item(row)->text();
    if (!askYesNo(QStringLiteral("Are you sure you want to Delete - ") + name, AppTitle, this)) return;
    QFile::remove(fav::listBasePath(name) + QStringLiteral(".FLST"));
    delete List2->takeItem(row);
    List1->clear();
    if (row < List2->count()) List2->setCurrentRow(row);
    if (List2->count() == 1) List2->setCurrentRow(0);
}

void SetFavList1::rightBtn()
{
    const int item = PTxShList1->selectedItem(0);
    if (item < 0) return;
    const QString path = PTxShList1->itemPath(item);
    if (path.trimmed().isEmpty()) return;
    if (!fav::IsSupportedFile(path)) {
        inform(QStringLiteral("You must select a supported Picture or Multimedia File"), AppTitle, this);
        return;
    }
    List1->addItem(path);
    PTxShList1->deselectItem(item);
    List1->setCurrentRow(List1->count() - 1);
    FavListDirty = true;
}

void SetFavList1::leftBtn()
{
    const int row = List1->currentRow();
    if (row < 0) return;
    delete List1->takeItem(row);
    if (row > 0) List1->setCurrentRow(row - 1);
    else if (List1->count() > 0) List1->setCurrentRow(0);
    FavListDirty = true;
}

void SetFavList1::moveRow(int delta)
{
    const int row = List1->currentRow();
    const int to = row + delta;
    if (row < 0 || to < 0 || to >= List1->count()) return;
    const QString a = List1->item(row)->text();
    List1->item(row)->setText(List1->item(to)->text());
    List1->item(to)->setText(a);
    List1->setCurrentRow(to);
    FavListDirty = true;
}

void SetFavList1::allBtn()
{
    const QString folder = PTxShList1->folder();
    if (folder.isEmpty()) return;
    const QString sep = folder.endsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/");
    const QString filter = PTxShList1->pattern().trimmed();
    const QString pattern = (filter.size() < 256 && !filter.isEmpty()) ? filter : multimediaPattern_;
    // The hidden file list: the folder's files of the pattern, in name order.
    const browse::PatternSet set(pattern);
    QStringList names;
    for (const QString &n : QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase))
        if (set.matches(n)) names << n;
    for (const QString &n : names) {
        const QString full = folder + sep + n;
        if (fav::IsSupportedFile(full)) List1->addItem(full);
    }
    List1->setCurrentRow(List1->count() - 1);
    FavListDirty = true;
}

void SetFavList1::dropFiles(const QStringList &paths)
{
    for (const QString &p : paths) {
        if (GetFileExt(p).isEmpty()) {
            // A path without an extension is taken for a folder: its supported files come in.
            PTxShList1->setFolder(p);
            allBtn();
        } else {
            List1->addItem(p);
        }
        FavListDirty = true;
    }
    if (List1->count() > 0) List1->setCurrentRow(List1->count() - 1);
}

void SetFavList1::okBtn()
{
    // An emptied list is not written: its file keeps what it had.
    if (List1->count() > 0) {
        FavListDirty = true;
        QStringList rows;
        for (int i = 0; i < List1->count(); ++i) rows << List1->item(i)->text();
        fav::SaveFavList(CurrentFavListPath + QStringLiteral(".FLST"), rows);
    }
    accept();
}

}  // namespace tw
