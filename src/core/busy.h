// Long walks (the search, the thumbnail load, a slide show) run on the interface thread
// and yield to the event loop themselves. While one runs the program is busy: a
// statement of the scenario runner waits for it unless a modal window opened over it.
#pragma once

class QWidget;

namespace tw {

int busyDepth();

class BusyScope {
public:
    BusyScope();
    ~BusyScope();
    BusyScope(const BusyScope &) = delete;
    BusyScope &operator=(const BusyScope &) = delete;
};

// Lets the event loop run once (painting, keys, timers) from inside a long walk.
void yieldEvents();

// The hourglass: a busy pointer over the main window only (the dialogs a command opens keep
// their own pointer), stacked.
void setHourglassWindow(QWidget *w);
void showHourglass();
void hideHourglass();

}  // namespace tw
