// The picture editors and the print window as commands of the main window: Edit Image, Edit
// Colors, Print Image (each after the save question), Print Files, Print and Set Up Printer.
#pragma once

#include "core/tab_page.h"

#include <QObject>
#include <QPointer>

namespace tw {

class PicturesModule;
class ColourEditor;
class EffectsEditor;
class PrintPicture;

class PictureEditorCommands : public QObject, public CommandSet {
    Q_OBJECT
public:
    explicit PictureEditorCommands(PageHost &host);
    ~PictureEditorCommands() override;
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    void shutDown() override;

    // The editor of `id` (tool::EditColors or tool::EditImage) for G.EditedFile, or the open
    // one brought forward.
    void OpenEditor(const QString &id);
    // The print window for `file`, or the open one brought forward.
    void OpenPrintWindow(const QString &file);
    void SetUpPrinter();

    QPointer<ColourEditor> colourEditor;
    QPointer<EffectsEditor> effectsEditor;
    QPointer<PrintPicture> printWindow;

private:
    PicturesModule *pictures() const;
};

}  // namespace tw
