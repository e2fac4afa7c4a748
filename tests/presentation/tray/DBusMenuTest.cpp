#include "presentation/tray/DBusMenu.h"

#include "platform/linux/PrivateBus.h"
#include "presentation/tray/busCalls.h"
#include "support/ManualClock.h"

#include <QDBusMetaType>
#include <QDBusPendingCall>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const QString interface = QStringLiteral("com.canonical.dbusmenu");
const QString path = QStringLiteral("/MenuBar");

MenuEntry entry(const char *title, std::vector<MenuEntry> children = {}) {
    return {.title = QString::fromUtf8(title), .children = std::move(children)};
}

class DBusMenuTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
        m_own = m_bus.connect();
        m_host = m_bus.connect();
        m_menu = std::make_unique<DBusMenu>(m_own);
        m_layouts = std::make_unique<SignalRecorder>(m_host, m_own.baseService(), path, interface,
                                                     QStringLiteral("LayoutUpdated"));
        m_properties = std::make_unique<SignalRecorder>(m_host, m_own.baseService(), path, interface,
                                                        QStringLiteral("ItemsPropertiesUpdated"));
        m_menu->setMenu({entry("Open_panel"), menuDivider(), entry("shop", {entry("Stop")})});
        m_bus.settle();
        m_layouts->heard.clear();
    }

    [[nodiscard]] QDBusMessage messageOf(const char *method, const QVariantList &arguments) const {
        QDBusMessage message =
            QDBusMessage::createMethodCall(m_own.baseService(), path, interface, QString::fromLatin1(method));
        message.setArguments(arguments);
        return message;
    }

    [[nodiscard]] QDBusMessage call(const char *method, const QVariantList &arguments) const {
        return answerTo(m_host, messageOf(method, arguments));
    }

    [[nodiscard]] MenuLayout layout(int id = 0, int depth = -1, const QStringList &names = {}) const {
        const QDBusMessage reply = call("GetLayout", {id, depth, names});
        EXPECT_EQ(reply.signature(), QStringLiteral("u(ia{sv}av)"));
        return reply.arguments().size() == 2 ? qdbus_cast<MenuLayout>(reply.arguments()[1]) : MenuLayout();
    }

    [[nodiscard]] uint revision() const {
        return call("GetLayout", {0, 0, QStringList()}).arguments().value(0).toUInt();
    }

    [[nodiscard]] QVariant property(const char *name) const {
        QDBusMessage message = QDBusMessage::createMethodCall(
            m_own.baseService(), path, QStringLiteral("org.freedesktop.DBus.Properties"),
            QStringLiteral("Get"));
        message << interface << QString::fromLatin1(name);
        return answerTo(m_host, message).arguments().value(0).value<QDBusVariant>().variant();
    }

    /// Clicks and lets happen what follows.
    QDBusMessage click(int id) const {
        const QDBusMessage reply = call(
            "Event", {id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), QVariant(0u)});
        m_bus.settle();
        return reply;
    }

    PrivateBus m_bus;
    QDBusConnection m_own{QString()};
    QDBusConnection m_host{QString()};
    std::unique_ptr<DBusMenu> m_menu;
    std::unique_ptr<SignalRecorder> m_layouts;
    std::unique_ptr<SignalRecorder> m_properties;
};

bool isError(const QDBusMessage &reply, const char *name = "org.freedesktop.DBus.Error.InvalidArgs") {
    return reply.type() == QDBusMessage::ErrorMessage && reply.errorName() == QLatin1String(name);
}

TEST_F(DBusMenuTest, itSaysWhatItIs) {
    EXPECT_EQ(property("Version"), 3u);
    EXPECT_EQ(property("Status"), "normal");
    EXPECT_EQ(property("TextDirection"), "ltr");
    EXPECT_EQ(property("IconThemePath").toStringList(), QStringList());
}

TEST_F(DBusMenuTest, theWholeLayoutIsTold) {
    const MenuLayout all = layout();
    EXPECT_EQ(all.id, 0);
    EXPECT_EQ(all.properties.value("children-display"), "submenu");
    ASSERT_EQ(all.children.size(), 3);
    EXPECT_EQ(all.children[0].properties, (QVariantMap{{"label", "Open__panel"}}));
    EXPECT_EQ(all.children[1].properties, (QVariantMap{{"type", "separator"}}));
    EXPECT_EQ(all.children[2].properties, (QVariantMap{{"label", "shop"}, {"children-display", "submenu"}}));
    ASSERT_EQ(all.children[2].children.size(), 1);
    EXPECT_EQ(all.children[2].children[0].properties.value("label"), "Stop");
}

TEST_F(DBusMenuTest, theLayoutEndsAtTheDepthAskedFor) {
    EXPECT_TRUE(layout(0, 0).children.isEmpty());
    const MenuLayout one = layout(0, 1);
    ASSERT_EQ(one.children.size(), 3);
    EXPECT_TRUE(one.children[2].children.isEmpty());
    EXPECT_EQ(layout(0, 2).children[2].children.size(), 1);
    EXPECT_EQ(layout(0, 100).children[2].children.size(), 1);
}

TEST_F(DBusMenuTest, theLayoutOfASubmenuStartsThere) {
    const int shop = layout().children[2].id;
    const MenuLayout below = layout(shop);
    EXPECT_EQ(below.id, shop);
    EXPECT_EQ(below.children.size(), 1);
}

TEST_F(DBusMenuTest, onlyThePropertiesAskedForAreTold) {
    const MenuLayout some = layout(0, -1, {"type", "nonsense"});
    EXPECT_TRUE(some.properties.isEmpty());
    EXPECT_TRUE(some.children[0].properties.isEmpty());
    EXPECT_EQ(some.children[1].properties, (QVariantMap{{"type", "separator"}}));
}

TEST_F(DBusMenuTest, aGroupOfPropertiesIsTold) {
    const MenuLayout all = layout();
    const QVariantList arguments{
        QVariant::fromValue(QList<int>{all.children[2].id, all.children[0].id, 9999, all.children[0].id}),
        QStringList{"label"}};
    const QDBusMessage reply = call("GetGroupProperties", arguments);
    EXPECT_EQ(reply.signature(), QStringLiteral("a(ia{sv})"));
    const auto items = qdbus_cast<QList<MenuItemProperties>>(reply.arguments().value(0));
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0].id, all.children[0].id);
    EXPECT_EQ(items[0].properties, (QVariantMap{{"label", "Open__panel"}}));
    EXPECT_EQ(items[1].properties, (QVariantMap{{"label", "shop"}}));
}

TEST_F(DBusMenuTest, noIdsMeanAllItems) {
    const QDBusMessage reply = call("GetGroupProperties", {QVariant::fromValue(QList<int>()), QStringList()});
    EXPECT_EQ(qdbus_cast<QList<MenuItemProperties>>(reply.arguments().value(0)).size(), 5);
}

TEST_F(DBusMenuTest, onePropertyIsToldOrItsDefault) {
    const int open = layout().children[0].id;
    const auto value = [&](const char *name) {
        const auto arguments = call("GetProperty", {open, QString::fromLatin1(name)}).arguments();
        return arguments.value(0).value<QDBusVariant>().variant();
    };
    EXPECT_EQ(value("label"), "Open__panel");
    EXPECT_EQ(value("enabled"), true);
    EXPECT_EQ(value("type"), "standard");
    EXPECT_TRUE(isError(call("GetProperty", {open, QStringLiteral("nonsense")})));
}

TEST_F(DBusMenuTest, whatIsNotThereIsAnError) {
    const auto nothing = QVariant::fromValue(QDBusVariant(0));
    const auto ids = QVariant::fromValue(QList<int>{99, -1});
    EXPECT_TRUE(isError(call("GetLayout", {99, -1, QStringList()})));
    EXPECT_TRUE(isError(call("GetProperty", {99, QStringLiteral("label")})));
    EXPECT_TRUE(isError(call("GetGroupProperties", {ids, QStringList()})));
    EXPECT_TRUE(isError(call("Event", {-1, QStringLiteral("clicked"), nothing, 0u})));
    EXPECT_TRUE(isError(call("Event", {99, QStringLiteral("hovered"), nothing, 0u})));
    EXPECT_TRUE(isError(call("AboutToShow", {99})));
    EXPECT_TRUE(isError(call("AboutToShowGroup", {ids})));
    const QList<MenuEvent> events{{99, "clicked", 0, 0}};
    EXPECT_TRUE(isError(call("EventGroup", {QVariant::fromValue(events)})));
}

TEST_F(DBusMenuTest, malformedCallsAreErrors) {
    const char *unknown = "org.freedesktop.DBus.Error.UnknownMethod";
    for (const char *method : {"GetLayout", "GetGroupProperties", "GetProperty", "Event", "EventGroup",
                               "AboutToShow", "AboutToShowGroup"}) {
        EXPECT_TRUE(isError(call(method, {}), unknown)) << method;
        EXPECT_TRUE(isError(call(method, {QStringLiteral("a"), QStringLiteral("b")}), unknown)) << method;
        EXPECT_TRUE(isError(call(method, {0.5}), unknown)) << method;
    }
    EXPECT_TRUE(isError(call("Nonsense", {1}), unknown));
    EXPECT_TRUE(isError(call("setMenu", {}), unknown));
    EXPECT_TRUE(isError(call("deleteLater", {}), unknown));
    EXPECT_EQ(layout().children.size(), 3);
}

TEST_F(DBusMenuTest, aGroupCallIsOfLimitedSize) {
    const char *limit = "org.freedesktop.DBus.Error.LimitsExceeded";
    const auto ids = QVariant::fromValue(QList<int>(DBusMenu::mostInGroup + 1, 0));
    const auto events =
        QVariant::fromValue(QList<MenuEvent>(DBusMenu::mostInGroup + 1, MenuEvent{0, "clicked", 0, 0}));
    EXPECT_TRUE(isError(call("GetGroupProperties", {ids, QStringList()}), limit));
    EXPECT_TRUE(isError(call("AboutToShowGroup", {ids}), limit));
    EXPECT_TRUE(isError(call("EventGroup", {events}), limit));
}

TEST_F(DBusMenuTest, aClickActsOnceAndOnlyThere) {
    int first = 0;
    int second = 0;
    m_menu->setMenu({menuAction("a", [&] { ++first; }), menuAction("b", [&] { ++second; })});
    const int b = layout().children[1].id;
    EXPECT_EQ(click(b).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
    for (const char *event : {"opened", "closed", "hovered", "x-nonsense", ""})
        static_cast<void>(call("Event", {b, QString::fromLatin1(event),
                                         QVariant::fromValue(QDBusVariant(QStringLiteral("?"))), 7u}));
    m_bus.settle();
    EXPECT_EQ(second, 1);
}

TEST_F(DBusMenuTest, whatIsDisabledOrDoesNothingCanBeClicked) {
    int acted = 0;
    MenuEntry disabled = menuAction("a", [&] { ++acted; });
    disabled.isEnabled = false;
    m_menu->setMenu({disabled, menuDivider(), entry("shop", {entry("Stop")})});
    for (const MenuLayout &item : layout().children)
        EXPECT_EQ(click(item.id).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(click(0).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(acted, 0);
}

TEST_F(DBusMenuTest, anActionMayReplaceTheMenu) {
    bool isDone = false;
    m_menu->setMenu({menuAction("a", [&] {
        m_menu->setMenu({entry("b")});
        isDone = true;
    })});
    const int a = layout().children[0].id;
    EXPECT_EQ(click(a).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(isDone);
    EXPECT_TRUE(isError(click(a)));
}

TEST_F(DBusMenuTest, eventsOfAGroupAreHandledAndUnknownOnesNamed) {
    int acted = 0;
    m_menu->setMenu({menuAction("a", [&] { ++acted; })});
    const int a = layout().children[0].id;
    const QList<MenuEvent> events{{a, "opened", 0, 0}, {99, "clicked", 0, 0}, {a, "clicked", 0, 0}};
    const QDBusMessage reply = call("EventGroup", {QVariant::fromValue(events)});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>{99});
    m_bus.settle();
    EXPECT_EQ(acted, 1);
}

TEST_F(DBusMenuTest, theMenuIsAlwaysUpToDate) {
    const int open = layout().children[0].id;
    EXPECT_EQ(call("AboutToShow", {0}).arguments().value(0), false);
    const QDBusMessage reply = call("AboutToShowGroup", {QVariant::fromValue(QList<int>{0, 99, open})});
    ASSERT_EQ(reply.signature(), QStringLiteral("aiai"));
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments()[0]), QList<int>());
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments()[1]), QList<int>{99});
}

TEST_F(DBusMenuTest, anEqualMenuIsNoNews) {
    const uint before = revision();
    m_menu->setMenu({entry("Open_panel"), menuDivider(), entry("shop", {entry("Stop")})});
    m_bus.settle();
    EXPECT_TRUE(m_layouts->heard.isEmpty());
    EXPECT_TRUE(m_properties->heard.isEmpty());
    EXPECT_EQ(revision(), before);
}

TEST_F(DBusMenuTest, severalChangesAreOnePieceOfNews) {
    const uint before = revision();
    for (const char *title : {"a", "b", "c"})
        m_menu->setMenu({entry(title)});
    m_bus.settle();
    ASSERT_EQ(m_layouts->heard.size(), 1);
    EXPECT_EQ(m_layouts->heard[0], (QVariantList{revision(), 0}));
    EXPECT_GT(revision(), before);
    EXPECT_EQ(layout().children[0].properties.value("label"), "c");
}

TEST_F(DBusMenuTest, aChangedPropertyIsNoNewLayout) {
    MenuEntry open = entry("Open_panel");
    open.isEnabled = false;
    open.isChecked = true;
    m_menu->setMenu({open, menuDivider(), entry("shop", {entry("Stop")})});
    m_bus.settle();
    EXPECT_TRUE(m_layouts->heard.isEmpty());
    ASSERT_EQ(m_properties->heard.size(), 1);
    const auto updated = qdbus_cast<QList<MenuItemProperties>>(m_properties->heard[0][0]);
    ASSERT_EQ(updated.size(), 1);
    EXPECT_EQ(updated[0].properties,
              (QVariantMap{{"enabled", false}, {"toggle-type", "checkmark"}, {"toggle-state", 1}}));
    EXPECT_TRUE(qdbus_cast<QList<MenuItemNames>>(m_properties->heard[0][1]).isEmpty());
}

TEST_F(DBusMenuTest, aPropertyThatIsBackAtItsDefaultIsNamed) {
    MenuEntry open = entry("Open_panel");
    const std::vector rest{menuDivider(), entry("shop", {entry("Stop")})};
    open.isEnabled = false;
    m_menu->setMenu({open, rest[0], rest[1]});
    m_bus.settle();
    open.isEnabled = true;
    m_menu->setMenu({open, rest[0], rest[1]});
    m_bus.settle();
    ASSERT_EQ(m_properties->heard.size(), 2);
    EXPECT_TRUE(qdbus_cast<QList<MenuItemProperties>>(m_properties->heard[1][0]).isEmpty());
    const auto removed = qdbus_cast<QList<MenuItemNames>>(m_properties->heard[1][1]);
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0].names, QStringList{"enabled"});
}

TEST_F(DBusMenuTest, thereAndBackAgainIsNoNewsOfProperties) {
    MenuEntry open = entry("Open_panel");
    const std::vector rest{menuDivider(), entry("shop", {entry("Stop")})};
    open.isEnabled = false;
    m_menu->setMenu({open, rest[0], rest[1]});
    open.isEnabled = true;
    m_menu->setMenu({open, rest[0], rest[1]});
    m_bus.settle();
    EXPECT_TRUE(m_properties->heard.isEmpty());
}

TEST_F(DBusMenuTest, aFloodIsAnsweredInOrder) {
    constexpr int waves = 10; // a bus lets nobody wait for many more answers at once
    constexpr int callsAWave = 100;
    for (int wave = 0; wave < waves; ++wave) {
        std::vector<QDBusPendingCall> pending;
        for (int i = 0; i < callsAWave; ++i)
            pending.push_back(
                m_host.asyncCall(messageOf("GetLayout", {i % 2 == 0 ? 0 : 9999, -1, QStringList()})));
        ASSERT_TRUE(waitFor([&] { return pending.back().isFinished(); }, std::chrono::seconds(60)));
        for (std::size_t i = 0; i < pending.size(); ++i) {
            ASSERT_TRUE(pending[i].isFinished());
            ASSERT_EQ(pending[i].isError(), i % 2 != 0);
        }
    }
}

TEST_F(DBusMenuTest, afterItsEndThereIsNothingOnTheBus) {
    m_menu.reset();
    EXPECT_TRUE(isError(call("AboutToShow", {0}), "org.freedesktop.DBus.Error.UnknownObject"));
}

} // namespace
} // namespace tarnvale
