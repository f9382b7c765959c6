// What a composite control offers to the scenario runner, so that a scenario can act on
// it and read it the way a user would: by item text or path instead of by pixel.
#pragma once

#include <QModelIndex>
#include <QString>
#include <QStringList>

namespace tw {

class ScenarioAccess {
public:
    virtual ~ScenarioAccess() = default;
    // A user's click on the item named by Arg (a row number, a name or a path).
    virtual bool scenarioSelect(const QString &arg, QString *error) = 0;
    virtual bool scenarioDoubleClick(const QString &arg, QString *error) = 0;
    // The rows as the user sees them, in order.
    virtual QStringList scenarioRows() const = 0;
    // The selected row's text, or "" when none.
    virtual QString scenarioSelected() const = 0;
    // The folder the control shows, for controls that show one.
    virtual QString scenarioFolder() const { return QString(); }
    // For a control that is an item view: the item named by Arg (as for scenarioSelect),
    // its parents expanded so that a user can reach it, for a mouse to press on; invalid,
    // with Error set, when there is no such item.
    virtual QModelIndex scenarioIndex(const QString &arg, QString *error)
    {
        if (error) *error = QStringLiteral("no item %1").arg(arg);
        return {};
    }
};

}  // namespace tw
