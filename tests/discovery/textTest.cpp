#include "discovery/text.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(TextTest, aNumberTooLargeForItsTypeIsNoNumber) {
    EXPECT_EQ(parseInteger<std::int64_t>("123456789012345678901234567890"), std::nullopt);
}

} // namespace
} // namespace tarnvale
