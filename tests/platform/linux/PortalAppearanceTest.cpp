#include "platform/linux/PortalAppearance.h"

#include "platform/linux/FakeSettingsPortal.h"
#include "platform/linux/PrivateBus.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>

#include <gtest/gtest.h>

namespace tarnvale {

/// A colour as the portal sends it.
struct PortalColor {
    double red = 0;
    double green = 0;
    double blue = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalColor &color) {
    argument.beginStructure();
    argument << color.red << color.green << color.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalColor &color) {
    argument.beginStructure();
    argument >> color.red >> color.green >> color.blue;
    argument.endStructure();
    return argument;
}

namespace {

const QString freedesktop = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString kde = QStringLiteral("org.kde.kdeglobals.KDE");
const QString colorScheme = QStringLiteral("color-scheme");

class PortalAppearance : public testing::Test {
protected:
    void SetUp() override {
        if (!bus.isRunning())
            GTEST_SKIP() << "dbus-daemon is missing";
        qDBusRegisterMetaType<PortalColor>();
    }

    std::unique_ptr<FakeSettingsPortal> makePortal(uint scheme) {
        auto portal = std::make_unique<FakeSettingsPortal>(bus.connect());
        portal->settings[freedesktop][colorScheme] = scheme;
        return portal;
    }

    PrivateBus bus;
};

TEST_F(PortalAppearance, whatThePortalSaysArrivesOnce) {
    const auto portal = makePortal(1);
    portal->settings[freedesktop][QStringLiteral("accent-color")] =
        QVariant::fromValue(PortalColor{.red = 0.25, .green = 0.5, .blue = 1});
    portal->settings[gnome] = {{QStringLiteral("enable-animations"), false},
                               {QStringLiteral("text-scaling-factor"), 1.5},
                               {QStringLiteral("font-name"), QStringLiteral("Cantarell 11")},
                               {QStringLiteral("cursor-size"), 24}};
    AppearanceReader reader(bus.connect());
    int changes = 0;
    QObject::connect(&reader, &AppearanceReader::changed, [&] { ++changes; });
    EXPECT_EQ(reader.appearance(), DesktopAppearance{}) << "nothing waits for the portal";
    bus.settle();
    EXPECT_EQ(reader.appearance(), (DesktopAppearance{.isDark = true,
                                                      .reduceMotion = true,
                                                      .accent = std::array{0.25, 0.5, 1.0},
                                                      .textScale = 1.5,
                                                      .font = DesktopFont{"Cantarell", 11}}));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(portal->calls, 1);
}

TEST_F(PortalAppearance, aChangeArrivesAndOneThatChangesNothingIsSilent) {
    const auto portal = makePortal(2);
    AppearanceReader reader(bus.connect());
    bus.settle();
    int changes = 0;
    QObject::connect(&reader, &AppearanceReader::changed, [&] { ++changes; });
    portal->change(freedesktop, colorScheme, 1U);
    portal->change(freedesktop, colorScheme, 1U);
    portal->change(gnome, QStringLiteral("cursor-size"), 32);
    bus.settle();
    EXPECT_EQ(reader.appearance().isDark, true);
    EXPECT_EQ(changes, 1);
}

TEST_F(PortalAppearance, aValueThatIsWrappedTwiceIsTheSame) {
    const auto portal = makePortal(0);
    portal->settings[freedesktop][colorScheme] =
        QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(1U))));
    const AppearanceReader reader(bus.connect());
    bus.settle();
    EXPECT_EQ(reader.appearance().isDark, true);
}

TEST_F(PortalAppearance, textsOfKdeAreNumbers) {
    const auto portal = makePortal(0);
    portal->settings[kde][QStringLiteral("AnimationDurationFactor")] = QStringLiteral("0");
    const AppearanceReader reader(bus.connect());
    bus.settle();
    EXPECT_TRUE(reader.appearance().reduceMotion);
}

TEST_F(PortalAppearance, valuesOfOtherKindsCountAsNotSaid) {
    const auto portal = makePortal(0);
    portal->settings[freedesktop] = {{colorScheme, QStringLiteral("dark")},
                                     {QStringLiteral("contrast"), QStringList{QStringLiteral("1")}},
                                     {QStringLiteral("accent-color"), QStringLiteral("blue")}};
    portal->settings[gnome] = {{QStringLiteral("enable-animations"), 0},
                               {QStringLiteral("text-scaling-factor"), QStringLiteral("large")},
                               {QStringLiteral("font-name"), 11}};
    const AppearanceReader reader(bus.connect());
    bus.settle();
    EXPECT_EQ(portal->calls, 1);
    EXPECT_EQ(reader.appearance(), DesktopAppearance{});
}

TEST_F(PortalAppearance, anAnswerOfAnotherKindIsNone) {
    const auto portal = makePortal(1);
    portal->speaksOdd = true;
    const AppearanceReader reader(bus.connect());
    bus.settle();
    EXPECT_EQ(portal->calls, 1);
    EXPECT_EQ(reader.appearance(), DesktopAppearance{});
}

TEST_F(PortalAppearance, aPortalThatComesLateIsAsked) {
    const AppearanceReader reader(bus.connect());
    bus.settle();
    EXPECT_EQ(reader.appearance(), DesktopAppearance{});
    const auto portal = makePortal(1);
    bus.settle();
    bus.settle();
    EXPECT_EQ(reader.appearance().isDark, true);
}

TEST_F(PortalAppearance, whatTheOldPortalSaidStaysUntilTheNextAnswers) {
    auto portal = makePortal(1);
    const AppearanceReader reader(bus.connect());
    bus.settle();
    portal.reset();
    bus.settle();
    EXPECT_EQ(reader.appearance().isDark, true);
    portal = makePortal(2);
    bus.settle();
    bus.settle();
    EXPECT_EQ(reader.appearance().isDark, false);
}

TEST_F(PortalAppearance, onlyThePortalIsHeard) {
    const auto portal = makePortal(2);
    const AppearanceReader reader(bus.connect());
    bus.settle();
    QDBusConnection stranger = bus.connect();
    QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                     QStringLiteral("org.freedesktop.portal.Settings"),
                                                     QStringLiteral("SettingChanged"));
    signal << freedesktop << colorScheme << QVariant::fromValue(QDBusVariant(1U));
    stranger.send(signal);
    bus.settle();
    EXPECT_EQ(reader.appearance().isDark, false);
}

TEST(PortalAppearanceWithoutABus, saysNothing) {
    const AppearanceReader reader(QDBusConnection(QStringLiteral("no such bus")));
    EXPECT_EQ(reader.appearance(), DesktopAppearance{});
}

} // namespace
} // namespace tarnvale
