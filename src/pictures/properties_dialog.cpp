#include "pictures/properties_dialog.h"

#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/text_rules.h"
#include "pictures/codecs/magick_write.h"
#include "pictures/imaging_formats.h"
#include "pictures/picture_decoder.h"

#include <QApplication>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

namespace tw {

namespace {
const char *const kCaptions[ProPert1::Rows] = {
    "Number of Bits per Bitmap:",
    "Color Count:",
    "Image Format:",
    "Image Height:",
    "Image Width:",
    "Image Disk Size:",
    "Image Memory Size:",
    "Image X Resolution:",
    "Image Y Resolution:",
};
QString trimStr(double v) { return Str(v).trimmed(); }
}  // namespace

QString groupedNumber(double v)
{
    static const QLocale grouped(QLocale::English, QLocale::UnitedStates);
    return grouped.toString(qint64(std::llround(v)));
}

ProPert1::ProPert1(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("ProPert1"));
    setWindowTitle(QStringLiteral("Image Properties"));
    setHelpTopic(this, QStringLiteral("pictures"));
    auto *outer = new QVBoxLayout(this);
    grid_ = new QGridLayout;
    outer->addLayout(grid_);
    for (int r = 1; r <= Rows; ++r) {
        Label1[r] = new QLabel(QString::fromLatin1(kCaptions[r - 1]), this);
        Label1[r]->setObjectName(QStringLiteral("Label1_%1").arg(r));
        Label2[r] = new QLabel(this);
        Label2[r]->setObjectName(QStringLiteral("Label2_%1").arg(r));
        Label2[r]->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid_->addWidget(Label1[r], r - 1, 0);
        grid_->addWidget(Label2[r], r - 1, 1);
    }
    auto *buttons = new QHBoxLayout;
    OKBtn = new QPushButton(QStringLiteral("OK"), this);
    OKBtn->setObjectName(QStringLiteral("OKBtn"));
    OKBtn->setToolTip(QStringLiteral("Display of Image Properties Accepted"));
    OKBtn->setDefault(true);
    CancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
    CancelBtn->setObjectName(QStringLiteral("CancelBtn"));
    CancelBtn->setToolTip(QStringLiteral("Close the Image Property Display Window"));
    HelpBtn = new QPushButton(QStringLiteral("Help"), this);
    HelpBtn->setObjectName(QStringLiteral("HelpBtn"));
    HelpBtn->setToolTip(QStringLiteral("Help with Image Property Display Window"));
    HelpBtn->setAutoDefault(false);
    CancelBtn->setAutoDefault(false);
    buttons->addStretch();
    buttons->addWidget(OKBtn);
    buttons->addWidget(CancelBtn);
    buttons->addWidget(HelpBtn);
    outer->addLayout(buttons);
    connect(OKBtn, &QPushButton::clicked, this, &QDialog::accept);
    connect(CancelBtn, &QPushButton::clicked, this, &QDialog::reject);
    connect(HelpBtn, &QPushButton::clicked, this, [this] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
        QApplication::sendEvent(HelpBtn, &press);
    });
    G.ProPert1Loaded = true;
    fill();
}

ProPert1::~ProPert1() { G.ProPert1Loaded = false; }

void ProPert1::fill()
{
    const QString path = G.SelectedFile;
    const QString ext = GetFileExt(path);
    // The extension cells up to 81 only, though the table has 86.
    int i = 0;
    for (; i <= 81; ++i)
        if (Cat.FileExtTable[size_t(i)] == ext) break;
    if (i > 81) {
        inform(QStringLiteral("Cannot determine File Properties for this type of File"), AppTitle,
               parentWidget());
        return;
    }
    if (i <= 37) {
        FileFacts f;
        if (readPictureFacts(path, G.CurrentPage, &f) != 0) return;
        Label2[1]->setText(trimStr(f.bitsPerPixel));
        Label2[2]->setText(groupedNumber(double(f.colors)));
        Label2[3]->setText(GetImageFormatName(f.format));
        Label2[4]->setText(trimStr(f.height));
        Label2[5]->setText(trimStr(f.width));
        Label2[6]->setText(groupedNumber(double(f.sizeDisk)));
        Label2[7]->setText(groupedNumber(double(f.sizeMem)));
        Label2[8]->setText(trimStr(f.xResolution));
        Label2[9]->setText(trimStr(f.yResolution));
        addExifRows(path);
        return;
    }
    // A media file or a document: its size on disk and nothing else.
    Label2[6]->setText(groupedNumber(double(QFileInfo(path).size())));
    Label2[9]->hide();
}

void ProPert1::addExifRows(const QString &path)
{
    QStringList names, values;
    if (magick::exifFacts(path, &names, &values) != magick::Status::Ok) return;
    for (int k = 0; k < names.size(); ++k) {
        auto *caption = new QLabel(names[k] + u':', this);
        caption->setObjectName(QStringLiteral("Label1_%1").arg(Rows + 1 + k));
        auto *value = new QLabel(values.value(k), this);
        value->setObjectName(QStringLiteral("Label2_%1").arg(Rows + 1 + k));
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid_->addWidget(caption, Rows + k, 0);
        grid_->addWidget(value, Rows + k, 1);
        ExifCaptions << caption;
        ExifValues << value;
    }
}

}  // namespace tw
