#include "browse/thumbnail_grid.h"

#include "core/globals.h"
#include "core/internal_drag.h"

#include <QBrush>
#include <QDrag>
#include <QMimeData>

namespace tw::browse {

int ThumbnailModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(cells_.size());
}

QVariant ThumbnailModel::data(const QModelIndex &index, int role) const
{
    const Cell *c = cell(index.row());
    if (!c || index.column() != 0) return {};
    switch (role) {
    case Qt::DisplayRole:
        return c->caption;
    case Qt::DecorationRole:
        return c->picture;
    case Qt::ToolTipRole:
        return c->fileName;
    case Qt::BackgroundRole:
        return back_.isValid() ? QVariant(QBrush(back_)) : QVariant();
    case Qt::ForegroundRole:
        return text_.isValid() ? QVariant(QBrush(text_)) : QVariant();
    case Qt::UserRole:
        return c->fileName;
    default:
        return {};
    }
}

void ThumbnailModel::clear()
{
    beginResetModel();
    cells_.clear();
    cells_.shrink_to_fit();
    endResetModel();
}

void ThumbnailModel::insertCell(int index, Cell cell)
{
    index = qBound(0, index, int(cells_.size()));
    beginInsertRows(QModelIndex(), index, index);
    cells_.insert(cells_.begin() + index, std::move(cell));
    endInsertRows();
}

const ThumbnailModel::Cell *ThumbnailModel::cell(int index) const
{
    if (index < 0 || index >= int(cells_.size())) return nullptr;
    return &cells_[size_t(index)];
}

void ThumbnailModel::setCellColors(const QColor &back, const QColor &text)
{
    back_ = back;
    text_ = text;
    if (!cells_.empty()) emit dataChanged(index(0), index(int(cells_.size()) - 1));
}

ThumbnailGrid::ThumbnailGrid(QWidget *parent) : QListView(parent), model_(new ThumbnailModel(this))
{
    setObjectName(QStringLiteral("ImagList1"));
    setModel(model_);
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setResizeMode(QListView::Adjust);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    // Cells laid out in batches: a grid that grows by thousands stays responsive.
    setLayoutMode(QListView::Batched);
    setBatchSize(200);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setWordWrap(false);
    setTextElideMode(Qt::ElideMiddle);
    connect(this, &QListView::clicked, this, [this](const QModelIndex &i) { emit cellClicked(i.row()); });
    connect(this, &QListView::doubleClicked, this,
            [this](const QModelIndex &i) { emit cellDoubleClicked(i.row()); });
}

void ThumbnailGrid::clear() { model_->clear(); }

void ThumbnailGrid::addCell(int index, const QImage &picture, const QString &caption, const QString &fileName)
{
    model_->insertCell(index, {picture, caption, fileName});
}

int ThumbnailGrid::count() const { return model_->rowCount(); }

QString ThumbnailGrid::fileName(int index) const
{
    const auto *c = model_->cell(index);
    return c ? c->fileName : QString();
}

QString ThumbnailGrid::caption(int index) const
{
    const auto *c = model_->cell(index);
    return c ? c->caption : QString();
}

QImage ThumbnailGrid::picture(int index) const
{
    const auto *c = model_->cell(index);
    return c ? c->picture : QImage();
}

void ThumbnailGrid::setCellSize(double width, double height)
{
    cellWidth_ = width;
    cellHeight_ = height;
    const int w = qMax(1, int(width)), h = qMax(1, int(height));
    // The picture takes 91 % of the cell; the caption sits below it inside the cell.
    const int pw = qMax(1, w - int(w * 0.09)), ph = qMax(1, h - int(h * 0.09));
    setIconSize(QSize(pw, ph));
    setGridSize(QSize(w, h + fontMetrics().height() + 6));
}

void ThumbnailGrid::setColors(const QColor &windowBack, const QColor &windowText, const QColor &cellBack,
                              const QColor &cellText)
{
    QPalette p = palette();
    p.setColor(QPalette::Base, windowBack);
    p.setColor(QPalette::Window, windowBack);
    p.setColor(QPalette::Text, windowText);
    p.setColor(QPalette::WindowText, windowText);
    setPalette(p);
    viewport()->setAutoFillBackground(true);
    model_->setCellColors(cellBack, cellText);
}

QMimeData *ThumbnailGrid::thumbsDrag() const
{
    QString file = G.SelectedFile;
    if (file.isEmpty() && currentIndex().isValid()) file = fileName(currentIndex().row());
    return makeListDrag(QStringLiteral("Thumbs"), file.isEmpty() ? QStringList() : QStringList{file});
}

void ThumbnailGrid::startDrag(Qt::DropActions actions)
{
    (void)actions;
    auto *drag = new QDrag(this);
    drag->setMimeData(thumbsDrag());
    // A drop taken clears the selection value, as the selection list does on its drop.
    if (drag->exec(Qt::CopyAction) != Qt::IgnoreAction) selectionValue = 0;
}

}  // namespace tw::browse
