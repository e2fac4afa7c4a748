#include "discovery/isDevPort.h"
#include "real/RealProcess.h"
#include "real/servers.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::MatchesRegex;
using testing::SizeIs;

Instant wallClock() {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

/// A project folder with the server's own folder in it.
struct Project {
    explicit Project(const std::string &inner = "shop") : folder(temporary.path(inner)) {
        std::filesystem::create_directories(folder);
    }

    TemporaryFolder temporary;
    std::string folder;
};

/// What is known of a server when it is started; the rest of its record follows from that.
struct Expected {
    std::string command;
    std::string args;
    bool isExposed = false;
};

/// Starts a server in `project` and compares its whole record, and its row in the printed table, with what
/// was started.
void expectRecord(const std::vector<std::string> &words, const ReservedPort &port, const Project &project,
                  const Expected &expected, std::size_t sockets = 1) {
    const Instant before = wallClock();
    const RealProcess server(words, {.folder = project.folder});
    ASSERT_TRUE(awaitListeners(port.number(), sockets)) << server.output();

    const auto records = scanPort(port.number());
    ASSERT_THAT(records, SizeIs(1));
    const ListeningPort &record = records.front();
    EXPECT_EQ(record.pid, server.pid());
    EXPECT_EQ(record.id(), std::to_string(server.pid()) + ":" + port.text());
    EXPECT_EQ(record.command, expected.command);
    EXPECT_EQ(record.args, expected.args);
    EXPECT_EQ(record.cwd, std::filesystem::canonical(project.folder));
    EXPECT_EQ(record.isExposed, expected.isExposed);
    ASSERT_TRUE(record.startedAt);
    // A start is told from two clocks, which a busy machine doesn't read at one time.
    EXPECT_GE(*record.startedAt, before - 3s);
    EXPECT_LE(*record.startedAt, wallClock() + 3s);
    EXPECT_GE(record.cpu.value_or(-1), 0);
    EXPECT_GT(record.memoryKB.value_or(0), 1000);
    EXPECT_EQ(record.service, std::nullopt);
    EXPECT_EQ(record.container, std::nullopt);
    EXPECT_EQ(record.workerPID, std::nullopt);

    EXPECT_EQ(record.projectName(), "shop");
    EXPECT_TRUE(record.hasProject());
    EXPECT_EQ(record.title(), "shop");
    EXPECT_TRUE(isDevPort(record));
    EXPECT_FALSE(record.isNoise());
    EXPECT_FALSE(record.isDockerProxy());

    const ProgramRun table = tarnctl({"ports"});
    EXPECT_EQ(table.status, 0);
    EXPECT_EQ(table.error, "");
    EXPECT_THAT(rowsOf(table.output, port.number()),
                ElementsAre(MatchesRegex(":" + port.text() + " +" + std::to_string(server.pid()) +
                                         " +[0-9]+s +shop +" + expected.command +
                                         (expected.isExposed ? "  .network." : ""))));
}

TEST(RealWebServersTest, pythonOnLoopbackHasAllItsFields) {
    TARNVALE_NEEDS_PROGRAM(python, "python3");
    const Project project;
    const ReservedPort port;
    expectRecord(
        {python, "-m", "http.server", port.text(), "--bind", "127.0.0.1"}, port, project,
        {.command = "python3", .args = python + " -m http.server " + port.text() + " --bind 127.0.0.1"});
}

TEST(RealWebServersTest, pythonOnAllAddressesIsExposed) {
    TARNVALE_NEEDS_PROGRAM(python, "python3");
    const Project project;
    const ReservedPort port;
    expectRecord({python, "-m", "http.server", port.text(), "--bind", "0.0.0.0"}, port, project,
                 {.command = "python3",
                  .args = python + " -m http.server " + port.text() + " --bind 0.0.0.0",
                  .isExposed = true});
}

TEST(RealWebServersTest, oneSocketForBothAddressFamiliesIsOneRecord) {
    TARNVALE_NEEDS_PROGRAM(python, "python3");
    if (!hasIPv6())
        GTEST_SKIP() << "this machine has no IPv6";
    const Project project;
    const ReservedPort port;
    expectRecord(
        {python, "-m", "http.server", port.text()}, port, project,
        {.command = "python3", .args = python + " -m http.server " + port.text(), .isExposed = true});
}

TEST(RealWebServersTest, nodeIsNamedByItsProgramAndNotByItsMainThread) {
    TARNVALE_NEEDS_PROGRAM(node, "node");
    const Project project;
    const ReservedPort port;
    project.temporary.write("shop/server.js",
                            "require('http').createServer((request, answer) => answer.end('shop'))"
                            ".listen(Number(process.argv[2]), '127.0.0.1');\n");
    expectRecord({node, "server.js", port.text()}, port, project,
                 {.command = "node", .args = node + " server.js " + port.text()});
}

/// Starts Node with two listeners on one port: 127.0.0.1, and `second`, an IPv6 address without IPv4 behind
/// it.
void expectTwoFamilies(const std::string &second, bool isExposed) {
    TARNVALE_NEEDS_PROGRAM(node, "node");
    if (!hasIPv6())
        GTEST_SKIP() << "this machine has no IPv6";
    const Project project;
    const ReservedPort port;
    project.temporary.write("shop/server.js",
                            "const [, , port, second] = process.argv;\n"
                            "for (const host of ['127.0.0.1', second])\n"
                            "    require('http').createServer().listen({port: Number(port), host, ipv6Only: "
                            "host !== '127.0.0.1'});\n");
    expectRecord({node, "server.js", port.text(), second}, port, project,
                 {.command = "node",
                  .args = node + " server.js " + port.text() + " " + second,
                  .isExposed = isExposed},
                 2);
}

TEST(RealWebServersTest, loopbackInBothFamiliesIsOneRecordThatIsNotExposed) {
    expectTwoFamilies("::1", false);
}

TEST(RealWebServersTest, loopbackInOneFamilyAndEverywhereInTheOtherIsOneExposedRecord) {
    expectTwoFamilies("::", true);
}

TEST(RealWebServersTest, phpInAWebRootIsNamedAfterTheFolderAbove) {
    TARNVALE_NEEDS_PROGRAM(php, "php");
    const Project project("shop/public");
    const ReservedPort port;
    expectRecord({php, "-S", "127.0.0.1:" + port.text()}, port, project,
                 {.command = "php", .args = php + " -S 127.0.0.1:" + port.text()});
}

TEST(RealWebServersTest, aStoppedServerIsGoneFromTheNextScan) {
    TARNVALE_NEEDS_PROGRAM(python, "python3");
    const Project project;
    const ReservedPort port;
    RealProcess server({python, "-m", "http.server", port.text(), "--bind", "127.0.0.1"},
                       {.folder = project.folder});
    ASSERT_TRUE(awaitListeners(port.number())) << server.output();

    const ProgramRun first = tarnctl({"kill", port.text()});
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(first.output,
              "Stopped python3 (PID " + std::to_string(server.pid()) + ") on :" + port.text() + ".\n");
    EXPECT_EQ(first.error, "");
    ASSERT_TRUE(server.waitForEnd());

    const ProgramRun second = tarnctl({"kill", port.text()});
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output, "");
    EXPECT_EQ(second.error, "Nothing is listening on :" + port.text() + ".\n");
}

} // namespace
} // namespace tarnvale
