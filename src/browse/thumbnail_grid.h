// ImagList1, the thumbnail grid: cells of a fixed size, each a small picture over its
// caption, with the file name behind it. A list view in icon mode over a model that holds
// only the small pictures, so a folder of thousands of pictures stays light.
#pragma once

#include <QAbstractListModel>
#include <QImage>
#include <QListView>
#include <QString>
#include <vector>

namespace tw::browse {

class ThumbnailModel : public QAbstractListModel {
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;
    struct Cell {
        QImage picture;
        QString caption;
        QString fileName;
    };
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    void clear();
    // Adds a cell at index (the end when past it).
    void insertCell(int index, Cell cell);
    const Cell *cell(int index) const;
    void setCellColors(const QColor &back, const QColor &text);

private:
    std::vector<Cell> cells_;
    QColor back_, text_;
};

class ThumbnailGrid : public QListView {
    Q_OBJECT
public:
    explicit ThumbnailGrid(QWidget *parent = nullptr);

    void clear();
    void addCell(int index, const QImage &picture, const QString &caption, const QString &fileName);
    int count() const;
    QString fileName(int index) const;
    QString caption(int index) const;
    QImage picture(int index) const;
    // The cell size, in pixels.
    void setCellSize(double width, double height);
    double cellWidth() const { return cellWidth_; }
    double cellHeight() const { return cellHeight_; }
    int modeNumber = 0;
    // The selection value that a drag onto the selection list carries.
    int selectionValue = 0;
    void scrollToTop() { QListView::scrollToTop(); }
    // Window colours and cell colours.
    void setColors(const QColor &windowBack, const QColor &windowText, const QColor &cellBack,
                   const QColor &cellText);

    // The drag a press and move on a cell starts: the tag "Thumbs" and the file selected
    // last (SelectedFile), or the cell pressed when none is.
    QMimeData *thumbsDrag() const;

signals:
    void cellClicked(int index);
    void cellDoubleClicked(int index);

protected:
    void startDrag(Qt::DropActions actions) override;

private:
    ThumbnailModel *model_;
    double cellWidth_ = 0, cellHeight_ = 0;
};

}  // namespace tw::browse
