#include "actions.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QLineEdit>
#include <QTreeView>

#include <functional>

namespace tw::scenario {

bool pickComboRow(QComboBox *combo, int row, QString *error)
{
    QAbstractItemModel *m = combo->model();
    if (row < 0 || row >= combo->count()) {
        if (error) *error = QStringLiteral("no row %1").arg(row);
        return false;
    }
    const QModelIndex idx = m->index(row, combo->modelColumn(), combo->rootModelIndex());
    const Qt::ItemFlags f = m->flags(idx);
    if (!(f & Qt::ItemIsEnabled) || !(f & Qt::ItemIsSelectable)) {
        if (error) *error = QStringLiteral("row %1 cannot be picked").arg(row);
        return false;
    }
    if (row != combo->currentIndex()) {
        combo->setCurrentIndex(row);
    } else if (QLineEdit *e = combo->lineEdit()) {
        e->selectAll();
        e->setText(combo->itemText(row));
    }
    emit combo->activated(row);
    emit combo->textActivated(combo->itemText(row));
    return true;
}

QModelIndex findTreeNode(QTreeView *tree, const QString &arg, QString *error)
{
    QAbstractItemModel *m = tree->model();
    if (!m) {
        if (error) *error = QStringLiteral("the tree has no nodes");
        return {};
    }
    const QModelIndex top = tree->rootIndex();
    auto fetch = [m](const QModelIndex &parent) {
        if (m->canFetchMore(parent)) m->fetchMore(parent);
    };
    QModelIndex found;
    // A text path from the top.
    if (arg.contains(u'/')) {
        QModelIndex cur = top;
        for (const QString &part : arg.split(u'/')) {
            fetch(cur);
            QModelIndex next;
            for (int r = 0; r < m->rowCount(cur) && !next.isValid(); ++r) {
                const QModelIndex c = m->index(r, 0, cur);
                if (c.data().toString() == part) next = c;
            }
            cur = next;
            if (!cur.isValid()) break;
        }
        found = cur;
    }
    // A node's text, depth first; a limit on the nodes looked at keeps a huge model from
    // holding the runner.
    if (!found.isValid()) {
        int budget = 200000;
        std::function<QModelIndex(const QModelIndex &)> below = [&](const QModelIndex &parent) {
            fetch(parent);
            for (int r = 0; r < m->rowCount(parent) && budget > 0; ++r, --budget) {
                const QModelIndex c = m->index(r, 0, parent);
                if (c.data().toString() == arg) return c;
                if (m->hasChildren(c)) {
                    const QModelIndex f = below(c);
                    if (f.isValid()) return f;
                }
            }
            return QModelIndex();
        };
        found = below(top);
    }
    if (!found.isValid()) {
        if (error) *error = QStringLiteral("no node \"%1\"").arg(arg);
        return {};
    }
    QList<QModelIndex> chain;
    for (QModelIndex a = found.parent(); a.isValid() && a != top; a = a.parent()) chain.prepend(a);
    for (const QModelIndex &a : chain) tree->expand(a);
    return found;
}

}  // namespace tw::scenario
