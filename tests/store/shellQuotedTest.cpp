#include "store/shellQuoted.h"

#include "support/runProgram.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(ShellQuotedTest, onlyWhatNeedsItIsQuoted) {
    EXPECT_EQ(shellQuoted({"echo", "it's", ""}), "echo 'it'\\''s' ''");
    EXPECT_EQ(shellQuoted({"node", "server.js", "--port=3000", "a@b:c%d+e,f_g"}),
              "node server.js --port=3000 a@b:c%d+e,f_g");
    EXPECT_EQ(shellQuoted({"a b", "$HOME", "~", "*", "é"}), "'a b' '$HOME' '~' '*' 'é'");
    EXPECT_EQ(shellQuoted({}), "");
}

TEST(ShellQuotedTest, aShellGivesBackTheSameWords) {
    const std::vector<std::string> words{"a b",  "it's",  "'",       "''",      "\"x\"", "$HOME",
                                         "`id`", "\\",    "",        "\n\t ",   "a;b&",  "#not",
                                         "!x",   "{a,b}", "[a-z]*?", "\xff\x01"};
    std::string expected;
    for (const std::string &word : words)
        expected += "<" + word + ">";
    for (const char *shell : {"/bin/sh", "/bin/bash"}) {
        const ProgramRun run = runProgram({shell, "-c", "printf '<%s>' " + shellQuoted(words)});
        EXPECT_EQ(run.output, expected) << shell;
    }
}

} // namespace
} // namespace tarnvale
