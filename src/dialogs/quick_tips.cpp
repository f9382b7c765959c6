#include "dialogs/quick_tips.h"

#include "core/context_help.h"
#include "core/globals.h"
#include "core/prompt.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QVBoxLayout>

namespace tw {

QStringList readTipLines(const QByteArray &bytes)
{
    QStringList out;
    qsizetype start = 0;
    const qsizetype n = bytes.size();
    while (start < n) {
        qsizetype end = start;
        while (end < n && bytes[end] != '\r' && bytes[end] != '\n') ++end;
        out << QString::fromLatin1(bytes.constData() + start, end - start);
        // CR LF, or a lone CR or LF, ends the line.
        if (end < n && bytes[end] == '\r') {
            ++end;
            if (end < n && bytes[end] == '\n') ++end;
        } else if (end < n) {
            ++end;
        }
        start = end;
    }
    return out;
}

QuikTip1::QuikTip1(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("QuikTip1"));
    setWindowTitle(QStringLiteral("Quick Tips"));
    setAttribute(Qt::WA_DeleteOnClose);
    setHelpTopic(this, QStringLiteral("index"));
    auto *outer = new QVBoxLayout(this);
    auto *heading = new QLabel(QStringLiteral("Did you know..."), this);
    heading->setObjectName(QStringLiteral("Label1"));
    outer->addWidget(heading);
    lblTipText = new QLabel(this);
    lblTipText->setObjectName(QStringLiteral("lblTipText"));
    lblTipText->setWordWrap(true);
    lblTipText->setMinimumSize(360, 100);
    lblTipText->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblTipText->setFrameShape(QFrame::StyledPanel);
    outer->addWidget(lblTipText, 1);
    chkLoadTipsAtStartup = new QCheckBox(QStringLiteral("&Show Tips at Startup"), this);
    chkLoadTipsAtStartup->setObjectName(QStringLiteral("chkLoadTipsAtStartup"));
    auto *row = new QHBoxLayout;
    row->addWidget(chkLoadTipsAtStartup);
    row->addStretch();
    NextTipBtn = new QPushButton(QStringLiteral("&Next Tip"), this);
    NextTipBtn->setObjectName(QStringLiteral("NextTipBtn"));
    OKBtn = new QPushButton(QStringLiteral("OK"), this);
    OKBtn->setObjectName(QStringLiteral("OKBtn"));
    for (QPushButton *b : {NextTipBtn, OKBtn}) {
        b->setAutoDefault(false);
        row->addWidget(b);
    }
    outer->addLayout(row);
    connect(OKBtn, &QPushButton::clicked, this, &QuikTip1::OKBtn_Click);
    connect(NextTipBtn, &QPushButton::clicked, this, &QuikTip1::DoNextTip);

    // Load.
    G.QuickTipsOpen = true;
    chkLoadTipsAtStartup->setChecked(G.Options.ShowQuickTips);
    if (!LoadTips(G.ProgramDir + QStringLiteral("/TIPHELP.TXT")))
        lblTipText->setText(QStringLiteral("That the ") + QStringLiteral("TIPHELP.TXT")
                            + QStringLiteral(" file was not found? ") + QStringLiteral("\r\n")
                            + QStringLiteral("Create a text file named ") + QStringLiteral("TIPHELP.TXT")
                            + QStringLiteral(" using NotePad with 1 tip per line. ")
                            + QStringLiteral("Then place it in the same directory as the application. "));
}

QuikTip1::~QuikTip1() { G.QuickTipsOpen = false; }

bool QuikTip1::LoadTips(const QString &path)
{
    if (path.isEmpty()) {
        inform(QStringLiteral("         Error Loading Quick Tips File"), AppTitle, parentWidget());
        return false;
    }
    QFile f(path);
    if (!QFileInfo(path).isFile() || !f.open(QIODevice::ReadOnly)) {
        inform(QStringLiteral("       Error Loading Quick Tips File"), AppTitle, parentWidget());
        return false;
    }
    Tips = readTipLines(f.readAll());
    DoNextTip();
    return true;
}

void QuikTip1::DoNextTip()
{
    if (Tips.isEmpty()) return;  // no tips: the label stays as it is
    QRandomGenerator gen(quint32(QDateTime::currentMSecsSinceEpoch()));
    const double r = gen.generateDouble();
    CurrentTip = int(r * Tips.size()) + 1;
    if (CurrentTip > Tips.size() || CurrentTip < 1) CurrentTip = 1;
    lblTipText->setText(Tips[CurrentTip - 1]);
    lblTipText->repaint();
}

void QuikTip1::OKBtn_Click()
{
    G.Options.ShowQuickTips = chkLoadTipsAtStartup->isChecked();
    close();
}

void QuikTip1::keyPressEvent(QKeyEvent *e)
{
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        OKBtn_Click();
        return;
    }
    QDialog::keyPressEvent(e);
}

void QuikTip1::closeEvent(QCloseEvent *e)
{
    G.QuickTipsOpen = false;
    QDialog::closeEvent(e);
}

}  // namespace tw
