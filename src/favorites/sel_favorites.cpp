#include "favorites/sel_favorites.h"

#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/internal_drag.h"
#include "favorites/fav_file.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDateTime>
#include <QDrag>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>

namespace tw {

namespace {
double clockSeconds()
{
    const QTime t = QTime::currentTime();
    return t.msecsSinceStartOfDay() / 1000.0;
}
}  // namespace

bool favDragDue(bool armed, double pressTime, double now)
{
    return armed && now - pressTime > FavDragDelaySeconds;
}

SelFavorites1::SelFavorites1(QWidget *parent) : QWidget(parent, Qt::Window)
{
    FavLoading = true;
    setObjectName(QStringLiteral("SelFavorites1"));
    setWindowTitle(QStringLiteral("Select Favorite List"));
    setAttribute(Qt::WA_DeleteOnClose);
    setHelpTopic(this, QStringLiteral("SelFavorites1"));
    auto *grid = new QGridLayout(this);
    Frame1 = new QFrame(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    auto *panel = new QGridLayout(Frame1);
    panel->setContentsMargins(0, 0, 0, 0);
    List2 = new QListWidget(Frame1);
    List2->setObjectName(QStringLiteral("List2"));
    List1 = new QListWidget(Frame1);
    List1->setObjectName(QStringLiteral("List1"));
    Image1 = new QLabel(Frame1);
    Image1->setObjectName(QStringLiteral("Image1"));
    Image1->setMinimumSize(160, 120);
    Image1->setAlignment(Qt::AlignCenter);
    Image1->hide();
    auto *okb = new QPushButton(QStringLiteral("OK"), this);
    okb->setObjectName(QStringLiteral("OKBtn"));
    auto *cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("CancelBtn"));
    auto *help = new QPushButton(QStringLiteral("Help"), this);
    help->setObjectName(QStringLiteral("HelpBtn"));
    panel->addWidget(List2, 0, 0);
    panel->addWidget(List1, 0, 1);
    panel->addWidget(Image1, 0, 2);
    grid->addWidget(Frame1, 0, 0, 1, 3);
    auto *row = new QHBoxLayout;
    row->addStretch(1);
    for (QPushButton *b : {okb, cancel, help}) row->addWidget(b);
    grid->addLayout(row, 1, 0, 1, 3);
    resize(640, 360);

    List2->addItems(fav::ListFavListNames(fav::listFolder()));
    for (QListWidget *l : {List1, List2}) {
        l->viewport()->installEventFilter(this);
        l->installEventFilter(this);
    }
    Image1->installEventFilter(this);
    Frame1->installEventFilter(this);
    connect(List2, &QListWidget::itemClicked, this, [this] { listNameClicked(); });
    connect(List2, &QListWidget::itemDoubleClicked, this, [this] { namesDoubleClicked(); });
    connect(List1, &QListWidget::itemClicked, this, [this] { entryClicked(); });
    connect(List1, &QListWidget::itemDoubleClicked, this, [this] {
        if (List1->currentItem() && displayFile) displayFile(List1->currentItem()->text());
    });
    connect(okb, &QPushButton::clicked, this, &SelFavorites1::okBtn);
    connect(cancel, &QPushButton::clicked, this, &QWidget::close);
    connect(help, &QPushButton::clicked, this, [this] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
        QCoreApplication::sendEvent(this, &press);
    });
    G.SelFavorites1Loaded = true;
    FavLoading = false;
}

SelFavorites1::~SelFavorites1() { G.SelFavorites1Loaded = false; }

void SelFavorites1::closeEvent(QCloseEvent *e)
{
    G.SelFavorites1Loaded = false;
    QWidget::closeEvent(e);
}

void SelFavorites1::listNameClicked()
{
    if (List2->count() == 0 || !List2->currentItem()) return;
    List1->clear();
    List1->addItems(
        fav::LoadFavList(fav::listBasePath(List2->currentItem()->text()) + QStringLiteral(".FLST")));
}

void SelFavorites1::entryClicked()
{
    if (List1->count() == 0 || !List1->currentItem()) return;
    const QString path = List1->currentItem()->text();
    if (!fav::IsSupportedFile(path)) return;
    // The preview: the first page, fitted. A file that cannot be read leaves the last one.
    QImageReader r(path);
    r.setAutoTransform(true);
    const QImage img = r.read();
    if (img.isNull()) return;
    const QSize box = Image1->size().expandedTo(QSize(160, 120));
    Image1->setPixmap(QPixmap::fromImage(img.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    Image1->setToolTip(path);
    Image1->show();
}

void SelFavorites1::okBtn()
{
    QListWidget *sel = G.Select1Visible && selectionList ? selectionList() : nullptr;
    const int row = List1->currentRow();
    if (sel && row >= 0) {
        const QString text = List1->item(row)->text();
        const bool lastHere = row == List1->count() - 1;
        const bool lastThere = sel->count() > 0 && sel->item(sel->count() - 1)->text() == text;
        if (lastHere && lastThere) return;  // the end has been reached
        sel->addItem(text);
        sel->setCurrentRow(sel->count() - 1);
        if (!lastHere) List1->setCurrentRow(row + 1);
        return;
    }
    if (row < 0) return;
    const QString text = List1->item(row)->text();
    const qsizetype cut = text.lastIndexOf(QLatin1Char('/'));
    if (cut < 0) return;
    if (pointFileList) pointFileList(cut == 0 ? QStringLiteral("/") : text.left(cut));
    close();
}

void SelFavorites1::namesDoubleClicked()
{
    if (List1->count() == 0) return;
    if (G.Select1Visible && selectionList) {
        if (QListWidget *sel = selectionList()) {
            const QString last = List1->item(List1->count() - 1)->text();
            bool there = false;
            for (int i = 0; i < sel->count() && !there; ++i) there = sel->item(i)->text() == last;
            if (!there)
                for (int i = 0; i < List1->count(); ++i) sel->addItem(List1->item(i)->text());
        }
    }
    if (G.FavBrowserFromSlideShow && addToSlideShow)
        for (int i = 0; i < List1->count(); ++i) addToSlideShow(List1->item(i)->text());
}

QMimeData *SelFavorites1::dragData(QListWidget *from) const
{
    QStringList files;
    if (from == List1) {
        if (List1->currentItem()) files << List1->currentItem()->text();
        return makeListDrag(QStringLiteral("SelList1"), files);
    }
    for (int i = 0; i < List1->count(); ++i) files << List1->item(i)->text();
    return makeListDrag(QStringLiteral("SelList2"), files);
}

void SelFavorites1::refresh(int code)
{
    // Code 2: the entry dropped elsewhere stays highlighted and in view.
    if (code == 2 && List1->currentItem()) List1->scrollToItem(List1->currentItem());
}

bool SelFavorites1::eventFilter(QObject *o, QEvent *e)
{
    if (FavLoading) return false;
    if (o == Frame1 && e->type() == QEvent::MouseMove
        && (static_cast<QMouseEvent *>(e)->buttons() & Qt::RightButton)) {
        // The right button held over the panel ends the drags of both lists.
        FavDragArmed[0] = FavDragArmed[1] = false;
        return false;
    }
    if (o == Image1 && e->type() == QEvent::MouseButtonRelease) {
        if (List1->currentItem() && displayFile) displayFile(List1->currentItem()->text());
        return false;
    }
    for (int k = 0; k < 2; ++k) {
        QListWidget *l = k == 0 ? List1 : List2;
        if (o != l->viewport() && o != l) continue;
        switch (e->type()) {
        case QEvent::MouseButtonPress: {
            auto *me = static_cast<QMouseEvent *>(e);
            FavDragArmed[k] = me->button() != Qt::RightButton;
            FavDragTime[k] = clockSeconds();
            break;
        }
        case QEvent::MouseMove:
            if (favDragDue(FavDragArmed[k], FavDragTime[k], clockSeconds())) {
                FavDragArmed[k] = false;
                auto *drag = new QDrag(l);
                drag->setMimeData(dragData(l));
                const Qt::DropAction done = drag->exec(Qt::CopyAction);
                if (l == List1 && done != Qt::IgnoreAction) refresh(2);
            }
            break;
        case QEvent::MouseButtonRelease:
            FavDragTime[k] = clockSeconds();
            FavDragArmed[k] = false;
            break;
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent *>(e)->key() == Qt::Key_Escape) FavDragArmed[k] = false;
            break;
        default:
            break;
        }
    }
    return false;
}

}  // namespace tw
