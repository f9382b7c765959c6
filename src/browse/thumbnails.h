// Thumbnail browsing on the Find tab: the grid ImagList1 replaces the folder tree and the
// file list, the producer Thumb1 fills it file by file, the toolbar's Stop button stops a
// load or leaves the mode, and a click on a cell opens its file.
#pragma once

#include "browse/thumbnail_producer.h"

#include <QObject>
#include <QString>
#include <array>
#include <functional>

class QWidget;

namespace tw {

class PageHost;

namespace browse {

class ThumbnailGrid;

class Thumbnails : public QObject {
    Q_OBJECT
public:
    // The panes the grid replaces, and what the file list offers.
    struct Panes {
        QWidget *splitter = nullptr;
        QWidget *tree = nullptr;
        std::function<QString()> listFolder;
        std::function<int()> listItemCount;  // folders included
    };
    Thumbnails(PageHost &host, ThumbnailGrid *grid, Panes panes);
    ~Thumbnails() override;

    bool ThumbnailMode = false;
    bool ThumbnailsShown = false;
    bool ThumbStopRequested = false;
    bool ThumbLoadStopped = false;
    bool ThumbLoadBusy = false;
    int ThumbCount = 0;
    QString ThumbFolder;
    std::array<int, 11> ThumbResolutionBits{};

    void ToggleThumbnails();
    bool LoadThumbnails();
    bool LoadThumbFiles(int firstRow, int lastRow);
    void AddThumbnail(const QString &path, const ThumbEvent &ev);
    void ShowThumbnailPanes();
    void ShowExplorerPanes();
    void cellClicked(int index);
    void cellDoubleClicked(int index);
    void applyColors();

    ThumbnailGrid *grid() const { return grid_; }
    ThumbnailProducer &producer() { return Thumb1; }
    // Loads begun (the reuse of the grid by ThumbFolder begins none).
    int loadsBegun() const { return loads_; }
    // The picture file the Stop button shows.
    QString stopPicture() const { return stopPicture_; }
    bool variableText(const QString &name, QString *out) const;

    // Called as every event of the producer arrives and after it is handled (tests: a press
    // of Stop while a file is made, or at a given file).
    std::function<void(const ThumbEvent &)> beforeEvent, afterEvent;

private:
    bool onThumbEvent(const ThumbEvent &ev);
    void firstHandler(int number, const QString &description);
    void setStopToggleForm();
    void setStopPlainForm();
    void setPointersBusy(bool on);
    QString listFolder() const { return panes_.listFolder ? panes_.listFolder() : QString(); }
    bool listHasItems() const { return panes_.listItemCount && panes_.listItemCount() > 0; }

    PageHost &host_;
    ThumbnailGrid *grid_;
    Panes panes_;
    ThumbnailProducer Thumb1;
    QString stopPicture_;
    bool busyPointer_ = false;
    // The folder's files in list order, read once per load and shared by its rows.
    QString filesFolder_;
    QStringList folderFiles_;
    int loads_ = 0;
};

// The run of extension rows a filter pattern shows: firstRow..lastRow, -1 when none.
void thumbnailRows(int filterRow, const QString &pattern, int *firstRow, int *lastRow);

}  // namespace browse
}  // namespace tw
