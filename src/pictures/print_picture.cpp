#include "pictures/print_picture.h"

#include "core/print_target.h"
#include "core/printing.h"

#include "core/context_help.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "pictures/imaging_control.h"
#include "pictures/imaging_errors.h"
#include "pictures/picture_decoder.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QColorDialog>
#include <QDateTime>
#include <QFontDialog>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QPagedPaintDevice>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace tw {

namespace {
constexpr double kTwips = 15.0;  // twips to the screen pixel
// The miniature sheet and the picture's place on it at the window's load, in twips.
constexpr double kSheetW = 3825, kSheetH = 4950;
constexpr double kImageLeft = 720, kImageTop = 1440, kImageW = 2400, kImageH = 1800;

QString boolText(bool b) { return b ? QStringLiteral("true") : QStringLiteral("false"); }
}  // namespace

double leadingNumber(const QString &text)
{
    const QString t = text.trimmed();
    int i = 0;
    if (i < t.size() && (t[i] == u'-' || t[i] == u'+')) ++i;
    while (i < t.size() && (t[i].isDigit() || t[i] == u'.')) ++i;
    bool ok = false;
    const double v = t.left(i).toDouble(&ok);
    return ok ? v : 0.0;
}

PrintPicture::PrintPicture(const QString &file, QWidget *parent)
    : QWidget(parent, Qt::Window), SelectedFile(file)
{
    setObjectName(QStringLiteral("PrntPict1"));
    setWindowTitle(QStringLiteral("Print Picture"));
    setAttribute(Qt::WA_DeleteOnClose);
    setHelpTopic(this, QStringLiteral("PrntPict1"));

    auto *top = new QHBoxLayout(this);
    // The sheet with its two scroll bars: across under it, down beside it.
    auto *sheetGrid = new QGridLayout;
    Frame2 = new QFrame(this);
    Frame2->setObjectName(QStringLiteral("Frame2"));
    Frame2->setFixedSize(int(kSheetW / kTwips), int(kSheetH / kTwips));
    Frame2->setFrameShape(QFrame::Box);
    Frame2->setAutoFillBackground(true);
    QPalette sp = Frame2->palette();
    sp.setColor(QPalette::Window, Qt::white);
    Frame2->setPalette(sp);
    Image1 = new QLabel(Frame2);
    Image1->setObjectName(QStringLiteral("Image1"));
    Image1->setScaledContents(true);
    Label1_0 = new QLabel(Frame2);
    Label1_0->setObjectName(QStringLiteral("Label1_0"));
    HScroll1 = new QScrollBar(Qt::Horizontal, this);
    HScroll1->setObjectName(QStringLiteral("HScroll1"));
    VScroll1 = new QScrollBar(Qt::Vertical, this);
    VScroll1->setObjectName(QStringLiteral("VScroll1"));
    for (QScrollBar *b : {HScroll1, VScroll1}) {
        b->setRange(0, 100);
        b->setSingleStep(1);
        b->setPageStep(5);
        b->setValue(100);
    }
    sheetGrid->addWidget(Frame2, 0, 0);
    sheetGrid->addWidget(VScroll1, 0, 1);
    sheetGrid->addWidget(HScroll1, 1, 0);
    top->addLayout(sheetGrid);

    auto *side = new QVBoxLayout;
    auto row = [&](const QString &caption, QWidget *w) {
        auto *h = new QHBoxLayout;
        h->addWidget(new QLabel(caption, this));
        h->addWidget(w, 1);
        side->addLayout(h);
    };
    TxtTitle = new QLineEdit(this);
    TxtTitle->setObjectName(QStringLiteral("TxtTitle"));
    TxtTitle->setToolTip(QStringLiteral("Enter or Change Picture Title"));
    TxtTop = new QLineEdit(this);
    TxtTop->setObjectName(QStringLiteral("TxtTop"));
    TxtTop->setToolTip(QStringLiteral("Enter Number to Space Picture on Page from Top of Page"));
    TxtLeft = new QLineEdit(this);
    TxtLeft->setObjectName(QStringLiteral("TxtLeft"));
    TxtLeft->setToolTip(QStringLiteral("Enter Number to Space Picture on Page from Left Margin"));
    row(QStringLiteral("Title:"), TxtTitle);
    row(QStringLiteral("Top:"), TxtTop);
    row(QStringLiteral("Left:"), TxtLeft);
    RDTITLEPOS_0 = new QRadioButton(QStringLiteral("Above Picture"), this);
    RDTITLEPOS_0->setObjectName(QStringLiteral("RDTITLEPOS_0"));
    RDTITLEPOS_1 = new QRadioButton(QStringLiteral("Below Picture"), this);
    RDTITLEPOS_1->setObjectName(QStringLiteral("RDTITLEPOS_1"));
    side->addWidget(RDTITLEPOS_0);
    side->addWidget(RDTITLEPOS_1);
    auto button = [&](QPushButton *&b, const char *name, const char *text, const char *tip) {
        b = new QPushButton(QLatin1String(text), this);
        b->setObjectName(QLatin1String(name));
        if (tip) b->setToolTip(QLatin1String(tip));
        side->addWidget(b);
    };
    button(FontBtn, "FontBtn", "Font", "Select Font for Title");
    button(FontClrBtn, "FontClrBtn", "Color", "Select Color of Print for Title");
    button(OKBtn, "OKBtn", "Print", "Print Selected Picture");
    button(PreviewBtn, "PreviewBtn", "Preview", "Show the Page as it will Print");
    button(CancelBtn, "CancelBtn", "Cancel", "Close window without Printing Selected Picture");
    button(HelpBtn, "HelpBtn", "Help", nullptr);
    Frame3 = new QFrame(this);
    Frame3->setObjectName(QStringLiteral("Frame3"));
    auto *f3 = new QVBoxLayout(Frame3);
    f3->addWidget(new QLabel(QStringLiteral("Picture Printed"), Frame3));
    Frame3->hide();
    side->addWidget(Frame3);
    side->addStretch(1);
    top->addLayout(side);

    connect(HScroll1, &QScrollBar::valueChanged, this, [this](int v) {
        if (PreviewBusy) return;
        setImageRect(imageLeft(), imageTop(), v / 100.0 * BaseWidth, imageHeight());
    });
    connect(VScroll1, &QScrollBar::valueChanged, this, [this](int v) {
        if (PreviewBusy) return;
        setImageRect(imageLeft(), imageTop(), imageWidth(), v / 100.0 * BaseHeight);
    });
    connect(TxtLeft, &QLineEdit::textChanged, this, [this](const QString &t) {
        // The left box works while the dialog sets itself up too.
        setImageRect(leadingNumber(t), imageTop(), imageWidth(), imageHeight());
    });
    connect(TxtTop, &QLineEdit::textChanged, this, [this](const QString &t) {
        if (PreviewBusy) return;
        setImageRect(imageLeft(), leadingNumber(t), imageWidth(), imageHeight());
        PlaceLabel();
    });
    connect(RDTITLEPOS_0, &QRadioButton::toggled, this, [this](bool on) {
        if (PreviewBusy || !on) return;
        TitlePosition = QStringLiteral("T");
        PlaceLabel();
    });
    connect(RDTITLEPOS_1, &QRadioButton::toggled, this, [this](bool on) {
        if (PreviewBusy || !on) return;
        TitlePosition = QStringLiteral("B");
        PlaceLabel();
    });
    connect(FontBtn, &QPushButton::clicked, this, [this] { FontBtn_Click(); });
    connect(FontClrBtn, &QPushButton::clicked, this, [this] { FontClrBtn_Click(); });
    connect(OKBtn, &QPushButton::clicked, this, [this] { OKBtn_Click(); });
    connect(PreviewBtn, &QPushButton::clicked, this, [this] { PreviewBtn_Click(); });
    connect(CancelBtn, &QPushButton::clicked, this, [this] { close(); });
    connect(HelpBtn, &QPushButton::clicked, this, [this] {
        // As the F1 key: the window's help topic.
        QCoreApplication::postEvent(this, new QKeyEvent(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier));
        QCoreApplication::postEvent(this, new QKeyEvent(QEvent::KeyRelease, Qt::Key_F1, Qt::NoModifier));
    });
    connect(TxtTitle, &QLineEdit::textChanged, this, [](const QString &) {});

    // Form load.
    TitleFont = TxtTitle->font();
    TitleColor = TxtTitle->palette().color(QPalette::Text);
    setImageRect(kImageLeft, kImageTop, kImageW, kImageH);
    BaseHeight = imageHeight();
    BaseWidth = int(imageWidth());
    PreviewBusy = true;
    LoadPreview(SelectedFile);
    const QString name = SelectedFile.mid(SelectedFile.lastIndexOf(u'/') + 1);
    TxtTitle->setText(name);
    Label1_0->setText(name);
    Label1_0->adjustSize();
    RDTITLEPOS_0->setChecked(true);
    TitlePosition = QStringLiteral("T");
    TxtTop->setText(QString::number(imageTop()));
    TxtLeft->setText(QString::number(imageLeft()));
    PlaceLabel();

    registerScenarioVariables(QStringLiteral("PrntPict1"), [this](const QString &n, QString *out) {
        if (n == QLatin1String("PreviewBusy")) *out = boolText(PreviewBusy);
        else if (n == QLatin1String("TitlePosition")) *out = TitlePosition;
        else if (n == QLatin1String("ImageRect"))
            *out = QStringLiteral("%1 %2 %3 %4")
                       .arg(imageLeft())
                       .arg(imageTop())
                       .arg(imageWidth())
                       .arg(imageHeight());
        else if (n == QLatin1String("LabelTop")) *out = QString::number(Label1_0->y() * kTwips);
        else if (n == QLatin1String("TitleColor")) *out = TitleColor.name();
        else return false;
        return true;
    });
}

PrintPicture::~PrintPicture() { unregisterScenarioVariables(QStringLiteral("PrntPict1")); }

double PrintPicture::imageLeft() const { return Image1->x() * kTwips; }
double PrintPicture::imageTop() const { return Image1->y() * kTwips; }
double PrintPicture::imageWidth() const { return Image1->width() * kTwips; }
double PrintPicture::imageHeight() const { return Image1->height() * kTwips; }
double PrintPicture::sheetWidth() const { return Frame2->width() * kTwips; }
double PrintPicture::sheetHeight() const { return Frame2->height() * kTwips; }

void PrintPicture::setImageRect(double left, double top, double width, double height)
{
    Image1->setGeometry(int(std::lround(left / kTwips)), int(std::lround(top / kTwips)),
                        std::max(0, int(std::lround(width / kTwips))),
                        std::max(0, int(std::lround(height / kTwips))));
}

void PrintPicture::LoadPreview(const QString &path)
{
    Image1->hide();
    Picture p;
    if (path.trimmed().isEmpty() || decodePictureFile(path, 1, false, &p) != ImagingOk || p.isNull()) return;
    picture_ = p.frames.first();
    bitsPerPixel_ = p.bitsPerPixel > 0 ? p.bitsPerPixel : 24;
    const double W = imageWidth(), H = imageHeight();
    const double bw = picture_.width(), bh = picture_.height();
    const double A = bw / W, B = bh / H, C = bh / bw;
    double cw, ch;
    if (A >= B) {
        ch = bh * C / B;
        cw = bw / A;
    } else {
        ch = bh / B;
        cw = (bw / C) / A + 50;
    }
    setImageRect(imageLeft(), imageTop(), cw, ch);
    const double sx = std::min(100.0, std::floor(cw / sheetWidth() * 100) + cw * 0.01);
    const double sy = std::min(100.0, std::floor(ch / sheetHeight() * 100) + ch * 0.01);
    VScroll1->setValue(int(sy));
    HScroll1->setValue(int(sx));
    Image1->setPixmap(QPixmap::fromImage(picture_.scaled(std::max(1, Image1->width() * 2),
                                                         std::max(1, Image1->height() * 2),
                                                         Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
    Image1->show();
}

void PrintPicture::PlaceLabel()
{
    double labelTop = 0;
    if (TitlePosition == QLatin1String("B")) labelTop = imageTop() + imageHeight() + 100;
    else labelTop = imageTop() - 380;
    Label1_0->move(Label1_0->x(), int(std::lround(labelTop / kTwips)));
    Label1_0->update();
}

void PrintPicture::changeEvent(QEvent *e)
{
    QWidget::changeEvent(e);
    if (e->type() == QEvent::ActivationChange && isActiveWindow()) PreviewBusy = false;
}

void PrintPicture::closeEvent(QCloseEvent *e) { QWidget::closeEvent(e); }

void PrintPicture::FontBtn_Click()
{
    bool ok = false;
    const QFont f = QFontDialog::getFont(&ok, TitleFont, this, QStringLiteral("Font"));
    if (!ok) return;
    TitleFont = f;
    TxtTitle->setFont(f);
}

void PrintPicture::FontClrBtn_Click()
{
    const QColor start = TxtTitle->palette().color(QPalette::Text);
    const QColor c = QColorDialog::getColor(start, this, QStringLiteral("Select Color"));
    TitleColor = c.isValid() ? c : start;
    QPalette pal = TxtTitle->palette();
    pal.setColor(QPalette::Text, TitleColor);
    TxtTitle->setPalette(pal);
    TxtTitle->setFocus();
}

void PrintPicture::OKBtn_Click()
{
    OKBtn->setEnabled(false);
    CancelBtn->setEnabled(false);
    Frame3->hide();
    if (!printing::hasPrinters() && printOutputFile().isEmpty()) {
        inform(QStringLiteral("No Printer is Installed - Add a Printer to the System to Print Pictures"),
               QStringLiteral("Tarnwick 2.0"), this);
    } else if (const auto job = printing::prepare(true, this)) {
        // With a print-to-file path set, a PDF there in place of the printer and its dialog.
        PrintPictureFile(*job->device());
    }
    OKBtn->setEnabled(true);
    CancelBtn->setEnabled(true);
}

void PrintPicture::PreviewBtn_Click()
{
    printing::preview(this, [this](QPagedPaintDevice *p) { PrintPictureFile(*p); });
}

bool PrintPicture::PrintPictureFile(QPagedPaintDevice &printer)
{
    const QString dashes(257, u'-');
    Q_UNUSED(dashes);
    QPainter painter;
    if (!painter.begin(&printer)) return false;
    const double dpiX = printer.logicalDpiX() > 0 ? printer.logicalDpiX() : 1200;
    const double dpiY = printer.logicalDpiY() > 0 ? printer.logicalDpiY() : 1200;
    const double twipsX = 1440.0 / dpiX, twipsY = 1440.0 / dpiY;
    DotsX = 8.0 / twipsX;
    DotsY = int(std::lround(8.0 / twipsY));
    // One unit is one printer pixel of the printable area.
    PageWidth = printer.width();
    PageHeight = printer.height();
    PrintWidth = PageWidth - 0.07 * PageWidth;
    PrintHeight = PageHeight - 0.3 * PageHeight;
    const double MarginX = 0.07 * PageWidth, MarginY = 0.3 * PageHeight;

    auto printAt = [&](double x, double y, const QString &text) {
        // x, y name the top left of the line, as the printer's current X and Y.
        painter.drawText(QPointF(x, y + painter.fontMetrics().ascent()), text);
    };
    auto setSize = [&](double points) {
        QFont f = painter.font();
        f.setPointSizeF(points);
        painter.setFont(f);
    };

    // The heading: the date line, then the title centred over the print width.
    QFont base(QStringLiteral("Sans Serif"));
    base.setPointSizeF(8);
    painter.setFont(base);
    painter.setPen(Qt::black);
    const QDateTime now = QDateTime::currentDateTime();
    const QLocale loc;
    printAt(DotsX * 25, DotsY * 25,
            loc.toString(now.date(), QLocale::ShortFormat) + QStringLiteral("   ")
                + loc.toString(now.time(), QLocale::ShortFormat));
    QFont title = TitleFont;
    painter.setFont(title);
    painter.setPen(TitleColor);
    const QString T = TxtTitle->text();
    const double ttw = painter.fontMetrics().horizontalAdvance(T);
    printAt(std::floor((PrintWidth - ttw) / 2), DotsY * 80, T);
    painter.setFont(base);
    painter.setPen(Qt::black);
    setSize(10);

    px = py = pw = ph = 0;
    OutWidth = OutHeight = 0;
    if (!SelectedFile.trimmed().isEmpty() && !picture_.isNull()) {
        BitmapHeight = picture_.height();
        BitmapWidth = picture_.width();
        if (BitmapHeight < 128 || BitmapWidth < 128) {
            BitmapHeight = BitmapHeight * 5 * DotsY;
            BitmapWidth = BitmapWidth * 5 * DotsX;
        }
        const double h = BitmapHeight, w = BitmapWidth;
        const double R = PrintWidth * h / w;
        if (bitsPerPixel_ > 8) {
            if (R >= PrintHeight) {
                OutHeight = PrintHeight;
                OutWidth = OutHeight * w / h;
            } else {
                OutWidth = PrintWidth;
                OutHeight = OutWidth * h / w;
            }
        } else if (R >= PrintHeight) {
            // A palette picture is never enlarged beyond its size.
            OutHeight = std::min(PrintHeight, BitmapHeight);
            OutWidth = BitmapWidth <= PrintWidth ? BitmapWidth : OutHeight * w / h;
        } else {
            OutWidth = std::min(PrintWidth, BitmapWidth);
            OutHeight = BitmapHeight <= PrintHeight ? BitmapHeight : OutWidth * h / w;
        }
        // The place comes from the miniature sheet.
        pw = PageWidth * imageWidth() / sheetWidth();
        ph = PageHeight * imageHeight() / sheetHeight();
        py = PageHeight * (leadingNumber(TxtTop->text()) / sheetHeight());
        px = PageWidth * (leadingNumber(TxtLeft->text()) / sheetWidth());
        if (pw + px > PrintWidth) px = MarginX / 2 + (PageWidth - pw) / 2;
        if (ph + py > PageHeight) py = MarginY / 2 + (PageHeight - ph) / 2;
        painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
        painter.drawImage(QRectF(px, py, pw, ph), picture_);
    }
    const QString label = Label1_0->text();
    const double tw = painter.fontMetrics().horizontalAdvance(label);
    labelX = px + pw / 2 - tw / 2;
    if (tw >= 0.8 * OutWidth) labelX = px;
    if (RDTITLEPOS_0->isChecked()) labelY = py - 60 - DotsY * 60;
    else labelY = py + 60 + ph + DotsY * 60;
    printAt(labelX, labelY, label);
    const bool ok = painter.end();
    if (ok) Frame3->show();
    return ok;
}

}  // namespace tw
