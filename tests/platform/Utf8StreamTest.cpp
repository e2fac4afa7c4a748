#include "platform/Utf8Stream.h"

#include "discovery/text.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const std::vector<std::string> texts{
    "plain",
    "Grüße, 世界 😀!",
    "\xF0\x9F\x98",              // cut short
    "\xE0\x80\x80 \xED\xA0\x80", // overlong, surrogate
    "a\xFF\xC0\xC1z",            // bytes that nothing begins with
    "\x80\x80\x80\x80\x80",      // continuations of nothing
    "\xF4\x90\x80\x80\xF5 \xC3", // beyond the last character
    std::string("zero\0byte", 9),
    "",
};

TEST(Utf8StreamTest, aCutAnywhereChangesNothing) {
    for (const std::string &text : texts)
        for (std::size_t cut = 0; cut <= text.size(); ++cut) {
            Utf8Stream stream;
            std::string joined = stream.take(std::string_view(text).substr(0, cut));
            joined += stream.take(std::string_view(text).substr(cut));
            EXPECT_EQ(joined + stream.finish(), repairedUtf8(text)) << text << " at " << cut;
        }
}

TEST(Utf8StreamTest, singleBytesMakeTheSameText) {
    for (const std::string &text : texts) {
        Utf8Stream stream;
        std::string joined;
        for (const char byte : text) {
            const std::string piece = stream.take({&byte, 1});
            EXPECT_EQ(piece, repairedUtf8(piece)) << "every piece is valid by itself";
            joined += piece;
        }
        EXPECT_EQ(joined + stream.finish(), repairedUtf8(text)) << text;
    }
}

TEST(Utf8StreamTest, onlyWhatMayGoOnIsKept) {
    Utf8Stream stream;
    EXPECT_EQ(stream.take("caf\xC3"), "caf");
    EXPECT_EQ(stream.take(""), "");
    EXPECT_EQ(stream.take("\xA9"), "é");
    EXPECT_EQ(stream.take("\xF0\x9F\x98"), "");
    EXPECT_EQ(stream.finish(), "\uFFFD");
    EXPECT_EQ(stream.finish(), "");
    EXPECT_EQ(stream.take("again"), "again");
}

} // namespace
} // namespace tarnvale
