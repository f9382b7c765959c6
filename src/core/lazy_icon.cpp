#include "lazy_icon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

namespace tw {

namespace {
class LazyFileIconEngine : public QIconEngine {
public:
    explicit LazyFileIconEngine(const QString &path) : path_(path) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const QPixmap pm = pixmap(rect.size(), mode, state);
        if (!pm.isNull()) painter->drawPixmap(rect, pm);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().actualSize(size, mode, state);
    }
    QIconEngine *clone() const override { return new LazyFileIconEngine(path_); }
    QString key() const override { return QStringLiteral("twLazyFile"); }
    // The file was there when the tool was made; reading it waits for the first paint.
    bool isNull() override { return path_.isEmpty(); }

private:
    QIcon &icon()
    {
        if (!loaded_) {
            loaded_ = true;
            icon_ = QIcon(path_);
        }
        return icon_;
    }
    QString path_;
    QIcon icon_;
    bool loaded_ = false;
};
}  // namespace

QIcon lazyFileIcon(const QString &path) { return QIcon(new LazyFileIconEngine(path)); }

}  // namespace tw
