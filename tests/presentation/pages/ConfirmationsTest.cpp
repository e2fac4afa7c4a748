#include "presentation/pages/Confirmations.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

class Pressed : public testing::Test {
protected:
    Pressed() {
        QObject::connect(&confirmations, &Confirmations::changed, &confirmations, [this] { ++changes; });
    }
    ~Pressed() override { clock.wakeAll(); }

    ManualClock clock;
    Confirmations confirmations{clock};
    int changes = 0;
    const QString shop = QStringLiteral("shop");
    const QString docs = QStringLiteral("docs");
};

TEST_F(Pressed, theSecondPressConfirms) {
    EXPECT_FALSE(confirmations.confirm(shop));
    EXPECT_TRUE(confirmations.isArmed(shop));
    clock.advance(2900ms);
    EXPECT_TRUE(confirmations.confirm(shop));
    EXPECT_FALSE(confirmations.isArmed(shop));
    EXPECT_EQ(changes, 2);
}

TEST_F(Pressed, afterThreeSecondsAPressIsTheFirstAgain) {
    EXPECT_FALSE(confirmations.confirm(shop));
    clock.advance(3s);
    EXPECT_FALSE(confirmations.isArmed(shop));
    EXPECT_EQ(changes, 2);
    EXPECT_FALSE(confirmations.confirm(shop));
}

TEST_F(Pressed, eachKeyIsArmedForItself) {
    EXPECT_FALSE(confirmations.confirm(shop));
    clock.advance(1s);
    EXPECT_FALSE(confirmations.confirm(docs));
    clock.advance(2s);
    EXPECT_FALSE(confirmations.isArmed(shop));
    EXPECT_TRUE(confirmations.confirm(docs));
}

TEST_F(Pressed, anEarlierPressDoesNotEndALaterOne) {
    EXPECT_FALSE(confirmations.confirm(shop));
    clock.advance(2s);
    EXPECT_TRUE(confirmations.confirm(shop));
    EXPECT_FALSE(confirmations.confirm(shop)); // its three seconds begin here
    clock.advance(2s);
    EXPECT_TRUE(confirmations.isArmed(shop));
    clock.advance(1s);
    EXPECT_FALSE(confirmations.isArmed(shop));
}

TEST_F(Pressed, whatIsForgottenIsNotArmed) {
    EXPECT_FALSE(confirmations.confirm(shop));
    confirmations.forget();
    EXPECT_FALSE(confirmations.isArmed(shop));
    confirmations.forget();
    EXPECT_EQ(changes, 2);
}

TEST_F(Pressed, itMayGoWhileSomethingIsArmed) {
    auto passing = std::make_unique<Confirmations>(clock);
    EXPECT_FALSE(passing->confirm(shop));
    passing.reset();
    clock.advance(4s);
    EXPECT_EQ(clock.sleepers(), 0U);
}

} // namespace
} // namespace tarnvale
