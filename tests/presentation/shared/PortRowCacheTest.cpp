// Rows that are kept: the same as rows that are worked out anew, whatever changes.

#include "presentation/shared/PortRowCache.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

const Instant start = Instant() + std::chrono::hours(1000);

class PortRowCacheTest : public testing::Test {
protected:
    PortRowCacheTest() {
        port.cwd = "/home/me/shop";
        port.startedAt = start;
        port.hostApp = "/usr/share/applications/editor.desktop";
    }

    /// Whether the cache says what is right, and whether it had to ask for the application's name to say so.
    bool worksOut(Instant now, PortGroup group = PortGroup::web) {
        int asked = 0;
        const RowEntry entry{port, otherPorts};
        const ApplicationName name = [&asked](const std::string &) {
            ++asked;
            return std::string("Editor");
        };
        const PortRow row = cache.row(entry, group, facts, now, name);
        const bool hasAsked = asked > 0;
        EXPECT_EQ(row, portRow(entry, group, facts, now, name));
        return hasAsked;
    }

    PortRowCache cache;
    ListeningPort port{.pid = 42, .command = "node", .port = 3000};
    std::vector<std::int64_t> otherPorts;
    PortFacts facts;
};

TEST_F(PortRowCacheTest, whatIsTheSameIsWorkedOutOnce) {
    EXPECT_TRUE(worksOut(start + 1h));
    EXPECT_FALSE(worksOut(start + 1h + 10s)) << "the age is still 1h 0m";
}

TEST_F(PortRowCacheTest, whateverTheRowSaysChangesIt) {
    EXPECT_TRUE(worksOut(start + 1h));
    EXPECT_TRUE(worksOut(start + 1h + 1min)) << "the age";
    facts.isWatched = true;
    EXPECT_TRUE(worksOut(start + 1h + 1min)) << "a fact";
    otherPorts = {3001};
    EXPECT_TRUE(worksOut(start + 1h + 1min)) << "a further port";
    port.isExposed = true;
    EXPECT_TRUE(worksOut(start + 1h + 1min)) << "the record";
    EXPECT_TRUE(worksOut(start + 1h + 1min, PortGroup::other)) << "the section";
    EXPECT_FALSE(worksOut(start + 1h + 1min)) << "a row in two sections is kept twice";
}

TEST_F(PortRowCacheTest, whatIsNotAskedForIsForgotten) {
    EXPECT_TRUE(worksOut(start + 1h));
    cache.age(start + 1h);
    EXPECT_FALSE(worksOut(start + 1h)) << "it was used in the last round";
    for (const auto seconds : {1s, 20s, 59s})
        cache.age(start + 1h + seconds);
    EXPECT_FALSE(worksOut(start + 1h)) << "a round lasts a minute";
    for (const auto minutes : {1min, 2min, 3min})
        cache.age(start + 1h + minutes);
    EXPECT_TRUE(worksOut(start + 1h));
}

} // namespace
} // namespace tarnvale
