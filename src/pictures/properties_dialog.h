// ProPert1, "Image Properties": what the imaging library can say about the selected file,
// one caption and one value per row, and the file's EXIF facts in further rows below.
#pragma once

#include <QDialog>
#include <QList>

class QGridLayout;
class QLabel;
class QPushButton;

namespace tw {

// "16,777,216": whole numbers with thousands grouping and no decimals.
QString groupedNumber(double v);

class ProPert1 : public QDialog {
    Q_OBJECT
public:
    // Reads SelectedFile and CurrentPage; a file of no known type gets its box here.
    explicit ProPert1(QWidget *parent = nullptr);
    ~ProPert1() override;

    static constexpr int Rows = 9;
    QLabel *Label1[Rows + 1] = {};  // captions, rows 1..9
    QLabel *Label2[Rows + 1] = {};  // values
    QList<QLabel *> ExifCaptions, ExifValues;
    QPushButton *OKBtn = nullptr, *CancelBtn = nullptr, *HelpBtn = nullptr;

private:
    void fill();
    void addExifRows(const QString &path);
    QGridLayout *grid_ = nullptr;
};

}  // namespace tw
