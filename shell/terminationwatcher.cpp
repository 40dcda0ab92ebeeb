#include "terminationwatcher.h"

#include "fbenvironment.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

namespace tv::shell {

int TerminationWatcher::sPipe[2] = {-1, -1};

TerminationWatcher::TerminationWatcher(QObject* parent) : QObject(parent)
{
    if (pipe2(sPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    mNotifier = new QSocketNotifier(sPipe[0], QSocketNotifier::Read, this);
    connect(mNotifier, &QSocketNotifier::activated, this, [this] {
        char buf[16];
        while (read(sPipe[0], buf, sizeof buf) > 0) {
        }
        Q_EMIT terminationRequested();
    });
    setTerminationHandler(&TerminationWatcher::handler);
}

TerminationWatcher::~TerminationWatcher()
{
    setTerminationHandler(nullptr);
    if (sPipe[0] >= 0) {
        close(sPipe[0]);
        close(sPipe[1]);
        sPipe[0] = sPipe[1] = -1;
    }
}

void TerminationWatcher::handler(int)
{
    const char c = 1;
    // Only async-signal-safe work here.
    [[maybe_unused]] const ssize_t n = write(sPipe[1], &c, 1);
}

} // namespace tv::shell
