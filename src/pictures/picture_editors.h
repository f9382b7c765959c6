// The two picture editors: the colour editor EdtColors1 and the effects editor EdtImage1.
// Both show the file twice, Original (Image1) and Current (Image2), keep an undo copy
// (Image3), and send the result back to the main picture (Apply) or to disk (Save). What they
// share lives in PictureEditor; each adds its sliders and buttons.
//
// Current is kept as the chain of operations made since Original. A change runs the chain on a
// worker thread, first on a copy of the picture no larger than the window shows (painted on
// Image2 as soon as it is there), then on the full picture for Apply and Save; a newer change
// makes the older work stale. So a slider drag on a 16000 x 16000 picture never stops the
// window, and Apply and Save wait (with the busy pointer) only for what is not done yet.
#pragma once

#include "pictures/editor_work.h"

#include <QImage>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

class QGridLayout;
class QLabel;
class QVBoxLayout;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QScrollBar;

namespace tw {

class BusyScope;

// What an editor needs of the main window.
struct EditorLink {
    // The main picture takes `picture` (Apply, and Save under the edited name).
    std::function<void(const QImage &picture)> setMainPicture;
    // The main picture's changed flag.
    std::function<void(bool changed)> setPictureChanged;
    // The state of the editor's tool (checked while the editor is open).
    std::function<void(bool open)> setToolState;
    std::function<void(const QString &topic)> showHelp;
};

// Image1 and Image2: the picture stretched to the control (size mode 1) or at its own size
// from the top left (size mode 0); a double click toggles.
class EditorPicture : public QWidget {
    Q_OBJECT
public:
    explicit EditorPicture(QWidget *parent = nullptr);
    void setImage(const QImage &img);
    QImage image() const { return img_; }
    bool stretched() const { return stretched_; }
    void setStretched(bool on);
    bool painting() const { return painting_; }
    void setPainting(bool on);

signals:
    // A picture was set to be shown.
    void pictureSet(const QImage &img);

protected:
    void paintEvent(QPaintEvent *) override;
    void mouseDoubleClickEvent(QMouseEvent *) override;

private:
    QImage img_;
    bool stretched_ = true;
    bool painting_ = true;
};

class PictureEditor : public QWidget {
    Q_OBJECT
public:
    // One step of Current: the operation on a picture shown at `scale` of the file's size.
    using Operation = std::function<QImage(const QImage &, double scale)>;

    PictureEditor(const QString &name, const QString &caption, const QString &helpTopic, EditorLink link,
                  QWidget *parent = nullptr);
    ~PictureEditor() override;

    // LoadEditorImages: the file into Original, Current and the undo copy; false on failure
    // (after the message).
    bool LoadEditorImages(const QString &path);
    // The same with a picture in memory (tests).
    void loadPicture(const QImage &picture);

    QString EditFile;
    bool EditChanged = false;
    bool OriginalStretched = true, CurrentStretched = true;
    bool FirstActivation = true;

    EditorPicture *Image1 = nullptr;  // Original
    EditorPicture *Image2 = nullptr;  // Current
    QLabel *HeadingLabel = nullptr;
    QPushButton *ApplyBtn = nullptr, *SaveBtn = nullptr, *CancelBtn = nullptr, *HelpBtn = nullptr,
                *UndoBtn = nullptr, *RestoreBtn = nullptr;
    QList<QPushButton *> AcceptBtn;
    QList<QLabel *> Label3;

    // Current at full size, the latest chain's; waits for the work still running.
    QImage fullCurrent();
    // Waits until Current shows the latest chain (its preview-sized result painted).
    void settle();
    // Work of the latest chain is waiting or running (on the preview copy or in full).
    bool working() const { return bool(busy_); }
    QImage originalPicture() const { return original_; }
    QImage currentPreview() const { return current_; }
    QImage undoPreview() const { return undo_; }
    QImage originalPreview() const { return originalPreview_; }
    double previewScale() const { return scale_; }
    int operationCount() const { return int(ops_.size()); }

    // The commands of both editors.
    void ApplyBtn_Click();
    void SaveBtn_Click();
    void UndoBtn_Click();
    virtual void RestoreBtn_Click() = 0;

    // The largest side of the copy the sliders work on.
    static constexpr int PreviewSide = 720;

protected:
    // Current runs one more operation; `key` names it with its values, so that the same
    // operation on the same picture is not worked out twice.
    void runOnCurrent(const QString &key, const Operation &op);
    // The busy pointer until the next result is painted (the slow median).
    void busyPointerUntilShown();
    // Current is Original again, with no operations.
    void currentFromOriginal();
    // Image3 = Image2 (with painting of Image2 off until PaintOn).
    void SnapshotForUndo();
    void PaintOn();
    // Image2 = Image3.
    void currentFromUndo();
    // A slider with its caption, value label and accept button, in the grid's next row.
    QScrollBar *addSlider(const QString &name, const QString &caption, int min, int max, int small, int large,
                          int rest, int row);
    // + and - on a focused slider: `bounded` checks the limits first.
    void watchPlusMinus(QScrollBar *bar, bool bounded);
    QGridLayout *sliderGrid_ = nullptr;
    QVBoxLayout *sideColumn_ = nullptr;
    bool eventFilter(QObject *o, QEvent *e) override;
    void showEvent(QShowEvent *) override;
    void closeEvent(QCloseEvent *) override;
    void changeEvent(QEvent *) override;
    virtual void firstActivation() {}
    EditorLink link_;
    QString helpTopic_;

private:
    // A change of the chain: the work starts when the event loop next turns, so a handler
    // that rebuilds the chain step by step sends it once.
    void chainChanged();
    void submit();
    void previewDone(quint64 generation, const QImage &result);
    void fullDone(quint64 generation, const QImage &result);
    void idle();
    QImage original_, originalPreview_, current_, undo_, full_;
    EditChain ops_, undoOps_;
    QStringList undoKeys_;
    bool undoKnown_ = true;
    double scale_ = 1.0;
    std::unique_ptr<EditLane> previewLane_, fullLane_;
    quint64 previewGeneration_ = 0, fullGeneration_ = 0;
    bool submitDue_ = false, submitQueued_ = false, previewDue_ = false, fullKnown_ = true;
    int busyPointers_ = 0;
    int mainPictureSets_ = 0;  // how often Apply or Save handed Current to the main picture
    std::unique_ptr<BusyScope> busy_;
    std::vector<std::pair<QScrollBar *, bool>> plusMinus_;
};

// EdtColors1, "Picture Image Color Editor".
class ColourEditor : public PictureEditor {
    Q_OBJECT
public:
    explicit ColourEditor(EditorLink link, QWidget *parent = nullptr);
    ~ColourEditor() override;

    QScrollBar *SCContrast, *SCBrightness, *SCHalfTone, *SCHistContrast, *SCHue, *SCSaturation, *SCGamma;
    QRadioButton *RDOPTION_0, *RDOPTION_1;
    QPushButton *PrewittBtn, *SorbelBtn, *ShiftBtn, *IntensityBtn, *GrayBtn, *ResolutionBtn, *InvertBtn;

    bool ContrastSet = false, BrightnessSet = false, HistContrastSet = false, HueSet = false,
         SaturationSet = false, GammaSet = false;
    int FilterCode = 25;

    void ResetSliders();
    void ApplySliders();
    void RestoreBtn_Click() override;
    void AcceptBtn_Click(int index);
    void filterBtn_Click(int verticalCode, int horizontalCode);
    void ResolutionBtn_Click();
    // The value label text of a slider (gamma in hundredths).
    static QString gammaText(int value);

private:
    void sliderChanged(QScrollBar *bar, bool *flag, int labelIndex);
    void halfToneChanged();
    void action(const QString &key, const Operation &op);
    void firstActivation() override;
};

// EdtImage1, "Picture Image Editor".
class EffectsEditor : public PictureEditor {
    Q_OBJECT
public:
    explicit EffectsEditor(EditorLink link, QWidget *parent = nullptr);
    ~EffectsEditor() override;

    QScrollBar *SCPosterize, *SCMosiac, *SCMedian, *SCSharpen, *SCNoise, *SCEmboss, *SCRotateFree;
    QLineEdit *Text1 = nullptr;
    QListWidget *List1 = nullptr;
    QList<QPushButton *> RotateAngle;
    QPushButton *FlipBtn, *ReverseBtn, *RColorBtn;

    int EmbossDirection = 0;
    int LastMosaic = 2;
    double NoiseChannel = 0;
    QRgb RotateBackColor = 0xFFFFFFFF;
    int RotatePosition = 0;
    int RotateDegrees = 0;

    void ResetEffectSliders();
    void RestoreBtn_Click() override;
    void AcceptBtn_Click(int index);
    void RotateAngle_Click(int index);
    void FlipBtn_Click();
    void ReverseBtn_Click();
    void RColorBtn_Click();
    void List1_Click();

private:
    void effectChanged(int index);
    void rotateChanged();
    void clearRotation();
    EditStep effectOf(int index) const;
    void paintText1();
    void firstActivation() override;
};

}  // namespace tw
