#include "colors.h"

#include <QApplication>

namespace tw {

QColor toQColor(uint32_t c, const QPalette &given)
{
    if (!isSystemColor(c)) return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
    const QPalette pal =
        qobject_cast<QApplication *>(QCoreApplication::instance()) ? QApplication::palette() : given;
    switch (c & 0xFF) {
    case 0x04:
        return pal.color(QPalette::Window);  // menu background
    case 0x17:
        return pal.color(QPalette::ToolTipBase);  // tool-tip background
    case 0x18:
        return pal.color(QPalette::ToolTipBase);
    case 0x00:
        return pal.color(QPalette::Mid);  // scroll bar
    case 0x01:
        return pal.color(QPalette::Dark);  // desktop
    case 0x02:
        return pal.color(QPalette::Highlight);  // active caption
    case 0x03:
        return pal.color(QPalette::Mid);  // inactive caption
    case 0x05:
        return pal.color(QPalette::Base);  // window
    case 0x06:
        return pal.color(QPalette::Shadow);  // window frame
    case 0x07:
        return pal.color(QPalette::WindowText);  // menu text
    case 0x08:
        return pal.color(QPalette::Text);  // window text
    case 0x09:
        return pal.color(QPalette::HighlightedText);  // caption text
    case 0x0D:
        return pal.color(QPalette::Highlight);
    case 0x0E:
        return pal.color(QPalette::HighlightedText);
    case 0x0F:
        return pal.color(QPalette::Button);  // button face
    case 0x10:
        return pal.color(QPalette::Dark);  // button shadow
    case 0x11:
        return pal.color(QPalette::PlaceholderText);  // grey text
    case 0x12:
        return pal.color(QPalette::ButtonText);
    case 0x14:
        return pal.color(QPalette::Light);  // button highlight
    case 0x15:
        return pal.color(QPalette::Shadow);  // 3-D dark shadow
    case 0x16:
        return pal.color(QPalette::Midlight);  // 3-D light
    default:
        return pal.color(QPalette::Window);
    }
}

void paintPalette(QPalette &pal, uint32_t back, uint32_t text)
{
    const QColor b = toQColor(back, pal), t = toQColor(text, pal);
    // Grey text stays for what is disabled, so a grey tool still looks grey.
    const QColor grey((b.red() + t.red() * 2 + 128 * 3) / 6, (b.green() + t.green() * 2 + 128 * 3) / 6,
                      (b.blue() + t.blue() * 2 + 128 * 3) / 6);
    for (auto role : {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::AlternateBase})
        pal.setColor(role, b);
    for (auto group : {QPalette::Active, QPalette::Inactive}) {
        for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            pal.setColor(group, role, t);
    }
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        pal.setColor(QPalette::Disabled, role, grey);
}

}  // namespace tw
