#include "commands/automation/searchResults.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> idsOf(const std::vector<ListeningPort> &ports, const QStringList &terms) {
    std::vector<std::string> ids;
    for (const SearchResult &result : searchResults(ports, terms))
        ids.push_back(result.id().toStdString());
    return ids;
}

ListeningPort server(Pid pid, std::int64_t port, const std::string &folder = "shop") {
    return {.pid = pid, .command = "node", .port = port, .cwd = "/home/me/" + folder};
}

TEST(SearchResults, thePortsThatAreFoundCanBeOpened) {
    EXPECT_THAT(idsOf({server(42, 3000), server(43, 3001), server(44, 8080)}, {"30"}),
                ElementsAre("open:3000:42", "open:3001:43"));
    EXPECT_THAT(idsOf({server(42, 3000)}, {"blog"}), IsEmpty());
}

TEST(SearchResults, freeingIsOfferedOnlyToWhoAsksForIt) {
    const std::vector<ListeningPort> ports{server(42, 3000), server(43, 8080)};
    for (const QStringList &terms :
         {QStringList{"free", "3000"}, QStringList{"3000", "STOP"}, QStringList{"stop", "free", "3000"}})
        EXPECT_THAT(idsOf(ports, terms), ElementsAre("open:3000:42", "free:3000:42"))
            << terms.join(' ').toStdString();
}

TEST(SearchResults, theWordAloneOffersToFreeNothing) {
    EXPECT_THAT(idsOf({server(42, 3000)}, {"free"}), IsEmpty());
    EXPECT_THAT(idsOf({server(42, 3000)}, {"free", ""}), IsEmpty());
    EXPECT_THAT(idsOf({server(42, 3000, "freelance")}, {"free"}), ElementsAre("open:3000:42"));
    EXPECT_THAT(idsOf({server(42, 3000, "nonstop")}, {"nonstop"}), ElementsAre("open:3000:42"));
}

TEST(SearchResults, aPortOfSeveralProcessesIsFoundOnce) {
    EXPECT_THAT(idsOf({server(42, 3000), server(43, 3000)}, {"3000"}), ElementsAre("open:3000:42"));
}

TEST(SearchResults, thereAreTenAtMost) {
    std::vector<ListeningPort> ports;
    for (Pid i = 0; i < 50; ++i)
        ports.push_back(server(100 + i, 3000 + i));
    EXPECT_EQ(idsOf(ports, {"shop"}).size(), 10u);
    EXPECT_EQ(idsOf(ports, {"free", "shop"}).size(), 10u);
    EXPECT_EQ(idsOf(ports, {"shop"}), idsOf(ports, {"shop"})) << "and always the same";
}

TEST(SearchResults, recordsThatNoIdCanTellAreLeftOut) {
    EXPECT_THAT(idsOf({server(42, 0), server(42, 70000), server(0, 3000)}, {"shop"}), IsEmpty());
}

TEST(SearchResults, anIdIsReadBackToTheLetter) {
    const SearchResult open{SearchResult::Kind::open, 3000, 42};
    const SearchResult free{SearchResult::Kind::free, 65535, 2147483647};
    EXPECT_EQ(SearchResult::parse(open.id()), open);
    EXPECT_EQ(SearchResult::parse(free.id()), free);
}

TEST(SearchResults, anyOtherTextIsNoId) {
    struct Row {
        QString id;
        std::string reason;
    };
    const std::vector<Row> rows{
        {"", "empty"},
        {"open:3000", "no process"},
        {"open:3000:42:1", "too much"},
        {"kill:3000:42", "another verb"},
        {"OPEN:3000:42", "another case"},
        {":3000:42", "no verb"},
        {"open::42", "no port"},
        {"open:3000:", "an empty process"},
        {"open:0:42", "no port number"},
        {"open:65536:42", "beyond the last port"},
        {"open:-1:42", "a negative port"},
        {"open:+3000:42", "a sign"},
        {"open:03000:42", "a leading zero"},
        {" open:3000:42", "a blank"},
        {"open:3000:42\n", "a line feed"},
        {"open:3000:0", "no process number"},
        {"open:3000:-1", "every process there is"},
        {"open:3000:2147483648", "beyond the last process"},
        {"open:99999999999999999999:42", "out of range"},
        {"open:3000:4٢", "a digit of another script"},
        {QString("open:3000:42").append(QChar(0)), "a NUL"},
        {"open:" + QString(100000, '1') + ":42", "far too long"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(SearchResult::parse(row.id), std::nullopt) << row.reason;
}

TEST(SearchResults, theRecordBehindAResultMustBeTheSameProcess) {
    const std::vector<ListeningPort> ports{server(42, 3000), server(43, 3000)};
    EXPECT_EQ(recordOf({SearchResult::Kind::free, 3000, 43}, ports), &ports[1]);
    EXPECT_EQ(recordOf({SearchResult::Kind::free, 3000, 44}, ports), nullptr);
    EXPECT_EQ(recordOf({SearchResult::Kind::free, 3001, 43}, ports), nullptr);
}

} // namespace
} // namespace tarnvale
