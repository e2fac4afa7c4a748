#include "commands/hotkey/linux/PortalHotKeyRegistrar.h"

#include "commands/hotkey/linux/FakePortal.h"
#include "platform/linux/PrivateBus.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const QString ours = PortalHotKeyRegistrar::shortcutId;

class PortalHotKeyRegistrarTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
        start();
        m_registrar = std::make_unique<PortalHotKeyRegistrar>(m_bus.connect());
        m_registrar->onPress = [this] { ++m_presses; };
    }

    void start() {
        m_portal = std::make_unique<FakePortal>(m_bus.connect());
        m_bus.settle();
    }

    void stop() {
        m_portal.reset();
        m_bus.settle();
    }

    /// The outcome of an order; nothing when it doesn't come.
    std::optional<HotKeyOutcome> grab(HotKeyOccasion occasion = HotKeyOccasion::start) {
        const auto answer = m_registrar->grab({}, occasion);
        const bool isAnswered = waitFor([&] { return answer.isFinished(); });
        m_bus.settle();
        return isAnswered ? std::optional(answer.result()) : std::nullopt;
    }

    std::optional<HotKeyFailure> failure(HotKeyOccasion occasion = HotKeyOccasion::start) {
        const auto outcome = grab(occasion);
        return outcome && !*outcome ? std::optional(outcome->error()) : std::nullopt;
    }

    bool isGranted(HotKeyOccasion occasion = HotKeyOccasion::start) {
        return grab(occasion) == HotKeyOutcome();
    }

    [[nodiscard]] int presses() {
        m_bus.settle();
        return m_presses;
    }

    PrivateBus m_bus;
    std::unique_ptr<FakePortal> m_portal;
    std::unique_ptr<PortalHotKeyRegistrar> m_registrar;
    int m_presses = 0;
};

TEST_F(PortalHotKeyRegistrarTest, aBindingIsAskedForOnceAndThenPressed) {
    ASSERT_TRUE(isGranted());
    EXPECT_EQ(m_portal->calls, (QStringList{"Register", "CreateSession", "ListShortcuts", "BindShortcuts"}));
    ASSERT_EQ(m_portal->asked.size(), 1);
    EXPECT_EQ(m_portal->asked.front().id, ours);
    EXPECT_EQ(m_portal->asked.front().properties["preferred_trigger"], QStringLiteral("ALT+LOGO+p"));
    EXPECT_FALSE(m_portal->asked.front().properties["description"].toString().isEmpty());
    m_portal->activate(ours);
    EXPECT_EQ(presses(), 1);
}

TEST_F(PortalHotKeyRegistrarTest, theDesktopsWordsAreShown) {
    EXPECT_EQ(m_registrar->availability(), (HotKeyAvailability{HotKeyAvailability::Kind::desktopDecides}));
    ASSERT_TRUE(isGranted());
    EXPECT_EQ(m_registrar->availability().trigger, "Press toggle-panel");
    int changes = 0;
    m_registrar->onAvailabilityChange = [&] { ++changes; };
    m_portal->change({FakePortal::shortcut(ours, "Meta+Shift+D")});
    m_bus.settle();
    EXPECT_EQ(m_registrar->availability().trigger, "Meta+Shift+D");
    EXPECT_EQ(changes, 1);
}

TEST_F(PortalHotKeyRegistrarTest, whatTheDesktopRemembersIsntAskedForAgain) {
    m_portal->known = {FakePortal::shortcut("other"), FakePortal::shortcut(ours, "Meta+D")};
    ASSERT_TRUE(isGranted());
    EXPECT_FALSE(m_portal->calls.contains("BindShortcuts"));
    EXPECT_EQ(m_registrar->availability().trigger, "Meta+D");
    m_portal->activate(ours);
    EXPECT_EQ(presses(), 1);
}

TEST_F(PortalHotKeyRegistrarTest, aPortalMayTakeTheShortcutWithTheSession) {
    m_portal->bindsWithSession = true;
    ASSERT_TRUE(isGranted());
    EXPECT_EQ(m_portal->calls, (QStringList{"Register", "CreateSession"})) << "the user is left alone";
    ASSERT_EQ(m_portal->asked.size(), 1);
    EXPECT_EQ(m_portal->asked.front().properties["preferred_trigger"], QStringLiteral("ALT+LOGO+p"));
    EXPECT_EQ(m_registrar->availability().trigger, "Press toggle-panel");
    m_portal->activate(ours);
    EXPECT_EQ(presses(), 1);
}

TEST_F(PortalHotKeyRegistrarTest, suchAPortalShowsItsSettingsToWhoChooses) {
    m_portal->bindsWithSession = true;
    ASSERT_TRUE(isGranted(HotKeyOccasion::userChoice));
    EXPECT_TRUE(m_portal->calls.contains("BindShortcuts"));
    m_portal->activate(ours);
    EXPECT_EQ(presses(), 1);
}

TEST_F(PortalHotKeyRegistrarTest, aChoiceOfTheUserIsAlwaysAskedFor) {
    m_portal->known = {FakePortal::shortcut(ours)};
    ASSERT_TRUE(isGranted(HotKeyOccasion::userChoice));
    EXPECT_TRUE(m_portal->calls.contains("BindShortcuts"));
}

TEST_F(PortalHotKeyRegistrarTest, afterARefusalNobodyIsAskedAgain) {
    m_portal->code = 1;
    EXPECT_EQ(failure(HotKeyOccasion::userChoice), HotKeyFailure::refused);
    EXPECT_TRUE(m_portal->session.isEmpty());
    m_portal->calls.clear();
    EXPECT_EQ(failure(HotKeyOccasion::takeBack), HotKeyFailure::refused);
    EXPECT_FALSE(m_portal->calls.contains("BindShortcuts"));
}

TEST_F(PortalHotKeyRegistrarTest, aGrantWithoutOurShortcutIsNone) {
    m_portal->leavesOut = true;
    m_portal->known = {FakePortal::shortcut("other")};
    EXPECT_EQ(failure(), HotKeyFailure::refused);
}

TEST_F(PortalHotKeyRegistrarTest, eachOrderHasASessionOfItsOwn) {
    ASSERT_TRUE(isGranted());
    ASSERT_TRUE(isGranted(HotKeyOccasion::userChoice));
    EXPECT_EQ(m_portal->calls.count("Close"), 1);
    EXPECT_EQ(m_portal->calls.count("CreateSession"), 2);
    EXPECT_LT(m_portal->calls.indexOf("Close"), m_portal->calls.lastIndexOf("CreateSession"));
    m_portal->activate(ours);
    EXPECT_EQ(presses(), 1);
}

TEST_F(PortalHotKeyRegistrarTest, withoutAPortalItIsUnavailable) {
    stop();
    EXPECT_EQ(failure(), HotKeyFailure::unavailable);
}

TEST_F(PortalHotKeyRegistrarTest, aPortalWithoutShortcutsIsUnavailable) {
    m_portal->hasShortcuts = false;
    EXPECT_EQ(failure(), HotKeyFailure::unavailable);
}

TEST_F(PortalHotKeyRegistrarTest, aPortalThatForbidsItRefuses) {
    m_portal->isForbidden = true;
    EXPECT_EQ(failure(), HotKeyFailure::refused);
}

TEST_F(PortalHotKeyRegistrarTest, aPortalThatSpeaksOddRefuses) {
    m_portal->speaksOdd = true;
    EXPECT_EQ(failure(), HotKeyFailure::refused);
}

TEST_F(PortalHotKeyRegistrarTest, aResponseMayComeBeforeTheAnswer) {
    m_portal->isHasty = true;
    ASSERT_TRUE(isGranted());
}

TEST_F(PortalHotKeyRegistrarTest, theUserMayTakeTheirTime) {
    m_portal->isAsking = true;
    const auto answer = m_registrar->grab({}, HotKeyOccasion::userChoice);
    ASSERT_TRUE(waitFor([&] { return m_portal->calls.contains("BindShortcuts"); }));
    m_bus.settle();
    EXPECT_FALSE(answer.isFinished());
    m_portal->decide();
    ASSERT_TRUE(waitFor([&] { return answer.isFinished(); }));
    EXPECT_TRUE(answer.result());
}

TEST_F(PortalHotKeyRegistrarTest, anotherOrderEndsTheWait) {
    m_portal->isAsking = true;
    const auto first = m_registrar->grab({}, HotKeyOccasion::userChoice);
    ASSERT_TRUE(waitFor([&] { return m_portal->calls.contains("BindShortcuts"); }));
    m_portal->isAsking = false;
    EXPECT_TRUE(isGranted(HotKeyOccasion::userChoice));
    ASSERT_TRUE(first.isFinished());
    EXPECT_EQ(first.result().error(), HotKeyFailure::abandoned);
}

TEST_F(PortalHotKeyRegistrarTest, signalsOfOthersDontCount) {
    ASSERT_TRUE(isGranted());
    m_portal->activate("other");
    m_portal->activate("/some/other/session", ours);
    const QDBusConnection stranger = m_bus.connect();
    QDBusMessage forged = QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                                     "org.freedesktop.portal.GlobalShortcuts", "Activated");
    forged << QVariant::fromValue(QDBusObjectPath(m_portal->session)) << ours << qulonglong(1)
           << QVariantMap();
    ASSERT_TRUE(stranger.send(forged));
    EXPECT_EQ(presses(), 0);
}

TEST_F(PortalHotKeyRegistrarTest, afterAReleaseNothingIsPressed) {
    ASSERT_TRUE(isGranted());
    const QString session = m_portal->session;
    m_registrar->release();
    m_bus.settle();
    EXPECT_TRUE(m_portal->session.isEmpty());
    m_portal->activate(session, ours);
    EXPECT_EQ(presses(), 0);
}

TEST_F(PortalHotKeyRegistrarTest, aSessionThatTheDesktopClosesIsOver) {
    ASSERT_TRUE(isGranted());
    m_portal->closeSession();
    m_bus.settle();
    m_portal->activate(ours);
    EXPECT_EQ(presses(), 0);
    EXPECT_EQ(m_registrar->availability().trigger, "");
    EXPECT_TRUE(isGranted());
}

TEST_F(PortalHotKeyRegistrarTest, aPortalThatComesBackIsAskedAgain) {
    ASSERT_TRUE(isGranted());
    stop();
    start();
    ASSERT_TRUE(waitFor([&] { return m_portal->calls.contains("BindShortcuts"); }));
    m_bus.settle();
    m_portal->activate(ours);
    EXPECT_EQ(presses(), 1);
}

TEST_F(PortalHotKeyRegistrarTest, aPortalThatStillHasTheOldSessionIsAskedOnceMore) {
    m_portal->refusedSessions = 1;
    ASSERT_TRUE(isGranted());
    m_portal->activate(ours);
    EXPECT_EQ(presses(), 1);
}

TEST_F(PortalHotKeyRegistrarTest, aPortalThatMakesNoSessionRefuses) {
    m_portal->refusedSessions = 10;
    EXPECT_EQ(failure(), HotKeyFailure::refused);
    EXPECT_EQ(m_portal->calls.count("CreateSession"), 2);
}

TEST_F(PortalHotKeyRegistrarTest, aPortalThatComesIsntAskedForWhatNobodyHas) {
    stop();
    start();
    m_bus.settle();
    EXPECT_TRUE(m_portal->calls.isEmpty());
}

TEST_F(PortalHotKeyRegistrarTest, aPortalThatGoesWhileItAsksIsUnavailable) {
    m_portal->isAsking = true;
    const auto answer = m_registrar->grab({}, HotKeyOccasion::userChoice);
    ASSERT_TRUE(waitFor([&] { return m_portal->calls.contains("BindShortcuts"); }));
    m_portal.reset();
    ASSERT_TRUE(waitFor([&] { return answer.isFinished(); }));
    EXPECT_EQ(answer.result().error(), HotKeyFailure::unavailable);
}

TEST_F(PortalHotKeyRegistrarTest, withoutABusItIsUnavailable) {
    m_registrar = std::make_unique<PortalHotKeyRegistrar>(QDBusConnection("nowhere"));
    const auto answer = m_registrar->grab({}, HotKeyOccasion::start);
    ASSERT_TRUE(waitFor([&] { return answer.isFinished(); }));
    EXPECT_EQ(answer.result().error(), HotKeyFailure::unavailable);
}

TEST_F(PortalHotKeyRegistrarTest, afterTheBusHasGoneItIsUnavailable) {
    ASSERT_TRUE(isGranted());
    m_bus.stop();
    const auto answer = m_registrar->grab({}, HotKeyOccasion::start);
    ASSERT_TRUE(waitFor([&] { return answer.isFinished(); }));
    EXPECT_EQ(answer.result().error(), HotKeyFailure::unavailable);
}

TEST_F(PortalHotKeyRegistrarTest, theEndAnswersWhatWaits) {
    m_portal->isAsking = true;
    const auto answer = m_registrar->grab({}, HotKeyOccasion::userChoice);
    ASSERT_TRUE(waitFor([&] { return m_portal->calls.contains("BindShortcuts"); }));
    m_registrar.reset();
    m_bus.settle();
    ASSERT_TRUE(answer.isFinished());
    EXPECT_EQ(answer.result().error(), HotKeyFailure::abandoned);
    EXPECT_TRUE(m_portal->session.isEmpty());
}

TEST_F(PortalHotKeyRegistrarTest, listsOfOtherKindsHoldNothing) {
    EXPECT_EQ(findShortcut({}, ours), std::nullopt);
    EXPECT_EQ(findShortcut(7, ours), std::nullopt);
    EXPECT_EQ(findShortcut(QStringList{ours}, ours), std::nullopt);
}

} // namespace
} // namespace tarnvale
