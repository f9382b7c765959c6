#include "select1.h"

#include "core/globals.h"

#include <QListWidget>
#include <QVBoxLayout>

namespace tw {

Select1::Select1(QWidget *parent) : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("Select1"));
    setWindowTitle(QStringLiteral("Select Files"));
    auto *lay = new QVBoxLayout(this);
    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    lay->addWidget(List1);
    resize(420, 360);
    G.Select1Loaded = true;
}

Select1::~Select1()
{
    G.Select1Loaded = false;
    G.Select1Visible = false;
}

void Select1::showEvent(QShowEvent *e)
{
    G.Select1Visible = true;
    QWidget::showEvent(e);
}

void Select1::hideEvent(QHideEvent *e)
{
    G.Select1Visible = false;
    QWidget::hideEvent(e);
}

}  // namespace tw
