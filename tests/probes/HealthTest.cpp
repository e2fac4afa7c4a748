#include "probes/Health.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(HealthTest, summariesAreWhatUsersRead) {
    EXPECT_EQ(Health::responding(404).summary(), "Responds (HTTP 404)");
    EXPECT_EQ(Health::serverError(503).summary(), "Server error (HTTP 503)");
    EXPECT_EQ(Health::noResponse().summary(), "No response within 1.5s");
    EXPECT_EQ(Health::unknown().summary(), "Not HTTP or unknown");
}

TEST(HealthTest, twoAreEqualWhenKindAndCodeAre) {
    EXPECT_EQ(Health::responding(200), Health::responding(200));
    EXPECT_NE(Health::responding(200), Health::responding(204));
    EXPECT_NE(Health::responding(500), Health::serverError(500));
    EXPECT_NE(Health::unknown(), Health::noResponse());
    EXPECT_EQ(Health(), Health::unknown());
}

} // namespace
} // namespace tarnvale
