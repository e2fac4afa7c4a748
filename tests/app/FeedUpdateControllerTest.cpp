#include "app/FeedUpdateController.h"

#include "platform/background.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "updates/FeedText.h"
#include "updates/HttpsServer.h"
#include "updates/TestKey.h"

#include <QQmlEngine>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using Phase = UpdateState::Phase;

class FeedUpdateControllerTest : public testing::Test {
protected:
    void SetUp() override {
        if (const auto obstacle = HttpsServer::obstacle())
            GTEST_SKIP() << *obstacle;
        server = std::make_unique<HttpsServer>();
        offer("2.0");
    }
    void TearDown() override {
        controller.reset();
        settle();
        backgroundThreads().waitForDone();
        settle();
    }
    void offer(const std::string &version) {
        server->set("/feed.xml", HttpsServer::file(feedOf(
                                     FeedItemText{.version = version, .signature = key.sign("x")}.text())));
    }
    void make(const std::string &build = {}) {
        const BundleInformation bundle{"1.0", build, " " + server->address("/feed.xml") + "\t",
                                       key.publicKey()};
        auto setup = feedSetup(bundle);
        setup.tls = server->trusting();
        setup.folder = QString::fromStdString(folder.path());
        controller = std::make_unique<FeedUpdateController>(bundle, platform.platform(), engine, setup);
    }
    bool comesTo(Phase phase) {
        return waitFor([this, phase] { return controller->checker().state().phase == phase; });
    }

    FakePlatform platform;
    TemporaryFolder folder;
    QQmlEngine engine;
    TestKey key;
    std::unique_ptr<HttpsServer> server;
    std::unique_ptr<FeedUpdateController> controller;
};

TEST_F(FeedUpdateControllerTest, whoAsksSeesTheAnswer) {
    make();
    EXPECT_FALSE(controller->window().isOpen());
    controller->checkForUpdates();
    EXPECT_TRUE(controller->window().isOpen()) << "while it is looked for, too";
    ASSERT_TRUE(comesTo(Phase::available));
    EXPECT_EQ(controller->lastUpdateCheckDate(), platform.clock.now());
    offer("0.9");
    controller->checkForUpdates();
    ASSERT_TRUE(comesTo(Phase::upToDate));
    EXPECT_TRUE(controller->window().isOpen());
}

TEST_F(FeedUpdateControllerTest, whatIsFoundByItselfIsShown) {
    make();
    platform.clock.advance(1min);
    ASSERT_TRUE(comesTo(Phase::available));
    EXPECT_TRUE(controller->window().isOpen());
}

TEST_F(FeedUpdateControllerTest, nothingNewIsNotShown) {
    offer("1.0");
    make();
    platform.clock.advance(1min);
    ASSERT_TRUE(waitFor([this] { return controller->lastUpdateCheckDate().has_value(); }));
    EXPECT_FALSE(controller->window().isOpen());
}

TEST_F(FeedUpdateControllerTest, whereBuildsAreCountedTheyDecide) {
    offer("8");
    make("7");
    controller->checkForUpdates();
    ASSERT_TRUE(comesTo(Phase::available));
    offer("7");
    controller->checkForUpdates();
    ASSERT_TRUE(comesTo(Phase::upToDate));
}

TEST_F(FeedUpdateControllerTest, theChoiceIsStored) {
    make();
    EXPECT_TRUE(controller->automaticallyChecksForUpdates());
    EXPECT_TRUE(controller->setAutomaticallyChecksForUpdates(false));
    make();
    EXPECT_FALSE(controller->automaticallyChecksForUpdates());
    platform.clock.advance(48h);
    settle();
    EXPECT_EQ(controller->checker().state().phase, Phase::idle);
    EXPECT_TRUE(server->asked.empty());
}

TEST(FeedSetup, takesWhatTheBundleSays) {
    const auto setup = feedSetup({"1", "", "\t https://updates.example/feed.xml ", "k"});
    EXPECT_EQ(setup.feed.toString(), QStringLiteral("https://updates.example/feed.xml"));
    EXPECT_FALSE(setup.folder.isEmpty());
    EXPECT_TRUE(setup.folder.startsWith(QLatin1Char('/')));
}

} // namespace
} // namespace tarnvale
