#include "presentation/tray/TrayIcon.h"

#include "platform/linux/PrivateBus.h"
#include "presentation/tray/FakeWatcher.h"
#include "presentation/tray/busCalls.h"
#include "presentation/tray/trayGlyph.h"
#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

/// A tray of the older kind that comes and goes as the test wants.
struct FakeXembedTray : XembedTray {
    bool isThere = false;
    bool isShown = false;
    QIcon icon;
    QString toolTip;

    [[nodiscard]] bool isAvailable() const override { return isThere; }
    void show(const QIcon &newIcon, const QString &newToolTip) override {
        isShown = true;
        icon = newIcon;
        toolTip = newToolTip;
    }
    void hide() override { isShown = false; }
    [[nodiscard]] std::optional<QRect> geometry() const override { return QRect(700, 2, 22, 22); }
};

class TrayIconTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning())
            GTEST_SKIP() << "dbus-daemon isn't installed";
        m_own = m_bus.connect();
        m_host = m_bus.connect();
        auto xembed = std::make_unique<FakeXembedTray>();
        m_xembed = xembed.get();
        m_icon = std::make_unique<TrayIcon>(m_own, m_clock, std::move(xembed));
        QObject::connect(m_icon.get(), &TrayIcon::activated, m_icon.get(),
                         [this](auto place) { m_clicks.push_back(place); });
        QObject::connect(m_icon.get(), &TrayIcon::kindChanged, m_icon.get(),
                         [this] { m_kinds.push_back(m_icon->kind()); });
        m_bus.settle();
    }

    [[nodiscard]] QVariant property(const char *name) const {
        QDBusMessage message = QDBusMessage::createMethodCall(
            m_own.baseService(), QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        message << QStringLiteral("org.kde.StatusNotifierItem") << QString::fromLatin1(name);
        return answerTo(m_host, message).arguments().value(0).value<QDBusVariant>().variant();
    }

    void call(const char *method, const QVariantList &arguments) const {
        QDBusMessage message = QDBusMessage::createMethodCall(
            m_own.baseService(), QStringLiteral("/StatusNotifierItem"),
            QStringLiteral("org.kde.StatusNotifierItem"), QString::fromLatin1(method));
        message.setArguments(arguments);
        EXPECT_EQ(answerTo(m_host, message).type(), QDBusMessage::ReplyMessage);
    }

    [[nodiscard]] bool becomes(TrayKind kind) const {
        return waitFor([&] { return m_icon->kind() == kind; });
    }

    PrivateBus m_bus;
    QDBusConnection m_own{QString()};
    QDBusConnection m_host{QString()};
    ManualClock m_clock;
    FakeXembedTray *m_xembed = nullptr;
    std::unique_ptr<TrayIcon> m_icon;
    std::vector<std::optional<QPoint>> m_clicks;
    std::vector<TrayKind> m_kinds;
};

TEST_F(TrayIconTest, theItemShowsTheGlyphInAllSizes) {
    const auto pixmaps = qdbus_cast<QList<TrayPixmap>>(property("IconPixmap"));
    ASSERT_EQ(pixmaps.size(), 5);
    m_icon->setInk(Qt::black);
    const auto black = qdbus_cast<QList<TrayPixmap>>(property("IconPixmap"));
    int i = 0;
    for (const int size : {16, 22, 24, 32, 48}) {
        EXPECT_EQ(pixmaps[i].width, size);
        EXPECT_NE(pixmaps[i], black[i]);
        EXPECT_EQ(black[i], trayPixmap(trayGlyph(size, Qt::black, false)));
        ++i;
    }
}

TEST_F(TrayIconTest, anAlarmIsShownAndSaidAndTakenBack) {
    const auto calm = qdbus_cast<QList<TrayPixmap>>(property("IconPixmap"));
    EXPECT_EQ(qdbus_cast<TrayToolTip>(property("ToolTip")).title, QStringLiteral("Tarnvale"));
    m_icon->setAlarm({8080, 3000});
    EXPECT_NE(qdbus_cast<QList<TrayPixmap>>(property("IconPixmap")), calm);
    EXPECT_EQ(qdbus_cast<TrayToolTip>(property("ToolTip")).title,
              QStringLiteral("Stopped: ports 3000, 8080"));
    EXPECT_EQ(property("IconAccessibleDesc"), "Tarnvale — a watched port stopped");
    EXPECT_EQ(property("Title"), "Tarnvale");
    EXPECT_EQ(property("Status"), "Active");
    m_icon->setAlarm({});
    EXPECT_EQ(qdbus_cast<QList<TrayPixmap>>(property("IconPixmap")), calm);
    EXPECT_EQ(property("IconAccessibleDesc"), "Tarnvale");
}

TEST_F(TrayIconTest, theIconIsNamedOnlyWhenTheThemeHasIt) {
    EXPECT_EQ(property("IconName"), "");
    const TemporaryFolder folder;
    const std::string icons = folder.path("icons") + "/";
    folder.write("icons/hicolor/index.theme",
                 "[Icon Theme]\nName=hicolor\nDirectories=symbolic/apps\n\n[symbolic/apps]\nSize=16\n"
                 "MinSize=8\nMaxSize=512\nType=Scalable\n");
    const QString name = QStringLiteral(":/icons/dev.tarnvale.Tarnvale-symbolic.svg");
    const QString shorter = QString::fromStdString(icons + "hicolor/symbolic/apps/dev.tarnvale.Tarnvale.svg");
    const QString installed =
        QString::fromStdString(icons + "hicolor/symbolic/apps/dev.tarnvale.Tarnvale-symbolic.svg");
    const QStringList before = QIcon::themeSearchPaths();
    folder.write("icons/hicolor/symbolic/apps/.keep", "");
    QFile::copy(name, shorter);
    QIcon::setThemeSearchPaths({QString::fromStdString(folder.path("icons"))});
    QIcon::setThemeName(QStringLiteral("hicolor"));
    m_icon->setInk(Qt::red);
    EXPECT_EQ(property("IconName"), "") << "another icon is found under its shorter name";
    QFile::copy(name, installed);
    QIcon::setThemeSearchPaths({QString::fromStdString(folder.path("icons"))});
    m_icon->setInk(Qt::blue);
    EXPECT_EQ(property("IconName"), "dev.tarnvale.Tarnvale-symbolic");
    m_icon->setAlarm({1});
    EXPECT_EQ(property("IconName"), "") << "the one with the dot is missing";
    QIcon::setThemeSearchPaths(before);
}

TEST_F(TrayIconTest, theMenuIsOnTheBus) {
    int acted = 0;
    m_icon->setMenu({menuAction("Open panel", [&] { ++acted; })});
    QDBusMessage layout =
        QDBusMessage::createMethodCall(m_own.baseService(), property("Menu").value<QDBusObjectPath>().path(),
                                       QStringLiteral("com.canonical.dbusmenu"), QStringLiteral("GetLayout"));
    layout.setArguments({0, -1, QStringList()});
    const QDBusMessage reply = answerTo(m_host, layout);
    ASSERT_EQ(reply.arguments().size(), 2);
    EXPECT_EQ(qdbus_cast<MenuLayout>(reply.arguments()[1]).children.value(0).properties.value("label"),
              "Open panel");
}

TEST_F(TrayIconTest, clicksArriveWithPlacesAndTokens) {
    std::vector<std::optional<QPoint>> menus;
    QObject::connect(m_icon.get(), &TrayIcon::menuRequested, m_icon.get(),
                     [&](auto place) { menus.push_back(place); });
    call("ProvideXdgActivationToken", {QStringLiteral("token")});
    call("Activate", {10, 20});
    call("SecondaryActivate", {30, 40});
    call("ContextMenu", {50, 60});
    EXPECT_THAT(m_clicks, ElementsAre(QPoint(10, 20), QPoint(30, 40)));
    EXPECT_THAT(menus, ElementsAre(QPoint(50, 60)));
    EXPECT_EQ(m_icon->takeActivationToken(), QStringLiteral("token"));
    EXPECT_EQ(m_icon->geometry(), std::nullopt);
}

TEST_F(TrayIconTest, aHostOfStatusItemsIsPreferred) {
    m_xembed->isThere = true;
    const FakeWatcher watcher(m_bus.connect());
    EXPECT_TRUE(becomes(TrayKind::statusNotifier));
    m_clock.advance(10 * TrayIcon::patience);
    EXPECT_EQ(m_icon->kind(), TrayKind::statusNotifier);
    EXPECT_FALSE(m_xembed->isShown);
    EXPECT_EQ(m_icon->geometry(), std::nullopt);
}

TEST_F(TrayIconTest, withoutOneAnXembedTrayIsTakenAfterAWhile) {
    m_xembed->isThere = true;
    m_clock.advance(TrayIcon::patience - std::chrono::milliseconds(1));
    EXPECT_EQ(m_icon->kind(), TrayKind::none);
    EXPECT_FALSE(m_xembed->isShown);
    m_clock.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(m_icon->kind(), TrayKind::xembed);
    EXPECT_TRUE(m_xembed->isShown);
    EXPECT_EQ(m_icon->geometry(), QRect(700, 2, 22, 22));
    m_xembed->onClick();
    EXPECT_THAT(m_clicks, ElementsAre(std::nullopt));
}

TEST_F(TrayIconTest, anXembedIconShowsTheAlarm) {
    m_xembed->isThere = true;
    m_icon->setAlarm({3000});
    m_clock.advance(TrayIcon::patience);
    EXPECT_EQ(m_xembed->toolTip, QStringLiteral("Stopped: port 3000"));
    const QImage alarm = m_xembed->icon.pixmap(22, 22).toImage();
    m_icon->setAlarm({});
    EXPECT_EQ(m_xembed->toolTip, QStringLiteral("Tarnvale"));
    EXPECT_NE(m_xembed->icon.pixmap(22, 22).toImage(), alarm);
}

TEST_F(TrayIconTest, aHostThatComesLaterReplacesTheXembedIcon) {
    m_xembed->isThere = true;
    m_clock.advance(TrayIcon::patience);
    auto watcher = std::make_unique<FakeWatcher>(m_bus.connect());
    EXPECT_TRUE(becomes(TrayKind::statusNotifier));
    EXPECT_FALSE(m_xembed->isShown);
    EXPECT_EQ(watcher->registered, QStringList{m_own.baseService()});
    watcher.reset();
    EXPECT_TRUE(becomes(TrayKind::none));
    m_clock.advance(TrayIcon::patience);
    EXPECT_EQ(m_icon->kind(), TrayKind::xembed);
    EXPECT_TRUE(m_xembed->isShown);
    EXPECT_THAT(m_kinds,
                ElementsAre(TrayKind::xembed, TrayKind::statusNotifier, TrayKind::none, TrayKind::xembed));
}

TEST_F(TrayIconTest, aHostThatStartsAnewInTimeIsWaitedFor) {
    m_xembed->isThere = true;
    auto watcher = std::make_unique<FakeWatcher>(m_bus.connect());
    EXPECT_TRUE(becomes(TrayKind::statusNotifier));
    m_clock.advance(TrayIcon::patience / 2);
    watcher.reset();
    EXPECT_TRUE(becomes(TrayKind::none));
    m_clock.advance(TrayIcon::patience * 3 / 4); // past the end of the first wait
    EXPECT_EQ(m_icon->kind(), TrayKind::none);
    watcher = std::make_unique<FakeWatcher>(m_bus.connect());
    EXPECT_TRUE(becomes(TrayKind::statusNotifier));
    m_clock.advance(TrayIcon::patience);
    EXPECT_FALSE(m_xembed->isShown);
}

TEST_F(TrayIconTest, anXembedTrayMayComeAndGo) {
    m_clock.advance(3 * TrayIcon::patience);
    EXPECT_EQ(m_icon->kind(), TrayKind::none);
    m_xembed->isThere = true;
    m_clock.advance(TrayIcon::patience);
    EXPECT_EQ(m_icon->kind(), TrayKind::xembed);
    m_xembed->isThere = false;
    m_clock.advance(TrayIcon::patience);
    EXPECT_EQ(m_icon->kind(), TrayKind::none);
    EXPECT_EQ(m_icon->geometry(), std::nullopt);
}

TEST_F(TrayIconTest, aHighlightHarmsNothing) {
    m_icon->setHighlighted(true);
    m_icon->setHighlighted(false);
    EXPECT_TRUE(m_kinds.empty());
}

TEST_F(TrayIconTest, afterItsEndTheClockMayGoOn) {
    m_xembed->isThere = true;
    m_icon.reset();
    m_clock.advance(2 * TrayIcon::patience);
    EXPECT_TRUE(m_kinds.empty());
}

} // namespace
} // namespace tarnvale
