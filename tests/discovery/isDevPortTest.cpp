#include "discovery/isDevPort.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(IsDevPortTest, aContainersPortIsOneWhereverItsProxyWorks) {
    EXPECT_TRUE(isDevPort({.command = "com.docker.backend", .cwd = "/", .container = "web · nginx:1.25"}));
    EXPECT_FALSE(isDevPort({.command = "com.docker.backend", .cwd = "/"}));
}

TEST(IsDevPortTest, aHomebrewServiceIsOneWhateverItsCommand) {
    EXPECT_TRUE(isDevPort({.command = "thing", .cwd = "/", .service = "homebrew.mxcl.thing"}));
    EXPECT_TRUE(isDevPort({.command = "thing", .service = "sh.brew.thing"}));
    EXPECT_TRUE(isDevPort({.command = "thing",
                           .service = "homebrew.thing.service",
                           .serviceManager = ServiceManager::systemdUser}));
}

TEST(IsDevPortTest, otherServicesDoNotCount) {
    EXPECT_FALSE(isDevPort({.command = "thing", .cwd = "/", .service = "com.example.agent"}));
    EXPECT_FALSE(isDevPort({.command = "thing", .cwd = "/", .service = "my.homebrew.mxcl.thing"}));
    EXPECT_FALSE(isDevPort({.command = "thing",
                            .cwd = "/",
                            .service = "thing.service",
                            .serviceManager = ServiceManager::systemd}));
}

TEST(IsDevPortTest, aKnownServiceCommandIsOneInAnyFolder) {
    EXPECT_TRUE(isDevPort({.command = "redis-server-arm64", .cwd = "/"}));
    EXPECT_TRUE(isDevPort({.command = "postgres"}));
    EXPECT_TRUE(isDevPort({.command = "LM Studio Helper (Renderer)"}));
    EXPECT_TRUE(isDevPort({.command = "apache2", .cwd = "/"}));
}

TEST(IsDevPortTest, aFolderOfItsOwnMakesOne) {
    EXPECT_TRUE(isDevPort({.command = "node", .cwd = "/Users/me/shop"}));
    EXPECT_TRUE(isDevPort({.command = "node", .cwd = "/tmp"}));
    EXPECT_FALSE(isDevPort({.command = "rapportd", .cwd = "/"}));
    EXPECT_FALSE(isDevPort({.command = "rapportd"}));
}

TEST(IsDevPortTest, noiseNeverIsOne) {
    EXPECT_FALSE(isDevPort({.command = "node", .cwd = "/Users/me/shop", .args = "node /lib/tsserver.js"}));
    EXPECT_FALSE(isDevPort({.command = "Code Helper", .container = "web · nginx"}));
    EXPECT_FALSE(isDevPort({.command = "gopls", .service = "homebrew.mxcl.gopls"}));
    EXPECT_FALSE(isDevPort({.command = "postgres", .args = "postgres -D /x/webstorm"}));
}

} // namespace
} // namespace tarnvale
