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
            && static_cast<QKeyEvent *>(e)->modifiers() == Qt::NoModifier && o->isWidgetType()) {
            // A key goes to the focused control first and then up its parents: answer it once,
            // where it first arrives.
            auto *w = static_cast<QWidget *>(o);
            if (show && (w == QApplication::focusWidget() || !QApplication::focusWidget() || w->isWindow())) {
                const QWidget *from = QApplication::focusWidget() ? QApplication::focusWidget() : w;
                show(helpTopicOf(from));
                return true;
            }
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
