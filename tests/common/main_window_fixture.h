// The main window of a window test: settings files in place so that no box interrupts its
// start, then the window shown and activated for the first time.
#pragma once

#include "app/tarnwick1.h"
#include "core/options_store.h"

#include <QDir>

namespace twtest {

inline tw::Tarnwick1 *startMainWindow()
{
    const QString share = QDir::homePath() + QStringLiteral("/.local/share");
    const QString dir = share + QStringLiteral("/tarnwick");
    qputenv("XDG_DATA_HOME", share.toLocal8Bit());
    QDir().mkpath(dir);
    tw::ColorSettings c;
    tw::SaveColors(c, dir);
    tw::OptionSettings o;
    tw::SetDefaultOptions(o, dir);
    tw::SaveOptions(o, dir);
    auto *w = new tw::Tarnwick1(QString());
    w->show();
    w->activated();
    return w;
}

}  // namespace twtest
