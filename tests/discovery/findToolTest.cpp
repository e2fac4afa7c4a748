#include "discovery/findTool.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace tarnvale {
namespace {

class FindToolTest : public testing::Test {
protected:
    ~FindToolTest() override {
        if (m_home)
            setenv("HOME", m_home->c_str(), 1);
        else
            unsetenv("HOME");
    }

    TemporaryFolder m_folder;

private:
    static std::optional<std::string> homeVariable() {
        const char *home = std::getenv("HOME");
        return home == nullptr ? std::nullopt : std::optional<std::string>(home);
    }

    std::optional<std::string> m_home = homeVariable();
};

TEST_F(FindToolTest, theFirstExecutableWins) {
    const std::string first = m_folder.writeScript("a/tool", "exit 0");
    const std::string second = m_folder.writeScript("b/tool", "exit 0");
    EXPECT_EQ(firstExecutable({first, second}), first);
    EXPECT_EQ(firstExecutable({second, first}), second);
}

TEST_F(FindToolTest, whatCannotBeExecutedIsPassedOver) {
    const std::string plain = m_folder.write("plain", "#!/bin/sh\n");
    const std::string folder = m_folder.path();
    const std::string missing = m_folder.path("missing");
    const std::string dangling = m_folder.path("dangling");
    std::filesystem::create_symlink(missing, dangling);
    const std::string tool = m_folder.writeScript("tool", "exit 0");
    EXPECT_EQ(firstExecutable({"", plain, folder, missing, dangling, plain + "/tool", tool}), tool);
    EXPECT_EQ(firstExecutable({"", plain, folder, missing, dangling}), std::nullopt);
    EXPECT_EQ(firstExecutable({}), std::nullopt);
}

TEST_F(FindToolTest, aLinkToAToolKeepsItsOwnPath) {
    const std::string link = m_folder.path("link");
    std::filesystem::create_symlink(m_folder.writeScript("tool", "exit 0"), link);
    EXPECT_EQ(firstExecutable({link}), link);
}

TEST_F(FindToolTest, theHomeFolderIsTheVariable) {
    setenv("HOME", "/home/me", 1);
    EXPECT_EQ(homeFolder(), "/home/me");
}

TEST_F(FindToolTest, aHomeVariableThatIsNoPathIsNotUsed) {
    unsetenv("HOME");
    const std::string home = homeFolder();
    EXPECT_TRUE(home.starts_with('/')) << home;
    for (const char *value : {"", "me", "~"}) {
        setenv("HOME", value, 1);
        EXPECT_EQ(homeFolder(), home) << value;
    }
}

} // namespace
} // namespace tarnvale
