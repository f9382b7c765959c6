// Rename1, "Rename Image File": a new base name for the selected file, in its own folder
// and with its own extension. The file is copied to the new name, the copy checked, and
// only then the old one deleted, so no failure loses the file.
#pragma once

#include <QDialog>
#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace tw {

class Rename1 : public QDialog {
    Q_OBJECT
public:
    // Reads SelectedFile; `refresh` reads the file list's folder again.
    explicit Rename1(QWidget *parent = nullptr, std::function<void()> refresh = {});

    QLabel *Label1[3] = {};  // captions 0 and 1, the full path in 2
    QLineEdit *Text1[2] = {};  // the current name (locked), the new name
    QPushButton *OKBtn = nullptr, *CancelBtn = nullptr, *HelpBtn = nullptr;

    void OKBtn_Click();

protected:
    void keyPressEvent(QKeyEvent *e) override;

private:
    std::function<void()> refresh_;
};

}  // namespace tw
