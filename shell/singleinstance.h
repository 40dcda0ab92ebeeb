#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace tv::shell {

// Guards against a second copy of the program for the same user: a lock
// file in the runtime folder (XDG_RUNTIME_DIR, else the temporary folder).
// The lock carries the owner's process id, so a lock left behind by a
// program that died is taken over; it is released when this object goes.
class SingleInstance {
public:
    explicit SingleInstance(const QString& lockPath = defaultLockPath());
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    // True when this process now holds the lock (or already held it).
    bool tryAcquire();
    bool isHeld() const { return mHeld; }
    QString lockPath() const { return mPath; }

    static QString defaultLockPath();

private:
    QString mPath;
    std::unique_ptr<QLockFile> mLock;
    bool mHeld = false;
};

} // namespace tv::shell
