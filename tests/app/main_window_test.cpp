// Window tests of the main window: the tool click rule, the timer, the hold-to-drag button.
#include "common/main_window_fixture.h"
#include "app/tarnwick1.h"
#include "app/tools_tab.h"
#include "core/tool_manager.h"
#include "core/colors.h"
#include "core/looks.h"
#include "core/options_store.h"
#include "core/tool_table.h"
#include "core/toggle_drag.h"

#include <QCheckBox>
#include <QStyle>
#include <cstdlib>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QWindow>
#include <QDir>
#include <QFile>
#include <QComboBox>
#include <QIcon>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <clocale>

using namespace tw;

class MainWindowTest : public QObject {
    Q_OBJECT
    Tarnwick1 *w = nullptr;

private slots:
    void init() { w = twtest::startMainWindow(); }
    void cleanup()
    {
        delete w;
        w = nullptr;
    }

    // The View menu's files of the session go at once, from the menu and from the table.
    void viewMenuFilesAreRemovedTogether()
    {
        ToolManager &t = w->tools();
        w->AddViewMenuItem(QStringLiteral("/p/a.jpg"));
        w->AddViewMenuItem(QStringLiteral("/p/b.jpg"));
        QCOMPARE(t.toolsOfCategory(QStringLiteral("MenuViewList")), (QStringList{"/p/a.jpg", "/p/b.jpg"}));
        t.removeDynamicTools(QStringLiteral("MenuViewList"));
        QVERIFY(t.toolsOfCategory(QStringLiteral("MenuViewList")).isEmpty());
        QVERIFY(!t.action(QStringLiteral("/p/a.jpg")));
        for (QAction *a : t.menu(QStringLiteral("ID_mnuView"))->actions())
            QVERIFY(a->objectName() != QLatin1String("/p/b.jpg"));
        w->AddViewMenuItem(QStringLiteral("/p/a.jpg"));
        QCOMPARE(t.toolsOfCategory(QStringLiteral("MenuViewList")), (QStringList{"/p/a.jpg"}));
    }

    // Every tool the window or a page answers is a tool of the table, and a command tool
    // that nobody answers is grey: exactly the tools of the features not built yet.
    void handledToolsExistAndTheRestIsGrey()
    {
        QVERIFY2(w->unknownHandledTools().isEmpty(), qPrintable(w->unknownHandledTools().join(u' ')));
        // Every feature is built: no command tool is left grey.
        const QStringList grey = w->ToolBarComp1->unbuiltIds();
        QVERIFY2(grey.isEmpty(), qPrintable(grey.join(u' ')));
    }

    void settingAToolFromCodeRaisesTheClick()
    {
        QSignalSpy spy(w->ToolBarComp1, &ToolManager::toolClicked);
        G.SuppressToolCommand = false;
        w->ToolBarComp1->press(QStringLiteral("ID_Details"));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("ID_Details"));
        QVERIFY(w->ToolBarComp1->isChecked(QStringLiteral("ID_Details")));
    }

    void suppressedChangeOnlyMovesTheCheckMark()
    {
        QSignalSpy spy(w->ToolBarComp1, &ToolManager::toolClicked);
        G.SuppressToolCommand = true;
        w->ToolBarComp1->press(QStringLiteral("ID_SmallIcons"));
        G.SuppressToolCommand = false;
        QCOMPARE(spy.count(), 0);
        QVERIFY(w->ToolBarComp1->isChecked(QStringLiteral("ID_SmallIcons")));
        QVERIFY(!w->ToolBarComp1->isChecked(QStringLiteral("ID_Details")));
    }

    void routerIgnoresClicksWhileSuppressed()
    {
        w->selectTab(3);
        G.SuppressToolCommand = true;
        w->ToolBarComp1->action(QStringLiteral("ID_mnuFileBackPrevious"))->trigger();
        w->OnToolClick(QStringLiteral("ID_mnuFileBackPrevious"));
        G.SuppressToolCommand = false;
        QCOMPARE(w->selectedTab(), 3);
        w->ToolBarComp1->action(QStringLiteral("ID_mnuFileBackPrevious"))->trigger();
        QCOMPARE(w->selectedTab(), 1);
    }

    void everyToolOfTheTableExists()
    {
        for (const ToolDef &d : toolTable()) {
            QVERIFY2(w->ToolBarComp1->has(d.id), qPrintable(d.id));
            // The display tools (date, time, filter name) change their captions as they run.
            if (d.kind != ToolKind::Label) QCOMPARE(w->ToolBarComp1->caption(d.id), d.caption);
        }
        // Filter rows became tools of their own category.
        QCOMPARE(w->ToolBarComp1->toolsOfCategory(QStringLiteral("FilterList")).size(), 36);
    }

    void shortcutsComeFromTheToolTips()
    {
        QCOMPARE(shortcutFromTip(QStringLiteral("Find Pictures and Multimedia Files - F2")),
                 QStringLiteral("F2"));
        QCOMPARE(shortcutFromTip(QStringLiteral("Stop ThumbNail Loading - Shift+Ctrl+F1")),
                 QStringLiteral("Shift+Ctrl+F1"));
        QCOMPARE(shortcutFromTip(QStringLiteral("Filter Files by File Types and Groups - Ctrl H")),
                 QStringLiteral("Ctrl+H"));
        QCOMPARE(shortcutFromTip(QStringLiteral("Go Back to Previous Picture - Shift F7")),
                 QStringLiteral("Shift+F7"));
        QCOMPARE(shortcutFromTip(QStringLiteral("Select File to View or Play")), QString());
        QCOMPARE(w->ToolBarComp1->action(QStringLiteral("ID_Collapse"))->shortcut(),
                 QKeySequence(QStringLiteral("Shift+Del")));
        QCOMPARE(w->ToolBarComp1->action(QStringLiteral("ID_Select"))->shortcut(), QKeySequence());
    }

    void timerWritesTheToolsOrTheLabels()
    {
        w->ToolBarComp1->setCaption(QStringLiteral("ID_Date"), QString());
        w->runTimer();
        QVERIFY(!w->ToolBarComp1->caption(QStringLiteral("ID_Date")).isEmpty());
        QVERIFY(!w->ToolBarComp1->caption(QStringLiteral("ID_Time")).isEmpty());
        // On tab 6 the tools are not written.
        w->selectTab(6);
        w->ToolBarComp1->setCaption(QStringLiteral("ID_Date"), QString());
        w->runTimer();
        QVERIFY(w->ToolBarComp1->caption(QStringLiteral("ID_Date")).isEmpty());
        // On tab 8 the labels 6 and 7 of the Tools tab take them.
        w->selectTab(8);
        QLabel *toolsDate = w->findChild<QLabel *>(QStringLiteral("Label2_6"));
        QVERIFY(toolsDate);
        toolsDate->clear();
        w->runTimer();
        QVERIFY(!toolsDate->text().isEmpty());
        QVERIFY(w->ToolBarComp1->caption(QStringLiteral("ID_Date")).isEmpty());
        // On tab 5 the tools and the slide labels both take them.
        w->selectTab(5);
        w->runTimer();
        QLabel *slideDate = w->findChild<QLabel *>(QStringLiteral("Label2_8"));
        QVERIFY(slideDate);
        QVERIFY(!slideDate->text().isEmpty());
        QVERIFY(!w->ToolBarComp1->caption(QStringLiteral("ID_Date")).isEmpty());
        QVERIFY(w->Timer1->isActive());
        QCOMPARE(w->Timer1->interval(), 900);
    }

    void fileMissingReadsNormalFilesOnly()
    {
        const QString dir = QDir::homePath() + QStringLiteral("/fm");
        QDir().mkpath(dir + QStringLiteral("/sub"));
        for (const char *name : {"a.jpg", ".hidden.jpg"}) {
            QFile f(dir + u'/' + QLatin1String(name));
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("x");
        }
        QVERIFY(!w->FileMissing(dir + QStringLiteral("/a.jpg")));
        QVERIFY(w->FileMissing(dir + QStringLiteral("/b.jpg")));
        QVERIFY(w->FileMissing(dir + QStringLiteral("/sub")));  // a folder
        QVERIFY(w->FileMissing(dir + QStringLiteral("/.hidden.jpg")));  // not a normal file
        QVERIFY(!w->FileMissing(dir + QStringLiteral("/*.JPG")));  // a pattern that matches
        QVERIFY(w->FileMissing(dir + QStringLiteral("/*.png")));
        QVERIFY(w->FileMissing(QStringLiteral("   ")));
    }

    // At the default window size every control of the Tools tab shows whole, on each of the
    // three option pages, and nothing scrolls.
    void toolsTabFitsTheDefaultWindow()
    {
        QCOMPARE(w->size(), QSize(10500 / 15, 8000 / 15));
        w->selectTab(8);
        QWidget *panel = w->TabPanel[8];
        QTRY_VERIFY(panel->isVisible());
        w->runTimer();  // the date and time take their line
        // The toolbars leave with the tab change; the panel takes their room once the
        // window's layout has run.
        QTest::qWait(50);
        QWidget *frame8 = w->findChild<QWidget *>(QStringLiteral("Frame1_8"));
        QVERIFY(frame8);
        QTRY_COMPARE(frame8->size(), panel->size());
        tw::ToolsTab *tools = w->findChild<tw::ToolsTab *>();
        QVERIFY(tools);
        const QRect inside = panel->rect();
        for (int page = 0; page < 3; ++page) {
            tools->showPage(page);
            QTest::qWait(20);
            QVERIFY(tools->SSFrame1[page]->isVisible());
            int controls = 0;
            for (QWidget *c : panel->findChildren<QWidget *>()) {
                if (!c->isVisible() || c->isWindow()) continue;
                const QString what = QStringLiteral("page %1: %2 (%3)")
                                         .arg(page)
                                         .arg(c->objectName(), QLatin1String(c->metaObject()->className()));
                const QRect r(c->mapTo(panel, QPoint(0, 0)), c->size());
                QVERIFY2(inside.contains(r),
                         qPrintable(what
                                    + QStringLiteral(" lies outside the panel: %1,%2 %3x%4 in %5x%6")
                                          .arg(r.x())
                                          .arg(r.y())
                                          .arg(r.width())
                                          .arg(r.height())
                                          .arg(inside.width())
                                          .arg(inside.height())));
                // Not squeezed below what it needs to show its text and frame whole.
                const QSize hint = c->minimumSizeHint();
                const int needW = c->minimumWidth() > 0 ? c->minimumWidth() : hint.width();
                const int needH = c->minimumHeight() > 0 ? c->minimumHeight() : hint.height();
                QVERIFY2(c->width() >= needW && c->height() >= needH,
                         qPrintable(what + QStringLiteral(" is squeezed")));
                // With the desktop's font every caption shows whole.
                if (auto *box = qobject_cast<QCheckBox *>(c))
                    QVERIFY2(box->width() >= box->sizeHint().width() && box->toolTip().isEmpty(),
                             qPrintable(what + QStringLiteral(" has its caption cut")));
                // No two controls side by side cover each other.
                if (c->parentWidget())
                    for (QObject *o : c->parentWidget()->children()) {
                        auto *sib = qobject_cast<QWidget *>(o);
                        if (!sib || sib == c || !sib->isVisible() || sib->isWindow()) continue;
                        QVERIFY2(!c->geometry().intersects(sib->geometry()),
                                 qPrintable(what + QStringLiteral(" overlaps ") + sib->objectName()));
                    }
                if (auto *bar = qobject_cast<QScrollBar *>(c))
                    QVERIFY2(bar == tools->SCOPTJPEGQ, qPrintable(what + QStringLiteral(" scrolls")));
                ++controls;
            }
            QVERIFY(controls > 40);
        }
        // Every control of the tab is shown on one of the pages.
        QVERIFY(tools->OptApplyBtn->isVisible());
        QVERIFY(tools->Text3[27]->isVisible());
        QVERIFY(!tools->Label2[7]->text().isEmpty());
    }

    // With bold window fonts the General page's longer captions no longer fit the default
    // window: they end in an ellipsis and carry the whole caption as their tool tip, and no
    // check box reaches out of the page.
    void boldCaptionsEndInAnEllipsis()
    {
        w->selectTab(8);
        tw::ToolsTab *tools = w->findChild<tw::ToolsTab *>();
        QVERIFY(tools);
        tools->showPage(0);
        const bool wasBold = G.Options.BoldFonts;
        G.Options.BoldFonts = true;
        w->ApplyColors();
        QTest::qWait(50);
        QWidget *page = tools->SSFrame1[0];
        int cut = 0;
        for (QCheckBox *box : page->findChildren<QCheckBox *>()) {
            QVERIFY(box->font().bold());
            const QRect r(box->mapTo(page, QPoint(0, 0)), box->size());
            QVERIFY2(page->rect().contains(r),
                     qPrintable(box->objectName() + QStringLiteral(" leaves the page")));
            box->repaint();
            // The room beside the check mark, as the style lays the box out.
            const int room = box->width() - box->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, box)
                - box->style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, box);
            const int need = box->fontMetrics().horizontalAdvance(box->text());
            if (std::abs(need - room) <= 2) continue;  // too close to call
            if (need > room) {
                ++cut;
                QCOMPARE(box->toolTip(), box->text());
            } else {
                QVERIFY2(box->toolTip().isEmpty(), qPrintable(box->objectName()));
            }
        }
        G.Options.BoldFonts = wasBold;
        w->ApplyColors();
        QTest::qWait(50);
        for (QCheckBox *box : page->findChildren<QCheckBox *>()) {
            box->repaint();
            QVERIFY2(box->toolTip().isEmpty(), qPrintable(box->objectName()));
        }
        QVERIFY2(cut > 0, "no caption was too wide for the bold font: the test shows nothing");
    }

    // The busy pointer is the main window's alone: a dialog that a command opens keeps the
    // normal pointer, nothing overrides the pointer of the whole program, and the window's
    // own pointer is back when the command returns.
    void busyPointerStaysOnTheMainWindow_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QString>("dialog");
        QTest::newRow("computer name")
            << QStringLiteral("ID_mnuUtilitiesSetComputer") << QStringLiteral("ComputerName1");
        QTest::newRow("find") << QStringLiteral("ID_Find") << QStringLiteral("FindFle1");
    }
    void busyPointerStaysOnTheMainWindow()
    {
        QFETCH(QString, tool);
        QFETCH(QString, dialog);
        QCOMPARE(w->cursor().shape(), Qt::ArrowCursor);
        struct Seen {
            bool open = false;
            QString name;
            Qt::CursorShape dialogShape = Qt::BlankCursor, dialogWindowShape = Qt::BlankCursor;
            Qt::CursorShape mainShape = Qt::BlankCursor;
            bool overridden = true;
        } seen;
        QTimer probe;
        probe.setInterval(10);
        connect(&probe, &QTimer::timeout, this, [&] {
            QWidget *modal = QApplication::activeModalWidget();
            if (!modal || seen.open) return;
            seen.open = true;
            seen.name = modal->objectName();
            seen.dialogShape = modal->cursor().shape();
            seen.dialogWindowShape =
                modal->windowHandle() ? modal->windowHandle()->cursor().shape() : Qt::BlankCursor;
            seen.mainShape = w->cursor().shape();
            seen.overridden = QGuiApplication::overrideCursor() != nullptr;
            static_cast<QDialog *>(modal)->reject();
        });
        probe.start();
        G.SuppressToolCommand = false;
        w->OnToolClick(tool);
        probe.stop();
        QVERIFY2(seen.open, "no dialog opened");
        QCOMPARE(seen.name, dialog);
        // While the command runs the main window is busy, its dialog is not.
        QCOMPARE(seen.mainShape, Qt::WaitCursor);
        QCOMPARE(seen.dialogShape, Qt::ArrowCursor);
        QCOMPARE(seen.dialogWindowShape, Qt::ArrowCursor);
        QVERIFY(!seen.overridden);
        // Back to normal afterwards.
        QCOMPARE(w->cursor().shape(), Qt::ArrowCursor);
        QCOMPARE(w->windowHandle()->cursor().shape(), Qt::ArrowCursor);
        QVERIFY(QGuiApplication::overrideCursor() == nullptr);
    }

    // The menu style, the menu font type and the label style, chosen on the Tools tab and
    // applied: each changes what the bars, the menus and the labels look like, and choosing
    // the earlier value again gives the earlier picture back.
    void menuAndLabelLooksFollowTheToolsTab()
    {
        w->Timer1->stop();  // the clock on the toolbar stays as it is
        w->selectTab(8);
        tw::ToolsTab *tools = w->findChild<tw::ToolsTab *>();
        QVERIFY(tools);
        QToolBar *bar = w->ToolBarComp1->toolbar(2);
        QMenu *fileMenu = w->ToolBarComp1->menu(QStringLiteral("ID_mnuFile"));
        QVERIFY(bar && fileMenu);
        QLabel *title = nullptr;
        for (QLabel *l : tools->findChildren<QLabel *>())
            if (l->text() == QLatin1String("Window Color Settings")) title = l;
        QVERIFY(title);
        struct Look {
            QImage menuBar, toolBar, menu, label;
        };
        auto apply = [&](int menuStyle, int menuFont, int labelStyle) {
            w->selectTab(8);
            tools->CMBMENU->setCurrentIndex(menuStyle);
            tools->CMBMENUTYPE->setCurrentIndex(menuFont);
            tools->CMBFONTTYPE->setCurrentIndex(labelStyle);
            tools->OptApplyBtn->click();
            const Look look{QImage(), QImage(), fileMenu->grab().toImage(), title->grab().toImage()};
            w->selectTab(1);
            QCoreApplication::processEvents();
            Look l = look;
            l.menuBar = w->menuBar()->grab().toImage();
            l.toolBar = bar->grab().toImage();
            return l;
        };
        auto buttonsRaised = [&] {
            int raised = 0, flat = 0;
            for (QToolButton *b : bar->findChildren<QToolButton *>()) (b->autoRaise() ? flat : raised)++;
            return raised > 0 && flat == 0 ? 1 : flat > 0 && raised == 0 ? 0 : -1;
        };

        // The three menu styles: raised buttons for "Windows 95/98" only, three bars apart.
        const Look s0 = apply(0, 0, 0);
        QCOMPARE(G.Options.MenuStyle, 0);
        QCOMPARE(buttonsRaised(), 1);
        const Look s1 = apply(1, 0, 0);
        QCOMPARE(buttonsRaised(), 0);
        const Look s2 = apply(2, 0, 0);
        QCOMPARE(buttonsRaised(), 0);
        QVERIFY(s0.toolBar != s1.toolBar && s1.toolBar != s2.toolBar && s0.toolBar != s2.toolBar);
        QVERIFY(s0.menuBar != s1.menuBar && s1.menuBar != s2.menuBar && s0.menuBar != s2.menuBar);
        // Each bar stays in the menu colour: the empty end of the toolbar, half way down, is
        // near it in every style (the shaded bar too).
        const int menuLightness = toQColor(G.Colors.MenuBack, w->palette()).lightness();
        for (const Look *l : {&s0, &s1, &s2}) {
            const QColor end = l->toolBar.pixelColor(l->toolBar.width() - 4, l->toolBar.height() / 2);
            QVERIFY2(qAbs(end.lightness() - menuLightness) < 40, qPrintable(end.name()));
        }
        QCOMPARE(apply(0, 0, 0).toolBar, s0.toolBar);
        QCOMPARE(apply(1, 0, 0).menuBar, s1.menuBar);

        // The menu font types change the text of the bars and of the menus; labels stay.
        const Look plain = apply(2, 0, 0);
        const Look heavyRaised = apply(2, 2, 0);
        const Look lightInset = apply(2, 3, 0);
        QCOMPARE(G.Options.MenuFontType, 3);
        for (const Look *l : {&heavyRaised, &lightInset}) {
            QVERIFY(l->menuBar != plain.menuBar);
            QVERIFY(l->toolBar != plain.toolBar);
            QVERIFY(l->menu != plain.menu);
            QCOMPARE(l->label, plain.label);
        }
        QVERIFY(heavyRaised.menuBar != lightInset.menuBar);
        QVERIFY(heavyRaised.menu != lightInset.menu);
        QCOMPARE(apply(2, 0, 0).menu, plain.menu);

        // The label style changes the labels, here one of the Tools tab, and not the bars.
        const Look raisedLabels = apply(2, 0, 2);
        QCOMPARE(tw::textEffect(title), 2);
        QVERIFY(raisedLabels.label != plain.label);
        QCOMPARE(raisedLabels.menuBar, plain.menuBar);
        const Look insetLabels = apply(2, 0, 3);
        QCOMPARE(tw::textEffect(title), 3);
        QVERIFY(insetLabels.label != plain.label && insetLabels.label != raisedLabels.label);
        // A label of a page made later takes the style too.
        w->selectTab(2);
        QLabel *pictureLabel = w->findChild<QLabel *>(QStringLiteral("Label5"));
        QVERIFY(pictureLabel);
        QCOMPARE(tw::textEffect(pictureLabel), 3);
        QCOMPARE(apply(2, 0, 0).label, plain.label);
        QCOMPARE(tw::textEffect(title), 0);
    }

    // The file list and the folder tree show file-type icons even where no icon theme is
    // named (as under the offscreen platform, or a bare X session).
    void fileListAndTreeShowIcons()
    {
        QVERIFY(!QIcon::themeName().isEmpty());
        const QString dir = QDir::homePath() + QStringLiteral("/icons");
        QDir().mkpath(dir + QStringLiteral("/sub"));
        {
            QFile f(dir + QStringLiteral("/notes.txt"));
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("x");
        }
        QVERIFY(w->explorer());
        w->explorer()->setListFolder(dir);
        QWidget *list = w->findChild<QWidget *>(QStringLiteral("PTxShList1"));
        QVERIFY(list);
        QAbstractItemView *view = list->findChild<QAbstractItemView *>();
        QVERIFY(view && view->model());
        QAbstractItemModel *m = view->model();
        QTRY_COMPARE(m->rowCount(), 2);
        // The window has painted: the icons are the theme's, not the blanks drawn before.
        for (int r = 0; r < m->rowCount(); ++r) {
            const QModelIndex idx = m->index(r, 0);
            QTRY_VERIFY2(!qvariant_cast<QIcon>(m->data(idx, Qt::DecorationRole)).name().isEmpty(),
                         qPrintable(m->data(idx).toString()));
            const QIcon icon = qvariant_cast<QIcon>(m->data(idx, Qt::DecorationRole));
            QVERIFY2(!icon.isNull() && !icon.pixmap(16, 16).isNull(), qPrintable(m->data(idx).toString()));
        }
        QWidget *tree = w->findChild<QWidget *>(QStringLiteral("PTxShTree1"));
        QVERIFY(tree);
        auto *treeView = qobject_cast<QAbstractItemView *>(tree);
        if (!treeView) treeView = tree->findChild<QAbstractItemView *>();
        QVERIFY(treeView && treeView->model());
        const QModelIndex top = treeView->model()->index(0, 0);
        QVERIFY(top.isValid());
        QVERIFY(
            !qvariant_cast<QIcon>(treeView->model()->data(top, Qt::DecorationRole)).pixmap(16, 16).isNull());
        QVERIFY(!qvariant_cast<QIcon>(treeView->model()->data(top, Qt::DecorationRole)).name().isEmpty());
    }

    void thumbnailSizesShowInCentimetres()
    {
        w->selectTab(8);
        QLineEdit *height = w->findChild<QLineEdit *>(QStringLiteral("Text4_0"));
        QVERIFY(height);
        QCOMPARE(height->text(), QString::number(115 / (w->State.ThumbScaleY / 15), 'f', 2));
        QVERIFY(qAbs(w->State.ThumbScaleX - 1.4 * 544.26 * w->State.ScreenRatioX) < 1e-9);
    }
};

// The hold-to-drag rule of the button over the picture, with the clock given.
class ToggleDragTest : public QObject {
    Q_OBJECT
private slots:
    void aQuarterSecondExactlyDoesNotDrag()
    {
        ToggleDrag t;
        t.mouseDown(10.0);
        QVERIFY(!t.mouseMove(10.25));
        QVERIFY(!t.dragging());
        t.mouseUp();
        QVERIFY(!t.armed());
    }
    void longerThanAQuarterDrags()
    {
        ToggleDrag t;
        t.mouseDown(10.0);
        QVERIFY(!t.mouseMove(10.1));
        QVERIFY(t.mouseMove(10.26));
        QVERIFY(t.dragging());
        QVERIFY(t.drop(true));
    }
    void dropAfterAPlainClickChangesNothing()
    {
        ToggleDrag t;
        t.mouseDown(1.0);
        t.mouseUp();
        QVERIFY(!t.drop(true));
    }
    void dropElsewhereDoesNotMove()
    {
        ToggleDrag t;
        t.mouseDown(1.0);
        QVERIFY(t.mouseMove(2.0));
        QVERIFY(!t.drop(false));
        QVERIFY(!t.armed());
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    int rc = 0;
    {
        MainWindowTest t;
        rc |= QTest::qExec(&t, argc, argv);
    }
    {
        ToggleDragTest t;
        rc |= QTest::qExec(&t, argc, argv);
    }
    return rc;
}

#include "main_window_test.moc"
