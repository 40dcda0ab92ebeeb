#include "singleinstance.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using tv::shell::SingleInstance;

TEST(SingleInstance, SecondCopyIsRefusedUntilTheFirstEnds)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tejavista.lock"));
    auto first = std::make_unique<SingleInstance>(path);
    ASSERT_TRUE(first->tryAcquire());
    EXPECT_TRUE(first->tryAcquire()) << "asking again keeps it";

    SingleInstance second(path);
    EXPECT_FALSE(second.tryAcquire());
    EXPECT_FALSE(second.isHeld());

    first.reset();
    EXPECT_TRUE(second.tryAcquire()) << "free once the first program has ended";
}

TEST(SingleInstance, LockOfAProgramThatDiedIsTakenOver)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tejavista.lock"));
    // What QLockFile writes: pid, application name, host name. Linux never
    // hands out pid 2^22 (process ids stay below its limit).
    QFile stale(path);
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
    stale.write("4194304\ntejavista\n\n");
    stale.close();
    SingleInstance instance(path);
    EXPECT_TRUE(instance.tryAcquire());
}

TEST(SingleInstance, DefaultLockIsPerUserInTheRuntimeFolder)
{
    const QString path = SingleInstance::defaultLockPath();
    EXPECT_TRUE(path.endsWith(QStringLiteral(".lock")));
    EXPECT_TRUE(path.contains(QStringLiteral("tejavista-")));
}
