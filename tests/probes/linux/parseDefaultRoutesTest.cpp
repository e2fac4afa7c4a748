#include "probes/linux/parseDefaultRoutes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const std::string head =
    "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT            \n";

TEST(ParseDefaultRoutesTest, onlyDefaultRoutesCount) {
    const std::string table = head + "wlp2s0\t00000000\t0101A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0   \n"
                                     "docker0\t000011AC\t00000000\t0001\t0\t0\t0\t0000FFFF\t0\t0\t0   \n"
                                     "enp1s0\t00000000\t010000C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n"
                                     "wlp2s0\t0001A8C0\t00000000\t0001\t0\t0\t600\t00FFFFFF\t0\t0\t0";
    EXPECT_THAT(parseDefaultRoutes(table), ElementsAre(Pair("enp1s0", 100), Pair("wlp2s0", 600)));
}

TEST(ParseDefaultRoutesTest, theBestOfAnInterfaceCounts) {
    EXPECT_THAT(parseDefaultRoutes("a 00000000 01 0003 0 0 600 00000000 0 0 0\n"
                                   "a 00000000 02 0003 0 0 50 00000000 0 0 0\n"
                                   "a 00000000 03 0003 0 0 700 00000000 0 0 0\n"),
                ElementsAre(Pair("a", 50)));
}

TEST(ParseDefaultRoutesTest, otherRowsAreSkipped) {
    for (const auto &[row, reason] : std::vector<std::pair<std::string, const char *>>{
             {"", "empty"},
             {head, "the head alone"},
             {"a 00000000 0101A8C0 0003 0 0 600", "cut before the mask"},
             {"a 00000000 0101A8C0 0002 0 0 600 00000000 0 0 0", "not up"},
             {"a 00000000 00000000 0201 0 0 0 00000000 0 0 0", "a route that rejects"},
             {"a 00000000 0101A8C0 0003 0 0 0 00000080 0 0 0", "half of all addresses"},
             {"a 0000000A 0101A8C0 0003 0 0 0 000000FF 0 0 0", "one network"},
             {"a 00000000 0101A8C0 xyz 0 0 600 00000000 0 0 0", "flags that are no number"},
             {"a 00000000 0101A8C0 0003 0 0 -1 00000000 0 0 0", "a metric below 0"},
             {"a 00000000 0101A8C0 0003 0 0 99999999999 00000000 0 0 0", "a metric out of range"},
             {"a 0x0 0101A8C0 0003 0 0 600 00000000 0 0 0", "a prefix"},
             {"a 00000000 0101A8C0 FFFFFFFFFF 0 0 600 00000000 0 0 0", "flags out of range"},
         })
        EXPECT_THAT(parseDefaultRoutes(row), IsEmpty()) << reason;
}

TEST(ParseDefaultRoutesTest, aTableCutAnywhereHasNoMoreThanTheWhole) {
    const std::string table = "eth0\t00000000\t010200C0\t0003\t0\t0\t0\t00000000\t0\t0\t0\n";
    for (std::size_t length = 0; length <= table.size(); ++length)
        for (const auto &[name, metric] : parseDefaultRoutes(table.substr(0, length)))
            EXPECT_EQ(name, "eth0") << length;
}

} // namespace
} // namespace tarnvale
