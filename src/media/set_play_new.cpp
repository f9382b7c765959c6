#include "media/set_play_new.h"

#include "core/context_help.h"
#include "core/globals.h"
#include "core/prompt.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

SetPlayNew1::SetPlayNew1(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("SetPlayNew1"));
    setWindowTitle(QStringLiteral("Create New Play List"));
    setHelpTopic(this, QStringLiteral("players"));
    auto *lay = new QVBoxLayout(this);
    auto *label = new QLabel(QStringLiteral("Enter New Play List Name"), this);
    label->setObjectName(QStringLiteral("Label1"));
    lay->addWidget(label);
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    lay->addWidget(Text1);
    auto *row = new QHBoxLayout;
    OKBtn = new QPushButton(QStringLiteral("OK"), this);
    OKBtn->setObjectName(QStringLiteral("OKBtn"));
    OKBtn->setDefault(true);
    CancelBtn = new QPushButton(QStringLiteral("Cancel"), this);
    CancelBtn->setObjectName(QStringLiteral("CancelBtn"));
    row->addStretch(1);
    row->addWidget(OKBtn);
    row->addWidget(CancelBtn);
    lay->addLayout(row);
    connect(OKBtn, &QPushButton::clicked, this, &SetPlayNew1::OKBtnClick);
    connect(CancelBtn, &QPushButton::clicked, this, &SetPlayNew1::CancelBtnClick);
    // On load: no name, not cancelled.
    NewPlayListName.clear();
    NewPlayListCancelled = false;
}

void SetPlayNew1::OKBtnClick()
{
    if (Text1->text().trimmed().isEmpty()) {
        inform(QStringLiteral("You must Enter the Name for the New Play List of Music or Multimedia Files"),
               AppTitle, this);
        Text1->setFocus();
        return;
    }
    NewPlayListName = Text1->text();
    accept();
}

void SetPlayNew1::CancelBtnClick()
{
    NewPlayListCancelled = true;
    reject();
}

}  // namespace tw
