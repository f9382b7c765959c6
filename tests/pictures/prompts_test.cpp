// The number prompts: the scroll bar and the text box follow each other, OK validates
// silently, and the aspect lock of the size prompt keeps its rounding and limits.
#include "core/scenario_hooks.h"
#include "pictures/prompts.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

using namespace tw;

class PromptsTest : public QObject {
    Q_OBJECT
private slots:
    void zoomPromptSetup()
    {
        NewValue1 d;
        bool showResize = false;
        d.Setup(QStringLiteral("Zoom In/Out"), QStringLiteral("Whole Percent:"), 800, 1, 100, 100, 10,
                showResize);
        QCOMPARE(d.windowTitle(), QStringLiteral("Zoom In/Out"));
        QCOMPARE(d.NewValueTitle->text(), QStringLiteral("Select Whole Percent:"));
        QCOMPARE(d.NewValueBar->maximum(), 800);
        QCOMPARE(d.NewValueBar->minimum(), 1);
        QCOMPARE(d.NewValueBar->pageStep(), 100);
        QCOMPARE(d.NewValueBar->singleStep(), 10);
        QCOMPARE(d.NewValueBox->text(), QStringLiteral("100"));
        QVERIFY(d.CHKRESIZE->isChecked());
        QVERIFY(d.CHKRESIZE->isHidden());
        QVERIFY(!d.GetAccepted());
    }

    void barAndBoxFollow()
    {
        NewValue1 d;
        bool showResize = true;
        d.Setup(QStringLiteral("Zoom In/Out"), QStringLiteral("Whole Percent:"), 800, 1, 100, 100, 10,
                showResize);
        d.NewValueBar->setValue(250);
        QCOMPARE(d.NewValueBox->text(), QStringLiteral("250"));
        d.NewValueBox->setText(QStringLiteral("640"));
        QCOMPARE(d.NewValueBar->value(), 640);
        d.NewValueBox->setText(QStringLiteral("801"));  // out of range: the bar stays
        QCOMPARE(d.NewValueBar->value(), 640);
        d.NewValueBox->setText(QString());  // empty: the bar stays
        QCOMPARE(d.NewValueBar->value(), 640);
        d.NewValueBox->setText(QStringLiteral("abc"));
        QCOMPARE(d.NewValueBar->value(), 640);
    }

    // The prompts' fields are readable by name while a prompt is loaded, and gone after.
    void fieldsReadableByName()
    {
        auto var = [](const char *n) {
            QString out;
            return scenarioVariable(QLatin1String(n), &out) ? out : QStringLiteral("<none>");
        };
        {
            NewValue1 d;
            bool showResize = false;
            d.Setup(QStringLiteral("Zoom In/Out"), QStringLiteral("Whole Percent:"), 800, 1, 100, 100, 10,
                    showResize);
            QCOMPARE(var("ValueAccepted"), QStringLiteral("false"));
            QCOMPARE(var("BoxDriving"), QStringLiteral("false"));
            // Out of range: the bar stays, so nothing clears the box's guard.
            d.NewValueBox->setText(QStringLiteral("801"));
            QCOMPARE(var("BoxDriving"), QStringLiteral("true"));
            QCOMPARE(var("BarDriving"), QStringLiteral("false"));
            d.NewValueBox->setText(QStringLiteral("300"));
            d.OKBtn->click();
            QCOMPARE(var("ValueAccepted"), QStringLiteral("true"));
            QCOMPARE(var("ChosenValue"), QStringLiteral("300"));
        }
        QCOMPARE(var("ChosenValue"), QStringLiteral("<none>"));
        {
            NewSize1 d;
            d.Setup(3, 20, 10);
            QCOMPARE(var("SizeMode"), QStringLiteral("3"));
            QCOMPARE(var("SizeAccepted"), QStringLiteral("false"));
            d.OKBtn->click();
            QCOMPARE(var("SizeAccepted"), QStringLiteral("true"));
        }
        QCOMPARE(var("SizeMode"), QStringLiteral("<none>"));
    }

    void okValidatesSilently()
    {
        NewValue1 d;
        bool showResize = false;
        d.Setup(QStringLiteral("Zoom In/Out"), QStringLiteral("Whole Percent:"), 800, 1, 100, 100, 10,
                showResize);
        d.show();
        d.NewValueBox->setText(QStringLiteral("801"));
        d.OKBtn->click();
        QVERIFY(!d.GetAccepted());
        QVERIFY(d.isVisible());
        d.NewValueBox->setText(QStringLiteral("not a number"));
        d.OKBtn->click();
        QVERIFY(!d.GetAccepted());
        d.NewValueBox->setText(QString());
        QTest::keyClick(d.NewValueBox, Qt::Key_Return);
        QVERIFY(!d.GetAccepted());
        d.NewValueBox->setText(QStringLiteral("800"));
        QTest::keyClick(d.NewValueBox, Qt::Key_Return);
        QVERIFY(d.GetAccepted());
        QCOMPARE(d.GetValue(), int16_t(800));
        QVERIFY(!d.isVisible());
    }

    void cancelKeepsUnaccepted()
    {
        NewValue1 d;
        bool showResize = false;
        d.Setup(QStringLiteral("x"), QStringLiteral("y"), 10, 1, 5, 1, 1, showResize);
        d.show();
        d.CancelBtn->click();
        QVERIFY(!d.GetAccepted());
        QVERIFY(!d.isVisible());
    }

    void sizeSetup()
    {
        NewSize1 d;
        d.Setup(0, 1000, 500);
        QCOMPARE(d.windowTitle(), QStringLiteral("Resize"));
        QCOMPARE(d.Frame2[1]->title(), QStringLiteral(" Width "));
        QCOMPARE(d.Frame2[0]->title(), QStringLiteral(" Height "));
        QCOMPARE(d.SCWeight1->maximum(), 16384);
        QCOMPARE(d.SCHeight1->maximum(), 8192);
        QCOMPARE(d.SCWeight1->value(), 1000);
        QCOMPARE(d.SCHeight1->value(), 500);
        QCOMPARE(d.TxtWidth1->text(), QStringLiteral("1000"));
        QVERIFY(d.CHKASPECT->isChecked());
        QVERIFY(!d.CHKRESAMPLE->isChecked());
        d.SCWeight1->setValue(2000);
        QCOMPARE(d.SCHeight1->value(), 1000);
        QCOMPARE(d.TxtHeight1->text(), QStringLiteral("1000"));
        QCOMPARE(d.TxtWidth1->text(), QStringLiteral("2000"));
    }

    void tallPictureLimits()
    {
        NewSize1 d;
        d.Setup(0, 100, 40000);
        QCOMPARE(d.SCHeight1->maximum(), 32767);
        // The width at its top would need a height past 32767: held at the limit.
        d.SCWeight1->setValue(16384);
        QCOMPARE(d.SCHeight1->value(), 32767);
        // Typed, the same overflows the 16-bit conversion: the partner stays.
        d.SCWeight1->setValue(50);
        const int h = d.SCHeight1->value();
        d.TxtWidth1->setText(QStringLiteral("200"));
        QCOMPARE(d.SCWeight1->value(), 200);
        QCOMPARE(d.SCHeight1->value(), h);
    }

    void typedSideAndRounding()
    {
        NewSize1 d;
        d.Setup(0, 3, 2);
        d.TxtWidth1->setText(QStringLiteral("5"));  // 2*5/3 = 3.33 -> 3
        QCOMPARE(d.SCHeight1->value(), 3);
        QCOMPARE(d.TxtHeight1->text(), QStringLiteral("3"));
        d.TxtHeight1->setText(QStringLiteral("5"));  // 3*5/2 = 7.5 -> 8 (half to even)
        QCOMPARE(d.SCWeight1->value(), 8);
        d.SCHeight1->setValue(7);  // 10.5 -> 10
        QCOMPARE(d.SCWeight1->value(), 10);
        d.TxtWidth1->setText(QString());  // cleared: nothing moves
        QCOMPARE(d.SCWeight1->value(), 10);
    }

    void aspectUntickSnapsBack()
    {
        NewSize1 d;
        d.Setup(0, 1000, 500);
        d.CHKASPECT->click();  // off
        d.SCHeight1->setValue(900);
        QCOMPARE(d.SCWeight1->value(), 1000);  // unlocked: no partner change
        d.CHKASPECT->click();  // on again: height snaps to the ratio
        QCOMPARE(d.SCHeight1->value(), 500);
        d.CHKASPECT->click();  // off: snaps too, whichever way it stands
        d.SCHeight1->setValue(900);
        d.CHKASPECT->click();
        QCOMPARE(d.SCHeight1->value(), 500);
    }

    void sizeOk()
    {
        NewSize1 d;
        d.Setup(0, 1000, 500);
        d.show();
        d.TxtWidth1->setText(QStringLiteral("0"));
        d.OKBtn->click();
        bool accepted, resample;
        int w, h;
        d.GetResult(accepted, w, h, resample);
        QVERIFY(!accepted);
        d.TxtWidth1->setText(QStringLiteral("400"));
        d.CHKRESAMPLE->click();
        QTest::keyClick(&d, Qt::Key_Enter);
        d.GetResult(accepted, w, h, resample);
        QVERIFY(accepted);
        QCOMPARE(w, 400);
        QCOMPARE(h, 200);
        QVERIFY(resample);
    }

    void intensityMode()
    {
        NewSize1 d;
        d.Setup(999, 0, 0);
        QCOMPARE(d.windowTitle(), QStringLiteral("Intensity Detect"));
        QCOMPARE(d.Frame2[1]->title(), QStringLiteral("Low"));
        QCOMPARE(d.Frame2[0]->title(), QStringLiteral("High"));
        QCOMPARE(d.SCWeight1->maximum(), 255);
        QCOMPARE(d.SCHeight1->minimum(), 0);
        QCOMPARE(d.SCWeight1->value(), 128);
        QVERIFY(d.CHKASPECT->isHidden());
        d.SCWeight1->setValue(10);
        QCOMPARE(d.SCHeight1->value(), 128);
    }

    void textToInt16Rules()
    {
        int16_t v;
        QVERIFY(textToInt16(QStringLiteral(" 12 "), &v));
        QCOMPARE(v, int16_t(12));
        QVERIFY(textToInt16(QStringLiteral("2.5"), &v));
        QCOMPARE(v, int16_t(2));
        QVERIFY(!textToInt16(QStringLiteral("32768"), &v));
        QVERIFY(!textToInt16(QStringLiteral("1,000"), &v));
        QVERIFY(!textToInt16(QString(), &v));
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    PromptsTest t;
    return QTest::qExec(&t, argc, argv);
}

#include "prompts_test.moc"
