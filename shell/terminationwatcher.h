#pragma once

#include <QObject>

class QSocketNotifier;

namespace tv::shell {

// SIGTERM and SIGINT (logout, shutdown, kill, Ctrl+C) close the program in
// order: every window is asked to close, so the main window's close sequence
// commits and closes the connections. The signal handler only writes to a
// pipe; the work happens on the interface thread. One per process.
class TerminationWatcher : public QObject {
    Q_OBJECT
public:
    explicit TerminationWatcher(QObject* parent = nullptr);
    ~TerminationWatcher() override;

Q_SIGNALS:
    void terminationRequested();

private:
    static void handler(int);
    static int sPipe[2];
    QSocketNotifier* mNotifier = nullptr;
};

} // namespace tv::shell
