// The picture adjustment dialog behind the brightness and contrast commands: a signed
// amount chosen with a slider, shown live on a preview of the picture.
#pragma once

#include <QDialog>
#include <QImage>
#include <cstdint>

class QLabel;
class QSlider;
class QSpinBox;
class QPushButton;

namespace tw {

class PictureAdjustDialog : public QDialog {
    Q_OBJECT
public:
    // Flag bits: which amount the dialog asks for, and whether it shows a preview.
    static constexpr uint32_t FlagBrightness = 0x00000002;
    static constexpr uint32_t FlagContrast = 0x00000004;
    static constexpr uint32_t FlagPreview = 0x40000000;

    explicit PictureAdjustDialog(QWidget *parent = nullptr);

    void setFlags(uint32_t flags);
    uint32_t flags() const { return flags_; }
    // The picture the preview shows; a null picture shows no preview.
    void setPicture(const QImage &img);
    void setBold(bool bold);
    // The amount chosen, -100..100. Starts at `Result` as set before showing.
    int Result = 0;
    // Shows modally; true when the user accepted (a cancel is a failure for the caller).
    bool showFor(QWidget *owner);

    QSlider *AmountBar;
    QSpinBox *AmountBox;
    QLabel *Preview;
    QPushButton *OKBtn;
    QPushButton *CancelBtn;

private:
    void updatePreview();
    uint32_t flags_ = 0;
    QImage source_;
    QImage small_;
};

}  // namespace tw
