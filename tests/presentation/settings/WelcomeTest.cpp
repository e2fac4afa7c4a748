#include "presentation/design/Appearance.h"
#include "presentation/settings/SettingsTest.h"
#include "presentation/settings/WelcomeController.h"
#include "presentation/settings/registerSettings.h"
#include "presentation/shared/QmlWarnings.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::Contains;
using testing::ElementsAre;

class Welcome : public SettingsTest {
protected:
    void SetUp() override {
        SettingsTest::SetUp();
        Appearance::instance().setOverride(qEnvironmentVariableIsSet("TARNVALE_DARK"), true);
        make();
    }
    void TearDown() override {
        delete view.rootObject();
        view.releaseResources();
        EXPECT_EQ(warnings.text(), "");
        Appearance::instance().setOverride(std::nullopt, std::nullopt);
    }
    void make() {
        welcome = std::make_unique<WelcomeController>(*store, *hotKey, [this] { done.emplace_back("copy"); });
        QObject::connect(welcome.get(), &WelcomeController::done, [this] { done.emplace_back("done"); });
    }
    void show() {
        registerSettings(engine);
        component = std::make_unique<QQmlComponent>(&engine);
        component->setData(
            "import QtQuick\nimport Tarnvale.Design\nimport Tarnvale.Settings\n"
            "Rectangle { id: root; required property WelcomeController controller; property int dones: 0;"
            " width: content.implicitWidth; height: content.implicitHeight; color: Theme.surfaceRaised;"
            " WelcomeView { id: content; anchors.fill: parent; controller: root.controller;"
            " onDone: root.dones += 1 } }",
            QUrl(QStringLiteral("qrc:/page.qml")));
        QObject *root = component->createWithInitialProperties(
            {{QStringLiteral("controller"), QVariant::fromValue(welcome.get())}});
        ASSERT_NE(root, nullptr) << component->errorString().toStdString();
        view.setContent(QUrl(), component.get(), root);
        view.show();
        view.requestActivate();
        draw();
    }
    void draw() {
        quiesce();
        ASSERT_FALSE(view.grabWindow().isNull());
        quiesce();
    }
    void click(const char *type, const char *title) {
        const QQuickItem *const item = findItem(view.rootObject(), type, QString::fromUtf8(title));
        ASSERT_NE(item, nullptr) << title;
        clickOn(view, *item);
        draw();
    }

    QmlWarnings warnings;
    std::unique_ptr<WelcomeController> welcome;
    QQmlEngine engine;
    std::unique_ptr<QQmlComponent> component;
    QQuickView view;
};

TEST_F(Welcome, theKeycapsAreThoseInForce) {
    EXPECT_EQ(welcome->hotKeyCaps().join(QLatin1Char('+')), QStringLiteral("Alt+Super+P"));
    const QSignalSpy changes(welcome.get(), &WelcomeController::hotKeyChanged);
    hotKey->apply({.keyCode = 40, .carbonModifiers = CarbonModifier::control, .display = "⌃K"});
    quiesce();
    EXPECT_EQ(welcome->hotKeyCaps().join(QLatin1Char('+')), QStringLiteral("Ctrl+K"));
    EXPECT_GE(changes.count(), 1);
}

TEST_F(Welcome, aShortcutThatWasSetBeforeIsShown) {
    hotKey->apply({.keyCode = 40, .carbonModifiers = CarbonModifier::control, .display = "⌃K"});
    quiesce();
    hotKey = std::make_unique<GlobalHotKey>(world.settings, std::make_unique<FakeRegistrar>());
    hotKey->setUp();
    quiesce();
    make();
    show();
    for (const char *text : {"Ctrl", "K"})
        EXPECT_THAT(shownTexts(view.rootObject()), Contains(text));
}

TEST_F(Welcome, allowAsksAndSaysSo) {
    show();
    click("PushButton", "Allow");
    EXPECT_EQ(world.notifications.requests, 1);
    EXPECT_TRUE(welcome->notificationsAsked());
    EXPECT_NE(findItem(view.rootObject(), "PushButton", QStringLiteral("Asked")), nullptr);
}

TEST_F(Welcome, theInstallCommandCanBeCopiedTwice) {
    show();
    click("PushButton", "Copy Install");
    click("PushButton", "Copied");
    EXPECT_THAT(done, ElementsAre("copy", "copy"));
    pass(std::chrono::seconds(5));
    EXPECT_TRUE(welcome->copied()) << "it stays";
}

TEST_F(Welcome, launchAtLoginIsTheStores) {
    show();
    click("Switch", "Launch at login");
    EXPECT_TRUE(store->launchAtLogin());
    EXPECT_TRUE(findItem(view.rootObject(), "Switch")->property("checked").toBool());
    store->setLaunchAtLogin(false);
    draw();
    EXPECT_FALSE(findItem(view.rootObject(), "Switch")->property("checked").toBool());
}

TEST_F(Welcome, returnGetsStarted) {
    show();
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_THAT(done, ElementsAre("done"));
    EXPECT_EQ(view.rootObject()->property("dones").toInt(), 1);
}

TEST_F(Welcome, theButtonGetsStarted) {
    show();
    click("PushButton", "Get Started");
    EXPECT_THAT(done, ElementsAre("done"));
}

TEST_F(Welcome, everyControlIsReachedByKeyboard) {
    show();
    std::vector<std::string> titles;
    for (int times = 0; times < 4; ++times) {
        QTest::keyClick(&view, Qt::Key_Tab);
        titles.push_back(view.activeFocusItem()->property("title").toString().toStdString());
    }
    EXPECT_THAT(titles, ElementsAre("Launch at login", "Allow", "Copy Install", "Get Started"));
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_THAT(done, ElementsAre("done"));
}

TEST_F(Welcome, itSaysWhatTheTextsSay) {
    show();
    const auto texts = shownTexts(view.rootObject());
    for (const char *text :
         {"Welcome to Tarnvale", "Every local dev server, one click away — in the menu bar and here.",
          "Open from anywhere", "Press the shortcut in any app to open the menu bar panel.",
          "Launch at login", "Keep watching your ports from the moment you log in.", "Notifications",
          "Port conflicts, watched ports stopping, public links ready.", "tarnctl command",
          "tarnctl ports · tarnctl kill 3000 · tarnctl open 5173"})
        EXPECT_THAT(texts, Contains(text));
    EXPECT_EQ(view.rootObject()->width(), 500);
}

TEST_F(Welcome, aDesktopThatGivesNoKeyAwayIsExplained) {
    registrar->state = {.kind = HotKeyAvailability::Kind::needsCommand, .command = "tarnvale --toggle"};
    show();
    EXPECT_THAT(shownTexts(view.rootObject()), Contains(testing::HasSubstr("tarnvale --toggle")));
}

/// Nothing that only makes sense on a Mac is left, once the words of this system are in place.
TEST_F(Welcome, theWordsAreThoseOfThisSystem) {
    QTranslator words;
    ASSERT_TRUE(words.load(QStringLiteral(":/i18n/tarnvale_linux.qm")));
    QCoreApplication::installTranslator(&words);
    show();
    const auto texts = shownTexts(view.rootObject());
    QCoreApplication::removeTranslator(&words);
    EXPECT_THAT(texts, Contains("Press the shortcut in any app to open the tray panel."));
    EXPECT_THAT(texts, testing::Each(testing::Not(testing::HasSubstr("menu bar"))));
}

/// Writes what is seen to a folder, when one is given: to look at.
TEST_F(Welcome, picturesCanBeTaken) {
    const QString folder = qEnvironmentVariable("TARNVALE_PICTURES");
    if (folder.isEmpty())
        GTEST_SKIP() << "TARNVALE_PICTURES names no folder";
    show();
    ASSERT_TRUE(view.grabWindow().save(folder + QStringLiteral("/welcome.png")));
}

} // namespace
} // namespace tarnvale
