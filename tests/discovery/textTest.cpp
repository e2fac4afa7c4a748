#include "discovery/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace tarnvale {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

std::string encoded(char32_t point) {
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    if (point < 0x80)
        return {byte(point)};
    if (point < 0x800)
        return {byte(0xC0 | (point >> 6)), byte(0x80 | (point & 0x3F))};
    if (point < 0x10000)
        return {byte(0xE0 | (point >> 12)), byte(0x80 | ((point >> 6) & 0x3F)), byte(0x80 | (point & 0x3F))};
    return {byte(0xF0 | (point >> 18)), byte(0x80 | ((point >> 12) & 0x3F)),
            byte(0x80 | ((point >> 6) & 0x3F)), byte(0x80 | (point & 0x3F))};
}

/// The White_Space property of Unicode, written out.
constexpr std::array<char32_t, 25> whiteSpace{
    0x09,   0x0A,   0x0B,   0x0C,   0x0D,   0x20,   0x85,   0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003,
    0x2004, 0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000};

TEST(TextTest, onlyAsciiLettersAreLowercased) {
    EXPECT_EQ(lowercased("AZ[@`az 09-\xC3\x84"), "az[@`az 09-\xC3\x84");
}

TEST(TextTest, splitKeepsEmptyPieces) {
    EXPECT_THAT(split("", ','), ElementsAre(""));
    EXPECT_THAT(split(",a,,b,", ','), ElementsAre("", "a", "", "b", ""));
}

TEST(TextTest, emptyLinesAreDroppedAndCarriageReturnsStay) {
    EXPECT_THAT(nonEmptyLines(""), IsEmpty());
    EXPECT_THAT(nonEmptyLines("\n\na\r\n\n b\nlast"), ElementsAre("a\r", " b", "last"));
}

TEST(TextTest, everyUnicodeWhiteSpaceSeparatesWords) {
    for (const char32_t point : whiteSpace) {
        const std::string space = encoded(point);
        EXPECT_THAT(words(space + "a" + space + space + "b" + space), ElementsAre("a", "b"))
            << std::hex << static_cast<std::uint32_t>(point);
        EXPECT_EQ(leadingWhitespace(space + "a"), space.size());
    }
}

TEST(TextTest, whatOnlyLooksLikeWhiteSpaceDoesNotSeparate) {
    for (const char32_t point :
         {0x00u, 0x08u, 0x0Eu, 0x1Cu, 0x1Fu, 0x84u, 0x86u, 0x180Eu, 0x200Bu, 0x2060u, 0xFEFFu}) {
        const std::string text = "a" + encoded(point) + "b";
        EXPECT_THAT(words(text), ElementsAre(text)) << std::hex << static_cast<std::uint32_t>(point);
    }
}

TEST(TextTest, illFormedBytesAreNoWhiteSpace) {
    // A lone continuation byte of U+0085 and of U+00A0, and U+0020 written too long.
    for (const std::string_view bytes : {"a\x85"
                                         "b"sv,
                                         "a\xA0"
                                         "b"sv,
                                         "a\xC0\xA0"
                                         "b"sv,
                                         "a\xC2"sv})
        EXPECT_THAT(words(bytes), ElementsAre(bytes));
}

TEST(TextTest, takeWordCutsOneWordOffTheFront) {
    std::string_view text = "  one\t two ";
    EXPECT_EQ(takeWord(text), "one");
    EXPECT_EQ(text, "\t two ");
    EXPECT_EQ(takeWord(text), "two");
    EXPECT_EQ(takeWord(text), "");
    EXPECT_EQ(text, "");
}

TEST(TextTest, atMostLimitWordsAreTaken) {
    EXPECT_THAT(words("a b c d", 3), ElementsAre("a", "b", "c"));
    EXPECT_THAT(words("a b", 0), IsEmpty());
}

TEST(TextTest, lastPathComponentIgnoresTrailingSlashes) {
    EXPECT_EQ(lastPathComponent("/Users/me/shop"), "shop");
    EXPECT_EQ(lastPathComponent("/Users/me/shop//"), "shop");
    EXPECT_EQ(lastPathComponent("node"), "node");
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lastPathComponent("///"), "/");
    EXPECT_EQ(lastPathComponent(""), "");
}

TEST(TextTest, parentPathEndsAtTheRoot) {
    EXPECT_EQ(parentPath("/Users/me/shop"), "/Users/me");
    EXPECT_EQ(parentPath("/Users//shop/"), "/Users");
    EXPECT_EQ(parentPath("/public"), "/");
    EXPECT_EQ(parentPath("/"), "/");
    EXPECT_EQ(parentPath("node"), "");
}

TEST(TextTest, illFormedUtf8IsRepairedPartByPart) {
    struct Row {
        std::string_view bytes;
        std::string_view repaired;
        std::string_view reason;
    };
    // The first four are the examples of the Unicode standard, chapter 3.9.
    constexpr std::array rows{
        Row{"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", "????????A", "sequences longer than needed"},
        Row{"\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41", "????????A", "surrogates"},
        Row{"\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42", "?????A??B",
            "beyond U+10FFFF, and bytes that never occur"},
        Row{"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", "????A", "sequences cut short, each one part"},
        Row{"\xF0\x9F\x98", "?", "cut by the end of the text"},
        Row{"\xC3", "?", "a lone lead byte"},
        Row{"\xC3\xC3\xA4", "?\xC3\xA4", "a lead byte before a whole sequence"},
        Row{"\xE2\x82\xAC\x80", "\xE2\x82\xAC?", "one continuation byte too many"},
        Row{"\xF5\x80", "??", "a lead byte beyond the last"},
        Row{"a\xFE\xFF", "a??", "a byte order mark of another encoding"},
    };
    for (const Row &row : rows) {
        std::string expected;
        for (const char c : row.repaired)
            expected += c == '?' ? "\xEF\xBF\xBD" : std::string(1, c);
        EXPECT_EQ(repairedUtf8(row.bytes), expected) << row.reason;
    }
}

TEST(TextTest, everyCharacterIsWellFormed) {
    for (char32_t point = 0; point <= 0x10FFFF; ++point) {
        if (point >= 0xD800 && point <= 0xDFFF)
            continue;
        const std::string text = encoded(point);
        ASSERT_EQ(repairedUtf8(text), text) << std::hex << static_cast<std::uint32_t>(point);
    }
}

TEST(TextTest, repairingTwiceChangesNothingMore) {
    // Every pair of bytes, within a text that a third byte could complete.
    for (int first = 0x80; first < 0x100; ++first) {
        for (int second = 0; second < 0x100; ++second) {
            const std::string text{'a', static_cast<char>(first), static_cast<char>(second), '\x80'};
            const std::string repaired = repairedUtf8(text);
            ASSERT_EQ(repairedUtf8(repaired), repaired) << first << " " << second;
            ASSERT_TRUE(repaired.starts_with('a'));
        }
    }
}

TEST(TextTest, aNulIsKept) {
    EXPECT_EQ(repairedUtf8("a\0\xC3\xA4"sv), "a\0\xC3\xA4"sv);
}

TEST(TextTest, controlsAndTextDirectionMarksAreNotPrintable) {
    struct Range {
        char32_t first;
        char32_t last;
        std::string_view reason;
    };
    constexpr std::array ranges{
        Range{0x00, 0x1F, "C0, escape, line feed and tab among them"},
        Range{0x7F, 0x9F, "delete and C1"},
        Range{0x061C, 0x061C, "Arabic letter mark"},
        Range{0x200E, 0x200F, "left-to-right and right-to-left marks"},
        Range{0x2028, 0x2029, "line and paragraph separators"},
        Range{0x202A, 0x202E, "embeddings and overrides"},
        Range{0x2066, 0x2069, "isolates"},
    };
    for (const Range &range : ranges)
        for (char32_t point = range.first; point <= range.last; ++point)
            EXPECT_EQ(printable("a" + encoded(point) + "b"), "a\xEF\xBF\xBD"
                                                             "b")
                << range.reason << ", " << std::hex << static_cast<std::uint32_t>(point);
}

TEST(TextTest, printableLeavesOrdinaryTextAlone) {
    const std::string text = "shop \xC2\xB7 M\xC3\xBCller \xE5\xBA\x97 \xF0\x9F\x9A\x80 ~";
    EXPECT_EQ(printable(text), text);
}

TEST(TextTest, printableRepairsAsWell) {
    EXPECT_EQ(printable("\x1B[31m\xFF"), "\xEF\xBF\xBD[31m\xEF\xBF\xBD");
}

TEST(TextTest, charactersAreCodePointsNotBytes) {
    EXPECT_EQ(characterCount(""), 0u);
    EXPECT_EQ(characterCount("M\xC3\xBCller"), 6u);
    EXPECT_EQ(characterCount("\xF0\x9F\x9A\x80\xE5\xBA\x97"), 2u);
}

TEST(TextTest, firstCharactersNeverCutsOneApart) {
    const std::string_view text = "a\xC3\xBC\xE5\xBA\x97\xF0\x9F\x9A\x80z";
    EXPECT_EQ(firstCharacters(text, 0), "");
    EXPECT_EQ(firstCharacters(text, 2), "a\xC3\xBC");
    EXPECT_EQ(firstCharacters(text, 3), "a\xC3\xBC\xE5\xBA\x97");
    EXPECT_EQ(firstCharacters(text, 4), "a\xC3\xBC\xE5\xBA\x97\xF0\x9F\x9A\x80");
    EXPECT_EQ(firstCharacters(text, 99), text);
}

TEST(TextTest, aWholeNumberMayCarryASign) {
    EXPECT_EQ(parseInteger<std::int64_t>("80"), 80);
    EXPECT_EQ(parseInteger<std::int64_t>("+80"), 80);
    EXPECT_EQ(parseInteger<std::int64_t>("-1"), -1);
    EXPECT_EQ(parseInteger<std::int64_t>("007"), 7);
    EXPECT_EQ(parseInteger<std::int64_t>("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(parseInteger<std::int32_t>("-2147483648"), std::numeric_limits<std::int32_t>::min());
}

TEST(TextTest, whatIsNoWholeNumberIsNone) {
    struct Row {
        std::string_view text;
        std::string_view reason;
    };
    constexpr std::array rows{
        Row{"", "empty"},
        Row{"+", "a sign alone"},
        Row{"-", "a sign alone"},
        Row{"+-1", "two signs"},
        Row{"-+1", "two signs"},
        Row{"++1", "two signs"},
        Row{" 1", "leading white space"},
        Row{"1 ", "trailing white space"},
        Row{"1\n", "a line feed"},
        Row{"0x10", "another base"},
        Row{"1e3", "an exponent"},
        Row{"1.0", "a fraction"},
        Row{"1,000", "a separator"},
        Row{"\xD9\xA1", "an Arabic digit"},
        Row{"2147483648", "beyond the type"},
        Row{"-2147483649", "beyond the type"},
        Row{"1\0"sv, "a NUL"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(parseInteger<std::int32_t>(row.text), std::nullopt) << row.reason;
}

TEST(TextTest, aNumberTooLargeForItsTypeIsNoNumber) {
    EXPECT_EQ(parseInteger<std::int64_t>("123456789012345678901234567890"), std::nullopt);
    EXPECT_EQ(parseInteger<std::uint16_t>("65536"), std::nullopt);
    EXPECT_EQ(parseInteger<std::uint16_t>("-1"), std::nullopt);
}

TEST(TextTest, decimalNumbersAreRead) {
    EXPECT_EQ(parseDouble("0.3"), 0.3);
    EXPECT_EQ(parseDouble("12"), 12);
    EXPECT_EQ(parseDouble("+1.5"), 1.5);
    EXPECT_EQ(parseDouble("-2.5"), -2.5);
}

TEST(TextTest, whatIsNoFiniteDecimalNumberIsNone) {
    for (const std::string_view text :
         {"", "+", ".", "1,5", "1.5.1", " 1", "1 ", "1%", "inf", "nan", "-inf", "+-1", "1e999"})
        EXPECT_EQ(parseDouble(text), std::nullopt) << text;
}

} // namespace
} // namespace tarnvale
