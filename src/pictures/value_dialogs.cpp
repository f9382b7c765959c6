#include "pictures/value_dialogs.h"

#include "pictures/codecs/magick_codec.h"
#include "pictures/prompts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

namespace tw {

PictureAdjustDialog::PictureAdjustDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("PictureAdjust1"));
    setModal(true);
    Preview = new QLabel(this);
    Preview->setObjectName(QStringLiteral("Preview"));
    Preview->setFixedSize(240, 180);
    Preview->setAlignment(Qt::AlignCenter);
    AmountBar = new QSlider(Qt::Horizontal, this);
    AmountBar->setObjectName(QStringLiteral("AmountBar"));
    AmountBar->setRange(-100, 100);
    AmountBox = new QSpinBox(this);
    AmountBox->setObjectName(QStringLiteral("AmountBox"));
    AmountBox->setRange(-100, 100);
    OKBtn = new QPushButton(QStringLiteral("OK"), this);
    OKBtn->setObjectName(QStringLiteral("OKBtn"));
    CancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
    CancelBtn->setObjectName(QStringLiteral("CancelBtn"));
    auto *lay = new QVBoxLayout(this);
    lay->addWidget(Preview, 0, Qt::AlignHCenter);
    auto *row = new QHBoxLayout;
    row->addWidget(AmountBar, 1);
    row->addWidget(AmountBox);
    lay->addLayout(row);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(OKBtn);
    buttons->addWidget(CancelBtn);
    lay->addLayout(buttons);
    connect(AmountBar, &QSlider::valueChanged, AmountBox, &QSpinBox::setValue);
    connect(AmountBox, &QSpinBox::valueChanged, AmountBar, &QSlider::setValue);
    connect(AmountBar, &QSlider::valueChanged, this, [this](int v) {
        Result = v;
        updatePreview();
    });
    connect(OKBtn, &QPushButton::clicked, this, &QDialog::accept);
    connect(CancelBtn, &QPushButton::clicked, this, &QDialog::reject);
    OKBtn->setDefault(true);
}

void PictureAdjustDialog::setFlags(uint32_t flags)
{
    flags_ = flags;
    setWindowTitle((flags & FlagContrast) ? QStringLiteral("Picture Contrast")
                                          : QStringLiteral("Picture Brightness"));
    Preview->setVisible(flags & FlagPreview);
}

void PictureAdjustDialog::setPicture(const QImage &img)
{
    source_ = img;
    small_ =
        img.isNull() ? QImage() : img.scaled(Preview->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    updatePreview();
}

void PictureAdjustDialog::setBold(bool bold)
{
    QFont f = font();
    f.setBold(bold);
    setFont(f);
}

void PictureAdjustDialog::updatePreview()
{
    if (small_.isNull() || !(flags_ & FlagPreview)) {
        Preview->clear();
        return;
    }
    const double b = (flags_ & FlagContrast) ? 0 : Result;
    const double c = (flags_ & FlagContrast) ? Result : 0;
    Preview->setPixmap(QPixmap::fromImage(magick::brightnessContrast(small_, b, c)));
}

bool PictureAdjustDialog::showFor(QWidget *owner)
{
    if (owner && owner != parentWidget()) setParent(owner, windowFlags());
    AmountBar->setValue(Result);
    AmountBox->setValue(Result);
    updatePreview();
    adjustSize();
    centreOnScreen(this);
    return exec() == QDialog::Accepted;
}

}  // namespace tw
