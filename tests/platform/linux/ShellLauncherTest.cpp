#include "platform/linux/ShellLauncher.h"

#include "discovery/findTool.h"
#include "discovery/text.h"
#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

/// A real shell, with files of the user's that print something and extend PATH, and no service manager.
class ShellLauncherTest : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        if (!firstExecutable({GetParam()}))
            GTEST_SKIP() << GetParam() << " is not installed";
        const std::string lines = "echo 'from the rc file'\nPATH=$HOME/bin:$PATH\nexport PATH\n";
        m_folder.write("home/.profile", lines);
        m_folder.write("home/.zshrc", lines);
        m_folder.write("home/.config/fish/config.fish",
                       "echo 'from the rc file'\nset -gx PATH $HOME/bin $PATH\n");
        m_folder.writeScript("home/bin/greet",
                             "echo \"out $* PORT=$PORT pid=$$ in $(pwd -P)\"\necho err >&2");
        m_folder.writeScript("home/bin/hangs", "echo hangs; while :; do sleep 0.05; done");
        m_folder.write("shop/sub/file", "");
    }
    ~ShellLauncherTest() override {
        if (m_command)
            killMarked(m_command->pid(), m_folder.path());
        m_command.reset();
        settle();
    }

    [[nodiscard]] LaunchOrder order(const std::string &command) const {
        return {.command = command,
                .folder = m_folder.path("shop"),
                .log = m_folder.path("logs/shop.log"),
                .environment = std::map<std::string, std::string>{{"HOME", m_folder.path("home")},
                                                                  {"PATH", "/usr/bin:/bin"},
                                                                  {"PWD", "/wrong"},
                                                                  {"PS1", "prompt"},
                                                                  {"SHLVL", "7"}}};
    }
    void launch(const LaunchOrder &order) {
        const auto launched = m_launcher.launch(order, [this] { ++m_failures; });
        ASSERT_TRUE(launched) << launched.error();
        m_command = *launched;
    }
    /// Runs the command to its end and returns the log.
    std::string logOf(const std::string &command) {
        launch(order(command));
        EXPECT_TRUE(m_command && waitFor([&] { return isGone(m_command->pid()); }, 30s));
        settle();
        return log();
    }
    [[nodiscard]] std::string log() const { return readFile(m_folder.path("logs/shop.log")); }
    static bool isGone(Pid pid) { return !std::filesystem::exists("/proc/" + std::to_string(pid)); }

    /// The end of the path under which the system knows a folder of the test's.
    [[nodiscard]] std::string real(const std::string &name) const {
        return std::filesystem::canonical(m_folder.path(name)).string();
    }

    TemporaryFolder m_folder;
    ShellLauncher m_launcher{
        {.logsFolder = "/unused", .shells = {GetParam()}, .bus = QDBusConnection(QStringLiteral("none"))}};
    std::shared_ptr<LaunchedCommand> m_command;
    int m_failures = 0;
};

TEST_P(ShellLauncherTest, theCommandReplacesTheShellThatReadTheUsersFiles) {
    const std::string text = logOf("greet 'a b' c");
    EXPECT_EQ(text, "from the rc file\nout a b c PORT= pid=" + std::to_string(m_command->pid()) + " in " +
                        real("shop") + "\nerr\n");
    EXPECT_EQ(m_failures, 0);
    EXPECT_FALSE(m_command->isRunning());
}

TEST_P(ShellLauncherTest, variablesForTheCommandAloneReachIt) {
    const std::string text = logOf("PORT='3 0' greet");
    EXPECT_EQ(text, "from the rc file\nout  PORT=3 0 pid=" + std::to_string(m_command->pid()) + " in " +
                        real("shop") + "\nerr\n");
}

TEST_P(ShellLauncherTest, severalCommandsRunInTurn) {
    const std::string text = logOf("cd sub && greet; echo last");
    EXPECT_THAT(text, HasSubstr(" in " + real("shop/sub") + "\nerr\nlast\n"));
    EXPECT_EQ(m_failures, 0);
}

TEST_P(ShellLauncherTest, anUnknownCommandFailsInTheShellsWords) {
    const std::string text = logOf("no-such-program --flag");
    EXPECT_EQ(m_failures, 1);
    EXPECT_THAT(text, testing::StartsWith("from the rc file\n"));
    EXPECT_THAT(text, HasSubstr("no-such-program"));
    EXPECT_THAT(lowercased(text), testing::ContainsRegex("not found|unknown command"));
    EXPECT_THAT(text, Not(HasSubstr("job control")));
}

TEST_P(ShellLauncherTest, aMissingQuoteFailsInTheShellsWords) {
    const std::string text = logOf("echo 'open");
    EXPECT_EQ(m_failures, 1);
    EXPECT_THAT(lowercased(text), testing::ContainsRegex("unmatched|unterminated|unexpected e|not balanced"));
}

TEST_P(ShellLauncherTest, everyFailureAtAnyTimeIsTold) {
    logOf("sh -c 'exit 1'");
    EXPECT_EQ(m_failures, 1);
    logOf("sh -c 'exit 143'");
    EXPECT_EQ(m_failures, 2) << "its own status, whatever it looks like";
    logOf("cd sub && sh -c 'exit 2'");
    EXPECT_EQ(m_failures, 3);
    logOf("true && true");
    EXPECT_EQ(m_failures, 3);
}

TEST_P(ShellLauncherTest, anEndBySignalIsNoFailure) {
    for (const char *command : {"hangs", "cd sub && hangs", "cd sub; hangs", "sh -c 'kill -SEGV $$'"}) {
        launch(order(command));
        const bool isServer = std::string_view(command).ends_with("hangs");
        ASSERT_TRUE(waitFor([&] { return !isServer || log().ends_with("hangs\n"); })) << command;
        if (isServer)
            kill(-m_command->pid(), SIGTERM);
        ASSERT_TRUE(waitFor([&] { return isGone(m_command->pid()); })) << command;
        settle();
        EXPECT_EQ(m_failures, 0) << command;
        kill(-m_command->pid(), SIGKILL);
    }
}

TEST_P(ShellLauncherTest, nothingIsToldOnceTheCommandIsLetGo) {
    launch(order("sh -c 'while [ ! -e go ]; do sleep 0.02; done; exit 1'"));
    const Pid pid = m_command->pid();
    EXPECT_TRUE(m_command->isRunning());
    m_command.reset();
    EXPECT_TRUE(isAlive(pid));
    m_folder.write("shop/go", "");
    EXPECT_TRUE(waitFor([&] { return isGone(pid); })) << "it is reaped all the same";
    settle();
    EXPECT_EQ(m_failures, 0);
}

TEST_P(ShellLauncherTest, theCommandHasNoInputAndOnlyTheLog) {
    const std::string text = logOf("sh -c 'readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2; "
                                   "[ -e /proc/$$/fd/9 ] && echo leak; cat; cut -d\" \" -f6 /proc/$$/stat'");
    const std::string path = std::filesystem::canonical(m_folder.path("logs/shop.log")).string();
    EXPECT_EQ(text, "from the rc file\n/dev/null\n" + path + "\n" + path + "\n" +
                        std::to_string(m_command->pid()) + "\n");
}

TEST_P(ShellLauncherTest, theGivenEnvironmentLacksWhatShellsSet) {
    const std::string text = logOf("env");
    EXPECT_THAT(text, HasSubstr("HOME=" + m_folder.path("home") + "\n"));
    for (const char *stale : {"PWD=/wrong", "PS1=prompt", "SHLVL=7", "SHLVL=8"})
        EXPECT_THAT(text, Not(HasSubstr(stale)));
}

TEST_P(ShellLauncherTest, aSecondLaunchEmptiesTheLogOfTheFirst) {
    launch(order("sh -c 'echo first; while [ ! -e go ]; do sleep 0.02; done; echo still'"));
    const auto first = m_command;
    ASSERT_TRUE(waitFor([&] { return log().ends_with("first\n"); }));
    EXPECT_EQ(logOf("sh -c 'echo second'"), "from the rc file\nsecond\n");
    m_folder.write("shop/go", "");
    EXPECT_TRUE(waitFor([&] { return !first->isRunning(); }));
    EXPECT_EQ(log(), "from the rc file\nsecond\nstill\n");
}

TEST_P(ShellLauncherTest, binaryOutputIsKeptAsItIs) {
    EXPECT_EQ(logOf("printf 'a\\000\\377\\n'"), std::string("from the rc file\na\0\xFF\n", 21));
}

INSTANTIATE_TEST_SUITE_P(Shells, ShellLauncherTest,
                         testing::Values("/bin/bash", "/bin/dash", "/bin/sh", "/usr/bin/zsh",
                                         "/usr/bin/fish"),
                         [](const auto &chosen) { return std::string(lastPathComponent(chosen.param)); });

TEST(ShellLauncherFailureTest, whatCantStartIsToldInWords) {
    const TemporaryFolder folder;
    folder.write("file", "");
    ShellLauncher launcher(
        {.logsFolder = folder.path("logs"), .shells = {}, .bus = QDBusConnection(QStringLiteral("none"))});
    EXPECT_EQ(launcher.logsFolder(), folder.path("logs"));
    struct Row {
        LaunchOrder order;
        std::string error;
        const char *reason;
    };
    const std::string log = folder.path("logs/a.log");
    const Row rows[]{
        {{"true", folder.path("gone"), log},
         folder.path("gone") + ": No such file or directory",
         "no folder"},
        {{"true", folder.path("file"), log},
         folder.path("file") + ": Not a directory",
         "a file for a folder"},
        {{"true", "", log}, ": No such file or directory", "no name of a folder"},
        {{"true", folder.path(), folder.path("file/a.log")},
         folder.path("file/a.log") + ": Not a directory",
         "no place for the log"},
        {{std::string("a\0b", 3), folder.path(), log},
         "Invalid argument",
         "a zero byte would cut the command"},
        {{std::string(8u << 20, 'x'), folder.path(), log},
         "Argument list too long",
         "too long for the system"},
    };
    for (const Row &row : rows) {
        const auto launched = launcher.launch(row.order, [] { FAIL(); });
        ASSERT_FALSE(launched) << row.reason;
        EXPECT_EQ(launched.error(), row.error) << row.reason;
    }
    EXPECT_TRUE(std::filesystem::exists(log)) << "the log stays behind";
    settle();
}

TEST(ShellLauncherFailureTest, logsLieInTheStateFolder) {
    const char *before = std::getenv("XDG_STATE_HOME");
    const std::string saved = before != nullptr ? before : "";
    setenv("XDG_STATE_HOME", "/var/state", 1);
    EXPECT_EQ(ShellLauncher::standardSetup().logsFolder, "/var/state/tarnvale/logs");
    setenv("XDG_STATE_HOME", "relative", 1);
    EXPECT_EQ(ShellLauncher::standardSetup().logsFolder, homeFolder() + "/.local/state/tarnvale/logs");
    unsetenv("XDG_STATE_HOME");
    EXPECT_EQ(ShellLauncher::standardSetup().logsFolder, homeFolder() + "/.local/state/tarnvale/logs");
    if (before != nullptr)
        setenv("XDG_STATE_HOME", saved.c_str(), 1);
}

} // namespace
} // namespace tarnvale
