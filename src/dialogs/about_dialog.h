// About1, "About the Tarnwick": the program's title and version, the link to the maker's
// page (it opens on the Internet tab) and the system information button.
#pragma once

#include <QDialog>
#include <functional>

class QLabel;
class QPushButton;

namespace tw {

// The maker's page that the link opens.
extern const QString MakerUrl;
extern const QString MakerName;
// The system information programs looked for on PATH, in order of preference.
QStringList systemInfoPrograms();
// The first of them found on `path` (a PATH value); "" when none is.
QString findSystemInfoProgram(const QString &path);

class About1 : public QDialog {
    Q_OBJECT
public:
    // `openLink` shows CurrentUrl on the Internet tab.
    explicit About1(QWidget *parent = nullptr, std::function<void()> openLink = {});
    ~About1() override;

    QLabel *Label1[4] = {};
    QPushButton *OKBtn = nullptr, *SysBtn = nullptr;

    void SysBtn_Click();
    void Label1_Click(int index);

protected:
    bool eventFilter(QObject *o, QEvent *e) override;
    void keyPressEvent(QKeyEvent *e) override;

private:
    std::function<void()> openLink_;
};

}  // namespace tw
