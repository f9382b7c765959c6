// The picture tab's side of the main window: Image1 and Image2, the picture loader, the
// view modes, zoom, magnifier, pan and the picture commands.
#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>

class QFrame;
class QLabel;

namespace tw {

class Tarnwick1;
class ImagingControl;

class PicturesModule : public QObject {
    Q_OBJECT
public:
    // Creates Image1 (shown) and Image2 (the untouched copy, hidden) in the picture panel.
    PicturesModule(Tarnwick1 &w, QFrame *pictureFrame);
    ~PicturesModule() override;

    void LoadImage(const QString &path);
    void ResetPicture();
    void ResizeImage();
    // Tools this module owns; true when the identifier was one of them.
    bool onToolClick(const QString &id);
    // Entering the Pictures tab: show or hide Image1, finish a pending remote picture.
    void onEnterPicturesTab();
    // A pasted or acquired picture is on show without a file.
    bool pictureWithoutFile() const;
    // The identifiers of the tools this module makes work.
    static QStringList ownedTools();
    void applyColors();

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

    // Text form of a variable of this side for the scenario runner; false if unknown.
    bool variableText(const QString &name, QString *out) const;

    ImagingControl *Image1 = nullptr;
    ImagingControl *Image2 = nullptr;
    QFrame *Frame5 = nullptr;   // "Loading File on the Internet ..." over the picture
    QLabel *Text5 = nullptr;    // the small box past the picture's lower right corner

    // --- State of the picture side, kept for the whole run ---
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

    // The remote file list's removal of an address, set by the window that owns that list;
    // the watchdog calls it with the address of a fetch that never came.
    std::function<void(const QString &address)> RemoveRemoteAddress;
    // Seconds since midnight; tests replace it to stand at a chosen time.
    std::function<double()> Clock;

private:
    void setTool(const QString &id, bool on);
    void setPointers(int pointer);   // the form's and Image1's
    void setFormPointer(int pointer);
    void stopGlassQuietly();
    double secondsNow() const;
    Tarnwick1 &w_;
    QFrame *frame_;
    QHash<QString, bool> toolState_;  // each view tool's own state, see setTool
};

}  // namespace tw
