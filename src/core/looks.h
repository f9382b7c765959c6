// How the main window and its pages paint themselves from the colour and option store:
// the colours of a control group, the bold fonts, the three menu styles and the raised
// or inset text of menus, toolbars and labels.
#pragma once

#include <QString>
#include <cstdint>

class QWidget;

namespace tw {

struct OptionSettings;

// Back and text colour onto one widget, its background filled.
void paintWidget(QWidget *w, uint32_t back, uint32_t text);
// Over every control below Root: check boxes and option buttons in the service colours,
// buttons in their own, the bold state of BoldFonts on lists, combos, check boxes and
// buttons, and the label text style on labels.
void paintControls(QWidget *root);
// A menu bar, a menu or a toolbar in the menu colours, the menu style (0 "Windows 95/98":
// raised buttons; 1 "Windows 2000": flat buttons that rise under the mouse; 2 "Windows XP":
// flat buttons on a shaded bar) and the menu font type.
void applyMenuLook(QWidget *bar, uint32_t back, uint32_t text, const OptionSettings &o);
// Text drawn with an effect: 0 none, 1 light raised, 2 heavy raised, 3 light inset,
// 4 heavy inset. Raised text has a light copy above left and a dark copy below right of
// it, by one pixel; inset text the other way round; heavy uses white and black.
void setTextEffect(QWidget *w, int effect);
int textEffect(const QWidget *w);

// The file list and the folder tree draw their items with icons of the desktop's icon
// theme. Where the desktop names none, Adwaita stands in as the theme; where the desktop's
// theme has no fallback of its own but hicolor, Adwaita stands behind it for the icons it
// lacks. Returns the theme in use.
QString useIconThemeWithFileIcons();

}  // namespace tw
