#include "platform/linux/DesktopFile.h"

#include "discovery/linux/parseDesktopEntry.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

DesktopFile fileOf(const std::string &lines) {
    return DesktopFile::parse("[Desktop Entry]\n" + lines);
}

TEST(DesktopFileTest, valuesAreUnescaped) {
    struct Row {
        const char *line;
        const char *value;
        const char *reason;
    };
    const Row rows[]{
        {"Name=Files", "Files", "plain"},
        {"Name = Files ", "Files", "blanks around the sign and at the end"},
        {"Name=Files\r", "Files", "a carriage return"},
        {"Name=\\sA\\nB\\tC\\\\D", " A\nB\tC\\D", "escapes"},
        {"Name=A\\", "A\\", "a backslash at the end"},
        {"Name=A\\x", "Ax", "an escape that there isn't"},
        {"Name=A=B", "A=B", "a sign in the value"},
        {"Name=\xff", "\ufffd", "odd bytes"},
        {"Name=First\nName=Second", "First", "the key twice"},
        {"#Name=Files", "", "a comment"},
        {"Name", "", "no sign"},
        {"=Files", "", "no key"},
        {"name=Files", "", "another key"},
        {"Name[de]=Dateien", "", "only for a language"},
        {"[Other]\nName=Files", "", "another group"},
        {"[Other]\n[Desktop Entry]\nName=Files", "Files", "the group once more"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(fileOf(row.line).text("Name"), row.value) << row.reason;
    EXPECT_EQ(DesktopFile::parse("Name=Files\n").text("Name"), "") << "no group";
    EXPECT_EQ(DesktopFile::parse("").text("Name"), "");
}

TEST(DesktopFileTest, theNearestLanguageIsTaken) {
    const DesktopFile file = fileOf("Name=A\nName[sr]=B\nName[sr_YU]=C\nName[sr@Latn]=D\n"
                                    "Name[sr_YU@Latn]=E\nName[fr]=\n");
    struct Row {
        const char *locale;
        const char *name;
    };
    const Row rows[]{
        {"sr_YU.UTF-8@Latn", "E"},
        {"sr_YU.UTF-8", "C"},
        {"sr_RS@Latn", "D"},
        {"sr_RS.UTF-8", "B"},
        {"sr", "B"},
        {"de_DE.UTF-8", "A"},
        {"C", "A"},
        {"", "A"},
        {"@", "A"},
        {"fr_FR", "A"},
        {"s", "A"},
        {"_", "A"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(file.localized("Name", row.locale), row.name) << row.locale;
}

TEST(DesktopFileTest, onlyTheWordsThemselvesAreBooleans) {
    EXPECT_TRUE(fileOf("Hidden=true").isTrue("Hidden"));
    EXPECT_TRUE(fileOf("Hidden=false").isFalse("Hidden"));
    for (const char *line : {"Hidden=True", "Hidden=1", "Hidden=", "Other=true"}) {
        EXPECT_FALSE(fileOf(line).isTrue("Hidden")) << line;
        EXPECT_FALSE(fileOf(line).isFalse("Hidden")) << line;
    }
}

TEST(DesktopFileTest, anExecutableComesBackFromItsEntry) {
    for (const std::string path :
         {"/usr/bin/tarnvale", "/opt/my apps/tarnvale", "/opt/a\"b`c$d\\e/t", "/opt/50%/tarnvale",
          "/opt/it's/(t)#1;&|<>~*?", "/opt/\u00e4/t", "/opt/tab\there/t", "/opt/line\nfeed/t", " /odd/ "}) {
        const DesktopFile file =
            fileOf("Exec=" + execValue(path) + "\nTryExec=" + desktopFileText(path + "x") + "\n");
        const auto entry = parseDesktopEntry("[Desktop Entry]\nType=Application\nExec=" + file.text("Exec"));
        EXPECT_EQ(file.text("TryExec"), path + "x");
        if (path.find('\n') != path.npos)
            continue; // the first parse has made the line feed real
        ASSERT_TRUE(entry) << path;
        std::string expected = path;
        if (const std::size_t percent = expected.find('%'); percent != expected.npos)
            expected.insert(percent, "%"); // a field code that stands for "%"
        EXPECT_EQ(entry->program, expected);
    }
}

TEST(DesktopFileTest, quotingIsThatOfTheFormat) {
    EXPECT_EQ(execValue("/usr/bin/tarnvale"), "/usr/bin/tarnvale");
    EXPECT_EQ(execValue("/opt/my apps/t"), "\"/opt/my apps/t\"");
    EXPECT_EQ(execValue("/a$b"), "\"/a\\\\$b\"");
    EXPECT_EQ(execValue("/a\\b"), "\"/a\\\\\\\\b\"");
    EXPECT_EQ(execValue("/a%b"), "\"/a%%b\"");
}

} // namespace
} // namespace tarnvale
