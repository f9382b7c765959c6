#include "pictures/editor_commands.h"

#include "core/globals.h"
#include "core/printing.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"
#include "pictures/imaging_control.h"
#include "pictures/picture_editors.h"
#include "pictures/pictures_module.h"
#include "pictures/print_picture.h"

#include <QLabel>
#include <QListWidget>
#include <QMainWindow>

namespace tw {

PictureEditorCommands::PictureEditorCommands(PageHost &host) : CommandSet(host)
{
    setObjectName(QStringLiteral("PictureEditorCommands"));
}

PictureEditorCommands::~PictureEditorCommands()
{
    delete colourEditor.data();
    delete effectsEditor.data();
    delete printWindow.data();
}

PicturesModule *PictureEditorCommands::pictures() const
{
    auto *p = dynamic_cast<PicturesModule *>(host_.page(2));
    if (p) p->ensureBuilt();
    return p;
}

QStringList PictureEditorCommands::handledTools() const
{
    return {tool::EditImage,     tool::EditColors, tool::PrintImage,
            tool::mnuPrintFiles, tool::Print,      tool::mnuSetUpPrinter};
}

bool PictureEditorCommands::toolClick(const QString &id)
{
    if (id == tool::EditImage || id == tool::EditColors || id == tool::PrintImage) {
        // The save question first; then the file under edit is the picture list's row.
        PicturesModule *pm = pictures();
        if (!pm) return true;
        pm->offerToSavePicture();
        if (pm->List3 && pm->List3->currentItem()) G.EditedFile = pm->List3->currentItem()->text();
        if (id == tool::PrintImage) OpenPrintWindow(G.SelectedFile);
        else OpenEditor(id);
        return true;
    }
    if (id == tool::mnuPrintFiles || id == tool::Print) {
        OpenPrintWindow(G.SelectedFile);
        return true;
    }
    if (id == tool::mnuSetUpPrinter) {
        SetUpPrinter();
        return true;
    }
    return false;
}

void PictureEditorCommands::shutDown()
{
    if (colourEditor) colourEditor->close();
    if (effectsEditor) effectsEditor->close();
    if (printWindow) printWindow->close();
}

void PictureEditorCommands::OpenEditor(const QString &id)
{
    const bool colours = id == tool::EditColors;
    PictureEditor *open = colours ? static_cast<PictureEditor *>(colourEditor.data())
                                  : static_cast<PictureEditor *>(effectsEditor.data());
    if (open) {
        // The open window keeps what it loaded.
        open->raise();
        open->activateWindow();
        return;
    }
    EditorLink link;
    link.setMainPicture = [this](const QImage &img) {
        PicturesModule *pm = pictures();
        if (!pm) return;
        pm->Image1->setImage(img, img.hasAlphaChannel() ? 32 : 24);
        pm->ResetPicture();
    };
    link.setPictureChanged = [this](bool changed) {
        if (PicturesModule *pm = pictures()) pm->PictureChanged = changed;
    };
    link.setToolState = [this, id](bool on) {
        SuppressTools quiet;
        host_.tools().setChecked(id, on);
    };
    link.showHelp = [this](const QString &topic) { host_.showHelpTopic(topic); };
    PictureEditor *ed = nullptr;
    if (colours) ed = colourEditor = new ColourEditor(link, host_.window());
    else ed = effectsEditor = new EffectsEditor(link, host_.window());
    ed->EditFile = G.EditedFile;
    ed->HeadingLabel->setText(QStringLiteral("  Image: ") + ed->EditFile);
    ed->LoadEditorImages(ed->EditFile);
    ed->EditChanged = false;
    ed->resize(900, 700);
    ed->show();
}

void PictureEditorCommands::OpenPrintWindow(const QString &file)
{
    if (printWindow) {
        printWindow->raise();
        printWindow->activateWindow();
        return;
    }
    printWindow = new PrintPicture(file, host_.window());
    printWindow->show();
    printWindow->activateWindow();
}

void PictureEditorCommands::SetUpPrinter() { printing::pageSetup(host_.window()); }

TW_REGISTER_COMMANDS(PictureEditorCommands);

}  // namespace tw
