#include "commands/hotkey/GlobalHotKey.h"

#include "commands/hotkey/FakeRegistrar.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoroTask>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Order = FakeRegistrar::Order;

const Shortcut controlK{40, 0x1000, "⌃K"};
const Shortcut controlJ{38, 0x1000, "⌃J"};

/// What is logged under "hotkey" while this object lives.
class HotkeyLog {
public:
    HotkeyLog() {
        lines().clear();
        m_before = qInstallMessageHandler(take);
    }
    HotkeyLog(const HotkeyLog &) = delete;
    HotkeyLog &operator=(const HotkeyLog &) = delete;
    ~HotkeyLog() { qInstallMessageHandler(m_before); }

    [[nodiscard]] static std::vector<std::string> &lines() {
        static std::vector<std::string> all;
        return all;
    }

private:
    static void take(QtMsgType type, const QMessageLogContext &context, const QString &text) {
        if (std::string_view(context.category) == "hotkey")
            lines().push_back((type == QtCriticalMsg ? "error: " : "") + text.toStdString());
    }

    QtMessageHandler m_before = nullptr;
};

class GlobalHotKeyTest : public testing::Test {
protected:
    void start() {
        auto registrar = std::make_unique<FakeRegistrar>();
        m_registrar = registrar.get();
        m_hotKey = std::make_unique<GlobalHotKey>(m_settings, std::move(registrar));
        m_hotKey->onPress = [this] { ++m_presses; };
        QObject::connect(m_hotKey.get(), &GlobalHotKey::currentChanged, m_hotKey.get(),
                         [this] { ++m_changes; });
        QObject::connect(m_hotKey.get(), &GlobalHotKey::saveFailed, m_hotKey.get(), [this] { ++m_failures; });
    }

    void store(const Shortcut &shortcut) { m_settings.values["hotKey"] = *encodeShortcut(shortcut); }

    /// The answer to `apply`, which doesn't wait for anybody.
    bool apply(const Shortcut &shortcut) { return QCoro::waitFor(m_hotKey->apply(shortcut)); }

    [[nodiscard]] std::optional<Shortcut> stored() const {
        const auto json = m_settings.bytes("hotKey");
        return json ? decodeShortcut(*json) : std::nullopt;
    }

    void TearDown() override {
        m_hotKey.reset();
        settle();
    }

    FakeSettings m_settings;
    HotkeyLog m_log;
    FakeRegistrar *m_registrar = nullptr;
    std::unique_ptr<GlobalHotKey> m_hotKey;
    int m_presses = 0;
    int m_changes = 0;
    int m_failures = 0;
};

TEST_F(GlobalHotKeyTest, withNothingStoredItIsTheDefault) {
    start();
    EXPECT_EQ(m_hotKey->current(), Shortcut());
}

TEST_F(GlobalHotKeyTest, whatIsStoredIsUsed) {
    store(controlK);
    start();
    EXPECT_EQ(m_hotKey->current(), controlK);
    m_hotKey->setUp();
    EXPECT_EQ(m_registrar->taken, controlK);
    EXPECT_THAT(m_registrar->orders, ElementsAre(Order{controlK, HotKeyOccasion::start}));
}

TEST_F(GlobalHotKeyTest, whatCantBeReadStaysStored) {
    m_settings.values["hotKey"] = std::string("{\"keyCode\":35}");
    start();
    EXPECT_EQ(m_hotKey->current(), Shortcut());
    m_hotKey->setUp();
    EXPECT_EQ(m_settings.bytes("hotKey"), "{\"keyCode\":35}");
    EXPECT_EQ(m_settings.writes, 0);
}

TEST_F(GlobalHotKeyTest, aValueOfAnotherKindIsNone) {
    m_settings.values["hotKey"] = true;
    start();
    EXPECT_EQ(m_hotKey->current(), Shortcut());
}

TEST_F(GlobalHotKeyTest, settingUpIsLogged) {
    start();
    m_hotKey->setUp();
    EXPECT_THAT(HotkeyLog::lines(), ElementsAre("hotkey: setting up ⌥⌘P", "hotkey: registered ⌥⌘P"));
}

TEST_F(GlobalHotKeyTest, settingUpTwiceIsSettingUpOnce) {
    start();
    m_hotKey->setUp();
    m_hotKey->setUp();
    EXPECT_EQ(m_registrar->orders.size(), 1u);
    m_registrar->onPress();
    settle();
    EXPECT_EQ(m_presses, 1);
}

TEST_F(GlobalHotKeyTest, aPressIsDealtWithLater) {
    start();
    m_hotKey->setUp();
    HotkeyLog::lines().clear();
    m_registrar->onPress();
    EXPECT_EQ(m_presses, 0);
    settle();
    EXPECT_EQ(m_presses, 1);
    EXPECT_THAT(HotkeyLog::lines(), ElementsAre("hotkey: pressed"));
}

TEST_F(GlobalHotKeyTest, aPressThatNobodyWantsIsOnlyLogged) {
    start();
    m_hotKey->onPress = nullptr;
    m_hotKey->setUp();
    m_registrar->onPress();
    settle();
    EXPECT_EQ(HotkeyLog::lines().back(), "hotkey: pressed");
}

TEST_F(GlobalHotKeyTest, aPressAtTheEndIsLost) {
    start();
    m_hotKey->setUp();
    m_registrar->onPress();
    m_hotKey.reset();
    settle();
    EXPECT_EQ(m_presses, 0);
}

TEST_F(GlobalHotKeyTest, whatIsHeldAtStartGivesWayToTheDefaultForThisRun) {
    store(controlK);
    start();
    m_registrar->others = {"⌃K"};
    m_hotKey->setUp();
    EXPECT_EQ(m_hotKey->current(), Shortcut());
    EXPECT_EQ(m_registrar->taken, Shortcut());
    EXPECT_EQ(m_changes, 1);
    EXPECT_EQ(stored(), controlK);
    EXPECT_EQ(m_settings.writes, 0);
    EXPECT_THAT(HotkeyLog::lines(),
                ElementsAre("hotkey: setting up ⌃K", "error: hotkey: couldn't register ⌃K: 1",
                            "hotkey: registered ⌥⌘P"));
}

TEST_F(GlobalHotKeyTest, withTheDefaultHeldThereIsNoneThisRun) {
    store(controlK);
    start();
    m_registrar->others = {"⌃K", "⌥⌘P"};
    m_hotKey->setUp();
    EXPECT_EQ(m_registrar->taken, std::nullopt);
    EXPECT_EQ(m_hotKey->current(), Shortcut());
    m_registrar->others.clear();
    EXPECT_TRUE(apply(controlJ));
    EXPECT_EQ(m_registrar->taken, controlJ);
}

TEST_F(GlobalHotKeyTest, aNewOneIsTakenAndStored) {
    start();
    m_hotKey->setUp();
    EXPECT_TRUE(apply(controlK));
    EXPECT_EQ(m_hotKey->current(), controlK);
    EXPECT_EQ(m_registrar->taken, controlK);
    EXPECT_EQ(stored(), controlK);
    EXPECT_EQ(m_changes, 1);
    EXPECT_EQ(m_registrar->orders.back().occasion, HotKeyOccasion::userChoice);
}

TEST_F(GlobalHotKeyTest, theOldOneIsLetGoFirstSoTheSameOneSucceeds) {
    start();
    m_hotKey->setUp();
    EXPECT_TRUE(apply(Shortcut()));
    EXPECT_EQ(m_registrar->releases, 1);
    EXPECT_EQ(m_registrar->taken, Shortcut());
    EXPECT_EQ(stored(), Shortcut());
    EXPECT_EQ(m_changes, 0);
}

TEST_F(GlobalHotKeyTest, aFailedOneLeavesTheOldOneWorking) {
    store(controlJ);
    start();
    m_hotKey->setUp();
    m_registrar->others = {"⌃K"};
    HotkeyLog::lines().clear();
    EXPECT_FALSE(apply(controlK));
    EXPECT_EQ(m_hotKey->current(), controlJ);
    EXPECT_EQ(m_registrar->taken, controlJ);
    EXPECT_EQ(m_registrar->orders.back(), (Order{controlJ, HotKeyOccasion::takeBack}));
    EXPECT_EQ(stored(), controlJ);
    EXPECT_EQ(m_changes, 0);
    EXPECT_THAT(HotkeyLog::lines(),
                ElementsAre("error: hotkey: couldn't register ⌃K: 1", "hotkey: registered ⌃J"));
    m_registrar->onPress();
    settle();
    EXPECT_EQ(m_presses, 1);
}

TEST_F(GlobalHotKeyTest, theOldOneMayBeLostButStaysStored) {
    start();
    m_hotKey->setUp();
    m_registrar->others = {"⌃K", "⌥⌘P"};
    EXPECT_FALSE(apply(controlK));
    EXPECT_EQ(m_registrar->taken, std::nullopt);
    EXPECT_EQ(m_hotKey->current(), Shortcut());
}

TEST_F(GlobalHotKeyTest, whatCantBeEncodedIsRemovedFromTheStore) {
    store(controlJ);
    start();
    m_hotKey->setUp();
    const Shortcut odd{40, 0x1000, "\xff"};
    EXPECT_TRUE(apply(odd));
    EXPECT_EQ(m_hotKey->current(), odd);
    EXPECT_FALSE(m_settings.values.contains("hotKey"));
}

TEST_F(GlobalHotKeyTest, aFullDiskIsToldAndTheCombinationWorks) {
    store(controlJ);
    start();
    m_hotKey->setUp();
    m_settings.isFull = true;
    EXPECT_TRUE(apply(controlK));
    EXPECT_EQ(m_failures, 1);
    EXPECT_EQ(m_hotKey->current(), controlK);
    EXPECT_EQ(stored(), controlJ);
}

TEST_F(GlobalHotKeyTest, theLogHoldsNoControlCharacters) {
    m_settings.values["hotKey"] = std::string(R"({"keyCode":1,"carbonModifiers":256,"display":"a\nb"})");
    start();
    m_hotKey->setUp();
    EXPECT_EQ(HotkeyLog::lines().front(), "hotkey: setting up a\uFFFDb");
}

TEST_F(GlobalHotKeyTest, whileTheUserIsAskedTheOldOneIsTheCurrentOne) {
    start();
    m_hotKey->setUp();
    m_registrar->isAsking = true;
    std::optional<bool> answer;
    m_hotKey->apply(controlK).then([&](bool isTaken) { answer = isTaken; });
    settle();
    EXPECT_EQ(answer, std::nullopt);
    EXPECT_EQ(m_hotKey->current(), Shortcut());
    m_registrar->answer();
    settle();
    EXPECT_EQ(answer, true);
    EXPECT_EQ(m_hotKey->current(), controlK);
}

TEST_F(GlobalHotKeyTest, ofTwoChoicesTheLaterCounts) {
    start();
    m_hotKey->setUp();
    m_registrar->isAsking = true;
    std::vector<std::pair<std::string, bool>> answers;
    m_hotKey->apply(controlK).then([&](bool isTaken) { answers.emplace_back("first", isTaken); });
    m_hotKey->apply(controlJ).then([&](bool isTaken) { answers.emplace_back("second", isTaken); });
    settle();
    EXPECT_THAT(answers, ElementsAre(std::pair<std::string, bool>("first", false)));
    m_registrar->answer();
    settle();
    EXPECT_EQ(answers.back(), (std::pair<std::string, bool>("second", true)));
    EXPECT_EQ(m_hotKey->current(), controlJ);
    EXPECT_EQ(m_registrar->orders.size(), 3u);
}

TEST_F(GlobalHotKeyTest, aChoiceEndsTheWaitOfTheStart) {
    store(controlJ);
    start();
    m_registrar->isAsking = true;
    m_hotKey->setUp();
    m_registrar->isAsking = false;
    EXPECT_TRUE(apply(controlK));
    settle();
    EXPECT_EQ(m_registrar->taken, controlK);
    EXPECT_EQ(m_hotKey->current(), controlK);
    EXPECT_EQ(m_registrar->orders.size(), 2u);
}

TEST_F(GlobalHotKeyTest, theEndMayComeWhileTheUserIsAsked) {
    start();
    m_registrar->isAsking = true;
    m_hotKey->setUp();
    std::optional<bool> answer;
    m_hotKey->apply(controlK).then([&](bool isTaken) { answer = isTaken; });
    m_hotKey.reset();
    settle();
    EXPECT_EQ(answer, false);
    EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(GlobalHotKeyTest, availabilityIsTheRegistrars) {
    start();
    m_registrar->state = {.kind = HotKeyAvailability::Kind::desktopDecides, .trigger = "Meta+K"};
    int changes = 0;
    QObject::connect(m_hotKey.get(), &GlobalHotKey::availabilityChanged, m_hotKey.get(), [&] { ++changes; });
    EXPECT_EQ(m_hotKey->availability().trigger, "Meta+K");
    m_hotKey->setUp();
    EXPECT_EQ(changes, 1);
    m_registrar->onAvailabilityChange();
    EXPECT_EQ(changes, 2);
}

} // namespace
} // namespace tarnvale
