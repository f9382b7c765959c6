// The Videos and Music tabs: each a pair of play-list boxes (the names of the lists and the
// entries of the selected one) beside the player's screen. The two pages differ only in
// their folder, their names and the player they stand for.
#pragma once

#include "core/tab_page.h"

#include <QObject>
#include <QStringList>

class QFrame;
class QLabel;

namespace tw {

class PlayListPage : public QObject, public TabPage {
    Q_OBJECT
public:
    struct Kind {
        int tab;
        bool video;
        const char *listName;  // "List4" or "List5"
        const char *frameName;  // the frame around the two boxes
        const char *screenName;  // the player's screen
        const char *hint;  // the caption above the boxes
        const char *folder;  // under the program folder
    };
    PlayListPage(PageHost &host, const Kind &kind);

    void startUp() override;
    void entering() override;
    QString tabTitle() const override;
    void tabChanging() override;
    void applyColors() override;
    void fileCommandsChanged(bool on) override;
    QStringList handledTools() const override { return {}; }
    bool variableText(const QString &name, QString *out) const override;

    // The play-list files of the folder, names without ".PLST", in name order.
    static QStringList playListNames(const QString &folder);
    // A play list into the entries box, and the entries box back into its file.
    bool loadPlayList(const QString &file);
    bool savePlayList(const QString &file);
    // The file of a list name: a bare name lies in the folder.
    static QString playListFile(const QString &name, const QString &folder);

    QListWidget *Lists[2] = {};  // names, entries
    QString ListPath;  // VideoListPath / MusicListPath
    QString PlayerName;  // the name in the player (MediaPlayer1 / MediaPlayer2)

protected:
    void build(QWidget *panel) override;

private:
    QString folderPath() const;
    bool &listChanged() const;
    QString &listName() const;
    Kind kind_;
    QStringList names_;
    QFrame *screen_ = nullptr;
};

class VideosPage : public PlayListPage {
public:
    explicit VideosPage(PageHost &host);
};

class MusicPage : public PlayListPage {
public:
    explicit MusicPage(PageHost &host);
};

}  // namespace tw
