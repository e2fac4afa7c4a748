#include "presentation/ToolStyle.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using Style = ToolStyle;

constexpr Style gear{.symbol = "gearshape.fill", .tint = StandardColor::gray};
constexpr Style plain{.symbol = "terminal.fill", .tint = StandardColor::gray};

/// A process of that name in a folder of its own, so that it is no system process.
ListeningPort inFolder(const std::string &command) {
    return {.pid = 1, .command = command, .port = 9000, .cwd = "/home/me/shop"};
}

ListeningPort inContainer(const std::string &command, const std::string &container) {
    return {.pid = 1, .command = command, .port = 9000, .container = container};
}

TEST(ToolStyleTest, everyKnownToolHasItsLogo) {
    struct Row {
        std::string command;
        std::string logo;
        std::uint32_t tint;
        bool isDatabase = false;
    };
    const std::vector<Row> rows{
        {"laravel", "logo-laravel", 0xFF2D20},
        {"postgres", "logo-postgresql", 0x4169E1, true},
        {"mariadbd", "logo-mariadb", 0xC0765A, true},
        {"mysqld", "logo-mysql", 0x4479A1, true},
        {"mongod", "logo-mongodb", 0x47A248, true},
        {"redis-server", "logo-redis", 0xFF4438, true},
        {"valkey-server", "logo-redis", 0xFF4438, true},
        {"nginx", "logo-nginx", 0x009639},
        {"httpd", "logo-apache", 0xD22128},
        {"apache2", "logo-apache", 0xD22128},
        {"caddy", "logo-caddy", 0x1F88C0},
        {"docker-proxy", "logo-docker", 0x2496ED},
        {"OrbStack Helper", "logo-docker", 0x2496ED},
        {"colima", "logo-docker", 0x2496ED},
        {"php8.2", "logo-php", 0x777BB4},
        {"frankenphp", "logo-php", 0x777BB4},
        {"artisan", "logo-php", 0x777BB4},
        {"bun", "logo-bun", 0xFBF0DF},
        {"deno", "logo-deno", 0x70FFAF},
        {"node", "logo-nodedotjs", 0x5FA04E},
        {"python3.11", "logo-python", 0x3776AB},
        {"uvicorn", "logo-python", 0x3776AB},
        {"gunicorn", "logo-python", 0x3776AB},
        {"django-admin", "logo-python", 0x3776AB},
        {"flask", "logo-python", 0x3776AB},
        {"rails", "logo-rubyonrails", 0xD30001},
        {"puma", "logo-rubyonrails", 0xD30001},
        {"ruby", "logo-ruby", 0xCC342D},
        {"flutter", "logo-flutter", 0x02569B},
        {"dart", "logo-dart", 0x0175C2},
    };
    for (const Row &row : rows) {
        const Style expected{
            .symbol = "terminal.fill", .tint = Rgb{row.tint}, .isDatabase = row.isDatabase, .logo = row.logo};
        EXPECT_EQ(toolStyle(inFolder(row.command)), expected) << row.command;
        EXPECT_EQ(toolStyle({.pid = 1, .command = row.command, .port = 9000}), expected) << row.command;
    }
}

TEST(ToolStyleTest, everyOtherKnownToolHasItsSymbol) {
    struct Row {
        std::string command;
        Style style;
    };
    const Style device{"iphone", StandardColor::cyan};
    const Style cup{"cup.and.saucer.fill", StandardColor::brown};
    const Style window{"macwindow", StandardColor::blue};
    const std::vector<Row> rows{
        {"clickhouse-server", {"cylinder.split.1x2.fill", StandardColor::orange, true}},
        {"memcached", {"bolt.horizontal.fill", StandardColor::red, true}},
        {"traefik", {"globe", StandardColor::teal}},
        {"adb", device},
        {"emulator64", device},
        {"qemu-system-x86_64", device},
        {"java", cup},
        {"gradle", cup},
        {"kotlinc", cup},
        {"podman", {"shippingbox.fill", StandardColor::blue}},
        {"Code Helper (Plugin)", window},
        {"Cursor", window},
        {"Electron", window},
        {"language_server", window},
        {"sql.ls", window},
        {"jetbrainsd", window},
        {"intellij", window},
    };
    for (const Row &row : rows)
        EXPECT_EQ(toolStyle(inFolder(row.command)), row.style) << row.command;
}

TEST(ToolStyleTest, ofTwoToolsTheFirstInTheTableWins) {
    struct Row {
        std::string command;
        std::string logo;
    };
    const std::vector<Row> rows{{"redis postgres", "logo-postgresql"},
                                {"mysql-mariadb", "logo-mariadb"},
                                {"php nginx", "logo-nginx"},
                                {"python bun", "logo-bun"},
                                {"ruby rails", "logo-rubyonrails"},
                                {"dart flutter", "logo-flutter"},
                                {"deno bun", "logo-bun"},
                                {"node python", "logo-nodedotjs"}};
    for (const Row &row : rows)
        EXPECT_EQ(toolStyle(inFolder(row.command)).logo, row.logo) << row.command;
    EXPECT_EQ(toolStyle(inFolder("java memcache")).symbol, "bolt.horizontal.fill");
}

TEST(ToolStyleTest, keywordsAreFragmentsInAnyCase) {
    EXPECT_EQ(toolStyle(inFolder("rubygems-mirror")).logo, "logo-ruby");
    EXPECT_EQ(toolStyle(inFolder("PostgreSQL")).logo, "logo-postgresql");
    EXPECT_EQ(toolStyle(inFolder("my-Node-thing")).logo, "logo-nodedotjs");
}

TEST(ToolStyleTest, aNodeProcessShowsItsFramework) {
    const auto logoFor = [](const std::string &args) {
        ListeningPort port = inFolder("node");
        port.args = args;
        return toolStyle(port);
    };
    EXPECT_EQ(logoFor("node ./node_modules/.bin/vite"),
              (Style{.symbol = "terminal.fill", .tint = Rgb{0x9135FF}, .logo = "logo-vite"}));
    EXPECT_EQ(logoFor("node /app/node_modules/.bin/NEXT dev"),
              (Style{.symbol = "terminal.fill", .tint = Rgb{0x8E8E93}, .logo = "logo-nextdotjs"}));
    EXPECT_EQ(logoFor("node next vite").logo, "logo-vite");
    EXPECT_EQ(logoFor("node server.js").logo, "logo-nodedotjs");
}

TEST(ToolStyleTest, theFrameworkOfAnotherRuntimeIsNotLookedFor) {
    ListeningPort port = inFolder("bun");
    port.args = "bun node_modules/.bin/vite";
    EXPECT_EQ(toolStyle(port).logo, "logo-bun");
    port = inFolder("vite");
    port.args = "vite";
    EXPECT_EQ(toolStyle(port), plain);
}

TEST(ToolStyleTest, theNameShownCountsAsMuchAsTheCommand) {
    ListeningPort laravel = inFolder("php");
    laravel.args = "php artisan serve";
    EXPECT_EQ(toolStyle(laravel).logo, "logo-laravel");
    const ListeningPort brewed{.command = "beam.smp", .service = "homebrew.mxcl.mysql@8.0"};
    EXPECT_EQ(toolStyle(brewed).logo, "logo-mysql");
}

TEST(ToolStyleTest, herdHasItsApplicationsIcon) {
    const Style herd{.symbol = "server.rack", .tint = StandardColor::red, .appID = "de.beyondco.herd"};
    EXPECT_EQ(toolStyle({.command = "nginx", .args = "/Users/me/Library/Herd/bin/nginx"}), herd);
    EXPECT_EQ(toolStyle({.command = "Herd"}), herd);
    EXPECT_EQ(toolStyle({.command = "herd", .cwd = "/src"}), plain);
}

TEST(ToolStyleTest, aToolInAContainerStaysVisibleUnderDockersBadge) {
    const Style style = toolStyle(inContainer("docker-proxy", "db · postgres:16"));
    EXPECT_EQ(style, (Style{.symbol = "terminal.fill",
                            .tint = Rgb{0x4169E1},
                            .isDatabase = true,
                            .logo = "logo-postgresql",
                            .inContainer = true}));
}

TEST(ToolStyleTest, dockersOwnLogoNeedsNoBadge) {
    const Style bare = toolStyle({.command = "docker-proxy"});
    EXPECT_EQ(bare.logo, "logo-docker");
    EXPECT_FALSE(bare.inContainer);
    EXPECT_EQ(toolStyle(inContainer("docker-proxy", "api · mycompany/api:1")), bare);
    EXPECT_EQ(toolStyle(inContainer("com.docker.backend", "traefik · traefik:3")), bare);
}

TEST(ToolStyleTest, aContainerOfAnotherRuntimeFallsBackWithoutBadge) {
    EXPECT_EQ(toolStyle(inContainer("podman", "api · mycompany/api")),
              (Style{"shippingbox.fill", StandardColor::blue}));
    EXPECT_EQ(toolStyle(inContainer("vpnkit", "api · mycompany/api")), plain);
}

TEST(ToolStyleTest, whatWorksNowhereAndIsUnknownIsASystemProcess) {
    EXPECT_EQ(toolStyle({.command = "rapportd"}), gear);
    EXPECT_EQ(toolStyle({.command = "rapportd", .cwd = "/"}), gear);
    EXPECT_EQ(toolStyle({.command = "sshd", .service = "ssh.service"}), gear);
    EXPECT_EQ(toolStyle({.command = "java"}), gear);
    EXPECT_EQ(toolStyle({}), gear);
}

TEST(ToolStyleTest, aFolderAFormulaOrAKnownNameMakesMoreOfAProcess) {
    EXPECT_EQ(toolStyle({.command = "rapportd", .cwd = "/var"}), plain);
    EXPECT_EQ(toolStyle({.command = "beam.smp", .service = "homebrew.mxcl.rabbitmq"}), plain);
    EXPECT_EQ(toolStyle({.command = "ollama"}), plain);
    EXPECT_EQ(toolStyle({.command = "memcached"}).symbol, "bolt.horizontal.fill");
    EXPECT_EQ(toolStyle({.command = "Mailpit-arm64"}), plain);
}

TEST(ToolStyleTest, bytesThatAreNoTextMatchNothing) {
    EXPECT_EQ(toolStyle({.command = "\xff\xfe", .cwd = "/home/\xc3"}), plain);
    EXPECT_EQ(toolStyle({.command = std::string("n\0de", 4), .cwd = "/src"}), plain);
}

} // namespace
} // namespace tarnvale
