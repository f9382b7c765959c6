// The favorite list editor (SetFavList1): a file browser on the left, the entries of the list
// in the middle, the list names on the right; and SetFavNew1, which asks a new list's name.
#pragma once

#include <QDialog>
#include <QListWidget>
#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tw {

class ShellList;

class SetFavNew1 : public QDialog {
    Q_OBJECT
public:
    explicit SetFavNew1(QWidget *parent);
    QString NewFavListName;
    bool NewFavListCancelled = false;
    QLineEdit *Text1 = nullptr;

private:
    void ok();
};

// The entries list: takes files dropped from another program.
class FavEntryList : public QListWidget {
    Q_OBJECT
public:
    explicit FavEntryList(QWidget *parent);
    std::function<void(const QStringList &)> onFilesDropped;

protected:
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QList<QListWidgetItem *> &items) const override;
    void dragEnterEvent(QDragEnterEvent *e) override;
    void dragMoveEvent(QDragMoveEvent *e) override;
    void dropEvent(QDropEvent *e) override;
};

class SetFavList1 : public QDialog {
    Q_OBJECT
public:
    // Folder: the main file list's folder the browser opens on ("" for a restricted start).
    SetFavList1(QWidget *parent, const QString &folder);
    ~SetFavList1() override;

    QString CurrentFavListPath;
    bool FavListDirty = false;

    ShellList *PTxShList1 = nullptr;
    QComboBox *CMBFILTER = nullptr;
    FavEntryList *List1 = nullptr;
    QListWidget *List2 = nullptr;

    // The routines behind the buttons, public for the drops and tests.
    void rightBtn();
    void leftBtn();
    void moveRow(int delta);
    void allBtn();
    void newBtn();
    void deleteBtn();
    void okBtn();
    void filterChosen(int row);
    void listNameClicked();
    void dropFiles(const QStringList &paths);
    void ListFavListNames();

private:
    QString FavFilterPatterns[41];
    QString multimediaPattern_;
};

}  // namespace tw
