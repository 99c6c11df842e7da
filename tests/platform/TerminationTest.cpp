#include "platform/Termination.h"

#include "core/base/Logging.h"
#include "fakes/WaitUntil.h"
#include "platform/DisplayGuard.h"
#include "platform/EndLimit.h"
#include "platform/SystemLogSink.h"
#include "platform/ToolkitMessages.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace korvale {
namespace {

class Signals : public testing::TestWithParam<int> {};

TEST_P(Signals, AskForTermination) {
    TerminationSignals signals;
    int requests = 0;
    QObject::connect(&signals, &TerminationSignals::requested, &signals, [&] { ++requests; });
    signals.watch();
    raise(GetParam());
    raise(GetParam());
    EXPECT_TRUE(waitUntil([&] { return requests > 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(requests, 1);
}

TEST_P(Signals, ThatComeBeforeTheEventLoopAreNotLost) {
    TerminationSignals signals;
    raise(GetParam());
    bool requested = false;
    QObject::connect(&signals, &TerminationSignals::requested, &signals, [&] { requested = true; });
    signals.watch();
    EXPECT_TRUE(waitUntil([&] { return requested; }));
}

TEST_P(Signals, CutASleepShort) {
    const TerminationSignals signals;
    raise(GetParam());
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 20; ++i) {
        signals.sleepOneSecond();
    }
    EXPECT_LT(timer.elapsed(), 10'000);
}

TEST_P(Signals, EndTheProcessThoughTheMainThreadWaits) {
    EXPECT_EXIT(
        {
            const TerminationSignals signals;
            const EndLimit limit(
                signals, [] { std::fputs("the last words\n", stderr); },
                std::chrono::milliseconds(50));
            raise(GetParam());
            for (;;) {
                pause();
            }
        },
        testing::ExitedWithCode(0), "the last words");
}

TEST_P(Signals, LeaveAnEndInTimeToItself) {
    EXPECT_EXIT(
        {
            {
                const TerminationSignals signals;
                const EndLimit limit(
                    signals, [] { std::_Exit(1); }, std::chrono::hours(1));
                raise(GetParam());
            }
            std::fputs("by itself\n", stderr);
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "by itself");
}

TEST_P(Signals, ThatTheParentIgnoredStayIgnored) {
    std::signal(GetParam(), SIG_IGN);
    {
        TerminationSignals signals;
        bool requested = false;
        QObject::connect(&signals, &TerminationSignals::requested, &signals,
                         [&] { requested = true; });
        signals.watch();
        raise(GetParam());
        QCoreApplication::processEvents();
        EXPECT_FALSE(requested);
    }
    EXPECT_EQ(std::signal(GetParam(), SIG_DFL), SIG_IGN);
}

INSTANTIATE_TEST_SUITE_P(All, Signals, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(Sleep, LastsASecondWithoutASignal) {
    const TerminationSignals signals;
    QElapsedTimer timer;
    timer.start();
    signals.sleepOneSecond();
    EXPECT_GE(timer.elapsed(), 990);
}

TEST(ToolkitExit, BecomesACleanEnd) {
    EXPECT_EXIT(
        {
            const ToolkitExitGuard guard([] { std::fputs("will terminate\n", stderr); });
            std::exit(1);
        },
        testing::ExitedWithCode(0), "will terminate");
}

/// More lines than are written by whoever logs them.
void logVeryMuch() {
    for (int i = 0; i < 5000; ++i) {
        OSLoggingLogMessage(LogLevel::Info, "line %i", {QString::number(i)});
    }
}

TEST(ToolkitExit, LosesNoLine) {
    EXPECT_EXIT(
        {
            SystemLogSink sink;
            setLogSink(&sink);
            const ToolkitExitGuard guard([] { logVeryMuch(); });
            std::exit(1);
        },
        testing::ExitedWithCode(0), "line 4999");
}

TEST(AnUnusableDisplay, LosesNoLine) {
    EXPECT_EXIT(
        {
            SystemLogSink sink;
            setLogSink(&sink);
            const DisplayGuard guard;
            logVeryMuch();
            qFatal("no platform plugin");
        },
        testing::ExitedWithCode(1), "line 4999.*\n.*No usable display");
}

// The toolkit's Wayland client says so and calls _exit.
TEST(TheEndOfTheCompositor, IsAnEndLikeAnyOther) {
    EXPECT_EXIT(
        {
            logToolkitMessages();
            const ToolkitExitGuard guard([] { std::fputs("will terminate\n", stderr); });
            qWarning("The Wayland connection broke. Did the Wayland compositor die?");
            std::_Exit(1);
        },
        testing::ExitedWithCode(0), "compositor die.*\nwill terminate");
}

TEST(TheEndOfTheCompositor, IsMetByTheMainThreadWhoeverHearsOfIt) {
    EXPECT_EXIT(
        {
            logToolkitMessages();
            const std::thread::id mainThread = std::this_thread::get_id();
            const ToolkitExitGuard guard([mainThread] {
                std::fputs(std::this_thread::get_id() == mainThread ? "main\n" : "other\n", stderr);
            });
            std::thread reader([] {
                qWarning("The Wayland connection broke. Did the Wayland compositor die?");
                std::_Exit(1);
            });
            QCoreApplication::exec();
            reader.join();
        },
        testing::ExitedWithCode(0), "compositor die.*\nmain");
}

TEST(AMissingWaylandPlugIn, IsNamedWithItsPackage) {
    EXPECT_EXIT(
        {
            const DisplayGuard guard;
            qWarning("Could not find the Qt platform plugin \"wayland\" in \"\"");
            qFatal("no Qt platform plugin could be initialized");
        },
        testing::ExitedWithCode(1), "No usable display.*the package qt6-wayland is missing");
}

TEST(ToolkitExit, IsLeftAloneAfterwards) {
    EXPECT_EXIT(
        {
            {
                const ToolkitExitGuard guard([] { std::fputs("will terminate\n", stderr); });
            }
            std::exit(3);
        },
        testing::ExitedWithCode(3), "^$");
}

TEST(BrokenPipes, DoNotEndTheProgram) {
    EXPECT_EXIT(
        {
            ignoreBrokenPipes();
            int ends[2];
            if (pipe(ends) == 0) {
                close(ends[0]);
                std::exit(write(ends[1], "x", 1) == -1 ? 0 : 2);
            }
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace korvale
