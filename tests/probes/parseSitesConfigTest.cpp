#include "probes/parseSitesConfig.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(ParseSitesConfigTest, twoKeysCount) {
    EXPECT_EQ(
        parseSitesConfig(R"({"paths": ["/a", "/b"], "tld": "test", "loopback": "127.0.0.1"})", TldKeys::tld),
        (SitesConfig{{"/a", "/b"}, "test"}));
    EXPECT_EQ(parseSitesConfig(R"({"paths": [], "tld": ""})", TldKeys::tld), (SitesConfig{{}, ""}));
}

TEST(ParseSitesConfigTest, olderFilesSayDomain) {
    const char *old = R"({"paths": ["/a"], "domain": "dev"})";
    EXPECT_EQ(parseSitesConfig(old, TldKeys::tldOrDomain), (SitesConfig{{"/a"}, "dev"}));
    EXPECT_FALSE(parseSitesConfig(old, TldKeys::tld));
    EXPECT_EQ(parseSitesConfig(R"({"paths": [], "domain": "dev", "tld": "test"})", TldKeys::tldOrDomain),
              (SitesConfig{{}, "test"}));
    EXPECT_FALSE(parseSitesConfig(R"({"paths": [], "domain": "dev", "tld": 1})", TldKeys::tldOrDomain));
}

TEST(ParseSitesConfigTest, everythingElseIsIgnoredWhole) {
    for (const auto &[json, reason] : std::vector<std::pair<std::string, const char *>>{
             {"", "empty"},
             {"{", "cut"},
             {R"({"paths": ["/a"], "tld": "test")", "cut before the end"},
             {R"({"paths": ["/a"]})", "no top-level domain"},
             {R"({"tld": "test"})", "no folders"},
             {R"({"paths": "/a", "tld": "test"})", "folders of another type"},
             {R"({"paths": ["/a", 1], "tld": "test"})", "a folder of another type"},
             {R"({"paths": {"0": "/a"}, "tld": "test"})", "folders as an object"},
             {R"({"paths": ["/a"], "tld": ["test"]})", "a domain of another type"},
             {R"({"paths": ["/a"], "tld": null})", "no domain"},
             {R"([{"paths": ["/a"], "tld": "test"}])", "a list"},
             {R"("text")", "a text"},
             {"{\"paths\": [\"\xFF\"], \"tld\": \"test\"}", "not UTF-8"},
             {std::string(100'000, '['), "very deep"},
         })
        EXPECT_FALSE(parseSitesConfig(json, TldKeys::tldOrDomain)) << reason;
}

} // namespace
} // namespace tarnvale
