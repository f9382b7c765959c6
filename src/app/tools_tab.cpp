#include "tools_tab.h"

#include "core/colors.h"
#include "core/globals.h"
#include "core/options_store.h"
#include "core/prompt.h"
#include "core/text_rules.h"
#include "core/tab_page.h"
#include "core/tool_ids.h"

#include <QMainWindow>

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QVBoxLayout>
#include <algorithm>

namespace tw {

namespace {
// A check box of the General page. Its caption may be wider than the page when the window
// fonts are bold: it then ends in an ellipsis, with the whole caption as its tool tip, rather
// than being cut off or pushing the page out of the window.
class OptionCheckBox : public QCheckBox {
public:
    using QCheckBox::QCheckBox;
    QSize minimumSizeHint() const override
    {
        QSize s = QCheckBox::minimumSizeHint();
        s.setWidth(std::min(s.width(), fontMetrics().height() * 6));
        return s;
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QStyleOptionButton opt;
        initStyleOption(&opt);
        const QRect textRect = style()->subElementRect(QStyle::SE_CheckBoxContents, &opt, this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, textRect.width());
        const bool cut = shown != text();
        if (cut != property("captionCut").toBool()) {
            setProperty("captionCut", cut);
            setToolTip(cut ? text() : QString());
        }
        opt.text = shown;
        QStylePainter p(this);
        p.drawControl(QStyle::CE_CheckBox, opt);
    }
};

// Colour table rows: label, background field (0-based in Colors.INI); the text field follows.
struct ColorRow {
    int row;
    const char *label;
    int backField;
};
const ColorRow kRows[14] = {
    {0, "Select Color for Service Windows:", 0},   {1, "Select Color for Menus and Toolbar:", 2},
    {2, "Select Color for Window Tabs:", 4},       {3, "Select Color for Selection Window:", 10},
    {4, "Select Color for List Boxes:", 6},        {5, "Select Color for ThumbNail Window:", 16},
    {6, "Select Color for ThumbNails:", 12},       {7, "Select Color for Picture Window:", 18},
    {8, "Select Color for Video Window:", 20},     {9, "Select Color for Music Window:", 22},
    {10, "Select Color for Document Window:", 24}, {11, "Select Color for Internet Window:", 26},
    {12, "Select Color for Entry Fields:", 8},     {13, "Select Color for Command Buttons:", 28},
};

QString twoDecimals(double v) { return QString::number(v, 'f', 2); }
}  // namespace

int colorFieldOfBox(int box)
{
    if (box < 0 || box >= 28) return -1;
    const int row = box % 14;
    for (const auto &r : kRows)
        if (r.row == row) return r.backField + (box >= 14 ? 1 : 0);
    return -1;
}

ToolsTab::ToolsTab(PageHost &w, QWidget *parent) : QWidget(parent), w_(w)
{
    setObjectName(QStringLiteral("ToolsTab"));
    // The tab asks no minimum size of the window, which keeps whatever size the user gives
    // it; the layout is made to fit the window's default size.
    setMinimumSize(1, 1);
    // The colour table on the left, the option pages on the right, both sized to their
    // content so the whole tab fits the window at its default size without scrolling.
    auto *outer = new QHBoxLayout(this);
    outer->setContentsMargins(4, 4, 4, 4);
    outer->setSpacing(4);

    // Colour table
    auto *colorFrame = new QFrame(this);
    colorFrame->setObjectName(QStringLiteral("ColorFrame"));
    colorFrame->setFrameShape(QFrame::StyledPanel);
    auto *grid = new QGridLayout(colorFrame);
    grid->setContentsMargins(6, 6, 6, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(3);
    auto *title = new QLabel(QStringLiteral("Window Color Settings"), colorFrame);
    title->setObjectName(QStringLiteral("Label2_0"));
    QFont tf = title->font();
    tf.setBold(true);
    title->setFont(tf);
    grid->addWidget(title, 0, 0, 1, 3);
    // "Background" is wider than its boxes: it ends over them and reaches left into the
    // empty head of the label column, so the boxes stay narrow.
    auto *hb = new QLabel(QStringLiteral("Background"), colorFrame);
    hb->setObjectName(QStringLiteral("Label2_1"));
    hb->setAlignment(Qt::AlignRight | Qt::AlignBottom);
    auto *ht = new QLabel(QStringLiteral("Text"), colorFrame);
    ht->setObjectName(QStringLiteral("Label2_2"));
    ht->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    grid->addWidget(hb, 1, 0, 1, 2);
    grid->addWidget(ht, 1, 2);
    for (int i = 0; i < 14; ++i) {
        const int r = i;  // display row = table row
        auto *lab = new QLabel(QString::fromLatin1(kRows[r].label), colorFrame);
        lab->setObjectName(QStringLiteral("Label5_%1").arg(kRows[r].row));
        grid->addWidget(lab, 2 + r, 0);
        for (int side = 0; side < 2; ++side) {
            const int box = kRows[r].row + side * 14;
            auto *e = new QLineEdit(colorFrame);
            e->setObjectName(QStringLiteral("Text3_%1").arg(box));
            e->setReadOnly(true);
            // The boxes hold no text, only their colour.
            e->setFixedSize(44, 18);
            e->setToolTip(QStringLiteral("Double Click to Select Color"));
            e->installEventFilter(this);
            e->setAutoFillBackground(true);
            Text3[box] = e;
            grid->addWidget(e, 2 + r, 1 + side);
        }
    }
    grid->setRowStretch(16, 1);
    outer->addWidget(colorFrame);

    // Option pages
    auto *right = new QVBoxLayout;
    right->setSpacing(4);
    auto *pageButtons = new QHBoxLayout;
    OptGeneralsBtn = new QPushButton(QStringLiteral("General"), this);
    OptGeneralsBtn->setObjectName(QStringLiteral("OptGeneralsBtn"));
    OptSearchBtn = new QPushButton(QStringLiteral("Search"), this);
    OptSearchBtn->setObjectName(QStringLiteral("OptSearchBtn"));
    OptThumbsBtn = new QPushButton(QStringLiteral("ThumbNails"), this);
    OptThumbsBtn->setObjectName(QStringLiteral("OptThumbsBtn"));
    pageButtons->addWidget(OptGeneralsBtn);
    pageButtons->addWidget(OptSearchBtn);
    pageButtons->addWidget(OptThumbsBtn);
    right->addLayout(pageButtons);
    auto *pages = new QGridLayout;
    for (int i = 0; i < 3; ++i) {
        SSFrame1[i] = new QFrame(this);
        SSFrame1[i]->setObjectName(QStringLiteral("SSFrame1_%1").arg(i));
        SSFrame1[i]->setFrameShape(QFrame::StyledPanel);
        pages->addWidget(SSFrame1[i], 0, 0);  // the pages share one position
    }
    right->addLayout(pages, 1);

    // General page: the check boxes one under the other, then each list and the slider
    // beside its caption.
    auto *g = new QGridLayout(SSFrame1[0]);
    g->setContentsMargins(6, 6, 6, 6);
    g->setHorizontalSpacing(6);
    g->setVerticalSpacing(2);
    int gRow = 0;
    auto check = [&](QCheckBox *&box, const char *name, const char *caption) {
        box = new OptionCheckBox(QString::fromLatin1(caption), SSFrame1[0]);
        box->setObjectName(QString::fromLatin1(name));
        g->addWidget(box, gRow++, 0, 1, 2);
    };
    check(CHKBOLD, "CHKBOLD", "Use Bold Type On Window Fonts");
    check(CHKSAVEFOLDER, "CHKSAVEFOLDER", "Save Last Folder for next Program Startup");
    check(CHKDOCUMENTTEXT, "CHKDOCUMENTTEXT", "Display Word Documents and HTML as Source Text");
    check(CHKAUTOPICT, "CHKAUTOPICT", "Auto Display Pictures and Text on Double Click");
    check(CHKAUTOVIDEO, "CHKAUTOVIDEO", "Automatically Start Playing Videos on Double Click");
    check(CHKAUTOMUSIC, "CHKAUTOMUSIC", "Automatically Start Playing Music on Double Click");
    check(CHKOPTVIDEOLOOP, "CHKOPTVIDEOLOOP", "Preset Video Continuous Loop");
    check(CHKOPTMUSICLOOP, "CHKOPTMUSICLOOP", "Preset Music Continuous Loop");
    check(CHKVIDEOLIST, "CHKVIDEOLIST", "Display Play List on Video Frame at Startup");
    auto makeCombo = [](QComboBox *&c, const char *name, const char *label, QStringList items,
                        QWidget *page) {
        auto *l = new QLabel(QString::fromLatin1(label), page);
        l->setObjectName(QString::fromLatin1(name) + QStringLiteral("Label"));
        c = new QComboBox(page);
        c->setObjectName(QString::fromLatin1(name));
        c->addItems(items);
        return l;
    };
    auto gridCombo = [&](QComboBox *&c, const char *name, const char *label, QStringList items) {
        g->addWidget(makeCombo(c, name, label, items, SSFrame1[0]), gRow, 0);
        g->addWidget(c, gRow++, 1);
    };
    gridCombo(CMBMENUTYPE, "CMBMENUTYPE",
              "Menu Font Style:", {"None", "Light Raised", "Heavy Raised", "Light Inset", "Heavy Inset"});
    gridCombo(CMBMENU, "CMBMENU", "Menu Style:", {"Windows 95/98", "Windows 2000", "Windows XP"});
    gridCombo(CMBFONTTYPE, "CMBFONTTYPE", "Label Font Style:",
              {"None", "Raised Light", "Raised Heavy", "Lowered Light", "Lowered Heavy"});
    auto *jl = new QLabel(QStringLiteral("JPEG Quality Factor:"), SSFrame1[0]);
    jl->setObjectName(QStringLiteral("SCOPTJPEGQCaption"));
    g->addWidget(jl, gRow, 0);
    auto *jrow = new QHBoxLayout;
    SCOPTJPEGQ = new QScrollBar(Qt::Horizontal, SSFrame1[0]);
    SCOPTJPEGQ->setObjectName(QStringLiteral("SCOPTJPEGQ"));
    SCOPTJPEGQ->setRange(1, 99);
    SCOPTJPEGQ->setSingleStep(5);
    SCOPTJPEGQ->setPageStep(10);
    JpegQualityLabel = new QLabel(SSFrame1[0]);
    JpegQualityLabel->setObjectName(QStringLiteral("LabelJpegQ"));
    JpegQualityLabel->setMinimumWidth(JpegQualityLabel->fontMetrics().horizontalAdvance(QStringLiteral("999"))
                                      + 4);
    jrow->addWidget(SCOPTJPEGQ, 1);
    jrow->addWidget(JpegQualityLabel);
    g->addLayout(jrow, gRow++, 1);
    g->setColumnStretch(1, 1);
    g->setRowStretch(gRow, 1);
    connect(SCOPTJPEGQ, &QScrollBar::valueChanged, this,
            [this](int v) { JpegQualityLabel->setText(QString::number(v)); });

    // Search page
    auto *s = new QVBoxLayout(SSFrame1[1]);
    s->setContentsMargins(6, 6, 6, 6);
    auto entry = [&](int i, const char *label, QWidget *page, QBoxLayout *lay) {
        auto *l = new QLabel(QString::fromLatin1(label), page);
        l->setObjectName(QStringLiteral("Text4Label_%1").arg(i));
        lay->addWidget(l);
        Text4[i] = new QLineEdit(page);
        Text4[i]->setObjectName(QStringLiteral("Text4_%1").arg(i));
        Text4[i]->setAutoFillBackground(true);
        lay->addWidget(Text4[i]);
    };
    entry(2, "Number of Folders and Files to Initially Search:", SSFrame1[1], s);
    entry(3, "Number of Folders and Files to Search Next:", SSFrame1[1], s);
    s->addStretch(1);

    // Thumbnail page
    auto *t = new QVBoxLayout(SSFrame1[2]);
    t->setContentsMargins(6, 6, 6, 6);
    entry(0, "ThumbNail Height (cm):", SSFrame1[2], t);
    entry(1, "ThumbNail Width (cm):", SSFrame1[2], t);
    t->addWidget(makeCombo(CMBTHUMBRESL, "CMBTHUMBRESL", "ThumbNail Resolution:",
                           {"32 Bits/Bitmap", "24 Bits/Bitmap", "16 Bits/Bitmap", "8 Bits/Bitmap",
                            "7 Bits/Bitmap", "6 Bits/Bitmap", "5 Bits/Bitmap", "4 Bits/Bitmap",
                            "3 Bits/Bitmap", "2 Bits/Bitmap", "1 Bits/Bitmap"},
                           SSFrame1[2]));
    t->addWidget(CMBTHUMBRESL);
    t->addStretch(1);

    auto *buttons = new QHBoxLayout;
    OptApplyBtn = new QPushButton(QStringLiteral("Apply"), this);
    OptApplyBtn->setObjectName(QStringLiteral("OptApplyBtn"));
    OptCancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
    OptCancelBtn->setObjectName(QStringLiteral("OptCancelBtn"));
    OptHelpBtn = new QPushButton(QStringLiteral("Help"), this);
    OptHelpBtn->setObjectName(QStringLiteral("OptHelpBtn"));
    buttons->addWidget(OptApplyBtn);
    buttons->addWidget(OptCancelBtn);
    buttons->addWidget(OptHelpBtn);
    right->addLayout(buttons);

    auto *clock = new QHBoxLayout;
    for (int i = 6; i <= 7; ++i) {
        Label2[i] = new QLabel(this);
        Label2[i]->setObjectName(QStringLiteral("Label2_%1").arg(i));
        // The line is kept before the clock first writes it, so nothing moves then.
        Label2[i]->setMinimumHeight(Label2[i]->fontMetrics().height());
        clock->addWidget(Label2[i]);
    }
    right->addLayout(clock);
    outer->addLayout(right, 1);

    connect(OptGeneralsBtn, &QPushButton::clicked, this, [this] { showPage(0); });
    connect(OptSearchBtn, &QPushButton::clicked, this, [this] { showPage(1); });
    connect(OptThumbsBtn, &QPushButton::clicked, this, [this] { showPage(2); });
    connect(OptApplyBtn, &QPushButton::clicked, this, [this] { OptApplyBtnClick(); });
    connect(OptCancelBtn, &QPushButton::clicked, this, [this] { OptCancelBtnClick(); });
    connect(OptHelpBtn, &QPushButton::clicked, this,
            [this] { w_.OnToolClick(tool::mnuHelpTableofContents); });
    showPage(0);
}

void ToolsTab::showPage(int page)
{
    for (int i = 0; i < 3; ++i) SSFrame1[i]->setVisible(i == page);
}

uint32_t ToolsTab::boxColor(int box) const { return boxColors_[box]; }

void ToolsTab::setBoxColor(int box, uint32_t c)
{
    boxColors_[box] = c;
    QPalette p = Text3[box]->palette();
    p.setColor(QPalette::Base, toQColor(c));
    p.setColor(QPalette::Window, toQColor(c));
    Text3[box]->setPalette(p);
    Text3[box]->setProperty("twColor", static_cast<qulonglong>(c));
}

void ToolsTab::ShowColors()
{
    for (int box = 0; box < 28; ++box) setBoxColor(box, G.Colors.field(colorFieldOfBox(box)));
}

void ToolsTab::ReadColors()
{
    for (int box = 0; box < 28; ++box) G.Colors.field(colorFieldOfBox(box)) = boxColor(box);
}

void ToolsTab::ShowOptions()
{
    const OptionSettings &o = G.Options;
    Text4[0]->setText(twoDecimals(o.ThumbCellHeight / (w_.state().ThumbScaleY / 15)));
    Text4[1]->setText(twoDecimals(o.ThumbCellWidth / (w_.state().ThumbScaleX / 15)));
    Text4[2]->setText(plainNumber(o.InitialSearchLimit));
    Text4[3]->setText(plainNumber(o.NextSearchLimit));
    CHKBOLD->setChecked(o.BoldFonts);
    CHKSAVEFOLDER->setChecked(o.SaveLastFolder);
    CHKDOCUMENTTEXT->setChecked(o.DocumentsAsSource);
    CHKAUTOPICT->setChecked(o.AutoPicture);
    CHKAUTOVIDEO->setChecked(o.AutoPlayVideo);
    CHKAUTOMUSIC->setChecked(o.AutoPlayMusic);
    CHKOPTVIDEOLOOP->setChecked(o.VideoLoopDefault);
    CHKOPTMUSICLOOP->setChecked(o.MusicLoopDefault);
    CHKVIDEOLIST->setChecked(o.VideoListAtStart);
    auto setIndex = [](QComboBox *c, double v) {
        const int i = static_cast<int>(v);
        c->setCurrentIndex(i >= 0 && i < c->count() ? i : -1);
    };
    setIndex(CMBMENUTYPE, o.MenuFontType);
    setIndex(CMBMENU, o.MenuStyle);
    setIndex(CMBFONTTYPE, o.LabelTextStyle);
    setIndex(CMBTHUMBRESL, o.ThumbResolution);
    const int q = static_cast<int>(o.JpegQuality);
    SCOPTJPEGQ->setValue(qBound(1, q, 99));
    JpegQualityLabel->setText(plainNumber(o.JpegQuality));
}

void ToolsTab::ReadOptions()
{
    OptionSettings &o = G.Options;
    o.ThumbCellHeight = std::trunc(Val(Text4[0]->text()) * (w_.state().ThumbScaleY / 15));
    o.ThumbCellWidth = std::trunc(Val(Text4[1]->text()) * (w_.state().ThumbScaleX / 15));
    o.InitialSearchLimit = std::trunc(Val(Text4[2]->text()));
    o.NextSearchLimit = static_cast<int32_t>(std::trunc(Val(Text4[3]->text())));
    o.BoldFonts = CHKBOLD->isChecked();
    o.SaveLastFolder = CHKSAVEFOLDER->isChecked();
    o.DocumentsAsSource = CHKDOCUMENTTEXT->isChecked();
    o.AutoPicture = CHKAUTOPICT->isChecked();
    o.AutoPlayVideo = CHKAUTOVIDEO->isChecked();
    o.AutoPlayMusic = CHKAUTOMUSIC->isChecked();
    o.VideoLoopDefault = CHKOPTVIDEOLOOP->isChecked();
    o.MusicLoopDefault = CHKOPTMUSICLOOP->isChecked();
    o.VideoListAtStart = CHKVIDEOLIST->isChecked();
    if (CMBMENUTYPE->currentIndex() >= 0) o.MenuFontType = CMBMENUTYPE->currentIndex();
    if (CMBMENU->currentIndex() >= 0) o.MenuStyle = CMBMENU->currentIndex();
    if (CMBFONTTYPE->currentIndex() >= 0) o.LabelTextStyle = int16_t(CMBFONTTYPE->currentIndex());
    if (CMBTHUMBRESL->currentIndex() >= 0) o.ThumbResolution = CMBTHUMBRESL->currentIndex();
    o.JpegQuality = Val(JpegQualityLabel->text());
}

bool ToolsTab::ValidateOptions()
{
    auto fail = [this](const QString &msg, QLineEdit *focus) {
        inform(msg, AppTitle, w_.window());
        if (w_.selectedTab() == 8) focus->setFocus();
        return false;
    };
    const double h = Val(Text4[0]->text()), wd = Val(Text4[1]->text());
    if (h < 0.5 || h > 5.5 || wd < 0.5 || wd > 5.5)
        return fail(QStringLiteral("Invalid Sizes for ThumbNail Images"), Text4[0]);
    const double first = Val(Text4[2]->text());
    if (first < 2500 || first > 10000)
        return fail(QStringLiteral("Enter a Number between 2,500 and 10,000 of Files to Initially Search"),
                    Text4[2]);
    const double next = Val(Text4[3]->text());
    if (next < 500 || next > 2500)
        return fail(QStringLiteral("Enter a Number between 500 and 2500 of Files to Search Next"), Text4[3]);
    return true;
}

void ToolsTab::OptApplyBtnClick()
{
    // Colours are stored before the options are checked, so they are kept even when the
    // options are refused.
    ReadColors();
    const StoreResult sc = SaveColors(G.Colors, G.ProgramDir);
    if (!sc.ok) inform(sc.message, AppTitle, w_.window());
    if (ValidateOptions()) {
        ReadOptions();
        const StoreResult so = SaveOptions(G.Options, G.ProgramDir);
        if (!so.ok) inform(so.message, AppTitle, w_.window());
        w_.ApplyColors();
    }
    repaintEntries();
}

void ToolsTab::OptCancelBtnClick()
{
    ShowColors();
    ShowOptions();
}

void ToolsTab::repaintEntries()
{
    for (int box = 0; box < 28; ++box) setBoxColor(box, boxColors_[box]);
    for (QWidget *e : {static_cast<QWidget *>(Text4[0]), static_cast<QWidget *>(Text4[1]),
                       static_cast<QWidget *>(Text4[2]), static_cast<QWidget *>(Text4[3]),
                       static_cast<QWidget *>(CMBTHUMBRESL)}) {
        QPalette p = e->palette();
        p.setColor(QPalette::Base, toQColor(G.Colors.EntryBack));
        p.setColor(QPalette::Text, toQColor(G.Colors.EntryText));
        e->setPalette(p);
    }
}

void ToolsTab::layoutTab()
{
    for (int i = 0; i < 3; ++i)
        if (SSFrame1[i]->isVisible()) SSFrame1[i]->raise();
}

void ToolsTab::chooseColor(int box)
{
    QColorDialog dlg(toQColor(boxColor(box)), this);
    dlg.setObjectName(QStringLiteral("ColorDialog"));
    dlg.setWindowTitle(QStringLiteral("Select Color"));
    dlg.setOption(QColorDialog::DontUseNativeDialog, true);
    if (dlg.exec() != QDialog::Accepted) return;
    setBoxColor(box, fromQColor(dlg.selectedColor()));
}

bool ToolsTab::eventFilter(QObject *o, QEvent *e)
{
    if (e->type() == QEvent::MouseButtonDblClick) {
        for (int box = 0; box < 28; ++box) {
            if (o == Text3[box]) {
                chooseColor(box);
                return true;
            }
        }
    }
    return QWidget::eventFilter(o, e);
}

}  // namespace tw
