#include "core/file_icons.h"

#include <QPixmap>
#include <QWidget>

namespace tw {

FileIcons &FileIcons::gate()
{
    static FileIcons *g = new FileIcons;
    return *g;
}

void FileIcons::holdFor(QWidget *window)
{
    window_ = window;
    held_ = true;
}

void FileIcons::release()
{
    if (!held_) return;
    held_ = false;
    window_.clear();
    emit becameReady();
}

bool FileIcons::ready() const
{
    // A window that is not on screen paints nothing: whoever asks wants the icon now.
    return !held_ || !window_ || !window_->isVisible();
}

QIcon FileIcons::placeholder()
{
    static const QIcon blank = [] {
        // Large, so that the view's icon size is what it is scaled to.
        QPixmap p(256, 256);
        p.fill(Qt::transparent);
        return QIcon(p);
    }();
    return blank;
}

}  // namespace tw
