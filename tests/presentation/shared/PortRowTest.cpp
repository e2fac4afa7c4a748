#include "presentation/shared/PortRow.h"

#include <gmock/gmock.h>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

Instant noon() {
    return std::chrono::sys_days{std::chrono::year{2025} / 3 / 1} + 12h;
}

ListeningPort shop() {
    return {.pid = 42,
            .command = "node",
            .port = 3000,
            .cwd = "/home/me/shop",
            .startedAt = noon() - 27min,
            .args = "node node_modules/.bin/vite"};
}

PortRow webRow(const ListeningPort &port, const PortFacts &facts = {},
               std::vector<std::int64_t> others = {}) {
    return portRow({.port = port, .otherPorts = std::move(others), .isWeb = true}, PortGroup::web, facts,
                   noon());
}

PortRow otherRow(const ListeningPort &port, const PortFacts &facts = {}) {
    return portRow({.port = port, .otherPorts = {}, .isWeb = false}, PortGroup::other, facts, noon());
}

TEST(PortRow, ofAWebsite) {
    const PortRow row = webRow(shop(), {.health = Health::responding(200)});
    EXPECT_EQ(row.id, QStringLiteral("42:3000"));
    EXPECT_EQ(row.section, QStringLiteral("Web"));
    EXPECT_EQ(row.title, QStringLiteral("shop"));
    EXPECT_TRUE(row.subtitle.endsWith(QStringLiteral("up 27m"))) << row.subtitle.toStdString();
    EXPECT_EQ(row.toolTip, QStringLiteral("node node_modules/.bin/vite\nPID 42\n/home/me/shop"));
    EXPECT_EQ(row.logo, QStringLiteral("logo-vite"));
    EXPECT_EQ(row.tint, QStringLiteral("#9135ff"));
    EXPECT_EQ(row.health, QStringLiteral("responding"));
    EXPECT_EQ(row.healthSummary.toStdString(), Health::responding(200).summary());
    EXPECT_EQ(row.copyTip, QStringLiteral("Copy URL"));
    EXPECT_EQ(row.stopTip, QStringLiteral("Kill process"));
    EXPECT_EQ(row.confirmTitle, QStringLiteral("Kill"));
    EXPECT_EQ(row.pill, QStringLiteral("3000"));
    EXPECT_EQ(row.furtherPills, QStringList());
    EXPECT_EQ(row.morePills, QString());
}

TEST(PortRow, ofWhatIsNoWebsite) {
    const PortRow row = otherRow(shop(), {.health = Health::responding(200)});
    EXPECT_EQ(row.copyTip, QStringLiteral("Copy Address (localhost:3000)"));
    EXPECT_EQ(row.health, QString()) << "its health is nobody's business";
    EXPECT_EQ(row.healthSummary, QString());
}

TEST(PortRow, hasADotOnlyForAHealthThatIsKnown) {
    EXPECT_EQ(webRow(shop()).health, QString());
    EXPECT_EQ(webRow(shop(), {.health = Health::unknown()}).health, QString());
    EXPECT_EQ(webRow(shop(), {.health = Health::noResponse()}).health, QStringLiteral("noResponse"));
    EXPECT_EQ(webRow(shop(), {.health = Health::serverError(502)}).health, QStringLiteral("serverError"));
}

TEST(PortRow, showsTwoPortsAndCountsTheOthers) {
    EXPECT_EQ(webRow(shop(), {}, {3001}).morePills, QString());
    const PortRow row = webRow(shop(), {}, {3001, 3002, 5000});
    EXPECT_EQ(row.pill, QStringLiteral("3000"));
    EXPECT_EQ(row.furtherPills, QStringList{QStringLiteral("3001")});
    EXPECT_EQ(row.morePills, QStringLiteral("+2"));
    EXPECT_EQ(row.morePorts, QStringLiteral("3002, 5000"));
}

TEST(PortRow, isStoppedRatherThanKilledAsAServiceOrContainer) {
    ListeningPort port = shop();
    port.service = "shop.service";
    EXPECT_EQ(webRow(port).confirmTitle, QStringLiteral("Stop"));
    port.service.reset();
    port.container = "web · nginx:1.27";
    EXPECT_EQ(webRow(port).confirmTitle, QStringLiteral("Stop"));
    EXPECT_EQ(webRow(port).stopTip, QStringLiteral("Stop container (docker stop web)"));
    EXPECT_TRUE(webRow(port).inContainer);
}

TEST(PortRow, namesTheAgentWithItsLogo) {
    struct Row {
        const char *agent;
        const char *logo;
    };
    for (const auto &[agent, logo] : {Row{"Codex", "logo-openai"}, Row{"my-CODEX-fork", "logo-openai"},
                                      Row{"Claude Code", "logo-claude"}, Row{"Another", "logo-claude"}}) {
        ListeningPort port = shop();
        port.agent = agent;
        EXPECT_EQ(webRow(port).agent, QLatin1String(agent));
        EXPECT_EQ(webRow(port).agentLogo, QLatin1String(logo)) << agent;
    }
    EXPECT_EQ(webRow(shop()).agentLogo, QString());
}

TEST(PortRow, isReadAloudWithEverythingThatItsSymbolsMean) {
    ListeningPort port = shop();
    port.agent = "Codex";
    port.isExposed = true;
    const PortRow row =
        webRow(port, {.health = Health::noResponse(), .isWatched = true, .publicUrl = "https://a.example"},
               {3001, 3002});
    for (const char *part : {"shop", "ports 3000, 3001, 3002", "Started by Codex", "Watched",
                             "Exposed to network", "Shared publicly"})
        EXPECT_THAT(row.accessibleName.toStdString(), testing::HasSubstr(part));
    EXPECT_THAT(row.accessibleName.toStdString(), testing::HasSubstr(row.healthSummary.toStdString()));
    EXPECT_THAT(webRow(shop()).accessibleName.toStdString(), testing::EndsWith(", port 3000"));
}

TEST(PortRow, hasBadgesWhereAnyIsToBeShown) {
    ListeningPort byAgent = shop();
    byAgent.agent = "Codex";
    ListeningPort exposed = shop();
    exposed.isExposed = true;
    EXPECT_FALSE(webRow(shop()).hasBadges);
    EXPECT_TRUE(webRow(byAgent).hasBadges);
    EXPECT_TRUE(webRow(exposed).hasBadges);
    EXPECT_TRUE(webRow(shop(), {.isWatched = true}).hasBadges);
    EXPECT_TRUE(webRow(shop(), {.publicUrl = "https://a.example"}).hasBadges);
}

TEST(PortRow, keepsAnEndlessCommandLineOutOfItsToolTip) {
    ListeningPort port = shop();
    port.args = std::string(1'000'000, 'x');
    port.cwd = "/" + std::string(100'000, 'y');
    EXPECT_LT(webRow(port).toolTip.size(), 5000);
}

TEST(PortRow, mendsOddText) {
    ListeningPort port = shop();
    port.cwd = "/home/me/sh\xFFop\x01";
    port.agent = "Co\xFF\ndex";
    const PortRow row = webRow(port, {.publicUrl = "https://\xFF"});
    for (const QString &text : {row.title, row.subtitle, row.agent, row.accessibleName, row.publicUrl})
        EXPECT_TRUE(text.isValidUtf16());
    EXPECT_FALSE(row.agent.contains(QLatin1Char('\n')));
}

TEST(PortRow, tellsEveryFieldInARoleOfItsOwn) {
    std::set<std::string> names;
    for (const auto &role : PortRow::roles())
        names.insert(role.name);
    EXPECT_EQ(names.size(), PortRow::roles().size());
    EXPECT_EQ(names.size(), 26u);
}

TEST(TintName, isWhatQmlReads) {
    EXPECT_EQ(tintName(Rgb{0x00ff20}), QStringLiteral("#00ff20"));
    struct Row {
        StandardColor color;
        const char *name;
    };
    for (const auto &[color, name] : {Row{StandardColor::orange, "orange"}, Row{StandardColor::red, "red"},
                                      Row{StandardColor::teal, "teal"}, Row{StandardColor::cyan, "cyan"},
                                      Row{StandardColor::brown, "brown"}, Row{StandardColor::blue, "blue"},
                                      Row{StandardColor::gray, "gray"}})
        EXPECT_EQ(tintName(color), QLatin1String(name));
}

} // namespace
} // namespace tarnvale
