// The commands of the favorite lists and the selection list: the editor, the favorite
// browser, the selection window, and the session's list of files shown.
#pragma once

#include "core/tab_page.h"

#include <QObject>
#include <QPointer>

namespace tw {

class Select1;
class SelFavorites1;

class FavoriteCommands : public QObject, public CommandSet {
    Q_OBJECT
public:
    explicit FavoriteCommands(PageHost &host);
    ~FavoriteCommands() override;
    QStringList handledTools() const override;
    bool toolClick(const QString &id) override;
    void shutDown() override;
    void fileDisplayed(const QString &path) override;
    void applyColors() override;

    void showEditor();
    void showBrowser();
    void showSelection();

private:
    Select1 *selection();  // made on first need, hidden
    QPointer<Select1> select_;
    QPointer<SelFavorites1> browser_;
};

}  // namespace tw
