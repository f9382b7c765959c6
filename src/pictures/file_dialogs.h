// The picture file dialogs: a file dialog that also offers the page of a multi-page file
// (open) or the format, bits per pixel, quality and multi-page choice (save), and the turn
// of the program's "caption|pattern|caption|pattern" filters into the dialog's own.
#pragma once

#include "core/file_filters.h"

#include <QFileDialog>
#include <QString>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QSpinBox;

namespace tw {

// The first extension of a dialog filter ("JPG" of "Name (*.JPG *.jpg ...)"), upper case.
QString firstExtensionOfFilter(const QString &qtFilter);

class ImagingFileDialog : public QFileDialog {
    Q_OBJECT
public:
    enum Kind { Open, Save };
    ImagingFileDialog(QWidget *parent, Kind kind, bool withPage, bool withFormat);

    void setPipeFilter(const QString &pipeFilter, int filterIndex = 1);
    void setInitialName(const QString &name);
    // After closing: the chosen name, page, extension of the chosen filter, bits per pixel
    // (0: as the picture), quality, multi-page.
    QString chosenFile() const;
    int page() const;
    QString chosenExtension() const;
    int bitsPerPixel() const;
    int quality() const;
    bool multiPage() const;

private:
    QSpinBox *page_ = nullptr;
    QComboBox *bits_ = nullptr;
    QSpinBox *quality_ = nullptr;
    QCheckBox *multi_ = nullptr;
};

}  // namespace tw
