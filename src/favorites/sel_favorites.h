// The favorite list browser (SelFavorites1): the list names, the entries of the chosen list,
// a preview of the highlighted picture. Its two lists are the sources of the drags
// "SelList1" (one entry) and "SelList2" (the whole open list).
#pragma once

#include <QWidget>
#include <functional>

class QFrame;
class QLabel;
class QListWidget;
class QMimeData;
class QPushButton;

namespace tw {

// A press turns into a drag only when the mouse moves more than this long after it.
inline constexpr double FavDragDelaySeconds = 0.35;
bool favDragDue(bool armed, double pressTime, double now);

class SelFavorites1 : public QWidget {
    Q_OBJECT
public:
    explicit SelFavorites1(QWidget *parent);
    ~SelFavorites1() override;

    QListWidget *List1 = nullptr;  // entries, tag "SelList1"
    QListWidget *List2 = nullptr;  // names, tag "SelList2"
    QLabel *Image1 = nullptr;
    QFrame *Frame1 = nullptr;  // the panel under the two lists and the preview

    // What the window does with a row: shows it, puts the browser of a folder on it, or hands
    // rows to the selection list and the slide show. Set by the command set that opens it.
    std::function<void(const QString &)> displayFile;
    std::function<void(const QString &)> pointFileList;  // the main or the builder's list
    std::function<QListWidget *()> selectionList;  // Select1.List1, while it is up
    std::function<void(const QString &)> addToSlideShow;

    void listNameClicked();
    void entryClicked();
    void okBtn();
    void namesDoubleClicked();
    // The drag of a list as it leaves it: the tag and the files.
    QMimeData *dragData(QListWidget *from) const;
    // After a drop of an entry elsewhere, the browser shows the row that went (the play lists'
    // refresh with the code 2).
    void refresh(int code);

protected:
    bool eventFilter(QObject *o, QEvent *e) override;
    void closeEvent(QCloseEvent *e) override;

public:
    // Whether a press on List1 (0) or List2 (1) has armed its drag.
    bool dragArmed(int list) const { return FavDragArmed[list == 0 ? 0 : 1]; }

private:
    bool FavDragArmed[2] = {false, false};
    double FavDragTime[2] = {0, 0};
    bool FavLoading = false;
};

}  // namespace tw
