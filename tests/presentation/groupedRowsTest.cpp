#include "presentation/groupedRows.h"

#include "presentation/WebServers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ListeningPort processAt(Pid pid, std::int64_t port, const std::string &command = "node") {
    return {.pid = pid, .command = command, .port = port, .cwd = "/src/shop"};
}

/// "web 1:3000+3001 2:3002" for each section.
std::vector<std::string> outline(const std::vector<RowSection> &sections) {
    std::vector<std::string> lines;
    for (const RowSection &section : sections) {
        std::string line = title(section.group).toStdString();
        for (const RowEntry &row : section.rows) {
            line += " " + row.id();
            for (const std::int64_t other : row.otherPorts)
                line += "+" + std::to_string(other);
        }
        lines.push_back(line);
    }
    return lines;
}

TEST(GroupedRowsTest, noPortsMakeNoSections) {
    EXPECT_THAT(groupedRows(std::vector<ListeningPort>{}, webServers({})), IsEmpty());
}

TEST(GroupedRowsTest, sectionsStandInTheirOrderAndEmptyOnesAreLeftOut) {
    const std::vector<ListeningPort> ports{processAt(1, 1000, "x"), processAt(2, 5432, "postgres"),
                                           processAt(3, 8000)};
    EXPECT_THAT(outline(groupedRows(ports, webServers({8000}))),
                ElementsAre("Web 3:8000", "Databases & Services 2:5432", "Other 1:1000"));
    EXPECT_THAT(outline(groupedRows({ports[0], ports[2]}, webServers({8000}))),
                ElementsAre("Web 3:8000", "Other 1:1000"));
}

TEST(GroupedRowsTest, onePidHasOneRowInEachSection) {
    ListeningPort database = processAt(1, 5432);
    database.service = "shop.service";
    const auto sections =
        groupedRows({processAt(1, 3000), processAt(1, 3001), database}, webServers({3000, 3001}));
    EXPECT_THAT(outline(sections), ElementsAre("Web 1:3000+3001", "Databases & Services 1:5432"));
    EXPECT_EQ(*sections[0].rows[0].port, processAt(1, 3000));
}

TEST(GroupedRowsTest, onlyRowsOfTheWebSectionAreWeb) {
    const auto sections = groupedRows(
        {processAt(1, 3000), processAt(1, 4000), processAt(2, 5432, "postgres")}, webServers({3000}));
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_TRUE(sections[0].rows[0].isWeb);
    EXPECT_FALSE(sections[1].rows[0].isWeb);
    EXPECT_FALSE(sections[2].rows[0].isWeb);
}

TEST(GroupedRowsTest, theFirstPortInTheListIsTheFaceEvenWithoutSorting) {
    EXPECT_THAT(
        outline(groupedRows({processAt(1, 9000), processAt(2, 8000), processAt(1, 7000), processAt(1, 9001)},
                            webServers({7000, 8000, 9000, 9001}))),
        ElementsAre("Web 1:9000+7000+9001 2:8000"));
}

TEST(GroupedRowsTest, thePidAloneDecidesWhatSharesARow) {
    EXPECT_THAT(outline(groupedRows(
                    {processAt(1, 8000, "php"), processAt(2, 8001, "php"), processAt(1, 8002, "python")},
                    webServers({8000, 8001, 8002}))),
                ElementsAre("Web 1:8000+8002 2:8001"));
}

TEST(GroupedRowsTest, whatWasGroupedOnceMakesTheRowsOfEverySearch) {
    const std::vector<ListeningPort> ports{processAt(1, 3000), processAt(1, 3001),
                                           processAt(2, 5432, "postgres"), processAt(3, 9000, "x")};
    int asked = 0;
    const auto grouped =
        groupedPorts(ports, [&](const ListeningPort &port) { return ++asked, port.port < 4000; });
    const auto rowsOf = [&](const char *query) {
        return outline(groupedRows(grouped, queryTest(QLatin1String(query), applicationFileName)));
    };
    EXPECT_THAT(rowsOf(""), ElementsAre("Web 1:3000+3001", "Databases & Services 2:5432", "Other 3:9000"));
    EXPECT_THAT(rowsOf("3001"), ElementsAre("Web 1:3001"));
    EXPECT_THAT(rowsOf("2"), ElementsAre("Databases & Services 2:5432"));
    EXPECT_THAT(rowsOf("nobody"), IsEmpty());
    EXPECT_EQ(asked, 4);
}

TEST(GroupedRowsTest, aListOfThousandsAsksOnceForEachPort) {
    constexpr int count = 5000;
    std::vector<ListeningPort> ports;
    ports.reserve(count);
    for (int i = 0; i < count; ++i)
        ports.push_back(processAt(1 + i % (count / 2), 10000 + i));
    int asked = 0;
    const auto sections = groupedRows(ports, [&](const ListeningPort &) { return ++asked > 0; });
    EXPECT_EQ(asked, count);
    ASSERT_EQ(sections.size(), 1u);
    ASSERT_EQ(sections[0].rows.size(), static_cast<std::size_t>(count) / 2);
    EXPECT_EQ(sections[0].rows.back().id(), "2500:12499");
    EXPECT_THAT(sections[0].rows.back().otherPorts, ElementsAre(14999));
}

} // namespace
} // namespace tarnvale
