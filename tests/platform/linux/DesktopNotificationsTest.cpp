#include "platform/linux/DesktopNotifications.h"

#include "platform/linux/FakeNotificationServer.h"
#include "platform/linux/PrivateBus.h"
#include "support/ManualClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QVariantMap>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const NotificationPayload shop{3000, "npm run dev", "/home/me/shop", std::nullopt};

class DesktopNotificationsTest : public testing::Test {
protected:
    using Actions = std::vector<std::pair<std::string, NotificationPayload>>;

    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
        m_notifications = std::make_unique<DesktopNotifications>(m_bus.connect());
        m_notifications->setCategories({{"watchedPortStopped", {{"relaunch", "Start Again"}}}});
        m_notifications->onAction = [this](const std::string &id, const NotificationPayload &payload) {
            m_actions.emplace_back(id, payload);
        };
    }

    std::unique_ptr<FakeNotificationServer> startServer() {
        auto server = std::make_unique<FakeNotificationServer>(m_bus.connect());
        m_bus.settle();
        return server;
    }

    /// Posts and waits until `server` has shown it.
    void post(const FakeNotificationServer &server, const Notification &notification) {
        const auto before = server.notified.size();
        const auto remembered = m_notifications->remembered();
        m_notifications->post(notification);
        ASSERT_TRUE(waitFor([&] { return server.notified.size() == before + 1; }));
        if (remembered < DesktopNotifications::mostRemembered) {
            ASSERT_TRUE(waitFor([&] { return m_notifications->remembered() == remembered + 1; }));
        }
        m_bus.settle();
    }

    PrivateBus m_bus;
    std::unique_ptr<DesktopNotifications> m_notifications;
    Actions m_actions;
};

TEST_F(DesktopNotificationsTest, aMessageCarriesItsTextsButtonsAndHints) {
    const auto server = startServer();
    post(*server, {"Port 3000 stopped", "shop is no longer listening.", "watchedPortStopped", shop});
    const QVariantList call = server->notified.first();
    ASSERT_EQ(call.size(), 8);
    EXPECT_EQ(call[0], QStringLiteral("Tarnvale"));
    EXPECT_EQ(call[1].toUInt(), 0u);
    EXPECT_EQ(call[2], QStringLiteral("dev.tarnvale.Tarnvale"));
    EXPECT_EQ(call[3], QStringLiteral("Port 3000 stopped"));
    EXPECT_EQ(call[4], QStringLiteral("shop is no longer listening."));
    EXPECT_EQ(call[5].toStringList(), (QStringList{"default", "Open Tarnvale", "relaunch", "Start Again"}));
    const QVariantMap hints = qdbus_cast<QVariantMap>(call[6]);
    EXPECT_EQ(hints["desktop-entry"], QStringLiteral("dev.tarnvale.Tarnvale"));
    EXPECT_EQ(hints["sound-name"], QStringLiteral("message-new-instant"));
    EXPECT_EQ(hints["urgency"].metaType(), QMetaType::fromType<uchar>());
    EXPECT_EQ(hints["urgency"].toUInt(), 1u);
    EXPECT_EQ(call[7].toInt(), -1);
}

TEST_F(DesktopNotificationsTest, withoutAKnownCategoryThereAreNoButtons) {
    const auto server = startServer();
    post(*server, {"a", "b", std::nullopt, std::nullopt});
    post(*server, {"a", "b", "unheardOf", std::nullopt});
    for (const QVariantList &call : server->notified)
        EXPECT_EQ(call[5].toStringList(), (QStringList{"default", "Open Tarnvale"}));
}

TEST_F(DesktopNotificationsTest, whatTheServerCanDoIsAskedOnce) {
    const auto server = startServer();
    server->capabilities = QStringList{"body", "body-markup"};
    post(*server, {"a < b", "c < d", "watchedPortStopped", shop});
    post(*server, {"a < b", "c < d", "watchedPortStopped", shop});
    EXPECT_EQ(server->capabilityCalls, 1);
    EXPECT_EQ(server->notified.last()[3], QStringLiteral("a < b"));
    EXPECT_EQ(server->notified.last()[4], QStringLiteral("c &lt; d"));
    EXPECT_EQ(server->notified.last()[5].toStringList(), QStringList());
}

TEST_F(DesktopNotificationsTest, anActionComesBackWithItsPayload) {
    const auto server = startServer();
    post(*server, {"a", "b", "watchedPortStopped", shop});
    post(*server, {"c", "d", std::nullopt, std::nullopt});
    server->invoke(1, "relaunch");
    server->invoke(2, "default");
    m_bus.settle();
    EXPECT_THAT(m_actions,
                ElementsAre(Pair("relaunch", shop), Pair(defaultNotificationAction, NotificationPayload())));
}

TEST_F(DesktopNotificationsTest, actionsOfOthersAreNotOurs) {
    const auto server = startServer();
    post(*server, {"a", "b", "watchedPortStopped", shop});
    server->invoke(77, "relaunch");
    const QString service = "org.freedesktop.Notifications";
    QDBusMessage forged =
        QDBusMessage::createSignal("/org/freedesktop/Notifications", service, "ActionInvoked");
    forged << 1u << QStringLiteral("relaunch");
    m_bus.connect().send(forged);
    m_bus.settle();
    EXPECT_THAT(m_actions, IsEmpty());
}

TEST_F(DesktopNotificationsTest, aForgedCloseOrTokenCountsForNothing) {
    const auto server = startServer();
    post(*server, {"a", "b", "watchedPortStopped", shop});
    QDBusConnection stranger = m_bus.connect();
    for (const char *name : {"NotificationClosed", "ActivationToken"}) {
        QDBusMessage forged = QDBusMessage::createSignal(
            "/org/freedesktop/Notifications", "org.freedesktop.Notifications", QLatin1String(name));
        forged << 1u;
        forged << (name[0] == 'N' ? QVariant(2u) : QVariant("stolen"));
        stranger.send(forged);
    }
    m_bus.settle();
    EXPECT_EQ(m_notifications->remembered(), 1u);
    EXPECT_EQ(m_notifications->takeActivationToken(), "");
}

TEST_F(DesktopNotificationsTest, aClosedOneIsForgottenAnExpiredOneIsNot) {
    const auto server = startServer();
    for (int i = 0; i < 4; ++i)
        post(*server, {"a", "b", "watchedPortStopped", shop});
    for (uint reason = 1; reason <= 4; ++reason)
        server->close(reason, reason);
    m_bus.settle();
    EXPECT_EQ(m_notifications->remembered(), 1u);
    server->invoke(2, "relaunch");
    server->invoke(1, "relaunch");
    m_bus.settle();
    EXPECT_THAT(m_actions, ElementsAre(Pair("relaunch", shop)));
}

TEST_F(DesktopNotificationsTest, theTokenIsThereWhenTheActionComesAndOnlyOnce) {
    const auto server = startServer();
    post(*server, {"a", "b", "watchedPortStopped", shop});
    std::vector<std::string> tokens;
    m_notifications->onAction = [&](const std::string &, const NotificationPayload &) {
        tokens.push_back(m_notifications->takeActivationToken());
    };
    server->giveToken(1, "token-1");
    server->invoke(1, "default");
    server->invoke(1, "default");
    m_bus.settle();
    EXPECT_THAT(tokens, ElementsAre("token-1", ""));
}

TEST_F(DesktopNotificationsTest, withoutAServerAMessageIsDropped) {
    m_notifications->post({"lost", "b", std::nullopt, std::nullopt});
    m_bus.settle();
    const auto server = startServer();
    post(*server, {"shown", "b", std::nullopt, std::nullopt});
    ASSERT_EQ(server->notified.size(), 1);
    EXPECT_EQ(server->notified.first()[3], QStringLiteral("shown"));
}

TEST_F(DesktopNotificationsTest, aNewServerKnowsNothingOfTheOldOnesIds) {
    auto server = startServer();
    post(*server, {"a", "b", "watchedPortStopped", shop});
    server.reset();
    m_bus.settle();
    EXPECT_EQ(m_notifications->remembered(), 0u);

    server = startServer();
    server->capabilities.clear();
    server->nextId = 7;
    post(*server, {"c", "d", "watchedPortStopped", shop});
    EXPECT_EQ(server->capabilityCalls, 1);
    EXPECT_EQ(server->notified.first()[5].toStringList(), QStringList());
    server->invoke(1, "relaunch");
    server->invoke(7, "default");
    m_bus.settle();
    EXPECT_THAT(m_actions, ElementsAre(Pair("default", shop)));
}

TEST_F(DesktopNotificationsTest, whatASilentServerLeavesGoesToTheNext) {
    auto silent = startServer();
    silent->isSilent = true;
    constexpr std::size_t posted = DesktopNotifications::mostWaiting + 5;
    for (std::size_t i = 0; i < posted; ++i)
        m_notifications->post({std::to_string(i), "b", std::nullopt, std::nullopt});
    ASSERT_TRUE(waitFor([&] { return silent->capabilityCalls > 0; }));
    m_bus.settle();
    EXPECT_EQ(silent->capabilityCalls, 1);
    EXPECT_THAT(silent->notified, IsEmpty());

    silent.reset();
    const auto server = startServer();
    ASSERT_TRUE(waitFor([&] { return m_notifications->remembered() == DesktopNotifications::mostWaiting; }));
    EXPECT_EQ(server->notified.first()[3], QStringLiteral("5")) << "the oldest five were dropped";
}

TEST_F(DesktopNotificationsTest, whatWaitsForAServerThatDiesIsDropped) {
    std::optional<QDBusConnection> dying = m_bus.connect();
    const QString name = dying->name();
    auto silent = std::make_unique<FakeNotificationServer>(*dying);
    silent->isSilent = true;
    m_notifications->post({"lost", "b", std::nullopt, std::nullopt});
    ASSERT_TRUE(waitFor([&] { return silent->capabilityCalls > 0; }));
    m_bus.settle();
    silent.reset();
    dying.reset();                            // the last that holds it open
    QDBusConnection::disconnectFromBus(name); // the bus now answers in its place
    m_bus.settle();

    const auto server = startServer();
    post(*server, {"shown", "b", std::nullopt, std::nullopt});
    ASSERT_EQ(server->notified.size(), 1);
    EXPECT_EQ(server->notified.first()[3], QStringLiteral("shown"));
}

TEST_F(DesktopNotificationsTest, refusalsAndOddAnswersAreDropped) {
    const auto server = startServer();
    server->refuses = true;
    m_notifications->post({"a", "b", std::nullopt, shop});
    ASSERT_TRUE(waitFor([&] { return server->notified.size() == 1; }));
    server->refuses = false;
    server->speaksOdd = true;
    m_notifications->post({"a", "b", std::nullopt, shop});
    ASSERT_TRUE(waitFor([&] { return server->notified.size() == 2; }));
    m_bus.settle();
    EXPECT_EQ(m_notifications->remembered(), 0u);
    server->speaksOdd = false;
    post(*server, {"a", "b", std::nullopt, shop});
    EXPECT_EQ(m_notifications->remembered(), 1u);
}

TEST_F(DesktopNotificationsTest, capabilitiesOfAnOddKindShowNothing) {
    const auto server = startServer();
    server->speaksOdd = true;
    m_notifications->post({"a", "b", std::nullopt, std::nullopt});
    ASSERT_TRUE(waitFor([&] { return server->capabilityCalls == 1; }));
    m_bus.settle();
    EXPECT_THAT(server->notified, IsEmpty());
}

TEST_F(DesktopNotificationsTest, onlyTheNewestAreRemembered) {
    const auto server = startServer();
    post(*server, {"a", "b", std::nullopt, NotificationPayload{0}});
    for (std::size_t i = 1; i <= DesktopNotifications::mostRemembered; ++i)
        m_notifications->post({"a", "b", std::nullopt, NotificationPayload{static_cast<std::int64_t>(i)}});
    ASSERT_TRUE(waitFor([&] { return server->nextId == DesktopNotifications::mostRemembered + 2; }));
    m_bus.settle();
    EXPECT_EQ(m_notifications->remembered(), DesktopNotifications::mostRemembered);
    server->invoke(1, "default");
    server->invoke(2, "default");
    m_bus.settle();
    EXPECT_THAT(m_actions, ElementsAre(Pair("default", NotificationPayload{1})));
}

TEST_F(DesktopNotificationsTest, itMayGoWhileAnAnswerIsDue) {
    const auto server = startServer();
    m_notifications->post({"a", "b", std::nullopt, std::nullopt});
    m_notifications.reset();
    m_bus.settle();
    EXPECT_THAT(server->notified, IsEmpty());
}

TEST_F(DesktopNotificationsTest, aBusThatGoesAwayTakesTheMessagesWithIt) {
    const auto server = startServer();
    post(*server, {"a", "b", std::nullopt, std::nullopt});
    m_bus.stop();
    m_notifications->post({"c", "d", std::nullopt, std::nullopt});
    settle();
    EXPECT_EQ(server->notified.size(), 1);
}

TEST(DesktopNotificationsWithoutBusTest, everythingIsDropped) {
    DesktopNotifications notifications{QDBusConnection(QStringLiteral("never connected"))};
    notifications.setCategories({{"a", {{"b", "c"}}}});
    notifications.requestAuthorization();
    notifications.post({"a", "b", "a", std::nullopt});
    settle();
    EXPECT_EQ(notifications.remembered(), 0u);
}

} // namespace
} // namespace tarnvale
