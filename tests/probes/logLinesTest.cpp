#include "probes/logLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;

TEST(LogLinesTest, emptyLinesAreKept) {
    EXPECT_THAT(logLines(""), ElementsAre(""));
    EXPECT_THAT(logLines("a"), ElementsAre("a"));
    EXPECT_THAT(logLines("a\n"), ElementsAre("a", ""));
    EXPECT_THAT(logLines("\n\na"), ElementsAre("", "", "a"));
}

TEST(LogLinesTest, theLastFourHundredAreShown) {
    std::string text;
    for (int i = 0; i < 400; ++i)
        text += std::to_string(i) + "\n";
    const auto lines = logLines(text);
    ASSERT_EQ(lines.size(), 400u);
    EXPECT_EQ(lines.front(), "1") << "the empty line at the end counts";
    EXPECT_EQ(lines.back(), "");
    text.pop_back();
    EXPECT_EQ(logLines(text).size(), 400u);
    EXPECT_EQ(logLines(text).front(), "0");
}

TEST(LogLinesTest, sequencesGo) {
    for (const auto &[text, shown] : std::vector<std::pair<std::string, std::string>>{
             {"\x1B[31mError\x1B[0m", "Error"},
             {"\x1B[?25lx", "x"},
             {"\x1B[mx", "x"},
             {"\x1B[1;31;40mx\x1B[K", "x"},
             {"a\x1B[2Jb", "ab"},
             {"\x1B[3\x1B[1mx", "\x1B[3x"},
             {"\x1B[\x1B[1mx", "\x1B[x"},
             {"\x1B\x1B[1mx", "\x1Bx"},
         })
        EXPECT_THAT(logLines(text), ElementsAre(shown));
}

TEST(LogLinesTest, whatIsNoSuchSequenceStays) {
    for (const std::string text : {"\x1B]0;title\x07x", "\x1B[", "\x1B[31", "\x1B", "[31m", "\x1B(B",
                                   "\x1B[31 m", "\x1B[31é", "\x1B[>1c"})
        EXPECT_THAT(logLines(text), ElementsAre(text));
}

TEST(LogLinesTest, aSequenceMayNotSpanLines) {
    EXPECT_THAT(logLines("\x1B[3\n1mx"), ElementsAre("\x1B[3", "1mx"));
}

TEST(LogLinesTest, removingOneDoesNotMakeAnother) {
    EXPECT_THAT(logLines("\x1B\x1B[0m[31mx"), ElementsAre("\x1B[31mx"));
}

TEST(LogLineKindTest, wordsTellTheKind) {
    for (const auto &[line, kind] : std::vector<std::pair<const char *, LogLineKind>>{
             {"GET / 200", LogLineKind::plain},
             {"", LogLineKind::plain},
             {"Error: x", LogLineKind::error},
             {"0 errors", LogLineKind::error},
             {"UnhandledException", LogLineKind::error},
             {"FATAL", LogLineKind::error},
             {"Warning: y", LogLineKind::warning},
             {"[warn] y", LogLineKind::warning},
             {"warning: an error", LogLineKind::error},
             {"terror", LogLineKind::error},
             {"war n", LogLineKind::plain},
         })
        EXPECT_EQ(logLineKind(line), kind) << line;
}

TEST(LogLineKindTest, theCleanedLineIsAsked) {
    EXPECT_EQ(logLineKind(logLines("\x1B[31mError\x1B[0m").front()), LogLineKind::error);
    EXPECT_EQ(logLineKind("Er\x1B[0mror"), LogLineKind::plain);
    EXPECT_EQ(logLineKind(logLines("Er\x1B[0mror").front()), LogLineKind::error);
}

} // namespace
} // namespace tarnvale
