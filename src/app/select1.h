// The selection list window: every file shown in this session, one row each.
#pragma once

#include <QWidget>

class QListWidget;

namespace tw {

class Select1 : public QWidget {
    Q_OBJECT
public:
    explicit Select1(QWidget *parent);
    ~Select1() override;
    QListWidget *List1 = nullptr;

protected:
    void showEvent(QShowEvent *e) override;
    void hideEvent(QHideEvent *e) override;
};

}  // namespace tw
