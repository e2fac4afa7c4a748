#include "commands/hotkey/linux/PortalHotKeyRegistrar.h"
#include "commands/hotkey/linux/PortalRequests.h"
#include "commands/hotkey/linux/ShortcutsBackend.h"
#include "platform/linux/PrivateBus.h"
#include "platform/linux/VirtualDisplay.h"
#include "support/ManualClock.h"

#include <QDBusConnectionInterface>

#include <gtest/gtest.h>

#include <filesystem>

namespace tarnvale {
namespace {

constexpr const char *program = "/usr/libexec/xdg-desktop-portal";
const QString ours = PortalHotKeyRegistrar::shortcutId;

/// The registrar, the portal that is installed, and a desktop of the test's own behind it.
class RealPortalTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
        if (!std::filesystem::exists(program))
            GTEST_SKIP() << "xdg-desktop-portal isn't installed";
        m_folder.write("portals/test.portal",
                       "[portal]\nDBusName=" + ShortcutsBackend::service.toStdString() +
                           "\nInterfaces=org.freedesktop.impl.portal.GlobalShortcuts\nUseIn=test\n");
        m_folder.write("portals/portals.conf", "[preferred]\ndefault=test\n");
        m_backend = std::make_unique<ShortcutsBackend>(m_bus.connect());
        m_watcher = std::make_unique<QDBusConnection>(m_bus.connect());
        startPortal();
        if (testing::Test::HasFailure())
            return;
        m_registrar = std::make_unique<PortalHotKeyRegistrar>(m_bus.connect());
        m_registrar->onPress = [this] { ++m_presses; };
    }

    [[nodiscard]] bool hasPortal() const {
        return m_watcher->interface()->isServiceRegistered(PortalRequests::service);
    }

    void startPortal() {
        const std::string folder = m_folder.path("portals");
        m_portal = std::make_unique<TestProcess>(
            std::vector<std::string>{program},
            environmentWith(
                {"DBUS_SESSION_BUS_ADDRESS=" + m_bus.address(), "XDG_DESKTOP_PORTAL_DIR=" + folder,
                 "XDG_CURRENT_DESKTOP=test", "XDG_RUNTIME_DIR=" + m_folder.path(), "HOME=" + m_folder.path(),
                 "XDG_CONFIG_HOME=" + m_folder.path("config"), "XDG_DATA_HOME=" + m_folder.path("data")}));
        ASSERT_TRUE(waitFor([&] { return hasPortal(); }, std::chrono::seconds(30)));
    }

    void stopPortal() {
        m_portal.reset();
        ASSERT_TRUE(waitFor([&] { return !hasPortal(); }));
    }

    std::optional<HotKeyOutcome> grab(HotKeyOccasion occasion = HotKeyOccasion::start) {
        const auto answer = m_registrar->grab({}, occasion);
        const bool isAnswered = waitFor([&] { return answer.isFinished(); }, std::chrono::seconds(30));
        return isAnswered ? std::optional(answer.result()) : std::nullopt;
    }

    [[nodiscard]] bool isPressed(int times) {
        return waitFor([&] { return m_presses == times; });
    }

    TemporaryFolder m_folder;
    PrivateBus m_bus;
    std::unique_ptr<ShortcutsBackend> m_backend;
    std::unique_ptr<QDBusConnection> m_watcher;
    std::unique_ptr<TestProcess> m_portal;
    std::unique_ptr<PortalHotKeyRegistrar> m_registrar;
    int m_presses = 0;
};

TEST_F(RealPortalTest, aBindingIsGrantedAndPressed) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    EXPECT_EQ(m_backend->calls, (QStringList{"CreateSession", "ListShortcuts", "BindShortcuts"}));
    ASSERT_EQ(m_backend->asked.size(), 1);
    EXPECT_EQ(m_backend->asked.front().id, ours);
    EXPECT_EQ(m_backend->asked.front().properties["preferred_trigger"], QStringLiteral("ALT+LOGO+p"));
    EXPECT_EQ(m_registrar->availability().trigger, "Meta+Alt+P");
    m_backend->activate(ours);
    EXPECT_TRUE(isPressed(1));
    m_backend->activate("other");
    m_backend->activate(ours);
    EXPECT_TRUE(isPressed(2));
}

TEST_F(RealPortalTest, whatTheDesktopRemembersIsPressedWithoutAQuestion) {
    m_backend->known = {{ours, {{"trigger_description", "Meta+D"}}}};
    ASSERT_EQ(grab(), HotKeyOutcome());
    EXPECT_EQ(m_backend->calls, (QStringList{"CreateSession", "ListShortcuts"}));
    EXPECT_EQ(m_registrar->availability().trigger, "Meta+D");
    m_backend->activate(ours);
    EXPECT_TRUE(isPressed(1));
}

TEST_F(RealPortalTest, aDesktopThatBindsWithTheSessionIsAskedNoMore) {
    m_backend->bindsWithSession = true;
    const auto outcome = grab();
    if (m_backend->asked.isEmpty())
        GTEST_SKIP() << "this portal doesn't hand the shortcuts on with a session";
    ASSERT_EQ(outcome, HotKeyOutcome());
    EXPECT_EQ(m_backend->calls, QStringList{"CreateSession"});
    m_backend->activate(ours);
    EXPECT_TRUE(isPressed(1));
}

TEST_F(RealPortalTest, aRefusalIsOne) {
    m_backend->code = 1;
    const auto outcome = grab(HotKeyOccasion::userChoice);
    ASSERT_TRUE(outcome && !*outcome);
    EXPECT_EQ(outcome->error(), HotKeyFailure::refused);
    EXPECT_TRUE(waitFor([&] { return m_backend->session.isEmpty(); })) << "the session is left open";
}

TEST_F(RealPortalTest, otherKeysAreShown) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    m_backend->change(ours, "Ctrl+F9");
    EXPECT_TRUE(waitFor([&] { return m_registrar->availability().trigger == "Ctrl+F9"; }));
}

TEST_F(RealPortalTest, afterAnotherChoiceOneSessionIsLeft) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    ASSERT_EQ(grab(HotKeyOccasion::userChoice), HotKeyOutcome());
    EXPECT_EQ(m_backend->calls.count("Close"), 1);
    m_backend->activate(ours);
    EXPECT_TRUE(isPressed(1));
}

TEST_F(RealPortalTest, afterARestartOfThePortalTheKeyWorksAgain) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    stopPortal();
    m_backend->calls.clear();
    startPortal();
    ASSERT_TRUE(waitFor([&] { return m_backend->calls.contains("ListShortcuts"); }));
    ASSERT_TRUE(waitFor([&] {
        m_backend->activate(ours);
        return m_presses > 0;
    }));
}

TEST_F(RealPortalTest, aSessionThatTheDesktopClosesIsOver) {
    ASSERT_EQ(grab(), HotKeyOutcome());
    m_backend->closeSession();
    EXPECT_TRUE(waitFor([&] { return m_registrar->availability().trigger.empty(); }));
    m_backend->known.clear();
    ASSERT_EQ(grab(), HotKeyOutcome());
    m_backend->activate(ours);
    EXPECT_TRUE(isPressed(1));
}

TEST_F(RealPortalTest, aDesktopWithoutShortcutsIsUnavailable) {
    stopPortal();
    m_folder.write("portals/test.portal",
                   "[portal]\nDBusName=" + ShortcutsBackend::service.toStdString() +
                       "\nInterfaces=org.freedesktop.impl.portal.Lockdown\nUseIn=test\n");
    startPortal();
    const auto outcome = grab();
    ASSERT_TRUE(outcome && !*outcome);
    EXPECT_EQ(outcome->error(), HotKeyFailure::unavailable);
}

} // namespace
} // namespace tarnvale
