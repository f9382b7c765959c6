#include "browse/thumbnails.h"

#include "browse/thumbnail_grid.h"
#include "core/busy.h"
#include "core/catalogue.h"
#include "core/colors.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/tab_page.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QMainWindow>

namespace tw::browse {

void thumbnailRows(int filterRow, const QString &pattern, int *firstRow, int *lastRow)
{
    if (filterRow == 35) {
        *firstRow = 0;
        *lastRow = 38;
        return;
    }
    *firstRow = -1;
    *lastRow = -1;
    QString rest = pattern;
    for (;;) {
        const int semi = rest.indexOf(u';');
        const QString piece = semi < 0 ? rest : rest.left(semi);
        const QString ext = piece.mid(2).toUpper();
        for (int row = PictureFirst; row <= PictureLast; ++row)
            if (Cat.FileExtTable[size_t(row)] == ext) {
                if (*firstRow < 0) *firstRow = row;
                *lastRow = row;
                break;
            }
        if (semi < 0) break;
        rest = rest.mid(semi + 1);
    }
}

Thumbnails::Thumbnails(PageHost &host, ThumbnailGrid *grid, Panes panes)
    : host_(host), grid_(grid), panes_(std::move(panes))
{
    grid_->hide();
    connect(grid_, &ThumbnailGrid::cellClicked, this, &Thumbnails::cellClicked);
    connect(grid_, &ThumbnailGrid::cellDoubleClicked, this, &Thumbnails::cellDoubleClicked);
    Thumb1.onEvent = [this](const ThumbEvent &ev) { return onThumbEvent(ev); };
    // Every row of a load browses the same folder: it is read once, at the first row.
    Thumb1.folderFiles = [this](const QString &folder) {
        if (folder != filesFolder_) {
            filesFolder_ = folder;
            folderFiles_ = ThumbnailProducer::listFolder(folder);
        }
        return folderFiles_;
    };
}

Thumbnails::~Thumbnails() = default;

void Thumbnails::setPointersBusy(bool on)
{
    if (on == busyPointer_) return;
    busyPointer_ = on;
    if (on) {
        grid_->setCursor(Qt::WaitCursor);
        showHourglass();
    } else {
        grid_->unsetCursor();
        hideHourglass();
    }
}

void Thumbnails::setStopToggleForm()
{
    stopPicture_ = G.ProgramDir + QStringLiteral("/BMPS/ThumbToggle.Bmp");
    if (QAction *a = host_.tools().action(tool::Stop)) a->setIcon(QIcon(stopPicture_));
    host_.tools().setToolTip(tool::Stop, QStringLiteral("Explore Files"));
}

void Thumbnails::setStopPlainForm()
{
    stopPicture_ = G.ProgramDir + QStringLiteral("/BMPS/Stop.bmp");
    if (QAction *a = host_.tools().action(tool::Stop)) a->setIcon(QIcon(stopPicture_));
    host_.tools().setToolTip(tool::Stop, QStringLiteral("ThumbNails"));
}

void Thumbnails::ToggleThumbnails()
{
    // 1. In the mode: a load in progress stops at its next file; a finished grid is left.
    if (ThumbnailMode) {
        ThumbStopRequested = true;
        ThumbLoadStopped = false;
        setPointersBusy(false);
        if (ThumbnailsShown) ShowExplorerPanes();
        return;
    }
    // 2. A folder without items has no mode to enter.
    if (!listHasItems()) return;
    // 3.
    ThumbnailMode = true;
    ThumbResolutionBits = {32, 24, 16, 8, 7, 6, 5, 4, 3, 2, 1};
    // 4. The grid still holds this folder: shown again with no load.
    const QString folder = listFolder();
    if (!ThumbFolder.isEmpty() && folder == ThumbFolder) {
        ShowThumbnailPanes();
        setStopToggleForm();
        ThumbnailsShown = true;
        ThumbFolder = folder;
    } else if (!LoadThumbnails()) {
        // 5.
        return;
    }
    // 6.
    setPointersBusy(false);
    if (grid_->count() == 0) grid_->setVisible(false);
}

bool Thumbnails::LoadThumbnails()
{
    bool ok = true;
    // 1. A load stopped by the user is not begun again by the same press.
    if (ThumbStopRequested && ThumbLoadStopped) return ok;
    // 2.
    ThumbStopRequested = false;
    ThumbLoadStopped = false;
    ++loads_;
    const int thisLoad = loads_;
    ToolManager &tools = host_.tools();
    tools.setEnabled(tool::Find, false);
    tools.setEnabled(tool::FindNext, false);
    grid_->clear();
    setPointersBusy(true);
    ThumbCount = 0;
    // 3. The pattern of the filter row, trimmed and stored back trimmed.
    const int filterRow = G.CurrentFilterRow;
    QString pattern;
    if (filterRow >= 0 && filterRow < FilterSlots) {
        pattern = Cat.FilterPatterns[size_t(filterRow)].trimmed();
        Cat.FilterPatterns[size_t(filterRow)] = pattern;
    }
    // 4. The run of extension rows.
    int firstRow = -1, lastRow = -1;
    thumbnailRows(filterRow, pattern, &firstRow, &lastRow);
    bool explorerShown = false;
    if (firstRow == -1 || firstRow > PictureLast) {
        // 5.
        ShowExplorerPanes();
        explorerShown = true;
    } else {
        // 6.
        if (lastRow <= PictureLast) {
            if (lastRow < firstRow) std::swap(firstRow, lastRow);
            ok = LoadThumbFiles(firstRow, lastRow);
            // A newer load began while this one yielded: that one owns the grid now.
            if (thisLoad != loads_) return ok;
            if (grid_->count() == 0) {
                if (ThumbLoadStopped) return ok;
                inform(QStringLiteral("      No Thumbnails to Display"), AppTitle, host_.window());
                ShowExplorerPanes();
                explorerShown = true;
            }
        } else {
            ShowExplorerPanes();
            explorerShown = true;
        }
        // 7. A finished grid: the button leaves the mode from now on. A stopped load keeps
        // its cells but does not count as this folder's grid, so a re-entry loads it anew.
        if (!explorerShown && grid_->count() > 0) {
            setStopToggleForm();
            ThumbnailsShown = true;
            if (!ThumbLoadStopped) ThumbFolder = listFolder();
        }
    }
    // 8.
    tools.setEnabled(tool::Find, true);
    tools.setEnabled(tool::FindNext, true);
    grid_->scrollToTop();
    setPointersBusy(false);
    return ok;
}

void Thumbnails::firstHandler(int number, const QString &description)
{
    if (number == ThumbErrAborted) {
        if (!ThumbStopRequested) ThumbLoadStopped = true;
        return;
    }
    if (number == ThumbErrStopped) return;
    if (number == ThumbErrDisconnected)
        inform(QStringLiteral("Error in generating ThumbNails - Please Exit the Program and Retry"), AppTitle,
               host_.window());
    inform(QStringLiteral("Error - ") + QString::number(number).trimmed() + QStringLiteral(" - ")
               + description,
           AppTitle, host_.window());
}

bool Thumbnails::LoadThumbFiles(int firstRow, int lastRow)
{
    const int thisLoad = loads_;
    // 1. The grid.
    grid_->modeNumber = 3;
    const double cw = G.Options.ThumbCellWidth, ch = G.Options.ThumbCellHeight;
    grid_->setCellSize(cw, ch);
    // 2. A thumbnail takes 91 % of its cell.
    Thumb1.thumbWidth = int(cw) - int(cw * 0.09);
    Thumb1.thumbHeight = int(ch) - int(ch * 0.09);
    // 3. The colour depth of the option.
    const double res = G.Options.ThumbResolution;
    if (!(res >= 0 && res < double(ThumbResolutionBits.size()))) {
        firstHandler(ThumbErrSubscript, QStringLiteral("Subscript out of range"));
        ThumbLoadBusy = false;
        return false;
    }
    Thumb1.bitsPerPixel = ThumbResolutionBits[size_t(res)];
    Thumb1.setting1 = 0;
    Thumb1.setting2 = 0;
    const BrowseError bad = Thumb1.validate();
    if (bad.number) {
        firstHandler(bad.number, bad.description);
        ThumbLoadBusy = false;
        return bad.number == ThumbErrAborted || bad.number == ThumbErrStopped;
    }
    // 4. The loop.
    ThumbLoadBusy = true;
    filesFolder_.clear();
    BusyScope busy;
    Thumb1.abandoned = [this, thisLoad] { return loads_ != thisLoad; };
    // The event handler says stop at the next file once Stop is pressed (onThumbEvent).
    Thumb1.stopPending = [this] { return ThumbStopRequested; };
    for (int row = firstRow; row <= lastRow; ++row) {
        if (loads_ != thisLoad) break;
        Thumb1.fileMask = QStringLiteral("*.") + Cat.FileExtTable[size_t(row)];
        if (!listHasItems()) continue;
        BrowseError err;
        const int result = Thumb1.browse(listFolder().trimmed(), &err);
        if (err.number == ThumbErrStopped) {
            // The event handler said stop.
            if (ThumbStopRequested) ThumbLoadStopped = true;
            if (ThumbStopRequested || ThumbLoadStopped) break;
            continue;
        }
        if (err.number) {
            if (ThumbStopRequested || ThumbLoadStopped) break;
            continue;
        }
        (void)result;  // a folder with or without files of this row: the next row either way
    }
    // 7.
    ThumbLoadBusy = false;
    filesFolder_.clear();
    folderFiles_.clear();
    return true;
}

bool Thumbnails::onThumbEvent(const ThumbEvent &ev)
{
    if (beforeEvent) beforeEvent(ev);
    // A Stop pressed while this file was being made ends the load here: this is the next
    // file, and it gets no cell.
    if (ThumbStopRequested) return false;
    // 1. A finished picture becomes a cell.
    if (ThumbnailMode && ev.status == ThumbOk) AddThumbnail(ev.path, ev);
    // 2. The one yield per file, where a press of Stop is seen.
    if (ThumbnailMode) {
        yieldEvents();
        if (ev.status == ThumbOk) ++ThumbCount;
    }
    if (afterEvent) afterEvent(ev);
    // 3. The continue flag.
    if (!ThumbLoadStopped && ThumbnailMode) return !ThumbStopRequested;
    return false;
}

void Thumbnails::AddThumbnail(const QString &path, const ThumbEvent &ev)
{
    const int cut = path.lastIndexOf(u'/');
    const QString caption = cut < 0 ? path : path.mid(cut + 1);
    grid_->addCell(ThumbCount, ev.picture, caption, path);
    // The panes switch when the first picture arrives.
    if (grid_->count() == 1) ShowThumbnailPanes();
}

void Thumbnails::ShowThumbnailPanes()
{
    SuppressTools quiet;
    ToolManager &tools = host_.tools();
    tools.setVisible(tool::Stop, true);
    tools.setVisible(tool::ThumbNails, false);
    setStopPlainForm();
    ThumbnailsShown = false;
    tools.setEnabled(tool::Stop, true);
    tools.setEnabled(tool::ThumbNails, false);
    grid_->setVisible(true);
    if (panes_.splitter) panes_.splitter->setVisible(false);
}

void Thumbnails::ShowExplorerPanes()
{
    SuppressTools quiet;
    ToolManager &tools = host_.tools();
    tools.setVisible(tool::Stop, false);
    tools.setVisible(tool::ThumbNails, true);
    tools.setEnabled(tool::ThumbNails, true);
    tools.setEnabled(tool::Stop, false);
    ThumbnailMode = false;
    grid_->setVisible(false);
    if (panes_.splitter) panes_.splitter->setVisible(true);
    if (panes_.tree) panes_.tree->setFocus();
    tools.setEnabled(tool::Find, true);
    tools.setEnabled(tool::FindNext, true);
    setStopPlainForm();
    ThumbnailsShown = false;
}

void Thumbnails::cellClicked(int index)
{
    const QString name = grid_->fileName(index);
    if (!G.Select1Visible) {
        G.CurrentPage = 1;
        host_.DisplayFile(name);
    } else if (ThumbnailMode) {
        // With the selection list up a click only picks the file that a drag carries.
        G.SelectedFile = name;
        grid_->selectionValue = 1;
    }
}

void Thumbnails::cellDoubleClicked(int index) { cellClicked(index); }

void Thumbnails::applyColors()
{
    const ColorSettings &c = G.Colors;
    const QPalette base = grid_->palette();
    grid_->setColors(toQColor(c.ThumbWindowBack, base), toQColor(c.ThumbWindowText, base),
                     toQColor(c.ThumbBack, base), toQColor(c.ThumbText, base));
}

bool Thumbnails::variableText(const QString &name, QString *out) const
{
    const auto b = [](bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); };
    if (name == QLatin1String("ThumbnailsShown")) *out = b(ThumbnailsShown);
    else if (name == QLatin1String("ThumbStopRequested")) *out = b(ThumbStopRequested);
    else if (name == QLatin1String("ThumbLoadStopped")) *out = b(ThumbLoadStopped);
    else if (name == QLatin1String("ThumbLoadBusy")) *out = b(ThumbLoadBusy);
    else if (name == QLatin1String("ThumbCount")) *out = QString::number(ThumbCount);
    else if (name == QLatin1String("ThumbFolder")) *out = ThumbFolder;
    else if (name == QLatin1String("ThumbWidth")) *out = QString::number(Thumb1.thumbWidth);
    else if (name == QLatin1String("ThumbHeight")) *out = QString::number(Thumb1.thumbHeight);
    else if (name == QLatin1String("ThumbBitsPerPixel")) *out = QString::number(Thumb1.bitsPerPixel);
    else if (name == QLatin1String("ThumbLoads")) *out = QString::number(loads_);
    else if (name == QLatin1String("ThumbGridCount")) *out = QString::number(grid_->count());
    else if (name == QLatin1String("StopPicture")) *out = QFileInfo(stopPicture_).fileName();
    else return false;
    return true;
}

}  // namespace tw::browse
