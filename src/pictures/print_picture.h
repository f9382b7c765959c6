// PrntPict1, "Print Picture": a sheet of paper in miniature (Frame2) with the picture on it.
// The user moves and sizes the picture on the sheet, types a title and a label, and prints:
// one page with a date and time line, the centred title, the picture where it stands on the
// miniature sheet, and the label above or below it. The dialog's measures are twips (15 to
// the pixel); the job scales them from the sheet to the printer's pixels.
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QWidget>

class QFrame;
class QLabel;
class QLineEdit;
class QPagedPaintDevice;
class QPushButton;
class QRadioButton;
class QScrollBar;

namespace tw {

class PrintPicture : public QWidget {
    Q_OBJECT
public:
    // The window for `file` ("" for none); `showHelp` answers the Help button.
    explicit PrintPicture(const QString &file, QWidget *parent = nullptr);
    ~PrintPicture() override;

    // The job on `printer` (a system printer, or a PDF file); false when the printer failed,
    // and then Frame3 stays hidden.
    bool PrintPictureFile(QPagedPaintDevice &printer);
    // OKBtn: the system printer, through the system's print dialog unless `direct`.
    void OKBtn_Click();
    // A print preview of the job.
    void PreviewBtn_Click();

    QString SelectedFile;
    QLineEdit *TxtTitle = nullptr, *TxtTop = nullptr, *TxtLeft = nullptr;
    QScrollBar *HScroll1 = nullptr, *VScroll1 = nullptr;
    QRadioButton *RDTITLEPOS_0 = nullptr, *RDTITLEPOS_1 = nullptr;
    QLabel *Label1_0 = nullptr;
    QFrame *Frame2 = nullptr, *Frame3 = nullptr;
    QLabel *Image1 = nullptr;
    QPushButton *FontBtn = nullptr, *FontClrBtn = nullptr, *OKBtn = nullptr, *CancelBtn = nullptr,
                *HelpBtn = nullptr, *PreviewBtn = nullptr;

    double BaseHeight = 0;
    int BaseWidth = 0;
    bool PreviewBusy = true;
    QString TitlePosition = QStringLiteral("T");
    QFont TitleFont;
    QColor TitleColor;

    // What the last job computed, in printer pixels (tests read them).
    double DotsX = 0;
    int DotsY = 0;
    double PageWidth = 0, PageHeight = 0, PrintWidth = 0, PrintHeight = 0;
    double BitmapWidth = 0, BitmapHeight = 0, OutWidth = 0, OutHeight = 0;
    double px = 0, py = 0, pw = 0, ph = 0;
    double labelX = 0, labelY = 0;

    // Image1's place and size on the sheet, in twips.
    double imageLeft() const;
    double imageTop() const;
    double imageWidth() const;
    double imageHeight() const;
    void setImageRect(double left, double top, double width, double height);
    // Frame2's size in twips.
    double sheetWidth() const;
    double sheetHeight() const;

    void PlaceLabel();

protected:
    void changeEvent(QEvent *) override;
    void closeEvent(QCloseEvent *) override;

private:
    void LoadPreview(const QString &path);
    void FontBtn_Click();
    void FontClrBtn_Click();
    QImage picture_;
    int bitsPerPixel_ = 0;
};

// The number at the start of a text ("12abc" is 12, "abc" is 0), as the dialog's boxes read.
double leadingNumber(const QString &text);

}  // namespace tw
