// The imaging control: one widget that holds a picture, loads and saves it, shows it in
// the size modes, zooms, pans, magnifies, marks regions and changes its pixels. Every
// picture window of the program (Image1..Image4 of the main window, the editors, printing,
// slide shows) is one of these.
#pragma once

#include <QAbstractScrollArea>
#include <QIcon>
#include <QImage>
#include <QList>
#include <QPainterPath>
#include <QPointer>
#include <QString>
#include <cstdint>
#include <memory>

class QTimer;

namespace tw::fetch {
struct Result;
class Transfer;
}  // namespace tw::fetch

namespace tw {

class PanWindow;
class MagnifierGlass;

// A picture in memory: the frames of one file (one for a still picture) and the bits per
// pixel it was stored with. Copies share their pixels until one side writes, so handing a
// picture from one control to another is an independent copy that costs nothing up front.
struct Picture {
    QList<QImage> frames;
    QList<int> delaysMs;
    int bitsPerPixel = 0;
    QString sourceFile;  // the file it was loaded from, whose metadata a save keeps
    bool isNull() const { return frames.isEmpty() || frames.first().isNull(); }
};

// What the control can say about a file (filled by getFileInfo).
struct FileFacts {
    int bitsPerPixel = 0;
    int64_t colors = 0;
    int format = 0;
    QString formatName;
    int width = 0, height = 0;
    int64_t sizeDisk = 0, sizeMem = 0;
    double xResolution = 0, yResolution = 0;
    int page = 1, totalPages = 1;
};

class ImagingControl : public QAbstractScrollArea {
    Q_OBJECT
public:
    enum SizeMode { SizeNormal = 0, SizeStretch = 1, SizeFit = 3 };
    enum ScaleUnit { UnitTwips = 1, UnitPixels = 3 };
    enum Pointer { PointerDefault = 0, PointerCross = 2, PointerHourglass = 11 };
    enum ReadyState { ReadyUninitialised = 0, ReadyLoading = 1, ReadyInteractive = 3, ReadyComplete = 4 };
    static constexpr int TwipsPerPixel = 15;

    explicit ImagingControl(QWidget *parent = nullptr);
    ~ImagingControl() override;

    // --- Picture handle ---
    Picture picture() const { return pic_; }
    void setPicture(const Picture &p);  // an independent copy of p
    void assignFrom(const ImagingControl &other) { setPicture(other.picture()); }
    void clearPicture();
    // Replaces the picture by one frame (editors hand their result back this way).
    void setImage(const QImage &img, int bitsPerPixel = 24);
    QImage image() const;  // the frame on show, null when empty
    int frameIndex() const { return frame_; }

    // --- Files ---
    // Loads page `page` (1-based; 0 means the first) of `path`; pageCount -1 loads every
    // page or frame, 1 just the one. bitsPerPixel 0 keeps the file's. 0 or an imaging
    // status code; on failure the picture held stays as it was.
    int load(const QString &path, int bitsPerPixel, int page, int pageCount);
    // Reads the facts of a file without replacing the picture. 0 or a status code.
    int getFileInfo(const QString &path, int page, int flags);
    const FileFacts &fileFacts() const { return facts_; }
    // Saves the picture with a format number (see imaging_formats.h); mode 0 replaces the
    // file, mode 1 appends a page where the format has pages. 0 or a status code.
    int save(const QString &path, int format, int bitsPerPixel, int quality, int mode);
    QString lastErrorDetail() const { return lastDetail_; }

    // --- Asynchronous fetch of an address ---
    void setSourceAddress(const QString &address);
    QString sourceAddress() const { return source_; }
    int readyState() const { return readyState_; }

    // --- Sizes, in the current scale unit unless said ---
    double bitmapWidth() const;
    double bitmapHeight() const;
    int bitsPerPixel() const { return pic_.isNull() ? 0 : pic_.bitsPerPixel; }
    int pixelWidth() const;  // always pixels
    int pixelHeight() const;
    int scaleUnit() const { return unit_; }
    void setScaleUnit(int unit);
    double controlLeft() const;
    double controlTop() const;
    double controlWidth() const;
    double controlHeight() const;
    void setControlWidth(double w);
    void setControlHeight(double h);
    void moveControl(double left, double top);

    // --- Display ---
    int sizeMode() const { return sizeMode_; }
    void setSizeMode(int mode);
    int zoomPercent() const { return zoom_; }
    void setZoomPercent(int percent);
    bool autoSize() const { return autoSize_; }
    void setAutoSize(bool on);
    bool autoRepaint() const { return autoRepaint_; }
    void setAutoRepaint(bool on);
    bool dragPan() const { return dragPan_; }
    void setDragPan(bool on);
    bool animationPlay() const { return animPlay_; }
    void setAnimationPlay(bool on);
    bool animationLoop() const { return animLoop_; }
    void setAnimationLoop(bool on);
    bool painting() const { return painting_; }
    void setPainting(bool on);
    int mousePointer() const { return pointer_; }
    void setMousePointer(int pointer);
    uint32_t backColor() const { return back_; }
    void setBackColor(uint32_t bgr);
    uint32_t secondColor() const { return second_; }
    void setSecondColor(uint32_t bgr);
    int borderStyle() const { return border_; }
    void setBorderStyle(int style);
    int appearance3D() const { return look3D_; }
    void setAppearance3D(int look);
    int displayOption() const { return displayOption_; }
    void setDisplayOption(int v) { displayOption_ = v; }
    void redraw();
    // Where the picture sits: scroll position (pixels of the displayed picture) and the part
    // of the bitmap in view (bitmap pixels).
    QPoint scrollPosition() const;
    void setScrollPosition(const QPoint &p);
    QRectF visibleBitmapRect() const;
    // The rectangle the bitmap occupies in viewport coordinates.
    QRectF displayRect() const;
    double displayScaleX() const;
    double displayScaleY() const;

    // --- Magnifier ---
    void startMagnifier(double glassWidth, double glassHeight, int16_t zoomPercent, int32_t shape,
                        uint32_t borderColor, bool crosshair, double borderWidth, bool ellipse,
                        int16_t borderType, bool updateOnMove, bool enabled);
    void stopMagnifier();
    bool magnifierOn() const { return magnifier_ != nullptr; }
    MagnifierGlass *magnifierGlass() const { return magnifier_; }
    // Moves the glass over a viewport point, as the mouse does.
    void magnifyAt(const QPoint &viewportPos);

    // --- Pan window ---
    struct PanWindowProps {
        int left = 0, top = 0, width = 150, height = 200;
        QIcon icon;
        QString caption;
        uint32_t rectColor = 255;
        bool systemMenu = true;
        int display1 = 0, display2 = 0, display3 = 0;
    };
    PanWindowProps &panWindowProps() { return panProps_; }
    // Shows (true) or hides (false) the pan window; 0 on success.
    int showPanWindow(bool show);
    PanWindow *panWindow() const { return pan_; }

    // --- Regions ---
    void setRegionMarking(int mode);  // 0 off, 3 ellipse drawn with the mouse
    int regionMarking() const { return markingMode_; }
    bool hasRegion() const { return !region_.isEmpty(); }
    double regionWidth() const;  // in the scale unit
    double regionHeight() const;
    QRectF regionBounds() const { return region_.boundingRect(); }  // bitmap pixels
    void setEllipseRegion(const QRectF &bitmapRect);
    void setRegionFillStyle(int style) { fillStyle_ = style; }
    int regionFillStyle() const { return fillStyle_; }
    void freeRegion();
    int fillRegion(uint32_t bgr);

    // --- Pixel operations ---
    int resizeBitmap(int width, int height, int flags);  // flags 0 plain, 2 resample
    int copyToClipboard(int flags);
    int changeBrightness(int amount);  // -100..100
    int changeContrast(int amount);  // -100..100

    // Paints counted since creation (the benchmark reads them).
    int paintCount() const { return paints_; }

    // The byte count the picture takes in memory.
    int64_t memorySize() const;
    // Bytes of the scaled copy painting keeps beside the picture (0 at 100 % and above).
    int64_t paintCacheBytes() const { return cache_.isNull() ? 0 : cache_.sizeInBytes(); }

signals:
    void readyStateChanged(int state);
    void loadFinished();
    void clicked();
    void doubleClicked();
    void keyDown(int keyCode, int shift);
    void mouseUp(int button, int shift, double x, double y);
    void painted();
    void scrolled();

protected:
    void paintEvent(QPaintEvent *e) override;
    void resizeEvent(QResizeEvent *e) override;
    void mousePressEvent(QMouseEvent *e) override;
    void mouseMoveEvent(QMouseEvent *e) override;
    void mouseReleaseEvent(QMouseEvent *e) override;
    void mouseDoubleClickEvent(QMouseEvent *e) override;
    void keyPressEvent(QKeyEvent *e) override;
    void leaveEvent(QEvent *e) override;
    void scrollContentsBy(int dx, int dy) override;
    bool viewportEvent(QEvent *e) override;
    bool event(QEvent *e) override;

private:
    void pictureReplaced();
    void applyAutoSize();
    void updateScrollBars();
    void updateFrameStyle();
    void updateCursor();
    void scheduleRepaint();
    void startAnimation();
    void nextFrame();
    QPointF toBitmap(const QPointF &viewportPos) const;
    QSizeF displaySize() const;
    const QImage &scaledPart(const QRect &source, const QSize &size) const;
    void fetchFinished(const fetch::Result &r);
    void setReady(int state);
    double toUnit(double pixels) const { return unit_ == UnitTwips ? pixels * TwipsPerPixel : pixels; }
    double fromUnit(double v) const { return unit_ == UnitTwips ? v / TwipsPerPixel : v; }

    Picture pic_;
    int frame_ = 0;
    FileFacts facts_;
    QString lastDetail_;

    int unit_ = UnitTwips;
    int sizeMode_ = SizeNormal;
    int zoom_ = 100;
    bool autoSize_ = false, autoRepaint_ = true, dragPan_ = false;
    bool animPlay_ = false, animLoop_ = false, painting_ = true;
    int pointer_ = PointerDefault;
    uint32_t back_ = 0xFFFFFF, second_ = 0x000000;
    int border_ = 0, look3D_ = 0, displayOption_ = 0;
    bool repaintOwed_ = false;
    bool inScrollUpdate_ = false;

    // mouse
    bool dragging_ = false;
    QPoint dragStart_, scrollStart_;
    int markingMode_ = 0;
    QPainterPath region_, regionBeforeMark_;
    QPointF markStart_;
    bool markingNow_ = false;
    int fillStyle_ = 0;

    // animation
    QTimer *animTimer_ = nullptr;

    // magnifier and pan window
    MagnifierGlass *magnifier_ = nullptr;
    QPointer<PanWindow> pan_;
    PanWindowProps panProps_;

    // fetch
    QString source_;
    int readyState_ = ReadyUninitialised;
    std::unique_ptr<fetch::Transfer> transfer_;  // the fetch of source_ under way

    // the part of the picture that shows, scaled for the display; kept until the picture, the
    // size or the part changes (cacheKey_ is the frame it was made from, -1 for none)
    mutable QImage cache_;
    mutable qint64 cacheKey_ = -1;
    mutable QRect cacheSource_;
    mutable QSize cacheSize_;

    int paints_ = 0;
};

// The magnifying glass: a small window over the picture that shows the part under the
// mouse enlarged.
class MagnifierGlass : public QWidget {
    Q_OBJECT
public:
    MagnifierGlass(ImagingControl *owner, QSize glass, int zoomPercent, uint32_t borderColor, bool crosshair);
    void showAt(const QPoint &viewportPos);
    int zoomPercent() const { return zoom_; }
    QPoint centre() const { return centre_; }

protected:
    void paintEvent(QPaintEvent *e) override;

private:
    ImagingControl *owner_;
    int zoom_;
    uint32_t border_;
    bool crosshair_;
    QPoint centre_;
};

// The pan window: the whole picture small, with a rectangle over the part in view; dragging
// the rectangle scrolls the picture.
class PanWindow : public QWidget {
    Q_OBJECT
public:
    explicit PanWindow(ImagingControl *owner);
    // The rectangle in this window's coordinates.
    QRectF viewRect() const;
    // Drags the rectangle so that its centre sits at `pos` (window coordinates).
    void centreViewAt(const QPointF &pos);

protected:
    void paintEvent(QPaintEvent *e) override;
    void mousePressEvent(QMouseEvent *e) override;
    void mouseMoveEvent(QMouseEvent *e) override;

private:
    QRectF pictureRect() const;
    ImagingControl *owner_;
    QPointF grab_;
};

// Maps a key event onto the key codes the picture logic compares (107 numeric plus,
// 109 numeric minus, letters and digits as their ASCII codes, ...).
int windowsKeyCode(const QKeyEvent *e);

}  // namespace tw
