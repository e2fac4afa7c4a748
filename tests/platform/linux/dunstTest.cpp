// From end to end with a real server of notifications on a real X display.

#include "platform/linux/DesktopNotifications.h"
#include "platform/linux/PrivateBus.h"
#include "platform/linux/VirtualDisplay.h"
#include "support/ManualClock.h"
#include "support/runProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

const NotificationPayload shop{3000, "npm run dev", "/home/me/shop", std::nullopt};

constexpr std::string_view configuration = "[global]\n"
                                           "follow = none\n"
                                           "width = 300\n"
                                           "height = 200\n"
                                           "origin = top-left\n"
                                           "offset = 0x0\n"
                                           "mouse_left_click = do_action, close_current\n"
                                           "markup = full\n"
                                           "format = \"%s\\n%b\"\n";

class DunstTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char *program : {"/usr/bin/dunst", "/usr/bin/dunstctl"})
            if (!std::filesystem::exists(program))
                GTEST_SKIP() << program << " isn't installed";
        if (!m_bus.isRunning() || !m_display.isRunning())
            GTEST_SKIP() << "dbus-daemon, Xvfb or openbox isn't installed";
        start();
        m_notifications = std::make_unique<DesktopNotifications>(m_bus.connect());
        m_notifications->setCategories({{"watchedPortStopped", {{"relaunch", "Start Again"}}}});
        m_notifications->onAction = [this](const std::string &id, const NotificationPayload &payload) {
            m_actions.emplace_back(id, payload);
        };
    }

    void start() {
        const std::string file = m_folder.write("dunstrc", configuration);
        m_dunst = std::make_unique<TestProcess>(
            std::vector<std::string>{"/usr/bin/dunst", "-config", file},
            environmentWith({"DISPLAY=" + m_display.name(), "DBUS_SESSION_BUS_ADDRESS=" + m_bus.address()}));
        ASSERT_TRUE(eventually([this] { return control({"count"}).status == 0; }));
    }

    [[nodiscard]] ProgramRun control(const std::vector<std::string> &words) const {
        std::vector<std::string> arguments{"/usr/bin/env", "DBUS_SESSION_BUS_ADDRESS=" + m_bus.address(),
                                           "/usr/bin/dunstctl"};
        arguments.insert(arguments.end(), words.begin(), words.end());
        return runProgram(arguments);
    }

    [[nodiscard]] bool isDisplayed(std::string_view count) const {
        return waitFor([&] { return control({"count", "displayed"}).output.starts_with(count); });
    }

    TemporaryFolder m_folder;
    PrivateBus m_bus;
    VirtualDisplay m_display;
    std::unique_ptr<TestProcess> m_dunst;
    std::unique_ptr<DesktopNotifications> m_notifications;
    std::vector<std::pair<std::string, NotificationPayload>> m_actions;
};

TEST_F(DunstTest, aChosenActionBringsItsPayloadBack) {
    m_notifications->post({"Port 3000 stopped", "shop is no longer listening.", "watchedPortStopped", shop});
    ASSERT_TRUE(waitFor([&] { return m_notifications->remembered() == 1; }));
    ASSERT_TRUE(isDisplayed("1"));
    EXPECT_EQ(control({"action", "0"}).status, 0);
    ASSERT_TRUE(waitFor([&] { return !m_actions.empty(); }));
    EXPECT_THAT(m_actions, ElementsAre(Pair(defaultNotificationAction, shop)));
}

TEST_F(DunstTest, aRealClickIsTheDefaultAction) {
    if (!std::filesystem::exists("/usr/bin/xdotool"))
        GTEST_SKIP() << "xdotool isn't installed";
    m_notifications->post({"Port 3000 stopped", "b", std::nullopt, shop});
    ASSERT_TRUE(isDisplayed("1"));
    const auto clickOnce = [&] {
        static_cast<void>(runProgram({"/usr/bin/env", "DISPLAY=" + m_display.name(), "/usr/bin/xdotool",
                                      "mousemove", "40", "20", "click", "1"}));
        return waitFor([&] { return !m_actions.empty(); }, std::chrono::milliseconds(500));
    };
    ASSERT_TRUE(eventually(clickOnce));
    EXPECT_THAT(m_actions, ElementsAre(Pair(defaultNotificationAction, shop)));
    EXPECT_TRUE(waitFor([&] { return m_notifications->remembered() == 0; })) << "closed, so forgotten";
}

TEST_F(DunstTest, markupInABodyIsShownAsItStands) {
    m_notifications->post({"a", "<b>x</b> && y", std::nullopt, std::nullopt});
    ASSERT_TRUE(isDisplayed("1"));
    static_cast<void>(control({"close-all"}));
    EXPECT_THAT(control({"history"}).output, HasSubstr("&lt;b&gt;x&lt;/b&gt; &amp;&amp; y"));
}

TEST_F(DunstTest, aServerThatIsKilledAndStartedAgainWorksOn) {
    m_notifications->post({"a", "b", std::nullopt, shop});
    ASSERT_TRUE(waitFor([&] { return m_notifications->remembered() == 1; }));
    m_dunst.reset();
    ASSERT_TRUE(waitFor([&] { return m_notifications->remembered() == 0; }));
    start();
    m_notifications->post({"c", "d", std::nullopt, shop});
    ASSERT_TRUE(isDisplayed("1"));
    EXPECT_TRUE(waitFor([&] { return m_notifications->remembered() == 1; }));
}

} // namespace
} // namespace tarnvale
