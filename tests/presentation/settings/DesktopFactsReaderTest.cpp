#include "presentation/settings/DesktopFactsReader.h"

#include "commands/hotkey/FakeRegistrar.h"
#include "commands/hotkey/GlobalHotKey.h"
#include "platform/linux/PrivateBus.h"
#include "support/FakePlatform.h"

#include <QDBusVirtualObject>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using Server = DesktopFacts::Notifications;

/// A tray of the older kind that comes when the test wants.
struct SomeXembedTray : XembedTray {
    bool isThere = false;

    [[nodiscard]] bool isAvailable() const override { return isThere; }
    void show(const QIcon &, const QString &) override {}
    void hide() override {}
    [[nodiscard]] std::optional<QRect> geometry() const override { return std::nullopt; }
};

/// A server of notifications that says of itself what the test wants.
class NamedServer : public QDBusVirtualObject {
public:
    NamedServer(QDBusConnection bus, QVariantList words) : m_bus(std::move(bus)), m_words(std::move(words)) {
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/Notifications"), this);
        m_bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
    }
    NamedServer(const NamedServer &) = delete;
    NamedServer &operator=(const NamedServer &) = delete;
    ~NamedServer() override {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.Notifications"));
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/Notifications"));
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override {
        return message.member() == QStringLiteral("GetServerInformation") &&
               connection.send(message.createReply(m_words));
    }
    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

private:
    QDBusConnection m_bus;
    QVariantList m_words;
};

QVariantList words(const QString &name, const QString &version) {
    return {name, QStringLiteral("maker"), version, QStringLiteral("1.2")};
}

class FactsReader : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
        auto xembed = std::make_unique<SomeXembedTray>();
        m_xembed = xembed.get();
        m_tray = std::make_unique<TrayIcon>(m_bus.connect(), m_world.clock, std::move(xembed));
        auto registrar = std::make_unique<FakeRegistrar>();
        m_registrar = registrar.get();
        m_hotKey = std::make_unique<GlobalHotKey>(m_world.settings, std::move(registrar));
        m_hotKey->setUp();
        settle();
    }
    void start() {
        m_reader = std::make_unique<DesktopFactsReader>(m_bus.connect(), *m_tray, *m_hotKey);
        m_bus.settle();
    }
    void serve(const QVariantList &answer) {
        m_server = std::make_unique<NamedServer>(m_bus.connect(), answer);
        m_bus.settle();
    }
    [[nodiscard]] const DesktopFacts &facts() const { return m_reader->facts(); }
    bool becomes(Server server) {
        return waitFor([this, server] { return facts().notifications == server; });
    }

    FakePlatform m_world;
    PrivateBus m_bus;
    SomeXembedTray *m_xembed = nullptr;
    std::unique_ptr<TrayIcon> m_tray;
    FakeRegistrar *m_registrar = nullptr;
    std::unique_ptr<GlobalHotKey> m_hotKey;
    std::unique_ptr<NamedServer> m_server;
    std::unique_ptr<DesktopFactsReader> m_reader;
};

TEST_F(FactsReader, readsWhatIsKnownAtOnce) {
    start();
    EXPECT_EQ(facts().tray, TrayKind::none);
    EXPECT_TRUE(facts().hasHotKey);
    EXPECT_EQ(facts().hotKeyLabel, "Alt+Super+P");
    EXPECT_TRUE(facts().isComposited) << "windows in memory are";
}

TEST_F(FactsReader, namesTheServerOfNotifications) {
    serve(words(QStringLiteral("dunst"), QStringLiteral("1.9.0")));
    start();
    ASSERT_TRUE(becomes(Server::found));
    EXPECT_EQ(facts().notificationServer, QStringLiteral("dunst 1.9.0"));
}

TEST_F(FactsReader, aServerMayComeAndGo) {
    start();
    ASSERT_TRUE(becomes(Server::missing));
    serve(words(QStringLiteral("dunst"), {}));
    ASSERT_TRUE(becomes(Server::found));
    EXPECT_EQ(facts().notificationServer, QStringLiteral("dunst"));
    m_server.reset();
    ASSERT_TRUE(becomes(Server::missing));
    EXPECT_EQ(facts().notificationServer, QString());
}

TEST_F(FactsReader, wordsOfAServerAreCutAndPlain) {
    serve(words(QStringLiteral("bad\n\u202ename") + QString(5000, QLatin1Char('x')), QStringLiteral("1\t2")));
    start();
    ASSERT_TRUE(becomes(Server::found));
    EXPECT_LE(facts().notificationServer.size(), 90);
    EXPECT_FALSE(facts().notificationServer.contains(QLatin1Char('\n')));
    EXPECT_FALSE(facts().notificationServer.contains(QChar(0x202e)));
}

TEST_F(FactsReader, anAnswerOfAnotherKindCountsAsNone) {
    serve({QVariant(7), QVariant(true)});
    start();
    EXPECT_TRUE(becomes(Server::missing));
}

TEST_F(FactsReader, withoutABusThereIsNoServer) {
    m_reader =
        std::make_unique<DesktopFactsReader>(QDBusConnection(QStringLiteral("none")), *m_tray, *m_hotKey);
    EXPECT_TRUE(becomes(Server::missing));
}

TEST_F(FactsReader, followsTrayAndHotKey) {
    start();
    ASSERT_TRUE(becomes(Server::missing));
    const QSignalSpy changes(m_reader.get(), &DesktopFactsReader::changed);
    m_xembed->isThere = true;
    m_world.clock.advance(TrayIcon::patience);
    EXPECT_EQ(facts().tray, TrayKind::xembed);
    m_registrar->others.insert("⌃K");
    m_hotKey->apply({.keyCode = 40, .carbonModifiers = CarbonModifier::control, .display = "⌃J"});
    settle();
    EXPECT_EQ(facts().hotKeyLabel, "Ctrl+J");
    EXPECT_GE(changes.count(), 2);
    const auto before = changes.count();
    m_reader->read();
    EXPECT_EQ(changes.count(), before) << "nothing is new";
}

} // namespace
} // namespace tarnvale
