#include "dialogs/rename_dialog.h"

#include "core/catalogue.h"
#include "core/context_help.h"
#include "core/errors.h"
#include "core/file_copy.h"
#include "core/globals.h"
#include "core/prompt.h"

#include <QApplication>
#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

Rename1::Rename1(QWidget *parent, std::function<void()> refresh)
    : QDialog(parent), refresh_(std::move(refresh))
{
    setObjectName(QStringLiteral("Rename1"));
    setWindowTitle(QStringLiteral("Rename Image File"));
    setHelpTopic(this, QStringLiteral("finding"));
    auto *outer = new QVBoxLayout(this);
    auto *grid = new QGridLayout;
    Label1[0] = new QLabel(QStringLiteral("File Selected to Rename:"), this);
    Label1[1] = new QLabel(QStringLiteral("Name of New File:"), this);
    Label1[2] = new QLabel(this);
    for (int i = 0; i < 3; ++i) Label1[i]->setObjectName(QStringLiteral("Label1_%1").arg(i));
    Text1[0] = new QLineEdit(this);
    Text1[0]->setObjectName(QStringLiteral("Text1_0"));
    Text1[0]->setToolTip(QStringLiteral("Name of the File that will be Renamed"));
    Text1[1] = new QLineEdit(this);
    Text1[1]->setObjectName(QStringLiteral("Text1_1"));
    Text1[1]->setToolTip(QStringLiteral("New Name of the File - No need to enter the File Extension"));
    grid->addWidget(Label1[2], 0, 0, 1, 2);
    grid->addWidget(Label1[0], 1, 0);
    grid->addWidget(Text1[0], 1, 1);
    grid->addWidget(Label1[1], 2, 0);
    grid->addWidget(Text1[1], 2, 1);
    outer->addLayout(grid);
    auto *buttons = new QHBoxLayout;
    OKBtn = new QPushButton(QStringLiteral("OK"), this);
    OKBtn->setObjectName(QStringLiteral("OKBtn"));
    CancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
    CancelBtn->setObjectName(QStringLiteral("CancelBtn"));
    CancelBtn->setToolTip(QStringLiteral("Close the Rename File Window"));
    HelpBtn = new QPushButton(QStringLiteral("Help"), this);
    HelpBtn->setObjectName(QStringLiteral("HelpBtn"));
    HelpBtn->setToolTip(QStringLiteral("Help with Rename File Window"));
    for (QPushButton *b : {OKBtn, CancelBtn, HelpBtn}) {
        b->setAutoDefault(false);
        buttons->addWidget(b);
    }
    outer->addLayout(buttons);
    connect(OKBtn, &QPushButton::clicked, this, &Rename1::OKBtn_Click);
    connect(CancelBtn, &QPushButton::clicked, this, &QDialog::reject);
    connect(HelpBtn, &QPushButton::clicked, this, [this] {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
        QApplication::sendEvent(HelpBtn, &press);
    });

    // On load: the path, the name behind its last separator (locked), the focus on the new name.
    Label1[2]->setText(G.SelectedFile);
    Text1[0]->setText(G.SelectedFile.mid(G.SelectedFile.lastIndexOf(u'/') + 1));
    Text1[0]->setReadOnly(true);
    Text1[1]->setFocus();
}

void Rename1::keyPressEvent(QKeyEvent *e)
{
    // Enter anywhere in the dialog renames; Escape cancels as in any dialog.
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        OKBtn_Click();
        return;
    }
    QDialog::keyPressEvent(e);
}

void Rename1::OKBtn_Click()
{
    // 1.
    if (Text1[1]->text().trimmed().isEmpty()) {
        inform(QStringLiteral("You must Enter a New Name for the File"), AppTitle, this);
        Text1[1]->setFocus();
        return;
    }
    // 2..3 The folder and the extension stay; the typed text is used as it stands.
    const QString old = Label1[2]->text();
    const QString ext = GetFileExt(old);
    // The extension as the file has it (its own case), when GetFileExt finds one.
    const QString ownExt = ext.isEmpty() ? QString() : old.mid(old.lastIndexOf(u'.') + 1);
    const QString folder = old.left(old.lastIndexOf(u'/') + 1);
    const QString fresh = folder + Text1[1]->text() + u'.' + ownExt;
    // 4..5
    std::error_code ec;
    const CopyResult r = copyFileNoReplace(old, fresh, &ec);
    if (r == CopyResult::Failed) {
        const int number = errorNumberFromStd(ec);
        if (number == ErrFileNotFound)
            inform(QStringLiteral("File: ") + old
                       + QStringLiteral(" not Found - Use Save as to Recreate File"),
                   AppTitle, this);
        else
            inform(QStringLiteral("Error: ") + QString::number(number) + QStringLiteral(" - ")
                       + errorDescription(number),
                   AppTitle, this);
        reject();
        return;
    }
    if (r == CopyResult::Copied) {
        // The copy is whole: now the old file goes. A failed delete leaves both.
        QFile::remove(old);
    } else {
        inform(QStringLiteral("File already exists - Cannot use this new File Name"), AppTitle, this);
    }
    // 6..8
    if (refresh_) refresh_();
    inform(QStringLiteral("File Rename Successful"), AppTitle, this);
    accept();
}

}  // namespace tw
