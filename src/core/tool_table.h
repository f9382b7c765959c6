// Every tool of the main window's tool manager: identifier, caption, tool tip, category,
// option group, where it sits and its image. The keyboard shortcut of a tool is the key
// named at the end of its tool tip.
#pragma once

#include <QString>
#include <vector>

namespace tw {

enum class ToolKind { Button, Check, Option, DropDown, Menu, Label, TextBox };

struct ToolDef {
    QString id;
    QString caption;
    QString tip;
    QString category;
    QString group;  // option group, or ""
    int position;  // 1 menu bar, 2..7 toolbars
    QString parent;  // the menu or drop-down a tool hangs in; "" on a toolbar or the bar
    bool separatorBefore;
    ToolKind kind;
    QString image;  // file under BMPS, or ""
};

const std::vector<ToolDef> &toolTable();
// The key sequence named at the end of a tool tip ("... - Shift+Ctrl+F1" gives
// "Shift+Ctrl+F1", "... - Ctrl H" gives "Ctrl+H"); "" when the tip names none.
QString shortcutFromTip(const QString &tip);
// Names of the seven toolbar positions.
QString toolbarName(int position);

}  // namespace tw
