#include "updates/newestUpdate.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

UpdateItem item(const std::string &version, const std::string &title = {}, bool isForLinux = false) {
    UpdateItem result;
    result.version = version;
    result.title = title;
    result.isForLinux = isForLinux;
    return result;
}

std::string newest(const std::vector<UpdateItem> &items, std::string_view current) {
    const auto found = newestUpdate(items, current);
    return found ? found->version + found->title : "none";
}

TEST(NewestUpdateTest, theNewestIsOfferedWhereverItStands) {
    EXPECT_EQ(newest({item("1.1"), item("1.10"), item("1.9")}, "1.0"), "1.10");
    EXPECT_EQ(newest({item("3-beta"), item("2")}, "1"), "3-beta");
}

TEST(NewestUpdateTest, nothingOlderAndNotTheSameIsEverOffered) {
    EXPECT_EQ(newest({}, "1.0"), "none");
    EXPECT_EQ(newest({item("0.9"), item("1.0"), item("1.0.0"), item("1.0-rc1"), item("v1.0+7")}, "1.0"),
              "none");
    EXPECT_EQ(newest({item("2.0")}, "2.0.1"), "none");
    EXPECT_EQ(newest({item("nightly")}, "0.1"), "none");
}

TEST(NewestUpdateTest, theReleaseFollowsItsBeta) {
    EXPECT_EQ(newest({item("1.0"), item("1.0-beta.3")}, "1.0-beta.2"), "1.0");
}

TEST(NewestUpdateTest, ofTwoThatAreEquallyNewThatForLinuxIsOffered) {
    EXPECT_EQ(newest({item("2", "any"), item("2.0", "linux", true), item("2", "later", true)}, "1"),
              "2.0linux");
    EXPECT_EQ(newest({item("2", "first"), item("2", "second")}, "1"), "2first");
    EXPECT_EQ(newest({item("2", "linux", true), item("3", "any")}, "1"), "3any")
        << "the newer one all the same";
}

TEST(NewestUpdateTest, whoDoesntKnowItsVersionIsOfferedNothing) {
    EXPECT_EQ(newest({item("2")}, ""), "none");
}

} // namespace
} // namespace tarnvale
