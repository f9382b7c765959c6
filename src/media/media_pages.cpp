#include "media/media_pages.h"

#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/globals.h"
#include "core/looks.h"
#include "core/text_rules.h"
#include "core/tool_ids.h"
#include "core/tool_manager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace tw {

PlayListPage::PlayListPage(PageHost &host, const Kind &kind) : TabPage(host, kind.tab), kind_(kind)
{
    setObjectName(kind.video ? QStringLiteral("VideosPage") : QStringLiteral("MusicPage"));
}

QString PlayListPage::folderPath() const { return G.ProgramDir + QLatin1String(kind_.folder); }
bool &PlayListPage::listChanged() const { return kind_.video ? G.VideoListChanged : G.MusicListChanged; }
QString &PlayListPage::listName() const { return kind_.video ? G.VideoListName : G.MusicListName; }

QStringList PlayListPage::playListNames(const QString &folder)
{
    QDir d(folder);
    if (!d.exists() && !QDir().mkpath(folder)) return {};  // the list stays empty
    QStringList names;
    for (const QFileInfo &fi : d.entryInfoList(QDir::Files | QDir::Hidden, QDir::Name | QDir::IgnoreCase)) {
        if (!matchesPatternList(fi.fileName(), QStringLiteral("*.PLST"))) continue;
        const QString f = fi.fileName();
        const int dot = f.lastIndexOf(u'.');
        names << (dot > 0 ? f.left(dot) : f);
    }
    return names;
}

QString PlayListPage::playListFile(const QString &name, const QString &folder)
{
    const QString base = name.startsWith(u'/') ? name : folder + name;
    return base + QStringLiteral(".PLST");
}

void PlayListPage::startUp()
{
    // 14.-15. The play-list folder is listed now; the boxes fill when the tab is first made.
    names_ = playListNames(folderPath());
    if (!names_.isEmpty()) {
        ListPath = names_.first();
        listName() = folderPath() + names_.first();
    }
}

void PlayListPage::build(QWidget *panel)
{
    auto *lay = new QHBoxLayout(panel);
    auto *frame = new QFrame(panel);
    frame->setObjectName(QLatin1String(kind_.frameName));
    frame->setFrameShape(QFrame::StyledPanel);
    setHelpTopic(panel, QStringLiteral("players"));
    auto *fl = new QVBoxLayout(frame);
    auto *h = new QLabel(QLatin1String(kind_.hint), frame);
    h->setWordWrap(true);
    fl->addWidget(h);
    for (int i = 0; i < 2; ++i) {
        Lists[i] = new QListWidget(frame);
        Lists[i]->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(kind_.listName)).arg(i));
        fl->addWidget(Lists[i], i == 0 ? 1 : 3);
    }
    lay->addWidget(frame, 1);
    screen_ = new QFrame(panel);
    screen_->setObjectName(QLatin1String(kind_.screenName));
    screen_->setFrameShape(QFrame::StyledPanel);
    screen_->setAutoFillBackground(true);
    auto *sl = new QVBoxLayout(screen_);
    const QStringList labels = kind_.video
        ? QStringList{QStringLiteral("VideoLabel1")}
        : QStringList{QStringLiteral("Label3"), QStringLiteral("MusicLabel1")};
    for (const QString &name : labels) {
        auto *lab = new QLabel(screen_);
        lab->setObjectName(name);
        lab->setAlignment(Qt::AlignCenter);
        sl->addWidget(lab);
    }
    lay->addWidget(screen_, 3);

    // A click on a list's name shows its entries.
    connect(Lists[0], &QListWidget::currentRowChanged, this, [this](int row) {
        if (row < 0) return;
        const QString path = folderPath() + Lists[0]->item(row)->text();
        loadPlayList(path + QStringLiteral(".PLST"));
        ListPath = path;
        listName() = path;
    });
    // The first list shows as it did at start: a change marked since stays marked.
    const bool changed = listChanged();
    for (const QString &n : names_) Lists[0]->addItem(n);
    if (Lists[0]->count() > 0) Lists[0]->setCurrentRow(0);
    listChanged() = changed;
}

bool PlayListPage::loadPlayList(const QString &file)
{
    QFile f(file);
    if (f.open(QIODevice::ReadOnly)) {
        Lists[1]->clear();
        DelimitedReader in(f.readAll());
        while (auto v = in.readString()) Lists[1]->addItem(*v);
    }
    listChanged() = false;
    return true;
}

bool PlayListPage::savePlayList(const QString &file)
{
    QFile f(file);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        for (int i = 0; i < Lists[1]->count(); ++i) f.write(pathToBytes(Lists[1]->item(i)->text()) + "\r\n");
    }
    listChanged() = false;
    return true;
}

void PlayListPage::entering()
{
    ToolManager &t = host_.tools();
    G.CurrentPlayer = kind_.video ? QStringLiteral("0") : QStringLiteral("1");
    t.setCaption(tool::StopVideo, kind_.video ? QStringLiteral("Stop Video") : QStringLiteral("Stop Music"));
    t.setCaption(tool::PlayBtn, kind_.video ? QStringLiteral("Play Video") : QStringLiteral("Play Music"));
    t.setToolbarVisible(4, true);
}

QString PlayListPage::tabTitle() const { return PlayerName + QStringLiteral(" - ") + AppTitle; }

void PlayListPage::tabChanging()
{
    // Play lists are stored at every tab change, whichever tab is left or entered.
    if (!listChanged()) return;
    ensureBuilt();
    savePlayList(playListFile(listName(), folderPath()));
}

void PlayListPage::applyColors()
{
    if (!built()) return;
    const ColorSettings &c = G.Colors;
    for (QListWidget *l : Lists) paintWidget(l, c.ListBack, c.ListText);
    if (kind_.video) paintWidget(screen_, c.VideoBack, c.VideoText);
    else paintWidget(screen_, c.MusicBack, c.MusicText);
}

void PlayListPage::fileCommandsChanged(bool on)
{
    // The list toggle follows the file commands while there is a video play list.
    if (kind_.video && built() && Lists[0]->count() >= 1) host_.tools().setEnabled(tool::ListToggle, on);
}

bool PlayListPage::variableText(const QString &name, QString *out) const
{
    if (name == (kind_.video ? QLatin1String("VideoListPath") : QLatin1String("MusicListPath"))) {
        *out = ListPath;
        return true;
    }
    return false;
}

namespace {
const PlayListPage::Kind kVideos{3,
                                 true,
                                 "List4",
                                 "VideoPlayListFrame",
                                 "VideoFrame",
                                 "Click Play List or Double Click Video File to Play",
                                 "/VideoPlayList/"};
const PlayListPage::Kind kMusic{4,
                                false,
                                "List5",
                                "MusicPlayListFrame",
                                "MusicFrame",
                                "Click Play List to Display Music Files or Double Click Music File to Play",
                                "/MusicPlayList/"};
}  // namespace

VideosPage::VideosPage(PageHost &host) : PlayListPage(host, kVideos) {}
MusicPage::MusicPage(PageHost &host) : PlayListPage(host, kMusic) {}

TW_REGISTER_PAGE(3, VideosPage);
TW_REGISTER_PAGE(4, MusicPage);

}  // namespace tw
