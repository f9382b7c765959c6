// The Slide Show tab: a show is built in four numbered steps (new or open; the files; the
// settings and effects; save and run). No toolbar shows on this tab, so its panel Frame1(5)
// keeps the date and time itself. The lists are the show: List7(0) the pictures, List7(1)
// the music, in show order.
#include "browse/shell_list.h"
#include "core/internal_drag.h"
#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/looks.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "core/tab_page.h"
#include "core/text_rules.h"
#include "core/tool_ids.h"
#include "pictures/picture_decoder.h"
#include "slideshow/slide_music.h"
#include "slideshow/effect_dialogs.h"
#include "slideshow/effect_image.h"
#include "slideshow/show_file.h"
#include "slideshow/slide_runner.h"
#include "slideshow/slide_show_files.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace tw {

namespace {

// A colour patch (Text2): a click asks for its colour.
class ColourPatch : public QLabel {
public:
    explicit ColourPatch(QWidget *parent) : QLabel(parent)
    {
        setAutoFillBackground(true);
        setFrameShape(QFrame::Box);
        setMinimumSize(24, 18);
    }
    void setColour(uint32_t c)
    {
        colour_ = c;
        QPalette p = palette();
        p.setColor(QPalette::Window, slides::bgr(c));
        setPalette(p);
    }
    uint32_t colour() const { return colour_; }
    std::function<void()> onClick;

protected:
    void mousePressEvent(QMouseEvent *e) override
    {
        if (e->button() == Qt::LeftButton && onClick) onClick();
    }

private:
    uint32_t colour_ = 0;
};

// The two lists of the show take drops of the favorite browser's drags.
class ShowList : public QListWidget {
public:
    explicit ShowList(QWidget *parent) : QListWidget(parent) { setAcceptDrops(true); }
    std::function<void(const QString &tag, const QStringList &files)> onDrop;

protected:
    void dragEnterEvent(QDragEnterEvent *e) override
    {
        // The program's own drags only: files from another program are refused at the door.
        if (e->mimeData()->hasFormat(QLatin1String(DragSourceMime))) e->acceptProposedAction();
    }
    void dragMoveEvent(QDragMoveEvent *e) override { e->acceptProposedAction(); }
    void dropEvent(QDropEvent *e) override
    {
        const ListDrop d = readDrop(e->mimeData());
        const QString &tag = d.tag;
        const QStringList &files = d.files;
        if (onDrop) onDrop(tag, files);
        e->acceptProposedAction();
    }
};

}  // namespace

class SlidePage : public TabPage, public slides::SlideShowFiles {
public:
    explicit SlidePage(PageHost &host) : TabPage(host, 5)
    {
        slides::installDefaultSlideDecoder();
        slides::installPlayerMusic();
        slides::registerRunnerScenarioHooks();
        registerScenarioRoutine(QStringLiteral("AddFile"), [this](const QStringList &a) {
            ensureBuilt();
            for (const QString &p : a) AddFile(p);
            return QString();
        });
        registerScenarioVariables(QStringLiteral("SlidePage"),
                                  [this](const QString &n, QString *out) { return builderVariable(n, out); });
    }
    ~SlidePage() override { unregisterScenarioVariables(QStringLiteral("SlidePage")); }

    QString tabTitle() const override
    {
        return AppTitle + QStringLiteral(" - Set Picture Slide Show with Music");
    }
    void applyColors() override
    {
        if (built()) paintWidget(Frame1_5, G.Colors.ServiceBack, G.Colors.ServiceText);
    }
    void entering() override
    {
        ensureBuilt();
        // The builder opens on the folder of the explorer's file list.
        if (ExplorerSide *ex = host_.explorer()) {
            const QString f = ex->listFolder();
            if (!f.isEmpty()) PTxShList2->setFolder(f);
        }
    }
    void reset() override
    {
        // The session's reset clears the slide-show editing state.
        SlideShowPath.clear();
        G.RunFromBuilder = false;
    }
    QStringList handledTools() const override
    {
        return {tool::mnuRunSlideShow, tool::mnuRunSlideShowonCurrentFolder};
    }
    bool toolClick(const QString &id) override
    {
        if (id == tool::mnuRunSlideShow) {
            slides::runSlideShow(host_, slides::SlideRunner::AskForFile, QString());
            return true;
        }
        if (id == tool::mnuRunSlideShowonCurrentFolder) {
            G.SlideShowOnFolder = true;
            slides::runSlideShow(host_, slides::SlideRunner::OnFolder, QString());
            G.SlideShowOnFolder = false;
            return true;
        }
        return false;
    }

    // Files a path in the show by the catalogue: pictures in List7(0), media in List7(1),
    // anything else dropped.
    void AddFile(const QString &path) override
    {
        ensureBuilt();
        const int list = slides::builderListFor(path);
        if (list < 0) return;
        List7[list]->addItem(path);
        BuilderList = list;
        SlideShowDirty = true;
    }

protected:
    void build(QWidget *panel) override;

private:
    QPushButton *button(const QString &name, const QString &caption, const QString &tip, QWidget *parent)
    {
        auto *b = new QPushButton(caption, parent);
        b->setObjectName(name);
        if (!tip.isEmpty()) b->setToolTip(tip);
        return b;
    }
    bool builderVariable(const QString &n, QString *out) const;
    void NewShow();
    void OpenShow();
    void SaveShow();
    void RunShow();
    bool ChooseShowFile(const QString &mode);
    bool LoadSlideShow();
    void SaveSlideShow();
    void RefreshEffects();
    void CopySettings();
    void fillFromSettings();
    void PaintChoice();
    void TransitionChoice();
    void Demonstrate();
    void demoNotify(int pass, int kind);
    void loadDemoPicture();
    void frameColour(int index);
    void highlight();
    void rightBtn();
    void leftBtn();
    void moveRow(int delta);
    void allBtn();
    void listDrop(const QString &tag, const QStringList &files);
    QListWidget *list() const { return List7[BuilderList]; }

    QFrame *Frame1_5 = nullptr;
    QLabel *Clock[2] = {};  // Label2(8), Label2(9)
    QGroupBox *ShowFrame = nullptr;
    ShellList *PTxShList2 = nullptr;
    QComboBox *CMBFILTER = nullptr, *CMBSSTIME = nullptr, *CMBSSPASS = nullptr;
    ShowList *List7[2] = {};
    ColourPatch *Text2[3] = {};
    QCheckBox *CHKFRAME = nullptr;
    QRadioButton *RDEFFECT[2] = {};
    QPushButton *SSRunBtn = nullptr, *DownBtn = nullptr;
    slides::EffectImage *Image4 = nullptr;

    // The builder's state.
    QString SlideShowPath;
    bool SlideShowDirty = false;
    QString ShowFileMode;
    int BuilderList = 0;
    QString SlideDemoPicture;
    slides::ShowSettings S;
    // The working values that the effect dialogs change; copied to S before a write.
    slides::EffectValues paint_, trans_;
    int EffectPassList[26] = {};
    bool DemoChanged = false;
    bool stopDemo_ = false;
};

void SlidePage::build(QWidget *panel)
{
    Frame1_5 = new QFrame(panel);
    Frame1_5->setObjectName(QStringLiteral("Frame1_5"));
    setHelpTopic(panel, QStringLiteral("slideshow"));
    auto *p5 = new QVBoxLayout(panel);
    p5->addWidget(Frame1_5);
    auto *f5 = new QVBoxLayout(Frame1_5);
    auto *clock = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
        Clock[i] = new QLabel(Frame1_5);
        Clock[i]->setObjectName(QStringLiteral("Label2_%1").arg(8 + i));
        clock->addWidget(Clock[i]);
    }
    clock->addStretch(1);
    setClockLabels(Clock[0], Clock[1], QStringLiteral("ClockOnSlide"));
    f5->addLayout(clock);

    ShowFrame = new QGroupBox(QStringLiteral("Slide Show File - "), Frame1_5);
    ShowFrame->setObjectName(QStringLiteral("SlideShowFrame"));
    f5->addWidget(ShowFrame, 1);
    auto *grid = new QGridLayout(ShowFrame);
    auto step = [&](int n, const QString &caption) {
        auto *l = new QLabel(caption, ShowFrame);
        l->setObjectName(QStringLiteral("StepLabel%1").arg(n));
        return l;
    };

    // 1. New or Open
    auto *s1 = new QVBoxLayout;
    s1->addWidget(step(1, QStringLiteral("1. New or Open")));
    auto *newBtn = button(QStringLiteral("NewShowBtn"), QStringLiteral("New"),
                          QStringLiteral("Create New Slide Show File"), ShowFrame);
    auto *openBtn = button(QStringLiteral("SSOpenBtn"), QStringLiteral("Open"),
                           QStringLiteral("Open Slide Show File"), ShowFrame);
    s1->addWidget(newBtn);
    s1->addWidget(openBtn);
    s1->addStretch(1);
    grid->addLayout(s1, 0, 0);

    // 2. Select Files for Slide Show
    auto *s2 = new QGridLayout;
    s2->addWidget(step(2, QStringLiteral("2. Select Files for Slide Show")), 0, 0, 1, 3);
    CMBFILTER = new QComboBox(ShowFrame);
    CMBFILTER->setObjectName(QStringLiteral("CMBFILTER"));
    CMBFILTER->setToolTip(QStringLiteral("Filter Files on Folder/File List"));
    for (int r = 0; r < FilterRows; ++r)
        CMBFILTER->addItem(Cat.FilterNames[size_t(r)].isEmpty() ? filterNameLiterals()[size_t(r)]
                                                                : Cat.FilterNames[size_t(r)],
                           (Cat.FilterPatterns[size_t(r)].isEmpty() ? filterPatternLiterals()[size_t(r)]
                                                                    : Cat.FilterPatterns[size_t(r)])
                               .trimmed());
    auto *goUp = button(QStringLiteral("GoUpBtn"), QStringLiteral("Up"),
                        QStringLiteral("Move up one Folder Level"), ShowFrame);
    auto *filterRow = new QHBoxLayout;
    filterRow->addWidget(CMBFILTER, 1);
    filterRow->addWidget(goUp);
    s2->addLayout(filterRow, 1, 0);
    PTxShList2 = new ShellList(ShowFrame);
    PTxShList2->setObjectName(QStringLiteral("PTxShList2"));
    PTxShList2->setViewMode(2);
    s2->addWidget(PTxShList2, 2, 0, 3, 1);
    auto *moves = new QVBoxLayout;
    auto *right = button(QStringLiteral("RightBtn"), QStringLiteral(">"),
                         QStringLiteral("Select Folder to List for Quick Location"), ShowFrame);
    auto *left = button(QStringLiteral("LefttBtn"), QStringLiteral("<"),
                        QStringLiteral("Remove Folder from Quick Folder Location List"), ShowFrame);
    auto *up = button(QStringLiteral("UpBtn"), QStringLiteral("Up"),
                      QStringLiteral("Move Highlighted Folder Up one Position"), ShowFrame);
    DownBtn = button(QStringLiteral("DownBtn"), QStringLiteral("Down"),
                     QStringLiteral("Move Highlighted Folder Down one Position"), ShowFrame);
    auto *all = button(QStringLiteral("AllBtn"), QStringLiteral("All"),
                       QStringLiteral("Move all Multimedia Files to Favorite List"), ShowFrame);
    auto *clear = button(QStringLiteral("ClearBtn"), QStringLiteral("Clear"),
                         QStringLiteral("Clear all Selected Files From Favorite List"), ShowFrame);
    auto *fav = button(QStringLiteral("SSFavoritesBtn"), QStringLiteral("Favorites"), QString(), ShowFrame);
    for (QPushButton *b : {right, left, up, DownBtn, all, clear, fav}) moves->addWidget(b);
    moves->addStretch(1);
    s2->addLayout(moves, 2, 1, 3, 1);
    const char *const listCaptions[] = {"Slide Show Pictures", "Slide Show Music"};
    for (int i = 0; i < 2; ++i) {
        auto *l = new QLabel(QLatin1String(listCaptions[i]), ShowFrame);
        l->setObjectName(QStringLiteral("List7Caption%1").arg(i));
        List7[i] = new ShowList(ShowFrame);
        List7[i]->setObjectName(QStringLiteral("List7_%1").arg(i));
        s2->addWidget(l, 1 + 2 * i, 2);
        s2->addWidget(List7[i], 2 + 2 * i, 2, i == 0 ? 1 : 1, 1);
    }
    grid->addLayout(s2, 0, 1, 2, 1);

    // 3. Settings and Effects
    auto *s3 = new QGridLayout;
    s3->addWidget(step(3, QStringLiteral("3. Settings and Effects")), 0, 0, 1, 3);
    const char *const tips[] = {"Frame Color", "Frame Inner Color", "Frame Outer Color"};
    for (int i = 0; i < 3; ++i) {
        Text2[i] = new ColourPatch(ShowFrame);
        Text2[i]->setObjectName(QStringLiteral("Text2_%1").arg(i));
        Text2[i]->setToolTip(QLatin1String(tips[i]));
        Text2[i]->onClick = [this, i] { frameColour(i); };
        s3->addWidget(Text2[i], 1, i);
    }
    CHKFRAME = new QCheckBox(QStringLiteral("Omit Frame"), ShowFrame);
    CHKFRAME->setObjectName(QStringLiteral("CHKFRAME"));
    CHKFRAME->setToolTip(QStringLiteral("Use or Omit Frame on Slide Show"));
    s3->addWidget(CHKFRAME, 2, 0, 1, 3);
    CMBSSTIME = new QComboBox(ShowFrame);
    CMBSSTIME->setObjectName(QStringLiteral("CMBSSTIME"));
    CMBSSTIME->setToolTip(QStringLiteral("Seconds to Display Picture"));
    CMBSSTIME->addItem(QStringLiteral("1 Second"), 1);
    for (int s = 2; s <= 30; ++s) CMBSSTIME->addItem(QStringLiteral("%1 Seconds").arg(s), s);
    s3->addWidget(CMBSSTIME, 3, 0, 1, 3);
    CMBSSPASS = new QComboBox(ShowFrame);
    CMBSSPASS->setObjectName(QStringLiteral("CMBSSPASS"));
    CMBSSPASS->setToolTip(QStringLiteral("Number of time Transitional Effect Used"));
    for (int p = 2; p <= 25; ++p) CMBSSPASS->addItem(QStringLiteral("%1 Passes").arg(p));
    s3->addWidget(CMBSSPASS, 4, 0, 1, 3);
    RDEFFECT[0] = new QRadioButton(QStringLiteral("Single Effect"), ShowFrame);
    RDEFFECT[0]->setToolTip(QStringLiteral("Only one Transitional Effect Pass"));
    RDEFFECT[1] = new QRadioButton(QStringLiteral("Multiple Effects"), ShowFrame);
    RDEFFECT[1]->setToolTip(QStringLiteral("Multiple Transitional Effect Pass"));
    for (int i = 0; i < 2; ++i) {
        RDEFFECT[i]->setObjectName(QStringLiteral("RDEFFECT_%1").arg(i));
        s3->addWidget(RDEFFECT[i], 5 + i, 0, 1, 3);
    }
    RDEFFECT[0]->setChecked(true);
    auto *paintBtn = button(QStringLiteral("SSPaintBtn"), QStringLiteral("Paint Effect"),
                            QStringLiteral("Select Paint Effect"), ShowFrame);
    auto *transBtn = button(QStringLiteral("SSTransitionEffectBtn"), QStringLiteral("Transition Effect"),
                            QStringLiteral("Select Transitional Effect"), ShowFrame);
    auto *viewBtn = button(QStringLiteral("SSViewBtn"), QStringLiteral("View"),
                           QStringLiteral("Quick View of Slide Show Transitional Effects"), ShowFrame);
    auto *pictBtn = button(QStringLiteral("SSOpenPictBtn"), QStringLiteral("Picture"), QString(), ShowFrame);
    s3->addWidget(paintBtn, 7, 0, 1, 3);
    s3->addWidget(transBtn, 8, 0, 1, 3);
    auto *demoRow = new QHBoxLayout;
    demoRow->addWidget(viewBtn);
    demoRow->addWidget(pictBtn);
    s3->addLayout(demoRow, 9, 0, 1, 3);
    Image4 = new slides::EffectImage(ShowFrame);
    Image4->setObjectName(QStringLiteral("Image4"));
    Image4->setMinimumSize(160, 120);
    Image4->onNotify = [this](int pass, int kind) { demoNotify(pass, kind); };
    // A click on the demonstration stops it at the next notification.
    Image4->onClick = [this] { DemoChanged = true; };
    Image4->setCursorFollowsEffect(true);
    s3->addWidget(Image4, 10, 0, 1, 3);
    grid->addLayout(s3, 0, 2);

    // 4. Save and Run
    auto *s4 = new QVBoxLayout;
    s4->addWidget(step(4, QStringLiteral("4. Save and Run")));
    auto *saveBtn = button(QStringLiteral("SSSaveBtn"), QStringLiteral("Save"),
                           QStringLiteral("Save Slide Show File"), ShowFrame);
    SSRunBtn = button(QStringLiteral("SSRunBtn"), QStringLiteral("Run"), QStringLiteral("Run Slide Show"),
                      ShowFrame);
    auto *helpBtn = button(QStringLiteral("SSHelpBtn"), QStringLiteral("Help"),
                           QStringLiteral("Display Help for Slide Show Creation Tab Frame"), ShowFrame);
    s4->addWidget(saveBtn);
    s4->addWidget(SSRunBtn);
    s4->addWidget(helpBtn);
    s4->addStretch(1);
    grid->addLayout(s4, 1, 0);

    // Actions.
    QObject::connect(newBtn, &QPushButton::clicked, [this] { NewShow(); });
    QObject::connect(openBtn, &QPushButton::clicked, [this] { OpenShow(); });
    QObject::connect(saveBtn, &QPushButton::clicked, [this] { SaveShow(); });
    QObject::connect(SSRunBtn, &QPushButton::clicked, [this] { RunShow(); });
    QObject::connect(helpBtn, &QPushButton::clicked,
                     [this] { host_.showHelpTopic(QStringLiteral("slideshow")); });
    QObject::connect(goUp, &QPushButton::clicked, [this] { PTxShList2->upOneLevel(); });
    QObject::connect(CMBFILTER, &QComboBox::currentIndexChanged,
                     [this](int row) { PTxShList2->setPattern(CMBFILTER->itemData(row).toString()); });
    QObject::connect(PTxShList2, &ShellList::itemSelected, [this] { highlight(); });
    QObject::connect(PTxShList2, &ShellList::itemClicked, [this] { highlight(); });
    QObject::connect(right, &QPushButton::clicked, [this] { rightBtn(); });
    QObject::connect(left, &QPushButton::clicked, [this] { leftBtn(); });
    QObject::connect(up, &QPushButton::clicked, [this] { moveRow(-1); });
    QObject::connect(DownBtn, &QPushButton::clicked, [this] { moveRow(+1); });
    QObject::connect(all, &QPushButton::clicked, [this] { allBtn(); });
    QObject::connect(clear, &QPushButton::clicked, [this] { List7[0]->clear(); });
    // The favorite list browser, opened for the builder: its OK points PTxShList2 at a folder
    // and a double click on a list name adds the list to the show.
    QObject::connect(fav, &QPushButton::clicked, [this] {
        G.FavBrowserFromSlideShow = true;
        host_.OnToolClick(tool::mnuSelectFavoriteList);
    });
    for (int i = 0; i < 2; ++i) {
        QObject::connect(List7[i], &QListWidget::itemClicked, [this, i](QListWidgetItem *it) {
            BuilderList = i;
            if (it) List7[i]->setToolTip(it->text());
        });
        QObject::connect(List7[i], &QListWidget::currentRowChanged, [this, i](int) { BuilderList = i; });
        QObject::connect(List7[i], &QListWidget::itemDoubleClicked, [this, i](QListWidgetItem *it) {
            if (!it) return;
            if (i == 0) {
                SlideDemoPicture = it->text();
                loadDemoPicture();
                DemoChanged = true;
            } else {
                host_.DisplayFile(it->text());
            }
        });
        List7[i]->onDrop = [this](const QString &tag, const QStringList &files) { listDrop(tag, files); };
    }
    QObject::connect(CMBSSTIME, &QComboBox::currentIndexChanged, [this](int row) {
        if (row >= 0) S.SlideSeconds = CMBSSTIME->itemData(row).toInt();
    });
    QObject::connect(CMBSSPASS, &QComboBox::currentIndexChanged, [this](int row) {
        if (row >= 0) S.SlidePasses = int(Val(CMBSSPASS->itemText(row)));
    });
    QObject::connect(CHKFRAME, &QCheckBox::stateChanged,
                     [this](int st) { S.OmitFrame = (st == Qt::Checked); });
    QObject::connect(paintBtn, &QPushButton::clicked, [this] { PaintChoice(); });
    QObject::connect(transBtn, &QPushButton::clicked, [this] { TransitionChoice(); });
    QObject::connect(viewBtn, &QPushButton::clicked, [this] { Demonstrate(); });
    QObject::connect(pictBtn, &QPushButton::clicked, [this] {
        QFileDialog d(host_.window());
        d.setOption(QFileDialog::DontUseNativeDialog, true);
        d.setWindowTitle(QStringLiteral("Open Image or Picture File for Effect Demo"));
        QStringList filters;
        for (int r = 0; r < FilterRows; ++r) {
            const QString pat = CMBFILTER->itemData(r).toString();
            filters << QStringLiteral("%1 (%2)").arg(CMBFILTER->itemText(r),
                                                     QString(pat).replace(u';', u' '));
        }
        d.setNameFilters(filters);
        d.setFileMode(QFileDialog::ExistingFile);
        if (d.exec() != QDialog::Accepted || d.selectedFiles().isEmpty()) return;
        SlideDemoPicture = d.selectedFiles().first();
        loadDemoPicture();
    });

    NewShow();
    CMBFILTER->setCurrentIndex(std::clamp<int>(G.CurrentFilterRow, 0, FilterRows - 1));
    PTxShList2->setPattern(CMBFILTER->currentData().toString());
}

bool SlidePage::builderVariable(const QString &n, QString *out) const
{
    auto b = [](bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); };
    if (n == QLatin1String("SlideShowPath")) *out = SlideShowPath;
    else if (n == QLatin1String("SlideShowDirty")) *out = b(SlideShowDirty);
    else if (n == QLatin1String("ShowFileMode")) *out = ShowFileMode;
    else if (n == QLatin1String("BuilderList")) *out = QString::number(BuilderList);
    else if (n == QLatin1String("SlideDemoPicture")) *out = SlideDemoPicture;
    else if (n == QLatin1String("DemoChanged")) *out = b(DemoChanged);
    else if (n == QLatin1String("RunFromBuilder")) *out = b(G.RunFromBuilder);
    else if (n == QLatin1String("EffectPassList")) {
        QStringList l;
        for (int v : EffectPassList) l << QString::number(v);
        *out = l.join(u' ');
    } else if (n == QLatin1String("Image4Passes")) *out = QString::number(Image4 ? Image4->PassCount : 0);
    else if (n == QLatin1String("Image4Played")) *out = Image4 ? Image4->playLog().join(u' ') : QString();
    else {
        for (int i = 0; i < slides::ShowSettings::FieldCount; ++i)
            if (n == QLatin1String(slides::ShowSettings::fieldName(i))) {
                const int64_t v = S.field(i);
                *out = i >= 14 && i <= 16 ? b(v == 1) : QString::number(v);
                return true;
            }
        return false;
    }
    return true;
}

// New-show values, the patches red, green and blue, both lists empty.
void SlidePage::fillFromSettings()
{
    Text2[0]->setColour(S.FrameColor);
    Text2[1]->setColour(S.FrameInnerColor);
    Text2[2]->setColour(S.FrameOuterColor);
    CHKFRAME->setChecked(S.OmitFrame);
}

void SlidePage::NewShow()
{
    List7[0]->clear();
    List7[1]->clear();
    S = slides::newShowSettings();
    G.RunFromBuilder = false;
    fillFromSettings();
    RefreshEffects();
}

// The file dialog of the show; "O" resets to new-show values first (the lists stay).
bool SlidePage::ChooseShowFile(const QString &mode)
{
    ShowFileMode = mode;
    QFileDialog d(host_.window());
    d.setOption(QFileDialog::DontUseNativeDialog, true);
    d.setWindowTitle(mode == QLatin1String("O") ? QStringLiteral("Open Slide Show File")
                                                : QStringLiteral("Save Slide Show File"));
    d.setDefaultSuffix(QStringLiteral("SLS"));
    d.setNameFilter(QStringLiteral("Slide Show File (*.SLS)"));
    d.setDirectory(G.ProgramDir);
    if (!SlideShowPath.isEmpty()) d.selectFile(SlideShowPath);
    if (mode == QLatin1String("O")) {
        d.setFileMode(QFileDialog::ExistingFile);
        d.setAcceptMode(QFileDialog::AcceptOpen);
        S = slides::newShowSettings();
    } else {
        d.setFileMode(QFileDialog::AnyFile);
        d.setAcceptMode(QFileDialog::AcceptSave);
    }
    if (d.exec() != QDialog::Accepted || d.selectedFiles().isEmpty()) return false;
    SlideShowPath = d.selectedFiles().first();
    ShowFrame->setTitle(QStringLiteral("Slide Show File - ")
                        + SlideShowPath.mid(SlideShowPath.lastIndexOf(u'/') + 1));
    return true;
}

void SlidePage::OpenShow()
{
    if (!ChooseShowFile(QStringLiteral("O"))) return;
    LoadSlideShow();
    RefreshEffects();
    DemoChanged = true;
}

void SlidePage::SaveShow()
{
    if (!ChooseShowFile(QStringLiteral("S"))) return;
    CopySettings();
    SaveSlideShow();
}

bool SlidePage::LoadSlideShow()
{
    QStringList paths;
    const bool ok = slides::readBuilderShowFile(SlideShowPath, &S, &paths);
    if (!ok) return false;
    List7[BuilderList]->clear();
    for (const QString &p : paths) AddFile(p);
    if (List7[0]->count() > 0) SlideDemoPicture = List7[0]->item(0)->text();
    fillFromSettings();
    return true;
}

// The working values back into the settings before a write.
void SlidePage::CopySettings()
{
    S.PaintEffect = paint_.effect;
    S.PaintGrain = paint_.grain;
    S.PaintDelay = paint_.delay;
    S.PaintWand = paint_.wand;
    S.PaintColor = paint_.color;
    S.PaintTransparent = paint_.transparent;
    S.PaintTransparentColor = paint_.transparentColor;
    S.TransitionEffect = trans_.effect;
    S.TransitionGrain = trans_.grain;
    S.TransitionDelay = trans_.delay;
    S.TransitionWand = trans_.wand;
    S.TransitionColor = trans_.color;
    S.TransitionStyle = trans_.style;
    S.PatternColor1 = trans_.pattern[0];
    S.PatternColor2 = trans_.pattern[1];
    S.PatternColor3 = trans_.pattern[2];
    S.PatternColor4 = trans_.pattern[3];
    if (CMBSSTIME->currentIndex() >= 0) S.SlideSeconds = CMBSSTIME->currentData().toInt();
}

void SlidePage::SaveSlideShow()
{
    QStringList pics, music;
    for (int i = 0; i < List7[0]->count(); ++i) pics << List7[0]->item(i)->text();
    for (int i = 0; i < List7[1]->count(); ++i) music << List7[1]->item(i)->text();
    if (!slides::writeShowFile(SlideShowPath, S, pics, music)) return;
    SlideShowDirty = false;
    inform(slides::saveSuccessText(SlideShowPath), AppTitle);
}

void SlidePage::RunShow()
{
    // The runner reads the file on disk: changes not saved are not in it.
    G.RunFromBuilder = true;
    slides::runSlideShow(host_, slides::SlideRunner::FromBuilder, SlideShowPath);
    G.RunFromBuilder = false;
}

// After a new show or an open: the fallbacks of zero values, the working values, the pass
// list, the radio buttons and the seconds.
void SlidePage::RefreshEffects()
{
    DemoChanged = true;
    stopDemo_ = true;
    loadDemoPicture();
    if (S.PaintEffect == 0) S.PaintEffect = 13001;
    if (S.TransitionEffect == 0) S.TransitionEffect = 4000;
    if (S.TransitionStyle == 0) S.TransitionStyle = 4000;
    if (S.GradientStyle == 0) S.GradientStyle = 1;
    if (S.GradientFill == 0) S.GradientFill = 4000;
    if (S.PaintGrain == 0) S.PaintGrain = 10;
    if (S.PaintDelay == 0) S.PaintDelay = 5;
    if (S.PaintWand == 0) S.PaintWand = 5;
    if (S.PaintColor == 0) S.PaintColor = 255;
    if (S.SlidePasses < 0) S.SlidePasses = 0;
    if (S.SlidePasses > 1) CMBSSPASS->setCurrentIndex(std::min(S.SlidePasses - 2, CMBSSPASS->count() - 1));
    paint_ = slides::EffectValues{};
    paint_.effect = S.PaintEffect;
    paint_.grain = S.PaintGrain;
    paint_.delay = S.PaintDelay;
    paint_.wand = S.PaintWand;
    paint_.color = S.PaintColor;
    paint_.transparent = S.PaintTransparent;
    paint_.transparentColor = S.PaintTransparentColor;
    trans_ = slides::EffectValues{};
    trans_.effect = S.TransitionEffect;
    trans_.grain = S.TransitionGrain;
    trans_.delay = S.TransitionDelay;
    trans_.wand = S.TransitionWand;
    trans_.color = S.TransitionColor;
    trans_.transparent = false;
    trans_.transparentColor = 0;
    trans_.style = S.TransitionStyle;
    trans_.pattern[0] = S.PatternColor1;
    trans_.pattern[1] = S.PatternColor2;
    trans_.pattern[2] = S.PatternColor3;
    trans_.pattern[3] = S.PatternColor4;
    trans_.option = S.EffectOption;
    for (int i = 1; i <= 25; ++i) EffectPassList[i] = S.PaintEffect;
    RDEFFECT[S.MultipleEffects ? 1 : 0]->setChecked(true);
    if (S.SlideSeconds >= 1 && S.SlideSeconds <= 30) CMBSSTIME->setCurrentIndex(S.SlideSeconds - 1);
    DemoChanged = false;
}

void SlidePage::loadDemoPicture()
{
    QImage img;
    if (!SlideDemoPicture.isEmpty()) {
        Picture pic;
        if (decodePictureFile(SlideDemoPicture, 1, false, &pic) == 0 && !pic.isNull())
            img = pic.frames.first();
    }
    const bool was = Image4->autoRepaint();
    Image4->setAutoRepaint(false);
    Image4->setPicture(img);
    Image4->setAutoRepaint(was);
}

void SlidePage::PaintChoice()
{
    const QImage demo = Image4->picture();
    if (RDEFFECT[0]->isChecked()) {
        slides::EffectDialog d(slides::EffectDialog::Paint, paint_, demo, false, host_.window());
        if (d.exec() != QDialog::Accepted) return;
        const slides::EffectValues v = d.values();
        paint_.effect = v.effect;
        paint_.grain = v.grain;
        paint_.delay = v.delay;
        paint_.wand = v.wand;
        paint_.color = v.color;
        paint_.transparent = v.transparent;
        paint_.transparentColor = v.transparentColor;
        S.MultipleEffects = false;
        return;
    }
    // Multiple effects: one dialog per choice until the passes are spent, at most 25 slots.
    Image4->setAutoRepaint(false);
    Image4->PassCount = CMBSSPASS->currentIndex() + 2;
    int remaining = Image4->PassCount;
    int slot = 1;
    slides::EffectValues last = paint_;
    while (remaining >= 1) {
        slides::EffectValues in = last;
        in.effect = EffectPassList[slot];
        in.passes = remaining;
        slides::EffectDialog d(slides::EffectDialog::Paint, in, demo, true, host_.window());
        if (d.exec() != QDialog::Accepted) break;
        const slides::EffectValues v = d.values();
        const int n = v.passes;
        if (slot + n - 1 > 25) {
            Image4->PassCount = 25;
            remaining = 0;
        } else {
            remaining -= n;
        }
        for (int k = slot; k < slot + n && k <= 25; ++k) EffectPassList[k] = v.effect;
        S.PaintEffect = v.effect;
        S.MultipleEffects = true;
        last = v;
        slot += n;
    }
    CMBSSPASS->setCurrentIndex(std::clamp(Image4->PassCount - 2, 0, CMBSSPASS->count() - 1));
    paint_.effect = last.effect;
    paint_.grain = last.grain;
    paint_.delay = last.delay;
    paint_.wand = last.wand;
    paint_.color = last.color;
    paint_.transparent = last.transparent;
    paint_.transparentColor = last.transparentColor;
    Image4->setAutoRepaint(true);
}

void SlidePage::TransitionChoice()
{
    slides::EffectDialog d(slides::EffectDialog::Transition, trans_, Image4->picture(), false,
                           host_.window());
    if (d.exec() != QDialog::Accepted) return;
    slides::EffectValues v = d.values();
    int style = v.style;
    if (style >= 1000) {
        S.GradientStyle = 1;
        S.GradientFill = style;
    } else {
        S.GradientStyle = style;
    }
    if (style > 0 && style < 1000) S.GradientStyle = style + 1;
    if (v.effect == slides::NoEffect) style = 0;
    trans_.effect = v.effect;
    trans_.delay = v.delay;
    trans_.grain = v.grain;
    trans_.transparent = v.transparent;
    trans_.wand = v.wand;
    trans_.color = v.color;
    trans_.style = style;
    for (int i = 0; i < 4; ++i) trans_.pattern[i] = v.pattern[i];
    trans_.transparentColor = v.transparentColor;
    trans_.option = v.option;
}

void SlidePage::Demonstrate()
{
    if (!Image4->hasPicture()) return;
    slides::EffectImage &im = *Image4;
    im.setAutoRepaint(false);
    DemoChanged = false;
    im.setEffectEnabled(false);
    im.setEffectEnabled(true);
    stopDemo_ = false;
    for (int i = 0; i < 4; ++i) im.PatternColor[i] = trans_.pattern[i];
    if (trans_.effect != slides::NoEffect) {
        im.TransitionEffect = trans_.effect;
        im.PassCount = 1;
        im.PassIndex = 1;
        im.Grain = trans_.grain;
        im.Delay = trans_.delay;
        im.Wand = trans_.wand;
        im.EffectColor = trans_.color;
        im.Transparent = trans_.transparent;
        im.TransparentColor = trans_.transparentColor;
        im.FillKind = trans_.style >= 1000 ? 1 : 2;
        if (im.FillKind == 2) {
            im.GradientValue = S.GradientStyle;
        } else {
            im.FillValue = S.GradientFill;
            im.GradientValue = 1;
        }
    } else {
        im.FillKind = 0;
        im.TransitionEffect = slides::NoEffect;
    }
    im.Option = trans_.option;
    im.PaintEffect = paint_.effect;
    if (RDEFFECT[1]->isChecked()) {
        im.PassCount = CMBSSPASS->currentIndex() + 2;
        im.PaintEffect = EffectPassList[0];
        im.PassIndex = 1;
        S.MultipleEffects = true;
    } else {
        im.PassCount = 1;
        im.PassIndex = 1;
        S.MultipleEffects = false;
    }
    im.setAutoRepaint(true);
}

void SlidePage::demoNotify(int pass, int kind)
{
    slides::EffectImage &im = *Image4;
    if (DemoChanged) {
        im.PaintEffect = 0;
        im.TransitionEffect = slides::NoEffect;
        im.setEffectEnabled(false);
        return;
    }
    im.setEffectEnabled(true);
    if (S.MultipleEffects && kind == 1 && pass >= 0 && pass < im.PassCount)
        im.PaintEffect = EffectPassList[pass + 1];
    if (kind == 1 && pass == 0) {
        im.Grain = paint_.grain;
        im.Delay = paint_.delay;
        im.Wand = paint_.wand;
        im.EffectColor = paint_.color;
        im.Transparent = paint_.transparent;
        im.TransparentColor = paint_.transparentColor;
    }
    if (pass == im.PassCount && kind == 0)
        for (int i = 0; i < 4; ++i) im.PatternColor[i] = trans_.pattern[i];
}

void SlidePage::frameColour(int index)
{
    static const char *const titles[] = {"Select Color for Frame", "Select Inner Color for Frame",
                                         "Select Outer Color for Frame"};
    QColorDialog dlg(slides::bgr(Text2[index]->colour()), host_.window());
    dlg.setOption(QColorDialog::DontUseNativeDialog, true);
    dlg.setWindowTitle(QLatin1String(titles[index]));
    if (dlg.exec() != QDialog::Accepted) return;
    const QColor c = dlg.currentColor();
    Text2[index]->setColour(uint32_t(c.red()) | uint32_t(c.green()) << 8 | uint32_t(c.blue()) << 16);
    S.FrameColor = Text2[0]->colour();
    S.FrameInnerColor = Text2[1]->colour();
    S.FrameOuterColor = Text2[2]->colour();
}

// The highlighted shell item decides the list the commands act on.
void SlidePage::highlight()
{
    const QString path = PTxShList2->focusedItemPath();
    if (path.isEmpty() || QFileInfo(path).isDir()) return;
    const bool music = slides::isShowMusicExt(GetFileExt(path).trimmed());
    BuilderList = music ? 1 : 0;
    DownBtn->setEnabled(music);
}

void SlidePage::rightBtn()
{
    const QString path = PTxShList2->focusedItemPath();
    if (path.isEmpty()) return;
    QListWidget *l = list();
    l->addItem(path);
    l->setCurrentRow(l->count() - 1);
    // The highlight walks on to the next item, so repeated presses walk the folder.
    const QStringList items = PTxShList2->itemPaths();
    const int at = items.indexOf(path);
    if (at >= 0 && at + 1 < items.size()) PTxShList2->clickItem(items[at + 1]);
    SlideShowDirty = true;
    SSRunBtn->setEnabled(true);
}

void SlidePage::leftBtn()
{
    QListWidget *l = list();
    const int row = l->currentRow();
    if (row >= 0 && l->currentItem() && l->currentItem()->isSelected()) {
        delete l->takeItem(row);
        if (l->count() > 0) l->setCurrentRow(row > 0 ? row - 1 : 0);
        SlideShowDirty = true;
    }
    SSRunBtn->setEnabled(true);
}

void SlidePage::moveRow(int delta)
{
    QListWidget *l = list();
    const int row = l->currentRow();
    const int to = row + delta;
    if (row < 0 || to < 0 || to >= l->count()) return;
    const QString a = l->item(row)->text();
    l->item(row)->setText(l->item(to)->text());
    l->item(to)->setText(a);
    l->setCurrentRow(to);
    SlideShowDirty = true;
    SSRunBtn->setEnabled(true);
}

void SlidePage::allBtn()
{
    const QString folder = PTxShList2->folder();
    if (folder.isEmpty()) return;
    const QString sep = folder.endsWith(u'/') ? QString() : QStringLiteral("/");
    const QStringList names =
        QDir(folder).entryList(QStringList{QStringLiteral("*")}, QDir::Files, QDir::Name | QDir::IgnoreCase);
    for (const QString &n : names) AddFile(folder + sep + n);
    SlideShowDirty = true;
    SSRunBtn->setEnabled(true);
}

void SlidePage::listDrop(const QString &tag, const QStringList &files)
{
    // Only the favorite browser's two drags, and only while it is open.
    if (!G.SelFavorites1Loaded) return;
    if (tag != QLatin1String("SelList1") && tag != QLatin1String("SelList2")) return;
    for (const QString &f : files) List7[slides::isShowMusicExt(GetFileExt(f)) ? 1 : 0]->addItem(f);
}

TW_REGISTER_PAGE(5, SlidePage);

}  // namespace tw
