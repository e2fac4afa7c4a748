#include "presentation/tray/StatusNotifierItem.h"

#include "platform/linux/PrivateBus.h"
#include "presentation/tray/busCalls.h"
#include "support/ManualClock.h"

#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

const QString interface = QStringLiteral("org.kde.StatusNotifierItem");
const QString path = QStringLiteral("/StatusNotifierItem");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

class StatusNotifierItemTest : public testing::Test {
protected:
    using Places = std::vector<std::optional<QPoint>>;

    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
        m_own = m_bus.connect();
        m_host = m_bus.connect();
        m_item = std::make_unique<StatusNotifierItem>(m_own);
    }

    [[nodiscard]] QDBusMessage messageOf(const char *method, const QVariantList &arguments,
                                         const QString &of = interface) const {
        QDBusMessage message =
            QDBusMessage::createMethodCall(m_own.baseService(), path, of, QString::fromLatin1(method));
        message.setArguments(arguments);
        return message;
    }

    QDBusMessage call(const char *method, const QVariantList &arguments) const {
        return answerTo(m_host, messageOf(method, arguments));
    }

    [[nodiscard]] QVariant property(const char *name) const {
        const QDBusMessage reply =
            answerTo(m_host, messageOf("Get", {interface, QString::fromLatin1(name)}, properties));
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    [[nodiscard]] std::unique_ptr<SignalRecorder> record(const char *signal) const {
        return std::make_unique<SignalRecorder>(m_host, m_own.baseService(), path, interface,
                                                QString::fromLatin1(signal));
    }

    PrivateBus m_bus;
    QDBusConnection m_own{QString()};
    QDBusConnection m_host{QString()};
    std::unique_ptr<StatusNotifierItem> m_item;
};

TEST_F(StatusNotifierItemTest, itSaysWhatItIs) {
    EXPECT_EQ(property("Id"), "dev.tarnvale.Tarnvale");
    EXPECT_EQ(property("Title"), "Tarnvale");
    EXPECT_EQ(property("Category"), "ApplicationStatus");
    EXPECT_EQ(property("Status"), "Active");
    EXPECT_EQ(property("WindowId"), 0);
    EXPECT_EQ(property("Menu").value<QDBusObjectPath>().path(), QStringLiteral("/MenuBar"));
    EXPECT_EQ(property("ItemIsMenu"), false);
    EXPECT_EQ(property("IconThemePath"), "");
}

TEST_F(StatusNotifierItemTest, itLooksAsItIsTold) {
    const TrayPixmap pixmap{1, 1, QByteArray("abcd")};
    m_item->setLook({"an-icon", {pixmap}, "Stopped: port 1", "in words"});
    EXPECT_EQ(property("IconName"), "an-icon");
    EXPECT_EQ(qdbus_cast<QList<TrayPixmap>>(property("IconPixmap")), QList<TrayPixmap>{pixmap});
    EXPECT_EQ(property("IconPixmap").value<QDBusArgument>().currentSignature(), QStringLiteral("a(iiay)"));
    EXPECT_EQ(qdbus_cast<TrayToolTip>(property("ToolTip")), (TrayToolTip{"", {}, "Stopped: port 1", ""}));
    EXPECT_EQ(property("ToolTip").value<QDBusArgument>().currentSignature(), QStringLiteral("(sa(iiay)ss)"));
    EXPECT_EQ(property("IconAccessibleDesc"), "in words");
}

TEST_F(StatusNotifierItemTest, allPropertiesComeAtOnce) {
    const QDBusMessage reply = answerTo(m_host, messageOf("GetAll", {interface}, properties));
    const auto all = qdbus_cast<QVariantMap>(reply.arguments().value(0));
    for (const char *name :
         {"Category", "Id", "Title", "Status", "WindowId", "IconName", "IconThemePath", "IconPixmap",
          "ToolTip", "Menu", "ItemIsMenu", "IconAccessibleDesc", "OverlayIconName", "AttentionIconName"})
        EXPECT_TRUE(all.contains(QString::fromLatin1(name))) << name;
}

TEST_F(StatusNotifierItemTest, hostsHearOfWhatIsDifferent) {
    const auto icons = record("NewIcon");
    const auto toolTips = record("NewToolTip");
    TrayLook look{"a", {}, "b", "c"};
    m_item->setLook(look);
    m_bus.settle();
    EXPECT_EQ(icons->heard.size(), 1);
    EXPECT_EQ(toolTips->heard.size(), 1);
    m_item->setLook(look);
    m_bus.settle();
    EXPECT_EQ(icons->heard.size(), 1);
    EXPECT_EQ(toolTips->heard.size(), 1);
    look.pixmaps = {TrayPixmap{1, 1, QByteArray(4, 'x')}};
    m_item->setLook(look);
    m_bus.settle();
    EXPECT_EQ(icons->heard.size(), 2);
    EXPECT_EQ(toolTips->heard.size(), 1);
    look.toolTip = "d";
    m_item->setLook(look);
    m_bus.settle();
    EXPECT_EQ(icons->heard.size(), 2);
    EXPECT_EQ(toolTips->heard.size(), 2);
}

TEST_F(StatusNotifierItemTest, clicksArriveWithTheirPlaces) {
    Places first;
    Places second;
    Places menus;
    QObject::connect(m_item.get(), &StatusNotifierItem::activated, m_item.get(),
                     [&](auto place) { first.push_back(place); });
    QObject::connect(m_item.get(), &StatusNotifierItem::secondaryActivated, m_item.get(),
                     [&](auto place) { second.push_back(place); });
    QObject::connect(m_item.get(), &StatusNotifierItem::menuRequested, m_item.get(),
                     [&](auto place) { menus.push_back(place); });
    EXPECT_EQ(call("Activate", {1900, 10}).type(), QDBusMessage::ReplyMessage);
    call("Activate", {0, 0});
    call("Activate", {-5, 0});
    call("SecondaryActivate", {1, 2});
    call("ContextMenu", {3, 4});
    EXPECT_EQ(call("Scroll", {120, QStringLiteral("vertical")}).type(), QDBusMessage::ReplyMessage);
    EXPECT_THAT(first, ElementsAre(QPoint(1900, 10), std::nullopt, QPoint(-5, 0)));
    EXPECT_THAT(second, ElementsAre(QPoint(1, 2)));
    EXPECT_THAT(menus, ElementsAre(QPoint(3, 4)));
}

TEST_F(StatusNotifierItemTest, aTokenIsGivenOnce) {
    EXPECT_EQ(m_item->takeActivationToken(), QString());
    call("ProvideXdgActivationToken", {QStringLiteral("token-1")});
    call("ProvideXdgActivationToken", {QStringLiteral("token-2")});
    EXPECT_EQ(m_item->takeActivationToken(), QStringLiteral("token-2"));
    EXPECT_EQ(m_item->takeActivationToken(), QString());
    call("ProvideXdgActivationToken", {QString(1'000'000, 'x')});
    EXPECT_EQ(m_item->takeActivationToken(), QString());
}

TEST_F(StatusNotifierItemTest, malformedCallsAreErrors) {
    int clicks = 0;
    QObject::connect(m_item.get(), &StatusNotifierItem::activated, m_item.get(), [&] { ++clicks; });
    const std::vector<std::pair<const char *, QVariantList>> calls{
        {"Activate", {}},
        {"Activate", {1}},
        {"Activate", {1, 2, 3}},
        {"Activate", {QStringLiteral("1"), QStringLiteral("2")}},
        {"Activate", {1.0, 2.0}},
        {"Scroll", {1}},
        {"ProvideXdgActivationToken", {7}},
        {"Nonsense", {1, 2}},
        {"deleteLater", {}},
        {"setLook", {}},
    };
    for (const auto &[method, arguments] : calls)
        EXPECT_EQ(call(method, arguments).errorName(),
                  QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"))
            << method;
    EXPECT_EQ(clicks, 0);
    const auto title = QVariant::fromValue(QDBusVariant(QStringLiteral("x")));
    for (const char *name : {"Title", "IconName", "Nonsense"})
        EXPECT_EQ(
            answerTo(m_host, messageOf("Set", {interface, QString::fromLatin1(name), title}, properties))
                .type(),
            QDBusMessage::ErrorMessage)
            << name;
    EXPECT_EQ(property("Title"), "Tarnvale");
}

TEST_F(StatusNotifierItemTest, aFloodIsAnsweredInOrder) {
    Places places;
    QObject::connect(m_item.get(), &StatusNotifierItem::activated, m_item.get(),
                     [&](auto place) { places.push_back(place); });
    constexpr int calls = 1000;
    constexpr int callsAWave = 100; // a bus lets nobody wait for many more answers at once
    for (int i = 1; i <= calls; ++i) {
        const QDBusPendingCall pending = m_host.asyncCall(messageOf("Activate", {i, i}));
        if (i % callsAWave == 0) {
            ASSERT_TRUE(waitFor([&] { return pending.isFinished(); }, std::chrono::seconds(60)));
        }
    }
    ASSERT_EQ(places.size(), static_cast<std::size_t>(calls));
    for (int i = 0; i < calls; ++i)
        EXPECT_EQ(places[static_cast<std::size_t>(i)], QPoint(i + 1, i + 1));
}

TEST_F(StatusNotifierItemTest, afterItsEndThereIsNothingOnTheBus) {
    m_item.reset();
    EXPECT_EQ(call("Activate", {1, 2}).errorName(),
              QStringLiteral("org.freedesktop.DBus.Error.UnknownObject"));
}

} // namespace
} // namespace tarnvale
