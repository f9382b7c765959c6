#include "looks.h"

#include "colors.h"
#include "globals.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QIcon>
#include <QLinearGradient>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardPaths>
#include <QToolBar>
#include <QToolButton>
#include <array>

namespace tw {

namespace {

// The colours of raised or inset text over a background: a light copy and a dark copy of the
// text, one pixel to either side of it. Light shading takes tints of the background itself,
// heavy shading white and black.
struct Shades {
    QColor light, dark;
};

Shades shadesOver(const QColor &back, bool heavy)
{
    if (heavy) return {QColor(Qt::white), QColor(Qt::black)};
    // A tint two thirds of the way to white, and the background at about half its lightness;
    // on a background that is nearly white or nearly black, white and black themselves.
    QColor light =
        QColor::fromRgbF(back.redF() + (1 - back.redF()) * 0.65, back.greenF() + (1 - back.greenF()) * 0.65,
                         back.blueF() + (1 - back.blueF()) * 0.65);
    QColor dark = back.darker(190);
    if (back.lightness() < 40) dark = QColor(Qt::black);
    if (back.lightness() > 235) light = QColor(Qt::white);
    return {light, dark};
}

// Draws text raised or inset, and, for a menu bar or a toolbar, the bar in one of the three
// menu styles. One style object for each pair of effect and menu style, shared by the widgets
// that use it (a widget's style does not pass to its children, so each widget is given its own).
class LookStyle : public QProxyStyle {
public:
    // MenuStyle is -1 for a widget that is no bar (a label, a tool button, a popup menu).
    LookStyle(int effect, int menuStyle) : effect_(effect), menuStyle_(menuStyle) {}
    int effect() const { return effect_; }

    void drawItemText(QPainter *p, const QRect &rect, int flags, const QPalette &pal, bool enabled,
                      const QString &text, QPalette::ColorRole role) const override
    {
        if (effect_ > 0 && enabled && !text.isEmpty()) {
            const Shades sh = shadesOver(pal.color(QPalette::Window), effect_ == 2 || effect_ == 4);
            drawCopies(p, sh, [&](const QColor &c, const QPoint &off) {
                QPalette copy = pal;
                copy.setColor(role, c);
                QProxyStyle::drawItemText(p, rect.translated(off), flags, copy, enabled, text, role);
            });
        }
        QProxyStyle::drawItemText(p, rect, flags, pal, enabled, text, role);
    }

    void drawControl(ControlElement el, const QStyleOption *opt, QPainter *p, const QWidget *w) const override
    {
        if (menuStyle_ >= 0 && w && (el == CE_ToolBar || el == CE_MenuBarEmptyArea)) {
            paintBar(p, opt->rect, opt->palette, w, el == CE_ToolBar);
            return;
        }
        if (menuStyle_ >= 0 && w && el == CE_MenuBarItem) {
            if (const auto *mi = qstyleoption_cast<const QStyleOptionMenuItem *>(opt)) {
                // The bar's own background under the item, then the item over a clear window.
                p->save();
                p->setClipRect(opt->rect);
                paintBar(p, w->rect(), opt->palette, w, false);
                p->restore();
                QStyleOptionMenuItem item = *mi;
                item.palette.setBrush(QPalette::Window, Qt::transparent);
                QProxyStyle::drawControl(el, &item, p, w);
                return;
            }
        }
        if (el == CE_MenuItem && effect_ > 0) {
            if (const auto *mi = qstyleoption_cast<const QStyleOptionMenuItem *>(opt)) {
                if (mi->menuItemType == QStyleOptionMenuItem::Normal
                    || mi->menuItemType == QStyleOptionMenuItem::SubMenu) {
                    drawMenuItem(*mi, p, w);
                    return;
                }
            }
        }
        QProxyStyle::drawControl(el, opt, p, w);
    }

private:
    template <typename Draw> void drawCopies(QPainter *p, const Shades &sh, Draw draw) const
    {
        // Raised: the light falls from the top left, so the light copy is above left and the
        // dark copy below right; inset the other way round.
        const bool raised = effect_ == 1 || effect_ == 2;
        const QPoint upLeft(-1, -1), downRight(1, 1);
        p->save();
        draw(sh.light, raised ? upLeft : downRight);
        draw(sh.dark, raised ? downRight : upLeft);
        p->restore();
    }

    // One item of a popup menu with raised or inset text: the item without its text, the two
    // copies of the text alone, then the text.
    void drawMenuItem(const QStyleOptionMenuItem &mi, QPainter *p, const QWidget *w) const
    {
        // A grey item shows no effect, as grey text elsewhere.
        if (!(mi.state & State_Enabled)) return QProxyStyle::drawControl(CE_MenuItem, &mi, p, w);
        const bool selected = mi.state & State_Selected;
        QStyleOptionMenuItem bare = mi;
        for (auto role :
             {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::HighlightedText})
            bare.palette.setColor(role, Qt::transparent);
        QProxyStyle::drawControl(CE_MenuItem, &bare, p, w);
        const QColor back =
            selected ? mi.palette.color(QPalette::Highlight) : mi.palette.color(QPalette::Window);
        const Shades sh = shadesOver(back, effect_ == 2 || effect_ == 4);
        drawCopies(p, sh, [&](const QColor &c, const QPoint &off) {
            QStyleOptionMenuItem copy = textOnly(mi, &c);
            p->save();
            p->translate(off);
            QProxyStyle::drawControl(CE_MenuItem, &copy, p, w);
            p->restore();
        });
        const QStyleOptionMenuItem text = textOnly(mi, nullptr);
        QProxyStyle::drawControl(CE_MenuItem, &text, p, w);
    }

    // The item's text alone, in its own colour or in Colour: no background, mark, icon or arrow.
    static QStyleOptionMenuItem textOnly(const QStyleOptionMenuItem &mi, const QColor *colour)
    {
        QStyleOptionMenuItem t = mi;
        t.icon = QIcon();
        t.checked = false;
        t.checkType = QStyleOptionMenuItem::NotCheckable;
        t.menuItemType = QStyleOptionMenuItem::Normal;
        for (auto role : {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::Highlight})
            t.palette.setBrush(role, Qt::transparent);
        if (colour)
            for (auto role :
                 {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::HighlightedText})
                t.palette.setColor(role, *colour);
        return t;
    }

    // The background of a menu bar or toolbar. 0 "Windows 95/98": a raised panel; 1 "Windows
    // 2000": flat, with a thin line below; 2 "Windows XP": shaded from light at the top to a
    // little darker than the menu colour at the bottom.
    void paintBar(QPainter *p, const QRect &r, const QPalette &pal, const QWidget *w, bool toolBar) const
    {
        const QColor b = pal.color(QPalette::Window);
        const Shades sh = shadesOver(b, false);
        p->save();
        if (menuStyle_ == 2) {
            const int top = toolBar ? r.top() : 0, height = toolBar ? r.height() : w->height();
            QLinearGradient g(0, top, 0, top + height);
            g.setColorAt(0, b.lighter(135));
            g.setColorAt(0.45, b);
            g.setColorAt(1, b.darker(118));
            p->fillRect(r, g);
        } else {
            p->fillRect(r, b);
        }
        if (menuStyle_ == 0) {
            p->setPen(sh.light);
            p->drawLine(r.topLeft(), r.topRight());
            p->drawLine(r.topLeft(), r.bottomLeft());
            p->setPen(sh.dark);
            p->drawLine(r.bottomLeft(), r.bottomRight());
            p->drawLine(r.topRight(), r.bottomRight());
        } else if (menuStyle_ == 1) {
            p->setPen(sh.dark);
            p->drawLine(r.bottomLeft(), r.bottomRight());
        }
        p->restore();
    }

    int effect_;
    int menuStyle_;
};

LookStyle *lookStyle(int effect, int menuStyle)
{
    // The styles live as long as the application.
    static std::array<std::array<LookStyle *, 4>, 5> styles{};
    effect = qBound(0, effect, 4);
    menuStyle = qBound(-1, menuStyle, 2);
    LookStyle *&s = styles[size_t(effect)][size_t(menuStyle + 1)];
    if (!s) {
        s = new LookStyle(effect, menuStyle);
        s->setParent(qApp);
    }
    return s;
}

// Gives a widget the look of that effect and menu style; a plain widget (no effect, no bar)
// goes back to the program's style.
void setLook(QWidget *w, int effect, int menuStyle)
{
    if (!w) return;
    if (effect < 1 || effect > 4) effect = 0;
    if (menuStyle < 0 || menuStyle > 2) menuStyle = -1;
    // A widget never given a look has the plain one; nothing is done while the look stays.
    const QVariant e = w->property("twTextEffect"), m = w->property("twLookBar");
    if ((e.isValid() ? e.toInt() : 0) == effect && (m.isValid() ? m.toInt() : -1) == menuStyle) return;
    if (effect == 0 && menuStyle < 0) w->setStyle(nullptr);
    else w->setStyle(lookStyle(effect, menuStyle));
    w->setProperty("twTextEffect", effect);
    w->setProperty("twLookBar", menuStyle);
    w->update();
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

void setTextEffect(QWidget *w, int effect) { setLook(w, effect, -1); }

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

QString useIconThemeWithFileIcons()
{
    static const QString fallback = QStringLiteral("Adwaita");
    // A platform without a desktop theme (offscreen, a bare X session) looks for themes only
    // in the program's resources: the usual folders of icon themes go behind them.
    QStringList paths = QIcon::themeSearchPaths();
    QStringList wanted{QDir::homePath() + QStringLiteral("/.icons")};
    for (const QString &d : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        wanted << d + QStringLiteral("/icons");
    bool more = false;
    for (const QString &d : wanted) {
        if (paths.contains(d) || !QFileInfo(d).isDir()) continue;
        paths << d;
        more = true;
    }
    if (more) QIcon::setThemeSearchPaths(paths);
    if (QIcon::themeName().isEmpty()) {
        QIcon::setThemeName(fallback);
    } else if (QIcon::fallbackThemeName().isEmpty()
               || QIcon::fallbackThemeName() == QLatin1String("hicolor")) {
        // Keep the desktop's own icons where it has them; the missing ones come from Adwaita.
        // (No icon is asked for before: Qt keeps an icon it did not find as not found, even
        // after the fallback theme changes.)
        QIcon::setFallbackThemeName(fallback);
    }
    return QIcon::themeName();
}

void applyMenuLook(QWidget *bar, uint32_t back, uint32_t text, const OptionSettings &o)
{
    if (!bar) return;
    const int style = qBound(0, int(o.MenuStyle), 2);
    const int effect = int(o.MenuFontType);
    QPalette p = bar->palette();
    paintPalette(p, back, text);
    bar->setPalette(p);
    bar->setAutoFillBackground(true);
    bar->setProperty("twMenuStyle", style);
    // A popup menu takes the text effect; a menu bar or a toolbar the bar's look as well.
    setLook(bar, effect, qobject_cast<QMenu *>(bar) ? -1 : style);
    // 0: raised buttons; 1 and 2: flat buttons that rise under the mouse.
    for (QToolButton *b : bar->findChildren<QToolButton *>()) {
        b->setAutoRaise(style != 0);
        setTextEffect(b, effect);
    }
}

}  // namespace tw
