// The selection list window (Select1, "Select Files to View or Play"): a free list of files
// gathered in this session (every file shown comes in too) and dropped on it from the
// thumbnails, the favorite browser or another program; from it a file is viewed, the lot is
// added to the current slide show, or the favorite browser opens.
#pragma once

#include <QListWidget>
#include <QWidget>
#include <functional>

class QFrame;
class QPushButton;

namespace tw {

class Select1 : public QWidget {
    Q_OBJECT
public:
    explicit Select1(QWidget *parent);
    ~Select1() override;
    QListWidget *List1 = nullptr;
    QFrame *Frame1 = nullptr;
    QString FolderPattern;

    std::function<void(const QString &)> displayFile;
    std::function<void(const QString &)> addToSlideShow;
    std::function<void()> openFavorites;
    std::function<void()> clearHistory;  // the main window's list of files seen

    void okBtn();
    void deleteBtn();
    void clearBtn();
    void slideShowBtn();
    // Files from another program, on the list or the frame alike.
    void dropFiles(const QStringList &paths);
    void AddFolderFiles(const QString &folder);
    // One of the program's own drags dropped on the list.
    void dropInternal(const QString &tag, const QStringList &files);

protected:
    void showEvent(QShowEvent *e) override;
    void hideEvent(QHideEvent *e) override;
    void closeEvent(QCloseEvent *e) override;
    bool eventFilter(QObject *o, QEvent *e) override;

signals:
    void closed();
};

}  // namespace tw
