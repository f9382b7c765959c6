// The picture tab's side of the main window: Image1 and Image2, the picture loader, the
// view modes, zoom, magnifier, pan and the picture commands.
#pragma once

#include <QObject>
#include <QString>

class QFrame;

namespace tw {

class Tarnwick1;
class ImagingControl;

class PicturesModule : public QObject {
    Q_OBJECT
public:
    // Creates Image1 (shown) and Image2 (the untouched copy, hidden) in the picture panel.
    PicturesModule(Tarnwick1 &w, QFrame *pictureFrame);
    ~PicturesModule() override;

    void LoadImage(const QString &path);
    void ResetPicture();
    void ResizeImage();
    // Tools this module owns; true when the identifier was one of them.
    bool onToolClick(const QString &id);
    // Entering the Pictures tab: show or hide Image1, finish a pending remote picture.
    void onEnterPicturesTab();
    // A pasted or acquired picture is on show without a file.
    bool pictureWithoutFile() const;
    // The identifiers of the tools this module makes work.
    static QStringList ownedTools();
    void applyColors();

    ImagingControl *Image1 = nullptr;
    ImagingControl *Image2 = nullptr;

private:
    Tarnwick1 &w_;
};

}  // namespace tw
