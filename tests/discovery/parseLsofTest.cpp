#include "discovery/parseLsof.h"

#include "discovery/text.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

std::string recording(std::string_view name) {
    return readRecording(TARNVALE_TESTS_FOLDER, "discovery", name);
}

/// The records of a listing as "pid command port", with "*" behind the exposed ones.
std::vector<std::string> listed(std::string_view text) {
    std::vector<std::string> result;
    for (const ListeningPort &port : parseListeningSockets(text))
        result.push_back(std::to_string(port.pid) + " " + port.command + " " + std::to_string(port.port) +
                         (port.isExposed ? "*" : ""));
    return result;
}

bool isExposedOn(const std::string &host) {
    const auto ports = parseListeningSockets("p42\ncnode\nn" + host + ":3000\n");
    return ports.size() == 1 && ports[0].isExposed;
}

TEST(ParseLsofTest, aWholeListingIsRead) {
    EXPECT_THAT(listed(recording("lsof-listen.txt")),
                ElementsAre("2044 nginx 80*", "4242 node 3000*", "502 ControlCenter 5000*", "5120 node 5173",
                            "861 postgres 5432", "912 redis-server 6379", "502 ControlCenter 7000*",
                            "4300 php 8000", "1190 com.docker.backend 8080*", "388 rapportd 49152*",
                            "4488 Code Helper (Plugin) 63315"));
}

TEST(ParseLsofTest, onlyWhatTheListingTellsIsFilled) {
    EXPECT_THAT(parseListeningSockets("p42\ncnode\nn127.0.0.1:3000\n"),
                ElementsAre(ListeningPort{.pid = 42, .command = "node", .port = 3000}));
}

TEST(ParseLsofTest, aListingCutShortGivesWhatArrived) {
    const auto whole = listed(recording("lsof-listen.txt"));
    auto expected = whole;
    std::erase(expected, "5120 node 5173");
    EXPECT_EQ(listed(recording("lsof-listen-truncated.txt")), expected);
}

TEST(ParseLsofTest, oddBytesSpoilNothingButTheirOwnLine) {
    EXPECT_THAT(listed(repairedUtf8(recording("lsof-listen-odd-bytes.txt"))),
                ElementsAre("7001 naught\\x0a 4000", "7002 \uFFFD\uFFFD\uFFFD(node 4001*",
                            "7003 \x1B[31mred 4002*", "7003 \x1B[31mred 4004*"));
}

TEST(ParseLsofTest, aListingCutAtAnyByteIsNoMoreThanTheWhole) {
    for (const std::string_view name : {"lsof-listen.txt", "lsof-listen-odd-bytes.txt"}) {
        const std::string whole = recording(name);
        const std::size_t count = parseListeningSockets(whole).size();
        for (std::size_t size = 0; size <= whole.size(); ++size)
            // A cut in a port number can make one port of another name, never more than one.
            ASSERT_LE(parseListeningSockets(std::string(whole, 0, size)).size(), count + 1)
                << name << " " << size;
    }
}

TEST(ParseLsofTest, emptyTextMeansNoPorts) {
    EXPECT_THAT(parseListeningSockets(""), IsEmpty());
    EXPECT_THAT(parseListeningSockets("\n\n"), IsEmpty());
}

TEST(ParseLsofTest, onlyLoopbackHostsAreNotExposed) {
    for (const std::string host : {"127.0.0.1", "127.8.9.1", "[::1]", "localhost"})
        EXPECT_FALSE(isExposedOn(host)) << host;
    for (const std::string host : {"*", "0.0.0.0", "192.168.1.5", "[fe80::1]", "[::]", "::1",
                                   "localhost.local", "Localhost", "", "128.0.0.1"})
        EXPECT_TRUE(isExposedOn(host)) << host;
}

TEST(ParseLsofTest, oneExposedSocketExposesTheRecord) {
    EXPECT_THAT(listed("p42\ncnode\nn127.0.0.1:3000\nn*:3000\n"), ElementsAre("42 node 3000*"));
    EXPECT_THAT(listed("p42\ncnode\nn*:3000\nn127.0.0.1:3000\n"), ElementsAre("42 node 3000*"));
    EXPECT_THAT(listed("p42\ncnode\nn127.0.0.1:3000\nn[::1]:3000\n"), ElementsAre("42 node 3000"));
}

TEST(ParseLsofTest, theLowestPidOfACommandOnAPortWins) {
    EXPECT_THAT(listed("p20\ncnginx\nn127.0.0.1:80\np10\ncnginx\nn*:80\n"), ElementsAre("10 nginx 80*"));
    EXPECT_THAT(listed("p10\ncnginx\nn*:80\np20\ncnginx\nn127.0.0.1:80\n"), ElementsAre("10 nginx 80*"));
    EXPECT_THAT(listed("p20\ncnginx\nn*:80\np10\ncnginx\nn127.0.0.1:80\n"), ElementsAre("10 nginx 80*"));
}

TEST(ParseLsofTest, twoCommandsOnOnePortStayTwo) {
    EXPECT_THAT(listed("p20\ncnginx\nn*:80\np10\ncPython\nn127.0.0.1:80\n"),
                ElementsAre("10 Python 80", "20 nginx 80*"));
}

TEST(ParseLsofTest, oneProcessOnSeveralPortsIsSortedByPort) {
    EXPECT_THAT(listed("p42\ncnode\nn*:9000\nn*:80\nn*:3000\n"),
                ElementsAre("42 node 80*", "42 node 3000*", "42 node 9000*"));
}

TEST(ParseLsofTest, aPidThatIsNoNumberHidesTheNamesUpToTheNext) {
    for (const std::string pid : {"", "x", "4 2", "4294967296", "0x10"})
        EXPECT_THAT(listed("p10\ncnode\nn*:80\np" + pid + "\ncbad\nn*:81\nn*:82\np11\ncnode\nn*:83\n"),
                    ElementsAre("10 node 80*", "11 node 83*"))
            << pid;
}

TEST(ParseLsofTest, namesBeforeTheFirstPidAreIgnored) {
    EXPECT_THAT(listed("cnode\nn*:80\np10\nn*:81\n"), ElementsAre("10 node 81*"));
}

TEST(ParseLsofTest, theCommandStaysUntilTheNextOne) {
    EXPECT_THAT(listed("p10\ncnode\nn*:80\np11\nn*:81\n"), ElementsAre("10 node 80*", "11 node 81*"));
    EXPECT_THAT(listed("p10\nn*:80\n"), ElementsAre("10  80*"));
    EXPECT_THAT(listed("p10\ncnode\nc\nn*:80\n"), ElementsAre("10  80*"));
}

TEST(ParseLsofTest, namesWithoutAUsablePortAreIgnored) {
    struct Row {
        std::string name;
        std::string_view reason;
    };
    const std::array rows{
        Row{"", "empty"},
        Row{"3000", "no colon"},
        Row{"*:", "an empty port"},
        Row{"*:*", "no number"},
        Row{"*:http", "a service's name"},
        Row{"*:80 (LISTEN)", "more than a number"},
        Row{"*: 80", "a blank"},
        Row{"*:99999999999999999999", "beyond any number"},
        Row{"127.0.0.1:80->127.0.0.1:x", "only what follows the last colon counts"},
    };
    for (const Row &row : rows)
        EXPECT_THAT(listed("p10\ncnode\nn" + row.name + "\nn*:81\n"), ElementsAre("10 node 81*"))
            << row.reason;
}

TEST(ParseLsofTest, portNumbersHaveNoRange) {
    EXPECT_THAT(listed("p10\ncnode\nn*:0\nn*:-1\nn*:99999\nn*:+8\n"),
                ElementsAre("10 node -1*", "10 node 0*", "10 node 8*", "10 node 99999*"));
}

TEST(ParseLsofTest, fieldsOfOtherKindsAreIgnored) {
    EXPECT_THAT(listed("p10\nR1\ncnode\nf3\ntIPv4\nPTCP\nTST=LISTEN\nn*:80\nP11\nN*:81\n"),
                ElementsAre("10 node 80*"));
}

TEST(ParseLsofTest, workingDirectoriesAreRead) {
    EXPECT_THAT(parseWorkingDirectories(recording("lsof-cwd.txt")),
                UnorderedElementsAre(Pair(861, "/opt/homebrew/var/postgresql@16"),
                                     Pair(912, "/opt/homebrew/var"), Pair(2044, "/"),
                                     Pair(4242, "/Users/me/my shop"), Pair(4300, "/Users/me/blog/public"),
                                     Pair(4290, "/Users/me/blog")));
}

TEST(ParseLsofTest, aLaterWorkingDirectoryReplacesAnEarlier) {
    EXPECT_THAT(parseWorkingDirectories("p1\nn/a\nn/b\np2\nn/c\np1\nn/d\n"),
                UnorderedElementsAre(Pair(1, "/d"), Pair(2, "/c")));
}

TEST(ParseLsofTest, aWorkingDirectoryWithoutAPidIsSkipped) {
    EXPECT_THAT(parseWorkingDirectories("n/a\np1\nn/b\np\nn/c\npx\nn/d\nfcwd\nq/e\n"),
                UnorderedElementsAre(Pair(1, "/b")));
    EXPECT_THAT(parseWorkingDirectories("p1\nfcwd\np2\n"), IsEmpty());
}

TEST(ParseLsofTest, workingDirectoriesCutAtAnyByteAreNoMoreThanTheWhole) {
    const std::string whole = recording("lsof-cwd.txt");
    for (std::size_t size = 0; size <= whole.size(); ++size)
        ASSERT_LE(parseWorkingDirectories(std::string(whole, 0, size)).size(), 6u) << size;
}

} // namespace
} // namespace tarnvale
