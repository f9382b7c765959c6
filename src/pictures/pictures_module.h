// The Pictures tab's page: Image1 and Image2 in the picture panel Frame1(0), the picture
// history List3, the button over the picture, the picture loader, the view modes, zoom,
// magnifier, pan and the picture commands. It lends the picture side to the window.
#pragma once

#include "core/loaders.h"
#include "core/tab_page.h"
#include "core/toggle_drag.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>

class QFrame;
class QLabel;
class QListWidget;
class QMainWindow;
class QPushButton;

namespace tw {

class ImagingControl;

class PicturesModule : public QObject, public TabPage, public PictureSide {
    Q_OBJECT
public:
    explicit PicturesModule(PageHost &host);
    ~PicturesModule() override;

    // --- The page ---
    void entering() override;
    QString tabTitle() const override;
    void entered() override;
    void layout() override;
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    void applyColors() override;
    void shutDown() override;
    void addLoaders(FileLoaders &loaders) override;
    QListWidget *history() override;
    bool variableText(const QString &name, QString *out) const override;

    // --- The picture side ---
    bool pictureChanged() const override;
    void offerToSavePicture() override;
    void LoadFolderPictures() override;
    QWidget *pictureWidget() const override;
    // Picture saving (picture_files.cpp); false when not saved.
    bool SaveFileAs(const QString &path) override;

    void LoadImage(const QString &path);
    void ResetPicture();
    void ResizeImage();
    // Entering the Pictures tab: show or hide Image1, finish a pending remote picture.
    void onEnterPicturesTab();
    // A pasted or acquired picture is on show without a file.
    bool pictureWithoutFile() const;

    // --- Routines of the picture side, public as the other windows call them ---
    void FinishInternetPicture();
    void CheckInternetPicture();
    bool IsInViewList(const QString &path) const;
    void ViewNormal();
    void ViewStretch();
    void ViewFit();
    void ViewSnap();
    void SnapWindow();
    void ViewZoom();
    void ToggleMagnify();
    void StartMagnify();
    void StopMagnify();
    void ViewPan();
    void RemoveRedEye();
    void StartRegionMark();
    void mnuColorFill_Click();
    void AdjustBrightness();
    void AdjustContrast();
    void ResizePicture();
    void ImageReset();
    void CopyPicture();
    // Events of Image1.
    void Image1_Click();
    void Image1_DblClick();
    void Image1_KeyDown(int keyCode, int shift);
    void Image1_MouseUp(int button);
    void Image1_ReadyStateChange(int state);

    QListWidget *List3 = nullptr;  // pictures seen, walk order
    QPushButton *ToggleBtn = nullptr;
    ImagingControl *Image1 = nullptr;
    ImagingControl *Image2 = nullptr;
    ImagingControl *Image3 = nullptr;  // hidden: a picture saved or converted without showing it
    QFrame *Frame5 = nullptr;  // "Loading File on the Internet ..." over the picture
    QLabel *Text5 = nullptr;  // the small box past the picture's lower right corner

    // --- State of the picture side, kept for the whole run ---
    bool PictureChanged = false;
    bool PictureResized = false;
    bool AcquiredPicture = false;
    int32_t FetchStart = 0;
    bool FetchPending = false;
    bool ReadyEventSeen = false;
    bool StretchOn = false;
    bool MagnifyOn = false;
    bool PanOn = false;
    int ZoomValue = 100;
    bool AnimatedPicture = false;
    QString LastPicturePath;
    bool RedEyePending = false;
    QString LastSaveFolder;  // folder of the last picture saved; wins over the source's folder

    // The remote file list's removal of an address, set by the window that owns that list;
    // the watchdog calls it with the address of a fetch that never came.
    std::function<void(const QString &address)> RemoveRemoteAddress;
    void setRemoveRemoteAddress(std::function<void(const QString &address)> fn) override
    {
        RemoveRemoteAddress = std::move(fn);
    }
    // Seconds since midnight; tests replace it to stand at a chosen time.
    std::function<double()> Clock;

protected:
    void build(QWidget *panel) override;
    bool eventFilter(QObject *o, QEvent *e) override;

private:
    void registerRoutines();
    QMainWindow &win() const;
    void setTool(const QString &id, bool on);
    void setPointers(int pointer);  // the form's and Image1's
    void setFormPointer(int pointer);
    void stopGlassQuietly();
    double secondsNow() const;
    QFrame *frame_ = nullptr;
    ToggleDrag toggleDrag_;
    QHash<QString, bool> toolState_;  // each view tool's own state, see setTool
};

}  // namespace tw
