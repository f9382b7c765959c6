#include "context_help.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>

namespace tw {

namespace {
const char *const kTopic = "twHelpTopic";

class F1Filter : public QObject {
public:
    std::function<void(const QString &)> show;

protected:
    bool eventFilter(QObject *o, QEvent *e) override
    {
        if (e->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(e)->key() == Qt::Key_F1
            && static_cast<QKeyEvent *>(e)->modifiers() == Qt::NoModifier && o->isWidgetType() && show) {
            // The key first arrives at the control it is meant for (the focused one) and would
            // then go up its parents: it is answered there, once. A key sent to a window as a
            // whole (a Help button's F1) is meant for the control that has the window's focus.
            auto *w = static_cast<QWidget *>(o);
            const QWidget *from = w->isWindow() && w->focusWidget() ? w->focusWidget() : w;
            // The receiver may go while the help opens; the topic is read first.
            const QString topic = helpTopicOf(from);
            show(topic);
            return true;
        }
        return QObject::eventFilter(o, e);
    }
};

QPointer<F1Filter> s_filter;
}  // namespace

void setHelpTopic(QWidget *w, const QString &topic)
{
    if (w) w->setProperty(kTopic, topic);
}

QString helpTopicOf(const QWidget *w)
{
    for (const QWidget *p = w; p; p = p->parentWidget()) {
        const QVariant v = p->property(kTopic);
        if (v.isValid() && !v.toString().isEmpty()) return v.toString();
    }
    return QStringLiteral("index");
}

void installContextHelp(std::function<void(const QString &)> show)
{
    if (!qApp) return;
    if (!s_filter) {
        s_filter = new F1Filter;
        s_filter->setParent(qApp);
        qApp->installEventFilter(s_filter);
    }
    s_filter->show = std::move(show);
}

}  // namespace tw
