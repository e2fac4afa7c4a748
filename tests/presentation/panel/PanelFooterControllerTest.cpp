// The menu of settings and the chip that records a shortcut.

#include "presentation/panel/PanelFooterController.h"

#include "commands/hotkey/FakeRegistrar.h"
#include "store/StoreTest.h"

#include <QKeyEvent>
#include <QSignalSpy>
#include <QWindow>

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A window that counts the keys that reach it.
class CountingWindow : public QWindow {
public:
    int keys = 0;

protected:
    void keyPressEvent(QKeyEvent *) override { ++keys; }
    void keyReleaseEvent(QKeyEvent *) override { ++keys; }
};

/// A key as a window on X11 tells it.
struct Key {
    Qt::Key key;
    std::uint32_t keycode;
    std::uint32_t keysym;
};

constexpr Key keyK{Qt::Key_K, 45, 0x6b};
constexpr Key keyEscape{Qt::Key_Escape, 9, 0xff1b};
constexpr Key keyShift{Qt::Key_Shift, 50, 0xffe1};

class Footer : public StoreTest {
protected:
    void SetUp() override {
        start();
        auto made = std::make_unique<FakeRegistrar>();
        registrar = made.get();
        hotKey = std::make_unique<GlobalHotKey>(world.settings, std::move(made));
        hotKey->setUp();
        quiesce();
        orders = registrar->orders.size();
        actions.quit = [this] { done.emplace_back("quit"); };
        actions.copyInstallCommand = [this] { done.emplace_back("copy"); };
        make();
        store->setMenuOpen(true);
    }

    void make() { footer = std::make_unique<PanelFooterController>(*store, *hotKey, actions); }

    void send(QEvent::Type type, const Key &key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(type, key.key, modifiers, key.keycode, key.keysym, 0);
        QCoreApplication::sendEvent(&window, &event);
    }

    void press(const Key &key, Qt::KeyboardModifiers modifiers = {}) {
        send(QEvent::KeyPress, key, modifiers);
        send(QEvent::KeyRelease, key, modifiers);
        quiesce();
    }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> result;
        for (const MenuEntry &entry : footer->menu())
            result.push_back(entry.isDivider() ? "-" : entry.title.toStdString());
        return result;
    }

    void choose(const char *title) {
        for (const MenuEntry &entry : footer->menu())
            if (entry.title == QString::fromUtf8(title))
                return entry.act();
        FAIL() << "there is no " << title;
    }

    [[nodiscard]] std::optional<bool> isChecked(std::size_t row) const {
        return footer->menu().at(row).isChecked;
    }

    CountingWindow window;
    PanelActions actions;
    std::vector<std::string> done;
    FakeRegistrar *registrar = nullptr;
    std::size_t orders = 0; ///< to the system, at the start
    std::unique_ptr<GlobalHotKey> hotKey;
    std::unique_ptr<PanelFooterController> footer;
};

TEST_F(Footer, theMenuWithoutAWindowOrUpdates) {
    EXPECT_THAT(titles(), ElementsAre("Show System Processes", "Launch at Login", "-",
                                      "Copy “tarnctl” Command-Line Install Command", "-", "Quit Tarnvale"));
    EXPECT_FALSE(footer->hasWindow());
    footer->openWindow();
    EXPECT_EQ(footer->menu().back().shortcut, QStringLiteral("Ctrl+Q"));
}

TEST_F(Footer, theMenuWithEverything) {
    actions.openWindow = [this] { done.emplace_back("window"); };
    actions.checkForUpdates = [this] { done.emplace_back("updates"); };
    make();
    EXPECT_THAT(titles(), ElementsAre("Show System Processes", "Launch at Login", "Open Tarnvale Window", "-",
                                      "Copy “tarnctl” Command-Line Install Command", "Check for Updates…",
                                      "-", "Quit Tarnvale"));
    EXPECT_TRUE(footer->hasWindow());
    for (const char *title : {"Open Tarnvale Window", "Copy “tarnctl” Command-Line Install Command",
                              "Check for Updates…", "Quit Tarnvale"})
        choose(title);
    footer->openWindow();
    EXPECT_THAT(done, ElementsAre("window", "copy", "updates", "quit", "window"));
}

TEST_F(Footer, theFirstTwoEntriesAreToggles) {
    EXPECT_EQ(isChecked(0), false);
    EXPECT_EQ(isChecked(1), false);
    choose("Show System Processes");
    choose("Launch at Login");
    quiesce();
    EXPECT_TRUE(store->showAll());
    EXPECT_EQ(isChecked(0), true);
    EXPECT_EQ(world.loginItem.state, LoginItem::Status::enabled);
    EXPECT_EQ(isChecked(1), true);
    choose("Show System Processes");
    choose("Launch at Login");
    quiesce();
    EXPECT_FALSE(store->showAll());
    EXPECT_EQ(isChecked(1), false);
    EXPECT_EQ(isChecked(3), std::nullopt);
}

TEST_F(Footer, theMenuIsAskedForAtAPlace) {
    QPointF asked;
    std::size_t entries = 0;
    QObject::connect(footer.get(), &PanelFooterController::menuReady,
                     [&](const QPointF &place, const std::vector<MenuEntry> &menu) {
                         asked = place;
                         entries = menu.size();
                     });
    footer->requestMenu({3, 4});
    EXPECT_EQ(asked, QPointF(3, 4));
    EXPECT_EQ(entries, 6u);
}

TEST_F(Footer, theChipShowsTheShortcutInForce) {
    EXPECT_EQ(footer->hotKeyCaps(),
              QStringList({QStringLiteral("Alt"), QStringLiteral("Super"), QStringLiteral("P")}));
    EXPECT_EQ(footer->hotKeyNote(), QString());
    EXPECT_FALSE(footer->isRecordingHotKey());
}

TEST_F(Footer, aClickBeginsToRecordAndAnotherEndsIt) {
    const QSignalSpy changes(footer.get(), &PanelFooterController::isRecordingHotKeyChanged);
    footer->toggleRecording();
    EXPECT_TRUE(footer->isRecordingHotKey());
    footer->toggleRecording();
    EXPECT_FALSE(footer->isRecordingHotKey());
    EXPECT_EQ(changes.count(), 2);
    press(keyK, Qt::ControlModifier);
    EXPECT_EQ(window.keys, 2) << "keys go their usual way again";
    EXPECT_EQ(registrar->orders.size(), orders);
}

TEST_F(Footer, aCombinationIsTakenAndSwallowed) {
    store->setError(QStringLiteral("an older failure"));
    footer->toggleRecording();
    press(keyK, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_FALSE(footer->isRecordingHotKey());
    EXPECT_EQ(hotKey->current().display, "⌃⌥K");
    EXPECT_EQ(registrar->taken, hotKey->current());
    EXPECT_EQ(footer->hotKeyCaps(),
              QStringList({QStringLiteral("Ctrl"), QStringLiteral("Alt"), QStringLiteral("K")}));
    EXPECT_EQ(store->error(), std::nullopt);
    EXPECT_LE(window.keys, 1) << "of the press nothing is seen";
}

TEST_F(Footer, keysWithoutAModifierChangeNothingAndAreSwallowed) {
    footer->toggleRecording();
    press(keyK);
    press(keyK, Qt::ShiftModifier);
    press(keyShift, Qt::ShiftModifier);
    send(QEvent::ShortcutOverride, keyK, {});
    EXPECT_TRUE(footer->isRecordingHotKey());
    EXPECT_EQ(window.keys, 0);
    EXPECT_EQ(registrar->orders.size(), orders);
}

TEST_F(Footer, escEndsTheRecordingWhateverIsHeld) {
    for (const Qt::KeyboardModifiers held :
         {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ControlModifier),
          Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier}) {
        footer->toggleRecording();
        press(keyEscape, held);
        EXPECT_FALSE(footer->isRecordingHotKey());
    }
    EXPECT_EQ(registrar->orders.size(), orders);
    EXPECT_EQ(hotKey->current(), Shortcut());
}

TEST_F(Footer, aTakenCombinationIsToldAndTheOldOneStays) {
    registrar->others.insert("⌃⌥K");
    footer->toggleRecording();
    press(keyK, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(error(), "Ctrl+Alt+K is already used by another app.");
    EXPECT_FALSE(footer->isRecordingHotKey());
    EXPECT_EQ(hotKey->current(), Shortcut());
    EXPECT_EQ(registrar->taken, Shortcut());
    EXPECT_EQ(footer->hotKeyCaps(),
              QStringList({QStringLiteral("Alt"), QStringLiteral("Super"), QStringLiteral("P")}));
}

TEST_F(Footer, closingThePanelEndsTheRecording) {
    footer->toggleRecording();
    store->setMenuOpen(false);
    EXPECT_FALSE(footer->isRecordingHotKey());
    press(keyK, Qt::ControlModifier);
    EXPECT_EQ(window.keys, 2);
    EXPECT_EQ(registrar->orders.size(), orders);
}

TEST_F(Footer, aRecordingEndsWithItsOwner) {
    footer->toggleRecording();
    footer.reset();
    press(keyK, Qt::ControlModifier);
    EXPECT_EQ(window.keys, 2);
}

TEST_F(Footer, anAnswerThatComesTooLateIsDropped) {
    registrar->isAsking = true;
    footer->toggleRecording();
    press(keyK, Qt::ControlModifier);
    ASSERT_EQ(registrar->orders.size(), orders + 1);
    footer.reset();
    registrar->answer();
    quiesce();
    EXPECT_EQ(store->error(), std::nullopt);
}

TEST_F(Footer, aKeyBeyondTheFirstPlaneIsIgnored) {
    footer->toggleRecording();
    press({static_cast<Qt::Key>(0x1F600), 0, 0}, Qt::ControlModifier);
    EXPECT_TRUE(footer->isRecordingHotKey());
    EXPECT_EQ(registrar->orders.size(), orders);
}

TEST_F(Footer, aDesktopThatBindsKeysItselfNamesThem) {
    registrar->state = {.kind = HotKeyAvailability::Kind::desktopDecides, .trigger = "Meta+Alt+T"};
    EXPECT_EQ(footer->hotKeyCaps(), QStringList(QStringLiteral("Meta+Alt+T")));
    footer->toggleRecording();
    EXPECT_TRUE(footer->isRecordingHotKey());
}

TEST_F(Footer, aDesktopThatLetsNobodyTakeAKeyIsExplained) {
    registrar->state = {.kind = HotKeyAvailability::Kind::needsCommand, .command = "tarnvale --toggle-panel"};
    EXPECT_THAT(footer->hotKeyCaps(), IsEmpty());
    EXPECT_TRUE(footer->hotKeyNote().contains(QStringLiteral("tarnvale --toggle-panel")));
    footer->toggleRecording();
    EXPECT_FALSE(footer->isRecordingHotKey());
    EXPECT_EQ(store->error(), footer->hotKeyNote());
}

TEST_F(Footer, aDesktopWithoutAnyWayHasNoCapsAndNoEmptyBanner) {
    registrar->state = {.kind = HotKeyAvailability::Kind::none};
    EXPECT_THAT(footer->hotKeyCaps(), IsEmpty());
    footer->toggleRecording();
    EXPECT_FALSE(footer->isRecordingHotKey());
    EXPECT_NE(store->error(), QString());
}

} // namespace
} // namespace tarnvale
