#include "discovery/formatUptime.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace tarnvale {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(FormatUptimeTest, agesAreCutOffToWholeUnits) {
    struct Row {
        double seconds;
        std::string text;
    };
    const std::array rows{
        Row{0, "0s"},          Row{0.999, "0s"},        Row{59, "59s"},
        Row{59.999, "59s"},    Row{60, "1m"},           Row{119, "1m"},
        Row{3599.9, "59m"},    Row{3600, "1h 0m"},      Row{7499, "2h 4m"},
        Row{86399, "23h 59m"}, Row{86400, "1d 0h"},     Row{86400 + 3599, "1d 0h"},
        Row{90000, "1d 1h"},   Row{8639999, "99d 23h"}, Row{36500.0 * 86400, "36500d 0h"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(formatUptime(row.seconds), row.text) << row.seconds;
}

TEST(FormatUptimeTest, aNegativeAgeIsNone) {
    for (const double seconds : {-0.5, -1.0, -1e300, -std::numeric_limits<double>::infinity()})
        EXPECT_EQ(formatUptime(seconds), "0s") << seconds;
}

TEST(FormatUptimeTest, anAgeBeyondMeasureIsStillAText) {
    EXPECT_EQ(formatUptime(std::numeric_limits<double>::quiet_NaN()), "0s");
    EXPECT_THAT(formatUptime(std::numeric_limits<double>::infinity()), testing::EndsWith("h"));
    EXPECT_THAT(formatUptime(1e300), Not(HasSubstr("-")));
}

} // namespace
} // namespace tarnvale
