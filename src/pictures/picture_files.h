// The picture file commands of the File menu and the picture toolbar: Save As and Save
// Image, Open, Convert, Close, Delete, Create New Folder, the scanner's acquire and source
// selection, and Properties. They act on the picture side through the Pictures page.
#pragma once

#include "core/tab_page.h"

#include <QObject>
#include <QString>

namespace tw {

class PicturesModule;

// The filter of both conversion dialogs.
QString ConvertFilter();
// The filter of the Open dialog: rows 0 to 35 of the catalogue as "name|pattern|...".
QString openDialogFilter();

class PictureFileCommands : public QObject, public CommandSet {
    Q_OBJECT
public:
    explicit PictureFileCommands(PageHost &host);
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    bool variableText(const QString &name, QString *out) const override;

    void SaveImage();
    void OpenPictureFile();
    void ConvertPictureFile(const QString &path);
    void ClosePictureFile();
    void DeleteSelectedFile();
    void AcquireTwainImage();
    void SelectTwainSource();
    void CreateNewFolder();
    void ShowProperties();

    QString LastConvertFolder;
    QString ScannerSource;  // the SANE device chosen, "" for the first one found

private:
    PicturesModule *pictures() const;
    QString listFolder() const;
    QString openDialogFolder_;  // where the Open dialog was left
};

}  // namespace tw
