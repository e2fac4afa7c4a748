#include "commands/runCommandLine.h"

#include "commands/CommandLineFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using DispatchTest = CommandLineTest;

TEST_F(DispatchTest, withoutACommandWordTheApplicationStarts) {
    EXPECT_EQ(runCommandLine({}, world()), std::nullopt);
    EXPECT_EQ(run({}), std::nullopt);
    for (const std::string word : {"frob", "", "Ports", "port", "--all", "--version", "-help", "-H"})
        EXPECT_EQ(run({word, "ports", "help"}), std::nullopt) << word;
    EXPECT_EQ(m_output + m_error, "");
    EXPECT_EQ(m_machinesMade, 0);
}

TEST_F(DispatchTest, theNameOfTheProgramPlaysNoPart) {
    EXPECT_EQ(runCommandLine({"ports"}, world()), std::nullopt);
    EXPECT_EQ(runCommandLine({"", "help"}, world()), 0);
    EXPECT_EQ(runCommandLine({"/opt/tarnvale/bin/tarnvale", "help"}, world()), 0);
}

TEST_F(DispatchTest, everyHelpWordPrintsTheUsageWhateverFollows) {
    for (const std::string word : {"help", "--help", "-h"}) {
        EXPECT_EQ(run({word}), 0);
        EXPECT_EQ(m_output, usageText + "\n") << word;
        EXPECT_EQ(run({word, "extra", "kill", "80"}), 0);
        EXPECT_EQ(m_output, usageText + "\n") << word;
        EXPECT_EQ(m_error, "");
    }
}

TEST_F(DispatchTest, killAndOpenNeedExactlyOneNumber) {
    const std::vector<std::vector<std::string>> rows{{},
                                                     {"abc"},
                                                     {""},
                                                     {"80", "81"},
                                                     {"80", ""},
                                                     {" 80"},
                                                     {"80 "},
                                                     {"8 0"},
                                                     {"+"},
                                                     {"-"},
                                                     {"--all"},
                                                     {"+-80"},
                                                     {"80\n"},
                                                     {"0x50"},
                                                     {"80.0"},
                                                     {":80"},
                                                     {"80", "--all"},
                                                     {std::string(30, '9')},
                                                     {"\xD9\xA8"},
                                                     {"-" + std::string(30, '9')}};
    for (const std::string command : {"kill", "open"})
        for (const auto &row : rows) {
            std::vector<std::string> words{command};
            words.insert(words.end(), row.begin(), row.end());
            EXPECT_EQ(run(words), 1);
            EXPECT_EQ(m_error, "tarnctl " + command + " needs a port number\n\n" + usageText + "\n")
                << testing::PrintToString(row);
            EXPECT_EQ(m_output, "");
        }
    EXPECT_EQ(m_machinesMade, 0);
    EXPECT_THAT(m_opened, IsEmpty());
}

TEST_F(DispatchTest, numbersHaveNoRange) {
    struct Row {
        std::string word;
        std::string shown;
    };
    for (const Row &row : std::array{Row{"+80", "80"}, Row{"-1", "-1"}, Row{"0", "0"}, Row{"99999", "99999"},
                                     Row{"0080", "80"}}) {
        EXPECT_EQ(run({"kill", row.word}), 1);
        EXPECT_EQ(m_error, "Nothing is listening on :" + row.shown + ".\n");
        EXPECT_EQ(run({"open", row.word}), 0);
        EXPECT_THAT(m_opened, ElementsAre("http://localhost:" + row.shown));
    }
}

TEST_F(DispatchTest, openPrintsNothingAndScansNothing) {
    EXPECT_EQ(run({"open", "3000"}), 0);
    EXPECT_EQ(m_output + m_error, "");
    EXPECT_EQ(m_machinesMade, 0);
}

TEST_F(DispatchTest, anOutputThatTakesNothingMakesHelpFail) {
    m_isOutputFull = true;
    EXPECT_EQ(run({"help"}), 1);
    EXPECT_EQ(m_error, "");
}

class PortsTest : public CommandLineTest {
protected:
    void SetUp() override {
        m_machine.add({.pid = 42, .path = "node", .args = "node server.js", .cwd = "/Users/me/shop"});
        m_machine.listen(42, 3000, true);
        m_machine.add({.pid = 7, .path = "rapportd", .args = "rapportd", .cwd = "/"});
        m_machine.listen(7, 49152);
        m_machine.tick(90s);
    }

    const std::string m_header = "PORT    PID     UP       NAME                        COMMAND\n";
    const std::string m_server = ":3000   42      1m       shop                        node  [network]\n";
    const std::string m_daemon = ":49152  7       1m       rapportd                    rapportd\n";
};

TEST_F(PortsTest, onlyDevPortsAreListed) {
    EXPECT_EQ(run({"ports"}), 0);
    EXPECT_EQ(m_output, m_header + m_server);
    EXPECT_EQ(m_error, "");
}

TEST_F(PortsTest, allShowsEverythingWhereverTheWordStands) {
    for (const auto &words : std::vector<std::vector<std::string>>{
             {"ports", "--all"}, {"ports", "x", "--all"}, {"ports", "--all", "y"}}) {
        EXPECT_EQ(run(words), 0);
        EXPECT_EQ(m_output, m_header + m_server + m_daemon);
    }
}

TEST_F(PortsTest, otherWordsAreIgnored) {
    for (const std::string word : {"x", "--ALL", "-all", "--all=1", ""}) {
        EXPECT_EQ(run({"ports", word}), 0);
        EXPECT_EQ(m_output, m_header + m_server) << word;
    }
}

TEST_F(PortsTest, noiseShowsOnlyWithAll) {
    m_machine.processes[42].args = "node /lib/tsserver.js";
    EXPECT_EQ(run({"ports"}), 0);
    EXPECT_EQ(m_output, "No dev servers running.\n");
    EXPECT_EQ(run({"ports", "--all"}), 0);
    EXPECT_EQ(m_output, m_header + m_server + m_daemon);
}

TEST_F(PortsTest, withNothingLeftThereIsNoHeader) {
    m_machine.sockets.clear();
    for (const auto &words : std::vector<std::vector<std::string>>{{"ports"}, {"ports", "--all"}}) {
        EXPECT_EQ(run(words), 0);
        EXPECT_EQ(m_output, "No dev servers running.\n");
    }
}

TEST_F(PortsTest, theOrderIsThatOfTheScan) {
    m_machine.add({.pid = 9, .path = "bun", .cwd = "/Users/me/api"});
    m_machine.listen(9, 3000);
    m_machine.listen(9, 80);
    EXPECT_EQ(run({"ports"}), 0);
    EXPECT_EQ(m_output, m_header +
                            ":80     9       0s       api                         bun\n"
                            ":3000   9       0s       api                         bun\n" +
                            m_server);
}

TEST_F(PortsTest, anOutputThatTakesNothingMakesItFail) {
    m_isOutputFull = true;
    EXPECT_EQ(run({"ports"}), 1);
    m_machine.sockets.clear();
    EXPECT_EQ(run({"ports"}), 1);
    EXPECT_EQ(m_error, "");
}

/// The only row of a table, without its line feed.
std::string rowOf(const ListeningPort &port, Instant now = Instant()) {
    const std::string table = portTable({port}, now);
    EXPECT_EQ(table.back(), '\n');
    return table.substr(table.find('\n') + 1, table.size() - table.find('\n') - 2);
}

std::string nameColumn(const std::string &folder) {
    return rowOf({.pid = 42, .command = "node", .port = 3000, .cwd = "/Users/me/" + folder}).substr(25);
}

TEST(PortTableTest, anUnknownStartIsADash) {
    EXPECT_EQ(rowOf({.pid = 42, .command = "node", .port = 3000}),
              ":3000   42      -        node                        node");
}

TEST(PortTableTest, aStartInTheFutureIsNoAge) {
    EXPECT_EQ(rowOf({.pid = 42, .command = "node", .port = 3000, .startedAt = Instant(5s)}),
              ":3000   42      0s       node                        node");
}

TEST(PortTableTest, cellsAreCutToLeaveOneBlank) {
    EXPECT_EQ(nameColumn("abcdefghijklmnopqrstuvwxyz"), "abcdefghijklmnopqrstuvwxyz  node")
        << "26 characters";
    EXPECT_EQ(nameColumn("abcdefghijklmnopqrstuvwxyz1"), "abcdefghijklmnopqrstuvwxyz1 node")
        << "27 characters";
    EXPECT_EQ(nameColumn("abcdefghijklmnopqrstuvwxyz12"), "abcdefghijklmnopqrstuvwxyz1 node")
        << "28 characters";
    EXPECT_EQ(nameColumn("abcdefghijklmnopqrstuvwxyz1234"), "abcdefghijklmnopqrstuvwxyz1 node")
        << "30 characters";
}

TEST(PortTableTest, longNumbersAreCutToo) {
    EXPECT_EQ(rowOf({.pid = 1234567, .command = "node", .port = 1234567}),
              ":123456 1234567 -        node                        node");
    EXPECT_EQ(rowOf({.pid = 2147483647, .command = "node", .port = -1}),
              ":-1     2147483 -        node                        node");
}

TEST(PortTableTest, columnsCountCharactersNotBytes) {
    EXPECT_EQ(nameColumn("M\u00FCllers L\u00E4dchen"), "M\u00FCllers L\u00E4dchen             node");
    std::string name;
    std::string cut;
    for (int i = 0; i < 30; ++i) {
        name += "\u5E97";
        if (i < 27)
            cut += "\u5E97";
    }
    EXPECT_EQ(nameColumn(name), cut + " node");
}

TEST(PortTableTest, theNameIsContainerElseProjectElseTool) {
    ListeningPort port{.pid = 42,
                       .command = "docker-proxy",
                       .port = 80,
                       .cwd = "/Users/me/shop",
                       .container = "web \u00B7 nginx:1.25"};
    EXPECT_THAT(rowOf(port), HasSubstr(" web \u00B7 nginx:1.25            docker-proxy"));
    port.container.reset();
    EXPECT_THAT(rowOf(port), HasSubstr(" shop   "));
    port.cwd = "/Users/me/shop/public";
    EXPECT_THAT(rowOf(port), HasSubstr(" shop   "));
    port.cwd = "/opt/redis/7.2.4";
    EXPECT_THAT(rowOf(port), HasSubstr(" docker-proxy                docker-proxy"));
    port.args = "php artisan serve";
    EXPECT_THAT(rowOf(port), HasSubstr(" Laravel    "));
}

TEST(PortTableTest, theCommandNamesItsServiceAndItsReach) {
    const auto commandOf = [](ListeningPort port) { return rowOf(port).substr(53); };
    EXPECT_EQ(commandOf({.command = "redis-server-arm64"}), "redis-server-arm64");
    EXPECT_EQ(commandOf({.command = "redis", .isExposed = true}), "redis  [network]");
    EXPECT_EQ(commandOf({.command = "redis", .service = "homebrew.mxcl.redis@7"}), "redis (brew: redis@7)");
    EXPECT_EQ(commandOf({.command = "redis", .isExposed = true, .service = "sh.brew.redis"}),
              "redis (brew: redis)  [network]");
    EXPECT_EQ(commandOf({.command = "redis", .service = "com.example.redis"}), "redis (launchd)");
    EXPECT_EQ(commandOf({.command = "redis",
                         .isExposed = true,
                         .service = "redis.service",
                         .serviceManager = ServiceManager::systemd}),
              "redis (systemd)  [network]");
    EXPECT_EQ(
        commandOf(
            {.command = "redis", .service = "redis.service", .serviceManager = ServiceManager::systemdUser}),
        "redis (systemd)");
    EXPECT_EQ(commandOf({.command = "redis",
                         .service = "homebrew.redis.service",
                         .serviceManager = ServiceManager::systemdUser}),
              "redis (brew: redis)");
}

TEST(PortTableTest, theLastColumnIsNeitherPaddedNorCut) {
    const std::string command(200, 'x');
    EXPECT_EQ(rowOf({.command = command}).substr(53), command);
}

TEST(PortTableTest, controlCharactersNeverReachTheTerminal) {
    const std::string evil = "a\x1B[2J\r\n\x07\x7F\xC2\x9B\xFF\u202Eb";
    const std::array ports{
        ListeningPort{.command = evil},
        ListeningPort{.command = "node", .cwd = "/Users/me/" + evil},
        ListeningPort{.command = "docker", .container = evil},
        ListeningPort{.command = "node", .service = "homebrew.mxcl." + evil},
    };
    for (const ListeningPort &port : ports) {
        const std::string row = rowOf(port);
        EXPECT_THAT(row, HasSubstr("a\uFFFD[2J\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"
                                   "b"));
        for (const char c : row)
            EXPECT_FALSE((c >= 0 && c < 0x20) || c == 0x7F) << static_cast<int>(c);
    }
}

} // namespace
} // namespace tarnvale
