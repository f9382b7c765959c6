// The runner's own acts on drop-downs and trees, checked against plain Qt widgets.
#include "actions.h"

#include <QComboBox>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QTreeWidget>

using tw::scenario::findTreeNode;
using tw::scenario::pickComboRow;

class RunnerActionsTest : public QObject {
    Q_OBJECT
private slots:
    void pickRaisesWhatAUsersPickRaises()
    {
        QComboBox c;
        c.addItems({"None", "Light", "Heavy"});
        QStringList order;
        connect(&c, &QComboBox::currentIndexChanged, this,
                [&](int i) { order << QStringLiteral("index %1").arg(i); });
        connect(&c, &QComboBox::currentTextChanged, this, [&](const QString &s) { order << "text " + s; });
        connect(&c, &QComboBox::activated, this,
                [&](int i) { order << QStringLiteral("activated %1").arg(i); });
        connect(&c, &QComboBox::textActivated, this,
                [&](const QString &s) { order << "textActivated " + s; });
        QString err;
        QVERIFY(pickComboRow(&c, 2, &err));
        QCOMPARE(c.currentIndex(), 2);
        QCOMPARE(order, QStringList({"index 2", "text Heavy", "activated 2", "textActivated Heavy"}));
        // The row already shown: only the activation, as when a user picks it again.
        order.clear();
        QVERIFY(pickComboRow(&c, 2, &err));
        QCOMPARE(order, QStringList({"activated 2", "textActivated Heavy"}));
    }

    void pickRefusesWhatNoUserCanPick()
    {
        QComboBox c;
        c.addItems({"a", "b"});
        qobject_cast<QStandardItemModel *>(c.model())->item(1)->setEnabled(false);
        QSignalSpy act(&c, &QComboBox::activated);
        QString err;
        QVERIFY(!pickComboRow(&c, 1, &err));
        QCOMPARE(err, QStringLiteral("row 1 cannot be picked"));
        QVERIFY(!pickComboRow(&c, 5, &err));
        QCOMPARE(err, QStringLiteral("no row 5"));
        QVERIFY(!pickComboRow(&c, -1, &err));
        QCOMPARE(act.count(), 0);
        QCOMPARE(c.currentIndex(), 0);
    }

    void treeNodeByTextPathAndByText()
    {
        QTreeWidget t;
        t.setColumnCount(1);
        auto *a = new QTreeWidgetItem(&t, {"A"});
        auto *b = new QTreeWidgetItem(a, {"B"});
        auto *c = new QTreeWidgetItem(b, {"C"});
        auto *a2 = new QTreeWidgetItem(&t, {"A2"});
        auto *c2 = new QTreeWidgetItem(a2, {"C"});
        auto *slash = new QTreeWidgetItem(a2, {"x/y"});
        QString err;
        QModelIndex i = findTreeNode(&t, "A/B/C", &err);
        QCOMPARE(t.itemFromIndex(i), c);
        QVERIFY(t.isExpanded(t.indexFromItem(a)));
        QVERIFY(t.isExpanded(t.indexFromItem(b)));
        QVERIFY(!t.isExpanded(t.indexFromItem(a2)));
        // A text alone: the first node depth first.
        QCOMPARE(t.itemFromIndex(findTreeNode(&t, "C", &err)), c);
        QCOMPARE(t.itemFromIndex(findTreeNode(&t, "A2/C", &err)), c2);
        QVERIFY(t.isExpanded(t.indexFromItem(a2)));
        // A text that holds a slash and is no path.
        QCOMPARE(t.itemFromIndex(findTreeNode(&t, "x/y", &err)), slash);
        QVERIFY(!findTreeNode(&t, "A/C", &err).isValid());
        QVERIFY(!findTreeNode(&t, "D", &err).isValid());
        QCOMPARE(err, QStringLiteral("no node \"D\""));
        QVERIFY(!findTreeNode(&t, "A/B/D", &err).isValid());
    }
};

QTEST_MAIN(RunnerActionsTest)
#include "actions_test.moc"
