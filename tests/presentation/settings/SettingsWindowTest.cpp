// The window of settings as it is seen, worked by real keys and clicks.

#include "presentation/settings/SettingsWindow.h"

#include "presentation/design/Appearance.h"
#include "presentation/settings/SettingsTest.h"
#include "presentation/settings/registerSettings.h"
#include "presentation/shared/QmlWarnings.h"

#include <QAccessible>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::Not;

class SettingsScene : public SettingsTest {
protected:
    void SetUp() override {
        SettingsTest::SetUp();
        Appearance::instance().setOverride(qEnvironmentVariableIsSet("TARNVALE_DARK"), true);
        registerSettings(engine);
        tray = std::make_unique<TrayIcon>(bus, world.clock);
        make(actions());
    }
    void TearDown() override {
        settings.reset();
        EXPECT_EQ(warnings.text(), "");
        Appearance::instance().setOverride(std::nullopt, std::nullopt);
    }

    void make(const SettingsActions &made) {
        settings = std::make_unique<SettingsWindow>(
            engine, SettingsContext{*store, world.platform(), *hotKey, *tray, bus, made});
    }
    void show(SettingsController::Tab tab = SettingsController::General) {
        settings->show(tab);
        draw();
    }
    void draw() {
        quiesce();
        if (settings->isOpen()) {
            ASSERT_FALSE(settings->window()->grabWindow().isNull());
        }
        quiesce();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(settings->window(), key, modifiers);
        draw();
    }
    [[nodiscard]] QQuickItem *root() const { return settings->window()->contentItem(); }
    void click(const char *type, const QString &title = {}) {
        const QQuickItem *const item = findItem(root(), type, title);
        ASSERT_NE(item, nullptr) << type;
        clickOn(*settings->window(), *item);
        draw();
    }
    [[nodiscard]] bool isChecked(const char *title) const {
        const QQuickItem *const item = findItem(root(), "Switch", QString::fromUtf8(title));
        return item != nullptr && item->property("checked").toBool();
    }

    QmlWarnings warnings;
    QDBusConnection bus{QStringLiteral("none")};
    QQmlEngine engine;
    std::unique_ptr<TrayIcon> tray;
    std::unique_ptr<SettingsWindow> settings;
};

TEST_F(SettingsScene, theWindowIsMadeOnDemandAndGoesWithItsClosing) {
    EXPECT_FALSE(settings->isOpen());
    EXPECT_EQ(settings->window(), nullptr);
    show();
    EXPECT_TRUE(settings->isOpen());
    EXPECT_EQ(settings->window()->title(), QStringLiteral("Settings"));
    EXPECT_EQ(settings->window()->minimumSize(), settings->window()->maximumSize());
    const QPointer<QQuickWindow> window = settings->window();
    const QSignalSpy closings(settings.get(), &SettingsWindow::closed);
    window->close();
    EXPECT_FALSE(settings->isOpen());
    quiesce();
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(settings->window(), nullptr);
    EXPECT_EQ(settings->controller(), nullptr);
    EXPECT_EQ(closings.count(), 1);
    show();
    EXPECT_TRUE(settings->isOpen());
}

TEST_F(SettingsScene, escAndCtrlWClose) {
    show();
    key(Qt::Key_W);
    EXPECT_TRUE(settings->isOpen());
    key(Qt::Key_Escape);
    EXPECT_FALSE(settings->isOpen());
    show(SettingsController::About);
    key(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(settings->isOpen());
}

TEST_F(SettingsScene, itMayGoWhileItIsOpen) {
    show(SettingsController::Shortcut);
    settings->controller()->toggleRecording();
    settings.reset();
    quiesce();
    QWindow other;
    press(other, keyK, Qt::ControlModifier);
    EXPECT_EQ(hotKey->current(), Shortcut());
}

TEST_F(SettingsScene, showingItAgainGoesToTheOtherTabOfTheSameWindow) {
    show();
    const QQuickWindow *const window = settings->window();
    show(SettingsController::About);
    EXPECT_EQ(settings->window(), window);
    EXPECT_THAT(shownTexts(root()), Contains("Version 2.1 (57)"));
}

TEST_F(SettingsScene, reopenedWhileItClosesItIsThere) {
    show();
    settings->window()->close();
    settings->show(SettingsController::About);
    draw();
    EXPECT_TRUE(settings->isOpen());
    EXPECT_THAT(shownTexts(root()), Contains("Every local dev port, one click away."));
}

TEST_F(SettingsScene, theKeyboardWalksTheTabs) {
    show();
    key(Qt::Key_Right);
    EXPECT_EQ(settings->controller()->tab(), SettingsController::Shortcut);
    EXPECT_THAT(shownTexts(root()), Contains("Click, then press a new shortcut"));
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(settings->controller()->tab(), SettingsController::About);
    key(Qt::Key_Left);
    EXPECT_EQ(settings->controller()->tab(), SettingsController::Shortcut);
    key(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(settings->controller()->tab(), SettingsController::About);
    key(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(settings->controller()->tab(), SettingsController::General);
    key(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(settings->controller()->tab(), SettingsController::About);
}

TEST_F(SettingsScene, everySwitchOfTheFirstTabWorksByPointer) {
    show();
    EXPECT_TRUE(isChecked("Open the window when Tarnvale starts"));
    click("Switch", QStringLiteral("Open the window when Tarnvale starts"));
    EXPECT_FALSE(isChecked("Open the window when Tarnvale starts"));
    EXPECT_EQ(world.settings.flag("showWindowAtLaunch"), false);
    const QSignalSpy previews(settings.get(), &SettingsWindow::showWebPreviewsChanged);
    click("Switch", QStringLiteral("Website previews"));
    EXPECT_EQ(world.settings.flag("showWebPreviews"), false);
    EXPECT_EQ(previews.count(), 1);
    click("Switch", QStringLiteral("Show system processes"));
    EXPECT_TRUE(store->showAll());
    click("Switch", QStringLiteral("Launch at login"));
    EXPECT_TRUE(isChecked("Launch at login"));
}

TEST_F(SettingsScene, theyWorkByKeyboardAndStayInSight) {
    show();
    std::vector<std::string> walked;
    for (int times = 0; times < 6; ++times) {
        key(Qt::Key_Tab);
        const QQuickItem *const item = settings->window()->activeFocusItem();
        walked.push_back(item->property("title").toString().toStdString());
        const double middle = item->mapToScene(QPointF(0, item->height() / 2)).y();
        EXPECT_GT(middle, 0) << walked.back();
        EXPECT_LT(middle, settings->window()->height()) << walked.back();
        if (walked.back() == "Show system processes")
            key(Qt::Key_Space);
    }
    EXPECT_THAT(walked,
                testing::IsSupersetOf({"Launch at login", "Open the window when Tarnvale starts",
                                       "Website previews", "Show system processes", "Copy Install Command"}));
    EXPECT_TRUE(store->showAll());
}

TEST_F(SettingsScene, theToggleFollowsAChangeInThePanel) {
    show();
    EXPECT_FALSE(isChecked("Show system processes"));
    store->setShowAll(true);
    draw();
    EXPECT_TRUE(isChecked("Show system processes"));
}

TEST_F(SettingsScene, aChoiceThatCantBeSavedGoesBackAndIsExplained) {
    show();
    world.settings.isFull = true;
    click("Switch", QStringLiteral("Website previews"));
    EXPECT_TRUE(isChecked("Website previews"));
    EXPECT_NE(findItem(root(), "Banner"), nullptr);
}

TEST_F(SettingsScene, theInstallCommandIsCopied) {
    show();
    click("PushButton", QStringLiteral("Copy Install Command"));
    EXPECT_NE(findItem(root(), "PushButton", QStringLiteral("Copied")), nullptr);
    click("PushButton", QStringLiteral("Copied"));
    EXPECT_THAT(done, testing::ElementsAre("copy", "copy"));
    pass(1500ms);
    draw();
    EXPECT_NE(findItem(root(), "PushButton", QStringLiteral("Copy Install Command")), nullptr);
}

TEST_F(SettingsScene, updatesAreShownOnlyWithAFeed) {
    show();
    EXPECT_THAT(shownTexts(root()), Not(Contains("Updates")));
    SettingsActions made = actions();
    made.updates = updates();
    lastCheck = world.clock.now();
    make(made);
    show();
    EXPECT_THAT(shownTexts(root()), Contains("Updates"));
    EXPECT_THAT(shownTexts(root()), Contains("Last checked now"));
    EXPECT_TRUE(isChecked("Check for updates automatically"));
}

TEST_F(SettingsScene, theLastSectionTellsOfTheDesktop) {
    show();
    waitFor([this] { return findItem(root(), "DesktopRowView") != nullptr; });
    const auto texts = shownTexts(root());
    for (const char *text :
         {"Desktop integration", "Tray", "None found", "Hot key", "Notifications", "Compositor"})
        EXPECT_THAT(texts, Contains(text));
}

TEST_F(SettingsScene, aShortcutIsRecorded) {
    show(SettingsController::Shortcut);
    EXPECT_THAT(shownTexts(root()), Contains("Works from any app. Use ⌘, ⌥ or ⌃ with a key."));
    click("ShortcutButton");
    EXPECT_THAT(shownTexts(root()), Contains("Press a shortcut…"));
    EXPECT_THAT(shownTexts(root()), Contains("Esc cancels"));
    press(*settings->window(), keyEscape);
    EXPECT_TRUE(settings->isOpen()) << "Esc ends the recording alone";
    EXPECT_THAT(shownTexts(root()), Not(Contains("Press a shortcut…")));
    click("ShortcutButton");
    registrar->others.insert("⌃K");
    press(*settings->window(), keyK, Qt::ControlModifier);
    draw();
    EXPECT_THAT(shownTexts(root()), Contains("Ctrl+K is already used by another app."));
    EXPECT_EQ(warnings.take(), "hotkey: couldn't register ⌃K: 1");
    click("ShortcutButton");
    press(*settings->window(), keyK, Qt::ControlModifier | Qt::AltModifier);
    draw();
    for (const char *cap : {"Ctrl", "Alt", "K"})
        EXPECT_THAT(shownTexts(root()), Contains(cap));
    EXPECT_THAT(shownTexts(root()), Not(Contains("Ctrl+K is already used by another app.")));
}

TEST_F(SettingsScene, closingEndsTheRecording) {
    show(SettingsController::Shortcut);
    click("ShortcutButton");
    settings->window()->close();
    quiesce();
    QWindow other;
    press(other, keyK, Qt::ControlModifier);
    EXPECT_EQ(hotKey->current(), Shortcut());
}

TEST_F(SettingsScene, aDesktopThatGivesNoKeyAwayIsExplained) {
    registrar->state = {.kind = HotKeyAvailability::Kind::needsCommand, .command = "tarnvale --toggle"};
    show(SettingsController::Shortcut);
    EXPECT_EQ(findItem(root(), "ShortcutButton"), nullptr);
    click("PushButton", QStringLiteral("Copy Command"));
    EXPECT_THAT(world.clipboard.texts, testing::ElementsAre("tarnvale --toggle"));
}

TEST_F(SettingsScene, aScreenReaderKnowsTheSwitches) {
    show();
    const QAccessibleInterface *const toggle =
        QAccessible::queryAccessibleInterface(findItem(root(), "Switch", QStringLiteral("Website previews")));
    ASSERT_NE(toggle, nullptr);
    EXPECT_EQ(toggle->text(QAccessible::Name), QStringLiteral("Website previews"));
    EXPECT_TRUE(toggle->state().checked);
}

/// Nothing that only makes sense on a Mac is left, once the words of this system are in place.
TEST_F(SettingsScene, theWordsAreThoseOfThisSystem) {
    QTranslator words;
    ASSERT_TRUE(words.load(QStringLiteral(":/i18n/tarnvale_linux.qm")));
    QCoreApplication::installTranslator(&words);
    std::vector<std::string> texts;
    for (const auto tab :
         {SettingsController::General, SettingsController::Shortcut, SettingsController::About}) {
        show(tab);
        for (const std::string &text : shownTexts(root()))
            texts.push_back(text);
    }
    settings.reset();
    QCoreApplication::removeTranslator(&words);
    EXPECT_THAT(texts, Contains("Open the tray panel"));
    EXPECT_THAT(texts, testing::Each(Not(testing::ContainsRegex("macOS|menu bar|in Terminal|⌘|⌥|⌃"))));
}

/// Writes what is seen to a folder, when one is given: to look at.
TEST_F(SettingsScene, picturesCanBeTaken) {
    const QString folder = qEnvironmentVariable("TARNVALE_PICTURES");
    if (folder.isEmpty())
        GTEST_SKIP() << "TARNVALE_PICTURES names no folder";
    const auto take = [&](const char *name) {
        draw();
        ASSERT_TRUE(settings->window()->grabWindow().save(folder + QLatin1Char('/') + QLatin1String(name) +
                                                          QStringLiteral(".png")));
    };
    SettingsActions made = actions();
    made.updates = updates();
    lastCheck = world.clock.now();
    make(made);
    show();
    waitFor([] { return false; }, 100ms);
    take("general");
    for (int times = 0; times < 6; ++times)
        key(Qt::Key_Tab);
    take("general-focus");
    findItem(root(), "QQuickFlickable")->setProperty("contentY", 10000);
    findItem(root(), "QQuickFlickable")
        ->setProperty("contentY", findItem(root(), "QQuickFlickable")->property("contentHeight").toDouble() -
                                      findItem(root(), "QQuickFlickable")->height());
    take("general-end");
    show(SettingsController::Shortcut);
    take("shortcut");
    settings->controller()->toggleRecording();
    take("shortcut-recording");
    registrar->others.insert("⌃K");
    press(*settings->window(), keyK, Qt::ControlModifier);
    take("shortcut-taken");
    EXPECT_EQ(warnings.take(), "hotkey: couldn't register ⌃K: 1");
    show(SettingsController::About);
    take("about");
}

} // namespace
} // namespace tarnvale
