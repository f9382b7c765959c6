// FindFle1: the modal dialog in which the user says what to look for. Thirty-four option
// rows, one per kind of file, and a text box for a pattern of the user's own. It turns the
// choice into the search pattern and closes; the routine that opened it starts the walk.
#pragma once

#include "browse/search_engine.h"

#include <QDialog>
#include <array>
#include <functional>

class QButtonGroup;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace tw {

struct FindOption {
    QString caption;
    QString toolTip;
    QString pattern;  // empty for row 33, which takes Text1
};

class FindFle1 : public QDialog {
    Q_OBJECT
public:
    static constexpr int OptionCount = 34;
    static const std::array<FindOption, OptionCount> &options();
    // The catalogue row that an option row belongs to.
    static int filterRowOf(int option);

    // Loading the dialog: SearchConfirmed off, the stored row on, the loaded flag up.
    FindFle1(browse::SearchState &state, QWidget *parent = nullptr);
    ~FindFle1() override;

    int SelectedOption() const { return selected_; }

    // Set by the owner: the hourglass over the program, and the tool bar's "ID_Find" back
    // to unpressed on close.
    std::function<void(bool)> setPointerBusy;
    std::function<void()> onClosed;

    QLabel *Label1 = nullptr;
    QLineEdit *Text1 = nullptr;
    QFrame *Frame1 = nullptr;
    std::array<QRadioButton *, OptionCount> RDSELECT{};
    QPushButton *OKBtn = nullptr;
    QPushButton *CancelBtn = nullptr;
    QPushButton *HelpBtn = nullptr;

    void applyColors();

public slots:
    void done(int r) override;

protected:
    void changeEvent(QEvent *e) override;

private:
    void onRow(int index);
    void onOk();
    void onCancel();

    browse::SearchState &S;
    QButtonGroup *group_ = nullptr;
    int selected_ = 0;
    bool closed_ = false;
};

}  // namespace tw
