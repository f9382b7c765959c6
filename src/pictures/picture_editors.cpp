#include "pictures/picture_editors.h"

#include "core/busy.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "pictures/file_dialogs.h"
#include "pictures/image_effects.h"
#include "pictures/imaging_control.h"
#include "pictures/imaging_errors.h"
#include "pictures/picture_decoder.h"
#include "pictures/picture_saving.h"

#include <QApplication>
#include <QCloseEvent>
#include <QColorDialog>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace tw {

namespace {
const QString kAppTitle = QStringLiteral("Tarnwick 2.0");

QString boolText(bool b) { return b ? QStringLiteral("true") : QStringLiteral("false"); }

QString colourText(const QImage &img)
{
    if (img.isNull()) return QString();
    const QRgb c = img.pixel(img.width() / 2, img.height() / 2);
    return QColor(c).name();
}

// A pixel measure of the file's picture as it falls on the copy shown (at least 1).
int scaled(int pixels, double scale) { return std::max(1, int(std::lround(pixels * scale))); }

// The busy pointer for the length of a slow operation.
struct BusyPointer {
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
};
}  // namespace

// ---------------------------------------------------------------- EditorPicture

EditorPicture::EditorPicture(QWidget *parent) : QWidget(parent)
{
    setMinimumSize(160, 120);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void EditorPicture::setImage(const QImage &img)
{
    img_ = img;
    if (painting_) update();
    emit pictureSet(img_);
}

void EditorPicture::setStretched(bool on)
{
    stretched_ = on;
    update();
}

void EditorPicture::setPainting(bool on)
{
    painting_ = on;
    if (on) update();
}

void EditorPicture::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.fillRect(rect(), palette().window());
    if (img_.isNull()) return;
    if (stretched_) {
        p.setRenderHint(QPainter::SmoothPixmapTransform, true);
        p.drawImage(rect(), img_);
    } else {
        p.drawImage(0, 0, img_);
    }
}

void EditorPicture::mouseDoubleClickEvent(QMouseEvent *) { setStretched(!stretched_); }

// ---------------------------------------------------------------- PictureEditor

PictureEditor::PictureEditor(const QString &name, const QString &caption, const QString &helpTopic,
                             EditorLink link, QWidget *parent)
    : QWidget(parent, Qt::Window), link_(std::move(link)), helpTopic_(helpTopic)
{
    setObjectName(name);
    setWindowTitle(caption);
    setAttribute(Qt::WA_DeleteOnClose);
    setHelpTopic(this, helpTopic);

    auto *top = new QVBoxLayout(this);
    HeadingLabel = new QLabel(this);
    HeadingLabel->setObjectName(QStringLiteral("HeadingLabel"));
    top->addWidget(HeadingLabel);

    auto *pictures = new QGridLayout;
    auto *origCap = new QLabel(QStringLiteral("Original"), this);
    auto *currCap = new QLabel(QStringLiteral("Current"), this);
    origCap->setObjectName(QStringLiteral("OriginalLabel"));
    currCap->setObjectName(QStringLiteral("CurrentLabel"));
    Image1 = new EditorPicture(this);
    Image1->setObjectName(QStringLiteral("Image1"));
    Image2 = new EditorPicture(this);
    Image2->setObjectName(QStringLiteral("Image2"));
    pictures->addWidget(origCap, 0, 0);
    pictures->addWidget(currCap, 0, 1);
    pictures->addWidget(Image1, 1, 0);
    pictures->addWidget(Image2, 1, 1);
    top->addLayout(pictures, 1);

    auto *lower = new QHBoxLayout;
    sliderGrid_ = new QGridLayout;
    lower->addLayout(sliderGrid_, 1);
    sideColumn_ = new QVBoxLayout;
    lower->addLayout(sideColumn_);
    top->addLayout(lower);

    auto *buttons = new QHBoxLayout;
    auto button = [&](QPushButton *&b, const QString &objName, const QString &text, const QString &tip) {
        b = new QPushButton(text, this);
        b->setObjectName(objName);
        b->setToolTip(tip);
        buttons->addWidget(b);
    };
    button(ApplyBtn, QStringLiteral("ApplyBtn"), QStringLiteral("Apply"),
           QStringLiteral("Apply the Current Image to the Original without Saving to Disk"));
    button(SaveBtn, QStringLiteral("SaveBtn"), QStringLiteral("Save"),
           QStringLiteral("Save the Current Image Replacing the Original on Disk"));
    button(UndoBtn, QStringLiteral("UndoBtn"), QStringLiteral("Undo"),
           QStringLiteral("Undo the Current Image Last Edit"));
    button(RestoreBtn, QStringLiteral("RestoreBtn"), QStringLiteral("Restore"),
           QStringLiteral("Restore the Current Image to the Original"));
    button(CancelBtn, QStringLiteral("CancelBtn"), QStringLiteral("Cancel"),
           QStringLiteral("Cancel All Edits and Return to Original"));
    button(HelpBtn, QStringLiteral("HelpBtn"), QStringLiteral("Help"),
           QStringLiteral("Help with Image Editor"));
    top->addLayout(buttons);

    connect(ApplyBtn, &QPushButton::clicked, this, [this] { ApplyBtn_Click(); });
    connect(SaveBtn, &QPushButton::clicked, this, [this] { SaveBtn_Click(); });
    connect(UndoBtn, &QPushButton::clicked, this, [this] { UndoBtn_Click(); });
    connect(RestoreBtn, &QPushButton::clicked, this, [this] { RestoreBtn_Click(); });
    connect(CancelBtn, &QPushButton::clicked, this, [this] { close(); });
    connect(HelpBtn, &QPushButton::clicked, this, [this] {
        if (link_.showHelp) link_.showHelp(helpTopic_);
    });
    connect(Image1, &QObject::objectNameChanged, this, [] {});
    // The preview copy keeps every step of the chains it ran (it is small); the full picture
    // keeps what fits in a few hundred megabytes, and always the latest result.
    previewLane_ = std::make_unique<EditLane>(
        this, [this](quint64 g, const QImage &img) { previewDone(g, img); }, qint64(256) << 20);
    fullLane_ = std::make_unique<EditLane>(
        this, [this](quint64 g, const QImage &img) { fullDone(g, img); }, qint64(400) << 20);

    const QString owner = name;  // the runner asks for "EdtColors1.EditChanged" as "EditChanged"
    registerScenarioVariables(owner, [this](const QString &n, QString *out) {
        const QString &v = n;
        if (v == QLatin1String("EditChanged")) *out = boolText(EditChanged);
        else if (v == QLatin1String("EditFile")) *out = EditFile;
        else if (v == QLatin1String("CurrentIsOriginal")) *out = boolText(current_ == originalPreview_);
        else if (v == QLatin1String("CurrentIsUndo")) *out = boolText(current_ == undo_);
        else if (v == QLatin1String("CurrentColour")) *out = colourText(current_);
        else if (v == QLatin1String("CurrentSize"))
            *out = QStringLiteral("%1x%2").arg(current_.width()).arg(current_.height());
        else if (v == QLatin1String("Operations")) *out = QString::number(ops_.size());
        else if (v == QLatin1String("OriginalStretched")) *out = boolText(Image1->stretched());
        else if (v == QLatin1String("CurrentStretched")) *out = boolText(Image2->stretched());
        else if (v == QLatin1String("FirstActivation")) *out = boolText(FirstActivation);
        else if (v == QLatin1String("MainPictureSets")) *out = QString::number(mainPictureSets_);
        else if (v == QLatin1String("Working")) *out = boolText(working());
        else return false;
        return true;
    });
}

PictureEditor::~PictureEditor()
{
    unregisterScenarioVariables(objectName());
    // Work still running is stale; its result goes nowhere.
    previewLane_.reset();
    fullLane_.reset();
    while (busyPointers_ > 0) {
        --busyPointers_;
        QApplication::restoreOverrideCursor();
    }
}

bool PictureEditor::LoadEditorImages(const QString &path)
{
    BusyPointer busy;
    Picture p;
    QString detail;
    const int status = decodePictureFile(path, 1, false, &p, &detail);
    if (status != ImagingOk || p.isNull()) {
        const int code = status != ImagingOk ? status : int(ImagingInvalidBitmap);
        QApplication::restoreOverrideCursor();
        QApplication::setOverrideCursor(Qt::ArrowCursor);
        inform(QStringLiteral("Error - ") + QString::number(code) + QStringLiteral(" - ")
                   + GetImagingErrorText(code),
               kAppTitle, this);
        return false;
    }
    loadPicture(p.frames.first());
    return true;
}

void PictureEditor::loadPicture(const QImage &picture)
{
    original_ =
        picture.convertToFormat(picture.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const int side = std::max(original_.width(), original_.height());
    scale_ = side > PreviewSide ? double(PreviewSide) / side : 1.0;
    originalPreview_ = scale_ < 1.0
        ? original_.scaled(std::max(1, int(std::lround(original_.width() * scale_))),
                           std::max(1, int(std::lround(original_.height() * scale_))), Qt::IgnoreAspectRatio,
                           Qt::SmoothTransformation)
        : original_;
    previewLane_->setSource(originalPreview_, scale_);
    fullLane_->setSource(original_, 1.0);
    ops_.clear();
    undoOps_.clear();
    undoKeys_.clear();
    undoKnown_ = true;
    submitDue_ = previewDue_ = false;
    current_ = undo_ = originalPreview_;
    full_ = original_;
    fullKnown_ = true;
    idle();
    Image1->setImage(originalPreview_);
    Image2->setImage(current_);
}

void PictureEditor::chainChanged()
{
    if (original_.isNull()) return;
    submitDue_ = previewDue_ = true;
    fullKnown_ = false;
    full_ = QImage();
    if (!busy_) busy_ = std::make_unique<BusyScope>();
    if (submitQueued_) return;
    submitQueued_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            submitQueued_ = false;
            submit();
        },
        Qt::QueuedConnection);
}

void PictureEditor::submit()
{
    if (!submitDue_) return;
    submitDue_ = false;
    // The full picture's work of the chain before is stale now.
    fullLane_->cancel();
    fullGeneration_ = 0;
    if (ops_.empty()) {
        // Original itself: nothing to work out.
        previewLane_->cancel();
        previewGeneration_ = 0;
        previewDone(0, originalPreview_);
        return;
    }
    previewGeneration_ = previewLane_->request(ops_);
}

void PictureEditor::previewDone(quint64 generation, const QImage &result)
{
    if (generation != previewGeneration_ || submitDue_ || !previewDue_) return;
    previewDue_ = false;
    current_ = result;
    Image2->setImage(current_);
    if (!undoKnown_ && undoKeys_ == keysOf(ops_)) {
        undo_ = current_;
        undoKnown_ = true;
    }
    while (busyPointers_ > 0) {
        --busyPointers_;
        QApplication::restoreOverrideCursor();
    }
    if (scale_ >= 1.0 || ops_.empty()) {
        full_ = scale_ >= 1.0 ? current_ : original_;
        fullKnown_ = true;
        idle();
        return;
    }
    // Then the same chain on the full picture, for Apply and Save.
    fullGeneration_ = fullLane_->request(ops_);
}

void PictureEditor::fullDone(quint64 generation, const QImage &result)
{
    if (generation == 0 || generation != fullGeneration_ || submitDue_ || previewDue_ || fullKnown_) return;
    full_ = result;
    fullKnown_ = true;
    idle();
}

void PictureEditor::idle() { busy_.reset(); }

void PictureEditor::settle()
{
    submit();
    if (previewDue_ && previewGeneration_ != 0) previewDone(previewGeneration_, previewLane_->wait());
}

QImage PictureEditor::fullCurrent()
{
    settle();
    if (!fullKnown_ && fullGeneration_ != 0) {
        BusyPointer busy;
        fullDone(fullGeneration_, fullLane_->wait());
    }
    return fullKnown_ ? full_ : original_;
}

void PictureEditor::runOnCurrent(const QString &key, const Operation &op)
{
    if (original_.isNull()) return;
    ops_.push_back({key, op});
    chainChanged();
}

void PictureEditor::busyPointerUntilShown()
{
    if (!previewDue_) return;
    ++busyPointers_;
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

void PictureEditor::currentFromOriginal()
{
    if (ops_.empty() && !previewDue_) return;
    ops_.clear();
    chainChanged();
}

void PictureEditor::SnapshotForUndo()
{
    undoOps_ = ops_;
    undoKeys_ = keysOf(ops_);
    undoKnown_ = !previewDue_;
    if (undoKnown_) undo_ = current_;
    Image2->setPainting(false);
}

void PictureEditor::PaintOn()
{
    Image2->setImage(current_);
    Image2->setPainting(true);
}

void PictureEditor::currentFromUndo()
{
    if (original_.isNull()) return;
    ops_ = undoOps_;
    if (undoKnown_) {
        // The undo copy is at hand: shown at once, and the preview's work finds it done.
        previewLane_->seed(undoKeys_, undo_);
        current_ = undo_;
        Image2->setImage(current_);
    }
    chainChanged();
}

void PictureEditor::ApplyBtn_Click()
{
    if (original_.isNull()) return;
    const QImage full = fullCurrent();
    ++mainPictureSets_;
    if (link_.setMainPicture) link_.setMainPicture(full);
    if (EditChanged && link_.setPictureChanged) link_.setPictureChanged(true);
}

void PictureEditor::SaveBtn_Click()
{
    if (original_.isNull()) return;
    ImagingFileDialog dlg(this, ImagingFileDialog::Save, false, true);
    const QFileInfo fi(EditFile);
    if (!EditFile.isEmpty()) {
        dlg.setDirectory(fi.absolutePath());
        dlg.setInitialName(fi.fileName());
    }
    if (dlg.exec() != QDialog::Accepted) return;
    const QString name = dlg.chosenFile();
    if (name.isEmpty()) return;
    QString ext = dlg.chosenExtension().toUpper();
    if (ext.isEmpty() || ext.contains(u'*')) ext = QFileInfo(name).suffix().toUpper();
    const QImage full = fullCurrent();
    QString detail;
    const int status = writePictureFile({full}, name, GetFormatCode(ext), dlg.bitsPerPixel(), dlg.quality(),
                                        EditFile, &detail);
    if (status != 0) inform(imagingErrorMessage(status), kAppTitle, this);
    else if (link_.setPictureChanged) link_.setPictureChanged(false);
    // The main picture follows a save under the edited name, even one that failed.
    if (name.trimmed().toUpper() == EditFile.trimmed().toUpper()) {
        ++mainPictureSets_;
        if (link_.setMainPicture) link_.setMainPicture(full);
    }
}

void PictureEditor::UndoBtn_Click()
{
    currentFromUndo();
    EditChanged = false;
}

QScrollBar *PictureEditor::addSlider(const QString &name, const QString &caption, int min, int max, int small,
                                     int large, int rest, int row)
{
    auto *cap = new QLabel(caption, this);
    cap->setObjectName(name + QStringLiteral("Caption"));
    auto *bar = new QScrollBar(Qt::Horizontal, this);
    bar->setObjectName(name);
    bar->setRange(min, max);
    bar->setSingleStep(small);
    bar->setPageStep(large);
    bar->setValue(rest);
    bar->setMinimumWidth(200);
    bar->setFocusPolicy(Qt::StrongFocus);
    sliderGrid_->addWidget(cap, row, 0);
    sliderGrid_->addWidget(bar, row, 1);
    return bar;
}

void PictureEditor::watchPlusMinus(QScrollBar *bar, bool bounded)
{
    plusMinus_.push_back({bar, bounded});
    bar->installEventFilter(this);
}

bool PictureEditor::eventFilter(QObject *o, QEvent *e)
{
    if (e->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(e)->key();
        if (key == Qt::Key_Plus || key == Qt::Key_Minus) {
            for (auto &[bar, bounded] : plusMinus_) {
                if (bar != o) continue;
                const int step = bar->singleStep();
                if (key == Qt::Key_Plus) {
                    // Past the maximum the value cannot go: the step is dropped.
                    if (!bounded || bar->value() < bar->maximum())
                        if (bar->value() + step <= bar->maximum()) bar->setValue(bar->value() + step);
                } else {
                    if (!bounded || bar->value() > bar->minimum())
                        if (bar->value() - step >= bar->minimum()) bar->setValue(bar->value() - step);
                }
                return true;
            }
        }
    }
    return QWidget::eventFilter(o, e);
}

void PictureEditor::showEvent(QShowEvent *e)
{
    QWidget::showEvent(e);
    activateWindow();
}

void PictureEditor::changeEvent(QEvent *e)
{
    QWidget::changeEvent(e);
    if (e->type() == QEvent::ActivationChange && isActiveWindow() && FirstActivation) {
        FirstActivation = false;
        firstActivation();
    }
}

void PictureEditor::closeEvent(QCloseEvent *e)
{
    if (link_.setToolState) link_.setToolState(false);
    QWidget::closeEvent(e);
}

// ---------------------------------------------------------------- ColourEditor

ColourEditor::ColourEditor(EditorLink link, QWidget *parent)
    : PictureEditor(QStringLiteral("EdtColors1"), QStringLiteral("Picture Image Color Editor"),
                    QStringLiteral("EdtColors1"), std::move(link), parent)
{
    struct Row {
        QScrollBar **bar;
        const char *name, *caption;
        int min, max, small, large, rest;
    };
    const Row rows[] = {
        {&SCContrast, "SCContrast", "Contrast:", -1000, 1000, 10, 100, 0},
        {&SCBrightness, "SCBrightness", "Brightness:", -1000, 1000, 10, 100, 0},
        {&SCHalfTone, "SCHalfTone", "Half Tone:", -360, 360, 2, 45, 0},
        {&SCHistContrast, "SCHistContrast", "Histogram Contrast:", -1000, 1000, 10, 100, 0},
        {&SCHue, "SCHue", "Hue:", -360, 360, 4, 45, 0},
        {&SCSaturation, "SCSaturation", "Saturation:", -1000, 1000, 10, 100, 0},
        {&SCGamma, "SCGamma", "Gamma:", 1, 499, 1, 10, 100},
    };
    for (int i = 0; i < 7; ++i) {
        const Row &r = rows[i];
        *r.bar = addSlider(QLatin1String(r.name), QLatin1String(r.caption), r.min, r.max, r.small, r.large,
                           r.rest, i);
        auto *value = new QLabel(i == 6 ? QStringLiteral("1.00") : QStringLiteral("0"), this);
        value->setObjectName(QStringLiteral("Label3_%1").arg(i));
        value->setMinimumWidth(40);
        Label3.append(value);
        sliderGrid_->addWidget(value, i, 2);
        auto *accept = new QPushButton(QStringLiteral("Accept"), this);
        accept->setObjectName(QStringLiteral("AcceptBtn_%1").arg(i));
        accept->setToolTip(QStringLiteral("Accept Image Editing Feature"));
        AcceptBtn.append(accept);
        sliderGrid_->addWidget(accept, i, 3);
        connect(accept, &QPushButton::clicked, this, [this, i] { AcceptBtn_Click(i); });
        watchPlusMinus(*r.bar, false);
    }
    connect(SCContrast, &QScrollBar::valueChanged, this,
            [this] { sliderChanged(SCContrast, &ContrastSet, 0); });
    connect(SCBrightness, &QScrollBar::valueChanged, this,
            [this] { sliderChanged(SCBrightness, &BrightnessSet, 1); });
    connect(SCHalfTone, &QScrollBar::valueChanged, this, [this] { halfToneChanged(); });
    connect(SCHistContrast, &QScrollBar::valueChanged, this,
            [this] { sliderChanged(SCHistContrast, &HistContrastSet, 3); });
    connect(SCHue, &QScrollBar::valueChanged, this, [this] { sliderChanged(SCHue, &HueSet, 4); });
    connect(SCSaturation, &QScrollBar::valueChanged, this,
            [this] { sliderChanged(SCSaturation, &SaturationSet, 5); });
    connect(SCGamma, &QScrollBar::valueChanged, this, [this] { sliderChanged(SCGamma, &GammaSet, 6); });

    auto *filters = new QGroupBox(QStringLiteral("Filters"), this);
    filters->setObjectName(QStringLiteral("FiltersFrame"));
    auto *fl = new QGridLayout(filters);
    RDOPTION_0 = new QRadioButton(QStringLiteral("Vertical"), filters);
    RDOPTION_0->setObjectName(QStringLiteral("RDOPTION_0"));
    RDOPTION_1 = new QRadioButton(QStringLiteral("Horizontal"), filters);
    RDOPTION_1->setObjectName(QStringLiteral("RDOPTION_1"));
    RDOPTION_0->setChecked(true);
    fl->addWidget(RDOPTION_0, 0, 0);
    fl->addWidget(RDOPTION_1, 0, 1);
    auto makeBtn = [&](QPushButton *&b, const char *objName, const char *text, const char *tip) {
        b = new QPushButton(QLatin1String(text), this);
        b->setObjectName(QLatin1String(objName));
        b->setToolTip(QLatin1String(tip));
    };
    makeBtn(PrewittBtn, "PrewittBtn", "Prewitt", "Add Prewitt Filter to the Image Edited");
    makeBtn(SorbelBtn, "SorbelBtn", "Sorbel", "Add Sorbel Filter to the Image Edited");
    makeBtn(ShiftBtn, "ShiftBtn", "Shift", "Add Shift Filter to the Image Edited");
    fl->addWidget(PrewittBtn, 1, 0);
    fl->addWidget(SorbelBtn, 1, 1);
    fl->addWidget(ShiftBtn, 1, 2);
    sideColumn_->addWidget(filters);
    makeBtn(IntensityBtn, "IntensityBtn", "Intensity", "Stretch Intensity of the Current Image");
    makeBtn(GrayBtn, "GrayBtn", "Gray", "Gray Scale the Current Image");
    makeBtn(ResolutionBtn, "ResolutionBtn", "Resolution", "Set Color Resolution of the Current Image");
    makeBtn(InvertBtn, "InvertBtn", "Invert", "Invert Colors of the Current Image");
    for (QPushButton *b : {IntensityBtn, GrayBtn, ResolutionBtn, InvertBtn}) sideColumn_->addWidget(b);
    sideColumn_->addStretch(1);

    connect(RDOPTION_0, &QRadioButton::clicked, this, [this] { FilterCode = 25; });
    connect(RDOPTION_1, &QRadioButton::clicked, this, [this] { FilterCode = 24; });
    connect(PrewittBtn, &QPushButton::clicked, this, [this] { filterBtn_Click(25, 24); });
    connect(SorbelBtn, &QPushButton::clicked, this, [this] { filterBtn_Click(23, 22); });
    connect(ShiftBtn, &QPushButton::clicked, this, [this] { filterBtn_Click(28, 27); });
    connect(IntensityBtn, &QPushButton::clicked, this, [this] {
        action(QStringLiteral("stretch"),
               [](const QImage &i, double) { return effects::stretchIntensity(i); });
    });
    connect(InvertBtn, &QPushButton::clicked, this, [this] {
        action(QStringLiteral("invert"), [](const QImage &i, double) { return effects::invert(i); });
    });
    connect(GrayBtn, &QPushButton::clicked, this, [this] {
        action(QStringLiteral("gray"), [](const QImage &i, double) { return effects::grayScale(i); });
    });
    connect(ResolutionBtn, &QPushButton::clicked, this, [this] { ResolutionBtn_Click(); });

    registerScenarioVariables(QStringLiteral("EdtColors1.flags"), [this](const QString &n, QString *out) {
        if (n == QLatin1String("ContrastSet")) *out = boolText(ContrastSet);
        else if (n == QLatin1String("BrightnessSet")) *out = boolText(BrightnessSet);
        else if (n == QLatin1String("HistContrastSet")) *out = boolText(HistContrastSet);
        else if (n == QLatin1String("HueSet")) *out = boolText(HueSet);
        else if (n == QLatin1String("SaturationSet")) *out = boolText(SaturationSet);
        else if (n == QLatin1String("GammaSet")) *out = boolText(GammaSet);
        else if (n == QLatin1String("FilterCode")) *out = QString::number(FilterCode);
        else return false;
        return true;
    });
    {
        SuppressTools quiet;
        if (link_.setToolState) link_.setToolState(true);
    }
    G.EdtColors1Loaded = true;
}

ColourEditor::~ColourEditor()
{
    unregisterScenarioVariables(QStringLiteral("EdtColors1.flags"));
    G.EdtColors1Loaded = false;
}

QString ColourEditor::gammaText(int value) { return QString::number(value / 100.0, 'g', 6); }

void ColourEditor::firstActivation() {}

void ColourEditor::ResetSliders()
{
    if (FirstActivation) return;
    SCContrast->setValue(0);
    SCBrightness->setValue(0);
    SCGamma->setValue(100);
    SCHalfTone->setValue(0);
    SCHistContrast->setValue(0);
    SCHue->setValue(0);
    SCSaturation->setValue(0);
}

void ColourEditor::ApplySliders()
{
    currentFromOriginal();
    const int contrast = SCContrast->value(), brightness = SCBrightness->value(),
              hist = SCHistContrast->value(), hue = SCHue->value(), sat = SCSaturation->value(),
              gamma = SCGamma->value();
    if (ContrastSet)
        runOnCurrent(QStringLiteral("contrast %1").arg(contrast),
                     [contrast](const QImage &i, double) { return effects::contrast(i, contrast); });
    if (BrightnessSet)
        runOnCurrent(QStringLiteral("brightness %1").arg(brightness),
                     [brightness](const QImage &i, double) { return effects::brightness(i, brightness); });
    if (HistContrastSet)
        runOnCurrent(QStringLiteral("histogram contrast %1").arg(hist),
                     [hist](const QImage &i, double) { return effects::histogramContrast(i, hist); });
    if (HueSet)
        runOnCurrent(QStringLiteral("hue %1").arg(hue),
                     [hue](const QImage &i, double) { return effects::hue(i, hue); });
    if (SaturationSet)
        runOnCurrent(QStringLiteral("saturation %1").arg(sat),
                     [sat](const QImage &i, double) { return effects::saturation(i, sat); });
    if (GammaSet)
        runOnCurrent(QStringLiteral("gamma %1").arg(gamma),
                     [gamma](const QImage &i, double) { return effects::gamma(i, gamma); });
    if (contrast == 0) ContrastSet = false;
    if (brightness == 0) BrightnessSet = false;
    if (hist == 0) HistContrastSet = false;
    if (hue == 0) HueSet = false;
    if (sat == 0) SaturationSet = false;
    if (gamma == 100) GammaSet = false;
}

void ColourEditor::sliderChanged(QScrollBar *bar, bool *flag, int labelIndex)
{
    *flag = true;
    ApplySliders();
    Label3[labelIndex]->setText(labelIndex == 6 ? gammaText(bar->value()) : QString::number(bar->value()));
    EditChanged = true;
}

void ColourEditor::halfToneChanged()
{
    const int angle = SCHalfTone->value();
    runOnCurrent(QStringLiteral("half tone %1").arg(angle),
                 [angle](const QImage &i, double) { return effects::halfTone(i, angle); });
    Label3[2]->setText(QString::number(angle));
    EditChanged = true;
}

void ColourEditor::action(const QString &key, const Operation &op)
{
    runOnCurrent(key, op);
    EditChanged = true;
}

void ColourEditor::AcceptBtn_Click(int)
{
    SnapshotForUndo();
    PaintOn();
    EditChanged = true;
}

void ColourEditor::RestoreBtn_Click()
{
    ResetSliders();
    currentFromOriginal();
    SnapshotForUndo();
    PaintOn();
    EditChanged = false;
}

void ColourEditor::filterBtn_Click(int verticalCode, int horizontalCode)
{
    FilterCode = RDOPTION_1->isChecked() ? horizontalCode : verticalCode;
    const int code = FilterCode;
    action(QStringLiteral("filter %1").arg(code),
           [code](const QImage &i, double) { return effects::edgeFilter(i, code); });
}

void ColourEditor::ResolutionBtn_Click()
{
    // The colour resolution dialog: bits per pixel and the number of colours.
    QDialog dlg(this);
    dlg.setObjectName(QStringLiteral("ColorResDlg"));
    dlg.setWindowTitle(QStringLiteral("Color Resolution"));
    auto *form = new QGridLayout(&dlg);
    auto *bits = new QSpinBox(&dlg);
    bits->setObjectName(QStringLiteral("BitsPerPixel"));
    bits->setRange(1, 24);
    bits->setValue(8);
    auto *colours = new QSpinBox(&dlg);
    colours->setObjectName(QStringLiteral("Colors"));
    colours->setRange(0, 16777216);
    colours->setValue(0);
    form->addWidget(new QLabel(QStringLiteral("Bits per pixel:"), &dlg), 0, 0);
    form->addWidget(bits, 0, 1);
    form->addWidget(new QLabel(QStringLiteral("Colors (0 for all):"), &dlg), 1, 0);
    form->addWidget(colours, 1, 1);
    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dlg);
    form->addWidget(box, 2, 0, 1, 2);
    connect(box, &QDialogButtonBox::accepted, &dlg, &QDialog::accept);
    connect(box, &QDialogButtonBox::rejected, &dlg, &QDialog::reject);
    if (dlg.exec() != QDialog::Accepted) return;
    const int b = bits->value(), c = colours->value();
    action(QStringLiteral("colour resolution %1 %2").arg(b).arg(c),
           [b, c](const QImage &i, double) { return effects::colourResolution(i, b, c); });
}

// ---------------------------------------------------------------- EffectsEditor

EffectsEditor::EffectsEditor(EditorLink link, QWidget *parent)
    : PictureEditor(QStringLiteral("EdtImage1"), QStringLiteral("Picture Image Editor"),
                    QStringLiteral("EdtImage1"), std::move(link), parent)
{
    FirstActivation = false;
    struct Row {
        QScrollBar **bar;
        const char *name, *caption;
        int min, max, small, large, rest;
    };
    const Row rows[] = {
        {&SCPosterize, "SCPosterize", "Posterize:", 2, 64, 1, 4, 2},
        {&SCMosiac, "SCMosiac", "Mosiac:", 2, 64, 1, 2, 2},
        {&SCMedian, "SCMedian", "Median:", 3, 11, 1, 1, 3},
        {&SCSharpen, "SCSharpen", "Sharpen:", -1000, 1000, 10, 100, 0},
        {&SCNoise, "SCNoise", "Noise:", 0, 1000, 10, 100, 500},
        {&SCEmboss, "SCEmboss", "Emboss:", 0, 1000, 10, 100, 500},
        {&SCRotateFree, "SCRotateFree", "", -180, 180, 1, 10, 0},
    };
    for (int i = 0; i < 7; ++i) {
        const Row &r = rows[i];
        *r.bar = addSlider(QLatin1String(r.name), QLatin1String(r.caption), r.min, r.max, r.small, r.large,
                           r.rest, i);
        if (i < 6) {
            auto *value = new QLabel(QString::number(r.rest), this);
            value->setObjectName(QStringLiteral("Label3_%1").arg(i));
            value->setMinimumWidth(40);
            Label3.append(value);
            sliderGrid_->addWidget(value, i, 2);
        } else {
            // The rotation shows in the box Text1, on the rotation's background colour.
            Text1 = new QLineEdit(QStringLiteral("0"), this);
            Text1->setObjectName(QStringLiteral("Text1"));
            Text1->setToolTip(QStringLiteral("Rotate Picture by this Angle"));
            Text1->setReadOnly(true);
            Text1->setMaximumWidth(60);
            sliderGrid_->addWidget(Text1, i, 2);
        }
        auto *accept = new QPushButton(QStringLiteral("Accept"), this);
        accept->setObjectName(QStringLiteral("AcceptBtn_%1").arg(i));
        accept->setToolTip(QStringLiteral("Accept Image Editing Feature"));
        AcceptBtn.append(accept);
        sliderGrid_->addWidget(accept, i, 3);
        connect(accept, &QPushButton::clicked, this, [this, i] { AcceptBtn_Click(i); });
        watchPlusMinus(*r.bar, true);
        if (i < 6) connect(*r.bar, &QScrollBar::valueChanged, this, [this, i] { effectChanged(i); });
    }
    connect(SCRotateFree, &QScrollBar::valueChanged, this, [this] { rotateChanged(); });

    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    List1->setToolTip(QStringLiteral("Select Direction of Emboss"));
    List1->addItems({QStringLiteral("North"), QStringLiteral("NorthEast"), QStringLiteral("East"),
                     QStringLiteral("SouthEast"), QStringLiteral("South"), QStringLiteral("SouthWest"),
                     QStringLiteral("West"), QStringLiteral("NorthWest")});
    List1->setMaximumHeight(150);
    sideColumn_->addWidget(List1);
    connect(List1, &QListWidget::itemClicked, this, [this] { List1_Click(); });
    auto makeBtn = [&](QPushButton *&b, const QString &objName, const QString &text, const QString &tip) {
        b = new QPushButton(text, this);
        b->setObjectName(objName);
        b->setToolTip(tip);
        sideColumn_->addWidget(b);
    };
    const char *turnTips[] = {"Rotate the Current Image by 90 Degrees",
                              "Rotate the Current Image by 180 Degrees",
                              "Rotate the Current Image by 270 Degrees"};
    for (int i = 0; i < 3; ++i) {
        QPushButton *b = nullptr;
        makeBtn(b, QStringLiteral("RotateAngle_%1").arg(i), QString::number((i + 1) * 90),
                QLatin1String(turnTips[i]));
        RotateAngle.append(b);
        connect(b, &QPushButton::clicked, this, [this, i] { RotateAngle_Click(i); });
    }
    makeBtn(FlipBtn, QStringLiteral("FlipBtn"), QStringLiteral("Flip"),
            QStringLiteral("Flip the Current Image"));
    makeBtn(ReverseBtn, QStringLiteral("ReverseBtn"), QStringLiteral("Reverse"),
            QStringLiteral("Reverse the Current Image"));
    makeBtn(RColorBtn, QStringLiteral("RColorBtn"), QStringLiteral("Color"),
            QStringLiteral("Set Rotate Background Color"));
    sideColumn_->addStretch(1);
    connect(FlipBtn, &QPushButton::clicked, this, [this] { FlipBtn_Click(); });
    connect(ReverseBtn, &QPushButton::clicked, this, [this] { ReverseBtn_Click(); });
    connect(RColorBtn, &QPushButton::clicked, this, [this] { RColorBtn_Click(); });

    LastMosaic = 2;
    RotateBackColor = 0xFFFFFFFF;
    clearRotation();
    NoiseChannel = 0;
    EmbossDirection = 0;
    paintText1();
    registerScenarioVariables(QStringLiteral("EdtImage1.fields"), [this](const QString &n, QString *out) {
        if (n == QLatin1String("RotatePosition")) *out = QString::number(RotatePosition);
        else if (n == QLatin1String("RotateDegrees")) *out = QString::number(RotateDegrees);
        else if (n == QLatin1String("EmbossDirection")) *out = QString::number(EmbossDirection);
        else if (n == QLatin1String("LastMosaic")) *out = QString::number(LastMosaic);
        else if (n == QLatin1String("RotateBackColor")) *out = QColor(RotateBackColor).name();
        else return false;
        return true;
    });
    {
        SuppressTools quiet;
        if (link_.setToolState) link_.setToolState(true);
    }
    FirstActivation = true;
    G.EdtImage1Loaded = true;
}

EffectsEditor::~EffectsEditor()
{
    unregisterScenarioVariables(QStringLiteral("EdtImage1.fields"));
    G.EdtImage1Loaded = false;
}

void EffectsEditor::firstActivation() {}

void EffectsEditor::paintText1()
{
    QPalette pal = Text1->palette();
    pal.setColor(QPalette::Base, QColor(RotateBackColor));
    Text1->setPalette(pal);
}

void EffectsEditor::clearRotation()
{
    RotatePosition = 0;
    RotateDegrees = 0;
}

EditStep EffectsEditor::effectOf(int index) const
{
    switch (index) {
    case 0: {
        const int v = SCPosterize->value();
        return {QStringLiteral("posterize %1").arg(v),
                [v](const QImage &i, double) { return effects::posterize(i, v); }};
    }
    case 1: {
        const int v = SCMosiac->value();
        return {QStringLiteral("mosaic %1").arg(v),
                [v](const QImage &i, double s) { return effects::mosaic(i, scaled(v, s)); }};
    }
    case 2: {
        const int v = SCMedian->value();
        return {QStringLiteral("median %1").arg(v),
                [v](const QImage &i, double) { return effects::median(i, v); }};
    }
    case 3: {
        const int v = SCSharpen->value();
        return {QStringLiteral("sharpen %1").arg(v),
                [v](const QImage &i, double) { return effects::sharpen(i, v); }};
    }
    case 4: {
        // Noise is random: no two runs are the same step.
        static quint64 serial = 0;
        const int v = SCNoise->value(), ch = int(NoiseChannel);
        return {QStringLiteral("noise %1 %2 #%3").arg(v).arg(ch).arg(++serial),
                [v, ch](const QImage &i, double) { return effects::noise(i, v, ch); }};
    }
    default: {
        const int v = SCEmboss->value(), d = EmbossDirection;
        return {QStringLiteral("emboss %1 %2").arg(d).arg(v),
                [v, d](const QImage &i, double) { return effects::emboss(i, d, v); }};
    }
    }
}

void EffectsEditor::effectChanged(int index)
{
    const EditStep step = effectOf(index);
    runOnCurrent(step.key, step.run);
    if (index == 2) busyPointerUntilShown();
    QScrollBar *bars[] = {SCPosterize, SCMosiac, SCMedian, SCSharpen, SCNoise, SCEmboss};
    Label3[index]->setText(QString::number(bars[index]->value()));
    if (index == 1) LastMosaic = SCMosiac->value();
    EditChanged = true;
}

void EffectsEditor::rotateChanged()
{
    const int value = SCRotateFree->value();
    const int delta = value - RotatePosition;
    const QRgb back = RotateBackColor;
    runOnCurrent(QStringLiteral("rotate %1 %2").arg(delta * 100).arg(back),
                 [delta, back](const QImage &i, double) { return effects::rotate(i, delta * 100, back); });
    Text1->setText(QString::number(value));
    RotatePosition = value;
    RotateDegrees = Text1->text().trimmed().toInt();
    EditChanged = true;
}

void EffectsEditor::List1_Click()
{
    if (FirstActivation) return;
    const int row = List1->currentRow();
    if (row >= 0 && row <= 7) EmbossDirection = row;
    const int v = SCEmboss->value(), d = EmbossDirection;
    runOnCurrent(QStringLiteral("emboss %1 %2").arg(d).arg(v),
                 [v, d](const QImage &i, double) { return effects::emboss(i, d, v); });
}

void EffectsEditor::AcceptBtn_Click(int index)
{
    if (index >= 0 && index <= 5) {
        const EditStep step = effectOf(index);
        runOnCurrent(step.key, step.run);
        if (index == 2) busyPointerUntilShown();
        SnapshotForUndo();
        PaintOn();
    } else if (index == 6) {
        currentFromUndo();
        const int degrees = RotateDegrees;
        const QRgb back = RotateBackColor;
        runOnCurrent(
            QStringLiteral("rotate %1 %2").arg(degrees * 100).arg(back),
            [degrees, back](const QImage &i, double) { return effects::rotate(i, degrees * 100, back); });
        clearRotation();
        SnapshotForUndo();
        PaintOn();
    }
    EditChanged = true;
}

void EffectsEditor::RotateAngle_Click(int index)
{
    if (index < 0 || index > 2) return;
    SnapshotForUndo();
    const int turn = (index + 1) * 9000;
    const QRgb back = RotateBackColor;
    runOnCurrent(QStringLiteral("rotate %1 %2").arg(turn).arg(back),
                 [turn, back](const QImage &i, double) { return effects::rotate(i, turn, back); });
    EditChanged = true;
    PaintOn();
}

void EffectsEditor::FlipBtn_Click()
{
    SnapshotForUndo();
    runOnCurrent(QStringLiteral("flip"), [](const QImage &i, double) { return effects::flip(i); });
    EditChanged = true;
    PaintOn();
}

void EffectsEditor::ReverseBtn_Click()
{
    SnapshotForUndo();
    runOnCurrent(QStringLiteral("reverse"), [](const QImage &i, double) { return effects::reverse(i); });
    EditChanged = true;
    PaintOn();
}

void EffectsEditor::RColorBtn_Click()
{
    const QColor start(RotateBackColor);
    const QColor c =
        QColorDialog::getColor(start, this, QStringLiteral("Select Color for Rotate Image Background"));
    RotateBackColor = (c.isValid() ? c : start).rgb();
    paintText1();
}

void EffectsEditor::ResetEffectSliders()
{
    SCEmboss->setValue(500);
    SCMedian->setValue(3);
    SCMosiac->setValue(2);
    SCNoise->setValue(500);
    SCPosterize->setValue(2);
    SCSharpen->setValue(0);
    SCRotateFree->setValue(0);
    LastMosaic = 2;
}

void EffectsEditor::RestoreBtn_Click()
{
    ResetEffectSliders();
    currentFromOriginal();
    SnapshotForUndo();
    PaintOn();
    EditChanged = false;
}

}  // namespace tw
