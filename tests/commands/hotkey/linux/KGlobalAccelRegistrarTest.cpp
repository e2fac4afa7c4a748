#include "commands/hotkey/linux/KGlobalAccelRegistrar.h"

#include "commands/hotkey/linux/FakeKGlobalAccel.h"
#include "commands/hotkey/linux/desktopTriggers.h"
#include "platform/linux/PrivateBus.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const int key = *qtKeyCombination({});

class KGlobalAccelRegistrarTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
        start();
        m_registrar = std::make_unique<KGlobalAccelRegistrar>(m_bus.connect());
        m_registrar->onPress = [this] { ++m_presses; };
    }

    void start() {
        m_daemon = std::make_unique<FakeKGlobalAccel>(m_bus.connect());
        m_bus.settle();
    }

    void stop() {
        m_daemon.reset();
        m_bus.settle();
    }

    /// The outcome of an order; nothing when it doesn't come.
    std::optional<HotKeyOutcome> grab(const Shortcut &shortcut = {}) {
        const auto answer = m_registrar->grab(shortcut, HotKeyOccasion::start);
        const bool isAnswered = waitFor([&] { return answer.isFinished(); });
        m_bus.settle();
        return isAnswered ? std::optional(answer.result()) : std::nullopt;
    }

    std::optional<HotKeyFailure> failure(const Shortcut &shortcut = {}) {
        const auto outcome = grab(shortcut);
        return outcome && !*outcome ? std::optional(outcome->error()) : std::nullopt;
    }

    [[nodiscard]] int presses() {
        m_bus.settle();
        return m_presses;
    }

    PrivateBus m_bus;
    std::unique_ptr<FakeKGlobalAccel> m_daemon;
    std::unique_ptr<KGlobalAccelRegistrar> m_registrar;
    int m_presses = 0;
};

TEST_F(KGlobalAccelRegistrarTest, theDaemonLearnsActionAndKeys) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    ASSERT_EQ(m_daemon->actionId.size(), 4);
    EXPECT_EQ(m_daemon->actionId.mid(0, 3),
              (QStringList{"dev.tarnvale.Tarnvale", "toggle-panel", "Tarnvale"}));
    EXPECT_EQ(m_daemon->keys, QList<int>{key});
    EXPECT_EQ(m_daemon->flags, 6u);
    EXPECT_TRUE(m_daemon->isActive);
    EXPECT_EQ(m_registrar->availability(), HotKeyAvailability());
}

TEST_F(KGlobalAccelRegistrarTest, anOlderDaemonTellsAPressInOneWay) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    m_daemon->pressOld();
    m_daemon->pressOld();
    EXPECT_EQ(presses(), 2);
}

TEST_F(KGlobalAccelRegistrarTest, aDaemonThatTellsItInBothWaysIsHeardOnce) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    m_daemon->pressOld();
    m_daemon->pressNew();
    m_daemon->pressNew();
    m_daemon->pressOld();
    EXPECT_EQ(presses(), 2);
}

TEST_F(KGlobalAccelRegistrarTest, aDaemonMayTellItInTheNewWayAlone) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    m_daemon->pressNew();
    EXPECT_EQ(presses(), 1);
}

TEST_F(KGlobalAccelRegistrarTest, keysThatTheDaemonLeavesOutAreTaken) {
    m_daemon->others = {key};
    EXPECT_EQ(failure(), HotKeyFailure::taken);
    EXPECT_FALSE(m_daemon->isActive);
    m_daemon->pressOld();
    EXPECT_EQ(presses(), 0);
}

TEST_F(KGlobalAccelRegistrarTest, aKeyWithoutANameIsUnknown) {
    EXPECT_EQ(failure({35, 0x1000, "⌃"}), HotKeyFailure::unknownKey);
}

TEST_F(KGlobalAccelRegistrarTest, withoutADaemonItIsUnavailable) {
    stop();
    EXPECT_EQ(failure(), HotKeyFailure::unavailable);
}

TEST_F(KGlobalAccelRegistrarTest, aDaemonThatForbidsItRefuses) {
    m_daemon->isForbidden = true;
    EXPECT_EQ(failure(), HotKeyFailure::refused);
}

TEST_F(KGlobalAccelRegistrarTest, aDaemonThatSpeaksOddRefuses) {
    m_daemon->speaksOdd = true;
    EXPECT_EQ(failure(), HotKeyFailure::refused);
}

TEST_F(KGlobalAccelRegistrarTest, signalsOfOthersDontCount) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    m_daemon->pressOld("other");
    m_daemon->pressNew("other");
    QDBusMessage forged = QDBusMessage::createSignal(
        "/component/dev_tarnvale_Tarnvale", "org.kde.kglobalaccel.Component", "globalShortcutPressed");
    forged << QStringLiteral("dev.tarnvale.Tarnvale") << QStringLiteral("toggle-panel") << qlonglong(1);
    ASSERT_TRUE(m_bus.connect().send(forged));
    EXPECT_EQ(presses(), 0);
}

TEST_F(KGlobalAccelRegistrarTest, afterAReleaseNothingIsPressed) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    m_registrar->release();
    m_bus.settle();
    EXPECT_FALSE(m_daemon->isActive);
    m_daemon->pressOld();
    EXPECT_EQ(presses(), 0);
}

TEST_F(KGlobalAccelRegistrarTest, aDaemonThatComesBackLearnsItAgain) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    stop();
    start();
    ASSERT_TRUE(waitFor([&] { return m_daemon->isActive; }));
    EXPECT_EQ(presses(), 0);
    m_daemon->pressOld();
    EXPECT_EQ(presses(), 1);
}

TEST_F(KGlobalAccelRegistrarTest, anotherOrderEndsTheWait) {
    const auto first = m_registrar->grab({}, HotKeyOccasion::start);
    ASSERT_EQ(grab(), HotKeyOutcome());
    ASSERT_TRUE(first.isFinished());
    EXPECT_EQ(first.result().error(), HotKeyFailure::abandoned);
    EXPECT_TRUE(m_daemon->isActive);
}

TEST_F(KGlobalAccelRegistrarTest, theEndAnswersWhatWaits) {
    const auto answer = m_registrar->grab({}, HotKeyOccasion::start);
    m_registrar.reset();
    m_bus.settle();
    ASSERT_TRUE(answer.isFinished());
    EXPECT_EQ(answer.result().error(), HotKeyFailure::abandoned);
}

} // namespace
} // namespace tarnvale
