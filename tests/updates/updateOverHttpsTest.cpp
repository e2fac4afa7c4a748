// The whole way from a feed on a real HTTPS server to a file that may be installed.

#include "platform/background.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "updates/FeedText.h"
#include "updates/HttpsServer.h"
#include "updates/HttpsUpdateSource.h"
#include "updates/TestKey.h"
#include "updates/UpdateChecker.h"

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

class UpdateOverHttpsTest : public testing::Test {
protected:
    void SetUp() override {
        if (const auto obstacle = HttpsServer::obstacle())
            GTEST_SKIP() << *obstacle;
        server = std::make_unique<HttpsServer>();
        source = std::make_unique<HttpsUpdateSource>(
            HttpsUpdateSource::Setup{.feed = QUrl(QString::fromStdString(server->address("/feed.xml"))),
                                     .folder = QString::fromStdString(folder.path()),
                                     .tls = server->trusting(),
                                     .silence = 1s,
                                     .feedTime = 20s});
        checker = std::make_unique<UpdateChecker>(*source, platform.platform(),
                                                  UpdateChecker::Self{"1.0", key.publicKey()});
        server->set("/feed.xml", HttpsServer::file(feedOf(item().text())));
        server->set("/dl/Tarnvale-2.0.deb", HttpsServer::file(content));
    }
    void TearDown() override {
        checker.reset();
        source.reset();
        settle();
        backgroundThreads().waitForDone();
        settle();
    }

    [[nodiscard]] FeedItemText item() const {
        return {.version = "2.0",
                .url = server->address("/dl/Tarnvale-2.0.deb"),
                .length = static_cast<std::int64_t>(content.size()),
                .signature = key.sign(content)};
    }
    void offer(const FeedItemText &text) { server->set("/feed.xml", HttpsServer::file(feedOf(text.text()))); }

    /// Where it comes to rest.
    Phase settledPhase() {
        const auto isAtRest = [this] {
            const Phase phase = checker->state().phase;
            return phase != Phase::checking && phase != Phase::downloading && phase != Phase::verifying;
        };
        EXPECT_TRUE(waitFor(isAtRest, 20s));
        return checker->state().phase;
    }
    Phase check() {
        checker->check(CheckReason::user);
        return settledPhase();
    }
    Phase download() {
        checker->download();
        return settledPhase();
    }
    [[nodiscard]] Kind failure() const { return checker->state().failure.kind; }
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder.path()))
            names.push_back(entry.path().filename());
        return names;
    }

    FakePlatform platform;
    TemporaryFolder folder;
    TestKey key;
    std::string content = std::string(500'000, '\x01') + "end";
    std::unique_ptr<HttpsServer> server;
    std::unique_ptr<HttpsUpdateSource> source;
    std::unique_ptr<UpdateChecker> checker;
    std::int64_t sent = 0;
};

TEST_F(UpdateOverHttpsTest, aNewVersionComesToTheUsersFolder) {
    ASSERT_EQ(check(), Phase::available);
    EXPECT_EQ(checker->state().item->notes, "• Faster");
    ASSERT_EQ(download(), Phase::ready);
    EXPECT_THAT(files(), ElementsAre("Tarnvale-2.0.deb"));
    EXPECT_TRUE(readFile(folder.path("Tarnvale-2.0.deb")) == content);
    checker->openInstaller();
    EXPECT_EQ(settledPhase(), Phase::ready);
    EXPECT_THAT(platform.desktop.opened, ElementsAre("file://" + folder.path("Tarnvale-2.0.deb")));
}

TEST_F(UpdateOverHttpsTest, whatIsSignedWronglyIsDeleted) {
    auto wrong = item();
    wrong.signature = TestKey().sign(content);
    offer(wrong);
    ASSERT_EQ(check(), Phase::available);
    ASSERT_EQ(download(), Phase::failed);
    EXPECT_EQ(failure(), Kind::badSignature);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(UpdateOverHttpsTest, whatWasChangedOnTheServerIsDeleted) {
    std::string changed = content;
    changed.back() = 'D';
    server->set("/dl/Tarnvale-2.0.deb", HttpsServer::file(changed));
    ASSERT_EQ(check(), Phase::available);
    ASSERT_EQ(download(), Phase::failed);
    EXPECT_EQ(failure(), Kind::badSignature);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(UpdateOverHttpsTest, withoutASignatureThereIsNoUpdate) {
    auto unsafe = item();
    unsafe.signature.clear();
    offer(unsafe);
    EXPECT_EQ(check(), Phase::upToDate);
}

TEST_F(UpdateOverHttpsTest, aDowngradeIsNotOffered) {
    auto old = item();
    old.version = "0.9";
    offer(old);
    EXPECT_EQ(check(), Phase::upToDate);
    EXPECT_THAT(server->asked, ElementsAre("/feed.xml"));
}

TEST_F(UpdateOverHttpsTest, aDownloadThatIsCutShortIsDeleted) {
    server->set("/dl/Tarnvale-2.0.deb",
                HttpsServer::saying("HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(content.size()) +
                                    "\r\n\r\n" + content.substr(0, 200'000)));
    ASSERT_EQ(check(), Phase::available);
    ASSERT_EQ(download(), Phase::failed);
    EXPECT_EQ(failure(), Kind::cutShort);
    EXPECT_THAT(files(), IsEmpty());
    server->set("/dl/Tarnvale-2.0.deb", HttpsServer::file(content));
    checker->retry();
    EXPECT_EQ(settledPhase(), Phase::ready);
}

TEST_F(UpdateOverHttpsTest, aGigabyteInsteadOfWhatWasAnnouncedIsRefused) {
    server->set("/dl/Tarnvale-2.0.deb",
                HttpsServer::endless("HTTP/1.1 200 OK\r\nContent-Length: 1073741824\r\n\r\n", sent));
    ASSERT_EQ(check(), Phase::available);
    ASSERT_EQ(download(), Phase::failed);
    EXPECT_EQ(failure(), Kind::tooLarge);
    EXPECT_LT(sent, 16 << 20);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(UpdateOverHttpsTest, aGigabyteThatNeverComesIsAFailure) {
    auto large = item();
    large.length = 1 << 30;
    offer(large);
    ASSERT_EQ(check(), Phase::available);
    ASSERT_EQ(download(), Phase::failed);
    EXPECT_TRUE(failure() == Kind::cutShort || failure() == Kind::noRoom);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(UpdateOverHttpsTest, aFeedWithoutEndIsCutOff) {
    server->set("/feed.xml", HttpsServer::endless("HTTP/1.1 200 OK\r\n\r\n<rss>", sent));
    ASSERT_EQ(check(), Phase::failed);
    EXPECT_EQ(failure(), Kind::tooLarge);
}

TEST_F(UpdateOverHttpsTest, aFeedThatIsNoneIsAFailure) {
    server->set("/feed.xml", HttpsServer::file("<rss><channel>"));
    ASSERT_EQ(check(), Phase::failed);
    EXPECT_EQ(failure(), Kind::badFeed);
    server->set("/feed.xml", HttpsServer::file(feedOf(item().text())));
    checker->retry();
    EXPECT_EQ(settledPhase(), Phase::available);
}

TEST_F(UpdateOverHttpsTest, aServerThatHangsIsAFailure) {
    server->set("/feed.xml", HttpsServer::silent());
    ASSERT_EQ(check(), Phase::failed);
    EXPECT_EQ(failure(), Kind::timedOut);
}

TEST_F(UpdateOverHttpsTest, aDownloadCanBeCancelled) {
    auto large = item();
    large.length = 50 << 20;
    offer(large);
    server->set("/dl/Tarnvale-2.0.deb", HttpsServer::endless("HTTP/1.1 200 OK\r\n\r\n", sent));
    ASSERT_EQ(check(), Phase::available);
    checker->download();
    ASSERT_TRUE(waitFor([this] { return checker->state().received > 0; }));
    EXPECT_THAT(files(), ElementsAre("Tarnvale-2.0.deb.part"));
    checker->cancel();
    EXPECT_EQ(checker->state().phase, Phase::available);
    EXPECT_THAT(files(), IsEmpty());
}

} // namespace
} // namespace tarnvale
