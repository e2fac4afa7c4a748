#include "updates/compareVersions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnvale {
namespace {

TEST(CompareVersionsTest, eachIsNewerThanAllBefore) {
    const std::vector<std::string> ascending{
        "",
        "0.0.1-alpha",
        "0.0.1",
        "0.1",
        "0.9.9",
        "1.0a1",
        "1.0-alpha.2",
        "1.0-alpha.beta",
        "1.0-beta",
        "1.0-beta.2",
        "1.0-beta.11",
        "1.0rc1",
        "1.0",
        "1.0.0.1",
        "1.0.1",
        "1.1-beta",
        "1.1",
        "1.2",
        "1.10",
        "1.11.99",
        "2",
        "10",
        "1000",
        "20250301",
        "20250301.1",
        "99999999999999999999999",
        "100000000000000000000000",
    };
    for (std::size_t i = 0; i < ascending.size(); ++i)
        for (std::size_t k = 0; k < ascending.size(); ++k)
            EXPECT_EQ(compareVersions(ascending[i], ascending[k]), std::weak_ordering(i <=> k))
                << ascending[i] << " and " << ascending[k];
}

TEST(CompareVersionsTest, oneVersionWrittenInSeveralWays) {
    const std::vector<std::pair<std::string, std::string>> same{
        {"1", "1.0"},
        {"1.0", "1.0.0.0"},
        {"v1.2", "1.2"},
        {"V1.2", "1.2"},
        {"1.2+build.7", "1.2"},
        {"1.2+7", "1.2+8"},
        {"01.002", "1.2"},
        {"1.0-RC1", "1.0rc1"},
        {"1.0-beta2", "1.0-beta.2"},
        {"1_2", "1.2"},
        {" 1.2 ", "1.2"},
        {"1..2", "1.2"},
        {"", "0"},
        {"", "..."},
        {"0.0", "0"},
        {"1.0 beta", "1.0-beta"},
    };
    for (const auto &[a, b] : same)
        EXPECT_EQ(compareVersions(a, b), std::weak_ordering::equivalent) << a << " and " << b;
}

TEST(CompareVersionsTest, textThatIsNoVersionIsOlderThanAnyRelease) {
    EXPECT_EQ(compareVersions("nightly", "0.0.1"), std::weak_ordering::less);
    EXPECT_EQ(compareVersions("nightly", "0"), std::weak_ordering::less);
    EXPECT_EQ(compareVersions("\xC3\xA4", "1"), std::weak_ordering::less);
    EXPECT_EQ(compareVersions("v", "1"), std::weak_ordering::less);
}

} // namespace
} // namespace tarnvale
