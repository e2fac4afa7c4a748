#include "probes/LogTail.h"

#include "platform/background.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <semaphore>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Tools whose `docker logs` hang until the test lets them go.
class HangingTools : public FakeTools {
public:
    [[nodiscard]] std::string run(const ToolRun &run) const override {
        ++begun;
        m_gate.acquire();
        return FakeTools::run(run);
    }

    void letGo(std::ptrdiff_t count = 1) { m_gate.release(count); }

    mutable std::atomic<int> begun = 0;

private:
    mutable std::counting_semaphore<> m_gate{0};
};

class LogTailTest : public testing::Test {
protected:
    LogTailTest() { make(tools); }
    ~LogTailTest() override {
        tail.reset();
        backgroundThreads().waitForDone();
        clock.wakeAll();
    }

    TemporaryFolder folder;
    ManualClock clock;
    FakeTools tools;
    std::unique_ptr<LogTail> tail;
    int textChanges = 0;
    int sourceChanges = 0;
    int pauseChanges = 0;

    void make(const Tools &used) {
        tail = std::make_unique<LogTail>(clock, used);
        QObject::connect(tail.get(), &LogTail::textChanged, tail.get(), [this] { ++textChanges; });
        QObject::connect(tail.get(), &LogTail::sourceChanged, tail.get(), [this] { ++sourceChanges; });
        QObject::connect(tail.get(), &LogTail::isPausedChanged, tail.get(), [this] { ++pauseChanges; });
    }

    /// Waits until every loop sleeps: the reads have come back.
    void awaitReads() {
        ASSERT_TRUE(waitFor([this] {
            settle();
            return backgroundThreads().isIdle();
        }));
        settle();
    }

    void pass(std::chrono::milliseconds time) {
        clock.advance(time);
        awaitReads();
    }

    LogSource file(const std::string &content, const std::string &name = "a.log") {
        return LogSource::file(folder.write(name, content));
    }

    void follow(const std::optional<LogSource> &source) {
        tail->follow(source);
        awaitReads();
    }
};

TEST_F(LogTailTest, aNewOneReadsNothing) {
    awaitReads();
    EXPECT_EQ(tail->text(), "");
    EXPECT_EQ(tail->source(), std::nullopt);
    EXPECT_FALSE(tail->isPaused());
    EXPECT_EQ(clock.sleepers(), 0u);
}

TEST_F(LogTailTest, theFirstReadComesAtOnce) {
    follow(file("one\n\x1B[31mtwo\x1B[0m"));
    EXPECT_EQ(tail->text(), "one\n\x1B[31mtwo\x1B[0m");
    EXPECT_THAT(tail->lines(), ElementsAre("one", "two"));
    EXPECT_EQ(sourceChanges, 1);
    EXPECT_EQ(textChanges, 1);
}

TEST_F(LogTailTest, aFileIsReadEverySecond) {
    const LogSource source = file("one");
    follow(source);
    file("two");
    pass(999ms);
    EXPECT_EQ(tail->text(), "one");
    pass(1ms);
    EXPECT_EQ(tail->text(), "two");
}

TEST_F(LogTailTest, aContainerIsReadEveryThreeSeconds) {
    tools.answers["docker logs --tail 300 web"] = "one";
    follow(LogSource::docker("docker", "web"));
    EXPECT_EQ(tail->text(), "one");
    pass(2999ms);
    EXPECT_EQ(tools.runs().size(), 1u);
    pass(1ms);
    EXPECT_EQ(tools.runs().size(), 2u);
}

TEST_F(LogTailTest, anEqualReadIsNoChange) {
    follow(file("one"));
    pass(1s);
    pass(1s);
    EXPECT_EQ(textChanges, 1);
}

TEST_F(LogTailTest, aFileThatIsTruncatedRotatedOrDeletedIsShownAsItIs) {
    const LogSource source = file("a long first log");
    follow(source);
    file("short");
    pass(1s);
    EXPECT_EQ(tail->text(), "short") << "truncated";
    std::filesystem::rename(source.path, source.path + ".1");
    file("the next one");
    pass(1s);
    EXPECT_EQ(tail->text(), "the next one") << "rotated";
    std::filesystem::remove(source.path);
    pass(1s);
    EXPECT_EQ(tail->text(), "") << "deleted";
    EXPECT_THAT(tail->lines(), ElementsAre(""));
    std::filesystem::create_directory(source.path);
    pass(1s);
    EXPECT_EQ(tail->text(), "") << "a folder of that name";
    std::filesystem::remove(source.path);
    file("back");
    pass(1s);
    EXPECT_EQ(tail->text(), "back") << "read again";
}

TEST_F(LogTailTest, theSameSourceGoesOnUndisturbed) {
    const LogSource source = file("one");
    follow(source);
    tail->follow(source);
    EXPECT_EQ(tail->text(), "one");
    awaitReads();
    EXPECT_EQ(clock.sleepers(), 1u) << "one loop";
    EXPECT_EQ(sourceChanges, 1);
}

TEST_F(LogTailTest, anotherSourceBeginsEmpty) {
    follow(file("one"));
    tail->follow(file("two", "b.log"));
    EXPECT_EQ(tail->text(), "");
    EXPECT_EQ(textChanges, 2);
    awaitReads();
    EXPECT_EQ(tail->text(), "two");
    pass(1s);
    EXPECT_EQ(clock.sleepers(), 1u) << "the first loop has ended";
}

TEST_F(LogTailTest, noSourceEndsTheReads) {
    follow(file("one"));
    tail->follow(std::nullopt);
    EXPECT_EQ(tail->text(), "");
    EXPECT_EQ(tail->source(), std::nullopt);
    pass(1s);
    EXPECT_EQ(clock.sleepers(), 0u);
    EXPECT_EQ(tail->text(), "");
}

TEST_F(LogTailTest, stoppedItKeepsSourceAndText) {
    const LogSource source = file("one");
    follow(source);
    tail->stop();
    file("two");
    pass(5s);
    EXPECT_EQ(tail->text(), "one");
    EXPECT_EQ(tail->source(), source);
    EXPECT_EQ(clock.sleepers(), 0u);
    follow(source);
    EXPECT_EQ(tail->text(), "two") << "the same source can be followed again";
    EXPECT_EQ(sourceChanges, 1);
}

TEST_F(LogTailTest, pausedItReadsNothingAndKeepsItsText) {
    follow(file("one"));
    tail->setPaused(true);
    tail->setPaused(true);
    EXPECT_EQ(pauseChanges, 1);
    file("two");
    pass(10s);
    EXPECT_EQ(tail->text(), "one");
    tail->setPaused(false);
    EXPECT_EQ(tail->text(), "one");
    pass(1s);
    EXPECT_EQ(tail->text(), "two") << "within one sleep";
    EXPECT_EQ(clock.sleepers(), 1u);
}

TEST_F(LogTailTest, pausedItStaysPausedOnItsNextSource) {
    follow(file("one"));
    tail->setPaused(true);
    follow(file("two", "b.log"));
    pass(3s);
    EXPECT_TRUE(tail->isPaused());
    EXPECT_EQ(tail->text(), "");
    tail->setPaused(false);
    pass(1s);
    EXPECT_EQ(tail->text(), "two");
}

TEST_F(LogTailTest, itMayBeDeletedByWhoHearsOfAChange) {
    const LogSource source = file("one");
    QObject::connect(tail.get(), &LogTail::textChanged, qApp, [this] { tail.reset(); });
    follow(source);
    EXPECT_EQ(tail, nullptr);
    make(tools);
    QObject::connect(tail.get(), &LogTail::sourceChanged, qApp, [this] { tail.reset(); });
    follow(source);
    EXPECT_EQ(tail, nullptr);
}

TEST_F(LogTailTest, whoHearsOfAChangeMayFollowSomethingElse) {
    const LogSource other = file("other", "b.log");
    QObject::connect(tail.get(), &LogTail::sourceChanged, tail.get(), [this, other] { tail->follow(other); });
    follow(file("one"));
    EXPECT_EQ(tail->text(), "other");
    EXPECT_EQ(clock.sleepers(), 1u);
}

class HangingLogTailTest : public LogTailTest {
protected:
    HangingLogTailTest() {
        hanging.answers["docker logs --tail 300 web"] = "from web";
        hanging.answers["docker logs --tail 300 db"] = "from db";
        make(hanging);
    }
    ~HangingLogTailTest() override {
        hanging.letGo(100);
        tail.reset();
        backgroundThreads().waitForDone();
        settle();
    }

    void followHanging(const std::string &container) {
        const int before = hanging.begun;
        tail->follow(LogSource::docker("docker", container));
        ASSERT_TRUE(waitFor([&] { return hanging.begun == before + 1; }));
    }

    HangingTools hanging;
};

TEST_F(HangingLogTailTest, aLateReadDoesNotReplaceTheTextOfANewSource) {
    followHanging("web");
    tail->follow(file("of the file"));
    ASSERT_TRUE(waitFor([&] { return tail->text() == "of the file"; })) << "a container held up a file";
    hanging.letGo();
    awaitReads();
    EXPECT_EQ(tail->text(), "of the file");
    EXPECT_EQ(clock.sleepers(), 1u);
}

TEST_F(HangingLogTailTest, aLateReadAfterAStopIsDropped) {
    followHanging("web");
    tail->stop();
    hanging.letGo();
    awaitReads();
    EXPECT_EQ(tail->text(), "");
    EXPECT_EQ(clock.sleepers(), 0u);
}

TEST_F(HangingLogTailTest, itMayGoWithAReadInFlight) {
    followHanging("web");
    tail.reset();
    hanging.letGo();
    awaitReads();
    EXPECT_EQ(textChanges, 0);
    EXPECT_EQ(clock.sleepers(), 0u);
}

TEST_F(HangingLogTailTest, itMayGoWhileItSleeps) {
    follow(file("one"));
    tail.reset();
    pass(1s);
    EXPECT_EQ(clock.sleepers(), 0u);
}

TEST_F(HangingLogTailTest, containersAreReadOneAtATime) {
    followHanging("web");
    for (const char *name : {"db", "web", "db"})
        tail->follow(LogSource::docker("docker", name));
    settle();
    EXPECT_EQ(hanging.begun, 1);
    hanging.letGo(2);
    ASSERT_TRUE(waitFor([&] { return tail->text() == "from db"; }));
    EXPECT_EQ(hanging.begun, 2) << "those in between were never asked";
}

} // namespace
} // namespace tarnvale
