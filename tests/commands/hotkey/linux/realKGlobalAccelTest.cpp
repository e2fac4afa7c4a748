#include "commands/hotkey/linux/KGlobalAccelRegistrar.h"
#include "commands/hotkey/linux/desktopTriggers.h"
#include "platform/linux/PrivateBus.h"
#include "platform/linux/VirtualDisplay.h"
#include "support/ManualClock.h"
#include "support/runProgram.h"

#include <QDBusConnectionInterface>

#include <gtest/gtest.h>

#include <filesystem>

namespace tarnvale {
namespace {

constexpr const char *program = "/usr/bin/kglobalaccel5";
const Shortcut controlAltK{40, 0x1800, "⌃⌥K"};
const Shortcut controlAltJ{38, 0x1800, "⌃⌥J"};

/// KDE's daemon of global shortcuts as it is installed, on a display and a bus of its own.
class RealKGlobalAccelTest : public testing::Test {
protected:
    void SetUp() override {
        if (!m_bus.isRunning() || !m_display.isRunning())
            GTEST_SKIP() << "dbus-daemon, Xvfb or openbox isn't installed";
        for (const char *needed : {program, "/usr/bin/xdotool"})
            if (!std::filesystem::exists(needed))
                GTEST_SKIP() << needed << " isn't installed";
        m_watcher = std::make_unique<QDBusConnection>(m_bus.connect());
        startDaemon();
        if (testing::Test::HasFailure())
            return;
        m_registrar = registrar();
        m_registrar->onPress = [this] { ++m_presses; };
    }

    [[nodiscard]] bool hasDaemon() const {
        return m_watcher->interface()->isServiceRegistered("org.kde.kglobalaccel");
    }

    void startDaemon() {
        m_daemon = std::make_unique<TestProcess>(
            std::vector<std::string>{program},
            environmentWith({"DISPLAY=" + m_display.name(), "QT_QPA_PLATFORM=xcb",
                             "DBUS_SESSION_BUS_ADDRESS=" + m_bus.address(), "HOME=" + m_folder.path(),
                             "XDG_RUNTIME_DIR=" + m_folder.path(),
                             "XDG_CONFIG_HOME=" + m_folder.path("config"),
                             "XDG_DATA_HOME=" + m_folder.path("data")}));
        ASSERT_TRUE(waitFor([&] { return hasDaemon(); }, std::chrono::seconds(30)));
    }

    void stopDaemon() {
        m_daemon.reset();
        ASSERT_TRUE(waitFor([&] { return !hasDaemon(); }));
    }

    [[nodiscard]] std::unique_ptr<KGlobalAccelRegistrar> registrar() {
        return std::make_unique<KGlobalAccelRegistrar>(m_bus.connect());
    }

    std::optional<HotKeyOutcome> grab(const Shortcut &shortcut) {
        const auto answer = m_registrar->grab(shortcut, HotKeyOccasion::start);
        const bool isAnswered = waitFor([&] { return answer.isFinished(); });
        m_bus.settle();
        return isAnswered ? std::optional(answer.result()) : std::nullopt;
    }

    /// Another program takes `key` (in Qt's numbers).
    void takeForAnother(int key) {
        const QStringList action{"other", "act", "Other", "Act"};
        const auto call = [&](const QString &method, const QVariantList &arguments) {
            QDBusMessage message = QDBusMessage::createMethodCall("org.kde.kglobalaccel", "/kglobalaccel",
                                                                  "org.kde.KGlobalAccel", method);
            message.setArguments(arguments);
            return m_watcher->call(message).type() == QDBusMessage::ReplyMessage;
        };
        ASSERT_TRUE(call("doRegister", {action}));
        ASSERT_TRUE(call("setShortcut", {action, QVariant::fromValue(QList<int>{key}), 6u}));
    }

    void type(const std::string &keys) const {
        const ProgramRun run =
            runProgram({"/usr/bin/env", "DISPLAY=" + m_display.name(), "xdotool", "key", keys});
        ASSERT_EQ(run.status, 0) << run.error;
    }

    /// Whether pressing `keys` comes to be told. A press may come before the daemon has taken the key from
    /// the X server, so it may have to be repeated.
    [[nodiscard]] bool works(const std::string &keys) {
        const int before = m_presses;
        for (int tries = 0; tries < 10 && m_presses == before; ++tries) {
            type(keys);
            (void)waitFor([&] { return m_presses > before; }, std::chrono::milliseconds(500));
        }
        return m_presses > before;
    }

    VirtualDisplay m_display;
    TemporaryFolder m_folder;
    PrivateBus m_bus;
    std::unique_ptr<QDBusConnection> m_watcher;
    std::unique_ptr<TestProcess> m_daemon;
    std::unique_ptr<KGlobalAccelRegistrar> m_registrar;
    int m_presses = 0;
};

TEST_F(RealKGlobalAccelTest, aKeyIsGrantedAndPressed) {
    ASSERT_EQ(grab(controlAltK), HotKeyOutcome());
    ASSERT_TRUE(works("ctrl+alt+k"));
    const int before = m_presses;
    type("ctrl+alt+k");
    EXPECT_TRUE(waitFor([&] { return m_presses == before + 1; })) << "once for each press";
}

TEST_F(RealKGlobalAccelTest, whatAnotherProgramHasIsTaken) {
    takeForAnother(*qtKeyCombination(controlAltK));
    const auto outcome = grab(controlAltK);
    ASSERT_TRUE(outcome && !*outcome);
    EXPECT_EQ(outcome->error(), HotKeyFailure::taken);
    ASSERT_EQ(grab(controlAltJ), HotKeyOutcome());
    EXPECT_TRUE(works("ctrl+alt+j"));
}

TEST_F(RealKGlobalAccelTest, theNextOrderLetsGoOfTheLast) {
    ASSERT_EQ(grab(controlAltK), HotKeyOutcome());
    ASSERT_TRUE(works("ctrl+alt+k"));
    ASSERT_EQ(grab(controlAltJ), HotKeyOutcome());
    ASSERT_TRUE(works("ctrl+alt+j"));
    const int before = m_presses;
    type("ctrl+alt+k");
    type("ctrl+alt+j");
    ASSERT_TRUE(waitFor([&] { return m_presses > before; }));
    EXPECT_EQ(m_presses, before + 1) << "keys arrive in their order: that of before would have been told";
}

TEST_F(RealKGlobalAccelTest, afterARestartOfTheDaemonTheKeyWorksAgain) {
    ASSERT_EQ(grab(controlAltK), HotKeyOutcome());
    stopDaemon();
    startDaemon();
    EXPECT_TRUE(works("ctrl+alt+k"));
}

TEST_F(RealKGlobalAccelTest, withoutTheDaemonItIsUnavailable) {
    stopDaemon();
    const auto outcome = grab(controlAltK);
    ASSERT_TRUE(outcome && !*outcome);
    EXPECT_EQ(outcome->error(), HotKeyFailure::unavailable);
}

} // namespace
} // namespace tarnvale
