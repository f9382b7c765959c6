#include "pictures/file_dialogs.h"

#include "core/globals.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSpinBox>

namespace tw {

QString firstExtensionOfFilter(const QString &qtFilter)
{
    static const QRegularExpression re(QStringLiteral("\\(\\*\\.([^ );]+)"));
    const auto m = re.match(qtFilter);
    return m.hasMatch() ? m.captured(1).toUpper() : QString();
}

ImagingFileDialog::ImagingFileDialog(QWidget *parent, Kind kind, bool withPage, bool withFormat)
    : QFileDialog(parent)
{
    setObjectName(QStringLiteral("LEADDlg1"));
    setOption(QFileDialog::DontUseNativeDialog, true);
    setAcceptMode(kind == Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    setFileMode(kind == Save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    auto *grid = qobject_cast<QGridLayout *>(layout());
    if (!grid) return;
    int row = grid->rowCount();
    auto addRow = [&](const QString &caption, QWidget *w) {
        auto *l = new QLabel(caption, this);
        l->setBuddy(w);
        grid->addWidget(l, row, 0);
        grid->addWidget(w, row, 1);
        ++row;
    };
    if (withPage) {
        page_ = new QSpinBox(this);
        page_->setObjectName(QStringLiteral("PageBox"));
        page_->setRange(1, 9999);
        page_->setValue(1);
        page_->setToolTip(QStringLiteral("Page of a multi-page file"));
        addRow(QStringLiteral("&Page:"), page_);
    }
    if (withFormat) {
        bits_ = new QComboBox(this);
        bits_->setObjectName(QStringLiteral("BitsBox"));
        bits_->addItem(QStringLiteral("As the picture"), 0);
        for (int b : {1, 4, 8, 24, 32}) bits_->addItem(QString::number(b), b);
        addRow(QStringLiteral("&Bits per pixel:"), bits_);
        quality_ = new QSpinBox(this);
        quality_->setObjectName(QStringLiteral("QualityBox"));
        quality_->setRange(1, 99);
        quality_->setValue(std::clamp(int(G.Options.JpegQuality), 1, 99));
        quality_->setToolTip(QStringLiteral("JPEG quality: 1 finest, 99 smallest"));
        addRow(QStringLiteral("&Quality factor:"), quality_);
        multi_ = new QCheckBox(QStringLiteral("&Multi-page file"), this);
        multi_->setObjectName(QStringLiteral("MultiPageBox"));
        grid->addWidget(multi_, row, 1);
    }
}

void ImagingFileDialog::setPipeFilter(const QString &pipeFilter, int filterIndex)
{
    const QStringList filters = qtNameFilters(pipeFilter);
    setNameFilters(filters);
    if (filterIndex >= 1 && filterIndex <= filters.size()) selectNameFilter(filters[filterIndex - 1]);
}

void ImagingFileDialog::setInitialName(const QString &name)
{
    if (name.isEmpty()) return;
    // Into the name box, as if typed: a selection in the file view (what selectFile makes
    // once the folder is read) would win over a name the user types afterwards.
    if (auto *box = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))) box->setText(name);
    else selectFile(name);
}

QString ImagingFileDialog::chosenFile() const { return selectedFiles().value(0); }
int ImagingFileDialog::page() const { return page_ ? page_->value() : 1; }
QString ImagingFileDialog::chosenExtension() const { return firstExtensionOfFilter(selectedNameFilter()); }
int ImagingFileDialog::bitsPerPixel() const { return bits_ ? bits_->currentData().toInt() : 0; }
int ImagingFileDialog::quality() const { return quality_ ? quality_->value() : int(G.Options.JpegQuality); }
bool ImagingFileDialog::multiPage() const { return multi_ && multi_->isChecked(); }

}  // namespace tw
