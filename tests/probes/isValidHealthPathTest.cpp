#include "probes/isValidHealthPath.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnvale {
namespace {

TEST(IsValidHealthPathTest, aPathOfPrintableCharactersIsValid) {
    for (const char *path : {"/", "/health", "/a/b?x=1&y=%20#z", "//", "/!", "/~"})
        EXPECT_TRUE(isValidHealthPath(path)) << path;
}

TEST(IsValidHealthPathTest, twoHundredCharactersPass) {
    EXPECT_TRUE(isValidHealthPath("/" + std::string(199, 'a')));
    EXPECT_FALSE(isValidHealthPath("/" + std::string(200, 'a')));
}

TEST(IsValidHealthPathTest, everythingElseIsNot) {
    using namespace std::string_literals;
    for (const auto &[path, reason] : std::vector<std::pair<std::string, const char *>>{
             {"", "empty"},
             {"health", "no slash in front"},
             {" /health", "a blank in front"},
             {"/a b", "a blank"},
             {"/a\tb", "a tab"},
             {"/a\r\nHost: evil", "a header of its own"},
             {"/a\n", "a line feed"},
             {"/a\0b"s, "a NUL"},
             {"/a\x7F", "the delete character"},
             {"/\x1F", "a control character"},
             {"/é", "a letter beyond ASCII"},
             {"/\x80", "no text at all"},
         })
        EXPECT_FALSE(isValidHealthPath(path)) << reason;
}

} // namespace
} // namespace tarnvale
