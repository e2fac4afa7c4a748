#include "discovery/linux/parseDesktopEntry.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

std::string entry(const std::string &exec, const std::string &more = "") {
    return "[Desktop Entry]\nType=Application\nName=Editor\nExec=" + exec + "\n" + more;
}

TEST(ParseDesktopEntryTest, theProgramIsTheFirstWordOfExec) {
    struct Row {
        const char *exec;
        const char *program;
        const char *reason;
    };
    const Row rows[]{
        {"editor", "editor", "a bare name"},
        {"/usr/bin/editor %F", "/usr/bin/editor", "with a field code"},
        {"\"/opt/my editor/editor\" --new-window %F", "/opt/my editor/editor", "quoted"},
        {"/opt/\"my editor\"/editor", "/opt/my editor/editor", "quoted in part"},
        {"\"/opt/a\\\"b\" x", "/opt/a\"b", "an escaped quotation mark"},
        {"/opt/my\\ editor %u", "/opt/my editor", "an escaped blank"},
        {"\"/opt/open", "/opt/open", "the closing mark is missing"},
        {"editor\\", "editor\\", "a backslash at the end"},
        {"env editor %F", "editor", "behind env"},
        {"/usr/bin/env GTK_THEME=dark LANG=C /usr/bin/editor", "/usr/bin/editor",
         "behind env and its settings"},
        {"env \"A=b c\" editor", "editor", "a quoted setting"},
        {"  editor  %F", "editor", "blanks around"},
    };
    for (const Row &row : rows) {
        const auto parsed = parseDesktopEntry(entry(row.exec));
        ASSERT_TRUE(parsed) << row.reason;
        EXPECT_EQ(parsed->program, row.program) << row.reason;
    }
}

TEST(ParseDesktopEntryTest, whatStartsNoApplicationIsNothing) {
    struct Row {
        std::string content;
        const char *reason;
    };
    const Row rows[]{
        {"", "empty"},
        {"[Desktop Entry]\nName=Editor\nExec=editor\n", "no type"},
        {"[Desktop Entry]\nType=Link\nURL=x\nExec=editor\n", "a link"},
        {"[Desktop Entry]\nType=Application\nName=Editor\n", "no Exec"},
        {entry(""), "an empty Exec"},
        {entry("env"), "env alone"},
        {entry("env A=1"), "env with settings alone"},
        {"Type=Application\nExec=editor\n", "no group"},
        {"[Other]\nType=Application\nExec=editor\n", "another group"},
        {"[Desktop Entry]x\nType=Application\nExec=editor\n", "junk behind the group"},
        {"#[Desktop Entry]\nType=Application\nExec=editor\n", "the group is a comment"},
        {"\xFF\xFE[\0=\n=\n==\n", "no text at all"},
    };
    for (const Row &row : rows)
        EXPECT_FALSE(parseDesktopEntry(row.content)) << row.reason;
}

TEST(ParseDesktopEntryTest, onlyTheMainGroupCounts) {
    const auto parsed =
        parseDesktopEntry("[Desktop Entry]\nType=Application\nExec=editor\n"
                          "[Desktop Action new]\nExec=other --new\nHidden=true\nNoDisplay=true\n");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(*parsed, (DesktopEntry{.program = "editor"}));
}

TEST(ParseDesktopEntryTest, hiddenEntriesSaySo) {
    EXPECT_TRUE(parseDesktopEntry(entry("editor", "Hidden=true\n"))->isHidden);
    EXPECT_FALSE(parseDesktopEntry(entry("editor", "Hidden=false\n"))->isHidden);
    EXPECT_FALSE(parseDesktopEntry(entry("editor", "NoDisplay=true\n"))->isShown);
    EXPECT_TRUE(parseDesktopEntry(entry("editor", "NoDisplay=false\n"))->isShown);
    EXPECT_TRUE(parseDesktopEntry(entry("editor", "X-NoDisplay=true\nHidden[de]=true\n"))->isShown);
}

TEST(ParseDesktopEntryTest, spacesAroundTheSignAndCarriageReturnsDoNotCount) {
    const auto parsed =
        parseDesktopEntry("[Desktop Entry]\r\nType = Application\r\nExec  =  /usr/bin/editor\r\n"
                          "NoDisplay =true\r\n");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(*parsed, (DesktopEntry{.program = "/usr/bin/editor", .isHidden = false, .isShown = false}));
}

TEST(ParseDesktopEntryTest, theLastLineNeedsNoLineFeed) {
    const auto parsed = parseDesktopEntry("[Desktop Entry]\nType=Application\nExec=editor");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->program, "editor");
}

} // namespace
} // namespace tarnvale
