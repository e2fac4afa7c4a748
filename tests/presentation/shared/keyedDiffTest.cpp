#include "presentation/shared/keyedDiff.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <set>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = ListStep::Kind;
using Keys = std::vector<QString>;

Keys keys(const std::string &letters) {
    Keys result;
    for (const char letter : letters)
        result.emplace_back(QLatin1Char(letter));
    return result;
}

/// Does to `list` what the steps say.
Keys played(Keys list, const Keys &after, const std::vector<ListStep> &steps) {
    for (const ListStep &step : steps) {
        const auto row = list.begin() + step.row;
        if (step.kind == Kind::insert) {
            const auto source = after.begin() + step.row;
            list.insert(row, source, source + step.count);
            continue;
        }
        const QString key = *row;
        list.erase(row, row + step.count);
        if (step.kind == Kind::move)
            list.insert(list.begin() + step.target, key);
    }
    return list;
}

TEST(KeyedDiff, equalListsNeedNothing) {
    EXPECT_THAT(keyedDiff({}, {}), IsEmpty());
    EXPECT_THAT(keyedDiff(keys("abc"), keys("abc")), IsEmpty());
}

TEST(KeyedDiff, oneChangeIsOneStep) {
    EXPECT_THAT(keyedDiff(keys("ac"), keys("abc")), ElementsAre(ListStep{.kind = Kind::insert, .row = 1}));
    EXPECT_THAT(keyedDiff(keys("abc"), keys("ac")), ElementsAre(ListStep{.kind = Kind::remove, .row = 1}));
    EXPECT_THAT(keyedDiff(keys("abc"), keys("cab")),
                ElementsAre(ListStep{.kind = Kind::move, .row = 2, .target = 0}));
}

TEST(KeyedDiff, whatGoesGoesFromTheEndOn) {
    EXPECT_THAT(keyedDiff(keys("abc"), keys("b")), ElementsAre(ListStep{.kind = Kind::remove, .row = 2},
                                                               ListStep{.kind = Kind::remove, .row = 0}));
}

TEST(KeyedDiff, neighboursGoAndComeInTogether) {
    EXPECT_THAT(keyedDiff(keys("abc"), {}),
                ElementsAre(ListStep{.kind = Kind::remove, .row = 0, .count = 3}));
    EXPECT_THAT(keyedDiff(keys("axyb"), keys("ab")),
                ElementsAre(ListStep{.kind = Kind::remove, .row = 1, .count = 2}));
    EXPECT_THAT(keyedDiff({}, keys("abc")),
                ElementsAre(ListStep{.kind = Kind::insert, .row = 0, .count = 3}));
    EXPECT_THAT(keyedDiff(keys("ab"), keys("vaxybz")),
                ElementsAre(ListStep{.kind = Kind::insert, .row = 0},
                            ListStep{.kind = Kind::insert, .row = 2, .count = 2},
                            ListStep{.kind = Kind::insert, .row = 5}));
}

TEST(KeyedDiff, aMoveCountsWhatStillWaits) {
    EXPECT_THAT(keyedDiff(keys("abcd"), keys("dacb")),
                ElementsAre(ListStep{.kind = Kind::move, .row = 3, .target = 0},
                            ListStep{.kind = Kind::move, .row = 3, .target = 2}));
}

TEST(KeyedDiff, ofTwoEqualKeysTheSecondIsAnother) {
    EXPECT_THAT(keyedDiff(keys("a"), keys("aa")), ElementsAre(ListStep{.kind = Kind::insert, .row = 1}));
    EXPECT_THAT(keyedDiff(keys("aa"), keys("a")), ElementsAre(ListStep{.kind = Kind::remove, .row = 1}));
}

TEST(KeyedDiff, everyTableLeadsToItsEnd) {
    const std::vector<std::string> lists{"",    "a",   "ab",   "ba",  "abc", "cab",
                                         "cba", "bcd", "dcba", "aab", "aba", "xyz"};
    for (const std::string &before : lists)
        for (const std::string &after : lists)
            EXPECT_EQ(played(keys(before), keys(after), keyedDiff(keys(before), keys(after))), keys(after))
                << before << " to " << after;
}

/// Some of the keys 0 to 29, each once, in any order.
Keys randomKeys(std::mt19937 &random) {
    Keys all;
    for (int number = 0; number < 30; ++number)
        if (random() % 2 == 0)
            all.push_back(QString::number(number));
    std::ranges::shuffle(all, random);
    return all;
}

TEST(KeyedDiff, randomListsLeadToTheirEnd) {
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same lists each time
    for (int round = 0; round < 2000; ++round) {
        const Keys before = randomKeys(random);
        const Keys after = randomKeys(random);
        const auto steps = keyedDiff(before, after);
        ASSERT_EQ(played(before, after, steps), after) << round;
        const std::set<QString> old(before.begin(), before.end());
        for (const ListStep &step : steps)
            for (int row = step.row; step.kind == Kind::insert && row < step.row + step.count; ++row)
                ASSERT_FALSE(old.contains(after[static_cast<std::size_t>(row)]))
                    << "what stays is never made anew";
    }
}

} // namespace
} // namespace tarnvale
