// File icons held back until the main window is on screen. The first icon asked of the
// desktop's icon theme makes Qt read the theme's index and every size of the icon, which
// costs more than the rest of the window's start. While the window is shown but not yet
// painted, the file list and the folder tree draw a blank of the icon's size; once it has
// painted they are told to draw again, now with the icons.
#pragma once

#include <QIcon>
#include <QObject>
#include <QPointer>

class QWidget;

namespace tw {

class FileIcons : public QObject {
    Q_OBJECT
public:
    static FileIcons &gate();

    // Icons wait while Window is visible and has not painted yet.
    void holdFor(QWidget *window);
    // The window has painted: icons may be read from now on (becameReady follows).
    void release();
    // Whether an icon may be read of the theme now.
    bool ready() const;
    // What to draw meanwhile: transparent, of any size asked.
    static QIcon placeholder();

signals:
    // Views that drew placeholders draw again.
    void becameReady();

private:
    QPointer<QWidget> window_;
    bool held_ = false;
};

}  // namespace tw
