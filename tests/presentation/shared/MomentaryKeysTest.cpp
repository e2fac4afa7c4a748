#include "presentation/shared/MomentaryKeys.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

class Pressed : public testing::Test {
protected:
    Pressed() {
        QObject::connect(&keys, &MomentaryKeys::changed, &keys, [this] { ++changes; });
    }
    ~Pressed() override { clock.wakeAll(); }

    ManualClock clock;
    MomentaryKeys keys{clock, 3s, MomentaryKeys::Capacity::any};
    int changes = 0;
    const QString shop = QStringLiteral("shop");
    const QString docs = QStringLiteral("docs");
};

TEST_F(Pressed, theSecondPressConfirms) {
    EXPECT_FALSE(keys.confirm(shop));
    EXPECT_TRUE(keys.contains(shop));
    clock.advance(2900ms);
    EXPECT_TRUE(keys.confirm(shop));
    EXPECT_FALSE(keys.contains(shop));
    EXPECT_EQ(changes, 2);
}

TEST_F(Pressed, afterThreeSecondsAPressIsTheFirstAgain) {
    EXPECT_FALSE(keys.confirm(shop));
    clock.advance(3s);
    EXPECT_FALSE(keys.contains(shop));
    EXPECT_EQ(changes, 2);
    EXPECT_FALSE(keys.confirm(shop));
}

TEST_F(Pressed, eachKeyIsArmedForItself) {
    EXPECT_FALSE(keys.confirm(shop));
    clock.advance(1s);
    EXPECT_FALSE(keys.confirm(docs));
    clock.advance(2s);
    EXPECT_FALSE(keys.contains(shop));
    EXPECT_TRUE(keys.confirm(docs));
}

TEST_F(Pressed, anEarlierPressDoesNotEndALaterOne) {
    EXPECT_FALSE(keys.confirm(shop));
    clock.advance(2s);
    EXPECT_TRUE(keys.confirm(shop));
    EXPECT_FALSE(keys.confirm(shop)); // its three seconds begin here
    clock.advance(2s);
    EXPECT_TRUE(keys.contains(shop));
    clock.advance(1s);
    EXPECT_FALSE(keys.contains(shop));
}

TEST_F(Pressed, whatIsForgottenIsNotArmed) {
    EXPECT_FALSE(keys.confirm(shop));
    keys.clear();
    EXPECT_FALSE(keys.contains(shop));
    keys.clear();
    EXPECT_EQ(changes, 2);
}

TEST_F(Pressed, whereOneIsHeldAKeyTakesThePlaceOfTheLast) {
    MomentaryKeys one(clock, 4s);
    EXPECT_EQ(one.key(), QString());
    EXPECT_FALSE(one.confirm(shop));
    clock.advance(1s);
    EXPECT_FALSE(one.confirm(docs));
    EXPECT_FALSE(one.contains(shop));
    EXPECT_EQ(one.key(), docs);
    clock.advance(3s); // the end of the first
    EXPECT_EQ(one.key(), docs);
    clock.advance(1s);
    EXPECT_EQ(one.key(), QString());
}

TEST_F(Pressed, whatIsHeldAgainIsHeldForTheWholeTimeAgain) {
    keys.hold(shop);
    clock.advance(2s);
    keys.hold(shop);
    EXPECT_EQ(changes, 1);
    clock.advance(2s);
    EXPECT_TRUE(keys.contains(shop));
    clock.advance(1s);
    EXPECT_FALSE(keys.contains(shop));
    EXPECT_EQ(changes, 2);
}

TEST_F(Pressed, itMayGoWhileSomethingIsArmed) {
    auto passing = std::make_unique<MomentaryKeys>(clock, 3s);
    EXPECT_FALSE(passing->confirm(shop));
    passing.reset();
    clock.advance(4s);
    EXPECT_EQ(clock.sleepers(), 0U);
}

} // namespace
} // namespace tarnvale
