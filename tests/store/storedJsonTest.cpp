#include "store/storedJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Optional;

constexpr Instant epoch = std::chrono::sys_days{std::chrono::year{2001} / 1 / 1};
const QUuid id = QUuid::fromString(QStringLiteral("0a1b2c3d-4e5f-6789-abcd-ef0123456789"));
constexpr const char *idText = R"("id":"0A1B2C3D-4E5F-6789-ABCD-EF0123456789")";

const PortEvent whole{.id = id,
                      .date = epoch + 1500ms,
                      .port = 3000,
                      .otherPorts = {{3001}},
                      .pid = 42,
                      .name = "shop/web",
                      .started = true};

TEST(StoredEventsTest, theFormIsTheGivenOne) {
    const std::string json = encodeEvents({whole});
    EXPECT_EQ(json, std::string(R"([{"date":1.5,)") + idText +
                        R"(,"name":"shop\/web","otherPorts":[3001],"pid":42,"port":3000,"started":true}])");
}

TEST(StoredEventsTest, whatIsAbsentIsLeftOut) {
    PortEvent bare = whole;
    bare.otherPorts.reset();
    bare.pid.reset();
    EXPECT_THAT(encodeEvents({bare}), Not(HasSubstr("pid")));
    EXPECT_THAT(encodeEvents({bare}), Not(HasSubstr("otherPorts")));
    EXPECT_THAT(decodeEvents(encodeEvents({bare})), Optional(ElementsAre(bare)));
    bare.otherPorts.emplace();
    EXPECT_THAT(encodeEvents({bare}), HasSubstr(R"("otherPorts":[])"));
}

TEST(StoredEventsTest, everyTextComesBack) {
    PortEvent odd = whole;
    odd.name = "\\/ \" \n \u2028 é 東京 \xf0\x9f\x9a\x80 \\\\/";
    EXPECT_THAT(decodeEvents(encodeEvents({whole, odd})), Optional(ElementsAre(whole, odd)));
    EXPECT_THAT(decodeEvents(encodeEvents({})), Optional(IsEmpty()));
}

TEST(StoredEventsTest, theDatesOfOtherWritersAreRead) {
    const std::string json =
        std::string("[{") + idText + R"(,"date":762480123.456789,"port":3000,"name":"a/b","started":false}])";
    const auto events = decodeEvents(json);
    ASSERT_TRUE(events);
    EXPECT_EQ(events->front().date, epoch + 762480123457ms);
    EXPECT_EQ(events->front().name, "a/b");
    EXPECT_EQ(events->front().pid, std::nullopt);
    EXPECT_EQ(events->front().otherPorts, std::nullopt);
}

TEST(StoredEventsTest, oneBadRecordSpoilsTheList) {
    const std::string good = encodeEvents({whole});
    const auto with = [&](const std::string &from, const std::string &to) {
        std::string json = good;
        const std::size_t at = json.find(from);
        EXPECT_NE(at, json.npos) << from;
        return json.replace(at, from.size(), to);
    };
    struct Row {
        std::string reason;
        std::string json;
    };
    const std::vector<Row> rows{
        {"nothing", ""},
        {"cut short", good.substr(0, good.size() - 2)},
        {"no list", good.substr(1, good.size() - 2)},
        {"a list of numbers", "[1]"},
        {"no id", with(idText, R"("x":1)")},
        {"a broken id", with("0A1B2C3D", "0A1B2C3")},
        {"an id in braces",
         with(R"("0A1B2C3D-4E5F-6789-ABCD-EF0123456789")", R"("{0A1B2C3D-4E5F-6789-ABCD-EF0123456789}")")},
        {"no name", with(R"("name")", R"("nome")")},
        {"a number as name", with(R"("shop\/web")", "7")},
        {"no date", with(R"("date")", R"("data")")},
        {"a date as text", with("1.5", R"("1.5")")},
        {"a date beyond time", with("1.5", "1e300")},
        {"a broken port", with("3000", "3000.5")},
        {"a port beyond all numbers", with("3000", "1e30")},
        {"a pid beyond its width", with(R"("pid":42)", R"("pid":4294967296)")},
        {"started as number", with("true", "1")},
        {"otherPorts with a text", with("[3001]", R"(["3001"])")},
        {"otherPorts as number", with("[3001]", "3001")},
        {"behind a good one", good.substr(0, good.size() - 1) + ",{}]"},
        {"odd bytes", "\xff\xfe[]"},
        {"nested without end", std::string(100'000, '[')},
    };
    for (const Row &row : rows)
        EXPECT_EQ(decodeEvents(row.json), std::nullopt) << row.reason;
}

TEST(StoredEventsTest, unknownFieldsAndNullsAreFine) {
    const std::string json = std::string("[{") + idText +
                             R"(,"date":-1,"port":3000.0,"name":"","started":true,"pid":null,"new":{}}])";
    const auto events = decodeEvents(json);
    ASSERT_TRUE(events);
    EXPECT_EQ(events->front().port, 3000);
    EXPECT_EQ(events->front().date, epoch - 1s);
}

TEST(StoredStacksTest, stacksComeBack) {
    const Stack stack{.id = id, .name = "shop", .commands = {{"npm run dev", "/home/me/shop"}}};
    EXPECT_EQ(encodeStacks({stack}),
              std::string(R"([{"commands":[{"args":"npm run dev","cwd":"\/home\/me\/shop"}],)") + idText +
                  R"(,"name":"shop"}])");
    EXPECT_THAT(decodeStacks(encodeStacks({stack})), Optional(ElementsAre(stack)));
}

TEST(StoredStacksTest, oneBadRecordSpoilsTheList) {
    struct Row {
        std::string reason;
        std::string rest;
    };
    const std::vector<Row> rows{{"no commands", R"("name":"x")"},
                                {"no name", R"("commands":[])"},
                                {"a command without a folder", R"("name":"x","commands":[{"args":"a"}])"},
                                {"a command as text", R"("name":"x","commands":["a"])"}};
    for (const Row &row : rows)
        EXPECT_EQ(decodeStacks(std::string("[{") + idText + "," + row.rest + "}]"), std::nullopt)
            << row.reason;
    EXPECT_TRUE(decodeStacks(std::string("[{") + idText + R"(,"name":"x","commands":[]}])"));
}

} // namespace
} // namespace tarnvale
