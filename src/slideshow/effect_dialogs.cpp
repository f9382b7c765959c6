#include "slideshow/effect_dialogs.h"

#include "core/context_help.h"
#include "slideshow/effect_image.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace tw::slides {

const std::vector<FillStyleRow> &fillStyleRows()
{
    static const std::vector<FillStyleRow> rows = [] {
        std::vector<FillStyleRow> r;
        const char *patterns[] = {
            "Solid", "Horizontal Lines", "Vertical Lines", "Downward Diagonal", "Upward Diagonal",
            "Cross", "Diagonal Cross"};
        for (int i = 0; i < 7; ++i)
            r.push_back({i, QStringLiteral("Pattern: ") + QLatin1String(patterns[i])});
        const char *lin[] = {"L to R",   "R to L",   "T to B",   "B to T",
                             "LT to RB", "LB to RT", "RT to LB", "RB to LT"};
        for (int i = 0; i < 8; ++i)
            r.push_back({1000 + i, QStringLiteral("Gradient: Linear ") + QLatin1String(lin[i])});
        const char *mir[] = {"L&R to C",   "C to L&R",   "T&B to C",   "C to T&B",
                             "LT&RB to C", "C to LT&RB", "RT&LB to C", "C to RT&LB"};
        for (int i = 0; i < 8; ++i)
            r.push_back({1008 + i, QStringLiteral("Gradient: Mirrored ") + QLatin1String(mir[i])});
        const char *ang[] = {"towards LT", "towards LB", "towards RT", "towards RB",
                             "from LT",    "from LB",    "from RT",    "from RB"};
        for (int i = 0; i < 8; ++i)
            r.push_back({2000 + i, QStringLiteral("Gradient: Angular ") + QLatin1String(ang[i])});
        r.push_back({3000, QStringLiteral("Gradient: Rectangular to C")});
        r.push_back({3001, QStringLiteral("Gradient: Rectangular from C")});
        r.push_back({4000, QStringLiteral("Gradient: Elliptical to C")});
        r.push_back({4001, QStringLiteral("Gradient: Elliptical from C")});
        const char *con[] = {"L", "R", "T", "B", "LT", "LB", "RT", "RB"};
        for (int i = 0; i < 8; ++i)
            r.push_back({5000 + i, QStringLiteral("Gradient: Conical from ") + QLatin1String(con[i])});
        return r;
    }();
    return rows;
}

namespace {

QLineEdit *numberBox(const QString &name, int value, int lo, int hi, QWidget *parent)
{
    auto *e = new QLineEdit(QString::number(value), parent);
    e->setObjectName(name);
    e->setValidator(new QIntValidator(lo, hi, e));
    return e;
}

int numberOf(QLineEdit *e, int fallback)
{
    bool ok = false;
    const int v = e->text().trimmed().toInt(&ok);
    return ok ? v : fallback;
}

QColor toColor(uint32_t c) { return bgr(c); }
uint32_t fromColor(const QColor &c)
{
    return uint32_t(c.red()) | uint32_t(c.green()) << 8 | uint32_t(c.blue()) << 16;
}

}  // namespace

EffectDialog::EffectDialog(Kind kind, const EffectValues &v, const QImage &demo, bool allowPasses,
                           QWidget *parent)
    : QDialog(parent), kind_(kind), v_(v)
{
    setObjectName(kind == Paint ? QStringLiteral("PaintEffectDialog")
                                : QStringLiteral("TransitionEffectDialog"));
    setWindowTitle(kind == Paint ? QStringLiteral("Paint Effect") : QStringLiteral("Transition Effect"));
    setHelpTopic(this, QStringLiteral("slideshow"));
    auto *top = new QHBoxLayout(this);
    auto *lists = new QVBoxLayout;
    classes_ = new QListWidget(this);
    classes_->setObjectName(QStringLiteral("EffectClassList"));
    for (const EffectClass &c : effectClasses()) classes_->addItem(c.name);
    effects_ = new QListWidget(this);
    effects_->setObjectName(QStringLiteral("EffectList"));
    lists->addWidget(new QLabel(QStringLiteral("Class"), this));
    lists->addWidget(classes_, 1);
    lists->addWidget(new QLabel(QStringLiteral("Effect"), this));
    lists->addWidget(effects_, 2);
    top->addLayout(lists);

    auto *right = new QVBoxLayout;
    auto *form = new QFormLayout;
    number_ = numberBox(QStringLiteral("EffectNumber"), v.effect, -2147483647, 2147483647, this);
    grain_ = numberBox(QStringLiteral("GrainText"), v.grain, 1, 1000, this);
    delay_ = numberBox(QStringLiteral("DelayText"), v.delay, 0, 10000, this);
    wand_ = numberBox(QStringLiteral("WandText"), v.wand, 0, 1000, this);
    form->addRow(QStringLiteral("Effect number"), number_);
    form->addRow(QStringLiteral("Grain"), grain_);
    form->addRow(QStringLiteral("Delay"), delay_);
    form->addRow(QStringLiteral("Wand"), wand_);
    colorBtn_ = new QPushButton(this);
    colorBtn_->setObjectName(QStringLiteral("EffectColorBtn"));
    form->addRow(QStringLiteral("Color"), colorBtn_);
    transparent_ = new QCheckBox(QStringLiteral("Transparent"), this);
    transparent_->setObjectName(QStringLiteral("TransparentCheck"));
    transparent_->setChecked(v.transparent);
    transparentBtn_ = new QPushButton(this);
    transparentBtn_->setObjectName(QStringLiteral("TransparentColorBtn"));
    form->addRow(transparent_, transparentBtn_);
    if (kind == Paint) {
        passes_ = numberBox(QStringLiteral("PassesText"), v.passes, 1, 25, this);
        passes_->setEnabled(allowPasses);
        form->addRow(QStringLiteral("Passes"), passes_);
    } else {
        style_ = new QComboBox(this);
        style_->setObjectName(QStringLiteral("FillStyleCombo"));
        int row = 0;
        for (size_t i = 0; i < fillStyleRows().size(); ++i) {
            style_->addItem(fillStyleRows()[i].name, fillStyleRows()[i].style);
            if (fillStyleRows()[i].style == v.style) row = int(i);
        }
        style_->setCurrentIndex(row);
        form->addRow(QStringLiteral("Fill"), style_);
        const char *names[] = {"Gradient Start", "Gradient End", "Pattern Fore", "Pattern Back"};
        for (int i = 0; i < 4; ++i) {
            patternBtn_[i] = new QPushButton(this);
            patternBtn_[i]->setObjectName(QStringLiteral("PatternColorBtn%1").arg(i + 1));
            showColor(patternBtn_[i], v_.pattern[i]);
            const QString title =
                QStringLiteral("Select ") + QLatin1String(names[i]) + QStringLiteral(" Color");
            connect(patternBtn_[i], &QPushButton::clicked, this,
                    [this, i, title] { pickColor(&v_.pattern[i], patternBtn_[i], title); });
            form->addRow(QLatin1String(names[i]), patternBtn_[i]);
        }
        connect(style_, &QComboBox::currentIndexChanged, this, [this] { replay(); });
    }
    right->addLayout(form);
    preview_ = new EffectImage(this);
    preview_->setObjectName(QStringLiteral("PreviewImage"));
    preview_->setMinimumSize(200, 150);
    preview_->setAutoRepaint(false);
    preview_->setPicture(demo);
    right->addWidget(preview_, 1);
    auto *buttons = new QDialogButtonBox(this);
    auto *ok = buttons->addButton(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("OKBtn"));
    auto *cancel = buttons->addButton(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("CancelBtn"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    right->addWidget(buttons);
    top->addLayout(right, 1);

    showColor(colorBtn_, v_.color);
    showColor(transparentBtn_, v_.transparentColor);
    connect(colorBtn_, &QPushButton::clicked, this,
            [this] { pickColor(&v_.color, colorBtn_, QStringLiteral("Select Effect Color")); });
    connect(transparentBtn_, &QPushButton::clicked, this, [this] {
        pickColor(&v_.transparentColor, transparentBtn_, QStringLiteral("Select Transparent Color"));
    });
    connect(classes_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (filling_) return;
        fillEffects(row);
        if (effects_->count() > 0) effects_->setCurrentRow(0);
    });
    connect(effects_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (filling_ || row < 0) return;
        filling_ = true;
        number_->setText(QString::number(effects_->item(row)->data(Qt::UserRole).toInt()));
        filling_ = false;
        replay();
    });
    connect(number_, &QLineEdit::textChanged, this, [this] {
        if (filling_) return;
        selectEffect(numberOf(number_, 0));
        replay();
    });
    for (QLineEdit *e : {grain_, delay_, wand_})
        connect(e, &QLineEdit::editingFinished, this, [this] { replay(); });
    connect(transparent_, &QCheckBox::toggled, this, [this] { replay(); });
    selectEffect(v.effect);
    // The preview plays again after a short rest while the dialog stays open.
    preview_->onPainted = [this] {
        if (SlideClock::manual()) return;
        QTimer::singleShot(800, this, [this] {
            if (isVisible() && !preview_->painting()) replay();
        });
    };
    QTimer::singleShot(0, this, [this] { replay(); });
}

EffectDialog::~EffectDialog() = default;

void EffectDialog::fillEffects(int classIndex)
{
    filling_ = true;
    effects_->clear();
    if (classIndex >= 0 && classIndex < int(effectClasses().size())) {
        const EffectClass &c = effectClasses()[size_t(classIndex)];
        for (int e = c.first; e <= c.last; ++e) {
            auto *it = new QListWidgetItem(QStringLiteral("%1 %2").arg(e).arg(effectName(e)), effects_);
            it->setData(Qt::UserRole, e);
        }
    }
    filling_ = false;
}

// Shows the class and row of an effect number; a number outside the classes selects none.
void EffectDialog::selectEffect(int effect)
{
    const int cls = effectClassOf(effect);
    filling_ = true;
    classes_->setCurrentRow(cls);
    filling_ = false;
    fillEffects(cls);
    filling_ = true;
    if (cls >= 0) effects_->setCurrentRow(effect - effectClasses()[size_t(cls)].first);
    filling_ = false;
}

void EffectDialog::showColor(QPushButton *b, uint32_t c)
{
    b->setText(QString::number(c));
    QPalette pal = b->palette();
    pal.setColor(QPalette::Button, toColor(c));
    b->setPalette(pal);
    b->setAutoFillBackground(true);
}

void EffectDialog::pickColor(uint32_t *target, QPushButton *button, const QString &title)
{
    QColorDialog dlg(toColor(*target), this);
    dlg.setOption(QColorDialog::DontUseNativeDialog, true);
    dlg.setWindowTitle(title);
    if (dlg.exec() != QDialog::Accepted) return;
    *target = fromColor(dlg.currentColor());
    showColor(button, *target);
    replay();
}

void EffectDialog::replay()
{
    const EffectValues v = values();
    preview_->setAutoRepaint(false);
    preview_->setEffectEnabled(true);
    for (int i = 0; i < 4; ++i) preview_->PatternColor[i] = v.pattern[i];
    preview_->Grain = std::max(1, v.grain);
    preview_->Delay = std::max(0, v.delay);
    preview_->Wand = v.wand;
    preview_->EffectColor = v.color;
    preview_->Transparent = v.transparent;
    preview_->TransparentColor = v.transparentColor;
    preview_->PassCount = 1;
    preview_->PassIndex = 1;
    if (kind_ == Transition) {
        preview_->TransitionEffect = v.effect;
        preview_->FillKind = v.effect == NoEffect ? 0 : (v.style >= 1000 ? 1 : 2);
        preview_->FillValue = v.style >= 1000 ? v.style : 4000;
        preview_->GradientValue = v.style >= 1000 ? 1 : (v.style > 0 ? v.style + 1 : 0);
        preview_->Option = v.option;
        preview_->PaintEffect = NoEffect;
    } else {
        preview_->TransitionEffect = NoEffect;
        preview_->FillKind = 0;
        preview_->PaintEffect = v.effect;
        preview_->PassCount = kind_ == Paint && passes_ ? std::clamp(v.passes, 1, 25) : 1;
    }
    preview_->setAutoRepaint(true);
}

EffectValues EffectDialog::values() const
{
    EffectValues v = v_;
    v.effect = numberOf(number_, v_.effect);
    v.grain = numberOf(grain_, v_.grain);
    v.delay = numberOf(delay_, v_.delay);
    v.wand = numberOf(wand_, v_.wand);
    v.transparent = transparent_->isChecked();
    if (passes_) v.passes = std::clamp(numberOf(passes_, v_.passes), 1, 25);
    if (style_) v.style = style_->currentData().toInt();
    return v;
}

}  // namespace tw::slides
