#include "pictures/pictures_module.h"

#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/looks.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"
#include "core/colors.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "pictures/imaging_control.h"
#include "pictures/prompts.h"
#include "pictures/value_dialogs.h"

#include <QColorDialog>
#include <QFrame>
#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPushButton>
#include <QTime>
#include <QVBoxLayout>
#include <cmath>

namespace tw {

namespace {

const QString kViewNormal = tool::ViewNormal;
const QString kViewStretch = tool::ViewStretch;
const QString kViewSnap = tool::ViewSnap;
const QString kViewFit = tool::ViewFitImage;
const QString kViewZoom = tool::ViewZoom;
const QString kViewMagnify = tool::ViewMagnify;
const QString kViewPan = tool::ViewPan;

constexpr int kTwips = ImagingControl::TwipsPerPixel;

QString boolText(bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); }

}  // namespace

PicturesModule::PicturesModule(PageHost &host) : TabPage(host, 2)
{
    setObjectName(QStringLiteral("PicturesModule"));
    registerRoutines();
}

QMainWindow &PicturesModule::win() const { return *host_.window(); }

void PicturesModule::build(QWidget *panel)
{
    // The picture panel Frame1(0) fills the tab; the picture history List3 stays out of sight.
    auto *p2 = new QVBoxLayout(panel);
    p2->setContentsMargins(0, 0, 0, 0);
    QFrame *pictureFrame = new QFrame(panel);
    pictureFrame->setObjectName(QStringLiteral("Frame1_0"));
    pictureFrame->setAutoFillBackground(true);
    p2->addWidget(pictureFrame);
    frame_ = pictureFrame;
    setHelpTopic(panel, QStringLiteral("pictures"));
    List3 = new QListWidget(panel);
    List3->setObjectName(QStringLiteral("List3"));
    List3->hide();

    Image1 = new ImagingControl(pictureFrame);
    Image1->setObjectName(QStringLiteral("Image1"));
    Image1->move(0, 0);
    Image1->resize(pictureFrame->size());
    Image2 = new ImagingControl(pictureFrame);
    Image2->setObjectName(QStringLiteral("Image2"));
    Image2->hide();
    Image3 = new ImagingControl(pictureFrame);
    Image3->setObjectName(QStringLiteral("Image3"));
    Image3->hide();

    Text5 = new QLabel(pictureFrame);
    Text5->setObjectName(QStringLiteral("Text5"));
    Text5->setFixedSize(1, 1);
    Text5->setFocusPolicy(Qt::StrongFocus);

    Frame5 = new QFrame(pictureFrame);
    Frame5->setObjectName(QStringLiteral("Frame5"));
    Frame5->setFrameShape(QFrame::StyledPanel);
    Frame5->setAutoFillBackground(true);
    auto *lay = new QVBoxLayout(Frame5);
    auto *label =
        new QLabel(QStringLiteral("Loading File on the Internet - This may take a few Minutes."), Frame5);
    label->setObjectName(QStringLiteral("Label5"));
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    lay->addWidget(label);
    Frame5->setGeometry(20, 20, 360, 80);
    Frame5->hide();

    // The button over the picture that goes back to the tab before; it can be dragged.
    ToggleBtn = new QPushButton(pictureFrame);
    ToggleBtn->setObjectName(QStringLiteral("ToggleBtn"));
    ToggleBtn->setToolTip(QStringLiteral("Go Back to Previous Tab"));
    ToggleBtn->setIcon(QIcon(G.ProgramDir + QStringLiteral("/BMPS/ThumbToggle.Bmp")));
    ToggleBtn->setFixedSize(24, 24);
    ToggleBtn->move(4, 4);
    ToggleBtn->installEventFilter(this);
    ToggleBtn->raise();
    connect(ToggleBtn, &QPushButton::clicked, this, [this] { host_.BackToPreviousTab(); });

    connect(Image1, &ImagingControl::clicked, this, &PicturesModule::Image1_Click);
    connect(Image1, &ImagingControl::doubleClicked, this, &PicturesModule::Image1_DblClick);
    connect(Image1, &ImagingControl::keyDown, this, &PicturesModule::Image1_KeyDown);
    connect(Image1, &ImagingControl::mouseUp, this,
            [this](int button, int, double, double) { Image1_MouseUp(button); });
    connect(Image1, &ImagingControl::readyStateChanged, this, &PicturesModule::Image1_ReadyStateChange);
    connect(Image1, &ImagingControl::loadFinished, this, &PicturesModule::FinishInternetPicture);
}

void PicturesModule::registerRoutines()
{
    auto noArgs = [](std::function<void()> f) {
        return [f](const QStringList &) {
            f();
            return QString();
        };
    };
    registerScenarioRoutine(QStringLiteral("SetPictureChanged"), [this](const QStringList &a) {
        const QString v = a.value(0).toLower();
        PictureChanged = v == QLatin1String("true") || v == QLatin1String("1");
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("ResetPicture"), noArgs([this] { ResetPicture(); }));
    registerScenarioRoutine(QStringLiteral("ResizeImage"), noArgs([this] { ResizeImage(); }));
    registerScenarioRoutine(QStringLiteral("FinishInternetPicture"),
                            noArgs([this] { FinishInternetPicture(); }));
    registerScenarioRoutine(QStringLiteral("CheckInternetPicture"),
                            noArgs([this] { CheckInternetPicture(); }));
    registerScenarioRoutine(QStringLiteral("SnapWindow"), noArgs([this] { SnapWindow(); }));
    registerScenarioRoutine(QStringLiteral("StartMagnify"), noArgs([this] { StartMagnify(); }));
    registerScenarioRoutine(QStringLiteral("StopMagnify"), noArgs([this] { StopMagnify(); }));
    // Sets a number of the picture side, or the page of the next load, as another window
    // of the program would (the open dialog sets the page, for one).
    registerScenarioRoutine(QStringLiteral("SetPictureNumber"), [this](const QStringList &a) {
        const QString n = a.value(0);
        bool ok = false;
        const double v = a.value(1).toDouble(&ok);
        if (!ok) return QStringLiteral("not a number: ") + a.value(1);
        if (n == QLatin1String("CurrentPage")) G.CurrentPage = int32_t(v);
        else if (n == QLatin1String("ZoomValue")) ZoomValue = int(v);
        else if (n == QLatin1String("FetchStart")) FetchStart = int32_t(v);
        else if (n == QLatin1String("Clock")) Clock = [v] { return v; };
        else if (n == QLatin1String("ZoomPercent")) Image1->setZoomPercent(int(v));
        else return QStringLiteral("no settable number ") + n;
        return QString();
    });
    // Marks an elliptical region on the picture, as the user's drag does (bitmap pixels).
    registerScenarioRoutine(QStringLiteral("MarkRegion"), [this](const QStringList &a) {
        if (a.size() < 4) return QStringLiteral("MarkRegion left top width height");
        Image1->setEllipseRegion(QRectF(a[0].toDouble(), a[1].toDouble(), a[2].toDouble(), a[3].toDouble()));
        return QString();
    });
}

PicturesModule::~PicturesModule() = default;

double PicturesModule::secondsNow() const
{
    if (Clock) return Clock();
    return QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
}

void PicturesModule::setTool(const QString &id, bool on)
{
    // A view tool's state set from code runs its command only when the state changes: a
    // tool already in that state just keeps it. The state compared is the tool's own, as
    // last set here or by the user's press of that tool; the check mark that an option
    // group moves off a tool when another of the group is pressed does not count, so a
    // pan window still open when the glass is pressed is closed through its tool.
    const bool was = toolState_.contains(id) ? toolState_.value(id) : host_.tools().isChecked(id);
    toolState_.insert(id, on);
    if (was == on && !G.SuppressToolCommand) {
        SuppressTools quiet;
        host_.tools().setChecked(id, on);
        return;
    }
    host_.tools().setChecked(id, on);
}

void PicturesModule::setFormPointer(int pointer)
{
    if (pointer == ImagingControl::PointerHourglass) win().setCursor(Qt::WaitCursor);
    else win().unsetCursor();
    win().setProperty("MousePointer", pointer);
}

void PicturesModule::setPointers(int pointer)
{
    setFormPointer(pointer);
    Image1->setMousePointer(pointer);
}

QStringList PicturesModule::handledTools() const
{
    return {kViewNormal,
            kViewStretch,
            kViewSnap,
            kViewFit,
            kViewZoom,
            kViewMagnify,
            kViewPan,
            tool::mnuImageReset,
            tool::mnuCopy,
            tool::mnuRemoveRed_Eye,
            tool::mnuBrightness,
            tool::mnuContrast,
            tool::Resize,
            tool::mnuImageViewDropDown};
}

bool PicturesModule::pictureWithoutFile() const { return AcquiredPicture && Image1->bitsPerPixel() > 0; }

void PicturesModule::applyColors()
{
    if (!built()) return;
    const ColorSettings &c = G.Colors;
    paintWidget(List3, c.ListBack, c.ListText);
    QPalette pal = Text5->palette();
    paintPalette(pal, c.PictureBack, c.PictureText);
    Text5->setPalette(pal);
    QPalette fp = frame_->palette();
    paintPalette(fp, c.PictureBack, c.PictureText);
    frame_->setPalette(fp);
}

bool PicturesModule::variableText(const QString &n, QString *out) const
{
    if (n == QLatin1String("PictureChanged")) {
        *out = boolText(PictureChanged);
        return true;
    }
    if (n == QLatin1String("PictureResized")) {
        *out = boolText(PictureResized);
        return true;
    }
    if (n == QLatin1String("ToggleBtnLeft") || n == QLatin1String("ToggleBtnTop")) {
        if (!ToggleBtn) return false;
        *out = QString::number(n.endsWith(QLatin1String("Left")) ? ToggleBtn->x() : ToggleBtn->y());
        return true;
    }
    if (!Image1) return false;  // the picture side is made on first need
    if (n == QLatin1String("AcquiredPicture")) *out = boolText(AcquiredPicture);
    else if (n == QLatin1String("FetchStart")) *out = QString::number(FetchStart);
    else if (n == QLatin1String("FetchPending")) *out = boolText(FetchPending);
    else if (n == QLatin1String("ReadyEventSeen")) *out = boolText(ReadyEventSeen);
    else if (n == QLatin1String("StretchOn")) *out = boolText(StretchOn);
    else if (n == QLatin1String("MagnifyOn")) *out = boolText(MagnifyOn);
    else if (n == QLatin1String("PanOn")) *out = boolText(PanOn);
    else if (n == QLatin1String("ZoomValue")) *out = QString::number(ZoomValue);
    else if (n == QLatin1String("AnimatedPicture")) *out = boolText(AnimatedPicture);
    else if (n == QLatin1String("LastPicturePath")) *out = LastPicturePath;
    else if (n == QLatin1String("RedEyePending")) *out = boolText(RedEyePending);
    // What the imaging controls show, for scenarios that look at the picture itself.
    else if (n == QLatin1String("Image1_SizeMode")) *out = QString::number(Image1->sizeMode());
    else if (n == QLatin1String("Image1_ZoomPercent")) *out = QString::number(Image1->zoomPercent());
    else if (n == QLatin1String("Image1_BitsPerPixel")) *out = QString::number(Image1->bitsPerPixel());
    else if (n == QLatin1String("Image1_PixelWidth")) *out = QString::number(Image1->pixelWidth());
    else if (n == QLatin1String("Image1_PixelHeight")) *out = QString::number(Image1->pixelHeight());
    else if (n == QLatin1String("Image1_Visible")) *out = boolText(Image1->isVisibleTo(frame_));
    else if (n == QLatin1String("Image1_AutoRepaint")) *out = boolText(Image1->autoRepaint());
    else if (n == QLatin1String("Image1_AnimationPlay")) *out = boolText(Image1->animationPlay());
    else if (n == QLatin1String("Image1_AnimationLoop")) *out = boolText(Image1->animationLoop());
    else if (n == QLatin1String("Image1_DragPan")) *out = boolText(Image1->dragPan());
    else if (n == QLatin1String("Image1_MousePointer")) *out = QString::number(Image1->mousePointer());
    else if (n == QLatin1String("Form_MousePointer"))
        *out = QString::number(win().property("MousePointer").toInt());
    else if (n == QLatin1String("Image1_BackColor")) *out = QString::number(Image1->backColor());
    else if (n == QLatin1String("Image1_Frames")) *out = QString::number(Image1->picture().frames.size());
    else if (n == QLatin1String("Image1_RegionMarking")) *out = QString::number(Image1->regionMarking());
    else if (n == QLatin1String("Image1_HasRegion")) *out = boolText(Image1->hasRegion());
    else if (n == QLatin1String("Image1_Magnifier")) *out = boolText(Image1->magnifierOn());
    else if (n == QLatin1String("Image1_ReadyState")) *out = QString::number(Image1->readyState());
    else if (n == QLatin1String("Image1_SourceAddress")) *out = Image1->sourceAddress();
    else if (n == QLatin1String("Image1_Width")) *out = QString::number(Image1->width());
    else if (n == QLatin1String("Image1_Height")) *out = QString::number(Image1->height());
    else if (n == QLatin1String("Image1_CentrePixel")) {
        const QImage img = Image1->image();
        *out = img.isNull()
            ? QString()
            : QString::number(fromQColor(QColor(img.pixel(img.width() / 2, img.height() / 2))));
    } else if (n == QLatin1String("Image2_PixelWidth")) *out = QString::number(Image2->pixelWidth());
    else if (n == QLatin1String("PanWindow_Visible"))
        *out = boolText(Image1->panWindow() && Image1->panWindow()->isVisible());
    else if (n == QLatin1String("PanWindow_Left")) *out = QString::number(Image1->panWindowProps().left);
    else if (n == QLatin1String("PanWindow_Top")) *out = QString::number(Image1->panWindowProps().top);
    else if (n == QLatin1String("PanWindow_Caption")) *out = Image1->panWindowProps().caption;
    else if (n == QLatin1String("FormWidth")) *out = QString::number(win().width());
    else if (n == QLatin1String("FormHeight")) *out = QString::number(win().height());
    else if (n == QLatin1String("CurrentPage")) *out = QString::number(G.CurrentPage);
    else return false;
    return true;
}

// ---------------------------------------------------------------- loading

void PicturesModule::LoadImage(const QString &path)
{
    ensureBuilt();
    // 1. The save guard: the prompt names the picture on show; No or a failed save go on.
    offerToSavePicture();
    // 2.
    PictureChanged = false;
    AcquiredPicture = false;
    G.InternetPictureLoaded = false;

    // 3. A picture on the Internet: the control fetches it and reports by its events.
    if (G.FromInternet) {
        setPointers(ImagingControl::PointerHourglass);
        Frame5->show();
        Frame5->raise();
        FetchStart = int32_t(std::lround(secondsNow()));
        Image1->setSourceAddress(path);
        G.CurrentFile = path;
        if (!ReadyEventSeen) FetchPending = true;
        ReadyEventSeen = false;
        Image1->hide();
        if (G.Options.AutoPicture) host_.selectTab(2);
        LastPicturePath = path;
        return;
    }

    // 4. A file. Any failure ends the routine here, silently.
    int status;
    if (G.CurrentExt == QLatin1String("ANI") || G.CurrentExt == QLatin1String("FLC")) {
        AnimatedPicture = true;
        status = Image1->load(path, 0, 0, -1);
    } else {
        status = Image1->load(path, 0, G.CurrentPage, 1);
    }
    if (status != 0) return;
    if (Image1->getFileInfo(path, G.CurrentPage, 0) != 0) return;
    if (!Image1->isVisible()) Image1->show();
    Image2->assignFrom(*Image1);
    ResetPicture();
    Image1->setBackColor(G.Colors.PictureBack);
    Image1->setSecondColor(G.Colors.PictureText);
    G.CurrentFile = path;
    LastPicturePath = path;
    if (!IsInViewList(path)) {
        List3->addItem(path);
        List3->setCurrentRow(List3->count() - 1);
    }
    G.SelectedFile = path;
    QListWidgetItem *current = List3->currentItem();
    const QString currentPath = current ? current->text() : QString();
    if (!currentPath.isEmpty()) host_.AddViewMenuItem(currentPath);
    {
        SuppressTools quiet;
        if (!currentPath.isEmpty()) setTool(currentPath, true);
        setTool(kViewFit, false);
        setTool(kViewStretch, false);
        setTool(kViewSnap, false);
        setTool(kViewZoom, false);
        setTool(kViewNormal, true);
    }
    if (!host_.state().StartingUp && G.Options.AutoPicture) host_.selectTab(2);
}

bool PicturesModule::IsInViewList(const QString &path) const
{
    for (int i = 0; i < List3->count(); ++i)
        if (List3->item(i)->text() == path) return true;
    return false;
}

void PicturesModule::ResetPicture()
{
    if (MagnifyOn) StopMagnify();
    Image1->setAppearance3D(0);
    Image1->setBorderStyle(1);
    Image1->setAppearance3D(1);
    Image1->setBackColor(0xFFFFFF);
    Image1->setDisplayOption(0);
    Image1->setPainting(true);
    Image1->setAutoSize(true);
    Image1->setAutoRepaint(true);
    Image1->setDragPan(true);
    // Once an animation has been opened, every later picture gets the animation settings
    // too: the flag is never cleared.
    if (AnimatedPicture) {
        Image1->setAnimationPlay(true);
        Image1->setAnimationLoop(true);
        Image1->setAutoRepaint(false);
    }
    Image1->setSizeMode(ImagingControl::SizeNormal);
    ZoomValue = 100;
    ResizeImage();
}

void PicturesModule::ResizeImage()
{
    if (host_.state().StartingUp) return;
    Image1->setScaleUnit(ImagingControl::UnitTwips);
    const double H = frame_->height() * kTwips;
    const double W = frame_->width() * kTwips;
    // Strict tests: a bitmap exactly 600 twips short of the panel's height fits.
    if (H - 600 < Image1->bitmapHeight() || W - 200 < Image1->bitmapWidth()) {
        Image1->setControlHeight(H - 100);
        Image1->setControlWidth(W - 75);
    }
    Image1->setScaleUnit(ImagingControl::UnitPixels);
    Text5->move(int(Image1->controlLeft() + Image1->controlWidth() + 10),
                int(Image1->controlTop() + Image1->controlHeight() + 10));
}

// ---------------------------------------------------------------- the Internet

void PicturesModule::Image1_ReadyStateChange(int state)
{
    ReadyEventSeen = true;
    switch (state) {
    case ImagingControl::ReadyComplete:
        Image1->setAutoRepaint(true);
        Image1->setSizeMode(ImagingControl::SizeFit);
        Image1->redraw();
        Frame5->hide();
        Image1->setMousePointer(0);
        Image1->show();
        setFormPointer(0);
        PictureChanged = true;
        FetchPending = false;
        FetchStart = int32_t(std::lround(secondsNow()));
        break;
    case ImagingControl::ReadyUninitialised:
    case ImagingControl::ReadyInteractive:
        inform(QStringLiteral("Error Loading Picture"), AppTitle, host_.window());
        break;
    case ImagingControl::ReadyLoading:
        FetchPending = true;
        break;
    default:
        break;
    }
}

void PicturesModule::FinishInternetPicture()
{
    if (!G.FromInternet) return;
    setPointers(0);
    Image1->show();
    ResetPicture();
    G.SelectedFile = G.CurrentFile;
    G.FromInternet = false;
    G.InternetPictureLoaded = true;
}

void PicturesModule::CheckInternetPicture()
{
    if (!FetchPending) return;
    if (!(secondsNow() - FetchStart > 90)) return;
    if (Image1->readyState() == ImagingControl::ReadyLoading) return;
    inform(QStringLiteral("Picture Not found on the Internet"), AppTitle, host_.window());
    // The remote file list forgets the address.
    if (RemoveRemoteAddress) RemoveRemoteAddress(Image1->sourceAddress().trimmed());
    Frame5->hide();
    setPointers(0);
    FetchPending = false;
    PictureChanged = false;
}

void PicturesModule::entering()
{
    onEnterPicturesTab();
    if (!G.CurrentFile.trimmed().isEmpty()) G.SelectedFile = G.CurrentFile;
    host_.tools().setToolbarVisible(3, true);
    if (List3->currentRow() >= 0) host_.tools().press(List3->currentItem()->text());
    // Last: a remote picture still owed its verdict.
    CheckInternetPicture();
}

QString PicturesModule::tabTitle() const { return G.SelectedFile + QStringLiteral(" - ") + AppTitle; }

void PicturesModule::entered()
{
    if (Image1 && Image1->isVisible()) Image1->setFocus();
}

void PicturesModule::layout()
{
    if (built() && host_.selectedTab() == 2) ResizeImage();
}

void PicturesModule::shutDown()
{
    // 2. A changed picture is offered for saving (the window asks this before the settings).
}

bool PicturesModule::pictureChanged() const { return PictureChanged; }

void PicturesModule::offerToSavePicture()
{
    if (!PictureChanged) return;
    if (askYesNo(QStringLiteral("Do you want to Save the Current Picture - ") + G.CurrentFile
                     + QStringLiteral(" ? "),
                 AppTitle, host_.window()))
        SaveFileAs(G.CurrentFile);
}

void PicturesModule::LoadFolderPictures()
{
    ensureBuilt();
    if (List3->count() != 0) return;
    ExplorerSide *ex = host_.explorer();
    if (!ex) return;
    for (const QString &p : ex->listItemPaths()) {
        if (p.trimmed().isEmpty() || host_.FileMissing(p)) continue;
        if (IsPictureExt(GetFileExt(p))) List3->addItem(p);
    }
    if (List3->count() > 0) {
        List3->setCurrentRow(0);
        host_.LoadImage(List3->item(0)->text());
    }
}

QWidget *PicturesModule::pictureWidget() const { return Image1; }

QListWidget *PicturesModule::history() { return List3; }

void PicturesModule::addLoaders(FileLoaders &loaders)
{
    loaders.set(LoaderKind::Image, [this](const QString &path) { LoadImage(path); });
}

bool PicturesModule::eventFilter(QObject *o, QEvent *e)
{
    if (o != ToggleBtn) return QObject::eventFilter(o, e);
    const double now = QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
    switch (e->type()) {
    case QEvent::MouseButtonPress:
        if (static_cast<QMouseEvent *>(e)->button() == Qt::LeftButton) toggleDrag_.mouseDown(now);
        break;
    case QEvent::MouseMove:
        if (toggleDrag_.dragging()) return true;
        if (toggleDrag_.mouseMove(now)) {
            ToggleBtn->setCursor(Qt::ClosedHandCursor);
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
        if (toggleDrag_.dragging()) {
            auto *me = static_cast<QMouseEvent *>(e);
            const QPoint global = ToggleBtn->mapToGlobal(me->position().toPoint());
            const bool over =
                Image1 && Image1->isVisible() && Image1->rect().contains(Image1->mapFromGlobal(global));
            const QPoint inFrame = frame_->mapFromGlobal(global);
            if (toggleDrag_.drop(over)) ToggleBtn->move(inFrame);
            ToggleBtn->unsetCursor();
            ToggleBtn->setDown(false);
            return true;  // a drag is no click
        }
        toggleDrag_.mouseUp();
        break;
    default:
        break;
    }
    return QObject::eventFilter(o, e);
}

void PicturesModule::onEnterPicturesTab()
{
    const int rows = List3->count();
    if (rows == 0 && !pictureWithoutFile()) Image1->hide();
    if (rows > 0 && !G.FromInternet) Image1->show();
}

// ---------------------------------------------------------------- view commands

bool PicturesModule::toolClick(const QString &id)
{
    if (!built()) return false;
    if (id == kViewNormal || id == kViewStretch || id == kViewFit || id == kViewSnap || id == kViewZoom
        || id == kViewMagnify || id == kViewPan)
        toolState_.insert(id, host_.tools().isChecked(id));
    if (id == kViewNormal) ViewNormal();
    else if (id == kViewStretch) ViewStretch();
    else if (id == kViewFit) ViewFit();
    else if (id == kViewSnap) ViewSnap();
    else if (id == kViewZoom) ViewZoom();
    else if (id == kViewMagnify) ToggleMagnify();
    else if (id == kViewPan) ViewPan();
    else if (id == tool::mnuRemoveRed_Eye) RemoveRedEye();
    else if (id == tool::mnuBrightness) AdjustBrightness();
    else if (id == tool::mnuContrast) AdjustContrast();
    else if (id == tool::mnuImageReset) ImageReset();
    else if (id == tool::Resize) ResizePicture();
    else if (id == tool::mnuCopy) {
        // The picture half of Copy; the text half belongs to the documents tab.
        if (host_.selectedTab() != 2) return false;
        CopyPicture();
    } else return false;
    return true;
}

void PicturesModule::stopGlassQuietly()
{
    Image1->stopMagnifier();
    Image1->setDragPan(true);
    MagnifyOn = false;
    setTool(kViewMagnify, false);
}

void PicturesModule::ViewNormal()
{
    if (win().isMinimized()) return;
    Image1->setSizeMode(ImagingControl::SizeNormal);
    StretchOn = false;
    ResizeImage();
}

void PicturesModule::ViewStretch()
{
    {
        SuppressTools quiet;
        if (MagnifyOn) stopGlassQuietly();
        Image1->setPainting(true);
        Image1->setAutoSize(false);
        Image1->setDragPan(true);
        Image1->setSizeMode(ImagingControl::SizeStretch);
        Image1->showPanWindow(false);
        setTool(kViewPan, false);
        setTool(kViewNormal, false);
        ResizeImage();
    }
    StretchOn = true;
}

void PicturesModule::ViewFit()
{
    if (MagnifyOn) {
        SuppressTools quiet;
        stopGlassQuietly();
    }
    Image1->setAutoSize(false);
    Image1->resize(std::max(0, int(std::lround((frame_->width() * kTwips - 475.0) / kTwips))),
                   std::max(0, int(std::lround((frame_->height() * kTwips - 450.0) / kTwips))));
    Image1->setSizeMode(ImagingControl::SizeFit);
    Image1->setAutoSize(true);
}

void PicturesModule::ViewSnap()
{
    if (MagnifyOn) {
        SuppressTools quiet;
        stopGlassQuietly();
    }
    SnapWindow();
}

void PicturesModule::SnapWindow()
{
    if (win().isMinimized() || win().isMaximized() || win().isFullScreen()) return;
    // Twips: the outer window is the inner area plus its frame; the new outer size holds
    // the bitmap in the inner area. Tool bars and tabs are not allowed for.
    const double t = kTwips;
    const QRect outer = win().frameGeometry();
    const double windowW = outer.width() * t, windowH = outer.height() * t;
    const double newW = std::round(Image1->pixelWidth() * t + (windowW - win().width() * t));
    const double newH = std::round(Image1->pixelHeight() * t + (windowH - win().height() * t));
    const int frameW = outer.width() - win().width(), frameH = outer.height() - win().height();
    win().resize(std::max(1, int(std::lround(newW / t)) - frameW),
                 std::max(1, int(std::lround(newH / t)) - frameH));
}

// ---------------------------------------------------------------- zoom

void PicturesModule::ViewZoom()
{
    NewValue1 dlg(host_.window());
    ZoomValue = Image1->zoomPercent();
    bool showResize = false;
    const int16_t start = ZoomValue > 0 ? int16_t(std::min(ZoomValue, 32767)) : int16_t(100);
    dlg.Setup(QStringLiteral("Zoom In/Out"), QStringLiteral("Whole Percent:"), 800, 1, start, 100, 10,
              showResize);
    dlg.exec();
    if (dlg.GetAccepted()) {
        // ZoomValue stays at the value the prompt opened with: the keyboard zoom goes on
        // from there.
        Image1->setZoomPercent(dlg.GetValue());
        ResizeImage();
    }
}

void PicturesModule::Image1_KeyDown(int keyCode, int)
{
    if (keyCode != 107 && keyCode != 109) return;
    ZoomValue += keyCode == 107 ? 5 : -5;
    if (ZoomValue < 1) ZoomValue = 1;
    Image1->setZoomPercent(ZoomValue);
    const double tx = kTwips, ty = kTwips;
    const double iw = win().width(), ih = win().height();  // inner area, pixels
    const double pw = Image1->pixelWidth(), ph = Image1->pixelHeight();
    // The zoomed picture against the inner area, both in twips; the window grows to hold
    // it and never shrinks here.
    if (ZoomValue * ph / 100.0 * ty > ih * ty || ZoomValue * pw / 100.0 * tx > iw * tx) {
        const QRect outer = win().frameGeometry();
        const double newW = ZoomValue * (pw * tx) / 100.0 + (outer.width() * tx - iw * tx);
        const double newH = ZoomValue * (ph * ty) / 100.0 + (outer.height() * ty - ih * ty);
        const int frameW = outer.width() - win().width(), frameH = outer.height() - win().height();
        const double wpx = std::min(newW / tx - frameW, 1.0e6), hpx = std::min(newH / ty - frameH, 1.0e6);
        win().resize(std::max(1, int(wpx)), std::max(1, int(hpx)));
    }
    ResizeImage();
}

// ---------------------------------------------------------------- magnify and pan

void PicturesModule::ToggleMagnify()
{
    if (!MagnifyOn) StartMagnify();
    else StopMagnify();
}

void PicturesModule::StartMagnify()
{
    if (PanOn) setTool(kViewPan, false);  // runs ViewPan, which closes the pan window
    Image1->setDragPan(false);
    if (StretchOn) {
        setTool(kViewNormal, true);  // runs the Normal command
        StretchOn = false;
    }
    Image1->startMagnifier(150.0, 100.0, 200, 0, Image1->backColor(), false, 1.0, true, 1, true, true);
    MagnifyOn = true;
}

void PicturesModule::StopMagnify()
{
    {
        SuppressTools quiet;
        setTool(kViewMagnify, false);
    }
    Image1->stopMagnifier();
    Image1->setDragPan(true);
    MagnifyOn = false;
}

void PicturesModule::ViewPan()
{
    if (!PanOn) {
        {
            // The two tool states change silently, or Magnify's would start the glass again
            // and Pan's would come back into this routine without end; the stop of the glass
            // inside keeps the flag on for them.
            SuppressTools quiet;
            if (MagnifyOn) StopMagnify();
            setTool(kViewMagnify, false);
            setTool(kViewPan, true);
        }
        ImagingControl::PanWindowProps &p = Image1->panWindowProps();
        p.left = win().x() + 100;
        p.top = win().x() + 100;  // the window's left edge, not its top: as designed
        p.width = 150;
        p.height = 200;
        p.icon = win().windowIcon();
        p.caption = QStringLiteral("Pan Window");
        p.rectColor = 255;
        p.systemMenu = true;
        p.display1 = Image1->sizeMode();
        p.display2 = Image1->zoomPercent();
        p.display3 = Image1->displayOption();
        const int result = Image1->showPanWindow(true);
        Image1->setDragPan(true);
        if (result == 0) PanOn = true;
    } else {
        Image1->showPanWindow(false);
        PanOn = false;
        SuppressTools quiet;
        setTool(kViewPan, false);
    }
}

// ---------------------------------------------------------------- mouse

void PicturesModule::Image1_DblClick()
{
    G.SuppressToolCommand = false;
    if (StretchOn) {
        setTool(kViewNormal, true);
        StretchOn = false;
        return;
    }
    Image1->setSizeMode(ImagingControl::SizeStretch);
    setTool(kViewStretch, true);
    StretchOn = true;
    if (G.FromInternet) {
        FinishInternetPicture();
    } else if (Image1->mousePointer() == ImagingControl::PointerHourglass
               || win().property("MousePointer").toInt() == ImagingControl::PointerHourglass) {
        setPointers(0);
    }
    if (MagnifyOn) {
        setPointers(0);
    } else {
        setTool(kViewStretch, true);
        setTool(kViewPan, false);
        StretchOn = true;
    }
}

void PicturesModule::Image1_MouseUp(int button)
{
    const bool togglingDrag = toggleDrag_.dragging();  // a drag of the toggle button holds the mouse
    if (button == 2 && MagnifyOn && !togglingDrag) ToggleMagnify();
    if (button == 2 && Image1->mousePointer() == ImagingControl::PointerCross && !togglingDrag)
        Image1->setMousePointer(0);
}

void PicturesModule::Image1_Click()
{
    if (!RedEyePending) return;
    mnuColorFill_Click();
    // In every case, a cancelled colour too: the picture counts as changed.
    Image1->setRegionMarking(0);
    Image1->setRegionFillStyle(0);
    Image1->freeRegion();
    Image1->setDragPan(true);
    PictureChanged = true;
    RedEyePending = false;
}

// ---------------------------------------------------------------- red-eye

void PicturesModule::RemoveRedEye()
{
    if (MagnifyOn) StopMagnify();
    RedEyePending = true;
    StartRegionMark();
}

void PicturesModule::StartRegionMark()
{
    if (MagnifyOn) StopMagnify();
    Image1->setRegionMarking(3);
    Image1->setDragPan(false);
}

void PicturesModule::mnuColorFill_Click()
{
    QColorDialog dlg(Qt::white, host_.window());
    dlg.setObjectName(QStringLiteral("ColorDialog"));
    dlg.setWindowTitle(QStringLiteral("Fill Color"));
    dlg.setOption(QColorDialog::DontUseNativeDialog, true);
    if (dlg.exec() != QDialog::Accepted) return;  // a cancel ends here, nothing filled
    Image1->fillRegion(fromQColor(dlg.selectedColor()));
    PictureChanged = true;
}

// ---------------------------------------------------------------- brightness, contrast

void PicturesModule::AdjustBrightness()
{
    PictureAdjustDialog dlg(host_.window());
    dlg.setBold(G.Options.BoldFonts);
    dlg.Result = 0;
    dlg.setFlags(0x40000002);
    dlg.setPicture(Image1->image());
    const bool accepted = dlg.showFor(host_.window());
    dlg.setPicture(QImage());
    if (!accepted) return;  // a cancel leaves the picture and PictureChanged alone
    Image1->changeBrightness(dlg.Result);
    PictureChanged = true;
}

void PicturesModule::AdjustContrast()
{
    PictureAdjustDialog dlg(host_.window());
    dlg.Result = 0;
    dlg.setFlags(0x40000004);
    dlg.setPicture(Image1->image());
    const bool accepted = dlg.showFor(host_.window());
    dlg.setPicture(QImage());
    if (!accepted) return;
    Image1->changeContrast(dlg.Result);
    PictureChanged = true;
}

// ---------------------------------------------------------------- resize, reset, copy

void PicturesModule::ResizePicture()
{
    NewSize1 dlg(host_.window());
    if (Image1->hasRegion()) {
        // The dialog shows the marked region's size; nothing changes, even on OK.
        dlg.Setup(3, *Image1);
        dlg.exec();
        bool accepted, resample;
        int width, height;
        dlg.GetResult(accepted, width, height, resample);
        return;
    }
    dlg.Setup(0, *Image1);
    dlg.exec();
    bool accepted = false, resample = false;
    int width = 0, height = 0;
    dlg.GetResult(accepted, width, height, resample);
    if (!accepted) return;
    const int flags = resample ? 2 : 0;
    Image1->resizeBitmap(width, height, flags);
    PictureChanged = true;
    PictureResized = true;
    if (!win().isMinimized()) Image1->setSizeMode(ImagingControl::SizeNormal);
    SnapWindow();
    ResizeImage();
}

void PicturesModule::ImageReset()
{
    Image1->assignFrom(*Image2);
    ResizeImage();
}

void PicturesModule::CopyPicture()
{
    if (Image1->bitsPerPixel() > 0) Image1->copyToClipboard(14);
}

}  // namespace tw

namespace tw {
TW_REGISTER_PAGE(2, PicturesModule);
}  // namespace tw
