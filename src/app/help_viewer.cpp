#include "help_viewer.h"

#include <QDir>
#include <QFileInfo>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QHelpSearchEngine>
#include <QHelpSearchQueryWidget>
#include <QHelpSearchResultWidget>
#include <QSplitter>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace tw {

namespace {
class HelpBrowser : public QTextBrowser {
public:
    HelpBrowser(QHelpEngine *e, QWidget *parent) : QTextBrowser(parent), engine_(e) {}
    QVariant loadResource(int type, const QUrl &url) override
    {
        if (url.scheme() == QLatin1String("qthelp")) return engine_->fileData(url);
        return QTextBrowser::loadResource(type, url);
    }

private:
    QHelpEngine *engine_;
};
}  // namespace

HelpViewer::HelpViewer(const QString &helpDir, QWidget *parent) : HelpWindow(parent, Qt::Window)
{
    setObjectName(QStringLiteral("HelpViewer"));
    setWindowTitle(QStringLiteral("Tarnwick 2.0 Help"));
    resize(760, 520);
    // The collection is opened from a copy in the cache, since the engine writes to it.
    const QString qhc = helpDir + QStringLiteral("/Ostrel.qhc");
    QString cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    if (cache.isEmpty()) cache = QDir::tempPath();
    QDir().mkpath(cache);
    const QString work = cache + QStringLiteral("/Ostrel.qhc");
    QFile::remove(work);
    QFile::copy(qhc, work);
    QFile::setPermissions(work, QFile::ReadOwner | QFile::WriteOwner);
    engine_ = new QHelpEngine(work, this);
    engine_->setReadOnly(false);
    ready_ = QFileInfo::exists(qhc) && engine_->setupData();
    if (ready_) {
        // Register the documentation beside the collection, wherever the folder now lies.
        const QString qch = helpDir + QStringLiteral("/Ostrel.qch");
        const QString ns = QHelpEngineCore::namespaceName(qch);
        if (!ns.isEmpty() && !engine_->registeredDocumentations().contains(ns))
            engine_->registerDocumentation(qch);
    }

    auto *split = new QSplitter(this);
    side_ = new QTabWidget(split);
    engine_->contentWidget()->setObjectName(QStringLiteral("HelpContents"));
    side_->addTab(engine_->contentWidget(), QStringLiteral("Contents"));
    side_->addTab(engine_->indexWidget(), QStringLiteral("Index"));
    auto *search = new QWidget(side_);
    auto *sl = new QVBoxLayout(search);
    sl->addWidget(engine_->searchEngine()->queryWidget());
    sl->addWidget(engine_->searchEngine()->resultWidget(), 1);
    side_->addTab(search, QStringLiteral("Search"));
    page_ = new HelpBrowser(engine_, split);
    page_->setObjectName(QStringLiteral("HelpPage"));
    split->setStretchFactor(1, 3);
    auto *lay = new QVBoxLayout(this);
    lay->addWidget(split);

    connect(engine_->contentWidget(), &QHelpContentWidget::linkActivated, page_,
            [this](const QUrl &u) { page_->setSource(u); });
    connect(engine_->indexWidget(), &QHelpIndexWidget::documentActivated, this,
            [this](const QHelpLink &l, const QString &) { page_->setSource(l.url); });
    connect(engine_->searchEngine()->queryWidget(), &QHelpSearchQueryWidget::search, this, [this] {
        engine_->searchEngine()->search(engine_->searchEngine()->queryWidget()->searchInput());
    });
    connect(engine_->searchEngine()->resultWidget(), &QHelpSearchResultWidget::requestShowLink, page_,
            [this](const QUrl &u) { page_->setSource(u); });
    if (ready_) engine_->searchEngine()->reindexDocumentation();
}

void HelpViewer::showContents(bool search)
{
    side_->setCurrentIndex(search ? 2 : 0);
    if (ready_) page_->setSource(QUrl(QStringLiteral("qthelp://tarnwick.help.2.0/doc/index.html")));
    show();
    raise();
}

void HelpViewer::showTopic(const QString &keyword)
{
    if (ready_)
        page_->setSource(
            QUrl(QStringLiteral("qthelp://tarnwick.help.2.0/doc/") + keyword + QStringLiteral(".html")));
    show();
    raise();
}

QString HelpViewer::currentPage() const { return page_->source().toString(); }

QString HelpViewer::currentTitle() const { return page_->documentTitle(); }

}  // namespace tw

// The module's one entry: the main window loads it by name.
extern "C" Q_DECL_EXPORT tw::HelpWindow *twMakeHelpWindow(const QString &helpDir, QWidget *parent)
{
    return new tw::HelpViewer(helpDir, parent);
}
