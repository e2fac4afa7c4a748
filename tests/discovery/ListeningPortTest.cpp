#include "discovery/ListeningPort.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace tarnvale {
namespace {

using namespace std::chrono_literals;

std::string displayNameOf(const std::string &command, const std::optional<std::string> &args,
                          const std::optional<std::string> &cwd = std::nullopt) {
    return ListeningPort{.command = command, .cwd = cwd, .args = args}.displayName();
}

std::optional<std::string> projectIn(const std::string &folder) {
    return ListeningPort{.cwd = folder}.projectName();
}

TEST(ListeningPortTest, theIdIsPidAndPort) {
    EXPECT_EQ((ListeningPort{.pid = 42, .port = 3000}).id(), "42:3000");
    EXPECT_EQ((ListeningPort{.pid = 42, .port = -1}).id(), "42:-1");
}

TEST(ListeningPortTest, everyContainerRuntimeIsADockerProxy) {
    for (const std::string command :
         {"docker-proxy", "com.docker.backend", "vpnkit-bridge", "OrbStack Helper", "colima", "Podman"})
        EXPECT_TRUE((ListeningPort{.command = command}).isDockerProxy()) << command;
    for (const std::string command : {"", "node", "dock er", "limactl"})
        EXPECT_FALSE((ListeningPort{.command = command, .args = "docker"}).isDockerProxy()) << command;
}

TEST(ListeningPortTest, everyNoiseFragmentIsNoiseInCommandOrArguments) {
    for (const std::string fragment :
         {"gradledaemon", "kotlincompiledaemon", "code helper", "cursor helper", "language-server",
          "languageserver", "langserver", "devsense", "intelephense", "jetbrains", "intellij", "phpstorm",
          "webstorm", "sourcekit-lsp", "rust-analyzer", "gopls", "tsserver"}) {
        EXPECT_TRUE((ListeningPort{.command = "my " + fragment + "x"}).isNoise()) << fragment;
        EXPECT_TRUE((ListeningPort{.command = "java", .args = "java -cp " + fragment + ".jar"}).isNoise())
            << fragment;
    }
    EXPECT_TRUE((ListeningPort{.command = "Code Helper (Plugin)"}).isNoise());
    EXPECT_TRUE(
        (ListeningPort{.command = "java", .args = "org.gradle.launcher.daemon.GradleDaemon"}).isNoise());
}

TEST(ListeningPortTest, aFragmentMaySpanCommandAndArguments) {
    EXPECT_TRUE((ListeningPort{.command = "code", .args = "helper"}).isNoise());
}

TEST(ListeningPortTest, onlyACommandEndingInDotLsIsNoise) {
    EXPECT_TRUE((ListeningPort{.command = "Some.LS"}).isNoise());
    EXPECT_FALSE((ListeningPort{.command = "node", .args = "node a.ls"}).isNoise());
    EXPECT_FALSE((ListeningPort{.command = "tools"}).isNoise());
    EXPECT_FALSE((ListeningPort{.command = "a.ls2"}).isNoise());
}

TEST(ListeningPortTest, ordinaryServersAreNoNoise) {
    EXPECT_FALSE((ListeningPort{.command = "node", .args = "node server.js"}).isNoise());
    EXPECT_FALSE((ListeningPort{.command = "node", .cwd = "/Users/me/phpstorm"}).isNoise());
}

TEST(ListeningPortTest, bothHomebrewPrefixesAreCut) {
    EXPECT_EQ((ListeningPort{.service = "homebrew.mxcl.postgresql@16"}).brewService(), "postgresql@16");
    EXPECT_EQ((ListeningPort{.service = "sh.brew.redis"}).brewService(), "redis");
}

TEST(ListeningPortTest, otherServicesHaveNoFormula) {
    EXPECT_EQ((ListeningPort{}).brewService(), std::nullopt);
    EXPECT_EQ((ListeningPort{.service = "com.example.agent"}).brewService(), std::nullopt);
    EXPECT_EQ((ListeningPort{.service = "Homebrew.mxcl.redis"}).brewService(), std::nullopt);
    EXPECT_EQ((ListeningPort{.service = "homebrew.redis.service"}).brewService(), std::nullopt)
        << "that is how systemd units are named, not launchd labels";
}

TEST(ListeningPortTest, homebrewsUnitsCountUnderSystemd) {
    for (const ServiceManager manager : {ServiceManager::systemd, ServiceManager::systemdUser}) {
        const auto formulaOf = [&](const std::string &unit) {
            return ListeningPort{.service = unit, .serviceManager = manager}.brewService();
        };
        EXPECT_EQ(formulaOf("homebrew.redis.service"), "redis");
        EXPECT_EQ(formulaOf("homebrew.postgresql@16.service"), "postgresql@16");
        EXPECT_EQ(formulaOf("homebrew..service"), std::nullopt);
        EXPECT_EQ(formulaOf("homebrew.service"), std::nullopt);
        EXPECT_EQ(formulaOf("homebrew.redis.socket"), std::nullopt);
        EXPECT_EQ(formulaOf("nginx.service"), std::nullopt);
    }
}

TEST(ListeningPortTest, theContainersNameEndsAtTheFirstDot) {
    EXPECT_EQ((ListeningPort{.container = "web · nginx:1.25"}).containerName(), "web");
    EXPECT_EQ((ListeningPort{.container = "web · a · b"}).containerName(), "web");
    EXPECT_EQ((ListeningPort{.container = "web"}).containerName(), "web");
    EXPECT_EQ((ListeningPort{.container = "web·nginx"}).containerName(), "web·nginx");
    EXPECT_EQ((ListeningPort{.container = " · nginx"}).containerName(), std::nullopt);
    EXPECT_EQ((ListeningPort{.container = ""}).containerName(), std::nullopt);
    EXPECT_EQ((ListeningPort{}).containerName(), std::nullopt);
}

TEST(ListeningPortTest, everyDisplayRuleNamesItsTool) {
    EXPECT_EQ(displayNameOf("php", "php artisan serve --port=8000"), "Laravel");
    EXPECT_EQ(
        displayNameOf("php", "php -S x /v/laravel/framework/src/Illuminate/Foundation/resources/server.php"),
        "Laravel");
    EXPECT_EQ(displayNameOf("java", "java org.gradle.launcher.daemon.bootstrap.GradleDaemon"),
              "Gradle daemon");
    EXPECT_EQ(displayNameOf("java", "java org.jetbrains.kotlin.daemon.KotlinCompileDaemon"), "Kotlin daemon");
    EXPECT_EQ(displayNameOf("nginx", "nginx -p /Users/me/Library/Herd/x"), "Herd");
}

TEST(ListeningPortTest, anEarlierRuleWins) {
    EXPECT_EQ(displayNameOf("php", "php artisan serve", "/Users/me/Herd/site"), "Laravel");
    EXPECT_EQ(displayNameOf("java", "KotlinCompileDaemon GradleDaemon"), "Gradle daemon");
}

TEST(ListeningPortTest, aRuleMayMatchInTheFolder) {
    EXPECT_EQ(displayNameOf("node", std::nullopt, "/Users/me/herd/site"), "Herd");
    EXPECT_EQ(displayNameOf("java", std::nullopt, "/x/gradledaemon"), "Gradle daemon");
}

TEST(ListeningPortTest, aRuleMatchesAcrossArgumentsAndFolder) {
    EXPECT_EQ(displayNameOf("php", "artisan", "serve"), "Laravel") << "one blank stands between the two";
}

TEST(ListeningPortTest, phpIsHerdOnlyInHerdsFolders) {
    EXPECT_EQ(displayNameOf("php-fpm", std::nullopt, "/Users/me/Herd/site"), "Herd");
    EXPECT_EQ(displayNameOf("php-fpm", "php-fpm: pool /herd/x", "/Users/me/site"), "php-fpm");
    EXPECT_EQ(displayNameOf("PHP-8.3", "/Users/me/Herd/bin/php"), "PHP-8.3");
    EXPECT_EQ(displayNameOf("php", "php -S /herd/x", "/Users/me/Herd/site"), "Herd");
}

TEST(ListeningPortTest, withoutARuleTheFormulaElseTheCommandNamesTheTool) {
    EXPECT_EQ((ListeningPort{.command = "postgres", .service = "homebrew.mxcl.postgresql@16"}).displayName(),
              "postgresql@16");
    EXPECT_EQ((ListeningPort{.command = "postgres", .service = "com.example.db"}).displayName(), "postgres");
    EXPECT_EQ(displayNameOf("Ollama-arm64", std::nullopt), "Ollama");
    EXPECT_EQ(displayNameOf("", std::nullopt), "");
}

TEST(ListeningPortTest, aFormulaWithoutANameIsNoDisplayName) {
    EXPECT_EQ((ListeningPort{.command = "postgres", .service = "homebrew.mxcl."}).displayName(), "postgres");
}

TEST(ListeningPortTest, theProjectIsTheFolderOrTheParentOfAWebRoot) {
    EXPECT_EQ((ListeningPort{}).projectName(), std::nullopt);
    EXPECT_EQ(projectIn("/Users/me/shop"), "shop");
    EXPECT_EQ(projectIn("/Users/me/shop/"), "shop");
    EXPECT_EQ(projectIn("/Users/me/my shop"), "my shop");
    EXPECT_EQ(projectIn("/Users/me/shop/public"), "shop");
    EXPECT_EQ(projectIn("/Users/me/shop/web/"), "shop");
    EXPECT_EQ(projectIn("/srv/www"), "srv");
    EXPECT_EQ(projectIn("/srv/www/public"), "www") << "only one step up";
    EXPECT_EQ(projectIn("/Users/me/shop/Public"), "Public");
    EXPECT_EQ(projectIn("/"), "/");
    EXPECT_EQ(projectIn("/public"), "/");
}

TEST(ListeningPortTest, aGenericFolderIsNoProject) {
    EXPECT_FALSE((ListeningPort{}).hasProject());
    EXPECT_FALSE((ListeningPort{.cwd = "/"}).hasProject());
    EXPECT_FALSE((ListeningPort{.cwd = "/usr/local/Cellar/redis/7.2.4/bin"}).hasProject());
    EXPECT_FALSE((ListeningPort{.cwd = "/usr/local/Cellar/redis/7.2.4"}).hasProject());
    EXPECT_FALSE((ListeningPort{.cwd = "/usr/local/bin/public"}).hasProject());
    EXPECT_TRUE((ListeningPort{.cwd = "/Users/me/shop"}).hasProject());
}

TEST(ListeningPortTest, theTitleIsContainerElseProjectElseTool) {
    ListeningPort port{.command = "node", .cwd = "/Users/me/shop", .container = "web · nginx"};
    EXPECT_EQ(port.title(), "web · nginx");
    port.container.reset();
    EXPECT_EQ(port.title(), "shop");
    port.cwd = "/usr/local/Cellar/redis/7.2.4/bin";
    EXPECT_EQ(port.title(), "node");
    port.args = "php artisan serve";
    EXPECT_EQ(port.title(), "Laravel");
}

TEST(ListeningPortTest, aDifferenceInAnyFieldMakesAnotherRecord) {
    const ListeningPort original{.pid = 42, .command = "node", .port = 3000};
    std::vector<ListeningPort> records(16, original);
    records[1].pid = 43;
    records[2].command = "bun";
    records[3].port = 3001;
    records[4].isExposed = true;
    records[5].cwd = "/";
    records[6].startedAt = Instant(1ms);
    records[7].args = "node";
    records[8].service = "a";
    records[9].container = "a";
    records[10].cpu = 0;
    records[11].memoryKB = 0;
    records[12].workerPID = 42;
    records[13].hostApp = "a";
    records[14].agent = "Codex";
    records[15].serviceManager = ServiceManager::systemd;
    const std::unordered_set<ListeningPort> distinct(records.begin(), records.end());
    EXPECT_EQ(distinct.size(), records.size());
    std::unordered_set<std::size_t> hashes;
    for (const ListeningPort &record : records)
        hashes.insert(std::hash<ListeningPort>{}(record));
    EXPECT_EQ(hashes.size(), records.size()) << "every field takes part in the hash";
}

TEST(ListeningPortTest, equalRecordsHashAlike) {
    const ListeningPort a{.pid = 42, .command = "node", .port = 3000, .startedAt = Instant(5ms), .cpu = 0.0};
    ListeningPort b = a;
    b.cpu = -0.0;
    ASSERT_EQ(a, b);
    EXPECT_EQ(std::hash<ListeningPort>{}(a), std::hash<ListeningPort>{}(b));
}

} // namespace
} // namespace tarnvale
