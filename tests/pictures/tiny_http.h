// A small HTTP server on 127.0.0.1 for the fetch tests.
#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QString>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

namespace twtest {

// Serves: /pic.png a picture, /slow.png the picture after 1.5 s, /missing.png 404,
// /text.png a body that is no picture, /never.png never answers.
class TinyHttp : public QTcpServer {
public:
    QByteArray png;
    explicit TinyHttp(const QByteArray &picture) : png(picture)
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *s = nextPendingConnection()) {
                connect(s, &QTcpSocket::readyRead, s, [this, s] { answer(s); });
            }
        });
        listen(QHostAddress::LocalHost, 0);
    }
    QString url(const char *path) const
    {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(QLatin1String(path));
    }

private:
    void answer(QTcpSocket *s)
    {
        const QByteArray req = s->readAll();
        const QByteArray path = req.split(' ').value(1);
        auto reply = [s](const QByteArray &status, const QByteArray &type, const QByteArray &body) {
            s->write("HTTP/1.1 " + status + "\r\nContent-Type: " + type + "\r\nContent-Length: "
                     + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
            s->flush();
            s->disconnectFromHost();
        };
        if (path == "/pic.png") reply("200 OK", "image/png", png);
        else if (path == "/slow.png")
            QTimer::singleShot(1500, s, [=, this] { reply("200 OK", "image/png", png); });
        else if (path == "/text.png") reply("200 OK", "image/png", "<html>moved</html>");
        else if (path == "/never.png") { /* holds the connection open */ } else
            reply("404 Not Found", "text/plain", "no");
    }
};

}  // namespace twtest
