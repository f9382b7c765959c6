// Seed inputs for the decoder message targets: requests and replies as the two sides send them.
#include "pictures/decoder_protocol.h"

#include <QDir>
#include <QFile>
#include <cstdio>

using namespace tw::decoding;

namespace {
void put(const QString &dir, const QString &name, const QByteArray &d)
{
    QDir().mkpath(dir);
    QFile f(dir + QLatin1Char('/') + name);
    if (f.open(QIODevice::WriteOnly)) f.write(d);
}
}  // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: fuzz_seeds <request dir> <reply dir>\n");
        return 2;
    }
    const QString req = QString::fromLocal8Bit(argv[1]), rep = QString::fromLocal8Bit(argv[2]);
    Request r;
    r.path = QStringLiteral("/home/user/Pictures/a picture.pcx");
    put(req, QStringLiteral("read"), encodeRequest(r));
    r.op = Op::Ping;
    r.page = 3;
    put(req, QStringLiteral("ping"), encodeRequest(r));
    r.op = Op::ReadBlob;
    r.coderHint = QStringLiteral("ICO");
    r.blob = QByteArray("\0\0\1\0\1\0", 6);
    put(req, QStringLiteral("blob"), encodeRequest(r));
    r.op = Op::Av;
    r.allPages = true;
    r.maxBytes = 1 << 20;
    put(req, QStringLiteral("av"), encodeRequest(r));

    Reply a;
    a.status = 0;
    a.facts.coder = QStringLiteral("PCX");
    a.facts.width = 3;
    a.facts.height = 2;
    a.frames = {FrameLayout{3, 2, 12, 0}, FrameLayout{1, 1, 4, 100, 24}};
    a.pixelBytes = 28;
    put(rep, QStringLiteral("two-frames"), encodeReply(a));
    Reply b;
    b.status = 3;
    b.message = QStringLiteral("corrupt image");
    put(rep, QStringLiteral("failure"), encodeReply(b));
    return 0;
}
