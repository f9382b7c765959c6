// Fetching a file by its address (http, https, ftp, file). Qt's network stack lives in the
// fetch module libtw_fetch.so, loaded with the first fetch, so that the program does not
// load it (and the Kerberos and proxy libraries it brings) at start.
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <functional>
#include <memory>

namespace tw::fetch {

struct Result {
    bool ok = false;
    QByteArray body;
    QString error;  // the transfer's failure, when not ok
    QUrl url;  // the address the body came from, after any redirection
};

// One transfer under way. Deleting it abandons the transfer: its callback never runs.
class Transfer {
public:
    virtual ~Transfer() = default;
};

// Starts fetching url on the calling thread's event loop; done runs there once, when the
// transfer ends. Redirections are followed unless they lead from https to http. Returns
// nullptr when the fetch module cannot be loaded (error then says why).
std::unique_ptr<Transfer> get(const QUrl &url, std::function<void(const Result &)> done,
                              QString *error = nullptr);

struct Table {
    int version;
    Transfer *(*get)(const QUrl &url, std::function<void(const Result &)> done);
};
inline constexpr int TableVersion = 1;
inline constexpr char TableSymbol[] = "twFetchTable";

}  // namespace tw::fetch
