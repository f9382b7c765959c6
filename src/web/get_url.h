// GetURL1, "Open File located on the Internet": the list of addresses of files on the
// Internet kept in PictList.INI, opened one at a time through the dispatcher.
#pragma once

#include "core/tab_page.h"

#include <QDialog>
#include <QPointer>
#include <QString>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace tw {

class GetURL1 : public QDialog {
    Q_OBJECT
public:
    GetURL1(PageHost &host, QWidget *parent);
    ~GetURL1() override;

    static QString pictListPath();
    bool LoadPictList();
    bool SavePictList();
    void open_();  // OpenBtn
    void moveRow(int step);
    void deleteRow();
    // Removes the first row that, trimmed, equals Address trimmed; false when none does.
    bool removeAddress(const QString &address);
    // True once the window has closed and written its list (it goes a moment later).
    bool unloaded() const { return unloaded_; }

    QLineEdit *Text1 = nullptr;
    QListWidget *List1 = nullptr;
    QPushButton *OpenBtn = nullptr, *UpBtn = nullptr, *DownBtn = nullptr, *DeleteBtn = nullptr,
                *HelpBtn = nullptr, *ExitBtn = nullptr;

protected:
    void closeEvent(QCloseEvent *e) override;
    void done(int r) override;

private:
    void unload();
    PageHost &host_;
    bool unloaded_ = false;
};

// The main command that shows GetURL1, and the picture side's removal of an address that
// was never found.
class RemoteFileCommands : public CommandSet {
public:
    explicit RemoteFileCommands(PageHost &host) : CommandSet(host) {}
    ~RemoteFileCommands() override;
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    void startUp() override;
    void shutDown() override;
    void RemoveRemoteAddress(const QString &address);

private:
    // The window while it is open; null once it has closed.
    GetURL1 *openWindow() const { return win_ && !win_->unloaded() ? win_.data() : nullptr; }
    QPointer<GetURL1> win_;
};

}  // namespace tw
