#include "app/Updater.h"

#include "support/FakePlatform.h"

#include <QQmlEngine>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

struct Counts {
    int made = 0;
    int checks = 0;
    bool isAutomatic = true;
    BundleInformation bundle;
};

constexpr Instant someDate{std::chrono::seconds(1'700'000'000)};

class CountingController : public UpdateController {
public:
    explicit CountingController(Counts &counts) : m_counts(counts) {}

    void checkForUpdates() override { ++m_counts.checks; }
    [[nodiscard]] bool automaticallyChecksForUpdates() const override { return m_counts.isAutomatic; }
    bool setAutomaticallyChecksForUpdates(bool isOn) override {
        m_counts.isAutomatic = isOn;
        return true;
    }
    [[nodiscard]] std::optional<Instant> lastUpdateCheckDate() const override { return someDate; }

private:
    Counts &m_counts;
};

const BundleInformation configured{"1.0", "7", "https://updates.example/feed.xml", "abc="};

class UpdaterTest : public testing::Test {
protected:
    [[nodiscard]] MakeUpdateController maker() {
        return [this](const BundleInformation &bundle, const Platform &, QQmlEngine &) {
            ++counts.made;
            counts.bundle = bundle;
            return std::make_unique<CountingController>(counts);
        };
    }
    void start(Updater &updater) { updater.start(platform.platform(), engine); }

    FakePlatform platform;
    QQmlEngine engine;
    Counts counts;
};

TEST_F(UpdaterTest, makesItsControllerOnce) {
    Updater updater(configured, maker());
    EXPECT_FALSE(updater.isAvailable()) << "not before the start";
    start(updater);
    start(updater);
    EXPECT_TRUE(updater.isAvailable());
    EXPECT_EQ(counts.made, 1);
    EXPECT_EQ(counts.bundle, configured);
    updater.checkForUpdates();
    EXPECT_EQ(counts.checks, 1);
}

TEST_F(UpdaterTest, saysWhatItsControllerSays) {
    Updater updater(configured, maker());
    start(updater);
    EXPECT_TRUE(updater.automaticallyChecksForUpdates());
    EXPECT_TRUE(updater.setAutomaticallyChecksForUpdates(false));
    EXPECT_FALSE(counts.isAutomatic);
    EXPECT_FALSE(updater.automaticallyChecksForUpdates());
    EXPECT_EQ(updater.lastUpdateCheckDate(), someDate);
}

TEST_F(UpdaterTest, hasNothingToSayWithoutOne) {
    Updater updater(configured);
    start(updater);
    EXPECT_FALSE(updater.automaticallyChecksForUpdates());
    EXPECT_FALSE(updater.setAutomaticallyChecksForUpdates(true));
    EXPECT_EQ(updater.lastUpdateCheckDate(), std::nullopt);
}

TEST_F(UpdaterTest, staysOffInABuildThatMayNotUpdate) {
    const std::vector<BundleInformation> builds{{"1.0", "7", "http://updates.example/feed.xml", "abc="},
                                                {"1.0", "7", "https://updates.example/feed.xml", " \t "},
                                                {"1.0", "7", "", "abc="}};
    for (const BundleInformation &build : builds) {
        Updater updater(build, maker());
        start(updater);
        updater.checkForUpdates();
        EXPECT_FALSE(updater.isAvailable());
    }
    EXPECT_EQ(counts.made, 0);
}

TEST_F(UpdaterTest, staysOffWithoutAnythingThatCouldUpdate) {
    Updater updater(configured);
    start(updater);
    updater.checkForUpdates();
    EXPECT_FALSE(updater.isAvailable());
}

TEST_F(UpdaterTest, triesAgainWhereTheControllerCouldNotBeMade) {
    int tries = 0;
    Updater updater(configured,
                    [&tries](const BundleInformation &, const Platform &,
                             QQmlEngine &) -> std::unique_ptr<UpdateController> {
                        ++tries;
                        return nullptr;
                    });
    start(updater);
    start(updater);
    updater.checkForUpdates();
    EXPECT_EQ(tries, 2);
    EXPECT_FALSE(updater.isAvailable());
}

} // namespace
} // namespace tarnvale
