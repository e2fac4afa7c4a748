#include "probes/isLikelyWeb.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(IsLikelyWebTest, aServerOfNoKnownKindIs) {
    EXPECT_TRUE(isLikelyWeb({.command = "node", .port = 5173}));
    EXPECT_TRUE(isLikelyWeb({.command = "", .port = 3000}));
    EXPECT_TRUE(isLikelyWeb({.command = "docker-proxy", .port = 8080, .container = "web · nginx:1.25"}));
}

TEST(IsLikelyWebTest, thePortsOfDatabasesAndQueuesAreNot) {
    for (const int port : {3306, 33060, 5432, 6379, 27017, 11211, 5672, 5037}) {
        EXPECT_FALSE(isLikelyWeb({.command = "node", .port = port})) << port;
        EXPECT_TRUE(isLikelyWeb({.command = "node", .port = port + 1})) << port + 1;
    }
}

TEST(IsLikelyWebTest, theNamesOfOtherServersAreNot) {
    for (const char *name :
         {"mysqld", "mariadbd", "postgres", "redis-server", "valkey-server", "mongod", "memcached",
          "clickhouse-server", "php-fpm8.2", "adb", "rabbitmq-server", "sshd", "Postgres", "REDIS"})
        EXPECT_FALSE(isLikelyWeb({.command = name, .port = 9999})) << name;
}

TEST(IsLikelyWebTest, theContainersNameAndImageCountToo) {
    EXPECT_FALSE(isLikelyWeb({.command = "docker-proxy", .port = 15432, .container = "db · Postgres:16"}));
    EXPECT_FALSE(isLikelyWeb({.command = "docker-proxy", .port = 1, .container = "redis-cache · alpine"}));
}

TEST(IsLikelyWebTest, aNameAcrossCommandAndContainerDoesNotCount) {
    EXPECT_TRUE(isLikelyWeb({.command = "my", .port = 8080, .container = "sql · x"}));
}

} // namespace
} // namespace tarnvale
