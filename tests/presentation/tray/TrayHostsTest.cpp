#include "presentation/tray/TrayHosts.h"

#include "platform/linux/PrivateBus.h"
#include "presentation/tray/FakeWatcher.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

class TrayHostsTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
        m_own = m_bus.connect();
    }

    void startHosts() {
        m_hosts = std::make_unique<TrayHosts>(m_own);
        QObject::connect(m_hosts.get(), &TrayHosts::hasHostChanged, m_hosts.get(), [this] { ++m_changes; });
        m_bus.settle();
    }

    std::unique_ptr<FakeWatcher> startWatcher(bool hasHost = true) {
        auto watcher = std::make_unique<FakeWatcher>(m_bus.connect(), hasHost);
        m_bus.settle();
        return watcher;
    }

    [[nodiscard]] bool becomes(bool hasHost) const {
        return waitFor([&] { return m_hosts->hasHost() == hasHost; });
    }

    PrivateBus m_bus;
    QDBusConnection m_own{QString()};
    std::unique_ptr<TrayHosts> m_hosts;
    int m_changes = 0;
};

TEST_F(TrayHostsTest, aTrayThatIsThereIsTold) {
    const auto watcher = startWatcher();
    startHosts();
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(watcher->registered, QStringList{m_own.baseService()});
    EXPECT_EQ(m_changes, 1);
}

TEST_F(TrayHostsTest, aTrayThatComesLaterIsTold) {
    startHosts();
    EXPECT_FALSE(m_hosts->hasHost());
    EXPECT_EQ(m_changes, 0);
    const auto watcher = startWatcher();
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(watcher->registered, QStringList{m_own.baseService()});
}

TEST_F(TrayHostsTest, aTrayThatStartsAnewIsToldAnew) {
    startHosts();
    for (int round = 1; round <= 3; ++round) {
        auto watcher = startWatcher();
        EXPECT_TRUE(becomes(true));
        EXPECT_EQ(watcher->registered, QStringList{m_own.baseService()});
        EXPECT_EQ(m_changes, 2 * round - 1);
        watcher.reset();
        EXPECT_TRUE(becomes(false));
    }
}

TEST_F(TrayHostsTest, aTrayWithoutAHostShowsNothingYet) {
    startHosts();
    const auto watcher = startWatcher(false);
    EXPECT_TRUE(waitFor([&] { return watcher->registered.size() == 1; }));
    m_bus.settle();
    EXPECT_FALSE(m_hosts->hasHost());
    watcher->setHasHost(true);
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(watcher->registered.size(), 2);
    watcher->setHasHost(false);
    EXPECT_TRUE(becomes(false));
}

TEST_F(TrayHostsTest, aTrayThatDoesNotSayIsTakenToHaveAHost) {
    startHosts();
    FakeWatcher watcher(m_bus.connect());
    watcher.saysHosts = false;
    EXPECT_TRUE(becomes(true));
}

TEST_F(TrayHostsTest, aTrayThatRefusesShowsNothing) {
    startHosts();
    FakeWatcher watcher(m_bus.connect());
    watcher.refuses = true;
    EXPECT_TRUE(waitFor([&] { return watcher.registered.size() == 1; }));
    m_bus.settle();
    EXPECT_FALSE(m_hosts->hasHost());
    watcher.refuses = false;
    watcher.setHasHost(true);
    EXPECT_TRUE(becomes(true));
}

TEST_F(TrayHostsTest, onlyTheTrayItselfIsHeard) {
    startHosts();
    const auto watcher = startWatcher();
    EXPECT_TRUE(becomes(true));
    QDBusConnection stranger = m_bus.connect();
    for (const char *signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        stranger.send(QDBusMessage::createSignal(QStringLiteral("/StatusNotifierWatcher"),
                                                 QStringLiteral("org.kde.StatusNotifierWatcher"),
                                                 QString::fromLatin1(signal)));
    m_bus.settle();
    EXPECT_EQ(watcher->registered.size(), 1);
}

TEST_F(TrayHostsTest, anAnswerAfterTheEndHarmsNothing) {
    const auto watcher = startWatcher();
    m_hosts = std::make_unique<TrayHosts>(m_own);
    m_hosts.reset();
    m_bus.settle();
    EXPECT_TRUE(watcher->registered.isEmpty());
}

TEST_F(TrayHostsTest, withoutABusThereIsNoTray) {
    const TrayHosts hosts(QDBusConnection(QStringLiteral("no such connection")));
    settle();
    EXPECT_FALSE(hosts.hasHost());
}

} // namespace
} // namespace tarnvale
