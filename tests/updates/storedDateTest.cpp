#include "updates/storedDate.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono;

TEST(StoredDateTest, isCountedInSecondsSince2001) {
    EXPECT_EQ(storedDate(sys_days{year{2001} / 1 / 1}), "0");
    EXPECT_EQ(storedDate(sys_days{year{2025} / 3 / 1} + 12h + 250ms), "762523200.25");
    EXPECT_EQ(storedDate(sys_days{year{2000} / 12 / 31}), "-86400");
}

TEST(StoredDateTest, comesBackAsItWas) {
    for (const Instant date :
         {Instant(sys_days{year{2025} / 3 / 1} + 1ms), Instant(), Instant(4'102'444'800'999ms)})
        EXPECT_EQ(readStoredDate(storedDate(date)), date);
}

TEST(StoredDateTest, otherTextsAreNoDates) {
    for (const char *text : {"", " ", "x", "1x", "1 ", "nan", "inf", "1e300", "-1e12", "\"1\"", "{}"})
        EXPECT_EQ(readStoredDate(text), std::nullopt) << text;
    EXPECT_TRUE(readStoredDate("7.6e8").has_value());
}

} // namespace
} // namespace tarnvale
