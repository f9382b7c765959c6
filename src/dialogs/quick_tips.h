// QuikTip1: a random tip of the day from TIPHELP.TXT in the program folder, one tip per line.
#pragma once

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QLabel;
class QPushButton;

namespace tw {

// The lines of a tips file: 8-bit text, CR LF line ends, every line a tip (an empty line
// too), read whole (a comma is part of the tip).
QStringList readTipLines(const QByteArray &bytes);

class QuikTip1 : public QDialog {
    Q_OBJECT
public:
    explicit QuikTip1(QWidget *parent = nullptr);
    ~QuikTip1() override;

    // Reads the tips; true when the file was read. Shows its box when it was not.
    bool LoadTips(const QString &path);
    void DoNextTip();

    QLabel *lblTipText = nullptr;
    QCheckBox *chkLoadTipsAtStartup = nullptr;
    QPushButton *OKBtn = nullptr, *NextTipBtn = nullptr;
    QStringList Tips;
    int CurrentTip = 0;

protected:
    void keyPressEvent(QKeyEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

private:
    void OKBtn_Click();
};

}  // namespace tw
