#include "discovery/linux/parseProcNetTcp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Recorded on Linux 6.18, inodes and the uid changed.
constexpr std::string_view recordedIPv4 =
    "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode        "
    "   "
    "                                          \n"
    "   0: 0100007F:1F90 00000000:0000 0A 00000000:00000000 00:00000000 00000000  1000        0 31337 1 "
    "0000000000000000 100 0 0 10 0                     \n"
    "   1: 00000000:0016 00000000:0000 0A 00000000:00000080 00:00000000 00000000     0        0 17123 2 "
    "0000000000000000 100 0 0 10 0                     \n"
    "   2: 0100007F:1F90 0100007F:C350 01 00000000:00000000 02:00000415 00000000  1000        0 31400 2 "
    "0000000000000000 20 4 30 10 -1                    \n"
    "   3: 0100007F:C350 0100007F:1F90 06 00000000:00000000 03:0000176F 00000000     0        0 0 3 "
    "0000000000000000\n"
    "   4: 0502017F:0050 00000000:0000 0A 00000000:00000000 00:00000000 00000000     0        0 17200 1 "
    "0000000000000000 100 0 0 10 0\n";

constexpr std::string_view recordedIPv6 =
    "  sl  local_address                         remote_address                        st tx_queue rx_queue "
    "tr "
    "tm->when retrnsmt   uid  timeout inode\n"
    "   0: 00000000000000000000000000000000:1F90 00000000000000000000000000000000:0000 0A 00000000:00000000 "
    "00:00000000 00000000  1000        0 41000 1 0000000000000000 100 0 0 10 0\n"
    "   1: 00000000000000000000000001000000:1538 00000000000000000000000000000000:0000 0A 00000000:00000000 "
    "00:00000000 00000000   103        0 41001 1 0000000000000000 100 0 0 10 0\n"
    "   2: 0000000000000000FFFF00000100007F:0BB8 00000000000000000000000000000000:0000 0A 00000000:00000000 "
    "00:00000000 00000000  1000        0 41002 1 0000000000000000 100 0 0 10 0\n"
    "   3: 0000000000000000FFFF00000101A8C0:0BB9 00000000000000000000000000000000:0000 0A 00000000:00000000 "
    "00:00000000 00000000  1000        0 41003 1 0000000000000000 100 0 0 10 0\n";

Listener listener(std::uint16_t port, bool isLoopback, std::uint64_t inode) {
    return {.port = port, .isLoopback = isLoopback, .inode = inode, .cgroup = std::nullopt};
}

TEST(ParseProcNetTcpTest, onlyListeningSocketsAreTaken) {
    EXPECT_THAT(
        parseProcNetTcp(recordedIPv4),
        ElementsAre(listener(8080, true, 31337), listener(22, false, 17123), listener(80, true, 17200)));
}

TEST(ParseProcNetTcpTest, bothLoopbackFormsOfIPv6AreKnown) {
    EXPECT_THAT(parseProcNetTcp(recordedIPv6),
                ElementsAre(listener(8080, false, 41000), listener(5432, true, 41001),
                            listener(3000, true, 41002), listener(3001, false, 41003)));
}

TEST(ParseProcNetTcpTest, aTableCutShortTellsNothingThatTheWholeOneDoesNot) {
    for (const std::string_view table : {recordedIPv4, recordedIPv6}) {
        const auto whole = parseProcNetTcp(table);
        for (std::size_t length = 0; length < table.size(); ++length) {
            const auto part = parseProcNetTcp(table.substr(0, length));
            ASSERT_LE(part.size(), whole.size());
            for (std::size_t i = 0; i < part.size(); ++i)
                EXPECT_EQ(part[i], whole[i]) << "cut at byte " << length;
        }
    }
}

TEST(ParseProcNetTcpTest, rowsThatCannotBeReadAreSkipped) {
    struct Row {
        const char *row;
        const char *reason;
    };
    const Row rows[]{
        {"", "empty"},
        {"   0: 0100007F:1F90 00000000:0000 0A", "cut short"},
        {"   0: 0100007F 00000000:0000 0A 0:0 0:0 0 0 0 5 1", "no port"},
        {"   0: 0100007F: 00000000:0000 0A 0:0 0:0 0 0 0 5 1", "an empty port"},
        {"   0: 0100007F:1F90:1 00000000:0000 0A 0:0 0:0 0 0 0 5 1", "two ports"},
        {"   0: 0100007F:1F901 00000000:0000 0A 0:0 0:0 0 0 0 5 1", "no such port"},
        {"   0: 0100007:1F90 00000000:0000 0A 0:0 0:0 0 0 0 5 1", "an address of 7 digits"},
        {"   0: 0100007G:1F90 00000000:0000 0A 0:0 0:0 0 0 0 5 1", "no hexadecimal digit"},
        {"   0: -100007F:1F90 00000000:0000 0A 0:0 0:0 0 0 0 5 1", "a sign"},
        {"   0: 0100007F:1F90 00000000:0000 0a 0:0 0:0 0 0 0 5 1", "the kernel writes states in capitals"},
        {"   0: 0100007F:1F90 00000000:0000 0A 0:0 0:0 0 0 0 -5 1", "an inode below zero"},
        {"   0: 0100007F:1F90 00000000:0000 0A 0:0 0:0 0 0 0 18446744073709551616 1", "beyond 64 bits"},
        {"   0: 0100007F:1F90 00000000:0000 0A 0:0 0:0 0 0 0 5x 1", "junk behind the inode"},
        {"\xFF\xFE\x80 \xC3", "no text at all"},
    };
    for (const Row &row : rows) {
        EXPECT_THAT(parseProcNetTcp(row.row), IsEmpty()) << row.reason;
        // It doesn't spoil its neighbours.
        EXPECT_THAT(parseProcNetTcp(std::string(row.row) + "\n" +
                                    std::string(recordedIPv4.substr(recordedIPv4.find('\n') + 1))),
                    testing::SizeIs(3))
            << row.reason;
    }
}

TEST(ParseProcNetTcpTest, aSocketOfTheKernelHasInodeZero) {
    EXPECT_THAT(parseProcNetTcp("   0: 00000000:0801 00000000:0000 0A 0:0 0:0 0 0 0 0 1 0 100 0 0 10 0\n"),
                ElementsAre(listener(2049, false, 0)));
}

} // namespace
} // namespace tarnvale
