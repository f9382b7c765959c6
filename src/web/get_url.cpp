#include "web/get_url.h"

#include "core/context_help.h"
#include "core/globals.h"
#include "core/scenario_hooks.h"
#include "core/tool_ids.h"
#include "web/url_file.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPushButton>

namespace tw {

GetURL1::GetURL1(PageHost &host, QWidget *parent) : QDialog(parent), host_(host)
{
    setObjectName(QStringLiteral("GetURL1"));
    setWindowTitle(QStringLiteral("Open File located on the Internet"));
    setHelpTopic(this, QStringLiteral("internet"));
    auto *g = new QGridLayout(this);
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    auto button = [this](const char *name, const char *caption) {
        auto *b = new QPushButton(QString::fromLatin1(caption), this);
        b->setObjectName(QString::fromLatin1(name));
        b->setAutoDefault(false);
        return b;
    };
    OpenBtn = button("OpenBtn", "Open");
    UpBtn = button("UpBtn", "Up");
    DownBtn = button("DownBtn", "Down");
    DeleteBtn = button("DeleteBtn", "Delete");
    HelpBtn = button("HelpBtn", "Help");
    ExitBtn = button("ExitBtn", "Exit");
    // Enter in the address or on the window opens.
    OpenBtn->setDefault(true);
    g->addWidget(Text1, 0, 0, 1, 2);
    g->addWidget(List1, 1, 0, 6, 1);
    g->addWidget(OpenBtn, 1, 1);
    g->addWidget(UpBtn, 2, 1);
    g->addWidget(DownBtn, 3, 1);
    g->addWidget(DeleteBtn, 4, 1);
    g->addWidget(HelpBtn, 5, 1);
    g->addWidget(ExitBtn, 6, 1);
    resize(520, 300);

    LoadPictList();
    connect(List1, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0) Text1->setText(List1->item(row)->text());
    });
    connect(List1, &QListWidget::itemClicked, this,
            [this](QListWidgetItem *it) { Text1->setText(it->text()); });
    connect(List1, &QListWidget::itemDoubleClicked, this, [this] { open_(); });
    connect(OpenBtn, &QPushButton::clicked, this, [this] { open_(); });
    connect(UpBtn, &QPushButton::clicked, this, [this] { moveRow(-1); });
    connect(DownBtn, &QPushButton::clicked, this, [this] { moveRow(+1); });
    connect(DeleteBtn, &QPushButton::clicked, this, [this] { deleteRow(); });
    connect(HelpBtn, &QPushButton::clicked, this,
            [this] { host_.showHelpTopic(QStringLiteral("internet")); });
    connect(ExitBtn, &QPushButton::clicked, this, [this] { close(); });
    if (List1->count() > 0) List1->setCurrentRow(0);
    G.GetURL1Loaded = true;
}

GetURL1::~GetURL1() { unload(); }

QString GetURL1::pictListPath() { return G.ProgramDir + QStringLiteral("/PictList.INI"); }

bool GetURL1::LoadPictList()
{
    // A missing or unreadable file leaves the list empty.
    List1->addItems(readPictList(pictListPath()));
    return true;
}

bool GetURL1::SavePictList()
{
    QStringList rows;
    for (int i = 0; i < List1->count(); ++i) rows << List1->item(i)->text();
    writePictList(pictListPath(), rows);
    return true;
}

void GetURL1::open_()
{
    const QString address = Text1->text();
    G.SelectedFile = address;
    // The picture loader treats the next file as an address to fetch.
    G.FromInternet = true;
    host_.DisplayFile(address);
    const QString key = address.trimmed();
    bool found = false;
    for (int i = 0; i < List1->count() && !found; ++i) found = List1->item(i)->text().trimmed() == key;
    if (!found) List1->addItem(address);
    close();
}

void GetURL1::moveRow(int step)
{
    const int row = List1->currentRow();
    const int other = row + step;
    if (row < 0 || other < 0 || other >= List1->count()) return;
    const QString a = List1->item(row)->text();
    List1->item(row)->setText(List1->item(other)->text());
    List1->item(other)->setText(a);
    List1->setCurrentRow(other);
}

void GetURL1::deleteRow()
{
    const int row = List1->currentRow();
    if (row < 0) return;
    delete List1->takeItem(row);
    if (List1->count() > 0) List1->setCurrentRow(qMin(row, List1->count() - 1));
}

bool GetURL1::removeAddress(const QString &address)
{
    const QString key = address.trimmed();
    for (int i = 0; i < List1->count(); ++i) {
        if (List1->item(i)->text().trimmed() == key) {
            delete List1->takeItem(i);
            return true;
        }
    }
    return false;
}

void GetURL1::unload()
{
    if (unloaded_) return;
    unloaded_ = true;
    // The file is rewritten only here: it holds the list as it stood at closing.
    SavePictList();
    G.GetURL1Loaded = false;
}

void GetURL1::closeEvent(QCloseEvent *e)
{
    unload();
    QDialog::closeEvent(e);
    deleteLater();
}

void GetURL1::done(int r)
{
    QDialog::done(r);
    if (!unloaded_) close();
}

// ---------------------------------------------------------------- the command

RemoteFileCommands::~RemoteFileCommands() { delete win_.data(); }

QStringList RemoteFileCommands::handledTools() const { return {tool::mnuOpenFilelnterent}; }

bool RemoteFileCommands::toolClick(const QString &id)
{
    if (id != tool::mnuOpenFilelnterent) return false;
    if (!openWindow()) win_ = new GetURL1(host_, host_.window());
    win_->show();
    win_->raise();
    win_->activateWindow();
    return true;
}

void RemoteFileCommands::startUp()
{
    if (PictureSide *p = host_.pictures())
        p->setRemoveRemoteAddress([this](const QString &address) { RemoveRemoteAddress(address); });
    registerScenarioRoutine(QStringLiteral("RemoveRemoteAddress"), [this](const QStringList &a) {
        RemoveRemoteAddress(a.value(0));
        return QString();
    });
}

void RemoteFileCommands::shutDown() { delete win_.data(); }

void RemoteFileCommands::RemoveRemoteAddress(const QString &address)
{
    // The list is loaded for the removal when it is not open, and unloaded again after.
    GetURL1 *open = openWindow();
    const bool loadedHere = !open;
    GetURL1 *w = open ? open : new GetURL1(host_, host_.window());
    w->removeAddress(address);
    if (loadedHere) delete w;
}

TW_REGISTER_COMMANDS(RemoteFileCommands);

}  // namespace tw
