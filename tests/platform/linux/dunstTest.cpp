// From end to end with a real server of notifications on a real X display.

#include "platform/linux/DesktopNotifications.h"

#include "platform/linux/Dunst.h"
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

class DunstTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_dunst.problem().empty())
            GTEST_SKIP() << m_dunst.problem();
        ASSERT_TRUE(m_dunst.start());
        m_notifications = std::make_unique<DesktopNotifications>(m_bus.connect());
        m_notifications->setCategories({{"watchedPortStopped", {{"relaunch", "Start Again"}}}});
        m_notifications->onAction = [this](const std::string &id, const NotificationPayload &payload) {
            m_actions.emplace_back(id, payload);
        };
    }

    PrivateBus m_bus;
    VirtualDisplay m_display;
    Dunst m_dunst{m_bus, m_display};
    std::unique_ptr<DesktopNotifications> m_notifications;
    std::vector<std::pair<std::string, NotificationPayload>> m_actions;
};

TEST_F(DunstTest, aChosenActionBringsItsPayloadBack) {
    m_notifications->post({"Port 3000 stopped", "shop is no longer listening.", "watchedPortStopped", shop});
    ASSERT_TRUE(waitFor([&] { return m_notifications->remembered() == 1; }));
    ASSERT_TRUE(m_dunst.isDisplayed("1"));
    EXPECT_EQ(m_dunst.control({"action", "0"}).status, 0);
    ASSERT_TRUE(waitFor([&] { return !m_actions.empty(); }));
    EXPECT_THAT(m_actions, ElementsAre(Pair(defaultNotificationAction, shop)));
}

TEST_F(DunstTest, aRealClickIsTheDefaultAction) {
    if (!std::filesystem::exists("/usr/bin/xdotool"))
        GTEST_SKIP() << "xdotool isn't installed";
    m_notifications->post({"Port 3000 stopped", "b", std::nullopt, shop});
    ASSERT_TRUE(m_dunst.isDisplayed("1"));
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
    ASSERT_TRUE(m_dunst.isDisplayed("1"));
    static_cast<void>(m_dunst.control({"close-all"}));
    EXPECT_THAT(m_dunst.control({"history"}).output, HasSubstr("&lt;b&gt;x&lt;/b&gt; &amp;&amp; y"));
}

TEST_F(DunstTest, aServerThatIsKilledAndStartedAgainWorksOn) {
    m_notifications->post({"a", "b", std::nullopt, shop});
    ASSERT_TRUE(waitFor([&] { return m_notifications->remembered() == 1; }));
    m_dunst.kill();
    ASSERT_TRUE(waitFor([&] { return m_notifications->remembered() == 0; }));
    ASSERT_TRUE(m_dunst.start());
    m_notifications->post({"c", "d", std::nullopt, shop});
    ASSERT_TRUE(m_dunst.isDisplayed("1"));
    EXPECT_TRUE(waitFor([&] { return m_notifications->remembered() == 1; }));
}

} // namespace
} // namespace tarnvale
