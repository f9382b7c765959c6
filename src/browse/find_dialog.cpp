#include "browse/find_dialog.h"

#include "core/colors.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/scenario_hooks.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace tw {

const std::array<FindOption, FindFle1::OptionCount> &FindFle1::options()
{
    // Captions, tool tips and patterns as the program has always shown them.
    static const std::array<FindOption, OptionCount> t = {{
        {"JPEG and LEAD Compressed", "Search for JPG and CMP Files", "*.JPG;*.JPE;*.CMP"},
        {"TIFF Formats (TIF and TIFF)", "Search for Uncompressed TIF/TIFF Files", "*.TIFF;*.TIF"},
        {"BMP Formats", "Search for BMP Files", "*.BMP"},
        {"Icons and Cursors", "Search for ICO and CUR Files", "*.ICO;*.CUR"},
        {"PCX Formats", "Search for PCX Files", "*.PCX"},
        {"Kodak Formats (PCD And FPX)", "Search for Kodak PCD and FPX Files", "*.PCD;*.FPX"},
        {"Microsoft Fax Format (AWD)", "Search for Microsoft Fax (AWD) Files", "*.AWD"},
        {"Exif Formats (TIFF And JPG)", "Search for Exif Formats (Uncompressed TIFF and JPG)",
         "*.TIFF;*.JPG"},
        {"Windows MetaFile Formats (WMF,EMF)", "Search for Windows Meta Files (WMF and EMF) Files",
         "*.WMF;*.EMF"},
        {"Fax File Format (FAX)", "Search for Raw Fax Format (FAX) Files", "*.FAX"},
        {"XPicMap (XPM)", "Search for XPicMap (XPM) Files", "*.XPM"},
        {"Interchange Format (IFF)", "Search for Interchange File Format (IFF) Files", "*.IFF"},
        {"Portable Bitmap Utilities (PBM)", "Search for Portable Bitmap Utilities (PBM) Files", "*.PBM"},
        {"Dr.Halo (CUT)", "Search for Dr. Halo (CUT) Files", "*.CUT"},
        {"Photoshop 3.0 Format (PSD)", "Search for Photoshop 3.0 (PSD) Files", "*.PSD"},
        {"Portable Network Graphics Format (PNG)", "Search for Portable Network Graphics (PNG) Files",
         "*.PNG"},
        {"Truevision TARGA Format (TGA)", "Search for TrueVision TARGA (TGA) Files", "*.TGA"},
        {"Encapsulated PostScript (EPS)", "Search for Enacpsulated PostScript (EPS) Files", "*.EPS"},
        {"SUN Raster Format (RAS)", "Search for SUN RasterFormat (RAS) Files", "*.RAS"},
        {"WordPerfect Format (WPG)", "Search for WordPerfect Format (WPG) Files", "*.WPG"},
        {"Macintosh Pict Format (PCT)", "Search for Macintosh Pict Format (PCT) Files", "*.PCT"},
        {"Microsoft Windows ClipBoard (CLP)", "Search for Microsoft Windows ClipBoard (CLP) Files", "*.CLP"},
        {"X Window Dump (XWD)", "Search for X Window Dump (XWD) Files", "*.XWD"},
        {"Flic Animation (FLC)", "Search for Flic Animation (FLC) Files", "*.FLC"},
        {"Windows Animated Cursor (ANI)", "Search for Windows Animated Cursor (ANI) Files", "*.ANI"},
        {"Silicon Graphics Image (SGI)", "Search for Silicon Graphics Image (SGI) Files", "*.SGI"},
        {"Wave Files (WAV)", "Search for Sounds-WAV Files", "*.WAV"},
        {"MIDI Files (MID, RMI)", "Search for MIDI or RMI Music Files", "*.MID;*.RMI"},
        {"Audio - Video (AVI, MPG, MPEG, MOV)", "Search for Audio/Visual (Movie) (AVI,MPG,MOV) Files",
         "*.AVI;*.MPG;*.MPEG;*.MOV;*.MP2;*.ASF;*.ASX;*.WMV"},
        {"Music Files (MP3,M3U)", "Search for Music (MP3,M3U) Files", "*.MP3;*.M3U;*.WMA"},
        {"Miscellaneous (MAC,IMG,MSP,ICA,CAL)",
         "Search for Miscellaneous 1-Bit Formats (MAC,IMG, and MSP) Files", "*.MAC;*.IMG;*.MSP;*.ICA;*.CAL"},
        {"Any or All Picture Files", "Search for Any Supported Picture Files",
         "*.JPG;*.JPE;*.CMP;*.TIFF;*.TIF;*.MPT;*.BMP;*.ICO;*.CUR;*.PCX;*.DCX;*.PCD;*.FPX;*.DIC;*.WMF;*.EMF;"
         "*.FAX;*.XPM;*.IFF;*.PBM;*.CUT;*.PSD;*.PNG;*.TGA;*.EPS;*.JBG;*.RAS;*.WPG;*.PCT;*.MAC;*.IMG;*.MSP;"
         "*.ICA;*.CAL;*.CLP;*.XWP;*.FLC;*.ANI;*.SGI;*.FAX;*.AWD"},
        {"Text Files (TXT,HTML, etc.)", "Search for Text (TXT,HTML, etc.) Files",
         "*.TXT;*.RTF;*.INI;*LOG;*.BAT;*.BAK;*.DOS;*.SYS;*.DOC;*.WPS;*.WDB;*.WRI;*.LST;*.HTM;*.HTML;*.SHTM;"
         "*.SHTML;*.ASP;*.URL;*.MSG"},
        {"Enter File to Locate", "Enter your own file or Global File (*.*) Type to Find", ""},
    }};
    return t;
}

int FindFle1::filterRowOf(int option)
{
    if (option < 32) return option;
    return option == 32 ? 34 : 35;
}

FindFle1::FindFle1(browse::SearchState &state, QWidget *parent) : QDialog(parent), S(state)
{
    setObjectName(QStringLiteral("FindFle1"));
    setWindowTitle(QStringLiteral("Enter File to Locate"));
    setModal(true);

    Label1 = new QLabel(QStringLiteral("Enter Name of File to Locate"), this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setToolTip(QStringLiteral("Enter File or Global Variable to Locate"));

    Frame1 = new QFrame(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    Frame1->setFrameShape(QFrame::StyledPanel);
    Frame1->setAutoFillBackground(true);
    auto *grid = new QGridLayout(Frame1);
    grid->setVerticalSpacing(2);
    group_ = new QButtonGroup(this);
    group_->setExclusive(true);
    const int perColumn = (OptionCount + 1) / 2;
    for (int i = 0; i < OptionCount; ++i) {
        auto *rb = new QRadioButton(options()[size_t(i)].caption, Frame1);
        rb->setObjectName(QStringLiteral("RDSELECT_%1").arg(i));
        rb->setToolTip(options()[size_t(i)].toolTip);
        rb->setAutoFillBackground(true);
        group_->addButton(rb, i);
        grid->addWidget(rb, i % perColumn, i / perColumn);
        RDSELECT[size_t(i)] = rb;
    }
    connect(group_, &QButtonGroup::idClicked, this, &FindFle1::onRow);

    OKBtn = new QPushButton(QStringLiteral("OK"), this);
    OKBtn->setObjectName(QStringLiteral("OKBtn"));
    OKBtn->setToolTip(QStringLiteral("Click OK to Start File Search"));
    CancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
    CancelBtn->setObjectName(QStringLiteral("CancelBtn"));
    CancelBtn->setToolTip(QStringLiteral("Click Cancel to Close File Search Window"));
    HelpBtn = new QPushButton(QStringLiteral("Help"), this);
    HelpBtn->setObjectName(QStringLiteral("HelpBtn"));
    // Enter presses the focused button; anywhere else (the pattern box, a row) it is OK.
    for (QPushButton *b : {OKBtn, CancelBtn, HelpBtn}) b->setAutoDefault(true);
    OKBtn->setDefault(true);
    connect(OKBtn, &QPushButton::clicked, this, &FindFle1::onOk);
    connect(CancelBtn, &QPushButton::clicked, this, &FindFle1::onCancel);
    // Help sends F1 to the dialog, which opens the help on the dialog's own topic.
    setHelpTopic(this, QStringLiteral("finding"));
    connect(HelpBtn, &QPushButton::clicked, this, [this] {
        QCoreApplication::postEvent(this, new QKeyEvent(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier));
        QCoreApplication::postEvent(this, new QKeyEvent(QEvent::KeyRelease, Qt::Key_F1, Qt::NoModifier));
    });

    auto *top = new QVBoxLayout(this);
    top->addWidget(Label1);
    top->addWidget(Text1);
    top->addWidget(Frame1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(OKBtn);
    buttons->addWidget(CancelBtn);
    buttons->addWidget(HelpBtn);
    top->addLayout(buttons);

    // Load.
    S.SearchConfirmed = false;
    if (S.FindOptionIndex >= 0 && S.FindOptionIndex <= 33) {
        RDSELECT[size_t(S.FindOptionIndex)]->setChecked(true);
    } else {
        S.FindOptionIndex = 0;
    }
    selected_ = S.FindOptionIndex;
    G.FindFle1Loaded = true;
    applyColors();

    // The dialog's own field, readable by name while it is open.
    registerScenarioVariables(QStringLiteral("FindFle1"), [this](const QString &name, QString *out) {
        if (name != QLatin1String("SelectedOption")) return false;
        *out = QString::number(selected_);
        return true;
    });
}

FindFle1::~FindFle1()
{
    unregisterScenarioVariables(QStringLiteral("FindFle1"));
    if (!closed_) G.FindFle1Loaded = false;
}

void FindFle1::onRow(int index)
{
    selected_ = index;
    if (isVisible() && index == 33) Text1->setFocus();
}

void FindFle1::onOk()
{
    const QString typed = Text1->text();
    if (!typed.isEmpty() && typed != QLatin1String(" ")) selected_ = 33;
    const int row = selected_ >= 0 && selected_ < OptionCount ? selected_ : 0;
    const QString pattern = row == 33 ? typed : options()[size_t(row)].pattern;
    S.SearchPattern = pattern;
    S.SearchConfirmed = true;
    S.FilterRow = int16_t(filterRowOf(row));
    S.FindOptionIndex = int16_t(row);
    // The hourglass stays on until the walk ends; no second press lands meanwhile.
    setCursor(Qt::WaitCursor);
    OKBtn->setCursor(Qt::WaitCursor);
    if (setPointerBusy) setPointerBusy(true);
    OKBtn->setEnabled(false);
    CancelBtn->setEnabled(false);
    accept();
}

void FindFle1::onCancel()
{
    S.SearchConfirmed = false;
    reject();
}

void FindFle1::done(int r)
{
    // The window's close box and Escape are Cancel too.
    if (r == QDialog::Rejected) S.SearchConfirmed = false;
    QDialog::done(r);
    if (!closed_) {
        closed_ = true;
        if (onClosed) onClosed();
        G.FindFle1Loaded = false;
    }
}

void FindFle1::applyColors()
{
    const ColorSettings &c = G.Colors;
    QPalette p = palette();
    paintPalette(p, c.ServiceBack, c.ServiceText);
    setPalette(p);
    Frame1->setPalette(p);
    Label1->setPalette(p);
    for (QRadioButton *rb : RDSELECT) rb->setPalette(p);
    QPalette e = Text1->palette();
    paintPalette(e, c.EntryBack, c.EntryText);
    Text1->setPalette(e);
    for (QPushButton *b : {OKBtn, CancelBtn, HelpBtn}) {
        QPalette bp = b->palette();
        paintPalette(bp, c.ButtonBack, c.ButtonText);
        b->setPalette(bp);
    }
}

void FindFle1::changeEvent(QEvent *e)
{
    if (e->type() == QEvent::ActivationChange && isActiveWindow()) applyColors();
    QDialog::changeEvent(e);
}

}  // namespace tw
