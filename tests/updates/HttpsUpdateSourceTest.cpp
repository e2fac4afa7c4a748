#include "updates/HttpsUpdateSource.h"

#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"
#include "updates/FeedText.h"
#include "updates/HttpsServer.h"
#include "updates/parseAppcast.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Kind = UpdateFailure::Kind;

/// No file grows beyond `bytes` while this lives, as on a full disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) : m_handler(signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before{};
    sighandler_t m_handler;
};

class HttpsUpdateSourceTest : public testing::Test {
protected:
    void SetUp() override {
        if (const auto obstacle = HttpsServer::obstacle())
            GTEST_SKIP() << *obstacle;
        server = std::make_unique<HttpsServer>();
    }

    [[nodiscard]] HttpsUpdateSource::Setup setup(const std::string &feed) const {
        return {.feed = QUrl(QString::fromStdString(feed)),
                .folder = QString::fromStdString(folder.path()),
                .tls = server->trusting(),
                .silence = 500ms,
                .feedTime = 20s};
    }
    template<typename Result> [[nodiscard]] Result await(QFuture<Result> future) {
        EXPECT_TRUE(waitFor([&future] { return future.isFinished(); }, 20s));
        return future.result();
    }
    /// The feed at `address`, or why there is none.
    [[nodiscard]] UpdateSource::Feed read(const std::string &address) {
        HttpsUpdateSource source(setup(address));
        return await(source.readFeed());
    }
    [[nodiscard]] Kind failureOf(const std::string &address) {
        const auto feed = read(address);
        EXPECT_FALSE(feed.has_value());
        return feed ? Kind::cancelled : feed.error().kind;
    }
    /// What becomes of a download of so many bytes, until the next one.
    [[nodiscard]] UpdateSource::Download fetch(const std::string &address, std::int64_t length) {
        downloads = std::make_unique<HttpsUpdateSource>(setup(address));
        UpdateItem item;
        item.url = address;
        item.length = length;
        return await(
            downloads->download(item, [this](std::int64_t received) { progress.push_back(received); }));
    }
    [[nodiscard]] Kind failureOfDownload(const std::string &address, std::int64_t length) {
        const auto part = fetch(address, length);
        EXPECT_FALSE(part.has_value());
        return part ? Kind::cancelled : part.error().kind;
    }
    [[nodiscard]] std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(folder.path()))
            names.push_back(entry.path().filename());
        return names;
    }

    TemporaryFolder folder;
    std::unique_ptr<HttpsServer> server;
    std::unique_ptr<HttpsUpdateSource> downloads;
    std::vector<std::int64_t> progress;
    std::int64_t sent = 0;
};

TEST_F(HttpsUpdateSourceTest, theFeedComesAsItIs) {
    server->set("/feed.xml", HttpsServer::file("<rss/>"));
    const auto feed = read(server->address("/feed.xml"));
    ASSERT_TRUE(feed);
    EXPECT_EQ(*feed, "<rss/>");
    EXPECT_THAT(server->lastRequest, HasSubstr("User-Agent: Tarnvale/"));
    EXPECT_THAT(server->lastRequest, HasSubstr("Accept-Encoding: identity"));
    EXPECT_THAT(server->lastRequest, Not(HasSubstr("Cookie")));
}

TEST_F(HttpsUpdateSourceTest, onlyHttpsIsSpoken) {
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    const std::string address = "://localhost:" + std::to_string(plain.serverPort()) + "/";
    for (const std::string &url : {"http" + address, "ftp" + address, std::string("file:///etc/passwd"),
                                   std::string(), std::string("https:///x"), "HTTP" + address})
        EXPECT_EQ(failureOf(url), Kind::insecure) << url;
    settle();
    EXPECT_FALSE(plain.hasPendingConnections());
}

TEST_F(HttpsUpdateSourceTest, aRedirectionToHttpsIsFollowed) {
    server->set("/old", HttpsServer::redirecting("/new"));
    server->set("/new", HttpsServer::file("here"));
    const auto feed = read(server->address("/old"));
    ASSERT_TRUE(feed);
    EXPECT_EQ(*feed, "here");
}

TEST_F(HttpsUpdateSourceTest, aRedirectionToHttpIsRefused) {
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    const std::string target = "http://localhost:" + std::to_string(plain.serverPort()) + "/feed.xml";
    server->set("/feed.xml", HttpsServer::redirecting(target));
    EXPECT_EQ(failureOf(server->address("/feed.xml")), Kind::insecure);
    EXPECT_EQ(failureOfDownload(server->address("/feed.xml"), 10), Kind::insecure);
    settle();
    EXPECT_FALSE(plain.hasPendingConnections());
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(HttpsUpdateSourceTest, otherRedirectionsAreRefused) {
    server->set("/loop", HttpsServer::redirecting("/loop"));
    server->set("/file", HttpsServer::redirecting("file:///etc/passwd"));
    server->set("/none", HttpsServer::saying("HTTP/1.1 302 Found\r\nContent-Length: 0\r\n\r\n"));
    EXPECT_EQ(failureOf(server->address("/loop")), Kind::badAnswer);
    EXPECT_LE(server->asked.size(), 8u);
    EXPECT_NE(failureOf(server->address("/file")), Kind::cancelled);
    EXPECT_EQ(failureOf(server->address("/none")), Kind::badAnswer);
}

TEST_F(HttpsUpdateSourceTest, aCertificateThatNobodyTrustsIsRefused) {
    server->set("/feed.xml", HttpsServer::file("<rss/>"));
    HttpsUpdateSource::Setup distrusting = setup(server->address("/feed.xml"));
    distrusting.tls = QSslConfiguration::defaultConfiguration();
    HttpsUpdateSource source(distrusting);
    const auto feed = await(source.readFeed());
    ASSERT_FALSE(feed);
    EXPECT_EQ(feed.error().kind, Kind::insecure);
    EXPECT_THAT(server->asked, IsEmpty());
}

TEST_F(HttpsUpdateSourceTest, aCertificateOfAnotherHostIsRefused) {
    server->set("/feed.xml", HttpsServer::file("<rss/>"));
    std::string address = server->address("/feed.xml");
    address.replace(address.find("localhost"), 9, "127.0.0.1");
    EXPECT_EQ(failureOf(address), Kind::insecure);
    EXPECT_THAT(server->asked, IsEmpty());
}

TEST_F(HttpsUpdateSourceTest, badAnswersAreFailures) {
    const std::vector<std::pair<std::string, Kind>> rows{
        {"HTTP/1.1 404 Not Found\r\nContent-Length: 3\r\n\r\nabc", Kind::badAnswer},
        {"HTTP/1.1 500 Oops\r\nContent-Length: 3\r\n\r\nabc", Kind::badAnswer},
        {"HTTP/1.1 204 No Content\r\n\r\n", Kind::badAnswer},
        {"HTTP/1.1 206 Partial Content\r\nContent-Length: 3\r\n\r\nabc", Kind::badAnswer},
        {"HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: 0\r\n\r\n",
         Kind::badAnswer},
        {"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc", Kind::cutShort},
        {"HTTP/1.1 200 OK\r\nContent-Length: 1073741824\r\n\r\nabc", Kind::tooLarge},
        {"", Kind::unreachable},
    };
    for (const auto &[answer, kind] : rows) {
        server->set("/feed.xml", HttpsServer::saying(answer));
        EXPECT_EQ(failureOf(server->address("/feed.xml")), kind) << answer;
    }
    server->set("/feed.xml", HttpsServer::saying("SSH-2.0-OpenSSH\r\n"));
    EXPECT_NE(failureOf(server->address("/feed.xml")), Kind::cancelled) << "no HTTP";
}

TEST_F(HttpsUpdateSourceTest, aServerThatIsGoneIsAFailure) {
    const std::string address = server->address("/feed.xml");
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const auto port = closed.serverPort();
    closed.close();
    EXPECT_EQ(failureOf("https://localhost:" + std::to_string(port) + "/"), Kind::unreachable);
}

TEST_F(HttpsUpdateSourceTest, aServerThatHangsIsAFailure) {
    server->set("/feed.xml", HttpsServer::silent());
    EXPECT_EQ(failureOf(server->address("/feed.xml")), Kind::timedOut);
    server->set("/a.deb",
                [](QSslSocket &client) { client.write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc"); });
    EXPECT_EQ(failureOfDownload(server->address("/a.deb"), 10), Kind::timedOut);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(HttpsUpdateSourceTest, aServerWithoutTlsIsAFailure) {
    QTcpServer mute;
    ASSERT_TRUE(mute.listen(QHostAddress::LocalHost));
    EXPECT_EQ(failureOf("https://localhost:" + std::to_string(mute.serverPort()) + "/"), Kind::timedOut);
}

TEST_F(HttpsUpdateSourceTest, aFeedThatDripsForEverIsAFailure) {
    server->set("/feed.xml", [](QSslSocket &client) {
        client.write("HTTP/1.1 200 OK\r\n\r\n");
        auto *timer = new QTimer(&client);
        QObject::connect(timer, &QTimer::timeout, &client, [&client] { client.write("x"); });
        timer->start(20);
    });
    auto impatient = setup(server->address("/feed.xml"));
    impatient.feedTime = 700ms;
    HttpsUpdateSource source(impatient);
    const auto feed = await(source.readFeed());
    ASSERT_FALSE(feed);
    EXPECT_EQ(feed.error().kind, Kind::timedOut);
}

TEST_F(HttpsUpdateSourceTest, anEndlessFeedIsCutOff) {
    server->set("/feed.xml", HttpsServer::endless("HTTP/1.1 200 OK\r\n\r\n", sent));
    EXPECT_EQ(failureOf(server->address("/feed.xml")), Kind::tooLarge);
    EXPECT_LT(sent, 4 * mostFeedBytes);
}

TEST_F(HttpsUpdateSourceTest, aFileComesWhole) {
    const std::string content(300'000, 'u');
    server->set("/dl/app.deb?x=1", HttpsServer::file(content));
    const auto part = fetch(server->address("/dl/app.deb?x=1"), 300'000);
    ASSERT_TRUE(part);
    EXPECT_EQ((*part)->path().toStdString(), folder.path("app.deb.part"));
    EXPECT_TRUE(readFile(folder.path("app.deb.part")) == content);
    ASSERT_FALSE(progress.empty());
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_EQ(progress.back(), 300'000);
}

TEST_F(HttpsUpdateSourceTest, aFileIsGoneWithWhoWantedIt) {
    server->set("/app.deb", HttpsServer::file("abc"));
    {
        const auto part = fetch(server->address("/app.deb"), 3);
        ASSERT_TRUE(part);
    }
    EXPECT_THAT(files(), IsEmpty());
    const auto part = fetch(server->address("/app.deb"), 3);
    ASSERT_TRUE(part);
    downloads.reset();
    EXPECT_THAT(files(), IsEmpty()) << "or with its source";
}

TEST_F(HttpsUpdateSourceTest, aFileOfAnotherSizeIsAFailure) {
    server->set("/app.deb", HttpsServer::file("abcdef"));
    EXPECT_EQ(failureOfDownload(server->address("/app.deb"), 7), Kind::cutShort);
    EXPECT_EQ(failureOfDownload(server->address("/app.deb"), 5), Kind::tooLarge);
    server->set("/app.deb", HttpsServer::saying("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\nabc"));
    EXPECT_EQ(failureOfDownload(server->address("/app.deb"), 6), Kind::cutShort);
    server->set("/app.deb", HttpsServer::saying("HTTP/1.1 200 OK\r\n\r\nabc"));
    EXPECT_EQ(failureOfDownload(server->address("/app.deb"), 6), Kind::cutShort);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(HttpsUpdateSourceTest, anEndlessFileIsCutOff) {
    server->set("/app.deb", HttpsServer::endless("HTTP/1.1 200 OK\r\n\r\n", sent));
    EXPECT_EQ(failureOfDownload(server->address("/app.deb"), 100'000), Kind::tooLarge);
    EXPECT_LT(sent, 16 << 20);
    EXPECT_LE(progress.empty() ? 0 : progress.back(), 100'000);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(HttpsUpdateSourceTest, aPackedAnswerIsNotUnpacked) {
    server->set("/app.deb",
                HttpsServer::saying("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 3"
                                    "\r\nConnection: close\r\n\r\nabc"));
    const auto part = fetch(server->address("/app.deb"), 3);
    ASSERT_TRUE(part);
    EXPECT_EQ(readFile((*part)->path().toStdString()), "abc");
}

TEST_F(HttpsUpdateSourceTest, aFullDiskIsAFailure) {
    server->set("/app.deb", HttpsServer::file(std::string(300'000, 'u')));
    const FullDisk disk(100'000);
    const auto part = fetch(server->address("/app.deb"), 300'000);
    ASSERT_FALSE(part);
    EXPECT_EQ(part.error().kind, Kind::cannotSave);
    EXPECT_THAT(part.error().detail.toStdString(), HasSubstr("app.deb.part: "));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(HttpsUpdateSourceTest, cancellingEndsItAtOnce) {
    server->set("/feed.xml", HttpsServer::silent());
    HttpsUpdateSource source(setup(server->address("/feed.xml")));
    const auto reading = source.readFeed();
    source.cancel();
    ASSERT_TRUE(reading.isFinished());
    EXPECT_EQ(reading.result().error().kind, Kind::cancelled);

    server->set("/app.deb", HttpsServer::endless("HTTP/1.1 200 OK\r\n\r\n", sent));
    UpdateItem item;
    item.url = server->address("/app.deb");
    item.length = mostUpdateBytes;
    bool hasBegun = false;
    const auto loading = source.download(item, [&hasBegun](std::int64_t) { hasBegun = true; });
    ASSERT_TRUE(waitFor([&hasBegun] { return hasBegun; }));
    EXPECT_THAT(files(), ElementsAre("app.deb.part"));
    source.cancel();
    ASSERT_TRUE(loading.isFinished());
    EXPECT_EQ(loading.result().error().kind, Kind::cancelled);
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(HttpsUpdateSourceTest, itsEndEndsWhatIsUnderWay) {
    server->set("/app.deb", HttpsServer::endless("HTTP/1.1 200 OK\r\n\r\n", sent));
    auto source = std::make_unique<HttpsUpdateSource>(setup(server->address("/feed.xml")));
    UpdateItem item;
    item.url = server->address("/app.deb");
    item.length = mostUpdateBytes;
    bool hasBegun = false;
    const auto loading = source->download(item, [&hasBegun](std::int64_t) { hasBegun = true; });
    ASSERT_TRUE(waitFor([&hasBegun] { return hasBegun; }));
    source.reset();
    EXPECT_TRUE(loading.isFinished());
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(HttpsUpdateSourceTest, aNewQuestionEndsTheOldOne) {
    server->set("/feed.xml", HttpsServer::silent());
    HttpsUpdateSource source(setup(server->address("/feed.xml")));
    const auto first = source.readFeed();
    const auto second = source.readFeed();
    EXPECT_TRUE(first.isFinished());
    EXPECT_FALSE(second.isFinished());
}

} // namespace
} // namespace tarnvale
