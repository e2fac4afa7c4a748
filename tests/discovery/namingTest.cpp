#include "discovery/naming.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(NamingTest, aTrailingArchitectureIsCut) {
    EXPECT_EQ(strippingArchSuffix("ollama-arm64"), "ollama");
    EXPECT_EQ(strippingArchSuffix("gopls-x86_64"), "gopls");
    EXPECT_EQ(strippingArchSuffix("Mailpit-amd64"), "Mailpit");
}

TEST(NamingTest, anArchitectureElsewhereStays) {
    for (const std::string_view command :
         {"foo-arm64-bar", "arm64", "fooarm64", "foo-ARM64", "foo-aarch64", "foo_arm64", ""})
        EXPECT_EQ(strippingArchSuffix(command), command);
}

TEST(NamingTest, onlyTheLastArchitectureIsCut) {
    EXPECT_EQ(strippingArchSuffix("foo-arm64-amd64"), "foo-arm64");
}

TEST(NamingTest, theCanonicalCommandIsLowerCaseWithoutArchitecture) {
    EXPECT_EQ(canonicalCommand("Redis-Server-arm64"), "redis-server");
    EXPECT_EQ(canonicalCommand("node"), "node");
}

TEST(NamingTest, debiansNameOfTheApacheServerCountsAsHttpd) {
    EXPECT_EQ(canonicalCommand("apache2"), "httpd");
    EXPECT_EQ(canonicalCommand("apache2-amd64"), "httpd");
    EXPECT_EQ(canonicalCommand("apache22"), "apache22");
    EXPECT_TRUE(isKnownServiceCommand("apache2"));
}

TEST(NamingTest, everyKnownServiceCommandIsKnownInAnyCaseAndArchitecture) {
    for (const std::string command :
         {"postgres", "mysqld", "mariadbd", "redis-server", "valkey-server", "mongod", "memcached", "ollama",
          "mailpit", "mailhog", "meilisearch", "minio", "caddy", "httpd", "nginx", "lm studio"}) {
        EXPECT_TRUE(isKnownServiceCommand(command)) << command;
        EXPECT_TRUE(isKnownServiceCommand(command + "-arm64")) << command;
    }
    EXPECT_TRUE(isKnownServiceCommand("Caddy"));
    EXPECT_TRUE(isKnownServiceCommand("NGINX-x86_64"));
    EXPECT_TRUE(isKnownServiceCommand("LM Studio Helper"));
}

TEST(NamingTest, namesThatOnlyResembleAKnownServiceAreUnknown) {
    for (const std::string_view command :
         {"", "node", "postgresql", "redis", "redis-server2", "my nginx", "lmstudio", "an lm studio"})
        EXPECT_FALSE(isKnownServiceCommand(command)) << command;
}

TEST(NamingTest, everyGenericFolderNameIsGeneric) {
    for (const std::string_view name :
         {"bin", "sbin", "lib", "libexec", "daemon", "source_files", "tmp", "/"})
        EXPECT_TRUE(isGenericFolderName(name)) << name;
}

TEST(NamingTest, genericFolderNamesAreExact) {
    for (const std::string_view name : {"Bin", "TMP", "bins", "lib64", "tmp ", "", "//"})
        EXPECT_FALSE(isGenericFolderName(name)) << name;
}

TEST(NamingTest, aVersionNumberIsGeneric) {
    for (const std::string_view name : {"1.2.3", "v20.11.0", "7.2", "v1.0", "10.20.30.40"})
        EXPECT_TRUE(isGenericFolderName(name)) << name;
}

TEST(NamingTest, whatOnlyResemblesAVersionNumberIsNot) {
    for (const std::string_view name :
         {"1", "v20", "V1.2", "vv1.2", "1.", ".1", "1..2", "1.2.", "1.2b", "1.2-rc", "shop-1.2", "v", "1,2"})
        EXPECT_FALSE(isGenericFolderName(name)) << name;
}

TEST(NamingTest, webRootFoldersAreExactAndCaseSensitive) {
    for (const std::string_view name : {"public", "web", "www"})
        EXPECT_TRUE(isWebRootFolder(name)) << name;
    for (const std::string_view name : {"Public", "WEB", "www2", "html", "public_html", ""})
        EXPECT_FALSE(isWebRootFolder(name)) << name;
}

} // namespace
} // namespace tarnvale
