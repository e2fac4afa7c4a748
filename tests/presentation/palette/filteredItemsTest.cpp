#include "presentation/palette/filteredItems.h"

#include "presentation/palette/paletteItems.h"

#include <gmock/gmock.h>

#include <string>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

PaletteContents contents() {
    PaletteContents made;
    made.rows = {
        {ListeningPort{
             .pid = 42, .command = "node", .port = 3000, .cwd = "/home/me/shop", .args = "node server.js"},
         {},
         true},
        {ListeningPort{.pid = 43, .command = "node", .port = 4000}, {}, false},
        {ListeningPort{.pid = 44, .command = "docker-proxy", .port = 8080, .container = "Café · nginx"},
         {},
         true}};
    made.stacks = {{.id = QUuid::createUuid(), .name = "Alpha"}, {.id = QUuid::createUuid(), .name = "beta"}};
    return made;
}

std::vector<std::string> found(const QString &query) {
    const std::vector<PaletteItem> items = paletteItems(contents(), std::make_shared<const PaletteActions>());
    std::vector<std::string> titles;
    for (const std::size_t place : filteredItems(items, query))
        titles.push_back(items[place].title.toStdString());
    return titles;
}

TEST(FilteredItems, everyWordMustOccurInTitleOrSubtitle) {
    EXPECT_THAT(found(QStringLiteral("open shop")), ElementsAre("Open shop"));
    EXPECT_THAT(found(QStringLiteral("shop open")), ElementsAre("Open shop")) << "in any order";
    EXPECT_THAT(found(QStringLiteral("kill 4000")), ElementsAre("Kill node")) << "through the subtitle";
    EXPECT_THAT(found(QStringLiteral("start stack")), ElementsAre("Start Alpha", "Start beta"));
    EXPECT_THAT(found(QStringLiteral("open shop 4000")), IsEmpty());
    EXPECT_THAT(found(QStringLiteral("ho en 30")), ElementsAre("Open shop")) << "parts of words count";
}

TEST(FilteredItems, upperAndLowerCaseAreTheSame) {
    EXPECT_THAT(found(QStringLiteral("OPEN Shop")), ElementsAre("Open shop"));
    EXPECT_THAT(found(QStringLiteral("CAFÉ open")), ElementsAre("Open Café"));
    EXPECT_THAT(found(QStringLiteral("open cafe\u0301")), ElementsAre("Open Café")) << "accent written apart";
}

TEST(FilteredItems, killDoesntFindWhatIsStopped) {
    for (const std::string &title : found(QStringLiteral("kill")))
        EXPECT_TRUE(title.starts_with("Kill ")) << title;
    EXPECT_THAT(found(QStringLiteral("kill 8080")), IsEmpty());
    EXPECT_THAT(found(QStringLiteral("stop 8080")), ElementsAre("Stop Café"));
}

TEST(FilteredItems, aPortFindsAllThatCanBeDoneWithItInItsOrder) {
    EXPECT_THAT(found(QStringLiteral("3000")),
                ElementsAre("Open shop", "Show shop", "Copy URL of shop", "Restart shop", "Kill shop"));
}

TEST(FilteredItems, blanksAloneAreNoQuery) {
    const auto all = found({});
    EXPECT_THAT(all, SizeIs(5 + 3 + 5 + 2 + 7));
    for (const QString &query : {QStringLiteral(" "), QStringLiteral("   \t "), QStringLiteral("\u00a0")})
        EXPECT_EQ(found(query), all);
    EXPECT_THAT(found(QStringLiteral("  open   shop ")), ElementsAre("Open shop"));
}

TEST(FilteredItems, onlyAQueryReachesBeyondTheFirstSixty) {
    PaletteContents many;
    for (std::int32_t i = 0; i < 20; ++i)
        many.rows.push_back(
            {ListeningPort{
                 .pid = 100 + i, .command = "node", .port = 3000 + i, .cwd = "/home/me/shop", .args = "x"},
             {},
             true});
    many.stacks = {{.id = QUuid::createUuid(), .name = "all"}};
    const std::vector<PaletteItem> items = paletteItems(many, std::make_shared<const PaletteActions>());
    EXPECT_THAT(items, SizeIs(108));
    const auto none = filteredItems(items, {});
    EXPECT_THAT(none, SizeIs(60));
    EXPECT_EQ(none.back(), 59u);
    EXPECT_THAT(filteredItems(items, QStringLiteral("go")), SizeIs(5));
    EXPECT_THAT(filteredItems(items, QStringLiteral("start stack")), ElementsAre(100u));
    EXPECT_THAT(filteredItems(items, QStringLiteral("shop")), SizeIs(100)) << "what is found isn't cut";
}

TEST(FilteredItems, oddQueriesFindNothingAndHarmNothing) {
    for (const QString &query :
         {QStringLiteral("%1"), QStringLiteral(".*"), QStringLiteral("[("), QString(100000, QLatin1Char('x')),
          QString(QChar(0xd800)), QString(QChar(0))})
        EXPECT_THAT(found(query), IsEmpty()) << query.left(20).toStdString();
    EXPECT_THAT(found(QStringLiteral("a ").repeated(5000) + QStringLiteral("beta")),
                ElementsAre("Start beta"));
}

} // namespace
} // namespace tarnvale
