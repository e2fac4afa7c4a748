#include "commands/hotkey/linux/chooseRegistrar.h"

#include "commands/hotkey/linux/FakeKGlobalAccel.h"
#include "commands/hotkey/linux/FakePortal.h"
#include "platform/linux/PrivateBus.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

#include <map>

namespace tarnvale {
namespace {

using Kind = HotKeyAvailability::Kind;

class ChooseRegistrarTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
    }

    std::unique_ptr<HotKeyRegistrar> chosen(bool isWayland) {
        return chooseRegistrar({.isWayland = isWayland, .display = ":nowhere", .bus = m_bus.connect()});
    }

    std::optional<HotKeyOutcome> grab(HotKeyRegistrar &registrar) {
        const auto answer = registrar.grab({}, HotKeyOccasion::start);
        const bool isAnswered = waitFor([&] { return answer.isFinished(); });
        return isAnswered ? std::optional(answer.result()) : std::nullopt;
    }

    PrivateBus m_bus;
};

TEST_F(ChooseRegistrarTest, underWaylandThePortalGoesFirst) {
    FakePortal portal(m_bus.connect());
    FakeKGlobalAccel daemon(m_bus.connect());
    m_bus.settle();
    const auto registrar = chosen(true);
    EXPECT_EQ(grab(*registrar), HotKeyOutcome());
    EXPECT_EQ(registrar->availability().kind, Kind::desktopDecides);
    EXPECT_TRUE(daemon.calls.isEmpty());
}

TEST_F(ChooseRegistrarTest, withoutThePortalsInterfaceKdesDaemonIsNext) {
    FakePortal portal(m_bus.connect());
    portal.hasShortcuts = false;
    FakeKGlobalAccel daemon(m_bus.connect());
    m_bus.settle();
    const auto registrar = chosen(true);
    EXPECT_EQ(grab(*registrar), HotKeyOutcome());
    EXPECT_EQ(registrar->availability().kind, Kind::works);
    EXPECT_TRUE(daemon.isActive);
}

TEST_F(ChooseRegistrarTest, withNeitherACommandIsLeft) {
    const auto registrar = chosen(true);
    EXPECT_EQ(grab(*registrar), HotKeyOutcome(std::unexpected(HotKeyFailure::unavailable)));
    EXPECT_EQ(registrar->availability(),
              (HotKeyAvailability{
                  .kind = Kind::needsCommand,
                  .command = "gapplication action dev.tarnvale.Tarnvale toggle-panel",
              }));
}

TEST_F(ChooseRegistrarTest, withoutWaylandTheBusIsntAsked) {
    FakePortal portal(m_bus.connect());
    m_bus.settle();
    const auto registrar = chosen(false);
    EXPECT_EQ(grab(*registrar), HotKeyOutcome(std::unexpected(HotKeyFailure::unavailable)));
    EXPECT_EQ(registrar->availability().kind, Kind::needsCommand);
    EXPECT_TRUE(portal.calls.isEmpty());
}

TEST_F(ChooseRegistrarTest, theSessionDecides) {
    const auto surroundings = [this](std::map<std::string, std::string> variables) {
        return hotKeySurroundings(
            [=](const char *name) {
                const auto found = variables.find(name);
                return found == variables.end() ? std::string() : found->second;
            },
            m_bus.connect());
    };
    EXPECT_FALSE(surroundings({{"DISPLAY", ":0"}}).isWayland);
    EXPECT_EQ(surroundings({{"DISPLAY", ":0"}}).display, ":0");
    EXPECT_FALSE(surroundings({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "x11"}}).isWayland);
    EXPECT_TRUE(surroundings({{"DISPLAY", ":0"}, {"XDG_SESSION_TYPE", "wayland"}}).isWayland);
    EXPECT_TRUE(surroundings({{"DISPLAY", ":0"}, {"WAYLAND_DISPLAY", "wayland-0"}}).isWayland);
    EXPECT_FALSE(surroundings({}).isWayland);
}

} // namespace
} // namespace tarnvale
