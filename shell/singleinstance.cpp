#include "singleinstance.h"

#include <QDir>
#include <QStandardPaths>

#include <unistd.h>

namespace tv::shell {

SingleInstance::SingleInstance(const QString& lockPath) : mPath(lockPath) {}

SingleInstance::~SingleInstance()
{
    if (mLock && mHeld)
        mLock->unlock();
}

QString SingleInstance::defaultLockPath()
{
    QString dir = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (dir.isEmpty() || !QDir(dir).exists())
        dir = QDir::tempPath();
    // The user id keeps two users of one machine apart in a shared /tmp.
    return QStringLiteral("%1/tejavista-%2.lock").arg(dir).arg(getuid());
}

bool SingleInstance::tryAcquire()
{
    if (mHeld)
        return true;
    if (!mLock) {
        mLock = std::make_unique<QLockFile>(mPath);
        // Never treat a live owner's lock as stale, however old it is.
        mLock->setStaleLockTime(0);
    }
    // tryLock takes over a lock whose process is gone (its pid is checked).
    mHeld = mLock->tryLock(0);
    return mHeld;
}

} // namespace tv::shell
