#include "pictures/prompts.h"

#include "core/context_help.h"
#include "core/scenario_hooks.h"
#include "pictures/imaging_control.h"

#include <QApplication>
#include <QCheckBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <cfenv>
#include <cmath>

namespace tw {

namespace {

// Rounds half to even, as the old runtime's integer conversions do.
double roundEven(double v)
{
    const int saved = std::fegetround();
    std::fesetround(FE_TONEAREST);
    const double r = std::nearbyint(v);
    std::fesetround(saved);
    return r;
}

bool within(const QScrollBar *b, int v) { return v >= b->minimum() && v <= b->maximum(); }

QString flagText(bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); }

}  // namespace

bool textToInt16(const QString &text, int16_t *out)
{
    const QString t = text.trimmed();
    if (t.isEmpty()) return false;
    bool ok = false;
    const double v = t.toDouble(&ok);
    if (!ok || !std::isfinite(v)) return false;
    const double r = roundEven(v);
    if (r < -32768 || r > 32767) return false;
    *out = int16_t(r);
    return true;
}

void centreOnScreen(QWidget *w)
{
    QScreen *s = w->screen() ? w->screen() : QGuiApplication::primaryScreen();
    if (!s) return;
    const QRect g = s->geometry();
    w->move(g.left() + (g.width() - w->width()) / 2, g.top() + (g.height() - w->height()) / 2);
}

// ------------------------------------------------------------------ NewValue1

NewValue1::NewValue1(QWidget *parent) : ValuePrompt(parent)
{
    setObjectName(QStringLiteral("NewValue1"));
    // The prompts of the picture commands: F1 and Help open the picture help.
    setHelpTopic(this, QStringLiteral("pictures"));
    setWindowTitle(QStringLiteral("New Value"));
    setModal(true);
    NewValueTitle = new QLabel(this);
    NewValueTitle->setObjectName(QStringLiteral("NewValueTitle"));
    NewValueBar = new QScrollBar(Qt::Horizontal, this);
    NewValueBar->setObjectName(QStringLiteral("NewValueBar"));
    NewValueBar->setMinimumWidth(220);
    NewValueBox = new QLineEdit(this);
    NewValueBox->setObjectName(QStringLiteral("NewValueBox"));
    NewValueBox->setToolTip(QStringLiteral("New Value Number"));
    NewValueBox->setMaximumWidth(80);
    CHKRESIZE = new QCheckBox(QStringLiteral("Resize"), this);
    CHKRESIZE->setObjectName(QStringLiteral("CHKRESIZE"));
    CHKRESIZE->setToolTip(QStringLiteral("Resize Image"));
    OKBtn = new QPushButton(QStringLiteral("OK"), this);
    OKBtn->setObjectName(QStringLiteral("OKBtn"));
    OKBtn->setToolTip(QStringLiteral("Set New Value"));
    OKBtn->setAutoDefault(false);
    CancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
    CancelBtn->setObjectName(QStringLiteral("CancelBtn"));
    CancelBtn->setToolTip(QStringLiteral("Close New Value Selection Window"));
    CancelBtn->setAutoDefault(false);

    auto *lay = new QVBoxLayout(this);
    lay->addWidget(NewValueTitle);
    auto *row = new QHBoxLayout;
    row->addWidget(NewValueBar, 1);
    row->addWidget(NewValueBox);
    lay->addLayout(row);
    lay->addWidget(CHKRESIZE);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(OKBtn);
    buttons->addWidget(CancelBtn);
    lay->addLayout(buttons);

    connect(NewValueBar, &QScrollBar::valueChanged, this, &NewValue1::barChanged);
    connect(NewValueBox, &QLineEdit::textChanged, this, &NewValue1::boxChanged);
    connect(OKBtn, &QPushButton::clicked, this, &NewValue1::okClicked);
    connect(CancelBtn, &QPushButton::clicked, this, [this] {
        setResult(QDialog::Rejected);
        hide();
    });
    adjustSize();
    // The prompt's fields, readable by name while it is loaded.
    registerScenarioVariables(QStringLiteral("NewValue1"), [this](const QString &n, QString *out) {
        if (n == QLatin1String("ValueAccepted")) *out = flagText(ValueAccepted);
        else if (n == QLatin1String("ChosenValue")) *out = QString::number(ChosenValue);
        else if (n == QLatin1String("BoxDriving")) *out = flagText(BoxDriving);
        else if (n == QLatin1String("BarDriving")) *out = flagText(BarDriving);
        else return false;
        return true;
    });
}

NewValue1::~NewValue1() { unregisterScenarioVariables(QStringLiteral("NewValue1")); }

void NewValue1::Setup(const QString &caption, const QString &label, int16_t maximum, int16_t minimum,
                      int16_t value, int16_t largeStep, int16_t smallStep, bool &showResize)
{
    setWindowTitle(caption);
    NewValueTitle->setText(QStringLiteral("Select ") + label);
    // Range first with no text follow-up, then the text written as digits.
    BarDriving = BoxDriving = false;
    NewValueBar->blockSignals(true);
    NewValueBar->setRange(std::min(minimum, maximum), std::max(minimum, maximum));
    NewValueBar->setValue(value);
    NewValueBar->blockSignals(false);
    NewValueBox->blockSignals(true);
    NewValueBox->setText(QString::number(value));
    NewValueBox->blockSignals(false);
    NewValueBar->setPageStep(largeStep);
    NewValueBar->setSingleStep(smallStep);
    ValueAccepted = false;
    CHKRESIZE->setChecked(true);
    CHKRESIZE->setVisible(showResize);
    BoxDriving = false;
    BarDriving = false;
    adjustSize();
    centreOnScreen(this);
}

bool NewValue1::GetResize() const { return CHKRESIZE->isChecked(); }

void NewValue1::barChanged(int value)
{
    if (!BoxDriving) {
        BarDriving = true;
        NewValueBox->setText(QString::number(value));
    }
    BoxDriving = false;
}

void NewValue1::boxChanged(const QString &text)
{
    if (!BarDriving) {
        BoxDriving = true;
        int16_t n;
        if (textToInt16(text, &n) && within(NewValueBar, n)) NewValueBar->setValue(n);
    }
    BarDriving = false;
}

void NewValue1::okClicked()
{
    int16_t n;
    if (!textToInt16(NewValueBox->text(), &n) || !within(NewValueBar, n)) return;
    ValueAccepted = true;
    ChosenValue = int16_t(NewValueBar->value());
    setResult(QDialog::Accepted);
    hide();
}

void ValuePrompt::keyPressEvent(QKeyEvent *e)
{
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        okClicked();
        return;
    }
    if (e->key() == Qt::Key_Escape) {
        setResult(QDialog::Rejected);
        hide();
        return;
    }
    QDialog::keyPressEvent(e);
}

// ------------------------------------------------------------------ NewSize1

NewSize1::NewSize1(QWidget *parent) : ValuePrompt(parent)
{
    setObjectName(QStringLiteral("NewSize1"));
    // The prompts of the picture commands: F1 and Help open the picture help.
    setHelpTopic(this, QStringLiteral("pictures"));
    setWindowTitle(QStringLiteral("New Size"));
    setModal(true);
    SCWeight1 = new QScrollBar(Qt::Horizontal, this);
    SCWeight1->setObjectName(QStringLiteral("SCWeight1"));
    SCHeight1 = new QScrollBar(Qt::Horizontal, this);
    SCHeight1->setObjectName(QStringLiteral("SCHeight1"));
    TxtWidth1 = new QLineEdit(this);
    TxtWidth1->setObjectName(QStringLiteral("TxtWidth1"));
    TxtHeight1 = new QLineEdit(this);
    TxtHeight1->setObjectName(QStringLiteral("TxtHeight1"));
    for (int i = 0; i < 2; ++i) {
        Frame2[i] = new QGroupBox(this);
        Frame2[i]->setObjectName(QStringLiteral("Frame2_%1").arg(i));
    }
    CHKASPECT = new QCheckBox(QStringLiteral("Keep Aspect Ratio"), this);
    CHKASPECT->setObjectName(QStringLiteral("CHKASPECT"));
    CHKRESAMPLE = new QCheckBox(QStringLiteral("Resample"), this);
    CHKRESAMPLE->setObjectName(QStringLiteral("CHKRESAMPLE"));
    OKBtn = new QPushButton(QStringLiteral("OK"), this);
    OKBtn->setObjectName(QStringLiteral("OKBtn"));
    CancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
    CancelBtn->setObjectName(QStringLiteral("CancelBtn"));
    HelpBtn = new QPushButton(QStringLiteral("Help"), this);
    HelpBtn->setObjectName(QStringLiteral("HelpBtn"));
    for (QPushButton *b : {OKBtn, CancelBtn, HelpBtn}) b->setAutoDefault(false);

    auto side = [](QGroupBox *g, QScrollBar *b, QLineEdit *t) {
        auto *l = new QHBoxLayout(g);
        b->setMinimumWidth(200);
        t->setMaximumWidth(80);
        l->addWidget(b, 1);
        l->addWidget(t);
    };
    side(Frame2[1], SCWeight1, TxtWidth1);
    side(Frame2[0], SCHeight1, TxtHeight1);
    auto *lay = new QVBoxLayout(this);
    lay->addWidget(Frame2[1]);
    lay->addWidget(Frame2[0]);
    auto *checks = new QHBoxLayout;
    checks->addWidget(CHKASPECT);
    checks->addWidget(CHKRESAMPLE);
    lay->addLayout(checks);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(OKBtn);
    buttons->addWidget(CancelBtn);
    buttons->addWidget(HelpBtn);
    lay->addLayout(buttons);

    connect(SCWeight1, &QScrollBar::valueChanged, this, [this](int v) { barChanged(0, v); });
    connect(SCHeight1, &QScrollBar::valueChanged, this, [this](int v) { barChanged(1, v); });
    connect(TxtWidth1, &QLineEdit::textChanged, this, [this](const QString &t) { textChanged(0, t); });
    connect(TxtHeight1, &QLineEdit::textChanged, this, [this](const QString &t) { textChanged(1, t); });
    connect(CHKASPECT, &QCheckBox::clicked, this, &NewSize1::aspectClicked);
    connect(OKBtn, &QPushButton::clicked, this, &NewSize1::okClicked);
    connect(CancelBtn, &QPushButton::clicked, this, [this] {
        setResult(QDialog::Rejected);
        hide();
    });
    connect(HelpBtn, &QPushButton::clicked, this, [this] {
        QCoreApplication::postEvent(this, new QKeyEvent(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier));
        QCoreApplication::postEvent(this, new QKeyEvent(QEvent::KeyRelease, Qt::Key_F1, Qt::NoModifier));
    });
    adjustSize();
    registerScenarioVariables(QStringLiteral("NewSize1"), [this](const QString &n, QString *out) {
        if (n == QLatin1String("SizeAccepted")) *out = flagText(SizeAccepted);
        else if (n == QLatin1String("SizeMode")) *out = QString::number(SizeMode);
        else if (n == QLatin1String("BoxDriving")) *out = flagText(BoxDriving);
        else if (n == QLatin1String("BarDriving")) *out = flagText(BarDriving);
        else return false;
        return true;
    });
}

NewSize1::~NewSize1() { unregisterScenarioVariables(QStringLiteral("NewSize1")); }

void NewSize1::Setup(int16_t mode, const ImagingControl &image)
{
    if (mode == 3 && image.hasRegion()) {
        const QRectF r = image.regionBounds();
        Setup(mode, int(std::lround(r.width())), int(std::lround(r.height())));
    } else {
        Setup(mode, image.pixelWidth(), image.pixelHeight());
    }
}

void NewSize1::Setup(int16_t mode, int pictureWidth, int pictureHeight)
{
    SizeMode = mode;
    SizeAccepted = false;
    picW_ = pictureWidth;
    picH_ = pictureHeight;
    // Nothing follows another while the controls are being set up.
    aspectPass_ = true;
    if (mode == 0 || mode == 3) {
        setWindowTitle(QStringLiteral("Resize"));
        Frame2[1]->setTitle(QStringLiteral(" Width "));
        Frame2[0]->setTitle(QStringLiteral(" Height "));
        const int w = std::max(picW_, 1);
        const int64_t hMax = std::min<int64_t>(int64_t(picH_) * 16384 / w, 32767);
        for (QScrollBar *b : {SCWeight1, SCHeight1}) {
            b->setMinimum(1);
            b->setPageStep(100);
            b->setSingleStep(10);
        }
        SCWeight1->setMaximum(16384);
        SCHeight1->setMaximum(int(std::max<int64_t>(hMax, 1)));
        SCWeight1->setValue(picW_);
        SCHeight1->setValue(picH_);
        TxtWidth1->blockSignals(true);
        TxtHeight1->blockSignals(true);
        TxtWidth1->setText(QString::number(SCWeight1->value()));
        TxtHeight1->setText(QString::number(SCHeight1->value()));
        TxtWidth1->blockSignals(false);
        TxtHeight1->blockSignals(false);
        CHKRESAMPLE->setChecked(false);
        CHKASPECT->setChecked(true);
    } else if (mode == 999) {
        setWindowTitle(QStringLiteral("Intensity Detect"));
        CHKRESAMPLE->hide();
        CHKASPECT->hide();
        Frame2[1]->setTitle(QStringLiteral("Low"));
        Frame2[0]->setTitle(QStringLiteral("High"));
        for (QScrollBar *b : {SCWeight1, SCHeight1}) {
            b->setRange(0, 255);
            b->setPageStep(10);
            b->setSingleStep(1);
            b->setValue(128);
        }
        TxtWidth1->blockSignals(true);
        TxtHeight1->blockSignals(true);
        TxtWidth1->setText(QStringLiteral("128"));
        TxtHeight1->setText(QStringLiteral("128"));
        TxtWidth1->blockSignals(false);
        TxtHeight1->blockSignals(false);
    }
    aspectPass_ = false;
    BoxDriving = false;
    BarDriving = false;
    adjustSize();
    centreOnScreen(this);
}

void NewSize1::GetResult(bool &accepted, int &width, int &height, bool &resample) const
{
    accepted = SizeAccepted;
    width = SCWeight1->value();
    height = SCHeight1->value();
    resample = CHKRESAMPLE->isChecked();
}

bool NewSize1::aspectOn() const { return CHKASPECT->checkState() == Qt::Checked && pictureSized(); }

void NewSize1::barChanged(int side, int value)
{
    if (BoxDriving) {
        // Its own text box moved it; the text side does the aspect step.
        BoxDriving = false;
        return;
    }
    BarDriving = true;
    box(side)->setText(QString::number(value));
    BarDriving = false;
    if (aspectPass_ || !aspectOn()) return;
    // The partner by the picture's ratio, rounded as a 32-bit number and held to 32767.
    const double exact = side == 0 ? double(picH_) * value / picW_ : double(picW_) * value / picH_;
    const int64_t partner = std::min<int64_t>(int64_t(roundEven(exact)), 32767);
    QScrollBar *other = bar(1 - side);
    if (partner != other->value() && within(other, int(partner))) {
        aspectPass_ = true;
        other->setValue(int(partner));  // its text box follows through its own change
        aspectPass_ = false;
    }
}

void NewSize1::textChanged(int side, const QString &text)
{
    if (BarDriving) {
        BarDriving = false;
        return;
    }
    BoxDriving = true;
    int16_t n;
    if (textToInt16(text, &n) && within(bar(side), n)) {
        if (bar(side)->value() != n) bar(side)->setValue(n);
        BoxDriving = false;
        if (!aspectPass_ && aspectOn()) {
            // The typed branch rounds as a 16-bit number with no limit: a partner past
            // 32767 does not fit, and the update stops there.
            const double exact = side == 0 ? double(picH_) * n / picW_ : double(picW_) * n / picH_;
            const double r = roundEven(exact);
            if (r >= -32768 && r <= 32767) {
                QScrollBar *other = bar(1 - side);
                const int partner = int(r);
                if (partner != other->value() && within(other, partner)) {
                    aspectPass_ = true;
                    other->setValue(partner);
                    aspectPass_ = false;
                }
            }
        }
    }
    BoxDriving = false;
}

void NewSize1::aspectClicked()
{
    if (!pictureSized()) return;
    SCHeight1->setMinimum(1);
    SCHeight1->setMaximum(int(std::min<int64_t>(int64_t(picH_) * 16384 / picW_, 32767)));
    const int64_t h =
        std::min<int64_t>(int64_t(roundEven(double(picH_) * SCWeight1->value() / picW_)), 32767);
    aspectPass_ = true;
    SCHeight1->setValue(int(h));
    aspectPass_ = false;
}

void NewSize1::okClicked()
{
    int16_t w, h;
    if (!textToInt16(TxtWidth1->text(), &w) || !within(SCWeight1, w)) return;
    if (!textToInt16(TxtHeight1->text(), &h) || !within(SCHeight1, h)) return;
    SizeAccepted = true;
    setResult(QDialog::Accepted);
    hide();
}

}  // namespace tw
