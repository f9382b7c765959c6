// The fetch module: Qt's network access behind the program's fetch table.
#include "core/fetch.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>

namespace {

using tw::fetch::Result;

// One access manager for each thread that fetches; it lives as long as the thread.
QNetworkAccessManager *manager()
{
    static thread_local QNetworkAccessManager *m = nullptr;
    if (!m) m = new QNetworkAccessManager;
    return m;
}

class ReplyTransfer final : public tw::fetch::Transfer {
public:
    ReplyTransfer(const QUrl &url, std::function<void(const Result &)> done)
    {
        QNetworkRequest req(url);
        req.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
        reply_ = manager()->get(req);
        QNetworkReply *reply = reply_;
        QObject::connect(reply, &QNetworkReply::finished, reply, [reply, done = std::move(done)] {
            Result r;
            r.url = reply->url();
            r.ok = reply->error() == QNetworkReply::NoError;
            if (r.ok) r.body = reply->readAll();
            else r.error = reply->errorString();
            reply->disconnect();
            reply->deleteLater();
            // Last: the receiver may delete the transfer from here.
            done(r);
        });
    }
    ~ReplyTransfer() override
    {
        // A reply that has finished is already on its way out (deleteLater above); one
        // under way stops without a word to its receiver.
        if (reply_) {
            reply_->disconnect();
            if (!reply_->isFinished()) reply_->abort();
            reply_->deleteLater();
        }
    }

private:
    QPointer<QNetworkReply> reply_;
};

tw::fetch::Transfer *get(const QUrl &url, std::function<void(const Result &)> done)
{
    return new ReplyTransfer(url, std::move(done));
}

const tw::fetch::Table g_table = {tw::fetch::TableVersion, get};

}  // namespace

extern "C" __attribute__((visibility("default"))) const tw::fetch::Table *twFetchTable() { return &g_table; }
