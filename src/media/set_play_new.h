// SetPlayNew1: the modal prompt for the name of a new play list.
#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace tw {

class SetPlayNew1 : public QDialog {
    Q_OBJECT
public:
    explicit SetPlayNew1(QWidget *parent);
    // The results: the name as typed (untrimmed), and whether the prompt was cancelled.
    QString NewPlayListName;
    bool NewPlayListCancelled = false;

    QLineEdit *Text1 = nullptr;
    QPushButton *OKBtn = nullptr, *CancelBtn = nullptr;

private:
    void OKBtnClick();
    void CancelBtnClick();
};

}  // namespace tw
