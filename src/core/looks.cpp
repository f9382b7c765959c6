#include "looks.h"

#include "colors.h"
#include "globals.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLinearGradient>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>
#include <QToolBar>
#include <QToolButton>
#include <array>

namespace tw {

namespace {

// Draws item text twice more, a light and a dark copy one pixel apart, under the text.
class TextEffectStyle : public QProxyStyle {
public:
    explicit TextEffectStyle(int effect) : effect_(effect) {}
    void drawItemText(QPainter *p, const QRect &rect, int flags, const QPalette &pal, bool enabled,
                      const QString &text, QPalette::ColorRole role) const override
    {
        if (effect_ > 0 && enabled && !text.isEmpty()) {
            const bool heavy = effect_ == 2 || effect_ == 4;
            const bool raised = effect_ == 1 || effect_ == 2;
            const QColor light = heavy ? QColor(Qt::white) : pal.color(QPalette::Light);
            const QColor dark = heavy ? QColor(Qt::black) : pal.color(QPalette::Dark);
            const QPoint up(-1, -1), down(1, 1);
            p->save();
            p->setPen(light);
            p->drawText(rect.translated(raised ? up : down), flags, text);
            p->setPen(dark);
            p->drawText(rect.translated(raised ? down : up), flags, text);
            p->restore();
        }
        QProxyStyle::drawItemText(p, rect, flags, pal, enabled, text, role);
    }
    int effect() const { return effect_; }

private:
    int effect_;
};

TextEffectStyle *effectStyle(int effect)
{
    static std::array<TextEffectStyle *, 5> styles{};
    if (effect < 1 || effect > 4) return nullptr;
    if (!styles[size_t(effect)]) {
        styles[size_t(effect)] = new TextEffectStyle(effect);
        // The styles live as long as the application.
        styles[size_t(effect)]->setParent(qApp);
    }
    return styles[size_t(effect)];
}

}  // namespace

void paintWidget(QWidget *w, uint32_t back, uint32_t text)
{
    if (!w) return;
    QPalette p = w->palette();
    paintPalette(p, back, text);
    w->setPalette(p);
    w->setAutoFillBackground(true);
}

void setTextEffect(QWidget *w, int effect)
{
    if (!w || textEffect(w) == effect) return;
    if (TextEffectStyle *s = effectStyle(effect)) w->setStyle(s);
    else w->setStyle(nullptr);
    w->setProperty("twTextEffect", effect);
}

int textEffect(const QWidget *w)
{
    const QVariant v = w ? w->property("twTextEffect") : QVariant();
    return v.isValid() ? v.toInt() : 0;
}

void paintControls(QWidget *root)
{
    if (!root) return;
    const ColorSettings &c = G.Colors;
    const int labelEffect = G.Options.LabelTextStyle;
    for (QWidget *w : root->findChildren<QWidget *>()) {
        if (qobject_cast<QCheckBox *>(w) || qobject_cast<QRadioButton *>(w))
            paintWidget(w, c.ServiceBack, c.ServiceText);
        else if (qobject_cast<QPushButton *>(w)) paintWidget(w, c.ButtonBack, c.ButtonText);
        if (qobject_cast<QAbstractItemView *>(w) || qobject_cast<QComboBox *>(w)
            || qobject_cast<QCheckBox *>(w) || qobject_cast<QPushButton *>(w)) {
            QFont f = w->font();
            if (f.bold() != G.Options.BoldFonts) {
                f.setBold(G.Options.BoldFonts);
                w->setFont(f);
            }
        }
        if (qobject_cast<QLabel *>(w)) setTextEffect(w, labelEffect);
    }
}

void applyMenuLook(QWidget *bar, uint32_t back, uint32_t text, const OptionSettings &o)
{
    if (!bar) return;
    const int style = int(o.MenuStyle);
    const int effect = int(o.MenuFontType);
    setTextEffect(bar, effect);
    QPalette p = bar->palette();
    paintPalette(p, back, text);
    if (style == 2 && !qobject_cast<QMenu *>(bar)) {
        // The shaded bar: lighter at the top, the menu colour at the bottom.
        const QColor b = p.color(QPalette::Window);
        QLinearGradient g(0, 0, 0, 1);
        g.setCoordinateMode(QGradient::ObjectMode);
        g.setColorAt(0, b.lighter(125));
        g.setColorAt(1, b);
        p.setBrush(QPalette::Window, QBrush(g));
    }
    bar->setPalette(p);
    bar->setAutoFillBackground(true);
    bar->setProperty("twMenuStyle", style);
    for (QToolButton *b : bar->findChildren<QToolButton *>()) b->setAutoRaise(style != 0);
    for (QToolButton *b : bar->findChildren<QToolButton *>()) setTextEffect(b, effect);
}

}  // namespace tw
