#include "probes/HealthCheck.h"

#include "probes/ScriptedServer.h"
#include "support/ManualClock.h"

#include <QCoreApplication>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sys/socket.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using HealthCheck::Result;

constexpr auto patience = 20s;       // a check that isn't meant to time out
constexpr auto shortPatience = 60ms; // one that is

Result outcome(const QFuture<Result> &future) {
    EXPECT_TRUE(waitFor([&] { return future.isFinished(); }, 30s));
    EXPECT_EQ(future.resultCount(), 1);
    return future.resultCount() == 1 ? future.result() : Result{Health::responding(-1), -1};
}

Result check(std::int64_t port, const std::string &path = "/", std::chrono::milliseconds timeout = patience) {
    return outcome(HealthCheck::check(port, path, timeout));
}

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

/// A port of 127.0.0.1 on which nothing listens.
std::uint16_t closedPort() {
    return ScriptedServer(nullptr).port();
}

/// A listener whose queue is full, so that connecting to it waits for ever.
class FullListener {
public:
    explicit FullListener(const QHostAddress &address) {
        m_server.setListenBacklogSize(0);
        if (!m_server.listen(address))
            return;
        m_server.pauseAccepting();
        constexpr int more = 4;
        for (int i = 0; i < more; ++i) {
            m_clients.push_back(std::make_unique<QTcpSocket>());
            m_clients.back()->connectToHost(address, m_server.serverPort());
        }
        waitFor([&] { return m_clients[0]->state() == QTcpSocket::ConnectedState; }, 1s);
        settle();
    }

    [[nodiscard]] bool isFull() const {
        return std::ranges::any_of(
            m_clients, [](const auto &client) { return client->state() == QTcpSocket::ConnectingState; });
    }
    [[nodiscard]] std::uint16_t port() const { return m_server.serverPort(); }

private:
    QTcpServer m_server;
    std::vector<std::unique_ptr<QTcpSocket>> m_clients;
};

TEST(HealthCheckTest, theRequestIsExactlyThis) {
    ScriptedServer server(ScriptedServer::saying("HTTP/1.0 204 No Content\r\n\r\n"));
    const Result result = check(server.port(), "/up?x=1");
    EXPECT_EQ(server.request, "GET /up?x=1 HTTP/1.0\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    EXPECT_EQ(result.health, Health::responding(204));
    EXPECT_TRUE(result.milliseconds.has_value());
    EXPECT_GE(result.milliseconds.value_or(-1), 0);
}

TEST(HealthCheckTest, aBadPathAsksForTheRoot) {
    const std::string longest = "/" + std::string(199, 'a');
    for (const auto &[path, asked] : std::vector<std::pair<std::string, std::string>>{
             {"health", "/"},
             {"/a b", "/"},
             {"/a\tb", "/"},
             {"/é", "/"},
             {"/x HTTP/1.0\r\nX: y", "/"},
             {"", "/"},
             {longest, longest},
             {longest + "a", "/"},
         }) {
        ScriptedServer server(ScriptedServer::saying("HTTP/1.1 200 OK\r\n\r\n"));
        EXPECT_EQ(check(server.port(), path).health, Health::responding(200));
        EXPECT_TRUE(server.request.starts_with("GET " + asked + " HTTP/1.0\r\n")) << server.request;
    }
}

TEST(HealthCheckTest, aServerErrorHasATimeToo) {
    ScriptedServer server(ScriptedServer::saying("HTTP/1.1 503 Service Unavailable\r\n\r\n"));
    const Result result = check(server.port());
    EXPECT_EQ(result.health, Health::serverError(503));
    EXPECT_TRUE(result.milliseconds.has_value());
}

TEST(HealthCheckTest, oneConnectionIsMadeAndThenClosed) {
    ScriptedServer server(ScriptedServer::saying("HTTP/1.1 200 OK\r\n\r\n"));
    check(server.port());
    EXPECT_TRUE(waitFor([&] { return server.closed == 1; }));
    EXPECT_EQ(server.connections, 1);
}

TEST(HealthCheckTest, aGreetingThatIsNoHttpDecidesAtOnce) {
    ScriptedServer server(nullptr);
    server.greetWith(ScriptedServer::saying("SSH-2.0-OpenSSH_9.2\r\n"));
    EXPECT_EQ(check(server.port()), (Result{Health::unknown(), std::nullopt}));
}

TEST(HealthCheckTest, aServerThatDripsIsJudgedByItsFirstBytes) {
    ScriptedServer server(ScriptedServer::saying("H"));
    EXPECT_EQ(check(server.port()).health, Health::unknown());
}

TEST(HealthCheckTest, ofAMegabyteOfHeadersOnlyTheStartIsRead) {
    ScriptedServer server(
        ScriptedServer::saying("HTTP/1.1 200 OK\r\nX: " + std::string(1'000'000, 'x') + "\r\n\r\n"));
    EXPECT_EQ(check(server.port()).health, Health::responding(200));
    EXPECT_TRUE(waitFor([&] { return server.closed == 1; }));
}

TEST(HealthCheckTest, aServerThatClosesWithoutAWordIsUnknown) {
    ScriptedServer server([](QTcpSocket &client) { client.close(); });
    EXPECT_EQ(check(server.port()), (Result{Health::unknown(), std::nullopt}));
}

TEST(HealthCheckTest, aServerThatResetsIsUnknown) {
    ScriptedServer server([](QTcpSocket &client) {
        const linger reset{.l_onoff = 1, .l_linger = 0};
        setsockopt(static_cast<int>(client.socketDescriptor()), SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
        client.abort();
    });
    EXPECT_EQ(check(server.port()), (Result{Health::unknown(), std::nullopt}));
}

TEST(HealthCheckTest, aServerThatStaysSilentDoesNotRespond) {
    ScriptedServer server(nullptr);
    EXPECT_EQ(check(server.port(), "/", shortPatience), (Result{Health::noResponse(), std::nullopt}));
    EXPECT_TRUE(waitFor([&] { return server.closed == 1; }));
}

TEST(HealthCheckTest, aServerThatNeverAcceptsDoesNotRespond) {
    const FullListener server(QHostAddress::LocalHost);
    if (!server.isFull())
        GTEST_SKIP() << "this kernel goes on accepting";
    EXPECT_EQ(check(server.port(), "/", shortPatience).health, Health::noResponse());
}

TEST(HealthCheckTest, aClosedPortIsUnknown) {
    const Result result = check(closedPort());
    EXPECT_EQ(result, (Result{Health::unknown(), std::nullopt}));
    EXPECT_EQ(result.health.summary(), "Not HTTP or unknown");
}

TEST(HealthCheckTest, aPortOutOfRangeIsTheNearestInRange) {
    for (const std::int64_t port : {std::int64_t{-1}, std::int64_t{0}, INT64_MIN})
        EXPECT_EQ(check(port).health, Health::unknown()) << port;
    ScriptedServer last(ScriptedServer::saying("HTTP/1.1 200 OK\r\n\r\n"), QHostAddress::LocalHost, 65535);
    if (!last.isListening())
        GTEST_SKIP() << "port 65535 is in use";
    EXPECT_EQ(check(70000).health, Health::responding(200));
    EXPECT_EQ(check(INT64_MAX).health, Health::responding(200));
}

TEST(HealthCheckTest, aServerOnEitherFamilyIsFound) {
    for (const auto family : {QHostAddress::LocalHost, QHostAddress::LocalHostIPv6, QHostAddress::Any}) {
        ScriptedServer server(ScriptedServer::saying("HTTP/1.1 200 OK\r\n\r\n"), QHostAddress(family));
        if (!server.isListening())
            GTEST_SKIP() << "no IPv6 here";
        EXPECT_EQ(check(server.port()).health, Health::responding(200)) << family;
        EXPECT_EQ(server.connections, 1) << family;
    }
}

TEST(HealthCheckTest, aFamilyThatHangsDoesNotHideTheOther) {
    const FullListener hanging(QHostAddress::LocalHostIPv6);
    if (!hanging.isFull())
        GTEST_SKIP() << "no IPv6 here, or this kernel goes on accepting";
    ScriptedServer server(ScriptedServer::saying("HTTP/1.1 200 OK\r\n\r\n"), QHostAddress::LocalHost,
                          hanging.port());
    if (!server.isListening())
        GTEST_SKIP() << "the same port is in use on the other address";
    EXPECT_EQ(check(server.port()).health, Health::responding(200));
}

TEST(HealthCheckTest, manyChecksRunSideBySideAndLeaveNothingOpen) {
    ScriptedServer quick(nullptr);
    quick.greetWith(ScriptedServer::saying("HTTP/1.1 200 OK\r\n\r\n"));
    check(quick.port());
    ASSERT_TRUE(waitFor([&] { return quick.closed == quick.connections; }));
    const std::size_t before = openDescriptors();
    const auto children = QCoreApplication::instance()->children().size();
    std::vector<QFuture<Result>> futures;
    for (int i = 0; i < 50; ++i)
        futures.push_back(HealthCheck::check(quick.port(), "/", patience));
    for (const auto &future : futures)
        EXPECT_EQ(outcome(future).health, Health::responding(200));
    EXPECT_TRUE(waitFor([&] { return quick.closed == quick.connections; }));
    settle();
    EXPECT_EQ(QCoreApplication::instance()->children().size(), children);
    EXPECT_TRUE(waitFor([&] { return openDescriptors() <= before; })) << openDescriptors() << " > " << before;
}

TEST(HealthCheckTest, theResultComesOnTheMainThread) {
    ScriptedServer server(ScriptedServer::saying("HTTP/1.1 200 OK\r\n\r\n"));
    QThread *thread = nullptr;
    HealthCheck::check(server.port(), "/", patience).then([&](const Result &) {
        thread = QThread::currentThread();
    });
    EXPECT_TRUE(waitFor([&] { return thread != nullptr; }));
    EXPECT_EQ(thread, QCoreApplication::instance()->thread());
}

/// The application goes away while checks wait: each still comes to have a result. Exits with 0 then.
[[noreturn]] void endWithChecksInFlight() {
    ScriptedServer silent(nullptr);
    const auto connected = HealthCheck::check(silent.port(), "/", patience);
    waitFor([&] { return !silent.request.empty(); });
    const auto connecting = HealthCheck::check(silent.port(), "/", patience);
    const bool werePending = !connected.isFinished() && !connecting.isFinished();
    QCoreApplication::instance()->~QCoreApplication();
    const bool areDone = connected.resultCount() == 1 && connecting.resultCount() == 1 &&
                         connected.isFinished() && connecting.isFinished();
    std::_Exit(werePending && areDone ? 0 : 1);
}

TEST(HealthCheckDeathTest, checksInFlightEndWithTheApplication) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(endWithChecksInFlight(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace tarnvale
