#include "pictures/picture_files.h"

#include "core/catalogue.h"
#include "core/errors.h"
#include "core/file_copy.h"
#include "core/globals.h"
#include "core/prompt.h"
#include "core/scenario_hooks.h"
#include "core/tool_ids.h"
#include "pictures/file_dialogs.h"
#include "pictures/imaging_control.h"
#include "pictures/imaging_errors.h"
#include "pictures/picture_saving.h"
#include "pictures/pictures_module.h"
#include "pictures/properties_dialog.h"
#include "pictures/scanner.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QListWidget>
#include <QMainWindow>
#include <QProgressDialog>
#include <QPushButton>
#include <QVBoxLayout>
#include <cerrno>
#include <sys/stat.h>

namespace tw {

QString ConvertFilter() { return SaveFormatTable; }

QString openDialogFilter()
{
    QString f;
    for (int r = 0; r < FilterRows; ++r)
        f += Cat.FilterNames[size_t(r)] + u'|' + Cat.FilterPatterns[size_t(r)].trimmed() + u'|';
    f.chop(1);
    return f;
}

namespace {

QString boolText(bool v) { return v ? QStringLiteral("true") : QStringLiteral("false"); }

// Whether the name is an address of the Internet rather than a path: "HTTP:" in any case
// followed by "//". A local path that merely begins with "http:" (a folder of that name) is
// a path.
bool isAddress(const QString &path)
{
    return path.left(5).toUpper() == QLatin1String("HTTP:") && path.mid(5).startsWith(QLatin1String("//"));
}

// The bits per pixel a conversion writes when the dialog leaves it to the picture: the
// picture's own where the format stores them, else the richest the format has up to 24.
int bitsForFormat(int format, int pictureBits)
{
    if (formatTakesBits(format, pictureBits)) return pictureBits;
    for (int b : {24, 8, 4, 1, 32})
        if (formatTakesBits(format, b)) return b;
    return pictureBits;
}

}  // namespace

// ---------------------------------------------------------------- saving

bool PicturesModule::SaveFileAs(const QString &sourcePath)
{
    ensureBuilt();
    QString path = sourcePath;
    // 1..5
    const int Quality = int(G.Options.JpegQuality);
    G.CurrentExt = GetFileExt(path);
    QString Folder, FileName;
    const bool address = isAddress(path);
    const int p = address ? -1 : int(path.lastIndexOf(u'/'));
    if (p >= 0) {
        Folder = path.left(p);
        FileName = path.mid(p + 1);
    } else {
        Folder = QDir::currentPath();
    }
    if (!LastSaveFolder.trimmed().isEmpty()) Folder = LastSaveFolder;
    if (G.CurrentExt.trimmed().isEmpty()) G.CurrentExt = QStringLiteral("JPG");
    // 6. An address saves by default under its last part in the current folder.
    bool FromAddress = false;
    if (address) {
        FileName = path.mid(path.lastIndexOf(u'/') + 1);
        path = QDir::currentPath() + u'/' + FileName;
        FromAddress = true;
    }
    // 7. The name asked for; the filter shows the one type the picture is written in.
    ImagingFileDialog dlg(host_.window(), ImagingFileDialog::Save, false, false);
    dlg.setWindowTitle(QStringLiteral("Enter New File Name for - ") + path);
    dlg.setDirectory(Folder);
    const QString pattern = QStringLiteral("*.") + G.CurrentExt;
    dlg.setPipeFilter(pattern + u'|' + pattern);
    dlg.setDefaultSuffix(G.CurrentExt);
    if (!FileName.isEmpty()) dlg.setInitialName(FileName);
    if (dlg.exec() != QDialog::Accepted) return false;
    // 8.
    const QString NewName = dlg.chosenFile();
    if (NewName.isEmpty()) return false;
    // 9.
    Image1->setMousePointer(ImagingControl::PointerHourglass);
    // 10. Media and documents are copied; pictures, and names of no known type, saved.
    const int row = Cat.extRow(G.CurrentExt);
    if (row >= MediaFirst) {
        Image1->setMousePointer(ImagingControl::PointerDefault);
        if (QFileInfo::exists(NewName) && QFileInfo::exists(path) && NewName.trimmed() == path.trimmed()) {
            inform(QStringLiteral("Cannot Replace Same File if not a Picture - ") + NewName, AppTitle,
                   host_.window());
            return false;
        }
        if (copyFileNoReplace(path, NewName) != CopyResult::Copied) {
            inform(QStringLiteral("Error Copying File - ") + NewName, AppTitle, host_.window());
            return false;
        }
        if (ExplorerSide *ex = host_.explorer()) ex->refreshList();
        return true;
    }
    ExplorerSide *ex = host_.explorer();
    const bool selectedOnly = path != G.CurrentFile && host_.selectedTab() == 1 && ex
        && path.trimmed() == ex->selectedItemPath().trimmed();
    if (selectedOnly) {
        // 11. A picture only selected in the file list goes through the hidden control.
        Image3->clearPicture();
        if (Image3->load(path, 0, G.CurrentPage, -1) != 0) {
            Image1->setMousePointer(ImagingControl::PointerDefault);
            return false;
        }
        const int status =
            Image3->save(NewName, GetFormatCode(G.CurrentExt), Image3->bitsPerPixel(), Quality, 0);
        Image1->setMousePointer(ImagingControl::PointerDefault);
        if (status != 0) return false;
    } else {
        // 12. The picture on show.
        const int status =
            Image1->save(NewName, GetFormatCode(G.CurrentExt), Image1->bitsPerPixel(), Quality, 0);
        Image1->setMousePointer(ImagingControl::PointerDefault);
        if (status != 0) {
            inform(QStringLiteral("Error Saving File - ") + NewName, AppTitle, host_.window());
            return false;
        }
        const int slash = int(NewName.lastIndexOf(u'/'));
        if (slash >= 0) LastSaveFolder = NewName.left(slash);
        PictureChanged = false;
    }
    // 12.4
    if (NewName != path || FromAddress) {
        if (!IsInViewList(NewName)) {
            List3->addItem(NewName);
            List3->setCurrentRow(List3->count() - 1);
        }
    }
    G.InternetPictureLoaded = false;
    AcquiredPicture = false;
    // The file list shows the new file at once.
    if (ex) ex->refreshList();
    return true;
}

// ---------------------------------------------------------------- the command set

PictureFileCommands::PictureFileCommands(PageHost &host) : CommandSet(host)
{
    setObjectName(QStringLiteral("PictureFileCommands"));
    // The save routine as the other windows call it, with a name of their choosing.
    registerScenarioRoutine(QStringLiteral("SaveFileAs"), [this](const QStringList &a) {
        if (PicturesModule *pm = pictures()) pm->SaveFileAs(a.value(0));
        return QString();
    });
    registerScenarioRoutine(QStringLiteral("ConvertPictureFile"), [this](const QStringList &a) {
        ConvertPictureFile(a.value(0));
        return QString();
    });
}

PicturesModule *PictureFileCommands::pictures() const
{
    auto *p = dynamic_cast<PicturesModule *>(host_.page(2));
    if (p) p->ensureBuilt();
    return p;
}

QString PictureFileCommands::listFolder() const
{
    ExplorerSide *ex = host_.explorer();
    return ex ? ex->listFolder() : QString();
}

QStringList PictureFileCommands::handledTools() const
{
    return {tool::SaveImage,
            tool::mnuSaveFileAs,
            tool::mnuOpenFile,
            tool::mnuConvertFiles,
            tool::mnuCloseFile,
            tool::mnuDeleteFile,
            tool::mnuProperties,
            tool::mnuFileCreateNewFolder,
            tool::mnuTwainAcquirePicture,
            tool::mnuTwainSelectSource,
            tool::TxtProperties};
}

bool PictureFileCommands::toolClick(const QString &id)
{
    if (id == tool::SaveImage) SaveImage();
    else if (id == tool::mnuSaveFileAs) {
        if (PicturesModule *pm = pictures()) pm->SaveFileAs(G.SelectedFile);
    } else if (id == tool::mnuOpenFile) OpenPictureFile();
    else if (id == tool::mnuConvertFiles) ConvertPictureFile(G.SelectedFile);
    else if (id == tool::mnuCloseFile) {
        // The picture tab's half; the players close their own files.
        if (host_.selectedTab() != 2) return false;
        ClosePictureFile();
    } else if (id == tool::mnuDeleteFile) DeleteSelectedFile();
    else if (id == tool::mnuProperties || id == tool::TxtProperties) ShowProperties();
    else if (id == tool::mnuFileCreateNewFolder) CreateNewFolder();
    else if (id == tool::mnuTwainAcquirePicture) AcquireTwainImage();
    else if (id == tool::mnuTwainSelectSource) SelectTwainSource();
    else return false;
    return true;
}

bool PictureFileCommands::variableText(const QString &name, QString *out) const
{
    if (name == QLatin1String("LastConvertFolder")) *out = LastConvertFolder;
    else if (name == QLatin1String("ScannerSource")) *out = ScannerSource;
    else if (name == QLatin1String("LastSaveFolder")) {
        auto *p = dynamic_cast<PicturesModule *>(host_.page(2));
        *out = p ? p->LastSaveFolder : QString();
    } else if (name == QLatin1String("ProPert1Loaded")) *out = boolText(G.ProPert1Loaded);
    else return false;
    return true;
}

void PictureFileCommands::SaveImage()
{
    PicturesModule *pm = pictures();
    if (!pm) return;
    if (pm->PictureResized) {
        pm->SaveFileAs(G.CurrentFile);
        pm->PictureResized = false;
    } else if (pm->AcquiredPicture) {
        pm->SaveFileAs(G.SelectedFile);
        pm->AcquiredPicture = false;
    } else if (G.InternetPictureLoaded) {
        pm->SaveFileAs(G.CurrentFile);
        G.InternetPictureLoaded = false;
    } else if (pm->List3->count() > 0 && pm->List3->currentItem()) {
        pm->SaveFileAs(pm->List3->currentItem()->text());
    }
}

// ---------------------------------------------------------------- open and convert

void PictureFileCommands::OpenPictureFile()
{
    if (openDialogFolder_.trimmed().isEmpty()) openDialogFolder_ = listFolder();
    ImagingFileDialog dlg(host_.window(), ImagingFileDialog::Open, true, false);
    dlg.setPipeFilter(openDialogFilter());
    if (!openDialogFolder_.trimmed().isEmpty()) dlg.setDirectory(openDialogFolder_);
    dlg.setWindowTitle(QStringLiteral("Open Image, Picture, or MultiMedia Files"));
    G.CurrentPage = 1;
    const bool accepted = dlg.exec() == QDialog::Accepted;
    // The dialog opens next time where it was left: the chosen file's folder.
    openDialogFolder_ = accepted && !dlg.chosenFile().isEmpty() ? QFileInfo(dlg.chosenFile()).absolutePath()
                                                                : dlg.directory().absolutePath();
    if (!accepted) return;
    G.SelectedFile = dlg.chosenFile();
    G.CurrentExt = GetFileExt(G.SelectedFile);
    if (G.SelectedFile.trimmed().isEmpty()) return;
    G.CurrentPage = dlg.page();
    G.FromInternet = false;  // opened by its name, from a file
    host_.DisplayFile(G.SelectedFile);
}

void PictureFileCommands::ConvertPictureFile(const QString &path)
{
    PicturesModule *pm = pictures();
    if (!pm) return;
    // 1..2 The file to convert, with its page.
    QString source;
    {
        ImagingFileDialog from(host_.window(), ImagingFileDialog::Open, true, false);
        const QString folder = listFolder();
        if (!folder.isEmpty()) from.setDirectory(folder);
        from.setPipeFilter(ConvertFilter(), GetFileFilterType(QStringLiteral("*.") + GetFileExt(path)));
        if (!path.isEmpty()) from.setInitialName(path);
        from.setWindowTitle(QStringLiteral("Convert From...") + G.SelectedFile);
        if (from.exec() == QDialog::Accepted) source = from.chosenFile();
        if (!source.isEmpty()) G.CurrentPage = from.page();
    }
    // 3. The target's name starts as the source's without its extension.
    QString target = source;
    const int dot = int(target.lastIndexOf(u'.'));
    if (dot >= 0) target = target.left(dot);
    // 4..5
    ImagingFileDialog to(host_.window(), ImagingFileDialog::Save, false, true);
    if (!LastConvertFolder.trimmed().isEmpty()) to.setDirectory(LastConvertFolder);
    else if (!source.isEmpty()) to.setDirectory(QFileInfo(source).absolutePath());
    to.setPipeFilter(ConvertFilter());
    if (!target.isEmpty()) to.setInitialName(QFileInfo(target).fileName());
    to.setWindowTitle(QStringLiteral("Convert To..."));
    to.setWindowTitle(QStringLiteral("Save File"));
    if (to.exec() != QDialog::Accepted) return;
    target = to.chosenFile();
    if (target.isEmpty()) return;
    // 6. A name typed without an extension takes that of the format chosen.
    if (GetFileExt(target).trimmed().isEmpty()) target += u'.' + to.chosenExtension();
    // 7..8
    QWidget *form = host_.window();
    form->setCursor(Qt::WaitCursor);
    pm->Image1->setMousePointer(ImagingControl::PointerHourglass);
    const int slash = int(target.lastIndexOf(u'/'));
    if (slash > 0) LastConvertFolder = target.left(slash);
    // 9. The format of the target's extension, else of the filter chosen.
    int format = GetFormatCode(GetFileExt(target));
    if (format == 0 || encoderOfFormat(format).isEmpty()) format = GetFormatCode(to.chosenExtension());
    const int quality = to.quality();
    const bool multiPage = to.multiPage();
    // 10. Through the hidden control: the picture on show stays as it is.
    pm->Image3->clearPicture();
    if (pm->Image3->load(source, 0, G.CurrentPage, 1) == 0) {
        const int bits =
            to.bitsPerPixel() > 0 ? to.bitsPerPixel() : bitsForFormat(format, pm->Image3->bitsPerPixel());
        pm->Image3->save(target, format, bits, quality, multiPage ? 1 : 0);
    }
    // 11.
    form->unsetCursor();
    pm->Image1->setMousePointer(ImagingControl::PointerDefault);
    if (ExplorerSide *ex = host_.explorer()) ex->refreshList();
}

// ---------------------------------------------------------------- close, delete, new folder

void PictureFileCommands::ClosePictureFile()
{
    PicturesModule *pm = pictures();
    if (!pm) return;
    pm->Image1->clearPicture();
    const int row = pm->List3->currentRow();
    if (row >= 0) delete pm->List3->takeItem(row);
}

void PictureFileCommands::DeleteSelectedFile()
{
    const QString path = G.SelectedFile;
    if (path.trimmed().isEmpty() || !QFileInfo::exists(path)) return;
    const QString name = QFileInfo(path).fileName();
    // The desktop's trash keeps the file, so it can be put back from there.
    if (askYesNo(QStringLiteral("Are you sure you want to move '") + name + QStringLiteral("' to the Trash?"),
                 QStringLiteral("Confirm File Delete"), host_.window()))
        QFile::moveToTrash(path);
    if (ExplorerSide *ex = host_.explorer()) ex->refreshList();
}

void PictureFileCommands::CreateNewFolder()
{
    const QString folder = listFolder();
    const QString sep = folder.endsWith(u'/') ? QString() : QStringLiteral("/");
    int number = 0;
    if (folder.trimmed().isEmpty() || !QFileInfo(folder).isDir() || !QDir::setCurrent(folder)) {
        number = ErrPathNotFound;
    } else if (::mkdir("New Folder", 0777) != 0) {
        number = errno == EEXIST ? int(ErrPathFileAccess) : errorNumberFromErrno(errno);
    }
    if (number == ErrPathFileAccess) {
        inform(QStringLiteral("Folder Already Exists in this Folder"), AppTitle, host_.window());
        return;
    }
    if (number == ErrPathNotFound) {
        inform(QStringLiteral("Please Select a Folder or Disk to Create the New Folder"), AppTitle,
               host_.window());
        return;
    }
    if (number != 0) {
        inform(unexpectedErrorText(number), AppTitle, host_.window());
        return;
    }
    ExplorerSide *ex = host_.explorer();
    if (!ex) return;
    ex->refreshList();
    const QString want = (folder + sep + QStringLiteral("New Folder")).trimmed().toUpper();
    const QStringList items = ex->listItemPaths();
    for (const QString &item : items)
        if (item.trimmed().toUpper() == want) {
            if (host_.selectedTab() != 1) host_.selectTab(1);
            ex->markListItem(item);
            break;
        }
}

// ---------------------------------------------------------------- the scanner

void PictureFileCommands::AcquireTwainImage()
{
    PicturesModule *pm = pictures();
    if (!pm) return;
    G.InternetPictureLoaded = false;
    QImage img;
    int bits = 24;
    int status;
    {
        QProgressDialog progress(QStringLiteral("Scanning..."), QStringLiteral("Cancel"), 0, 0,
                                 host_.window());
        progress.setObjectName(QStringLiteral("ScanProgress"));
        progress.setWindowTitle(AppTitle);
        progress.setMinimumDuration(500);
        status = scanner::scan(ScannerSource, &img, &bits, [&progress] {
            QApplication::processEvents();
            return !progress.wasCanceled();
        });
    }
    if (status != 0) {
        inform(imagingErrorMessage(status), QStringLiteral("File Information Error"), host_.window());
        return;
    }
    pm->Image1->setImage(img, bits);
    // The untouched copy that Reset to Original goes back to.
    pm->Image2->assignFrom(*pm->Image1);
    // A scan has no title of its own.
    const QString name = QStringLiteral("TWAIN ACQUIRE IMAGE");
    G.SelectedFile = name;
    G.CurrentFile = name;
    G.InternetPictureLoaded = true;
    pm->AcquiredPicture = true;
    host_.selectTab(2);
    host_.setTitle(G.CurrentFile + QStringLiteral(" - ") + AppTitle);
    pm->Image1->show();
    pm->ResizeImage();
    pm->PictureChanged = true;
}

void PictureFileCommands::SelectTwainSource()
{
    QList<scanner::Device> devices;
    int status = scanner::listDevices(&devices);
    if (status == 0 && devices.isEmpty()) status = scanner::NoDataSource;
    if (status != 0) {
        inform(imagingErrorMessage(status), QStringLiteral("File Information Error"), host_.window());
        return;
    }
    QDialog dlg(host_.window());
    dlg.setObjectName(QStringLiteral("SelectSource1"));
    dlg.setWindowTitle(QStringLiteral("Select Source"));
    auto *lay = new QVBoxLayout(&dlg);
    auto *list = new QListWidget(&dlg);
    list->setObjectName(QStringLiteral("SourceList"));
    for (const scanner::Device &d : devices) {
        auto *item = new QListWidgetItem(d.name + QStringLiteral("  ") + d.description, list);
        item->setData(Qt::UserRole, d.name);
        if (d.name == ScannerSource) list->setCurrentItem(item);
    }
    if (!list->currentItem()) list->setCurrentRow(0);
    lay->addWidget(list);
    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dlg);
    box->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("OKBtn"));
    box->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelBtn"));
    lay->addWidget(box);
    QObject::connect(box, &QDialogButtonBox::accepted, &dlg, &QDialog::accept);
    QObject::connect(box, &QDialogButtonBox::rejected, &dlg, &QDialog::reject);
    QObject::connect(list, &QListWidget::itemDoubleClicked, &dlg, &QDialog::accept);
    if (dlg.exec() == QDialog::Accepted && list->currentItem())
        ScannerSource = list->currentItem()->data(Qt::UserRole).toString();
}

// ---------------------------------------------------------------- properties

void PictureFileCommands::ShowProperties()
{
    ProPert1 dlg(host_.window());
    dlg.exec();
}

TW_REGISTER_COMMANDS(PictureFileCommands);

}  // namespace tw
