// The two number prompts of the picture commands: NewValue1 asks for one whole number
// (the zoom command uses it), NewSize1 for a width and a height with an aspect lock (the
// resize command). In both the scroll bar and the text box show the same number and each
// follows the other; only the OK button validates, and it does nothing on a bad number.
#pragma once

#include <QDialog>
#include <cstdint>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;

namespace tw {

class ImagingControl;

// The whole number a text box holds, the way a 16-bit conversion reads it: blanks around
// it are dropped, a fraction rounds half to even; false for text that is no number or
// does not fit 16 bits.
bool textToInt16(const QString &text, int16_t *out);

// What the two value prompts share: Enter is OK (which may refuse and stay), Escape hides
// the prompt as cancelled.
class ValuePrompt : public QDialog {
    Q_OBJECT
public:
    using QDialog::QDialog;

protected:
    void keyPressEvent(QKeyEvent *e) override;
    virtual void okClicked() = 0;
};

class NewValue1 : public ValuePrompt {
    Q_OBJECT
public:
    explicit NewValue1(QWidget *parent = nullptr);
    ~NewValue1() override;

    void Setup(const QString &caption, const QString &label, int16_t maximum, int16_t minimum, int16_t value,
               int16_t largeStep, int16_t smallStep, bool &showResize);
    bool GetAccepted() const { return ValueAccepted; }
    int16_t GetValue() const { return ChosenValue; }
    bool GetResize() const;

    QLabel *NewValueTitle;
    QScrollBar *NewValueBar;
    QLineEdit *NewValueBox;
    QCheckBox *CHKRESIZE;
    QPushButton *OKBtn;
    QPushButton *CancelBtn;

    bool ValueAccepted = false;
    int16_t ChosenValue = 0;
    bool BoxDriving = false;
    bool BarDriving = false;

protected:
    void okClicked() override;

private:
    void barChanged(int value);
    void boxChanged(const QString &text);
};

class NewSize1 : public ValuePrompt {
    Q_OBJECT
public:
    explicit NewSize1(QWidget *parent = nullptr);
    ~NewSize1() override;

    // Sizes come from the picture (mode 0) or its marked region (mode 3) of `image`.
    void Setup(int16_t mode, const ImagingControl &image);
    // The same with the sizes given directly.
    void Setup(int16_t mode, int pictureWidth, int pictureHeight);
    void GetResult(bool &accepted, int &width, int &height, bool &resample) const;

    QScrollBar *SCWeight1;  // the width
    QScrollBar *SCHeight1;
    QLineEdit *TxtWidth1;
    QLineEdit *TxtHeight1;
    QGroupBox *Frame2[2];  // 1 around the width, 0 around the height
    QCheckBox *CHKASPECT;
    QCheckBox *CHKRESAMPLE;
    QPushButton *OKBtn;
    QPushButton *CancelBtn;
    QPushButton *HelpBtn;

    bool SizeAccepted = false;
    int16_t SizeMode = 0;
    bool BoxDriving = false;
    bool BarDriving = false;

protected:
    void okClicked() override;

private:
    bool aspectOn() const;
    bool pictureSized() const { return (SizeMode == 0 || SizeMode == 3) && picW_ > 0 && picH_ > 0; }
    void barChanged(int side, int value);
    void textChanged(int side, const QString &text);
    void aspectClicked();
    QScrollBar *bar(int side) const { return side == 0 ? SCWeight1 : SCHeight1; }
    QLineEdit *box(int side) const { return side == 0 ? TxtWidth1 : TxtHeight1; }
    int picW_ = 0, picH_ = 0;
    bool aspectPass_ = false;
};

// Centres a window on its screen: left = (screen width - width) / 2, top likewise.
void centreOnScreen(QWidget *w);

}  // namespace tw
