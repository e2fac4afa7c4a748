#include "commands/automation/matchesTerms.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

const ListeningPort shop{.pid = 42, .command = "node", .port = 3000, .cwd = "/home/me/Ünder-Shop"};

TEST(MatchesTerms, aTermIsFoundInNumberLabelOrCommand) {
    struct Row {
        QStringList terms;
        bool isFound;
        std::string reason;
    };
    const std::vector<Row> rows{
        {{"3000"}, true, "the number"},
        {{"30"}, true, "the front of the number"},
        {{"000"}, false, "not its end"},
        {{"30000"}, false, "not more than it"},
        {{"shop"}, true, "the label, whatever its case"},
        {{"ÜNDER"}, true, "letters beyond ASCII"},
        {{"NOD"}, true, "the command"},
        {{"shop", "30"}, true, "all of them"},
        {{"shop", "31"}, false, "one that isn't there"},
        {{"", "shop"}, true, "an empty one doesn't count"},
        {{}, false, "none at all"},
        {{"", ""}, false, "only empty ones"},
        {{QString(100, 'x')}, false, "not in it"},
        {QStringList(16, "shop"), true, "as many as there may be"},
        {QStringList(17, "shop"), false, "too many"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(matchesTerms(shop, row.terms), row.isFound) << row.reason;
}

TEST(MatchesTerms, aTermThatIsTooLongFindsNothing) {
    ListeningPort port = shop;
    port.container = std::string(200, 'x');
    EXPECT_TRUE(matchesTerms(port, {QString(100, 'x')}));
    EXPECT_FALSE(matchesTerms(port, {QString(101, 'x')}));
}

} // namespace
} // namespace tarnvale
