#include "presentation/settings/SettingsController.h"

#include "presentation/settings/SettingsTest.h"

#include <QSignalSpy>
#include <QWindow>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class Choices : public SettingsTest {
protected:
    void SetUp() override {
        SettingsTest::SetUp();
        make(actions());
    }
    void make(SettingsActions made) {
        settings = std::make_unique<SettingsController>(*store, world.platform(), *hotKey, std::move(made));
    }
    void makeWithUpdates() {
        SettingsActions made = actions();
        made.updates = updates();
        make(std::move(made));
    }

    QWindow window;
    std::unique_ptr<SettingsController> settings;
};

TEST_F(Choices, absentOrOddValuesAreYes) {
    EXPECT_TRUE(settings->showWindowAtLaunch());
    EXPECT_TRUE(settings->showWebPreviews());
    for (const char *key : {"showWindowAtLaunch", "showWebPreviews"})
        world.settings.values[key] = std::string("false");
    EXPECT_TRUE(settings->showWindowAtLaunch());
    EXPECT_TRUE(settings->showWebPreviews());
}

TEST_F(Choices, eachIsStoredAtOnce) {
    const QSignalSpy windows(settings.get(), &SettingsController::showWindowAtLaunchChanged);
    const QSignalSpy previews(settings.get(), &SettingsController::showWebPreviewsChanged);
    settings->setShowWindowAtLaunch(false);
    EXPECT_EQ(world.settings.flag("showWindowAtLaunch"), false);
    EXPECT_FALSE(settings->showWindowAtLaunch());
    settings->setShowWebPreviews(false);
    EXPECT_EQ(world.settings.flag("showWebPreviews"), false);
    EXPECT_FALSE(settings->showWebPreviews());
    settings->setShowWebPreviews(true);
    EXPECT_TRUE(settings->showWebPreviews());
    EXPECT_EQ(windows.count(), 1);
    EXPECT_EQ(previews.count(), 2);
    EXPECT_EQ(settings->trouble(), QString());
}

TEST_F(Choices, withoutPreviewsNoPageIsLoadedAnyMore) {
    settings->setShowWebPreviews(false);
    EXPECT_FALSE(store->previews().isEnabled());
    store->previews().update({3000});
    quiesce();
    EXPECT_EQ(store->previews().capturing(), std::nullopt);
    settings->setShowWebPreviews(true);
    EXPECT_TRUE(store->previews().isEnabled());
}

TEST_F(Choices, aChoiceThatCantBeSavedIsTakenBackAndTold) {
    world.settings.isFull = true;
    settings->setShowWindowAtLaunch(false);
    EXPECT_TRUE(settings->showWindowAtLaunch());
    EXPECT_EQ(settings->trouble(), QStringLiteral("Your choice couldn't be saved."));
    EXPECT_EQ(store->error(), std::nullopt);
    settings->dismissTrouble();
    EXPECT_EQ(settings->trouble(), QString());
    settings->setShowWebPreviews(false);
    EXPECT_NE(settings->trouble(), QString());
    world.settings.isFull = false;
    settings->setShowWebPreviews(false);
    EXPECT_EQ(settings->trouble(), QString()) << "the next one could be";
}

TEST_F(Choices, launchAtLoginGoesThroughTheStore) {
    const QSignalSpy changes(settings.get(), &SettingsController::launchAtLoginChanged);
    settings->setLaunchAtLogin(true);
    EXPECT_TRUE(settings->launchAtLogin());
    EXPECT_EQ(world.loginItem.state, LoginItem::Status::enabled);
    settings->setLaunchAtLogin(false);
    EXPECT_FALSE(settings->launchAtLogin());
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(Choices, aRefusedLoginItemIsTold) {
    world.loginItem.refusal = "no room";
    settings->setLaunchAtLogin(true);
    EXPECT_FALSE(settings->launchAtLogin());
    EXPECT_TRUE(settings->trouble().contains(QStringLiteral("no room")));
    world.loginItem.refusal.reset();
    settings->setLaunchAtLogin(true);
    EXPECT_EQ(settings->trouble(), QString());
}

TEST_F(Choices, theToggleFollowsAChangeElsewhere) {
    const QSignalSpy changes(settings.get(), &SettingsController::showAllChanged);
    store->setShowAll(true);
    EXPECT_TRUE(settings->showAll());
    EXPECT_EQ(changes.count(), 1);
    settings->setShowAll(false);
    EXPECT_FALSE(store->showAll());
}

TEST_F(Choices, theCopyIsConfirmedForAWhile) {
    settings->copyInstallCommand();
    EXPECT_TRUE(settings->copied());
    pass(1400ms);
    EXPECT_TRUE(settings->copied());
    pass(100ms);
    EXPECT_FALSE(settings->copied());
}

TEST_F(Choices, aSecondCopyKeepsTheLabel) {
    const QSignalSpy changes(settings.get(), &SettingsController::copiedChanged);
    settings->copyInstallCommand();
    pass(1s);
    settings->copyInstallCommand();
    EXPECT_TRUE(settings->copied());
    pass(1s);
    EXPECT_TRUE(settings->copied()) << "the second counts";
    pass(500ms);
    EXPECT_FALSE(settings->copied());
    EXPECT_THAT(done, ElementsAre("copy", "copy"));
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(Choices, theLabelsTimeMayOutliveTheWindow) {
    settings->copyInstallCommand();
    settings.reset();
    pass(2s);
    EXPECT_THAT(done, ElementsAre("copy"));
}

TEST_F(Choices, withoutAFeedThereAreNoUpdates) {
    EXPECT_FALSE(settings->hasUpdates());
    EXPECT_EQ(settings->lastCheck(), QString());
    settings->setAutomaticallyChecks(true);
    settings->checkNow();
    EXPECT_FALSE(settings->automaticallyChecks());
    EXPECT_THAT(done, IsEmpty());
}

TEST_F(Choices, updatesReadAndSetTheUpdater) {
    makeWithUpdates();
    EXPECT_TRUE(settings->hasUpdates());
    EXPECT_TRUE(settings->automaticallyChecks());
    settings->setAutomaticallyChecks(false);
    EXPECT_FALSE(settings->automaticallyChecks());
    EXPECT_FALSE(checksForUpdates);
    settings->checkNow();
    EXPECT_THAT(done, ElementsAre("check"));
}

TEST_F(Choices, theLastCheckIsToldAndFollowed) {
    makeWithUpdates();
    EXPECT_EQ(settings->lastCheck(), QString()) << "there was none yet";
    lastCheck = world.clock.now();
    pass(2s);
    EXPECT_EQ(settings->lastCheck(), QStringLiteral("Last checked 2 sec. ago"));
    pass(5min);
    EXPECT_EQ(settings->lastCheck(), QStringLiteral("Last checked 5 min. ago"));
}

TEST_F(Choices, theVersionLineFallsBack) {
    EXPECT_EQ(settings->versionLine(), QStringLiteral("Version 2.1 (57)"));
    SettingsActions bare = actions();
    bare.version.clear();
    make(bare);
    EXPECT_EQ(settings->versionLine(), QStringLiteral("Version 1.0 (57)"));
    bare.build.clear();
    make(bare);
    EXPECT_EQ(settings->versionLine(), QStringLiteral("Version 1.0"));
    bare.version = QStringLiteral("%2 %1");
    bare.build = QStringLiteral("7");
    make(bare);
    EXPECT_EQ(settings->versionLine(), QStringLiteral("Version %2 %1 (7)"));
}

// The shortcut.

TEST_F(Choices, aNewCombinationIsTaken) {
    EXPECT_EQ(settings->hotKeyCaps().join(QLatin1Char('+')), QStringLiteral("Alt+Super+P"));
    const QSignalSpy changes(settings.get(), &SettingsController::hotKeyChanged);
    settings->toggleRecording();
    EXPECT_TRUE(settings->isRecording());
    press(window, keyK);
    EXPECT_TRUE(settings->isRecording()) << "a key alone is no combination";
    press(window, keyK, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_FALSE(settings->isRecording());
    EXPECT_EQ(settings->hotKeyCaps().join(QLatin1Char('+')), QStringLiteral("Ctrl+Alt+K"));
    EXPECT_EQ(settings->message(), QString());
    EXPECT_GE(changes.count(), 1);
}

TEST_F(Choices, aTakenCombinationIsToldHereAndNotInTheStore) {
    registrar->others.insert("⌃⌥K");
    settings->toggleRecording();
    press(window, keyK, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(settings->message(), QStringLiteral("Ctrl+Alt+K is already used by another app."));
    EXPECT_EQ(store->error(), std::nullopt);
    EXPECT_EQ(settings->hotKeyCaps().join(QLatin1Char('+')), QStringLiteral("Alt+Super+P"));
    registrar->others.clear();
    settings->toggleRecording();
    press(window, keyK, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(settings->message(), QString()) << "a success clears it";
}

TEST_F(Choices, escLeavesTheShortcutAsItWas) {
    const auto orders = registrar->orders.size();
    ASSERT_FALSE(store->isMenuOpen());
    settings->toggleRecording();
    press(window, keyEscape);
    EXPECT_FALSE(settings->isRecording());
    EXPECT_EQ(hotKey->current(), Shortcut());
    EXPECT_EQ(registrar->orders.size(), orders);
}

TEST_F(Choices, anotherClickAndAnotherTabEndTheRecording) {
    settings->setTab(SettingsController::Shortcut);
    settings->toggleRecording();
    settings->toggleRecording();
    EXPECT_FALSE(settings->isRecording());
    settings->toggleRecording();
    settings->setTab(SettingsController::Shortcut);
    EXPECT_TRUE(settings->isRecording()) << "it is the same tab";
    settings->setTab(SettingsController::General);
    EXPECT_FALSE(settings->isRecording());
}

TEST_F(Choices, aDesktopThatGivesNoKeyAwayRecordsNothing) {
    registrar->state = {.kind = HotKeyAvailability::Kind::needsCommand, .command = "tarnvale --toggle"};
    EXPECT_FALSE(settings->canRecord());
    EXPECT_THAT(settings->hotKeyCaps(), IsEmpty());
    settings->toggleRecording();
    EXPECT_FALSE(settings->isRecording());
    settings->copyHotKeyCommand();
    EXPECT_THAT(world.clipboard.texts, ElementsAre("tarnvale --toggle"));
    registrar->state = {.kind = HotKeyAvailability::Kind::desktopDecides, .trigger = "Meta+T"};
    EXPECT_TRUE(settings->canRecord());
    EXPECT_EQ(settings->hotKeyCaps(), QStringList(QStringLiteral("Meta+T")));
    EXPECT_EQ(settings->hotKeyCommand(), QString());
}

} // namespace
} // namespace tarnvale
