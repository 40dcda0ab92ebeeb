#include "dm.h"
#include "terminationwatcher.h"
#include "testdata.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <csignal>

using namespace tv;

namespace {

void (*currentHandler(int sig))(int)
{
    struct sigaction sa = {};
    sigaction(sig, nullptr, &sa);
    return sa.sa_handler;
}

TEST(Termination, TheEngineNeverKeepsTheSignalsAfterAnAttachment)
{
    // A tool (no handler of its own): default action, even after the engine loaded.
    {
        test::TestData data;
        EXPECT_EQ(currentHandler(SIGTERM), SIG_DFL);
        EXPECT_EQ(currentHandler(SIGINT), SIG_DFL);
    }
    // The program: its own orderly close stays in place across new attachments.
    shell::TerminationWatcher watcher;
    const auto ours = currentHandler(SIGTERM);
    ASSERT_NE(ours, SIG_DFL);
    test::TestData data;
    data.dm().Imagenes.close();
    data.dm().Imagenes.open();
    EXPECT_EQ(currentHandler(SIGTERM), ours);
    EXPECT_EQ(currentHandler(SIGINT), ours);

    QSignalSpy spy(&watcher, &shell::TerminationWatcher::terminationRequested);
    ::raise(SIGTERM);
    ASSERT_TRUE(spy.wait(5000));
    EXPECT_EQ(spy.count(), 1);
    // The connections are still usable: the signal was only a request.
    EXPECT_EQ(Query::scalar(data.dm().datos, data.dm().Transacion, QStringLiteral("SELECT COUNT(*) FROM EMPRESA")).toInt(), 1);
}

} // namespace
