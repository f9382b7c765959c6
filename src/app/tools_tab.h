// Tab 8: the colour table and the three option pages that edit Colors.INI and Options.INI.
#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;

namespace tw {

class PageHost;

class ToolsTab : public QWidget {
    Q_OBJECT
public:
    explicit ToolsTab(PageHost &w, QWidget *parent);

    void ShowColors();
    void ReadColors();
    void ShowOptions();
    void ReadOptions();
    bool ValidateOptions();
    void OptApplyBtnClick();
    void OptCancelBtnClick();
    void showPage(int page);  // 0 general, 1 search, 2 thumbnails
    void repaintEntries();
    void layoutTab();

    QLineEdit *Text3[28] = {};
    QLineEdit *Text4[4] = {};
    QLabel *Label2[10] = {};  // 6, 7 the date and time here
    QFrame *SSFrame1[3] = {};
    QPushButton *OptGeneralsBtn = nullptr, *OptSearchBtn = nullptr, *OptThumbsBtn = nullptr;
    QPushButton *OptApplyBtn = nullptr, *OptCancelBtn = nullptr, *OptHelpBtn = nullptr;
    QCheckBox *CHKBOLD = nullptr, *CHKSAVEFOLDER = nullptr, *CHKDOCUMENTTEXT = nullptr,
              *CHKAUTOPICT = nullptr, *CHKAUTOVIDEO = nullptr, *CHKAUTOMUSIC = nullptr,
              *CHKOPTVIDEOLOOP = nullptr, *CHKOPTMUSICLOOP = nullptr, *CHKVIDEOLIST = nullptr;
    QComboBox *CMBMENUTYPE = nullptr, *CMBMENU = nullptr, *CMBFONTTYPE = nullptr, *CMBTHUMBRESL = nullptr;
    QScrollBar *SCOPTJPEGQ = nullptr;
    QLabel *JpegQualityLabel = nullptr;

protected:
    bool eventFilter(QObject *o, QEvent *e) override;

private:
    void chooseColor(int box);
    uint32_t boxColor(int box) const;
    void setBoxColor(int box, uint32_t c);
    PageHost &w_;
    uint32_t boxColors_[28] = {};
};

// Which colour field of Colors.INI each box of the colour table edits (-1: none).
int colorFieldOfBox(int box);

}  // namespace tw
