#include "platform/shellLine.h"

#include "platform/loginShell.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

TEST(ShellLineTest, aPlainCommandReplacesTheShell) {
    struct Row {
        const char *command;
        const char *text;
        const char *reason;
    };
    const Row rows[]{
        {"npm run dev", "exec npm run dev", "the plain case"},
        {"  npm run dev ", "exec npm run dev ", "blanks before it"},
        {"echo 'a; b' \"c && d\" e\\;f", "exec echo 'a; b' \"c && d\" e\\;f", "quoted separators are text"},
        {"echo \"a\\\"; b\"", "exec echo \"a\\\"; b\"", "an escaped quote doesn't end the text"},
        {"node a.js >all 2>&1", "exec node a.js >all 2>&1", "a redirection is no background"},
        {"node a.js &>all", "exec node a.js &>all", "nor is this one"},
        {"PORT=3000 npm start", "PORT=3000 exec npm start", "a variable for the command alone"},
        {"A=1  B='x y' C+=z D=\"\\\"\" npm start", "A=1  B='x y' C+=z D=\"\\\"\" exec npm start", "several"},
        {"a-b=c d", "exec a-b=c d", "no name of a variable, so the program's"},
        {"1A=c d", "exec 1A=c d", "no name either"},
        {"=c d", "exec =c d", "no name at all"},
        {"\"A=1\" d", "exec \"A=1\" d", "quoted it is a word"},
        {"echo 'open", "exec echo 'open", "the shell says what is wrong"},
        {"echo \\", "exec echo \\", "nothing escaped"},
        {"timeout 5 a", "exec timeout 5 a", "begins like a word of the shell's own"},
        {"./time", "exec ./time", "a path is a program"},
    };
    for (const Row &row : rows)
        for (const ShellKind kind : {ShellKind::posix, ShellKind::zsh})
            EXPECT_EQ(shellLine(row.command, kind), (ShellLine{row.text, true})) << row.reason;
}

TEST(ShellLineTest, whatOnlyAShellCanRunStays) {
    struct Row {
        const char *command;
        const char *reason;
    };
    const Row rows[]{
        {"cd web && npm start", "two commands"},
        {"a || b", "two commands"},
        {"a; b", "two commands"},
        {"a | b", "a pipeline"},
        {"a &", "in the background"},
        {"a\nb", "two lines"},
        {"(cd web; npm start)", "a group"},
        {"node $(cat port)", "one inside another"},
        {"node `cat port`", "one inside another"},
        {"time npm test", "a word of the shell's"},
        {"exec npm start", "it already says so"},
        {"source env", "read by the shell itself"},
        {". env", "the same"},
        {"A=1 eval $X", "behind a variable too"},
        {"A=1", "no command at all"},
        {"", "nothing"},
        {"  ", "nothing"},
    };
    for (const Row &row : rows)
        for (const ShellKind kind : {ShellKind::posix, ShellKind::zsh, ShellKind::fish})
            EXPECT_EQ(shellLine(row.command, kind), (ShellLine{row.command, false})) << row.reason;
}

TEST(ShellLineTest, fishSetsVariablesThroughEnv) {
    EXPECT_EQ(shellLine("A=1 B=2 npm start", ShellKind::fish),
              (ShellLine{"exec env A=1 B=2 npm start", true}));
    EXPECT_EQ(shellLine("npm start", ShellKind::fish), (ShellLine{"exec npm start", true}));
}

TEST(ShellLineTest, everyKindIsTalkedToInItsWay) {
    const ShellLine line{"exec a", true};
    EXPECT_THAT(shellArguments(line, ShellKind::posix, "bash"),
                ElementsAre("-ilc", "exec 2>&9 9>&-\nexec a"));
    EXPECT_THAT(shellArguments(line, ShellKind::zsh, "zsh"),
                ElementsAre("-ilc", "exec 2>&9 9>&-; eval \"$1\"", "zsh", "exec a"));
    EXPECT_THAT(shellArguments(line, ShellKind::fish, "fish"),
                ElementsAre("-ilc", "eval $argv[1]", "exec a"));
    EXPECT_EQ(logDescriptor(ShellKind::posix), 9);
    EXPECT_EQ(logDescriptor(ShellKind::zsh), 9);
    EXPECT_EQ(logDescriptor(ShellKind::fish), 2);
}

TEST(LoginShellTest, aShellIsKnownByItsName) {
    struct Row {
        const char *path;
        std::optional<ShellKind> kind;
    };
    const Row rows[]{
        {"/bin/bash", ShellKind::posix},
        {"/opt/homebrew/bin/bash", ShellKind::posix},
        {"/bin/sh", ShellKind::posix},
        {"/usr/bin/ksh93", ShellKind::posix},
        {"/usr/bin/zsh-5.9", ShellKind::zsh},
        {"/bin/zsh", ShellKind::zsh},
        {"/usr/bin/fish", ShellKind::fish},
        {"/bin/tcsh", std::nullopt},
        {"/usr/sbin/nologin", std::nullopt},
        {"/bin/false", std::nullopt},
        {"/usr/bin/nu", std::nullopt},
        {"/usr/bin/bashful", std::nullopt},
        {"/usr/bin/git-shell", std::nullopt},
        {"/usr/bin/fishbone", std::nullopt},
        {"", std::nullopt},
        {"/", std::nullopt},
    };
    for (const Row &row : rows)
        EXPECT_EQ(shellKind(row.path), row.kind) << row.path;
}

TEST(LoginShellTest, theFirstThatCanRunIsTaken) {
    const TemporaryFolder folder;
    const std::string zsh = folder.writeScript("zsh", "true");
    const std::string fish = folder.writeScript("fish", "true");
    const std::string unknown = folder.writeScript("tcsh", "true");
    const std::string plainFile = folder.write("bash", "");
    EXPECT_EQ(loginShell({zsh, fish}), (LoginShell{zsh, ShellKind::zsh}));
    EXPECT_EQ(loginShell({unknown, plainFile, folder.path("ksh"), "fish", "", fish}),
              (LoginShell{fish, ShellKind::fish}))
        << "unknown, not executable, missing, relative and empty ones are passed over";
    const LoginShell last{"/bin/sh", ShellKind::posix};
    EXPECT_EQ(loginShell({}), last);
    EXPECT_EQ(loginShell({"relative/bash", "bash", unknown}), last);
}

TEST(LoginShellTest, theEnvironmentComesBeforeThePasswordDatabase) {
    const char *before = std::getenv("SHELL");
    const std::string saved = before != nullptr ? before : "";
    setenv("SHELL", "/opt/my/fish", 1);
    const auto shells = userShells();
    unsetenv("SHELL");
    const auto others = userShells();
    if (before != nullptr)
        setenv("SHELL", saved.c_str(), 1);
    ASSERT_FALSE(shells.empty());
    EXPECT_EQ(shells.front(), "/opt/my/fish");
    EXPECT_EQ(others, std::vector<std::string>(shells.begin() + 1, shells.end()));
}

} // namespace
} // namespace tarnvale
