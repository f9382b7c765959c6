#include "dialogs/about_dialog.h"

#include "core/globals.h"
#include "core/prompt.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QProcess>
#include <QProcessEnvironment>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

const QString MakerUrl = QStringLiteral("https://tarnwick.example.org/");
const QString MakerName = QStringLiteral("Tarnwick");

QStringList systemInfoPrograms() { return {QStringLiteral("hardinfo")}; }

QString findSystemInfoProgram(const QString &path)
{
    for (const QString &program : systemInfoPrograms())
        for (const QString &dir : path.split(u':', Qt::SkipEmptyParts)) {
            const QFileInfo fi(QDir(dir).filePath(program));
            if (fi.isFile() && fi.isExecutable()) return fi.absoluteFilePath();
        }
    return QString();
}

About1::About1(QWidget *parent, std::function<void()> openLink)
    : QDialog(parent), openLink_(std::move(openLink))
{
    setObjectName(QStringLiteral("About1"));
    setWindowTitle(QStringLiteral("About the Tarnwick"));
    auto *outer = new QVBoxLayout(this);
    const QString texts[4] = {
        AppTitle,
        QStringLiteral("Version 2.0"),
        QStringLiteral("Visit the Tarnwick Home Page"),
        QStringLiteral("Finds, plays, views and organises the pictures, videos, music and documents of "
                       "this computer."),
    };
    for (int i = 0; i < 4; ++i) {
        Label1[i] = new QLabel(texts[i], this);
        Label1[i]->setObjectName(QStringLiteral("Label1_%1").arg(i));
        Label1[i]->setWordWrap(true);
        Label1[i]->installEventFilter(this);
        outer->addWidget(Label1[i]);
    }
    QFont big = Label1[0]->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    Label1[0]->setFont(big);
    // The link looks like one.
    QFont link = Label1[2]->font();
    link.setUnderline(true);
    Label1[2]->setFont(link);
    Label1[2]->setCursor(Qt::PointingHandCursor);
    Label1[2]->setToolTip(MakerUrl);
    auto *row = new QHBoxLayout;
    row->addStretch();
    OKBtn = new QPushButton(QStringLiteral("OK"), this);
    OKBtn->setObjectName(QStringLiteral("OKBtn"));
    SysBtn = new QPushButton(QStringLiteral("&System Info..."), this);
    SysBtn->setObjectName(QStringLiteral("SysBtn"));
    for (QPushButton *b : {OKBtn, SysBtn}) {
        b->setAutoDefault(false);
        row->addWidget(b);
    }
    outer->addLayout(row);
    connect(OKBtn, &QPushButton::clicked, this, &QDialog::accept);
    connect(SysBtn, &QPushButton::clicked, this, &About1::SysBtn_Click);
    G.About1Loaded = true;
}

About1::~About1() { G.About1Loaded = false; }

bool About1::eventFilter(QObject *o, QEvent *e)
{
    if (e->type() == QEvent::MouseButtonRelease && static_cast<QMouseEvent *>(e)->button() == Qt::LeftButton)
        for (int i = 0; i < 4; ++i)
            if (o == Label1[i]) Label1_Click(i);
    return QDialog::eventFilter(o, e);
}

void About1::keyPressEvent(QKeyEvent *e)
{
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        accept();
        return;
    }
    QDialog::keyPressEvent(e);
}

void About1::Label1_Click(int index)
{
    // Only the link answers; the window stays open.
    if (index != 2) return;
    G.CurrentUrl = MakerUrl;
    G.CurrentUrlName = MakerName;
    if (openLink_) openLink_();
}

void About1::SysBtn_Click()
{
    const QString program =
        findSystemInfoProgram(QProcessEnvironment::systemEnvironment().value(QStringLiteral("PATH")));
    if (!program.isEmpty() && QProcess::startDetached(program, {})) return;
    inform(QStringLiteral("System Information Is Unavailable At This Time"), AppTitle, this);
}

}  // namespace tw
