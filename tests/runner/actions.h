// What the scenario runner does to item views and drop-downs, kept apart from the runner
// so that a test of its own can check it.
#pragma once

#include <QModelIndex>
#include <QString>

class QComboBox;
class QTreeView;

namespace tw::scenario {

// A user's pick of Row from the drop-down list, with every signal such a pick raises, in
// the order the combo box raises them: currentIndexChanged and currentTextChanged when
// the row changes (an editable box takes the row's text again when it does not), then
// activated and textActivated. False, with nothing done, when the row is out of range or
// cannot be picked.
bool pickComboRow(QComboBox *combo, int row, QString *error);

// The node of a tree view that Arg names, its parents expanded: a text path from the top
// ("A/B/C", each part a node's text), or else a node's text anywhere, looked for depth
// first; nodes a model fetches lazily are fetched on the way. Invalid with Error set when
// no node has it (a model that fills itself later may still get it).
QModelIndex findTreeNode(QTreeView *tree, const QString &arg, QString *error);

}  // namespace tw::scenario
