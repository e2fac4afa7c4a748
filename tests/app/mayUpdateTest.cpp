#include "app/BundleInformation.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(MayUpdate, needsAnHttpsAddressAndAKey) {
    struct Row {
        const char *feed;
        const char *key;
        bool may;
        const char *reason;
    };
    const std::vector<Row> rows{
        {"https://updates.example/feed.xml", "abc=", true, "both"},
        {" \thttps://updates.example/feed.xml\t ", "\t abc= ", true, "blanks at the ends"},
        {"https://updates.example:8443/feed.xml?channel=beta", "abc=", true, "any https address"},
        {"", "", false, "nothing was configured"},
        {"https://updates.example/feed.xml", "", false, "no key"},
        {"https://updates.example/feed.xml", " \t ", false, "a key of blanks"},
        {"", "abc=", false, "no address"},
        {"  ", "abc=", false, "an address of blanks"},
        {"http://updates.example/feed.xml", "abc=", false, "not safe from others on the way"},
        {"HTTPS://updates.example/feed.xml", "abc=", false, "not exactly that scheme"},
        {"httpss://updates.example/feed.xml", "abc=", false, "another scheme"},
        {"ftp://updates.example/feed.xml", "abc=", false, "another scheme"},
        {"file:///etc/feed.xml", "abc=", false, "a file"},
        {"updates.example/feed.xml", "abc=", false, "no scheme"},
        {"//updates.example/feed.xml", "abc=", false, "no scheme, but a host"},
        {"https://updates.example:port/feed.xml", "abc=", false, "no address: a port that is no number"},
        {"https://[updates.example/feed.xml", "abc=", false, "no address: a bracket that stays open"},
        {"https://updates.example/feed.xml\n", "abc=", false, "a line feed is no blank"},
        {"https://updates .example/feed.xml", "abc=", false, "a blank inside"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(mayUpdate({.version = "1", .build = "1", .feedUrl = row.feed, .publicKey = row.key}),
                  row.may)
            << row.reason;
}

TEST(MayUpdate, thisBuildSaysWhatItWasConfiguredWith) {
    EXPECT_FALSE(bundleInformation().version.empty());
    EXPECT_EQ(&bundleInformation(), &bundleInformation());
}

} // namespace
} // namespace tarnvale
