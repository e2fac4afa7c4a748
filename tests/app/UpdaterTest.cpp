#include "app/Updater.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

struct Counts {
    int made = 0;
    int checks = 0;
    BundleInformation bundle;
};

class CountingController : public UpdateController {
public:
    explicit CountingController(Counts &counts) : m_counts(counts) {}

    void checkForUpdates() override { ++m_counts.checks; }

private:
    Counts &m_counts;
};

const BundleInformation configured{"1.0", "7", "https://updates.example/feed.xml", "abc="};

class UpdaterTest : public testing::Test {
protected:
    [[nodiscard]] MakeUpdateController maker() {
        return [this](const BundleInformation &bundle) {
            ++counts.made;
            counts.bundle = bundle;
            return std::make_unique<CountingController>(counts);
        };
    }

    Counts counts;
};

TEST_F(UpdaterTest, makesItsControllerOnce) {
    Updater updater(configured, maker());
    EXPECT_FALSE(updater.isAvailable()) << "not before the start";
    updater.start();
    updater.start();
    EXPECT_TRUE(updater.isAvailable());
    EXPECT_EQ(counts.made, 1);
    EXPECT_EQ(counts.bundle, configured);
    updater.checkForUpdates();
    EXPECT_EQ(counts.checks, 1);
}

TEST_F(UpdaterTest, staysOffInABuildThatMayNotUpdate) {
    Updater updater({"1.0", "7", "http://updates.example/feed.xml", "abc="}, maker());
    updater.start();
    updater.checkForUpdates();
    EXPECT_FALSE(updater.isAvailable());
    EXPECT_EQ(counts.made, 0);
}

TEST_F(UpdaterTest, staysOffWithoutAnythingThatCouldUpdate) {
    Updater updater(configured);
    updater.start();
    updater.checkForUpdates();
    EXPECT_FALSE(updater.isAvailable());
}

TEST_F(UpdaterTest, triesAgainWhereTheControllerCouldNotBeMade) {
    int tries = 0;
    Updater updater(configured, [&tries](const BundleInformation &) -> std::unique_ptr<UpdateController> {
        ++tries;
        return nullptr;
    });
    updater.start();
    updater.start();
    updater.checkForUpdates();
    EXPECT_EQ(tries, 2);
    EXPECT_FALSE(updater.isAvailable());
}

} // namespace
} // namespace tarnvale
