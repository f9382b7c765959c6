#include "browse/find_dialog.h"
#include "core/context_help.h"
#include "core/globals.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using tw::FindFle1;

TEST(FindFle1, ThirtyFourRowsWithTheirTextsAsTheyAre)
{
    tw::browse::SearchState s;
    FindFle1 d(s);
    EXPECT_EQ(d.windowTitle(), "Enter File to Locate");
    EXPECT_EQ(d.findChildren<QRadioButton *>().size(), 34);
    EXPECT_EQ(d.RDSELECT[0]->objectName(), "RDSELECT_0");
    EXPECT_EQ(d.RDSELECT[17]->toolTip(), "Search for Enacpsulated PostScript (EPS) Files");
    EXPECT_EQ(d.RDSELECT[18]->toolTip(), "Search for SUN RasterFormat (RAS) Files");
    EXPECT_EQ(d.RDSELECT[33]->text(), "Enter File to Locate");
    EXPECT_TRUE(FindFle1::options()[31].pattern.contains("*.XWP"));
    EXPECT_EQ(FindFle1::options()[31].pattern.count("*.FAX"), 2);
    EXPECT_TRUE(FindFle1::options()[32].pattern.contains(";*LOG;"));
    EXPECT_EQ(d.Text1->toolTip(), "Enter File or Global Variable to Locate");
    EXPECT_EQ(d.OKBtn->toolTip(), "Click OK to Start File Search");
    EXPECT_EQ(d.CancelBtn->toolTip(), "Click Cancel to Close File Search Window");
    EXPECT_EQ(d.HelpBtn->text(), "Help");
}

TEST(FindFle1, LoadAndCancel)
{
    tw::browse::SearchState s;
    s.SearchPattern = "*.OLD";
    s.FindOptionIndex = 5;
    {
        FindFle1 d(s);
        EXPECT_FALSE(s.SearchConfirmed);
        EXPECT_TRUE(tw::G.FindFle1Loaded);
        EXPECT_TRUE(d.RDSELECT[5]->isChecked());
        EXPECT_EQ(d.SelectedOption(), 5);
        bool closed = false;
        d.onClosed = [&] { closed = true; };
        QTimer::singleShot(0, &d, [&] { d.CancelBtn->click(); });
        d.exec();
        EXPECT_TRUE(closed);
    }
    EXPECT_FALSE(s.SearchConfirmed);
    EXPECT_EQ(s.SearchPattern, "*.OLD");
    EXPECT_FALSE(tw::G.FindFle1Loaded);
}

TEST(FindFle1, AStoredIndexOutOfRangeShowsNoRow)
{
    for (int bad : {34, 40, -1}) {
        tw::browse::SearchState s;
        s.FindOptionIndex = int16_t(bad);
        FindFle1 d(s);
        EXPECT_EQ(s.FindOptionIndex, 0);
        for (auto *rb : d.RDSELECT) EXPECT_FALSE(rb->isChecked());
        EXPECT_EQ(d.SelectedOption(), 0);
    }
}

TEST(FindFle1, OkHandsOverThePatternAndTheFilterRow)
{
    struct Case {
        int row;
        QString typed;
        QString pattern;
        int filterRow;
        int option;
    };
    const QList<Case> cases = {
        {2, "", "*.BMP", 2, 2}, {32, "", FindFle1::options()[32].pattern, 34, 32}, {33, "", "", 35, 33},
        {33, " ", " ", 35, 33}, {4, "*.xyz;*.Abc", "*.xyz;*.Abc", 35, 33},  // typed text wins over the row
    };
    for (const Case &c : cases) {
        tw::browse::SearchState s;
        FindFle1 d(s);
        bool busy = false;
        d.setPointerBusy = [&](bool on) { busy = on; };
        d.RDSELECT[size_t(c.row)]->click();
        d.Text1->setText(c.typed);
        // Enter in the text box is OK.
        QTimer::singleShot(0, &d, [&] { QTest::keyClick(d.Text1, Qt::Key_Return); });
        EXPECT_EQ(d.exec(), QDialog::Accepted);
        EXPECT_TRUE(s.SearchConfirmed);
        EXPECT_EQ(s.SearchPattern, c.pattern);
        EXPECT_EQ(s.FilterRow, c.filterRow);
        EXPECT_EQ(s.FindOptionIndex, c.option);
        EXPECT_TRUE(busy);
        EXPECT_FALSE(d.OKBtn->isEnabled());
        EXPECT_FALSE(d.CancelBtn->isEnabled());
    }
}

TEST(FindFle1, EnterPressesTheFocusedButton)
{
    for (Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        // On Cancel: Cancel, with no search and the earlier pattern kept.
        {
            tw::browse::SearchState s;
            s.SearchPattern = "*.OLD";
            FindFle1 d(s);
            d.show();
            d.activateWindow();
            QTimer::singleShot(0, &d, [&] {
                d.CancelBtn->setFocus();
                QTest::keyClick(d.CancelBtn, key);
            });
            EXPECT_EQ(d.exec(), QDialog::Rejected);
            EXPECT_FALSE(s.SearchConfirmed);
            EXPECT_EQ(s.SearchPattern, "*.OLD");
        }
        // On Help: the help on the dialog's topic, once, and the dialog stays open.
        {
            tw::browse::SearchState s;
            FindFle1 d(s);
            QStringList helps;
            tw::installContextHelp([&](const QString &topic) { helps << topic; });
            d.show();
            d.activateWindow();
            d.HelpBtn->setFocus();
            QTest::keyClick(d.HelpBtn, key);
            QCoreApplication::processEvents();
            tw::installContextHelp(nullptr);
            EXPECT_EQ(helps, QStringList{QStringLiteral("finding")});
            EXPECT_TRUE(d.isVisible());
            EXPECT_FALSE(s.SearchConfirmed);
            d.reject();
        }
        // On OK and on a row: OK.
        for (bool onRow : {false, true}) {
            tw::browse::SearchState s;
            FindFle1 d(s);
            d.RDSELECT[2]->click();
            d.show();
            d.activateWindow();
            QWidget *target = onRow ? static_cast<QWidget *>(d.RDSELECT[2]) : d.OKBtn;
            QTimer::singleShot(0, &d, [&] {
                target->setFocus();
                QTest::keyClick(target, key);
            });
            EXPECT_EQ(d.exec(), QDialog::Accepted);
            EXPECT_TRUE(s.SearchConfirmed);
            EXPECT_EQ(s.SearchPattern, "*.BMP");
        }
    }
}
