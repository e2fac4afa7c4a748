#include "updates/UpdateChecker.h"

#include "platform/background.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "updates/FakeUpdateSource.h"
#include "updates/FeedText.h"
#include "updates/TestKey.h"
#include "updates/storedDate.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Phase = UpdateState::Phase;
using Kind = UpdateFailure::Kind;

class UpdateCheckerTest : public testing::Test {
protected:
    UpdateCheckerTest() { make(); }
    ~UpdateCheckerTest() override {
        checker.reset();
        settleAll();
    }

    void make() {
        checker = std::make_unique<UpdateChecker>(source, platform.platform(),
                                                  UpdateChecker::Self{"41", key.publicKey()});
        QObject::connect(checker.get(), &UpdateChecker::foundBySchedule, checker.get(), [this] { ++found; });
    }
    /// Lets background work come to its end, and what follows from it.
    static void settleAll() {
        settle();
        backgroundThreads().waitForDone();
        settle();
    }
    /// A feed with one update that is signed as it should be.
    [[nodiscard]] std::string feed(const std::string &version = "42") const {
        return feedOf(FeedItemText{.version = version,
                                   .length = static_cast<std::int64_t>(content.size()),
                                   .signature = key.sign(content),
                                   .more = "<sparkle:releaseNotesLink>https://updates.example/notes</"
                                           "sparkle:releaseNotesLink>"}
                          .text());
    }
    void answer(const std::string &text) {
        settle();
        source.answerFeed(text);
        settleAll();
    }
    void deliver(const std::string &bytes) {
        settle();
        source.answerDownload(bytes);
        settleAll();
    }
    void findUpdate() {
        checker->check(CheckReason::user);
        answer(feed());
        ASSERT_EQ(phase(), Phase::available);
    }
    void fetchUpdate() {
        findUpdate();
        checker->download();
        deliver(content);
        ASSERT_EQ(phase(), Phase::ready);
    }
    [[nodiscard]] Phase phase() const { return checker->state().phase; }
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder.path()))
            names.push_back(entry.path().filename());
        return names;
    }

    FakePlatform platform;
    TemporaryFolder folder;
    TestKey key;
    std::string content = "the new version";
    FakeUpdateSource source{QString::fromStdString(folder.path())};
    std::unique_ptr<UpdateChecker> checker;
    int found = 0;
};

TEST_F(UpdateCheckerTest, nothingHappensUnasked) {
    settleAll();
    EXPECT_EQ(phase(), Phase::idle);
    EXPECT_EQ(source.reads, 0);
    checker->download();
    checker->openInstaller();
    checker->showInFolder();
    checker->openNotes();
    checker->retry();
    checker->cancel();
    EXPECT_EQ(phase(), Phase::idle);
    EXPECT_THAT(platform.desktop.opened, IsEmpty());
    EXPECT_THAT(platform.desktop.revealed, IsEmpty());
}

TEST_F(UpdateCheckerTest, fromTheQuestionToTheInstaller) {
    checker->check(CheckReason::user);
    EXPECT_EQ(phase(), Phase::checking);
    answer(feed());
    ASSERT_EQ(phase(), Phase::available);
    EXPECT_EQ(checker->state().item->name(), "2.0");
    EXPECT_THAT(source.downloads, IsEmpty()) << "only when the user wants it";

    checker->download();
    EXPECT_EQ(phase(), Phase::downloading);
    source.progress(7);
    EXPECT_EQ(checker->state().received, 7);
    source.answerDownload(content);
    settle();
    settleAll();
    ASSERT_EQ(phase(), Phase::ready);
    EXPECT_EQ(checker->state().file.toStdString(), folder.path("update.deb"));
    EXPECT_THAT(files(), ElementsAre("update.deb"));
    EXPECT_THAT(platform.desktop.opened, IsEmpty()) << "only when the user wants it";

    checker->showInFolder();
    EXPECT_THAT(platform.desktop.revealed, ElementsAre(folder.path("update.deb")));
    checker->openInstaller();
    EXPECT_EQ(phase(), Phase::verifying);
    settleAll();
    EXPECT_EQ(phase(), Phase::ready);
    EXPECT_THAT(platform.desktop.opened, ElementsAre("file://" + folder.path("update.deb")));
}

TEST_F(UpdateCheckerTest, theFileIsNotOfferedBeforeItsSignatureIsChecked) {
    findUpdate();
    std::vector<Phase> phases;
    std::vector<std::size_t> finished;
    QObject::connect(checker.get(), &UpdateChecker::stateChanged, checker.get(), [&] {
        phases.push_back(phase());
        finished.push_back(std::filesystem::exists(folder.path("update.deb")) ? 1 : 0);
    });
    checker->download();
    deliver(content);
    EXPECT_THAT(phases, ElementsAre(Phase::downloading, Phase::verifying, Phase::ready));
    EXPECT_THAT(finished, ElementsAre(0, 0, 1));
}

TEST_F(UpdateCheckerTest, whatIsNewestIsToldOnlyToWhoAsks) {
    checker->check(CheckReason::user);
    answer(feed("41"));
    EXPECT_EQ(phase(), Phase::upToDate);
    checker->dismiss();
    checker->check(CheckReason::schedule);
    answer(feed("40"));
    EXPECT_EQ(phase(), Phase::idle);
    EXPECT_EQ(found, 0);
}

TEST_F(UpdateCheckerTest, aDowngradeIsNoUpdate) {
    checker->check(CheckReason::user);
    answer(feed("1"));
    EXPECT_EQ(phase(), Phase::upToDate);
    checker->download();
    EXPECT_THAT(source.downloads, IsEmpty());
}

TEST_F(UpdateCheckerTest, aFeedThatIsNoneFails) {
    checker->check(CheckReason::user);
    answer("<html>");
    ASSERT_EQ(phase(), Phase::failed);
    EXPECT_EQ(checker->state().failure.kind, Kind::badFeed);
    EXPECT_EQ(checker->lastCheck(), std::nullopt);
    checker->retry();
    EXPECT_EQ(phase(), Phase::checking);
    answer(feed());
    EXPECT_EQ(phase(), Phase::available);
}

TEST_F(UpdateCheckerTest, aFeedThatDoesntComeFails) {
    checker->check(CheckReason::user);
    source.failFeed(Kind::unreachable);
    settleAll();
    ASSERT_EQ(phase(), Phase::failed);
    EXPECT_EQ(checker->state().failure.kind, Kind::unreachable);
    EXPECT_FALSE(checker->state().item.has_value());
}

TEST_F(UpdateCheckerTest, whatTheMakerDidntSignIsDeleted) {
    findUpdate();
    checker->download();
    deliver("the NEW version");
    ASSERT_EQ(phase(), Phase::failed);
    EXPECT_EQ(checker->state().failure.kind, Kind::badSignature);
    EXPECT_THAT(files(), IsEmpty());
    checker->openInstaller();
    checker->showInFolder();
    settleAll();
    EXPECT_THAT(platform.desktop.opened, IsEmpty());
    EXPECT_THAT(platform.desktop.revealed, IsEmpty());

    checker->retry();
    EXPECT_EQ(phase(), Phase::downloading) << "the same item once more";
    deliver(content);
    EXPECT_EQ(phase(), Phase::ready);
}

TEST_F(UpdateCheckerTest, aDownloadThatFailsCanBeTriedAgain) {
    findUpdate();
    checker->download();
    source.failDownload({Kind::cannotSave, QStringLiteral("full")});
    settleAll();
    ASSERT_EQ(phase(), Phase::failed);
    EXPECT_EQ(checker->state().failure, (UpdateFailure{Kind::cannotSave, QStringLiteral("full")}));
    checker->retry();
    EXPECT_EQ(phase(), Phase::downloading);
    EXPECT_EQ(checker->state().received, 0);
}

TEST_F(UpdateCheckerTest, aFileThatWasChangedAfterwardsIsNotOpened) {
    fetchUpdate();
    folder.write("update.deb", "something else");
    checker->openInstaller();
    settleAll();
    ASSERT_EQ(phase(), Phase::failed);
    EXPECT_EQ(checker->state().failure.kind, Kind::changed);
    EXPECT_THAT(platform.desktop.opened, IsEmpty());
    EXPECT_THAT(files(), ElementsAre("update.deb")) << "it may be the user's by now";
    checker->retry();
    EXPECT_EQ(phase(), Phase::downloading);
}

TEST_F(UpdateCheckerTest, aFileThatIsGoneIsNotOpened) {
    fetchUpdate();
    std::filesystem::remove(folder.path("update.deb"));
    checker->openInstaller();
    settleAll();
    EXPECT_EQ(checker->state().failure.kind, Kind::changed);
    EXPECT_THAT(platform.desktop.opened, IsEmpty());
}

TEST_F(UpdateCheckerTest, cancellingACheckLeavesNothing) {
    checker->check(CheckReason::user);
    checker->cancel();
    EXPECT_EQ(phase(), Phase::idle);
    EXPECT_FALSE(source.isAsked());
    settleAll();
    EXPECT_EQ(phase(), Phase::idle);
}

TEST_F(UpdateCheckerTest, cancellingADownloadLeavesTheOffer) {
    findUpdate();
    checker->download();
    checker->cancel();
    EXPECT_EQ(phase(), Phase::available);
    settleAll();
    EXPECT_EQ(phase(), Phase::available);
    EXPECT_FALSE(source.isAsked());
    checker->download();
    deliver(content);
    EXPECT_EQ(phase(), Phase::ready);
}

TEST_F(UpdateCheckerTest, cancellingWhileTheSignatureIsCheckedLeavesNoFile) {
    findUpdate();
    checker->download();
    source.answerDownload(content);
    ASSERT_TRUE(waitFor([this] { return phase() != Phase::downloading; }));
    if (phase() != Phase::verifying)
        GTEST_SKIP() << "the check was over at once";
    checker->cancel();
    EXPECT_EQ(phase(), Phase::available);
    EXPECT_THAT(files(), IsEmpty());
    settleAll();
    EXPECT_EQ(phase(), Phase::available);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(UpdateCheckerTest, cancellingTheSecondLookLeavesTheFile) {
    fetchUpdate();
    checker->openInstaller();
    checker->cancel();
    EXPECT_EQ(phase(), Phase::ready);
    settleAll();
    EXPECT_EQ(phase(), Phase::ready);
    EXPECT_THAT(platform.desktop.opened, IsEmpty());
    EXPECT_THAT(files(), ElementsAre("update.deb"));
}

TEST_F(UpdateCheckerTest, dismissingForgetsAllButAFinishedFile) {
    fetchUpdate();
    checker->dismiss();
    EXPECT_EQ(phase(), Phase::idle);
    EXPECT_THAT(files(), ElementsAre("update.deb"));
    findUpdate();
    checker->download();
    checker->dismiss();
    settleAll();
    EXPECT_EQ(phase(), Phase::idle);
    EXPECT_FALSE(source.isAsked());
}

TEST_F(UpdateCheckerTest, anEndInTheMiddleOfItLeavesNoFile) {
    findUpdate();
    checker->download();
    source.answerDownload(content);
    ASSERT_TRUE(waitFor([this] { return phase() != Phase::downloading; }));
    const bool isInTime = phase() == Phase::verifying;
    checker.reset();
    if (isInTime) {
        EXPECT_THAT(files(), IsEmpty());
    }
}

TEST_F(UpdateCheckerTest, aCheckDoesntDisturbADownload) {
    findUpdate();
    checker->download();
    checker->check(CheckReason::user);
    checker->check(CheckReason::schedule);
    EXPECT_EQ(phase(), Phase::downloading);
    EXPECT_EQ(source.reads, 1);
    deliver(content);
    checker->check(CheckReason::user);
    EXPECT_EQ(phase(), Phase::ready);
}

TEST_F(UpdateCheckerTest, anImpatientUserStartsOneCheck) {
    checker->check(CheckReason::user);
    checker->check(CheckReason::user);
    EXPECT_EQ(source.reads, 1);
    answer(feed());
    checker->download();
    checker->download();
    EXPECT_EQ(source.downloads.size(), 1u);
}

TEST_F(UpdateCheckerTest, notesOpenInTheBrowser) {
    findUpdate();
    checker->openNotes();
    EXPECT_THAT(platform.desktop.opened, ElementsAre("https://updates.example/notes"));
}

TEST_F(UpdateCheckerTest, progressIsToldInStepsThatCanBeSeen) {
    content = std::string(1 << 20, 'x');
    findUpdate();
    checker->download();
    int told = 0;
    QObject::connect(checker.get(), &UpdateChecker::stateChanged, checker.get(), [&told] { ++told; });
    for (std::int64_t bytes = 0; bytes <= 1 << 20; bytes += 16)
        source.progress(bytes);
    EXPECT_GT(told, 300);
    EXPECT_LE(told, 400);
    EXPECT_EQ(checker->state().received, 1 << 20);
}

TEST_F(UpdateCheckerTest, lateProgressOfWhatWasCancelledIsNotShown) {
    findUpdate();
    checker->download();
    const auto late = source.progress;
    checker->cancel();
    late(9);
    EXPECT_EQ(checker->state().received, 0);
    checker.reset();
    late(10);
}

TEST_F(UpdateCheckerTest, aDayLaterItChecksByItself) {
    checker->start();
    EXPECT_EQ(source.reads, 0);
    platform.clock.advance(1min);
    EXPECT_EQ(source.reads, 1);
    answer(feed("41"));
    EXPECT_EQ(checker->lastCheck(), platform.clock.now());
    platform.clock.advance(24h - 1s);
    EXPECT_EQ(source.reads, 1);
    platform.clock.advance(1s);
    EXPECT_EQ(source.reads, 2);
    answer(feed());
    EXPECT_EQ(phase(), Phase::available);
    EXPECT_EQ(found, 1);
}

TEST_F(UpdateCheckerTest, whatIsShownIsntCheckedAgain) {
    checker->start();
    platform.clock.advance(1min);
    answer(feed());
    platform.clock.advance(100h);
    EXPECT_EQ(source.reads, 1);
    checker->dismiss();
    platform.clock.advance(1h);
    EXPECT_EQ(source.reads, 2) << "later means tomorrow, and that has passed";
}

TEST_F(UpdateCheckerTest, failuresOfTheScheduleAreSilentAndTriedAgainInAnHour) {
    checker->start();
    platform.clock.advance(1min);
    source.failFeed(Kind::unreachable);
    settleAll();
    EXPECT_EQ(phase(), Phase::idle);
    EXPECT_EQ(checker->lastCheck(), std::nullopt);
    platform.clock.advance(1h - 1s);
    EXPECT_EQ(source.reads, 1);
    platform.clock.advance(1s);
    EXPECT_EQ(source.reads, 2);
    answer("garbage");
    EXPECT_EQ(phase(), Phase::idle);
    EXPECT_EQ(found, 0);
}

TEST_F(UpdateCheckerTest, nothingIsCheckedWhereItIsntAllowed) {
    EXPECT_TRUE(checker->automaticallyChecks()) << "by default";
    EXPECT_TRUE(checker->setAutomaticallyChecks(false));
    checker->start();
    platform.clock.advance(100h);
    EXPECT_EQ(source.reads, 0);
    checker->check(CheckReason::user);
    EXPECT_EQ(source.reads, 1) << "the user always may";
    answer(feed("41"));
    checker->dismiss();
    EXPECT_TRUE(checker->setAutomaticallyChecks(true));
    platform.clock.advance(25h);
    EXPECT_EQ(source.reads, 2);
}

TEST_F(UpdateCheckerTest, theUserMayJoinAScheduledCheck) {
    checker->start();
    platform.clock.advance(1min);
    checker->check(CheckReason::user);
    EXPECT_EQ(source.reads, 1);
    source.failFeed(Kind::timedOut);
    settleAll();
    EXPECT_EQ(phase(), Phase::failed) << "now somebody looks";
}

TEST_F(UpdateCheckerTest, theLastCheckIsKnownInTheNextProgram) {
    checker->check(CheckReason::user);
    answer(feed("41"));
    const Instant date = platform.clock.now();
    EXPECT_EQ(platform.settings.bytes("SULastCheckTime"), storedDate(date));
    EXPECT_TRUE(checker->setAutomaticallyChecks(false));
    EXPECT_EQ(platform.settings.flag("SUEnableAutomaticChecks"), false);
    platform.clock.advance(1h);
    make();
    EXPECT_EQ(checker->lastCheck(), date);
    EXPECT_FALSE(checker->automaticallyChecks());
    EXPECT_TRUE(checker->setAutomaticallyChecks(true));
    checker->start();
    platform.clock.advance(23h - 1s);
    EXPECT_EQ(source.reads, 1);
    platform.clock.advance(1s);
    EXPECT_EQ(source.reads, 2);
}

TEST_F(UpdateCheckerTest, oddSettingsCountAsAbsent) {
    for (const char *text : {"", "soon", "1e400", "[]"}) {
        platform.settings.values["SULastCheckTime"] = std::string(text);
        make();
        EXPECT_EQ(checker->lastCheck(), std::nullopt) << text;
    }
    platform.settings.values["SULastCheckTime"] = true;
    platform.settings.values["SUEnableAutomaticChecks"] = std::string("no");
    make();
    EXPECT_EQ(checker->lastCheck(), std::nullopt);
    EXPECT_TRUE(checker->automaticallyChecks());
}

TEST_F(UpdateCheckerTest, aDateToComeDoesntStopTheSchedule) {
    platform.settings.values["SULastCheckTime"] = storedDate(platform.clock.now() + 24h * 365 * 10);
    make();
    checker->start();
    platform.clock.advance(1min);
    EXPECT_EQ(source.reads, 1);
}

TEST_F(UpdateCheckerTest, withAFullDiskItIsInForceForThisProgram) {
    platform.settings.isFull = true;
    EXPECT_FALSE(checker->setAutomaticallyChecks(false));
    EXPECT_FALSE(checker->automaticallyChecks());
    EXPECT_FALSE(checker->setAutomaticallyChecks(true));
    checker->start();
    platform.clock.advance(1min);
    answer(feed("41"));
    platform.clock.advance(2h);
    EXPECT_EQ(source.reads, 1) << "not at every hour";
}

TEST_F(UpdateCheckerTest, everyFailureHasItsSentence) {
    std::vector<QString> all;
    for (int kind = 0; kind <= static_cast<int>(Kind::changed); ++kind) {
        const QString text = sentence({static_cast<Kind>(kind), QStringLiteral("why")});
        EXPECT_TRUE(text.endsWith(QLatin1Char('.')) || text.endsWith(QStringLiteral("why"))) << kind;
        EXPECT_THAT(all, testing::Not(testing::Contains(text)));
        all.push_back(text);
    }
}

} // namespace
} // namespace tarnvale
